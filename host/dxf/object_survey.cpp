/// The walk over the objects and the tables behind it.
#include "dxf/object_survey.h"

#include <algorithm>

#include "dxf/transcode.h"
#include "dxf/version_rules.h"
#include "kz_tls21an/text.h"

namespace host::dxf {
namespace {

constexpr size_t kExamples = 5;
constexpr size_t kLargest = 5;

constexpr const char* kWords[] = {
    "references to objects that there are none of",
    "objects that name another owner than what holds them",
    "objects that their owner doesn't list",
    "entries of groups that are no entities of the drawing",
    "entities on layers that the drawing lacks",
    "entities of line types that the drawing lacks",
    "insertions of blocks that the drawing lacks",
    "names that stand twice in a table",
    "applications with data that are not registered",
    "objects of unknown types",
    "objects that only their own program can change (proxies)",
    "texts with bytes that mean nothing in their encoding",
    "handles at or above the next free one of the header",
};
static_assert(std::size(kWords) == static_cast<size_t>(Odd::Count));

bool isPointer(int code) {
    return (code >= 330 && code <= 369) || (code >= 390 && code <= 399) || code == 480 ||
           code == 481 || code == 1005;
}

}  // namespace

struct ObjectSurvey::Look {
    std::string_view type;
    bool entity = false;
    bool in_list = false;   ///< between the braces of a 102 group
    bool in_class = false;  ///< behind the first marker
    bool in_own = false;    ///< behind the marker of the entity's own class
    bool layer_seen = false;
    uint64_t owner = 0;
    const char* data = nullptr;  ///< begin of the present application's data
    AppUse* app = nullptr;
};

void ObjectSurvey::note(Odd what, const std::string& where) {
    InfoFinding& finding = odd_[static_cast<size_t>(what)];
    ++finding.count;
    if (finding.examples.size() >= kExamples) return;
    // The same object may have many of a kind.
    if (finding.examples.empty() || finding.examples.back() != where) {
        finding.examples.push_back(where);
    }
}

std::vector<InfoFinding> ObjectSurvey::findings() const {
    std::vector<InfoFinding> found;
    for (size_t i = 0; i < odd_.size(); ++i) {
        if (odd_[i].count == 0) continue;
        found.push_back(odd_[i]);
        found.back().what = kWords[i];
    }
    return found;
}

std::string ObjectSurvey::nameOf(Slot slot) const {
    return database_.typeName(slot) + " " + kz::toUtf8(handleText(database_.record(slot).handle));
}

void ObjectSurvey::run(DrawingInfo& out) {
    out_ = &out;
    held_by_.assign(database_.slotCount(), kNoSlot);
    for (Slot slot = 1; slot < database_.slotCount(); ++slot) {
        if (database_.record(slot).bytes != nullptr) look(slot);
    }
    checkHeld();
    const HeaderVariable* seed = database_.header("$HANDSEED");
    if (seed != nullptr && !seed->tags.empty() &&
        seed->tags.front().handleValue() <= greatest_handle_) {
        note(Odd::LowSeed, kz::toUtf8(handleText(greatest_handle_)));
    }
    std::sort(largest_.rbegin(), largest_.rend());
    for (const auto& [size, slot] : largest_) {
        out.largest.push_back({kz::toUtf8(handleText(database_.record(slot).handle)),
                               database_.typeName(slot), size});
    }
    out.data_bytes = data_bytes_;
    fillTables(out);
    fillApplications(out);
}

// --- one object ---------------------------------------------------------------------------------

void ObjectSurvey::look(Slot slot) {
    const ObjectRecord& record = database_.record(slot);
    Look look;
    look.type = database_.typeName(slot);
    look.entity =
        record.object_class == ObjectClass::Entity || record.object_class == ObjectClass::SubEntity;
    countType(slot, look.type);
    noteLargest(slot);
    greatest_handle_ = std::max(greatest_handle_, record.handle);
    const char* end = record.bytes + record.size;
    const bool high = hasHighBytes({record.bytes, record.size});
    PairCursor cursor(record.bytes, end);
    Pair pair;
    while (cursor.next(pair)) {
        lookAtPair(slot, pair, look);
        if (high && hasHighBytes(pair.value)) checkText(slot, pair.value);
    }
    endData(look, end);
    checkOwner(slot, look);
}

ObjectSurvey::Kind ObjectSurvey::kindOf(std::string_view type) const {
    if (type == "ACAD_PROXY_ENTITY" || type == "ACAD_PROXY_OBJECT") return Kind::Proxy;
    const bool known = isKnownType(type) || declared_.count(std::string(type)) != 0;
    return known ? Kind::Known : Kind::Unknown;
}

void ObjectSurvey::countType(Slot slot, std::string_view type) {
    const ObjectRecord& record = database_.record(slot);
    const bool entity = record.object_class == ObjectClass::Entity;
    if (entity || record.object_class == ObjectClass::Object) {
        std::vector<uint64_t>& counts = type_counts_[entity ? 0 : 1];
        if (record.type >= counts.size()) counts.resize(record.type + size_t{1});
        ++counts[record.type];
        if (record.type >= kinds_.size()) kinds_.resize(record.type + size_t{1}, Kind::Unseen);
        Kind& kind = kinds_[record.type];
        if (kind == Kind::Unseen) kind = kindOf(type);
        if (kind == Kind::Proxy) note(Odd::Proxy, nameOf(slot));
        if (kind == Kind::Unknown) note(Odd::UnknownType, nameOf(slot));
        (entity ? out_->entities : out_->objects) += 1;
    } else if (record.object_class == ObjectClass::SubEntity) {
        ++out_->parts;
    }
    if (type == "GROUP") ++out_->groups;
    if (type == "DICTIONARY" || type == "ACDBDICTIONARYWDFLT") ++out_->dictionaries;
    if (type == "XRECORD") ++out_->xrecords;
}

void ObjectSurvey::noteLargest(Slot slot) {
    const uint32_t size = database_.record(slot).size;
    if (largest_.size() == kLargest && size <= largest_.back().first) return;
    largest_.emplace_back(size, slot);
    std::sort(largest_.rbegin(), largest_.rend());
    if (largest_.size() > kLargest) largest_.pop_back();
}

void ObjectSurvey::lookAtPair(Slot slot, const Pair& pair, Look& look) {
    const int code = pair.code;
    if (isPointer(code)) {
        checkReference(slot, pair, look);
        if (code == 330 && !look.in_class && !look.in_list && look.owner == 0) {
            parseHandle(pair.value, look.owner);
        }
        return;
    }
    if (code == 1001) {
        endData(look, pair.begin);
        look.data = pair.begin;
        AppUse& use = apps_[trimmed(pair.value)];
        if (use.objects++ == 0) use.first = slot;
        look.app = &use;
    }
    if (code == 102 && look.data == nullptr) look.in_list = trimmed(pair.value).starts_with('{');
    if (code == 100) {
        look.in_own = look.in_class && trimmed(pair.value) != "AcDbEntity";
        look.in_class = true;
    }
    if (!look.entity || look.data != nullptr) return;
    if (code == 8 && !look.layer_seen) {
        look.layer_seen = true;
        Use& use = layers_[trimmed(pair.value)];
        if (use.count++ == 0) use.first = slot;
    } else if (code == 6 && !look.in_own) {
        Use& use = line_types_[trimmed(pair.value)];
        if (use.count++ == 0) use.first = slot;
    } else if (code == 2 && look.type == "INSERT") {
        Use& use = inserts_[trimmed(pair.value)];
        if (use.count++ == 0) use.first = slot;
    }
}

void ObjectSurvey::endData(Look& look, const char* end) {
    if (look.app == nullptr) return;
    const auto size = static_cast<uint64_t>(end - look.data);
    look.app->bytes += size;
    data_bytes_ += size;
    look.app = nullptr;
}

void ObjectSurvey::checkReference(Slot slot, const Pair& pair, const Look& look) {
    uint64_t handle = 0;
    if (!parseHandle(pair.value, handle) || handle == 0) return;
    const Slot target = database_.findHandle(handle);
    const bool member = look.type == "GROUP" && pair.code == 340 && look.in_class;
    if (member) {
        const bool entity =
            target != kNoSlot && database_.record(target).object_class == ObjectClass::Entity;
        if (!entity) note(Odd::LostMember, nameOf(slot));
    } else if (target == kNoSlot) {
        note(Odd::LostReference, nameOf(slot));
    } else if ((pair.code == 350 || pair.code == 360) && look.in_class &&
               (look.type == "DICTIONARY" || look.type == "ACDBDICTIONARYWDFLT")) {
        held_by_[target] = slot;
    }
}

void ObjectSurvey::checkOwner(Slot slot, const Look& look) {
    const ObjectRecord& record = database_.record(slot);
    if (look.owner == 0 || record.owner == kNoSlot || record.object_class == ObjectClass::Object) {
        return;
    }
    const Slot named = database_.findHandle(look.owner);
    if (named == kNoSlot || named == record.owner) return;
    // Vertices and attributes may name the block, too.
    const bool part = record.object_class == ObjectClass::SubEntity;
    if (part && named == database_.record(record.owner).owner) return;
    note(Odd::WrongOwner, nameOf(slot));
}

void ObjectSurvey::checkHeld() {
    for (Slot slot = 1; slot < database_.slotCount(); ++slot) {
        const ObjectRecord& record = database_.record(slot);
        if (record.object_class != ObjectClass::Object || record.owner == kNoSlot) continue;
        const std::string& owner = database_.typeName(record.owner);
        if (owner != "DICTIONARY" && owner != "ACDBDICTIONARYWDFLT") continue;
        if (held_by_[slot] != record.owner) note(Odd::NotHeld, nameOf(slot));
    }
}

void ObjectSurvey::checkText(Slot slot, std::string_view value) {
    const std::u16string text = database_.codec().decode(value);
    for (size_t i = 0; i < text.size(); ++i) {
        const bool second = i > 0 && text[i - 1] >= 0xD800 && text[i - 1] <= 0xDBFF;
        if (text[i] >= 0xDC80 && text[i] <= 0xDCFF && !second) {
            note(Odd::Unreadable, nameOf(slot));
            return;
        }
    }
}

// --- tables -------------------------------------------------------------------------------------

std::unordered_map<std::u16string, uint64_t> ObjectSurvey::merged(const Uses& uses,
                                                                  const char* table, Odd missing) {
    std::unordered_map<std::u16string, uint64_t> counts;
    for (const auto& [bytes, use] : uses) {
        const std::u16string name = database_.codec().decode(bytes);
        counts[kz::toUpper(name)] += use.count;
        const std::u16string upper = kz::toUpper(name);
        const bool general = upper == u"BYLAYER" || upper == u"BYBLOCK" || upper.empty();
        if (!general && database_.findSymbol(table, name) == kNoSlot) {
            note(missing, kz::toUtf8(name) + " (" + nameOf(use.first) + ")");
            odd_[static_cast<size_t>(missing)].count += use.count - 1;
        }
    }
    return counts;
}

namespace {

std::vector<InfoCount> sorted(const std::vector<uint64_t>& counts, const Database& database,
                              ObjectClass object_class) {
    std::vector<InfoCount> out;
    std::vector<bool> named(counts.size());
    for (Slot slot = 1; slot < database.slotCount(); ++slot) {
        const ObjectRecord& record = database.record(slot);
        if (record.object_class != object_class || record.bytes == nullptr ||
            record.type >= counts.size() || named[record.type]) {
            continue;
        }
        named[record.type] = true;
        out.push_back({database.typeName(slot), counts[record.type]});
    }
    std::stable_sort(out.begin(), out.end(), [](const InfoCount& a, const InfoCount& b) {
        return a.count != b.count ? a.count > b.count : a.name < b.name;
    });
    return out;
}

/// Number or text of a record's first group with this code.
int64_t integerIn(Database& database, Slot slot, int code, int64_t otherwise) {
    const Tags& tags = database.tags(slot);
    const size_t at = findTag(tags, code);
    return at < tags.size() ? tags[at].integer() : otherwise;
}

std::string textIn(Database& database, Slot slot, int code) {
    const Tags& tags = database.tags(slot);
    const size_t at = findTag(tags, code);
    return at < tags.size() ? kz::toUtf8(tags[at].text(database.codec())) : std::string();
}

/// Fonts of a text style: its files, or the family that its extended data names.
std::string fontOf(Database& database, Slot slot) {
    for (const AppData& data : database.xdata(slot)) {
        if (kz::toUpper(data.app) != u"ACAD" || data.items.size() < 2 || data.items[0] != 1000) {
            continue;
        }
        const size_t length = data.items[1];
        if (length > 0) return kz::toUtf8(std::u16string_view(data.items).substr(2, length));
    }
    const std::string big = textIn(database, slot, 4);
    return textIn(database, slot, 3) + (big.empty() ? "" : ", " + big);
}

}  // namespace

void ObjectSurvey::fillTables(DrawingInfo& out) {
    out.entity_types = sorted(type_counts_[0], database_, ObjectClass::Entity);
    out.object_types = sorted(type_counts_[1], database_, ObjectClass::Object);
    auto layers = merged(layers_, "LAYER", Odd::MissingLayer);
    auto line_types = merged(line_types_, "LTYPE", Odd::MissingLineType);
    auto inserts = merged(inserts_, "BLOCK_RECORD", Odd::MissingBlock);
    for (const auto& table : database_.tables()) {
        std::unordered_set<std::u16string> seen;
        for (const Slot slot : table->records) {
            const std::u16string name = database_.symbolName(slot);
            const std::u16string upper = kz::toUpper(name);
            const std::string shown = kz::toUtf8(name);
            // Several viewports have one name, and files of shapes none.
            if (!upper.empty() && !seen.insert(upper).second && table->name != "VPORT") {
                note(Odd::DuplicateName, table->name + " " + shown);
            }
            if (table->name == "LAYER") {
                const int64_t flags = integerIn(database_, slot, 70, 0);
                const int64_t color = integerIn(database_, slot, 62, 7);
                out.layers.push_back({shown, layers[upper],
                                      static_cast<int>(color < 0 ? -color : color), color >= 0,
                                      (flags & 1) != 0, (flags & 4) != 0});
            } else if (table->name == "LTYPE") {
                out.line_types.push_back({shown, line_types[upper]});
            } else if (table->name == "STYLE") {
                if (!shown.empty()) out.text_styles.push_back({shown, fontOf(database_, slot)});
            } else if (table->name == "DIMSTYLE") {
                out.dimension_styles.push_back(shown);
            } else if (table->name == "BLOCK_RECORD") {
                InfoBlock block{shown, 0, inserts[upper]};
                if (const Block* content = database_.findBlock(slot)) {
                    for (const Slot entity : content->contents)
                        block.entities +=
                            database_.record(entity).object_class == ObjectClass::Entity ? 1 : 0;
                }
                out.blocks.push_back(std::move(block));
            }
        }
    }
}

void ObjectSurvey::fillApplications(DrawingInfo& out) {
    std::unordered_map<std::u16string, size_t> places;
    const auto at = [&](const std::u16string& name) -> InfoApplication& {
        const auto [found, made] = places.try_emplace(kz::toUpper(name), out.applications.size());
        if (made) out.applications.push_back({kz::toUtf8(name), false, 0, 0});
        return out.applications[found->second];
    };
    if (SymbolTable* table = database_.table("APPID")) {
        for (const Slot slot : table->records)
            at(database_.symbolName(slot)).registered = true;
    }
    for (const auto& [bytes, use] : apps_) {
        const std::u16string name = database_.codec().decode(bytes);
        InfoApplication& app = at(name);
        app.objects += use.objects;
        app.bytes += use.bytes;
        if (!app.registered)
            note(Odd::Unregistered, kz::toUtf8(name) + " (" + nameOf(use.first) + ")");
    }
    std::stable_sort(out.applications.begin(), out.applications.end(),
                     [](const InfoApplication& a, const InfoApplication& b) {
                         return a.objects != b.objects ? a.objects > b.objects : a.name < b.name;
                     });
}

}  // namespace host::dxf
