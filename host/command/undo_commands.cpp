/// U, UNDO and REDO.
#include "command/command.h"
#include "host/undo.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

void tellUndone(const CommandPrompt& prompt, const UndoResult& result) {
    std::u16string names;
    for (const std::string& name : result.names)
        names += (names.empty() ? u"" : u" ") + kz::toUtf16(name);
    if (!names.empty()) prompt.say(names);
    if (result.markMet) prompt.say(u"Mark encountered");
    if (result.groupStartMet) prompt.say(u"Beginning of group encountered.");
}

void undoSteps(const CommandPrompt& prompt, size_t count) {
    const UndoResult result = undo(count);
    if (undoMode() == UndoMode::None) {
        prompt.say(u"Undo is turned off.");
    } else if (result.names.empty() && !result.groupStartMet) {
        prompt.say(u"Nothing to undo.");
    }
    tellUndone(prompt, result);
}

void u(CommandPrompt& prompt) {
    undoSteps(prompt, 1);
}

void undoBack(CommandPrompt& prompt) {
    if (!hasUndoMark()) {
        const Answered answer =
            prompt.keyword({u"This will undo everything. OK? [Yes/No] <Y>: ", 0, u"Yes No"});
        if (answer == Answered::Keyword && prompt.given(u"No")) return;
    }
    tellUndone(prompt, undoToMark());
}

void undoControl(CommandPrompt& prompt) {
    const Answered answer = prompt.keyword(
        {u"Enter an UNDO control option [All/None/One] <All>: ", 0, u"All None One"});
    if (answer == Answered::Nothing || prompt.given(u"All")) {
        setUndoMode(UndoMode::All);
    } else {
        setUndoMode(prompt.given(u"One") ? UndoMode::One : UndoMode::None);
    }
}

/// The number of steps in an UNDO that got no keyword.
void undoNumber(CommandPrompt& prompt, int count) {
    constexpr int kMost = 32767;
    if (count < 1 || count > kMost) prompt.refuse(u"requires an integer between 1 and 32767.");
    undoSteps(prompt, static_cast<size_t>(count));
}

void undoCommand(CommandPrompt& prompt) {
    // While undo is off there is nothing to do but to turn it on.
    if (undoMode() == UndoMode::None) return undoControl(prompt);
    int count = 1;
    const Answered answer = prompt.integer(
        {u"Enter the number of operations to undo or [Control/BEgin/End/Mark/Back/All] <1>: ", 0,
         u"Auto Control BEgin Group End Mark Back All"},
        count);
    if (answer != Answered::Keyword) return undoNumber(prompt, count);
    if (prompt.given(u"Control")) return undoControl(prompt);
    if (prompt.given(u"BEgin") || prompt.given(u"Group")) {
        beginUndoGroup();
    } else if (prompt.given(u"End")) {
        if (!endUndoGroup()) prompt.say(u"No group is open.");
    } else if (prompt.given(u"Mark")) {
        setUndoMark();
    } else if (prompt.given(u"Back")) {
        undoBack(prompt);
    } else if (prompt.given(u"All")) {
        const UndoResult result = undoAll();
        prompt.say(result.names.empty() ? u"Nothing to undo." : u"Everything has been undone.");
    } else {
        prompt.say(u"Menus make no steps here: AUTO has no effect.");
    }
}

void redoCommand(CommandPrompt& prompt) {
    const UndoResult result = redo();
    if (result.names.empty()) prompt.say(u"Nothing to redo.");
    tellUndone(prompt, result);
}

const Command kCommands[] = {
    {u"U", nullptr, u, false, "Undoes the last step."},
    {u"UNDO", nullptr, undoCommand, false,
     "Undoes a number of steps, back to a mark, or all; sets marks and groups."},
    {u"REDO", nullptr, redoCommand, false, "Takes back the last undo."},
};

}  // namespace

std::span<const Command> undoCommands() {
    return kCommands;
}

}  // namespace host
