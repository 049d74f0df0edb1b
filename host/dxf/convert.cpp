/// The pass over a drawing's text that makes it one of another version. An object that holds
/// nothing of interest is taken as it stands, the others are written anew pair by pair.
#include "dxf/convert.h"

#include <algorithm>
#include <map>
#include <unordered_set>

#include "base/progress.h"
#include "dxf/transcode.h"
#include "dxf/version_rules.h"
#include "dxf/versions.h"
#include "plot/styles.h"

namespace host::dxf {
namespace {

/// Kept text that is shorter goes into the new text around it.
constexpr size_t kSmall = 4096;
/// New texts are cut at about this size.
constexpr size_t kBlock = size_t{1} << 20U;

/// Puts a text together from what is kept and what is new.
class Assembly {
  public:
    explicit Assembly(Composition& out) : out_(out) {}

    void keep(const char* begin, const char* end) {
        if (begin != kept_end_) {
            settle();
            kept_begin_ = begin;
        }
        kept_end_ = end;
    }
    /// New text goes behind what is there.
    std::string& made() {
        settle();
        if (text_.size() > kBlock) flush();
        return text_;
    }
    void finish() {
        settle();
        flush();
    }

  private:
    void settle() {
        const auto size = static_cast<size_t>(kept_end_ - kept_begin_);
        if (size >= kSmall) {
            flush();
            out_.pieces.emplace_back(kept_begin_, size);
        } else if (size > 0) {
            text_.append(kept_begin_, size);
        }
        kept_begin_ = kept_end_ = nullptr;
    }
    void flush() {
        if (text_.empty()) return;
        const size_t size = text_.size();
        text_.append(kImagePadding, '\0');
        out_.made.push_back(std::move(text_));
        text_.clear();
        out_.pieces.emplace_back(out_.made.back().data(), size);
    }

    Composition& out_;
    const char* kept_begin_ = nullptr;
    const char* kept_end_ = nullptr;
    std::string text_;
};

bool isReference(int code) {
    return (code >= 320 && code <= 369) || (code >= 390 && code <= 399) || code == 480 ||
           code == 481;
}

bool isBody(std::string_view type) {
    return type == "3DSOLID" || type == "BODY" || type == "REGION" || type.ends_with("SURFACE");
}

/// The colour index that comes closest to red, green and blue in 24 bits.
int nearestIndex(int64_t rgb) {
    const auto part = [rgb](unsigned shift) {
        return static_cast<int>(static_cast<uint64_t>(rgb) >> shift & 0xFFU);
    };
    int best = 7;
    int least = INT32_MAX;
    for (int index = 1; index < 256; ++index) {
        const PlotColor color = plotColor(index, true);
        const int red = part(16) - color.red;
        const int green = part(8) - color.green;
        const int blue = part(0) - color.blue;
        const int distance = red * red + green * green + blue * blue;
        if (distance >= least) continue;
        least = distance;
        best = index;
    }
    return best;
}

int64_t integerOf(const Pair& pair) {
    return Tag(pair).integer();
}

/// What a version can't hold, counted.
struct Losses {
    std::map<std::string, size_t> left_out;  ///< objects by type
    std::map<std::string, size_t> unknown;   ///< entities that only later programs show
    size_t colours = 0;
    size_t transparencies = 0;
    size_t materials = 0;
    size_t gradients = 0;
    size_t backgrounds = 0;
    size_t columns = 0;
    size_t lines = 0;
    size_t old_bodies = 0;
    size_t long_texts = 0;
};

/// Which objects the version can't have: their types are later and not declared, their shapes lie
/// in a section of later versions, or they belong to such an object.
class LeftOut {
  public:
    LeftOut(Database& database, std::string_view target) : database_(database), target_(target) {
        readClasses();
        state_.assign(database.slotCount(), State::Unknown);
        for (Slot slot = 1; slot < database.slotCount(); ++slot) {
            if (!database.record(slot).erased && isLeftOut(slot)) any_ = true;
        }
    }

    bool any() const { return any_; }
    bool contains(uint64_t handle) const {
        const Slot slot = database_.findHandle(handle);
        return slot != kNoSlot && state_[slot] == State::Out;
    }

  private:
    enum class State : uint8_t { Unknown, Kept, Out };
    enum class Kind : uint8_t { Unknown, Fit, Later, Body };

