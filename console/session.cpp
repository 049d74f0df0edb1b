/// What all commands that evaluate share.
#include "session.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "host/drawing.h"
#include "host/input.h"
#include "host/module.h"
#include "host/output.h"
#include "kz/kz_error.h"
#include "kz_tls21an/diag.h"
#include "kz_tls21an/text.h"
#include "lisp_texts.h"
#include "options.h"

namespace console {

namespace fs = std::filesystem;

namespace {

const char kLibrary[] = "libkz_zaglaid.so";
const char kSuite[] = "libkz_cadservice.so";

fs::path programFolder() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).parent_path();
}

bool loadLibraries(bool withSuite) {
    const fs::path folder = programFolder();
    std::string error;
    if (!host::loadModule((folder / kLibrary).string(), error)) {
        complain(error);
        return false;
    }
    // The suite's services are an addition; the library says itself what is missing without them.
    std::error_code ignored;
    const fs::path suite = folder / kSuite;
    if (withSuite && fs::exists(suite, ignored) && !host::loadModule(suite.string(), error)) {
        complain(error);
        return false;
    }
    return true;
}

/// Makes the lines of a file the answers to what is asked.
bool feedInput(const std::string& path) {
    std::error_code ignored;
    const auto file = std::make_shared<std::ifstream>(path, std::ios::binary);
    if (fs::is_directory(path, ignored) || !*file) {
        complain(path + ": can't be read");
        return false;
    }
    host::setInputReader([file](std::u16string_view) -> host::InputLine {
        std::string line;
        if (!std::getline(*file, line)) return {};
        if (line.ends_with('\r')) line.pop_back();
        if (line == "^C") return {host::InputLine::Kind::Cancel, u"^C"};
        return {host::InputLine::Kind::Text, kz::toUtf16(line)};
    });
    return true;
}

/// Lets the trace statements speak that "LEVEL[:MASK]" names; without a mask all subjects.
bool startTrace(const std::string& wanted) {
    const char* at = wanted.c_str();
    char* end = nullptr;
    const long level = std::strtol(at, &end, 0);
    long long mask = -1;
    bool good = end != at && level >= INT16_MIN && level <= INT16_MAX;
    if (good && *end == ':') {
        at = end + 1;
        mask = std::strtoll(at, &end, 0);
        good = end != at && mask >= INT32_MIN && mask <= UINT32_MAX;
    }
    if (!good || *end != '\0') {
        complain("--trace takes LEVEL or LEVEL:MASK, as 2 or 3:0x400, not \"" + wanted + "\"");
        return false;
    }
    kz_Diag_setLevel(static_cast<int16_t>(level));
    kz_Diag_setCondition(static_cast<int32_t>(mask));
    return true;
}

extern "C" void onInterrupt(int) {
    if (host::interruptLisp()) return;
    std::signal(SIGINT, SIG_DFL);
    std::raise(SIGINT);
}

}  // namespace

void addSessionOptions(Options& line, SessionOptions& options, bool withFiles) {
    if (withFiles) {
        line.file("-d,--drawing", options.drawing, "Drawing to open; a new one without it");
        line.file("-s,--save", options.target, "Save the drawing here when all has succeeded");
        addSaveOptions(line, options);
    }
    addRecoverOption(line, options.recover);
    line.file("--input", options.input, "Text file whose lines answer prompts");
    line.value("--trace", options.trace, "LEVEL[:MASK]", "Let trace statements speak on stderr");
    line.flag("--backtrace", options.backtrace, "Show errors with the forms that led there");
    line.flag("--no-suite", options.noSuite, "Do without the suite's services");
}

void addRecoverOption(Options& line, bool& recover) {
    line.flag("--recover", recover, "Read what can be read of a damaged drawing");
}

void addSaveOptions(Options& line, SessionOptions& options) {
    line.value("--version", options.version, "RELEASE", "Save as R2000, R2004 ... R2018");
    line.flag("--backup", options.backup, "Keep a file that is replaced as NAME.bak");
    line.flag("--force", options.force,
              "Save also over a file that was changed meanwhile or is write-protected");
}

Status openSession(const SessionOptions& options) {
    if (!options.trace.empty() && !startTrace(options.trace)) return kWrongUsage;
    if (!loadLibraries(!options.noSuite)) return kFileError;
    host::setLispTexts(lispTexts());
    host::showBacktraces(options.backtrace);
    if (!options.input.empty() && !feedInput(options.input)) return kFileError;
    if (options.drawing.empty()) {
        host::newDrawing();
        return kDone;
    }
    host::OpenOptions opening;
    opening.recover = options.recover;
    return report(options.drawing, host::openDrawing(options.drawing, opening));
}

Status closeSession(const SessionOptions& options, Status status) {
    if (status == kDone && !options.target.empty()) status = saveSession(options);
    if (kz_Error_isOk() != 1) {
        if (!host::atLineStart(host::Channel::Message)) host::write(host::Channel::Message, u"\n");
        kz_Error_outputAllToStdErr();
        kz_Error_clearAll();
    }
    host::flush();
    return status;
}

Status saveSession(const SessionOptions& options) {
    host::SaveOptions save;
    save.version = options.version;
    save.backup = options.backup;
    save.force = options.force;
    const host::SaveOutcome outcome = host::saveDrawing(options.target, save);
    for (const std::string& note : outcome.notes)
        complain(note);
    if (outcome.saved) return kDone;
    complain(outcome.error);
    return kFileError;
}

void showValue(std::u16string_view value) {
    if (value.empty()) return;
    std::u16string line(host::atLineStart(host::Channel::Lisp) ? u"" : u"\n");
    host::write(host::Channel::Lisp, line.append(value).append(u"\n"));
}

Status report(const std::string& drawing, const host::OpenOutcome& outcome) {
    const std::string place = drawing + ", ";
    for (const std::string& line : outcome.recovered)
        complain(std::string(place).append(line));
    if (outcome.opened) return kDone;
    complain(outcome.error);
    if (outcome.damaged) complain("--recover reads what can be read of a damaged drawing");
    return kFileError;
}

Status report(const host::LispOutcome& outcome) {
    using Kind = host::LispOutcome::Kind;
    if (outcome.kind == Kind::Value) return kDone;
    if (outcome.kind == Kind::Unreadable) {
        complain(kz::toUtf8(outcome.message));
        return kFileError;
    }
    std::u16string text(host::atLineStart(host::Channel::Message) ? u"" : u"\n");
    host::write(host::Channel::Message, text.append(host::describeError(outcome)));
    return kLispError;
}

void complain(const std::string& text) {
    host::write(host::Channel::Message, kz::toUtf16("kz: " + text + "\n"));
    host::flush();
}

Interruptible::Interruptible() {
    std::signal(SIGINT, onInterrupt);
}
Interruptible::~Interruptible() {
    std::signal(SIGINT, SIG_DFL);
}

}  // namespace console
