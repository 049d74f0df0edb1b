/// kz help: the manual, for people by word and for programs as a whole.
#include <memory>

#include "host/command.h"
#include "host/output.h"
#include "json.h"
#include "kz_tls21an/text.h"
#include "options.h"
#include "session.h"

namespace console {

namespace {

struct HelpOptions {
    SessionOptions session;
    std::string word;
    bool json = false;
};

void field(Json& json, std::string_view key, std::string_view value) {
    json.key(key);
    json.string(value);
}

/// All functions and commands with what the manual says of them.
std::string everything() {
    Json json;
    json.open('{');
    json.key("functions");
    json.open('[');
    for (const host::LispFunction& function : host::lispFunctions()) {
        const bool native = function.kind == host::LispFunction::Kind::Native;
        json.open('{');
        field(json, "name", kz::toUtf8(function.name));
        field(json, "kind", native ? "native" : "language");
        field(json, "family", function.family);
        field(json, "usage", function.usage);
        field(json, "result", function.result);
        field(json, "help", function.help);
        field(json, "examples", function.examples);
        json.close('}');
    }
    json.close(']');
    json.key("commands");
    json.open('[');
    for (const host::CommandInfo& command : host::commands()) {
        json.open('{');
        field(json, "name", kz::toUtf8(command.name));
        field(json, "alias", kz::toUtf8(command.alias));
        field(json, "help", command.help);
        json.close('}');
    }
    json.close(']');
    json.close('}');
    return json.text() + "\n";
}

Status help(const HelpOptions& options) {
    Status status = openSession(options.session);
    if (status != kDone) return status;
    std::u16string text;
    const bool known = host::lispHelp(kz::toUtf16(options.word), text);
    if (options.json) text = kz::toUtf16(everything());
    host::write(known ? host::Channel::Lisp : host::Channel::Message, text);
    host::flush();
    return known ? kDone : kLispError;
}

}  // namespace

Run defineHelp(Options& line) {
    const auto options = std::make_shared<HelpOptions>();
    line.argument("WORD", options->word, "A function, a command, or a word to look for");
    line.flag("--json", options->json, "All functions and commands, for other programs");
    return [options] { return help(*options); };
}

}  // namespace console
