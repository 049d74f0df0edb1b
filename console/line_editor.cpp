/// Lines from the terminal by libedit.
#include "line_editor.h"

#include <histedit.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <filesystem>

#include "host/lisp.h"
#include "kz_tls21an/text.h"

namespace console {

namespace fs = std::filesystem;

namespace {

constexpr int kHistorySize = 1000;
const char kWordEnds[] = " \t\n()'\";";

/// File of the history; empty when there is no place for it.
std::string historyPath() {
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    fs::path folder;
    if (state && *state) {
        folder = state;
    } else if (home && *home) {
        folder = fs::path(home) / ".local" / "state";
    } else {
        return {};
    }
    folder /= "kz_zaglaid";
    std::error_code error;
    fs::create_directories(folder, error);
    return error ? std::string() : (folder / "history").string();
}

LineEditor* owner(EditLine* editor) {
    void* data = nullptr;
    el_get(editor, EL_CLIENTDATA, &data);
    return static_cast<LineEditor*>(data);
}

char* currentPrompt(EditLine* editor) {
    return const_cast<char*>(owner(editor)->prompt().c_str());
}

std::string commonPrefix(const std::vector<std::string>& names) {
    std::string common = names.front();
    for (const std::string& name : names) {
        const auto ends = std::mismatch(common.begin(), common.end(), name.begin(), name.end());
        common.erase(ends.first, common.end());
    }
    return common;
}

/// Past libedit's own buffer, which knows nothing of it.
void show(const std::string& text) {
    [[maybe_unused]] const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
}

void list(const std::vector<std::string>& names) {
    std::string text = "\n";
    for (const std::string& name : names)
        text += name + "\n";
    show(text);
}

unsigned char complete(EditLine* editor, int) {
    const LineInfo* info = el_line(editor);
    const std::string before(info->buffer, info->cursor);
    const size_t end = before.find_last_of(kWordEnds);
    const std::string prefix = before.substr(end == std::string::npos ? 0 : end + 1);
    const std::vector<std::string> names = completions(prefix);
    if (prefix.empty() || names.empty()) return CC_REFRESH_BEEP;
    std::string text = commonPrefix(names);
    if (names.size() > 1 && text.size() <= prefix.size()) {
        list(names);
        return CC_REDISPLAY;
    }
    if (names.size() == 1) text += ' ';
    el_deletestr(editor, static_cast<int>(prefix.size()));
    return el_insertstr(editor, text.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
}

bool startsWith(std::u16string_view name, std::u16string_view prefix) {
    return name.size() >= prefix.size() &&
           kz::compareNoCase(name.substr(0, prefix.size()), prefix) == 0;
}

std::string lowered(std::u16string name) {
    for (char16_t& unit : name)
        unit = kz::lowerUnit(unit);
    return kz::toUtf8(name);
}

}  // namespace

std::vector<std::string> completions(const std::string& prefix) {
    const std::u16string wanted = kz::toUtf16(prefix);
    std::vector<std::string> names;
    std::vector<std::u16string> folded;
    for (const host::LispFunction& function : host::lispFunctions()) {
        folded.push_back(kz::toUpper(function.name));
        if (!startsWith(function.name, wanted)) continue;
        // Native functions have a spelling of their own; others are known in upper case only.
        const bool own = function.name != folded.back();
        names.push_back(own ? kz::toUtf8(function.name) : lowered(function.name));
    }
    std::sort(folded.begin(), folded.end());
    for (const std::u16string& symbol : host::lispSymbols()) {
        const bool known = std::binary_search(folded.begin(), folded.end(), symbol);
        if (!known && startsWith(symbol, wanted)) names.push_back(lowered(symbol));
    }
    std::sort(names.begin(), names.end());
    return names;
}

LineEditor::LineEditor() : historyFile_(historyPath()) {
    std::setlocale(LC_CTYPE, "");
    editor_ = el_init("kz", stdin, stdout, stderr);
    history_ = history_init();
    HistEvent event;
    ::history(history_, &event, H_SETSIZE, kHistorySize);
    ::history(history_, &event, H_SETUNIQUE, 1);
    if (!historyFile_.empty()) ::history(history_, &event, H_LOAD, historyFile_.c_str());
    el_set(editor_, EL_CLIENTDATA, this);
    el_set(editor_, EL_PROMPT, currentPrompt);
    el_set(editor_, EL_EDITOR, "emacs");
    el_set(editor_, EL_HIST, ::history, history_);
    el_set(editor_, EL_ADDFN, "kz-complete", "Complete a name", complete);
    el_set(editor_, EL_BIND, "^I", "kz-complete", nullptr);
    el_source(editor_, nullptr);
}

LineEditor::~LineEditor() {
    HistEvent event;
    if (!historyFile_.empty()) ::history(history_, &event, H_SAVE, historyFile_.c_str());
    history_end(history_);
    el_end(editor_);
}

LineEditor::Event LineEditor::read(const std::string& prompt, std::string& line) {
    prompt_ = prompt;
    int count = 0;
    errno = 0;
    const char* text = el_gets(editor_, &count);
    if (!text || count <= 0) {
        if (errno != EINTR) return Event::End;
        el_reset(editor_);
        show("\n");
        return Event::Cancelled;
    }
    line.assign(text, static_cast<size_t>(count));
    return Event::Line;
}

void LineEditor::remember(const std::string& expression) {
    HistEvent event;
    ::history(history_, &event, H_ENTER, expression.c_str());
}

}  // namespace console
