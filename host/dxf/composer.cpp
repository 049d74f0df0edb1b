/// Composition of the file from kept and new pieces.
#include "dxf/composer.h"

#include <algorithm>
#include <map>

namespace host::dxf {
namespace {

/// Replacement of a range of the file's bytes; an empty range is an insertion.
struct Edit {
    const char* begin;
    const char* end;
    std::string text;
};

/// Text of a block that the file doesn't have. What it holds may have been made long after it.
struct NewBlock {
    std::string begin;
    std::string contents;
    std::string end;
};

class Composer {
  public:
    explicit Composer(Database& database) : database_(database) {}

    /// The edits in file order.
    std::vector<Edit> edits() {
        collectObjects();
        collectSections();
        collectHeader();
        for (auto& [at, text] : insertions_)
            edits_.push_back({at, at, std::move(text)});
        std::stable_sort(edits_.begin(), edits_.end(),
                         [](const Edit& a, const Edit& b) { return a.begin < b.begin; });
        if (usesCarriageReturns()) {
            for (Edit& edit : edits_)
                addCarriageReturns(edit.text);
        }
        return std::move(edits_);
    }

  private:
    // --- objects --------------------------------------------------------------------------------

    void collectObjects() {
        for (Slot slot = 1; slot < database_.slotCount(); ++slot) {
            ObjectRecord& record = database_.record(slot);
            if (record.bytes != nullptr) {
                if (record.erased || isLeftOut(slot)) {
                    edits_.push_back({record.bytes, record.bytes + record.size, {}});
                } else if (record.changed || holdsErased(slot)) {
                    std::string text;
                    appendObject(slot, text);
                    edits_.push_back({record.bytes, record.bytes + record.size, std::move(text)});
                }
            } else if (!record.erased && !isLeftOut(slot)) {
                if (std::string* target = newTarget(slot)) appendObject(slot, *target);
            }
        }
    }

    /// True for an object that goes with its owner, which is erased, or has none to be found by.
    bool isLeftOut(Slot slot) {
        if (database_.record(slot).object_class != ObjectClass::Object) return false;
        known_.resize(database_.slotCount(), Known::No);
        std::vector<Slot> path;
        bool left_out = false;
        for (; slot != kNoSlot; slot = database_.record(slot).owner) {
            if (known_[slot] != Known::No) {
                left_out = known_[slot] == Known::LeftOut;
                break;
            }
            if (database_.record(slot).erased || database_.isUnowned(slot)) left_out = true;
            known_[slot] = left_out ? Known::LeftOut : Known::Kept;
            path.push_back(slot);
            if (left_out || database_.record(slot).object_class != ObjectClass::Object) break;
        }
        for (const Slot below : path)
            known_[below] = left_out ? Known::LeftOut : Known::Kept;
        return left_out;
    }

    /// Where the text of a new object goes; NULL for one that is written with something else.
    std::string* newTarget(Slot slot) {
        const ObjectRecord& record = database_.record(slot);
        switch (record.object_class) {
            case ObjectClass::Entity:
            case ObjectClass::SubEntity:
                return entityTarget(database_.mainEntity(slot));
            case ObjectClass::TableRecord:
                return &tableText(record.owner, database_.typeName(slot));
            case ObjectClass::BlockBegin:
                return &new_blocks_[record.owner].begin;
            case ObjectClass::BlockEnd:
                return &new_blocks_[record.owner].end;
            case ObjectClass::Object:
                return &objects_;
            default:
                return nullptr;
        }
    }

    std::string* entityTarget(Slot main) {
        const Slot space = database_.record(main).owner;
        if (space == database_.modelSpace() || space == database_.paperSpace()) return &entities_;
        const Block* block = database_.findBlock(space);
        if (block == nullptr || block->end == kNoSlot) return &entities_;
        const char* end = database_.record(block->end).bytes;
        return end == nullptr ? &new_blocks_[space].contents : &insertions_[end];
    }

