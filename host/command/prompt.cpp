/// Prompts of commands, on the platform's input functions.
#include <unordered_set>
#include <utility>

#include "command/command.h"
#include "db/database.h"
#include "edit/input.h"
#include "edit/keywords.h"
#include "edit/shapes.h"
#include "edit/tag_values.h"
#include "kz_tls21an/text.h"

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

namespace {

/// Collects entities for a command, each once and in the order of choosing.
class Chosen {
  public:
    explicit Chosen(Database& drawing) : drawing_(drawing) {}

    void add(Slot slot) {
        slot = drawing_.mainEntity(slot);
        const ObjectRecord& record = drawing_.record(slot);
        if (record.object_class != ObjectClass::Entity || record.erased) return;
        if (isPaperItself(slot)) return;
        if (drawing_.isOnLockedLayer(slot)) {
            ++locked_;
            return;
        }
        if (seen_.insert(slot).second) ids_.push_back(drawing_.idOf(slot));
    }

    void addName(const ads_name name) {
        const AcDbObjectId id = Database::idFromName(name);
        if (Database::find(id) == &drawing_) add(drawing_.slotOf(id));
    }

    void addSet(const ads_name set) {
        int32_t length = 0;
        acedSSLength(set, &length);
        ads_name name = {0, 0};
        for (int32_t i = 0; i < length; ++i) {
            if (acedSSName(set, i, name) == RTNORM) addName(name);
        }
    }

    void addAll() {
        const Block* space = drawing_.findBlock(currentSpace(drawing_));
        for (size_t i = 0; space != nullptr && i < space->contents.size(); ++i)
            add(space->contents[i]);
    }

    /// The viewport that stands for the sheet of a layout is no object to choose.
    bool isPaperItself(Slot slot) {
        return drawing_.typeName(slot) == "VIEWPORT" && integerOf(drawing_.tags(slot), 69, 0) == 1;
    }

    size_t takeLocked() { return std::exchange(locked_, 0); }
    const std::vector<AcDbObjectId>& ids() const { return ids_; }

  private:
    Database& drawing_;
    std::vector<AcDbObjectId> ids_;
    std::unordered_set<Slot> seen_;
    size_t locked_ = 0;
};

std::vector<AcDbObjectId>& previousChoice() {
    static std::vector<AcDbObjectId> previous;
    return previous;
}

std::u16string countText(size_t count, const char16_t* rest) {
    return kz::toUtf16(std::to_string(count)) + rest;
}

}  // namespace

std::vector<AcDbObjectId> CommandPrompt::entities(std::u16string_view prompt) {
    Database& drawing = commandDrawing(*this);
    Chosen chosen(drawing);
    const Keywords keywords(u"Last Previous ALL");
    const InputRequest request = {std::u16string(prompt), false};
    for (;;) {
        InputToken token;
        if (!inputSource().next(request, token) || token.kind == InputToken::Kind::Cancel) {
            throw Cancelled{};
        }
        if (token.kind == InputToken::Kind::Text && token.text.starts_with(u'(')) {
            const std::u16string text = token.text;
            if (!evaluateExpression(text, token)) continue;
        }
        const size_t before = chosen.ids().size();
        if (token.kind == InputToken::Kind::Enter) {
            break;
        } else if (token.kind == InputToken::Kind::Entity) {
            chosen.addName(token.name);
        } else if (token.kind == InputToken::Kind::Set) {
            chosen.addSet(token.name);
        } else {
            const std::u16string keyword =
                token.kind == InputToken::Kind::Text ? keywords.match(token.text) : u"";
            if (keyword == u"Last") {
                const Slot last = drawing.lastEntity(currentSpace(drawing));
                if (last != kNoSlot) chosen.add(last);
            } else if (keyword == u"Previous") {
                for (const AcDbObjectId id : previousChoice()) {
                    if (Database::find(id) == &drawing) chosen.add(drawing.slotOf(id));
                }
            } else if (keyword == u"ALL") {
                chosen.addAll();
            } else {
                say(u"Expects an entity, a selection set, Last, Previous or ALL.");
                continue;
            }
        }
        say(countText(chosen.ids().size() - before, u" found"));
        if (const size_t locked = chosen.takeLocked()) {
            say(countText(locked,
                          locked == 1 ? u" was on a locked layer." : u" were on a locked layer."));
        }
    }
    if (!chosen.ids().empty()) previousChoice() = chosen.ids();
    return chosen.ids();
}

AcDbObjectId CommandPrompt::entity(std::u16string_view prompt) {
    const Database& drawing = commandDrawing(*this);
    const InputRequest request = {std::u16string(prompt), false};
    for (;;) {
        InputToken token;
        if (!inputSource().next(request, token) || token.kind == InputToken::Kind::Cancel) {
            throw Cancelled{};
        }
        if (token.kind == InputToken::Kind::Text && token.text.starts_with(u'(')) {
            const std::u16string text = token.text;
            if (!evaluateExpression(text, token)) continue;
        }
        if (token.kind == InputToken::Kind::Enter) return {};
        const AcDbObjectId id = token.kind == InputToken::Kind::Entity
                                    ? Database::idFromName(token.name)
                                    : AcDbObjectId{};
        if (!id.isNull() && Database::find(id) == &drawing) return id;
        say(u"Expects an entity.");
    }
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
