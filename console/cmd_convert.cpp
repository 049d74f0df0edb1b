/// kz convert: a drawing as another version.
#include <memory>

#include "options.h"
#include "session.h"

namespace console {

namespace {

Status convert(const SessionOptions& options) {
    if (options.drawing.empty() || options.target.empty()) {
        complain("convert takes the drawing and the file to write");
        return kWrongUsage;
    }
    return closeSession(options, openSession(options));
}

}  // namespace

Run defineConvert(Options& line) {
    const auto options = std::make_shared<SessionOptions>();
    line.argument("FILE", options->drawing, "Drawing to convert");
    line.argument("OUT", options->target, "File to write; FILE itself is possible");
    addRecoverOption(line, options->recover);
    addSaveOptions(line, *options);
    return [options] { return convert(*options); };
}

}  // namespace console
