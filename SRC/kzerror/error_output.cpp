/// The outputs of the error list: command line, log file and, until there are dialogs, a line in
/// their place.
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>
#include <type_traits>

#include "checks.h"
#include "guards.h"
#include "kzerror/kzerror.h"

namespace {

constexpr const kz_Char* kDefaultLogFile = KZ_T("KZ_ERROR.LOG");
constexpr int kAllOutputs = KZ_ERROR_TO_STDERR | KZ_ERROR_TO_LOG | KZ_ERROR_TO_DIALOG;

enum class Entries { All, Newest };

int default_mask = KZ_ERROR_TO_STDERR;
kz::OwnedText log_file;

/// Calls `show` with each entry that is meant.
template <class Show>
void forEach(Entries which, Show show) {
    kz_LnkList* list = kz::errorList();
    for (kz_LnkList_start(list); kz_LnkList_eol(list) == 0; kz_LnkList_next(list)) {
        show(*static_cast<const kz::ErrorEntry*>(kz_LnkList_getCurr(list)));
        if (which == Entries::Newest) return;
    }
}

/// The entry's text, empty when it has none; valid until the next look-up in a table.
const kz_Char* textOf(const kz::ErrorEntry& entry) {
    const kz_Char* text = entry.custom_text != nullptr
                              ? entry.custom_text
                              : kz_ErrorMsg_getFromTable(entry.group, entry.code);
    return text != nullptr ? text : KZ_T("");
}

void toCommandLine(Entries which) {
    forEach(which, [](const kz::ErrorEntry& entry) {
        acutPrintf(KZ_T("%d, %s\n"), entry.code, textOf(entry));
    });
}

std::filesystem::path pathOf(const kz_Char* name) {
    if constexpr (std::is_same_v<kz_Char, std::filesystem::path::value_type>) {
        return name;
    } else {
        return kz::toUtf8(name);
    }
}

void toLogFile(Entries which) {
    if (kz::isEmpty(log_file.get())) return;
    try {
        std::ofstream file(pathOf(log_file.get()));
        forEach(which, [&file](const kz::ErrorEntry& entry) {
            file << std::to_string(entry.code) << ", " << kz::toUtf8(textOf(entry)) << '\n';
        });
    } catch (const std::exception&) {
        // a log that can't be written is lost: showing errors makes no new ones
    }
}

void toDialog() {
    if (kz_Error_isOk() == 1) return;
    acutPrintf(kz_Msg("Errors can't be shown in dialogs here.", "TOOL", 7));
}

void output(Entries which, int mask) {
    if (mask == 0) mask = default_mask;
    if ((mask & KZ_ERROR_TO_STDERR) != 0) toCommandLine(which);
    if ((mask & KZ_ERROR_TO_LOG) != 0) toLogFile(which);
    if ((mask & KZ_ERROR_TO_DIALOG) != 0) toDialog();
}

}  // namespace

void kz_Error_outputAll(int mask) {
    output(Entries::All, mask);
}

void kz_Error_outputCurr(int mask) {
    output(Entries::Newest, mask);
}

void kz_Error_outputAllToStdErr(void) {
    toCommandLine(Entries::All);
}

void kz_Error_outputAllToLogFile(void) {
    toLogFile(Entries::All);
}

void kz_Error_outputAllToDialog(void) {
    toDialog();
}

int kz_Error_setDefaultOutput(int mask) {
    const int before = default_mask;
    if (mask > 0 && mask <= kAllOutputs) default_mask = mask;
    return before;
}

int kz_ErrorLogFile_set(const kz_Char* name) {
    const bool valid = !kz::isEmpty(name);
    log_file.reset(kz_Str_dup(valid ? name : kDefaultLogFile));
    if (valid) return 1;
    acutPrintf(kz_Msg("kz_ErrorLogFile_set: Error log file name specified is invalid.", "TOOL", 3));
    acutPrintf(kz_Msg("Defaulting to log file: %s", "TOOL", 7), kDefaultLogFile);
    return 1;
}
