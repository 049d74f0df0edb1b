/// kz run: scripts.
#include <memory>

#include "host/output.h"
#include "options.h"
#include "session.h"

namespace console {

namespace {

struct RunOptions {
    SessionOptions session;
    std::vector<std::string> scripts;
};

Status load(const RunOptions& options) {
    Status status = openSession(options.session);
    const Interruptible interruptible;
    for (size_t i = 0; status == kDone && i < options.scripts.size(); ++i) {
        status = report(host::loadLisp(options.scripts[i]));
    }
    return closeSession(options.session, status);
}

}  // namespace

Run defineRun(Options& line) {
    const auto options = std::make_shared<RunOptions>();
    addSessionOptions(line, options->session, true);
    line.arguments("SCRIPT.lsp", options->scripts, "Lisp files, loaded in this order");
    return [options] { return load(*options); };
}

}  // namespace console
