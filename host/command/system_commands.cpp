/// Commands around the drawing: system variables, the screen.
#include <map>

#include "command/command.h"
#include "command/run.h"
#include "edit/input.h"
#include "edit/sysvars.h"
#include "edit/typed_points.h"
#include "host/undo.h"
#include "kz_tls21an/memory.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

std::u16string shown(const resbuf& value) {
    InputToken token;
    return InputToken::ofNode(value, token) ? token.typed() : std::u16string();
}

/// The value that a typed answer means for a variable of this kind.
bool valueOf(const std::u16string& typed, resbuf& value) {
    switch (value.restype) {
        case RTSTR:
            value.resval.rstring = const_cast<ACHAR*>(typed.c_str());  // copied by acedSetVar
            return true;
        case RTSHORT:
        case RTLONG: {
            const auto number = typedInteger(typed);
            if (!number) return false;
            value.restype = RTLONG;
            value.resval.rlong = *number;
            return true;
        }
        case RTREAL: {
            const auto number = typedDistance(typed);
            if (!number) return false;
            value.resval.rreal = *number;
            return true;
        }
        case RTPOINT:
        case RT3DPOINT: {
            ads_point from;
            lastPoint(from);
            return typedPoint(typed, from, value.resval.rpoint);
        }
        default:
            return false;
    }
}

bool isVariable(const std::u16string& name) {
    resbuf value{};
    if (acedGetVar(name.c_str(), &value) != RTNORM) return false;
    if (value.restype == RTSTR) kz_Free(value.resval.rstring);
    return true;
}

void askValue(CommandPrompt& prompt, const std::u16string& name) {
    resbuf value{};
    if (acedGetVar(name.c_str(), &value) != RTNORM) {
        prompt.refuse(u"unknown variable name " + name + u".");
    }
    const std::u16string present = shown(value);
    if (value.restype == RTSTR) kz_Free(value.resval.rstring);
    const std::u16string typed =
        prompt.text(u"Enter new value for " + kz::toUpper(name) + u" <" + present + u">: ",
                    value.restype == RTSTR);
    if (typed.empty()) return;
    if (!valueOf(typed == u"." ? std::u16string() : typed, value) ||
        acedSetVar(name.c_str(), &value) != RTNORM) {
        prompt.refuse(kz::toUpper(name) + u" can't be set to " + typed + u".");
    }
}

void setvar(CommandPrompt& prompt) {
    askValue(prompt, prompt.text(u"Enter variable name: "));
}

/// The command goes by the name of its variable.
void setNamedVariable(CommandPrompt& prompt) {
    askValue(prompt, prompt.name());
}

void nothing(CommandPrompt&) {}

/// Variables that tell of commands.
const bool kComputed = [] {
    computeVariable("CMDNAMES", [] { return VariableValue(runningCommand()); });
    computeVariable("CMDACTIVE", [] {
        constexpr int32_t kOrdinary = 1;
        return VariableValue(runningCommand().empty() ? 0 : kOrdinary);
    });
    computeVariable("UNDOCTL", [] { return VariableValue(int32_t{undoControlBits()}); });
    return true;
}();

const Command kCommands[] = {
    {u"SETVAR", u"SET", setvar, true, "Shows and sets a system variable."},
    {u"LTSCALE", u"LTS", setNamedVariable, true, "Sets the scale of all line types."},
    {u"REGEN", u"RE", nothing, false, "Draws the picture anew, which is always so here."},
    {u"REDRAW", u"R", nothing, false, "Draws the picture anew, which is always so here."},
    {u"GRAPHSCR", nullptr, nothing, false, "Shows the picture; without effect here."},
    {u"TEXTSCR", nullptr, nothing, false, "Shows the texts; without effect here."},
};

}  // namespace

std::span<const Command> systemCommands() {
    return kCommands;
}

const Command* variableCommand(std::u16string_view name) {
    static std::map<std::u16string, Command> commands;  // whoever runs one keeps a pointer to it
    const std::u16string upper = kz::toUpper(name);
    if (!isVariable(upper)) return nullptr;
    const auto [found, made] = commands.try_emplace(upper);
    if (made) {
        found->second = {found->first.c_str(), nullptr, setNamedVariable, true,
                         "Sets the system variable of this name."};
    }
    return &found->second;
}

}  // namespace host