    /// Types that the section CLASSES declares, which stands in front of all objects.
    void readClasses() {
        const std::string_view image = database_.image();
        PairCursor cursor(image.data() + markSize(image), image.data() + image.size());
        Pair pair;
        bool in_classes = false;
        bool begins = false;
        while (cursor.next(pair)) {
            const std::string_view value = trimmed(pair.value);
            if (pair.code == 0 && value == "EOF") return;
            if (begins && pair.code == 2) {
                in_classes = value == "CLASSES";
                if (value == "TABLES" || value == "BLOCKS" || value == "ENTITIES") return;
            }
            if (in_classes && pair.code == 1) declared_.emplace(value);
            if (pair.code != 999) begins = pair.code == 0 && value == "SECTION";
        }
    }

    bool isLeftOut(Slot slot) {
        std::vector<Slot> path;
        bool out = false;
        for (Slot at = slot; at != kNoSlot; at = database_.record(at).owner) {
            if (state_[at] != State::Unknown) {
                out = state_[at] == State::Out;
                break;
            }
            state_[at] = State::Kept;
            path.push_back(at);
            if (isUnfit(at)) {
                out = true;
                break;
            }
        }
        for (const Slot below : path)
            state_[below] = out ? State::Out : State::Kept;
        return out;
    }

    bool isUnfit(Slot slot) {
        const size_t index = database_.record(slot).type;
        if (index >= kinds_.size()) kinds_.resize(index + 1, Kind::Unknown);
        if (kinds_[index] == Kind::Unknown) kinds_[index] = kindOf(database_.typeName(slot));
        return kinds_[index] == Kind::Later || (kinds_[index] == Kind::Body && !hasShape(slot));
    }

    Kind kindOf(const std::string& type) const {
        if (versionOfType(type) > target_ && declared_.count(type) == 0) return Kind::Later;
        // Programs go by the version of the file, and would not understand the other form.
        const std::string_view form = versionOfForm(type);
        if (!form.empty() && (target_ < form) != (database_.version() < form)) return Kind::Later;
        // Since R2013 the shapes of bodies are binary and lie in a section of their own.
        const bool moved = target_ < kR2013 && database_.version() >= kR2013;
        return moved && isBody(type) ? Kind::Body : Kind::Fit;
    }

    bool hasShape(Slot slot) {
        const Tags& tags = database_.tags(slot);
        const bool found = findTag(tags, 1) < tags.size();
        database_.releaseDecoded(slot);
        return found;
    }

    Database& database_;
    std::string_view target_;
    std::unordered_set<std::string> declared_;
    std::vector<State> state_;
    std::vector<Kind> kinds_;  ///< by the number of the type
    bool any_ = false;
};

/// What becomes of a pair of an object that is written anew.
enum class Fate : uint8_t { Keep, Drop, Replace };

class VersionConverter {
  public:
    VersionConverter(Database& database, std::string_view target, Composition& out)
        : database_(database),
          source_(database.version()),
          target_(target),
          codec_(target, codePage()),
          transcoder_(database.codec(), codec_),
          recodes_(database.codec().isUtf8() != codec_.isUtf8()),
          rules_(target),
          left_out_(database, target),
          out_(out) {
        if (source_ < kR2004 && target_ >= kR2004) countTypes();
    }

    void run(const std::vector<std::string_view>& pieces) {
        uint64_t total = 0;
        for (const std::string_view piece : pieces)
            total += piece.size();
        Progress progress(Work::Converting, total);
        uint64_t done = 0;
        for (const std::string_view piece : pieces) {
            walk(piece, done, progress);
            done += piece.size();
        }
        out_.finish();
    }

    std::string note() const;

  private:
    std::string codePage() const {
        const HeaderVariable* page = database_.header("$DWGCODEPAGE");
        if (page == nullptr || page->tags.empty()) return {};
        const std::u16string name = page->tags.front().text(database_.codec());
        return {name.begin(), name.end()};
    }

    void countTypes() {
        for (Slot slot = 1; slot < database_.slotCount(); ++slot) {
            if (!database_.record(slot).erased) ++instances_[database_.typeName(slot)];
        }
    }

    // --- the walk -------------------------------------------------------------------------------

