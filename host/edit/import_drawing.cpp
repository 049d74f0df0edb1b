/// Taking another drawing in as a block. Names lead to symbols, which come along when they are
/// missing; handles of symbols become those that the symbols have here, all other handles go.
#include "edit/import_drawing.h"

#include <algorithm>
#include <initializer_list>
#include <unordered_map>

#include "edit/block_definition.h"
#include "edit/copy.h"
#include "edit/tag_values.h"
#include "edit/transform.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// Types that need nothing but symbols.
constexpr std::string_view kTypes[] = {
    "3DFACE", "ARC",  "ATTDEF",     "CIRCLE", "DIMENSION", "ELLIPSE",  "HATCH", "INSERT",
    "LEADER", "LINE", "LWPOLYLINE", "MTEXT",  "POINT",     "POLYLINE", "RAY",   "SOLID",
    "SPLINE", "TEXT", "TOLERANCE",  "TRACE",  "XLINE",     "3DSOLID",  "BODY",  "REGION"};

/// A group that names a symbol.
struct NameGroup {
    int code;
    const char* table;
};

class Import {
  public:
    Import(Database& database, Database& source, std::map<std::string, size_t>& left_out)
        : database_(database), source_(source), left_out_(left_out) {}

    Slot run(std::u16string_view name) {
        const HeaderVariable* base = source_.header("$INSBASE");
        const AcGePoint3d origin = base == nullptr ? AcGePoint3d() : pointOf(base->tags, 10);
        const Slot block = defineBlock(database_, name, origin);
        if (block != kNoSlot) fill(block, source_.modelSpace());
        return block;
    }

  private:
    // --- values ---------------------------------------------------------------------------------

    /// Handle of the symbol here that stands for an object there; 0 for what is no symbol.
    uint64_t mapHandle(uint64_t handle) {
        const Slot there = source_.findHandle(handle);
        if (there == kNoSlot || source_.record(there).object_class != ObjectClass::TableRecord) {
            return 0;
        }
        const Slot here = symbol(source_.typeName(there), source_.symbolName(there));
        return here == kNoSlot ? 0 : database_.record(here).handle;
    }

    /// A tag that doesn't lean on the other file any more. False for a handle that leads nowhere
    /// here.
    bool own(const Tag& tag, Tags& out) {
        using dxf::GroupType;
        switch (tag.type()) {
            case GroupType::Real:
                out.emplace_back(tag.code(), tag.real());
                return true;
            case GroupType::Int16:
            case GroupType::Int32:
            case GroupType::Int64:
            case GroupType::Bool:
                out.emplace_back(tag.code(), tag.integer());
                return true;
            case GroupType::Handle:
            case GroupType::HandleRef: {
                const uint64_t handle = mapHandle(tag.handleValue());
                if (handle != 0) out.push_back(Tag::handle(tag.code(), handle));
                return handle != 0;
            }
            default:
                out.emplace_back(tag.code(), tag.text(source_.codec()));
                return true;
        }
    }

    Tags own(const Tags& tags) {
        Tags out;
        for (const Tag& tag : tags)
            own(tag, out);
        return out;
    }

    XData ownXData(Slot slot) {
        XData data = source_.xdata(slot);
        for (AppData& app : data) {
            symbol("APPID", app.app);
            app.source = {};
        }
        return data;
    }

    // --- symbols --------------------------------------------------------------------------------

    /// The record of a name here, taken over from the other drawing when it is missing.
    Slot symbol(const std::string& table, std::u16string_view name) {
        const Slot present = database_.findSymbol(table, name);
        if (present != kNoSlot) return present;
        const Slot there = source_.findSymbol(table, name);
        if (there == kNoSlot) return kNoSlot;
        if (table == "BLOCK_RECORD") return takeBlock(there, name);
        Tags tags;
        for (const Tag& tag : copiedGroups(table, source_.tags(there), false)) {
            const bool given = tag.code() == 100 || tag.code() == 2 || tag.code() == 105;
            if (!given) own(tag, tags);
        }
        if (table == "LTYPE") simplify(tags);
        if (table == "LAYER") mapNames(tags, {{6, "LTYPE"}});
        const Slot made = database_.makeSymbol(table, name, std::move(tags));
        if (table == "LAYER") database_.recountLockedLayers();
        return made;
    }

    /// Shapes and texts in a line type whose style could not come along are left out of it.
    static void simplify(Tags& tags) {
        bool complete = true;
        for (size_t i = 0; i < tags.size(); ++i) {
            const bool has_shape = tags[i].code() == 74 && tags[i].integer() != 0;
            if (has_shape && findTag(tags, 340, i) == tags.size()) complete = false;
        }
        if (complete) return;
        static constexpr int kOfShapes[] = {75, 340, 46, 50, 44, 45, 9};
        std::erase_if(tags, [](const Tag& tag) {
            return std::find(std::begin(kOfShapes), std::end(kOfShapes), tag.code()) !=
                   std::end(kOfShapes);
        });
        for (Tag& tag : tags) {
            if (tag.code() == 74) tag = Tag(74, int64_t{0});
        }
    }

