/// kz check: what is wrong with the groups of a drawing, and its repair.
#include <algorithm>
#include <memory>

#include "group_check.h"
#include "host/output.h"
#include "kz_tls21an/text.h"
#include "options.h"
#include "session.h"

namespace console {

namespace {

struct CheckOptions {
    SessionOptions session;
    bool repair = false;
};

void say(const std::string& line) {
    host::write(host::Channel::Lisp, kz::toUtf16(line + "\n"));
}

std::string lineOf(const Finding& finding, bool repair) {
    std::string line = kz::toUtf8(finding.about) + ": " + finding.what;
    if (repair) line += finding.mend.empty() ? "; left as it is" : "; " + finding.mend;
    return line;
}

std::string countOf(size_t count) {
    return std::to_string(count) + (count == 1 ? " finding" : " findings");
}

/// @return true when nothing wrong is left
bool check(bool repair) {
    GroupCheck groups(scanGroups());
    const std::vector<Finding>& findings = groups.run();
    for (const Finding& finding : findings)
        say(lineOf(finding, repair));
    const auto mendable = [](const Finding& finding) { return !finding.mend.empty(); };
    const auto mended =
        static_cast<size_t>(std::count_if(findings.begin(), findings.end(), mendable));
    std::string summary = findings.empty() ? "no findings" : countOf(findings.size());
    if (!findings.empty()) {
        summary += ", " + std::to_string(mended) + (repair ? " mended" : " that --repair mends");
    }
    bool good = mended == findings.size();
    if (repair) {
        for (const Finding& failure : groups.write()) {
            complain(lineOf(failure, false));
            good = false;
        }
    }
    say(summary);
    return repair ? good : findings.empty();
}

Status run(const CheckOptions& options) {
    if (options.session.drawing.empty()) {
        complain("check takes the drawing to check");
        return kWrongUsage;
    }
    if (options.repair != !options.session.target.empty()) {
        complain(options.repair ? "--repair takes -s FILE, where the drawing is saved"
                                : "-s goes with --repair");
        return kWrongUsage;
    }
    const Status status = openSession(options.session);
    const bool good = status != kDone || check(options.repair);
    // What could be mended is saved, whatever is left.
    const Status closed = closeSession(options.session, status);
    return closed == kDone && !good ? kLispError : closed;
}

}  // namespace

Run defineCheck(Options& line) {
    const auto options = std::make_shared<CheckOptions>();
    line.argument("FILE", options->session.drawing, "Drawing to check");
    line.flag("--repair", options->repair, "Mend what can be mended without a guess");
    line.file("-s,--save", options->session.target, "Where the repaired drawing goes, FILE too");
    addRecoverOption(line, options->session.recover);
    addSaveOptions(line, options->session);
    return [options] { return run(*options); };
}

}  // namespace console
