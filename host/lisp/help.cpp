/// The manual at the prompt: pages of functions and commands, searches, and near names.
#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <utility>

#include "host/command.h"
#include "host/lisp.h"
#include "kz_tls21an/text.h"

namespace host {

namespace {

constexpr size_t kWidth = 78;
constexpr size_t kNearNames = 8;
constexpr size_t kCommentLines = 40;

std::string lowered(const std::string& text) {
    std::u16string units = kz::toUtf16(text);
    for (char16_t& unit : units)
        unit = kz::lowerUnit(unit);
    return kz::toUtf8(units);
}

/// What has a page.
struct Topic {
    std::string name;
    std::string alias;  ///< another name, of a command
    std::string family;
    std::string usage;  ///< what is typed
    std::string help;
    LispFunction function = {};  ///< of a function
    bool isCommand = false;
};

Topic functionTopic(LispFunction function) {
    const bool user = function.kind == LispFunction::Kind::User;
    Topic topic;
    topic.name = user ? lowered(kz::toUtf8(function.name)) : kz::toUtf8(function.name);
    topic.family = user ? "your own" : function.family;
    topic.usage = function.usage.empty() ? "(" + topic.name + " ...)" : function.usage;
    if (!function.result.empty()) topic.usage += " -> " + function.result;
    topic.help = function.help;
    topic.function = std::move(function);
    return topic;
}

Topic commandTopic(const CommandInfo& command) {
    Topic topic;
    topic.isCommand = true;
    topic.name = kz::toUtf8(command.name);
    topic.alias = kz::toUtf8(command.alias);
    topic.family = "commands";
    topic.usage = "command " + topic.name;
    if (!topic.alias.empty()) topic.usage += ", short " + topic.alias;
    topic.help = command.help;
    return topic;
}

std::vector<Topic> allTopics() {
    std::vector<Topic> topics;
    for (LispFunction& function : lispFunctions())
        topics.push_back(functionTopic(std::move(function)));
    for (const CommandInfo& command : commands())
        topics.push_back(commandTopic(command));
    return topics;
}

/// Appends words, broken into lines that begin with `indent` blanks.
void wrap(std::string& out, const std::string& text, size_t indent) {
    std::istringstream words(text);
    size_t column = 0;
    for (std::string word; words >> word;) {
        if (column > 0 && column + 1 + word.size() > kWidth) {
            out += "\n";
            column = 0;
        }
        out += column == 0 ? std::string(indent, ' ') : " ";
        column += column == 0 ? indent : 1;
        out += word;
        column += word.size();
    }
    if (column > 0) out += "\n";
}

/// The comment that stands right above the definition of a user function in its file.
std::string commentAbove(const LispFunction& function) {
    std::ifstream file(kz::toUtf8(function.file));
    std::vector<std::string> comment;
    std::string line;
    for (int number = 1; number < function.line && std::getline(file, line); ++number) {
        const size_t start = line.find_first_not_of("; \t");
        if (line.starts_with(';') && comment.size() < kCommentLines) {
            comment.push_back(start == std::string::npos ? "" : line.substr(start));
        } else {
            comment.clear();
        }
    }
    std::string text;
    for (const std::string& part : comment)
        text += part + "\n";
    return text;
}

/// Lines of an example as a user reads them.
std::string exampleLines(const std::string& lines) {
    std::string text;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(";<")) {
            line.erase(0, std::min<size_t>(line.size(), 3));
            line.insert(0, line.empty() ? "; the user presses Enter" : "; the user answers: ");
        }
        text.append("    ").append(line).append("\n");
    }
    return text;
}

std::string page(const Topic& topic) {
    const LispFunction& function = topic.function;
    std::string text = topic.usage + "\n";
    wrap(text, topic.help, 0);
    if (function.kind == LispFunction::Kind::User && !function.file.empty()) {
        text += commentAbove(function);
        text +=
            "From " + kz::toUtf8(function.file) + ", line " + std::to_string(function.line) + "\n";
    }
    if (!function.examples.empty()) text += "\n" + exampleLines(function.examples);
    return text;
}