    void walk(std::string_view piece, uint64_t before, Progress& progress) {
        const char* end = piece.data() + piece.size();
        const size_t mark = before == 0 ? markSize(piece) : 0;
        if (mark > 0 && codec_.isUtf8()) out_.keep(piece.data(), piece.data() + mark);
        PairCursor cursor(piece.data() + mark, end);
        Pair pair;
        const char* told = piece.data();
        while (!ended_ && cursor.next(pair)) {
            if (pair.code == 0 || (pair.code == 9 && section_ == "HEADER")) flush();
            pairs_.push_back(pair);
            // The name counts at once: the variables of the header begin behind it.
            if (pair.code == 2 && pairs_.front().code == 0 &&
                trimmed(pairs_.front().value) == "SECTION" && section_.empty()) {
                section_ = trimmed(pair.value);
            }
            if (pair.code == 0 && trimmed(pair.value) == "EOF") ended_ = true;
            if (pair.end - told > 65536) {
                told = pair.end;
                progress.at(before + static_cast<uint64_t>(told - piece.data()));
            }
        }
        flush();
        if (cursor.position() < end) out_.keep(cursor.position(), end);
    }

    /// Takes the pairs of an object, or of a variable, to the output.
    void flush() {
        if (pairs_.empty()) return;
        const bool object = pairs_.front().code == 0;
        const std::string_view type = object ? trimmed(pairs_.front().value) : std::string_view();
        if (section_ == "ACDSDATA" && target_ < kR2013) {
            // The binary shapes of bodies, which no earlier version has.
        } else if (section_ == "HEADER") {
            convertVariable();
        } else if (section_ == "CLASSES" && type == "CLASS") {
            convertClass();
        } else {
            convertObject(type);
        }
        if (type == "ENDSEC") section_ = {};
        pairs_.clear();
    }

    void keepAll() { out_.keep(pairs_.front().begin, pairs_.back().end); }

    bool mustRecode() const {
        return recodes_ && transcoder_.concerns(
                               {pairs_.front().begin,
                                static_cast<size_t>(pairs_.back().end - pairs_.front().begin)});
    }

    // --- new text -------------------------------------------------------------------------------

    std::string_view lineEnd() const {
        const Pair& pair = pairs_.front();
        const char* behind = pair.value.data() + pair.value.size();
        return behind < pair.end && *behind == '\r' ? "\r\n" : "\n";
    }

    void writePair(int code, std::string_view value) {
        std::string& text = out_.made();
        const std::string number = std::to_string(code);
        if (number.size() < 3) text.append(3 - number.size(), ' ');
        text += number;
        text += lineEnd();
        text += value;
        text += lineEnd();
    }

    /// The pair with another value; its line ends stay.
    void writeValue(const Pair& pair, std::string_view value) {
        std::string& text = out_.made();
        text.append(pair.begin, pair.value.data());
        text += value;
        const char* behind = pair.value.data() + pair.value.size();
        text.append(behind, pair.end);
        if (behind == pair.end) text += lineEnd();
    }

    void writeRecoded(const Pair& pair) {
        if (!recodes_ || !transcoder_.concerns(pair.value)) {
            out_.keep(pair.begin, pair.end);
            return;
        }
        recoded_.clear();
        transcoder_.convert(pair.value, recoded_);
        constexpr size_t kDataLimit = 255;
        if (pair.code == 1000 && !codec_.isUtf8() && recoded_.size() > kDataLimit) {
            ++losses_.long_texts;
        }
        writeValue(pair, recoded_);
    }

    // --- header and classes ---------------------------------------------------------------------

    void convertVariable() {
        const std::string_view name =
            pairs_.front().code == 9 ? trimmed(pairs_.front().value) : std::string_view();
        if (versionOfVariable(name) > target_) return;
        uint64_t handle = 0;
        if (left_out_.any() && isReference(pairs_.back().code) &&
            parseHandle(pairs_.back().value, handle) && left_out_.contains(handle)) {
            return;
        }
        if (name == "$ACADVER" && pairs_.size() > 1) {
            writePair(9, name);
            writePair(1, target_);
            if (target_ < kR2007 && database_.header("$DWGCODEPAGE") == nullptr) {
                writePair(9, "$DWGCODEPAGE");
                writePair(3, "ANSI_1252");
            }
        } else if (name == "$ACADMAINTVER") {
            writePair(9, name);
            writePair(target_ < kR2018 ? 70 : 90, "0");
        } else if (name == "$XCLIPFRAME" && pairs_.size() > 1) {
            writeFrame();
        } else {
            for (const Pair& pair : pairs_)
                writeRecoded(pair);
        }
    }

