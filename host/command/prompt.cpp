/// Prompts of commands, on the platform's input functions.
#include "command/command.h"
#include "db/database.h"
#include "edit/choose.h"
#include "edit/input.h"

namespace host {

Answered CommandPrompt::take(int status) {
    switch (status) {
        case RTNORM:
            return Answered::Value;
        case RTNONE:
            return Answered::Nothing;
        case RTKWORD: {
            ACHAR text[256];
            acedGetInput(text);
            keyword_ = text;
            return Answered::Keyword;
        }
        default:
            throw Cancelled{};
    }
}

Answered CommandPrompt::point(const Prompt& prompt, ads_point out) {
    acedInitGet(prompt.flags, prompt.keywords.c_str());
    return take(acedGetPoint(prompt.base, prompt.text.c_str(), out));
}

Answered CommandPrompt::corner(const Prompt& prompt, ads_point out) {
    acedInitGet(prompt.flags, prompt.keywords.c_str());
    return take(acedGetCorner(prompt.base, prompt.text.c_str(), out));
}

Answered CommandPrompt::distance(const Prompt& prompt, double& out) {
    acedInitGet(prompt.flags, prompt.keywords.c_str());
    return take(acedGetDist(prompt.base, prompt.text.c_str(), &out));
}

Answered CommandPrompt::angle(const Prompt& prompt, double& out) {
    acedInitGet(prompt.flags, prompt.keywords.c_str());
    return take(acedGetOrient(prompt.base, prompt.text.c_str(), &out));
}

Answered CommandPrompt::relativeAngle(const Prompt& prompt, double& out) {
    acedInitGet(prompt.flags, prompt.keywords.c_str());
    return take(acedGetAngle(prompt.base, prompt.text.c_str(), &out));
}

Answered CommandPrompt::real(const Prompt& prompt, double& out) {
    acedInitGet(prompt.flags, prompt.keywords.c_str());
    return take(acedGetReal(prompt.text.c_str(), &out));
}

Answered CommandPrompt::integer(const Prompt& prompt, int& out) {
    acedInitGet(prompt.flags, prompt.keywords.c_str());
    return take(acedGetInt(prompt.text.c_str(), &out));
}

Answered CommandPrompt::keyword(const Prompt& prompt) {
    acedInitGet(prompt.flags, prompt.keywords.c_str());
    ACHAR text[133];
    const int status = acedGetKword(prompt.text.c_str(), text);
    return take(status == RTNORM ? static_cast<int>(RTKWORD) : status);
}

std::u16string CommandPrompt::text(std::u16string_view prompt, bool blanks) {
    const InputRequest request = {std::u16string(prompt), blanks};
    InputToken token;
    if (!inputSource().next(request, token) || token.kind == InputToken::Kind::Cancel) {
        throw Cancelled{};
    }
    return token.typed();
}

std::vector<AcDbObjectId> CommandPrompt::entities(std::u16string_view prompt) {
    ChooseRules rules;
    rules.no_locked = true;
    Selection chosen;
    const auto show = [this](std::u16string_view message) { say(message); };
    if (chooseObjects(commandDrawing(*this), rules, prompt, show, chosen) != RTNORM) {
        throw Cancelled{};
    }
    return chosen.ids();
}

AcDbObjectId CommandPrompt::entity(std::u16string_view prompt) {
    AcDbObjectId chosen;
    const auto show = [this](std::u16string_view message) { say(message); };
    const int status = chooseObject(commandDrawing(*this), prompt, show, chosen);
    if (status == RTCAN) throw Cancelled{};
    return chosen;
}

void CommandPrompt::say(std::u16string_view message) const {
    resbuf echo{};
    const bool quiet = acedGetVar(u"CMDECHO", &echo) == RTNORM && echo.restype == RTSHORT &&
                       echo.resval.rint == 0 && &inputSource() != &userInput();
    if (!quiet) tell(message);
}

void CommandPrompt::warn(std::u16string_view message) const {
    tell(name_ + u": " + std::u16string(message));
}

void CommandPrompt::refuse(std::u16string_view message) const {
    warn(message);
    throw Cancelled{};
}

Database& commandDrawing(const CommandPrompt& prompt) {
    Database* drawing = currentDatabase();
    if (drawing == nullptr) prompt.refuse(u"there is no drawing.");
    return *drawing;
}

}  // namespace host