    Slot takeBlock(Slot there, std::u16string_view name) {
        const Block* block = source_.findBlock(there);
        if (block == nullptr) return kNoSlot;
        const Slot here = defineBlock(database_, name, blockBase(source_, there));
        if (here == kNoSlot) return here;
        fill(here, there);
        if (block->begin == kNoSlot) return here;
        // The block of an attached drawing keeps its flags and its path.
        const Slot begin = database_.block(here).begin;
        for (const int code : {70, 1}) {
            Tags tag;
            const size_t at = findTag(source_.tags(block->begin), code);
            if (at >= source_.tags(block->begin).size()) continue;
            own(source_.tags(block->begin)[at], tag);
            replaceTag(database_.changeTags(begin), tag.front());
        }
        return here;
    }

    /// Makes sure of the symbols that groups name. A name that leads nowhere there either goes.
    void mapNames(Tags& tags, std::initializer_list<NameGroup> groups) {
        for (const NameGroup& group : groups) {
            const size_t at = findTag(tags, group.code);
            if (at >= tags.size()) continue;
            const std::u16string name = tags[at].text(database_.codec());
            if (symbol(group.table, name) == kNoSlot) {
                tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(at));
            }
        }
    }

    /// Blocks without a name of their own get a free one here.
    void mapAnonymous(Tags& tags) {
        const size_t at = findTag(tags, 2);
        const std::u16string name =
            at < tags.size() ? tags[at].text(database_.codec()) : std::u16string();
        if (!name.starts_with(u'*') || name.size() < 2) return;
        const auto [found, made] = anonymous_.try_emplace(name);
        if (made) {
            found->second = anonymousBlockName(database_, name[1]);
            const Slot there = source_.findSymbol("BLOCK_RECORD", name);
            if (there != kNoSlot) takeBlock(there, found->second);
        }
        tags[at] = Tag(2, found->second);
    }

    // --- entities -------------------------------------------------------------------------------

    void fill(Slot here, Slot there) {
        const Block* block = source_.findBlock(there);
        if (block == nullptr) return;
        for (const Slot slot : block->contents) {
            const ObjectRecord& record = source_.record(slot);
            if (record.erased || record.object_class != ObjectClass::Entity) continue;
            const std::string& type = source_.typeName(slot);
            const bool good =
                std::find(std::begin(kTypes), std::end(kTypes), type) != std::end(kTypes);
            if (good) {
                takeEntity(slot, here);
            } else if (type != "VIEWPORT") {
                ++left_out_[type];
            }
        }
        noteAttributes(database_, here);
    }

    Slot takeRecord(Slot there, Slot owner) {
        const std::string type = source_.typeName(there);
        Tags tags = own(copiedGroups(type, source_.tags(there), false));
        mapNames(tags, {{8, "LAYER"}, {6, "LTYPE"}});
        if (findTag(tags, 8) == tags.size()) replaceTag(tags, Tag(8, u"0"));
        const bool drawn = type == "INSERT" || type == "DIMENSION";
        if (drawn) mapAnonymous(tags);
        if (drawn) mapNames(tags, {{2, "BLOCK_RECORD"}});
        if (type == "DIMENSION" || type == "LEADER" || type == "TOLERANCE") {
            mapNames(tags, {{3, "DIMSTYLE"}});
        }
        if (type == "TEXT" || type == "MTEXT" || type == "ATTRIB" || type == "ATTDEF") {
            mapNames(tags, {{7, "STYLE"}});
        }
        const Slot here = database_.makeRecord(type, source_.record(there).object_class,
                                               database_.record(owner).handle, std::move(tags));
        database_.record(here).owner = owner;
        if (!source_.xdata(there).empty()) database_.changeXData(here) = ownXData(there);
        return here;
    }

    void takeEntity(Slot there, Slot block) {
        const Slot main = takeRecord(there, block);
        std::vector<Slot> parts;
        for (const Slot part : partsOf(source_, there))
            parts.push_back(takeRecord(part, main));
        database_.appendEntity(block, main);
        for (const Slot part : parts)
            database_.appendEntity(block, part);
    }

    Database& database_;
    Database& source_;
    std::map<std::string, size_t>& left_out_;
    std::unordered_map<std::u16string, std::u16string> anonymous_;
};

}  // namespace

Slot importDrawing(Database& database, Database& source, std::u16string_view name,
                   std::map<std::string, size_t>& left_out) {
    return Import(database, source, left_out).run(name);
}

}  // namespace host