/// All names by family.
std::string index(const std::vector<Topic>& topics) {
    std::map<std::string, std::string> language, native, others;
    for (const Topic& topic : topics) {
        using Kind = LispFunction::Kind;
        const bool own = topic.isCommand || topic.function.kind == Kind::User;
        auto& families = own ? others : topic.function.kind == Kind::Language ? language : native;
        families[topic.family] += topic.name + " ";
    }
    std::string text;
    for (const auto* families : {&language, &native, &others}) {
        for (const auto& [family, names] : *families) {
            text += family.empty() ? "native\n" : family + "\n";
            wrap(text, names, 4);
        }
    }
    return text + "(kz_help 'name) tells more, and finds words\n";
}

/// A line for each topic that has the word in its name or text.
std::string search(const std::vector<Topic>& topics, const std::string& word) {
    std::string text;
    for (const Topic& topic : topics) {
        const std::string all = lowered(topic.name + " " + topic.help);
        if (all.find(word) == std::string::npos) continue;
        const std::string sentence = topic.help.substr(0, topic.help.find(". ") + 1);
        std::string line =
            topic.name + std::string(topic.name.size() < 24 ? 24 - topic.name.size() : 1, ' ');
        line += sentence.empty() ? topic.help : sentence;
        const std::u16string units = kz::toUtf16(line);
        text += units.size() > kWidth ? kz::toUtf8(units.substr(0, kWidth - 3)) + "..." : line;
        text += "\n";
    }
    return text;
}

/// Number of letters that are missing, surplus, wrong or swapped.
size_t distance(const std::string& a, const std::string& b) {
    std::vector<size_t> before, row(b.size() + 1), next(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (size_t i = 1; i <= a.size(); ++i) {
        next[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            next[j] = std::min({row[j] + 1, next[j - 1] + 1, row[j - 1] + (a[i - 1] != b[j - 1])});
            const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (swapped) next[j] = std::min(next[j], before[j - 2] + 1);
        }
        before = std::exchange(row, next);
    }
    return row.back();
}

}  // namespace

std::vector<std::u16string> nearLispNames(std::u16string_view word) {
    const std::string wanted = lowered(kz::toUtf8(word));
    const size_t bound = std::min<size_t>(1 + wanted.size() / 4, 4);
    std::vector<std::pair<size_t, std::string>> near;
    for (const Topic& topic : allTopics()) {
        const size_t wrong = distance(wanted, lowered(topic.name));
        if (wrong > 0 && wrong <= bound) near.emplace_back(wrong, topic.name);
    }
    std::sort(near.begin(), near.end());
    near.resize(std::min(near.size(), kNearNames));
    std::vector<std::u16string> names;
    names.reserve(near.size());
    for (const auto& [wrong, name] : near)
        names.push_back(kz::toUtf16(name));
    return names;
}

bool lispHelp(std::u16string_view word, std::u16string& text) {
    const std::vector<Topic> topics = allTopics();
    const std::string wanted = lowered(kz::toUtf8(word));
    std::string found;
    if (wanted.empty()) {
        found = index(topics);
    } else {
        for (const Topic& topic : topics) {
            const bool named = lowered(topic.name) == wanted || lowered(topic.alias) == wanted;
            if (named) found += (found.empty() ? "" : "\n") + page(topic);
        }
        if (found.empty()) found = search(topics, wanted);
    }
    const bool known = !found.empty();
    if (!known) {
        found = "nothing is known of " + kz::toUtf8(word);
        std::string names;
        for (const std::u16string& name : nearLispNames(word))
            names += " " + kz::toUtf8(name);
        found += names.empty() ? "\n" : "; near are:" + names + "\n";
    }
    text = kz::toUtf16(found);
    return known;
}

}  // namespace host