    std::string& tableText(Slot head, const std::string& type) {
        SymbolTable* table = database_.table(type);
        if (head != kNoSlot && table != nullptr && table->insert_at != nullptr) {
            return insertions_[table->insert_at];
        }
        return new_tables_[type];
    }

    void appendObject(Slot slot, std::string& out) {
        const size_t start = out.size();
        ObjectRecord& record = database_.record(slot);
        const ObjectData* data = record.data.get();
        const bool tags_kept = record.bytes != nullptr &&
                               (data == nullptr || !data->tags_changed) && !holdsErased(slot);
        if (tags_kept) {
            out.append(record.bytes, record.xdata_offset);
        } else {
            const bool group = database_.isGroup(slot);
            for (const Tag& tag : database_.tags(slot)) {
                if (!group || !isErasedMember(tag)) tag.write(database_.codec(), out);
            }
        }
        writeXData(database_.xdata(slot), database_.codec(), out);
        out += record.data->tail;
        if (record.bytes != nullptr) keepComments(slot, tags_kept, start, out);
    }

    /// Comments go with the group in front of them. Those whose group is gone, or has another
    /// value, come behind the type.
    void keepComments(Slot slot, bool tags_kept, size_t start, std::string& out) {
        const ObjectRecord& record = database_.record(slot);
        const std::string_view source(record.bytes, record.size);
        if (source.find("999") == std::string_view::npos) return;
        const std::string lost = lostComments(record, tags_kept);
        const size_t type = out.find('\n', out.find('\n', start) + 1);
        if (type < out.size()) out.insert(type + 1, lost);
    }

    static std::string lostComments(const ObjectRecord& record, bool tags_kept) {
        std::vector<std::string_view> kept;
        const auto keep = [&kept](std::string_view text) {
            if (!text.empty()) kept.push_back(text);
        };
        if (tags_kept) keep({record.bytes, record.xdata_offset});
        for (const Tag& tag : record.data->tags)
            keep(tag.source());
        for (const AppData& app : record.data->xdata)
            keep(app.source);
        keep(record.data->tail);
        const auto before = [](const char* at, std::string_view text) { return at < text.data(); };
        std::sort(kept.begin(), kept.end(),
                  [](std::string_view a, std::string_view b) { return a.data() < b.data(); });
        std::string lost;
        PairCursor cursor(record.bytes, record.bytes + record.size);
        Pair pair;
        while (cursor.next(pair)) {
            if (pair.code != 999) continue;
            const auto behind = std::upper_bound(kept.begin(), kept.end(), pair.begin, before);
            const bool has =
                behind != kept.begin() && pair.end <= behind[-1].data() + behind[-1].size();
            if (!has) lost += pair.bytes();
        }
        return lost;
    }

    // --- groups ---------------------------------------------------------------------------------

    /// True for the entry of a group that leads to an erased entity: its drawing keeps it, so that
    /// the entity may come back, but a file has no such entity.
    bool isErasedMember(const Tag& tag) const {
        if (tag.code() != 340) return false;
        const Slot entity = database_.findHandle(tag.handleValue());
        return entity != kNoSlot && database_.record(entity).erased;
    }

    bool holdsErased(Slot slot) {
        if (!database_.isGroup(slot) || !anyErased()) return false;
        const Tags& tags = database_.tags(slot);
        return std::any_of(tags.begin(), tags.end(),
                           [this](const Tag& tag) { return isErasedMember(tag); });
    }

    /// Most drawings have no erased entities, and their groups needn't be decoded.
    bool anyErased() {
        for (; !any_erased_ && looked_at_ < database_.slotCount(); ++looked_at_)
            any_erased_ = database_.record(looked_at_).erased;
        return any_erased_;
    }

    // --- sections -------------------------------------------------------------------------------

    /// Puts collected text in front of a section's end, or makes the section in front of `before`.
    void place(const char* section_end, const char* before, std::string_view name,
               const std::string& text) {
        if (text.empty()) return;
        if (section_end != nullptr) {
            insertions_[section_end] += text;
            return;
        }
        std::string& target = insertions_[before];
        target += "  0\nSECTION\n  2\n";
        target += name;
        target += '\n';
        target += text;
        target += "  0\nENDSEC\n";
    }

