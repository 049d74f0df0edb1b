/// Lisp twins of the trace facility. They look at their arguments themselves: a type counts as it
/// is, with no conversion. A missing or wrong argument prints two lines, the error and the form.
#include <cmath>
#include <new>

#include "RB/number_text.h"
#include "guards.h"
#include "twin.h"

namespace {

constexpr const char* kMissing = "ERROR:  Insufficient arguments";
constexpr const char* kWrong = "ERROR:  Incorrect arguments";
/// Size of the buffers of a file name, a message and a source [characters].
constexpr size_t kTextSize = 256;

/// The node after `node`, which may be NULL.
const resbuf* behind(const resbuf* node) {
    return node != nullptr ? node->rbnext : nullptr;
}

bool hasType(const resbuf* node, int16_t type) {
    return node != nullptr && node->restype == type;
}

/// True when the first argument has this type; prints the two lines otherwise.
bool require(const resbuf* first, int16_t type, const char* form) {
    if (hasType(first, type)) return true;
    acutPrintf(kz_Msg(first == nullptr ? kMissing : kWrong, "TOOL", 7));
    acutPrintf(kz_Msg(form, "TOOL", 1));
    return false;
}

/// A mask as Lisp sees it: a real, since not all of its 32 bits fit an integer there.
void returnMask(int32_t mask) {
    acedRetReal(static_cast<uint32_t>(mask));
}

/// The real without its fraction, cut to 32 bits; 0 for what is no number.
int32_t maskOf(double value) {
    constexpr double kRange = 4294967296.0;
    const double bits = std::fmod(std::trunc(value), kRange);
    return std::isfinite(bits) ? static_cast<int32_t>(static_cast<int64_t>(bits)) : 0;
}

/// The mask that an argument stands for. @return false for an argument of another type
bool readMask(const resbuf* node, int32_t& mask) {
    switch (node->restype) {
        case RTSHORT:
            mask = node->resval.rint;
            return true;
        case RTLONG:
            mask = node->resval.rlong;
            return true;
        case RTREAL:
            mask = maskOf(node->resval.rreal);
            return true;
        case RTSTR:
            mask = kz::parseLong(node->resval.rstring);
            return true;
        default:
            return false;
    }
}

/// Writes a message; a text that there is no memory for is lost.
void putMessage(const kz_Char* message, const kz_Char* source) {
    try {
        kz_Diag_putOutputMsg(message, kz::toUtf8(source).c_str(), 0);
    } catch (const std::bad_alloc&) {
        return;
    }
}

}  // namespace

/// (kz_Diag_setLevel [level]) -> level
/// Lets trace statements up to this level speak; none without a level, or for one that is no
/// integer. Gives the level before.
KZ_TWIN kz_Diag_setLevel_li(void) {
    const kz::OwnedChain args(acedGetArgs());
    const bool given = hasType(args.get(), RTSHORT);
    acedRetInt(kz_Diag_setLevel(given ? args->resval.rint : int16_t{-1}));
    return 1;
}

/// (kz_Diag_setCondition [mask]) -> mask
/// Lets trace statements under these bits speak. Gives the mask before; without an argument the
/// present one, which stays. The mask is an integer, a real or a decimal text.
KZ_TWIN kz_Diag_setCondition_li(void) {
    const kz::OwnedChain args(acedGetArgs());
    acedRetNil();
    int32_t mask = 0;
    if (args == nullptr) {
        returnMask(kz_Diag_getCondition());
    } else if (readMask(args.get(), mask)) {
        returnMask(kz_Diag_setCondition(mask));
    } else {
        acutPrintf(kz_Msg(kWrong, "TOOL", 7));
        acutPrintf(kz_Msg("(kz_Diag_setCondition CondCode)", "TOOL", 1));
    }
    return 1;
}

/// (kz_Diag_setOutput option [filename]) -> T | nil
/// Sends trace statements nowhere (0), to the standard error stream (1), to a file that is emptied
/// (2) or added to (3), or to the program's own handler (4).
KZ_TWIN kz_Diag_setOutput_li(void) {
    const kz::OwnedChain args(acedGetArgs());
    acedRetNil();
    if (!require(args.get(), RTSHORT, "(kz_Diag_setOutput OptionCode [filename] )")) return 1;
    const resbuf* name = behind(args.get());
    const kz_Char* file = hasType(name, RTSTR) ? name->resval.rstring : KZ_T("");
    if (kz_Diag_setOutput(args->resval.rint, file) != 0) acedRetT();
    return 1;
}

/// (kz_Diag_getOutput) -> option
/// The output's option, as kz_Diag_setOutput takes it.
KZ_TWIN kz_Diag_getOutput_li(void) {
    acedRetInt(kz_Diag_getOutput(nullptr));
    return 1;
}

/// (kz_Diag_getOutputFile) -> filename | nil
/// The file that trace statements go to; nil when they don't go to a file.
KZ_TWIN kz_Diag_getOutputFile_li(void) {
    acedRetNil();
    kz_Char name[kTextSize];
    const int option = kz_Diag_getOutput(name);
    if (option == KZ_DIAG_OUTPUT_FILE || option == KZ_DIAG_OUTPUT_APPEND) acedRetStr(name);
    return 1;
}

/// (kz_Diag_putOutput message [source]) -> void
/// Writes a message to the trace output, whatever the level. The message and the name of its source
/// are cut at 255 characters.
KZ_TWIN kz_Diag_putOutput_li(void) {
    const kz::OwnedChain args(acedGetArgs());
    acedRetVoid();
    if (!require(args.get(), RTSTR, "(kz_Diag_putOutput   Message  [source_filename] )")) return 1;
    kz_Char message[kTextSize];
    kz_Char source[kTextSize];
    const resbuf* second = behind(args.get());
    kz_Str_ncpy(message, args->resval.rstring, kTextSize - 1);
    kz_Str_ncpy(source, hasType(second, RTSTR) ? second->resval.rstring : KZ_T("<none>"),
                kTextSize - 1);
    putMessage(message, source);
    return 1;
}

/// (kz_Diag_disable) -> no value
/// Silences all trace statements and sends the output to the standard error stream.
KZ_TWIN kz_Diag_disable_li(void) {
    kz_Diag_disable();
    return 1;
}
