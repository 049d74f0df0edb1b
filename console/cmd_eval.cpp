/// kz eval: expressions from the command line.
#include <memory>

#include "host/output.h"
#include "kz_tls21an/text.h"
#include "options.h"
#include "session.h"

namespace console {

namespace {

struct EvalOptions {
    SessionOptions session;
    std::vector<std::string> expressions;
};

Status evaluate(const EvalOptions& options) {
    Status status = openSession(options.session);
    const Interruptible interruptible;
    for (size_t i = 0; status == kDone && i < options.expressions.size(); ++i) {
        const host::LispOutcome outcome = host::evalLisp(kz::toUtf16(options.expressions[i]));
        status = report(outcome);
        if (outcome.ok()) showValue(outcome.value);
    }
    return closeSession(options.session, status);
}

}  // namespace

Run defineEval(Options& line) {
    const auto options = std::make_shared<EvalOptions>();
    addSessionOptions(line, options->session, true);
    line.arguments("EXPR", options->expressions,
                   "Expressions; each may hold several, and the value of its last one is printed");
    return [options] { return evaluate(*options); };
}

}  // namespace console