    /// Frames were shown or not before R2010; since then there are some that aren't plotted.
    void writeFrame() {
        writePair(9, "$XCLIPFRAME");
        const int64_t frame = integerOf(pairs_.back());
        if (target_ < kR2010) {
            writePair(290, frame == 0 ? "0" : "1");
        } else {
            writePair(280, std::to_string(frame));
        }
    }

    void convertClass() {
        const bool counted = std::any_of(pairs_.begin(), pairs_.end(),
                                         [](const Pair& pair) { return pair.code == 91; });
        std::string name;
        for (const Pair& pair : pairs_) {
            if (pair.code == 1) name = trimmed(pair.value);
            if (pair.code == 91 && target_ < kR2004) continue;
            writeRecoded(pair);
            if (pair.code == 90 && !counted && target_ >= kR2004) {
                writePair(91, std::to_string(instances_[name]));
            }
        }
    }

    // --- objects --------------------------------------------------------------------------------

    void convertObject(std::string_view type) {
        const bool objects = section_ == "TABLES" || section_ == "BLOCKS" ||
                             section_ == "ENTITIES" || section_ == "OBJECTS";
        if (!objects) {
            for (const Pair& pair : pairs_)
                writeRecoded(pair);
            return;
        }
        if (isLeftOut(type)) return;
        if (type != type_) lookUp(type);
        const bool changes = findFates(type);
        if (!changes && !mustRecode()) {
            keepAll();
        } else {
            rewrite();
        }
    }

    bool isLeftOut(std::string_view type) {
        if (!left_out_.any()) return false;
        for (const Pair& pair : pairs_) {
            if (pair.code == 100) return false;
            if (pair.code != (type == "DIMSTYLE" ? 105 : 5)) continue;
            uint64_t handle = 0;
            if (!parseHandle(pair.value, handle) || !left_out_.contains(handle)) return false;
            ++losses_.left_out[std::string(type)];
            return true;
        }
        return false;
    }

    /// What holds for all objects of a type; the next ones are mostly of the same.
    void lookUp(std::string_view type) {
        type_ = type;
        type_rules_ = &rules_.of(type);
        const bool entities = section_ != "OBJECTS" && section_ != "TABLES";
        later_ = entities && versionOfType(type) > target_ ? &losses_.unknown[type_] : nullptr;
    }

    /// Decides what becomes of each pair. @return false when all stay
    bool findFates(std::string_view type) {
        if (later_ != nullptr) ++*later_;
        fates_.assign(pairs_.size(), Fate::Keep);
        if (type == "XRECORD" && !left_out_.any()) return false;
        Fates state;
        for (size_t i = 0; i < pairs_.size(); ++i)
            judge(type, i, state);
        if (state.dropped_reference) dropEmptyLists();
        if (isBody(type) && source_ < kR2013 && target_ >= kR2013 && state.has_text) {
            ++losses_.old_bodies;
        }
        return state.changes;
    }

    struct Fates {
        bool changes = false;
        bool dropped_reference = false;
        bool has_text = false;
        bool in_data = false;   ///< extended data
        bool embedded = false;  ///< of an embedded object
        bool in_list = false;   ///< between the braces of 102 groups
        size_t marker_at = 0;
        std::string_view marker;
        std::bitset<kMaxGroupCode + 1> seen;  ///< codes of the present class
    };

    void set(size_t i, Fate fate, Fates& state) {
        fates_[i] = fate;
        state.changes = true;
    }

    void judge(std::string_view type, size_t i, Fates& state) {
        const Pair& pair = pairs_[i];
        const int code = pair.code;
        if (code == 1001) {
            state.in_data = true;
            state.embedded = false;
        }
        // Elsewhere 101 is a text like others.
        if (code == 101 && (type == "MTEXT" || type == "ATTRIB" || type == "ATTDEF")) {
            state.embedded = true;
        }
        if (state.embedded && target_ < kR2018) {
            noteEmbedded(type, pair);
            set(i, Fate::Drop, state);
            return;
        }
        if (state.in_data || state.embedded) return;
        if (code == 102) {
            state.in_list = state.marker.empty() && trimmed(pair.value).starts_with('{');
        }
        if (left_out_.any() && isReference(code)) judgeReference(type, i, state);
        if (type == "XRECORD" || state.in_list || fates_[i] != Fate::Keep) return;
        if (code == 100) {
            state.marker = trimmed(pair.value);
            state.marker_at = i;
            state.seen.reset();
        }
        judgeByRules(i, state);
        judgeCommon(type, i, state);
        if (code >= 0 && code <= kMaxGroupCode) state.seen.set(static_cast<size_t>(code));
    }