    void collectSections() {
        std::string tables;
        for (const auto& [type, records] : new_tables_) {
            tables += "  0\nTABLE\n  2\n" + type + "\n";
            const SymbolTable* table = database_.table(type);
            const bool made = table != nullptr && table->head != kNoSlot;
            writeHandle(5, made ? database_.record(table->head).handle : database_.newHandle(),
                        tables);
            tables += "330\n0\n100\nAcDbSymbolTable\n 70\n0\n" + records + "  0\nENDTAB\n";
        }
        std::string blocks;
        for (const auto& [record, block] : new_blocks_)
            blocks += block.begin + block.contents + block.end;
        const InsertPoints& points = database_.insertPoints();
        const char* front = points.entities_begin != nullptr ? points.entities_begin : points.eof;
        place(points.tables_end, front, "TABLES", tables);
        place(points.blocks_end, front, "BLOCKS", blocks);
        place(points.entities_end, points.eof, "ENTITIES", entities_);
        place(points.objects_end, points.eof, "OBJECTS", objects_);
    }

    void collectHeader() {
        const HeaderVariable* seed = database_.header("$HANDSEED");
        if (seed == nullptr || seed->tags.empty() ||
            seed->tags.front().handleValue() < database_.handleSeed()) {
            database_.setHeader("$HANDSEED", Tag::handle(5, database_.handleSeed()));
        }
        const InsertPoints& points = database_.insertPoints();
        for (const HeaderVariable& variable : database_.headers()) {
            if (!variable.changed || variable.tags.empty()) continue;
            std::string text = "  9\n" + variable.name + "\n";
            for (const Tag& tag : variable.tags)
                tag.write(database_.codec(), text);
            if (variable.begin != nullptr) {
                edits_.push_back({variable.begin, variable.end, std::move(text)});
            } else if (points.header_end != nullptr) {
                insertions_[points.header_end] += text;
            }
        }
    }

    // --- line ends ------------------------------------------------------------------------------

    bool usesCarriageReturns() const {
        const std::string_view image = database_.image();
        const size_t feed = image.find('\n');
        return feed != std::string_view::npos && feed > 0 && image[feed - 1] == '\r';
    }

    static void addCarriageReturns(std::string& text) {
        std::string out;
        out.reserve(text.size() + text.size() / 8);
        char before = '\0';
        for (const char c : text) {
            if (c == '\n' && before != '\r') out += '\r';
            out += c;
            before = c;
        }
        text = std::move(out);
    }

    enum class Known : uint8_t { No, Kept, LeftOut };

    Database& database_;
    Slot looked_at_ = 1;  ///< objects below are not erased, or one was found
    bool any_erased_ = false;
    std::vector<Known> known_;  ///< of objects whose owners were looked at
    std::vector<Edit> edits_;
    std::map<const char*, std::string> insertions_;
    std::map<std::string, std::string> new_tables_;
    std::string entities_;
    std::map<Slot, NewBlock> new_blocks_;  ///< by their records
    std::string objects_;
};

}  // namespace

void compose(Database& database, Composition& out) {
    const std::string_view image = database.image();
    if (!database.isChanged()) {
        out.pieces.push_back(image);
        return;
    }
    std::vector<Edit> edits = Composer(database).edits();
    const char* at = image.data();
    for (Edit& edit : edits) {
        if (edit.begin > at) out.pieces.emplace_back(at, static_cast<size_t>(edit.begin - at));
        const size_t size = edit.text.size();
        edit.text.append(kImagePadding, '\0');
        out.made.push_back(std::move(edit.text));
        out.pieces.emplace_back(out.made.back().data(), size);
        at = std::max(at, edit.end);
    }
    const char* end = image.data() + image.size();
    if (end > at) out.pieces.emplace_back(at, static_cast<size_t>(end - at));
}

}  // namespace host::dxf
