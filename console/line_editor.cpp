/// Lines from the terminal by libedit.
#include "line_editor.h"

#include <histedit.h>
#include <langinfo.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstring>
#include <vector>

#include "kz_tls21an/text.h"

namespace console {

namespace {

/// What the history of a running console holds.
constexpr int kHistorySize = static_cast<int>(HistoryFile::kEntries);
/// How long the cursor rests on the parenthesis that was closed [ms].
constexpr int kBlink = 400;
/// Names that are listed at once.
constexpr size_t kListed = 300;
// Terminals that know it mark what is pasted, so that it isn't taken for keys.
constexpr char kPasteOn[] = "\x1b[?2004h", kPasteOff[] = "\x1b[?2004l";
constexpr char kPasteBegin[] = "\x1b[200~", kPasteEnd[] = "\x1b[201~";

LineEditor* owner(EditLine* editor) {
    void* data = nullptr;
    el_get(editor, EL_CLIENTDATA, &data);
    return static_cast<LineEditor*>(data);
}

char* currentPrompt(EditLine* editor) {
    return const_cast<char*>(owner(editor)->prompt().c_str());
}

/// Past libedit's own buffer, which knows nothing of it.
void show(const std::string& text) {
    [[maybe_unused]] const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
}

std::string beforeCursor(EditLine* editor) {
    const LineInfo* info = el_line(editor);
    return {info->buffer, info->cursor};
}

bool inputWaits(int milliseconds) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return ::poll(&input, 1, milliseconds) > 0;
}

/// Characters of a text, which libedit counts.
size_t characters(std::string_view text) {
    return static_cast<size_t>(
        std::count_if(text.begin(), text.end(), [](char unit) { return (unit & 0xC0) != 0x80; }));
}

/// Columns of the terminal.
size_t terminalWidth() {
    winsize size{};
    const bool known = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

/// One byte of the terminal. Ctrl-C gets through only while it is waited for, so that none is lost
/// in between. @return as read
ssize_t readByte(unsigned char& byte) {
    sigset_t open;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &open);
    sigdelset(&open, SIGINT);
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (::ppoll(&input, 1, nullptr, &open) < 0) return -1;
    return ::read(STDIN_FILENO, &byte, 1);
}

/// One character for libedit, 0 at the end of the input, -1 for a signal.
int readCharacter(EditLine*, wchar_t* character) {
    unsigned char byte = 0;
    if (const ssize_t got = readByte(byte); got != 1) return static_cast<int>(got);
    int more = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : byte >= 0xC0 ? 1 : 0;
    auto code = static_cast<wchar_t>(more == 0 ? byte : byte & (0x3F >> more));
    for (; more > 0; --more) {
        if (const ssize_t got = readByte(byte); got != 1) return static_cast<int>(got);
        code = static_cast<wchar_t>(code << 6 | (byte & 0x3F));
    }
    *character = code;
    return 1;
}

/// Holds Ctrl-C back as long as it lives.
class HoldsInterrupt {
  public:
    HoldsInterrupt() {
        sigset_t held;
        sigemptyset(&held);
        sigaddset(&held, SIGINT);
        ::pthread_sigmask(SIG_BLOCK, &held, &before_);
    }
    ~HoldsInterrupt() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    HoldsInterrupt(const HoldsInterrupt&) = delete;
    HoldsInterrupt& operator=(const HoldsInterrupt&) = delete;