    void judgeByRules(size_t i, Fates& state) {
        const int code = pairs_[i].code;
        if (code < 0 || code > kMaxGroupCode || !type_rules_->codes[static_cast<size_t>(code)]) {
            return;
        }
        using Which = GroupRule::Which;
        for (const GroupRule* rule : type_rules_->rules) {
            if (rule->marker != state.marker ||
                std::find(rule->codes.begin(), rule->codes.end(), code) == rule->codes.end()) {
                continue;
            }
            if (rule->which == Which::BehindMarker && i != state.marker_at + 1) continue;
            if (rule->which == Which::Repeated && !state.seen[static_cast<size_t>(code)]) continue;
            // A later class of an object goes with its marker.
            countLoss(*rule, pairs_[i], state);
            const bool colour =
                code == 420 && state.marker == "AcDbEntity" && !hasIndexColour(state.marker_at);
            set(i, colour ? Fate::Replace : Fate::Drop, state);
            return;
        }
    }

    /// True when the class whose marker is at `from` has a colour index.
    bool hasIndexColour(size_t from) const {
        for (size_t i = from + 1; i < pairs_.size() && pairs_[i].code != 100; ++i) {
            if (pairs_[i].code == 62) return true;
        }
        return false;
    }

    /// Groups of all entities whose form depends on the version, and codes that came later.
    void judgeCommon(std::string_view type, size_t i, Fates& state) {
        const int code = pairs_[i].code;
        if (code == 1) state.has_text = true;
        if (state.marker == "AcDbEntity") {
            const bool proxy = (code == 160 && target_ < kR2010) ||
                               (code == 92 && target_ >= kR2010 && source_ < kR2010);
            if (proxy) set(i, Fate::Replace, state);
        }
        // Programs of R2000 don't know what kind of value such a group has.
        const bool later = code >= 420 && code <= 459;
        if (later && target_ < kR2004 && type != "XRECORD" && fates_[i] == Fate::Keep) {
            set(i, Fate::Drop, state);
        }
    }

    void countLoss(const GroupRule& rule, const Pair& pair, const Fates& state) {
        constexpr int64_t kByValue = 0x02000000;
        switch (rule.loss) {
            case Loss::Colour:
                if (pair.code == 420) ++losses_.colours;
                break;
            case Loss::Transparency: {
                const int64_t value = integerOf(pair);
                if ((value & kByValue) != 0 && (value & 0xFF) != 0xFF) ++losses_.transparencies;
                break;
            }
            case Loss::Material:
                if (pair.code == 347) ++losses_.materials;
                break;
            case Loss::Gradient:
                if (pair.code == 450 && integerOf(pair) != 0) ++losses_.gradients;
                break;
            case Loss::Background:
                if (pair.code == 90 && !state.seen[90] && integerOf(pair) != 0) {
                    ++losses_.backgrounds;
                }
                break;
            case Loss::None:
                break;
        }
    }

    /// Of texts in columns and of attributes with several lines only the first way to show them is
    /// left.
    void noteEmbedded(std::string_view type, const Pair& pair) {
        if (type == "MTEXT") {
            if (pair.code == 72 && integerOf(pair) > 1) ++losses_.columns;
        } else if (pair.code == 1 && !trimmed(pair.value).empty()) {
            ++losses_.lines;
        }
    }

    // --- references to what is left out ---------------------------------------------------------

    void judgeReference(std::string_view type, size_t i, Fates& state) {
        uint64_t handle = 0;
        if (!parseHandle(pairs_[i].value, handle) || !left_out_.contains(handle)) return;
        const int code = pairs_[i].code;
        state.dropped_reference = true;
        if (state.in_list || state.marker == "AcDbEntity" || (type == "GROUP" && code == 340)) {
            set(i, Fate::Drop, state);
        } else if (isDictionaryEntry(type, i)) {
            set(i - 1, Fate::Drop, state);
            set(i, Fate::Drop, state);
        } else if (type == "SORTENTSTABLE" && code == 331 && i + 1 < pairs_.size()) {
            set(i, Fate::Drop, state);
            set(i + 1, Fate::Drop, state);
        } else {
            set(i, Fate::Replace, state);
        }
    }

    bool isDictionaryEntry(std::string_view type, size_t i) const {
        const int code = pairs_[i].code;
        return (type == "DICTIONARY" || type == "ACDBDICTIONARYWDFLT") &&
               (code == 350 || code == 360) && i > 0 && pairs_[i - 1].code == 3;
    }

