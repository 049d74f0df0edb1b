/// kz eval: expressions from the command line.
#include <CLI/CLI.hpp>
#include <memory>

#include "host/output.h"
#include "kz_tls21an/text.h"
#include "session.h"

namespace console {

namespace {

struct Options {
    SessionOptions session;
    std::vector<std::string> expressions;
};

Status evaluate(const Options& options) {
    Status status = openSession(options.session);
    const Interruptible interruptible;
    for (size_t i = 0; status == kDone && i < options.expressions.size(); ++i) {
        const host::LispOutcome outcome = host::evalLisp(kz::toUtf16(options.expressions[i]));
        status = report(outcome);
        if (outcome.ok()) showValue(outcome.value);
    }
    if (status == kDone) status = saveSession(options.session);
    host::flush();
    return status;
}

}  // namespace

Run defineEval(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    addSessionOptions(app, options->session, true);
    app.add_option("EXPR", options->expressions,
                   "Expressions; each may hold several, and the value of its last one is printed")
        ->required()
        ->type_name("");
    return [options] { return evaluate(*options); };
}

}  // namespace console
