/// kz run: scripts.
#include <CLI/CLI.hpp>
#include <memory>

#include "host/output.h"
#include "session.h"

namespace console {

namespace {

struct Options {
    SessionOptions session;
    std::vector<std::string> scripts;
};

Status load(const Options& options) {
    Status status = openSession(options.session);
    const Interruptible interruptible;
    for (size_t i = 0; status == kDone && i < options.scripts.size(); ++i) {
        status = report(host::loadLisp(options.scripts[i]));
    }
    if (status == kDone) status = saveSession(options.session);
    host::flush();
    return status;
}

}  // namespace

Run defineRun(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    addSessionOptions(app, options->session, true);
    app.add_option("SCRIPT.lsp", options->scripts, "Lisp files, loaded in this order")
        ->required()
        ->type_name("");
    return [options] { return load(*options); };
}

}  // namespace console
