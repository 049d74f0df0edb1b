/// Names for half-typed words.
#include "completion.h"

#include <algorithm>
#include <filesystem>

#include "host/command.h"
#include "host/lisp.h"
#include "kz_tls21an/text.h"

namespace console {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kWordEnds = " \t\n()'\";";

bool startsWith(std::u16string_view name, std::u16string_view prefix) {
    return name.size() >= prefix.size() &&
           kz::compareNoCase(name.substr(0, prefix.size()), prefix) == 0;
}

/// A name that has no case of its own, in that of what was typed.
std::string inCaseOf(std::u16string name, const std::string& typed) {
    const bool small = std::any_of(typed.begin(), typed.end(),
                                   [](char unit) { return unit >= 'a' && unit <= 'z'; });
    const bool capital = std::any_of(typed.begin(), typed.end(),
                                     [](char unit) { return unit >= 'A' && unit <= 'Z'; });
    for (char16_t& unit : name)
        unit = capital && !small ? kz::upperUnit(unit) : kz::lowerUnit(unit);
    return kz::toUtf8(name);
}

/// Names under construction: those that begin with what was typed.
class Names {
  public:
    explicit Names(std::string typed) : typed_(std::move(typed)), prefix_(kz::toUtf16(typed_)) {}

    void add(const std::u16string& name) {
        if (startsWith(name, prefix_)) names_.push_back(inCaseOf(name, typed_));
    }
    void addAsIs(const std::u16string& name) {
        if (startsWith(name, prefix_)) names_.push_back(kz::toUtf8(name));
    }
    void addFunctions() {
        for (const host::LispFunction& function : host::lispFunctions()) {
            const bool own = function.kind == host::LispFunction::Kind::Native;
            own ? addAsIs(function.name) : add(function.name);
        }
    }
    /// Variables; functions have been added.
    void addVariables() {
        std::vector<std::u16string> functions;
        for (const host::LispFunction& function : host::lispFunctions())
            functions.push_back(kz::toUpper(function.name));
        std::sort(functions.begin(), functions.end());
        for (const std::u16string& symbol : host::lispSymbols())
            if (!std::binary_search(functions.begin(), functions.end(), symbol)) add(symbol);
    }
    void addCommands() {
        for (const host::CommandInfo& command : host::commands())
            add(command.name);
        for (const char16_t* word : {u"QUIT", u"HELP"})
            add(word);
        for (const std::u16string& symbol : host::lispSymbols())
            if (symbol.starts_with(u"C:")) add(symbol.substr(2));
    }
    Completion take(std::string behind) {
        std::sort(names_.begin(), names_.end());
        names_.erase(std::unique(names_.begin(), names_.end()), names_.end());
        return {typed_.size(), std::move(names_), std::move(behind)};
    }

  private:
    std::string typed_;
    std::u16string prefix_;
    std::vector<std::string> names_;
};

/// Files and folders whose path begins with what was typed.
Completion files(const std::string& typed, const std::string& behind) {
    const size_t slash = typed.find_last_of('/') + 1;
    const std::string folder = typed.substr(0, slash);
    const std::string prefix = typed.substr(slash);
    Completion completion{prefix.size(), {}, behind};
    std::error_code error;
    for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), end;
         !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (!name.starts_with(prefix) || (prefix.empty() && name.starts_with('.'))) continue;
        std::error_code ignored;
        completion.names.push_back(name + (entry->is_directory(ignored) ? "/" : ""));
    }
    std::sort(completion.names.begin(), completion.names.end());
    if (completion.names.size() == 1 && completion.names[0].ends_with('/'))
        completion.behind.clear();
    return completion;
}

/// What the last word of a line is asked for behind a command.
Completion commandAnswer(const std::string& first, const std::string& line) {
    if (kz::compareNoCase(kz::toUtf16(first), u"saveas") == 0)
        return files(line.substr(line.find(first) + first.size() + 1), "");
    return {};
}

}  // namespace

Completion completeExpression(const ExpressionScanner& open, const std::string& line) {
    ExpressionScanner scanner = open;
    scanner.feed(line);
    if (scanner.inComment()) return {};
    if (scanner.inText()) return files(line.substr(line.rfind('"') + 1), "\"");
    const size_t first = line.find_first_not_of(" \t");
    const std::string head = first == std::string::npos ? "" : line.substr(first);
    size_t start = line.find_last_of(kWordEnds);
    start = start == std::string::npos ? 0 : start + 1;
    const bool plain = open.complete() && head.find_first_of("()'\"") == std::string::npos;
    if (plain && (head.starts_with('!') || head.starts_with('?'))) {
        Names names(line.substr(std::max(start, first + 1)));
        names.addFunctions();
        head[0] == '!' ? names.addVariables() : names.addCommands();
        return names.take("");
    }
    if (plain && start > first)
        return commandAnswer(head.substr(0, head.find_first_of(" \t")), line);
    Names names(line.substr(start));
    if (plain) {
        if (start == line.size()) return {};  // nothing is typed yet
        names.addCommands();
        return names.take(" ");
    }
    const bool called = start > 0 && line[start - 1] == '(';
    if (start == line.size() && !called) return {};
    names.addFunctions();
    if (!called) names.addVariables();
    return names.take(" ");
}

Completion completeAnswer(const std::string& prompt, const std::string& line) {
    const size_t open = prompt.find('['), close = prompt.find(']', open);
    Names names(line);
    for (size_t at = open; at < close && close != std::string::npos;) {
        const size_t next = std::min(prompt.find('/', at + 1), close);
        const std::string word = prompt.substr(at + 1, next - at - 1);
        names.addAsIs(kz::toUtf16(word.substr(0, word.find(' '))));
        at = next;
    }
    Completion completion = names.take("");
    return completion.names.empty() ? files(line, "") : completion;
}

std::string commonPrefix(const std::vector<std::string>& names) {
    std::string common = names.front();
    for (const std::string& name : names) {
        const auto ends = std::mismatch(common.begin(), common.end(), name.begin(), name.end());
        common.erase(ends.first, common.end());
    }
    return common;
}

}  // namespace console
