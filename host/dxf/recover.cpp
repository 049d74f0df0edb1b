/// Recovery: lines to pairs, pairs to objects, objects to sections, each as far as it goes.
#include "dxf/recover.h"

#include <algorithm>
#include <deque>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "db/tags.h"
#include "dxf/values.h"

namespace host::dxf {
namespace {

constexpr int kGreatestCode = kMaxGroupCode;
constexpr int kComment = 999;

/// A pair with the line that its code stands on.
struct LinePair {
    int code = 0;
    std::string_view value;  ///< without its line end
    size_t line = 0;
};

std::string count(size_t number, const char* what) {
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

/// Lines to pairs. A line that can't be a group code goes alone, so the pairs find into step again
/// when a line got lost.
class LineReader {
  public:
    LineReader(std::string_view text, RecoveryReport& report) : text_(text), report_(report) {}

    bool next(LinePair& pair) {
        std::string_view code_line;
        while (takeLine(code_line)) {
            const size_t line = line_;
            if (!isCode(code_line, pair.code)) {
                if (!trimmed(code_line).empty() || at_ < text_.size()) noteBad(line, code_line);
                continue;
            }
            flushBad();
            pair.line = line;
            if (takeLine(pair.value)) return true;
            report_.dropped(line, "a group code at the end of the file");
        }
        flushBad();
        return false;
    }

    size_t line() const { return line_; }

  private:
    bool takeLine(std::string_view& line) {
        if (at_ >= text_.size()) return false;
        const size_t end = std::min(text_.find_first_of("\n\r", at_), text_.size());
        line = text_.substr(at_, end - at_);
        at_ = end + 1;
        if (end + 1 < text_.size() && text_[end] == '\r' && text_[end + 1] == '\n') ++at_;
        ++line_;
        return true;
    }

    static bool isCode(std::string_view line, int& code) {
        line = trimmed(line);
        if (line.empty() || line.size() > 4 ||
            !std::all_of(line.begin(), line.end(), [](char c) { return isDigit(c); })) {
            return false;
        }
        code = static_cast<int>(integerOf(line));
        return code <= kGreatestCode;
    }

    /// Lines without a meaning that follow each other are told once.
    void noteBad(size_t line, std::string_view text) {
        if (bad_count_++ > 0) return;
        bad_line_ = line;
        bad_text_ = printable(text);
    }
    void flushBad() {
        if (bad_count_ == 0) return;
        report_.dropped(bad_line_, count(bad_count_, "line") + " where a group code should be, \"" +
                                       bad_text_ + "\"");
        bad_count_ = 0;
    }
    static std::string printable(std::string_view text) {
        std::string out(trimmed(text).substr(0, 40));
        for (char& c : out)
            c = static_cast<unsigned char>(c) < 0x20 ? '?' : c;
        return out;
    }

    std::string_view text_;
    RecoveryReport& report_;
    size_t at_ = 0;
    size_t line_ = 0;
    size_t bad_count_ = 0;
    size_t bad_line_ = 0;
    std::string bad_text_;
};

/// Things with names, in the order in which they were found.
template <class Item>
class NamedItems {
  public:
    /// The item of this name, a new one at first. @return with true for a new one
    std::pair<Item&, bool> at(std::string_view name) {
        const auto [found, made] = by_name_.try_emplace(std::string(name), nullptr);
        if (made) found->second = &items_.emplace_back(Item{std::string(name), {}, {}});
        return {*found->second, made};
    }
    std::deque<Item>& all() { return items_; }

  private:
    std::deque<Item> items_;
    std::unordered_map<std::string, Item*> by_name_;
};

/// Objects to sections. Text is written as it is found to be good.
class Recovery {
  public:
    Recovery(std::string_view text, RecoveryReport& report)
        : lines_(text, report), report_(report) {}

    std::string run() {
        step();
        bool ended = false;
        while (more_ && !ended) {
            if (isMarker("EOF")) {
                ended = true;
            } else if (isMarker("SECTION")) {
                readSection();
            } else {
                readStray();
            }
        }
        if (sections_.all().empty()) return {};
        if (!ended) report_.mended(lines_.line(), "the end of the file (EOF) is missing");
        return written();
    }

  private:
    struct Object {
        std::string text;
        std::string type;
        std::string name;        ///< first group 2
        std::string other_name;  ///< first group 3
        size_t line = 0;
    };
    struct Table {
        std::string name;
        std::string head;
        std::string records;
    };
    struct Section {
        std::string name;
        std::string text;
        std::string comments;  ///< in front of it
    };

    // --- text -----------------------------------------------------------------------------------

    void put(int code, std::string_view value) { put(*out_, code, value); }
    static void put(std::string& out, int code, std::string_view value) {
        writeCode(code, out);
        out += value;
        out += '\n';
    }

    bool isMarker(std::string_view name) const {
        return pair_.code == 0 && trimmed(pair_.value) == name;
    }
    bool atSectionEnd() const {
        return !more_ || isMarker("ENDSEC") || isMarker("SECTION") || isMarker("EOF");
    }
    void step() {
        more_ = lines_.next(pair_);
        if (!more_ || pair_.value.find('\0') == std::string_view::npos) return;
        clean_ = pair_.value;
        std::erase(clean_, '\0');
        pair_.value = clean_;
        report_.mended(pair_.line, "NUL characters in a text");
    }

    // --- sections -------------------------------------------------------------------------------

    /// What follows belongs to the section of this name, which may have been open before.
    void openSection(std::string_view name) {
        const auto [section, made] = sections_.at(name);
        if (made) {
            section.comments = std::exchange(comments_, {});
        } else {
            report_.mended(line(), "section " + section.name + " in two parts");
        }
        out_ = &section.text;
        open_ = name;
    }

    /// Where readers expect a section: the lower, the earlier.
    static size_t placeOf(const Section& section) {
        static constexpr std::string_view kOrder[] = {"HEADER", "CLASSES",  "TABLES",
                                                      "BLOCKS", "ENTITIES", "OBJECTS"};
        return static_cast<size_t>(std::find(std::begin(kOrder), std::end(kOrder), section.name) -
                                   std::begin(kOrder));
    }

    /// All that was found, section by section.
    std::string written() {
        const auto earlier = [](const Section& a, const Section& b) {
            return placeOf(a) < placeOf(b);
        };
        std::deque<Section>& sections = sections_.all();
        if (!std::is_sorted(sections.begin(), sections.end(), earlier)) {
            report_.mended(0, "sections in another order than usual");
            std::stable_sort(sections.begin(), sections.end(), earlier);
        }
        std::string text;
        for (Section& section : sections) {
            text += section.comments;
            put(text, 0, "SECTION");
            put(text, 2, section.name);
            if (section.name == "TABLES") writeTables(text);
            text += std::exchange(section.text, {});
            put(text, 0, "ENDSEC");
        }
        text += comments_;
        put(text, 0, "EOF");
        return text;
    }

    size_t line() const { return more_ ? pair_.line : lines_.line(); }

    void readSection() {
        const size_t line = pair_.line;
        step();
        std::string name;
        if (more_ && pair_.code == 2) {
            name = trimmed(pair_.value);
            step();
        }
        // What is in a section without a name tells where it belongs.
        if (name.empty()) return report_.mended(line, "a section without a name");
        openSection(name);
        readContents(name);
        endSection();
    }

    void endSection() {
        if (more_ && isMarker("ENDSEC")) return step();
        report_.mended(line(), "section " + open_ + " had no end");
    }

    /// What stands between sections goes where such things belong.
    void readStray() {
        const size_t line = pair_.line;
        const std::string name(home());
        if (name.empty()) {
            size_t groups = 0;
            do {
                if (pair_.code == kComment) {
                    comments_ += soundPair();
                } else {
                    ++groups;
                }
                step();
            } while (more_ && home().empty() && !isMarker("SECTION") && !isMarker("EOF"));
            if (groups > 0)
                report_.dropped(line, count(groups, "group") + " outside of any section");
            return;
        }
        if (name == open_) {
            report_.mended(line, "section " + name + " was closed too early");
        } else {
            report_.mended(line, "section " + name + " had no beginning");
            openSection(name);
        }
        readContents(name);
        endSection();
    }

    /// The section where the present pair can begin something; empty for none.
    std::string_view home() const {
        if (pair_.code == 9) return "HEADER";
        if (pair_.code != 0) return {};
        const std::string_view type = trimmed(pair_.value);
        if (type == "TABLE" || isTableRecord(type)) return "TABLES";
        if (type == "BLOCK") return "BLOCKS";
        if (type == "CLASS") return "CLASSES";
        if (type == "DICTIONARY" || type == "XRECORD") return "OBJECTS";
        if (type.empty() || type == "ENDSEC" || type == "ENDTAB" || type == "ENDBLK") return {};
        return open_ == "OBJECTS" ? "OBJECTS" : "ENTITIES";
    }

    /// Takes comments and drops ends of what never began. @return true at something
    bool atObject() {
        while (more_) {
            if (pair_.code == kComment) {
                *out_ += soundPair();
                step();
            } else if (pair_.code != 0 || isMarker("ENDTAB") || isMarker("ENDBLK")) {
                dropObject();
            } else {
                break;
            }
        }
        return !atSectionEnd();
    }

    void readContents(const std::string& name) {
        if (name == "HEADER") {
            readHeader();
        } else if (name == "TABLES") {
            readTables();
        } else if (name == "BLOCKS") {
            readBlocks();
        } else if (name == "ENTITIES" || name == "OBJECTS" || name == "CLASSES") {
            readObjects(name);
        } else {
            for (; !atSectionEnd(); step())
                *out_ += soundPair();
        }
    }

    void readHeader() {
        bool in_variable = false;
        for (; !atSectionEnd() && pair_.code != 0; step()) {
            if (pair_.code == 9) in_variable = true;
            if (in_variable) {
                *out_ += soundPair();
            } else {
                report_.dropped(pair_.line, "a header value without a variable");
            }
        }
    }

    void readTables() {
        while (atObject()) {
            if (isMarker("TABLE")) {
                readTable();
            } else if (isTableRecord(trimmed(pair_.value))) {
                const Object record = readObject();
                report_.mended(record.line,
                               "a record of " + record.type + " stood outside of any table");
                tables_.at(record.type).first.records += record.text;
            } else {
                break;
            }
        }
    }

    /// The records of a table that stands twice are joined.
    void readTable() {
        const Object head = readObject();
        Table* present = nullptr;
        if (head.name.empty()) {
            report_.mended(head.line, "a table without a name");
        } else {
            present = &tables_.at(upperAscii(head.name)).first;
            if (!present->head.empty())
                report_.mended(head.line, "table " + head.name + " stood twice");
            if (present->head.empty()) present->head = head.text;
        }
        while (!atSectionEnd() && !isMarker("ENDTAB") && !isMarker("TABLE")) {
            const Object record = readObject();
            const bool known = isTableRecord(record.type);
            if (present != nullptr && (record.type == present->name || !known)) {
                present->records += record.text;
            } else if (known) {
                // The end of one table and the head of the next got lost.
                if (present != nullptr) {
                    report_.mended(record.line, "a record of " + record.type + " stood in table " +
                                                    present->name);
                }
                tables_.at(record.type).first.records += record.text;
            } else {
                report_.dropped(record.line,
                                "a record of " + record.type + " in a table without a name");
            }
        }
        if (more_ && isMarker("ENDTAB")) {
            step();
            for (; more_ && pair_.code != 0; step()) {
            }
        } else {
            report_.mended(line(), "table " + head.name + " had no end");
        }
    }

    void writeTables(std::string& text) {
        for (Table& table : tables_.all()) {
            if (table.head.empty()) {
                put(text, 0, "TABLE");
                put(text, 2, table.name);
                put(text, 70, "0");
            }
            text += table.head;
            text += std::exchange(table.records, {});
            put(text, 0, "ENDTAB");
        }
    }

    void readBlocks() {
        while (atObject()) {
            if (isMarker("BLOCK")) {
                readBlock();
            } else if (home() == "ENTITIES") {
                const std::string name = newBlockName();
                report_.mended(pair_.line,
                               "entities outside of any block are in a block " + name + " now");
                put(0, "BLOCK");
                put(8, "0");
                put(2, name);
                put(70, "0");
                put(10, "0.0");
                put(20, "0.0");
                put(30, "0.0");
                readBlockContents(name);
            } else {
                break;
            }
        }
    }

    std::string newBlockName() { return "RECOVERED" + std::to_string(++named_blocks_); }

    void readBlock() {
        Object begin = readObject();
        if (begin.name.empty()) {
            begin.name = begin.other_name.empty() ? newBlockName() : begin.other_name;
            report_.mended(begin.line, "a block without a name is called " + begin.name);
            // Behind the type, where it can't be in data of others.
            std::string name;
            put(name, 2, begin.name);
            begin.text.insert(begin.text.find('\n', begin.text.find('\n') + 1) + 1, name);
        }
        *out_ += begin.text;
        readBlockContents(begin.name);
    }

    void readBlockContents(const std::string& name) {
        while (!atSectionEnd() && home() == "ENTITIES")
            *out_ += readObject().text;
        if (more_ && isMarker("ENDBLK")) {
            *out_ += readObject().text;
        } else {
            report_.mended(line(), "block " + name + " had no end");
            put(0, "ENDBLK");
            put(8, "0");
        }
    }

    void readObjects(std::string_view name) {
        while (atObject() && home() == name)
            *out_ += readObject().text;
    }

    // --- objects --------------------------------------------------------------------------------

    /// Drops the present pair with all up to the next object.
    void dropObject() {
        const std::string what =
            pair_.code == 0 ? "\"" + std::string(trimmed(pair_.value)) + "\"" : "groups";
        report_.dropped(pair_.line, what + (open_.empty() ? "" : " in section " + open_) +
                                        " that belong" + (pair_.code == 0 ? "s" : "") +
                                        " to nothing");
        do
            step();
        while (more_ && pair_.code != 0);
    }

    Object readObject() {
        Object object;
        object.line = pair_.line;
        object.type = trimmed(pair_.value);
        object.text = soundPair();
        const int handle_code = object.type == "DIMSTYLE" ? 105 : 5;
        const bool needs_name = object.type == "BLOCK" || object.type == "TABLE";
        bool has_handle = false, in_braces = false, in_xdata = false;
        for (step(); more_ && pair_.code != 0; step()) {
            const std::string_view value = trimmed(pair_.value);
            if (pair_.code == 1001) in_xdata = true;
            if (pair_.code == 102) in_braces = value.starts_with('{');
            if (pair_.code == handle_code && !has_handle && !in_braces && !in_xdata) {
                has_handle = takeHandle(object);
                if (!has_handle) continue;
            }
            if (pair_.code == 2 && value.empty() && needs_name) continue;
            const bool own = !in_xdata && !in_braces;
            if (own && pair_.code == 2 && object.name.empty()) object.name = value;
            if (own && pair_.code == 3 && object.other_name.empty()) object.other_name = value;
            object.text += soundPair();
        }
        return object;
    }

    /// False for a handle that is none or stands on another object already.
    bool takeHandle(const Object& object) {
        uint64_t handle = 0;
        if (!parseHandle(pair_.value, handle) || handle == 0) {
            report_.mended(pair_.line, quoted(pair_.value) + " is no handle; the " + object.type +
                                           " gets a new one");
            return false;
        }
        if (handles_.insert(handle).second) return true;
        report_.mended(pair_.line, "handle " + std::string(trimmed(pair_.value)) +
                                       " stands twice; the " + object.type + " gets a new one");
        return false;
    }

    /// The present pair as text, its value put right.
    std::string soundPair() {
        std::string text;
        Pair pair;
        pair.code = pair_.code;
        pair.value = pair_.value;
        if (!isSoundValue(pair)) {
            const std::string number = soundNumber(pair);
            report_.mended(pair_.line, "group " + std::to_string(pair.code) + " holds " +
                                           quoted(pair.value) + "; " + number + " in its place");
            put(text, pair.code, number);
        } else {
            put(text, pair.code, pair.value);
        }
        return text;
    }

    /// The number that a bad value begins with, 0 for none.
    static std::string soundNumber(const Pair& pair) {
        const bool real = groupType(pair.code) == GroupType::Real;
        constexpr size_t kLongest = 64;
        std::string_view value = trimmed(pair.value).substr(0, kLongest);
        while (!value.empty()) {
            if (real ? isReal(value) : isInteger(value)) return std::string(value);
            value.remove_suffix(1);
        }
        return real ? "0.0" : "0";
    }

    LineReader lines_;
    RecoveryReport& report_;
    LinePair pair_;
    std::string clean_;  ///< value of the pair when it had to be cleaned
    bool more_ = false;
    NamedItems<Section> sections_;
    NamedItems<Table> tables_;
    std::string comments_;        ///< between sections
    std::string open_;            ///< section that is read
    std::string* out_ = nullptr;  ///< text of that section
    std::unordered_set<uint64_t> handles_;
    size_t named_blocks_ = 0;
};

}  // namespace

void RecoveryReport::note(size_t line, const std::string& what, size_t& counter) {
    ++counter;
    if (lines_.size() >= kReportLines) return;
    const char* verb = &counter == &dropped_ ? "dropped: " : "mended: ";
    lines_.push_back((line == 0 ? std::string() : "line " + std::to_string(line) + ": ") + verb +
                     what);
}

std::vector<std::string> RecoveryReport::lines() const {
    std::vector<std::string> lines = lines_;
    const size_t all = mended_ + dropped_;
    if (all > lines_.size())
        lines.push_back("and " + std::to_string(all - lines_.size()) + " more");
    lines.push_back(count(mended_, "fault") + " mended, " + std::to_string(dropped_) + " dropped");
    return lines;
}

std::string recoverText(std::string_view text, RecoveryReport& report) {
    return Recovery(text, report).run();
}

}  // namespace host::dxf