    /// Takes away lists in braces that have lost all that they held.
    void dropEmptyLists() {
        constexpr size_t kNone = SIZE_MAX;
        size_t open = kNone;
        bool holds = false;
        for (size_t i = 0; i < pairs_.size(); ++i) {
            if (pairs_[i].code == 102) {
                if (trimmed(pairs_[i].value).starts_with('{')) {
                    open = i;
                    holds = false;
                } else if (open != kNone) {
                    if (!holds && i > open + 1) fates_[open] = fates_[i] = Fate::Drop;
                    open = kNone;
                }
            } else if (fates_[i] != Fate::Drop) {
                holds = true;
            }
        }
    }

    // --- an object anew -------------------------------------------------------------------------

    void rewrite() {
        for (size_t i = 0; i < pairs_.size(); ++i) {
            const Pair& pair = pairs_[i];
            const Fate fate = i < fates_.size() ? fates_[i] : Fate::Keep;
            if (fate == Fate::Drop) continue;
            if (fate == Fate::Keep) {
                writeRecoded(pair);
            } else if (pair.code == 420) {
                writePair(62, std::to_string(nearestIndex(integerOf(pair))));
            } else if (pair.code == 160 || pair.code == 92) {
                writePair(pair.code == 160 ? 92 : 160, trimmed(pair.value));
            } else {
                writeValue(pair, "0");
            }
        }
    }

    Database& database_;
    std::string_view source_;
    std::string_view target_;
    TextCodec codec_;
    Transcoder transcoder_;
    const bool recodes_;
    VersionRules rules_;
    LeftOut left_out_;
    Assembly out_;
    Losses losses_;
    std::map<std::string, size_t, std::less<>> instances_;

    std::vector<Pair> pairs_;
    std::vector<Fate> fates_;
    std::string_view section_;
    bool ended_ = false;
    std::string type_;
    const TypeRules* type_rules_ = nullptr;
    size_t* later_ = nullptr;  ///< counter of a type that the version doesn't know
    std::string recoded_;
};

// --- what is said -------------------------------------------------------------------------------

/// "3 true colours" or "1 true colour".
std::string counted(size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string listOf(const std::map<std::string, size_t>& types) {
    std::string text;
    for (const auto& [type, count] : types) {
        if (count > 0) text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + type;
    }
    return text;
}

std::string VersionConverter::note() const {
    std::vector<std::string> parts;
    const auto add = [&parts](size_t count, const char* one, const char* many) {
        if (count > 0) parts.push_back(counted(count, one, many));
    };
    const std::string left_out = listOf(losses_.left_out);
    if (!left_out.empty()) parts.push_back(left_out + " left out");
    add(losses_.colours, "true colour became an index colour", "true colours became index colours");
    add(losses_.transparencies, "transparency is lost", "transparencies are lost");
    add(losses_.materials, "material is lost", "materials are lost");
    add(losses_.gradients, "gradient became a plain filling", "gradients became plain fillings");
    add(losses_.backgrounds, "background of a text is lost", "backgrounds of texts are lost");
    add(losses_.columns, "text has no columns any more", "texts have no columns any more");
    add(losses_.lines, "attribute has one line only", "attributes have one line only");
    add(losses_.long_texts, "text of extended data is longer than 255 bytes",
        "texts of extended data are longer than 255 bytes");
    add(losses_.old_bodies, "body keeps the older form of its shape",
        "bodies keep the older form of their shapes");
    add(transcoder_.meaningless(), "text holds bytes that mean nothing",
        "texts hold bytes that mean nothing");
    const std::string unknown = listOf(losses_.unknown);
    if (!unknown.empty()) parts.push_back(unknown + " shown by later programs only");
    std::string note;
    for (const std::string& part : parts)
        note += (note.empty() ? "" : ", ") + part;
    return note.empty() ? note : "saved as " + versionName(target_) + ": " + note;
}

}  // namespace

void convertVersion(Database& database, std::string_view target, Composition& text,
                    std::vector<std::string>& notes) {
    const std::vector<std::string_view> pieces = std::move(text.pieces);
    text.pieces.clear();
    VersionConverter converter(database, target, text);
    converter.run(pieces);
    std::string note = converter.note();
    if (!note.empty()) notes.push_back(std::move(note));
}

}  // namespace host::dxf