  private:
    sigset_t before_{};
};

/// Names in columns, as many as the terminal has room for.
void list(const std::vector<std::string>& names) {
    size_t width = 1;
    for (const std::string& name : names)
        width = std::max(width, name.size() + 2);
    const size_t columns = std::max<size_t>(terminalWidth() / width, 1);
    const size_t count = std::min(names.size(), kListed);
    const size_t rows = (count + columns - 1) / columns;
    std::string text = "\n";
    for (size_t row = 0; row < rows; ++row) {
        for (size_t i = row; i < count; i += rows)
            text += names[i] + (i + rows < count ? std::string(width - names[i].size(), ' ') : "");
        text += "\n";
    }
    if (count < names.size()) text += "and " + std::to_string(names.size() - count) + " more\n";
    show(text);
}

unsigned char onTab(EditLine* editor, int) {
    const std::string before = beforeCursor(editor);
    // A tab that indents is blanks.
    const bool indents = before.find_first_not_of(' ') == std::string::npos;
    if (indents) return el_insertstr(editor, "  ") == 0 ? CC_REFRESH : CC_ERROR;
    const Completion completion = owner(editor)->complete(before);
    if (completion.names.empty()) return CC_REFRESH_BEEP;
    std::string text = commonPrefix(completion.names);
    if (completion.names.size() > 1 && text.size() <= completion.length) {
        list(completion.names);
        return CC_REDISPLAY;
    }
    if (completion.names.size() == 1) text += completion.behind;
    // libedit counts characters.
    const std::string typed = before.substr(before.size() - completion.length);
    el_deletestr(editor, static_cast<int>(characters(typed)));
    return el_insertstr(editor, text.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
}

/// A closing parenthesis: the cursor rests on the one that it closes until the next key. It is
/// moved past libedit, which draws the parenthesis afterwards, and only within a row.
unsigned char onClosing(EditLine* editor, int) {
    const std::string before = beforeCursor(editor) + ")";
    if (el_insertstr(editor, ")") != 0) return CC_ERROR;
    if (inputWaits(0)) return CC_REFRESH;
    const size_t opening = owner(editor)->opening(before);
    if (opening == std::string::npos) return CC_REFRESH;
    const size_t back = characters(std::string_view(before).substr(opening));
    const size_t column = characters(owner(editor)->prompt()) + characters(before);
    const size_t width = terminalWidth();
    if (column % width == 0 || (column - back) / width != column / width) return CC_REFRESH;
    show(")\x1b[" + std::to_string(back) + "D");
    inputWaits(kBlink);
    if (back > 1) show("\x1b[" + std::to_string(back - 1) + "C");
    return CC_REFRESH;
}

/// Takes off what stands behind the cursor.
std::string takeBehindCursor(EditLine* editor) {
    const LineInfo* info = el_line(editor);
    std::string behind(info->cursor, info->lastchar);
    const auto units = static_cast<int>(std::count_if(
        behind.begin(), behind.end(), [](char unit) { return (unit & 0xC0) != 0x80; }));
    el_cursor(editor, units);
    el_deletestr(editor, units);
    return behind;
}

/// What the terminal marks as pasted: its lines are taken as they are, and the last one, which has
/// no end, can still be edited.
unsigned char onPaste(EditLine* editor, int) {
    LineEditor& lines = *owner(editor);
    if (lines.pasteWaits()) {
        el_insertstr(editor, lines.takePasted().c_str());
        return CC_REFRESH;
    }
    std::string text;
    unsigned char unit = 0;
    while (!text.ends_with(kPasteEnd) && readByte(unit) == 1)
        text += unit == '\r' ? '\n' : static_cast<char>(unit);
    if (text.ends_with(kPasteEnd)) text.resize(text.size() - std::strlen(kPasteEnd));
    std::erase_if(text, [](char key) {
        const bool plain = static_cast<unsigned char>(key) >= ' ' && key != '\x7f';
        return !plain && key != '\n' && key != '\t';
    });
    const size_t end = text.find('\n');
    if (end == std::string::npos) {
        el_insertstr(editor, text.c_str());
        return CC_REFRESH;
    }
    lines.paste(text.substr(end + 1) + takeBehindCursor(editor));
    el_insertstr(editor, text.substr(0, end).c_str());
    el_push(editor, "\n");
    return CC_REFRESH;
}

}  // namespace

LineEditor::LineEditor() {
    // Text is UTF-8, whatever the locale says.
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) std::setlocale(LC_CTYPE, "C.UTF-8");
    editor_ = el_init("kz", stdin, stdout, stderr);
    history_ = history_init();
    HistEvent event;
    ::history(history_, &event, H_SETSIZE, kHistorySize);
    for (const std::string& entry : file_.read())
        ::history(history_, &event, H_ENTER, entry.c_str());
    el_set(editor_, EL_CLIENTDATA, this);
    el_set(editor_, EL_PROMPT, currentPrompt);
    el_set(editor_, EL_EDITOR, "emacs");
    el_set(editor_, EL_HIST, ::history, history_);
    el_set(editor_, EL_GETCFN, readCharacter);
    el_set(editor_, EL_ADDFN, "kz-complete", "Complete a name", onTab);
    el_set(editor_, EL_ADDFN, "kz-close", "Show the matching parenthesis", onClosing);
    el_set(editor_, EL_ADDFN, "kz-paste", "Take what is pasted", onPaste);
    el_set(editor_, EL_BIND, "^I", "kz-complete", nullptr);
    el_set(editor_, EL_BIND, ")", "kz-close", nullptr);
    el_set(editor_, EL_BIND, kPasteBegin, "kz-paste", nullptr);
    el_set(editor_, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    el_source(editor_, nullptr);
}

LineEditor::~LineEditor() {
    history_end(history_);
    el_end(editor_);
}

LineEditor::Event LineEditor::readExpression(const std::string& prompt,
                                             const ExpressionScanner& open, std::string& line) {
    prompt_ = prompt;
    open_ = open;
    answers_ = false;
    return read(line);
}

LineEditor::Event LineEditor::readAnswer(const std::string& prompt, std::string& line) {
    prompt_ = prompt;
    open_ = {};
    answers_ = true;
    return read(line);
}

LineEditor::Event LineEditor::read(std::string& line) {
    if (const size_t end = pasted_.find('\n'); end != std::string::npos) {
        line = pasted_.substr(0, end + 1);
        pasted_.erase(0, end + 1);
        show(prompt_ + line);
        return Event::Line;
    }
    const HoldsInterrupt holds;
    int count = 0;
    errno = 0;
    show(kPasteOn);
    if (pasteWaits()) el_push(editor_, kPasteBegin);
    const char* text = el_gets(editor_, &count);
    const int reason = errno;
    show(kPasteOff);
    if (!text || count <= 0) {
        if (reason != EINTR) return Event::End;
        pasted_.clear();
        el_reset(editor_);
        show("\n");
        return Event::Cancelled;
    }
    line.assign(text, static_cast<size_t>(count));
    return Event::Line;
}

size_t LineEditor::opening(const std::string& line) const {
    ExpressionScanner scanner = open_;
    std::vector<size_t> open;
    size_t closed = std::string::npos;
    for (size_t i = 0; i < line.size(); ++i) {
        const int before = scanner.openLists();
        scanner.step(line[i]);
        closed = std::string::npos;
        if (scanner.openLists() > before) open.push_back(i);
        if (scanner.openLists() < before && !open.empty()) {
            closed = open.back();
            open.pop_back();
        }
    }
    return closed;
}

void LineEditor::remember(const std::string& expression) {
    const std::string entry = onOneLine(expression);
    if (entry.empty()) return;
    HistEvent event;
    // An earlier one that is the same goes.
    for (int found = ::history(history_, &event, H_FIRST); found >= 0;
         found = ::history(history_, &event, H_NEXT)) {
        if (entry != event.str) continue;
        ::history(history_, &event, H_DEL, event.num);
        break;
    }
    ::history(history_, &event, H_ENTER, entry.c_str());
    file_.append(entry);
}

}  // namespace console
