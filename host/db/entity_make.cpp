/// Making and changing entities, table records and objects from lists of groups.
#include <algorithm>

#include "acad/ads.h"
#include "base/angles.h"
#include "base/faults.h"
#include "base/resbuf.h"
#include "db/entity_rules.h"
#include "db/groups.h"
#include "db/reactors.h"
#include "db/xrecords.h"
#include "edit/sysvars.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// A POLYLINE, an INSERT with attributes or a BLOCK whose end has not been given yet.
struct Pending {
    AcDbObjectId main;          ///< header of a polyline or an insert
    std::vector<Slot> parts;    ///< with the header, in order
    AcDbObjectId block_record;  ///< of a block under construction
};

Pending& pending() {
    static Pending state;
    return state;
}

std::string typeOf(const resbuf* list) {
    const resbuf* node = findNode(list, 0);
    if (node == nullptr) node = findNode(list, RTDXF0);
    if (node == nullptr || node->resval.rstring == nullptr) return {};
    return kz::toUtf8(kz::toUpper(node->resval.rstring));
}

/// Takes type, handle, owner and the groups in braces out of a list: the host gives these itself.
void dropOwnGroups(Tags& tags, bool is_dimstyle) {
    Tags kept;
    bool in_braces = false;
    bool in_class = false;
    for (Tag& tag : tags) {
        const int code = tag.code();
        if (code == 102 && !in_class) {
            in_braces = !in_braces;
            continue;
        }
        if (code == 100) in_class = true;
        const bool own = code == 0 || (!in_class && (code == 5 || code == 330)) || in_braces ||
                         (is_dimstyle && code == 105);
        if (!own) kept.push_back(std::move(tag));
    }
    tags = std::move(kept);
}

/// Takes the groups of an extension dictionary and of reactors out of a list, wherever they stand:
/// the host gives these itself. @param extension  gets the dictionary, kNoSlot for none
/// @return false when such a group has no end
bool takeExtension(const Database& database, Tags& tags, Slot& extension) {
    extension = kNoSlot;
    if (findTag(tags, 102) == tags.size()) return true;
    Tags kept;
    bool in_extension = false, in_reactors = false;
    for (Tag& tag : tags) {
        const bool brace = tag.code() == 102;
        const std::u16string text = brace ? tag.text(database.codec()) : std::u16string();
        if (brace && text == kExtension) in_extension = true;
        if (brace && text == kReactors) in_reactors = true;
        if (in_extension && tag.code() == 360) extension = database.findHandle(tag.handleValue());
        if (!in_extension && !in_reactors) kept.push_back(std::move(tag));
        if (brace && text == u"}") in_extension = in_reactors = false;
    }
    tags = std::move(kept);
    return !in_extension && !in_reactors;
}

std::u16string textOf(const Database& database, const Tags& tags, int code) {
    const size_t at = findTag(tags, code);
    return at < tags.size() ? tags[at].text(database.codec()) : std::u16string{};
}

/// Names in the list must lead somewhere: a layer is made, all else has to be there.
bool resolveNames(Database& database, const std::string& type, Tags& tags) {
    if (findTag(tags, 8) == tags.size()) {
        const HeaderVariable* current = database.header("$CLAYER");
        const std::u16string layer = current == nullptr || current->tags.empty()
                                         ? u"0"
                                         : current->tags.front().text(database.codec());
        tags.emplace(tags.begin(), 8, layer);
    }
    const std::u16string layer = textOf(database, tags, 8);
    if (acdbSNValid(layer.c_str(), 1) != RTNORM) return false;
    const std::u16string linetype = textOf(database, tags, 6);
    if (!linetype.empty() && database.findSymbol("LTYPE", linetype) == kNoSlot) return false;
    if (type == "INSERT" &&
        database.findSymbol("BLOCK_RECORD", textOf(database, tags, 2)) == kNoSlot) {
        return false;
    }
    const bool is_text = type == "TEXT" || type == "MTEXT" || type == "ATTRIB" || type == "ATTDEF";
    const std::u16string style = is_text ? textOf(database, tags, 7) : std::u16string{};
    if (!style.empty() && database.findSymbol("STYLE", style) == kNoSlot) return false;
    return database.needLayer(layer) != kNoSlot;
}

/// XDATA of a list: applications must be registered, the data must fit.
bool takeXData(Database& database, Slot slot, const resbuf* list) {
    const resbuf* marker = findNode(list, -3);
    if (marker == nullptr || marker->rbnext == nullptr) return true;
    if (database.setXData(slot, marker) == Acad::eOk) return true;
    setErrno(HostErrno::BadXData);
    return false;
}

/// LWPOLYLINE vertices are flat; a z that came along is dropped.
void flattenVertices(const std::string& type, Tags& tags) {
    if (type != "LWPOLYLINE") return;
    std::erase_if(tags, [](const Tag& tag) { return tag.code() == 30; });
}

class EntityMaker {
  public:
    EntityMaker(Database& database, const resbuf* list)
        : database_(database), list_(list), type_(typeOf(list)) {}

    /// The new object, kNoSlot on failure. `complete` tells whether it is in the drawing already.
    Slot make(bool& complete) {
        complete = true;
        if (type_.empty() || !tagsFromChain(list_, tags_)) return kNoSlot;
        Slot extension = kNoSlot;
        if (type_ != "XRECORD" && !takeExtension(database_, tags_, extension)) return kNoSlot;
        const Slot slot = makeWithout(complete);
        if (slot != kNoSlot && complete && extension != kNoSlot)
            database_.addExtension(slot, extension);
        return slot;
    }

    static void dropPending() {
        Pending& state = pending();
        Database* database = Database::find(state.main);
        if (database != nullptr) {
            for (const Slot slot : state.parts)
                database->record(slot).erased = true;
        }
        state.main.setNull();
        state.parts.clear();
    }

  private:
    /// Makes what the list describes, without an extension dictionary.
    Slot makeWithout(bool& complete) {
        dropOwnGroups(tags_, type_ == "DIMSTYLE");
        if (type_ == "BLOCK") return beginBlock(complete);
        if (type_ == "ENDBLK") return endBlock();
        if (isTable(type_)) return makeTableRecord();
        const bool part = type_ == "VERTEX" || type_ == "ATTRIB" || type_ == "SEQEND";
        if (!part) dropPending();
        if (isObjectType()) return makeObject();
        return part ? addPart(complete) : makeEntity(complete);
    }

    bool isTable(const std::string& type) const {
        return type != "BLOCK_RECORD" && database_.table(type) != nullptr;
    }

    bool isObjectType() const {
        static constexpr std::string_view kObjects[] = {
            "XRECORD",  "DICTIONARY", "ACDBDICTIONARYWDFLT", "GROUP",
            "LAYOUT",   "MLINESTYLE", "ACDBPLACEHOLDER",     "DICTIONARYVAR",
            "MATERIAL", "SCALE",      "SORTENTSTABLE",       "IDBUFFER"};
        return std::find(std::begin(kObjects), std::end(kObjects), type_) != std::end(kObjects);
    }

    Slot makeTableRecord() {
        const std::u16string name = textOf(database_, tags_, 2);
        if (acdbSNValid(name.c_str(), 0) != RTNORM) return kNoSlot;
        std::erase_if(tags_, [](const Tag& tag) { return tag.code() == 100 || tag.code() == 2; });
        const Slot slot = database_.makeSymbol(type_, name, std::move(tags_));
        if (slot == kNoSlot) return kNoSlot;
        database_.recountLockedLayers();
        return takeXData(database_, slot, list_) ? slot : kNoSlot;
    }

    Slot makeObject() {
        if (findTag(tags_, 100) == tags_.size()) return kNoSlot;
        if (type_ == "XRECORD" && !xrecordFromList(database_, list_, tags_)) return kNoSlot;
        if (type_ == "DICTIONARY") return makeDictionary();
        const Slot slot = database_.makeRecord(type_, ObjectClass::Object, 0, std::move(tags_));
        return finishXData(slot);
    }

    /// The entries of the list become the dictionary's; it is refused with any of them.
    Slot makeDictionary() {
        Tags groups = dictionaryTags();
        const size_t cloning = findTag(tags_, 281);
        const size_t hard = findTag(tags_, 280);
        if (cloning < tags_.size()) groups.back() = tags_[cloning];
        if (hard < tags_.size()) groups.insert(groups.end() - 1, tags_[hard]);
        const Slot slot = database_.makeRecord(type_, ObjectClass::Object, 0, std::move(groups));
        std::u16string key;
        for (const Tag& tag : tags_) {
            if (tag.code() == 3) key = tag.text(database_.codec());
            if (tag.code() != 350 && tag.code() != 360) continue;
            const Slot object = database_.findHandle(tag.handleValue());
            if (database_.dictionaryAdd(slot, key, object) == Acad::eOk) continue;
            giveUpDictionary(slot);
            return kNoSlot;
        }
        return finishXData(slot);
    }

    void giveUpDictionary(Slot slot) {
        const auto first = [&] { return database_.dictionaryNext(slot, 0); };
        for (size_t entry = first(); entry != DictionaryData::kNone; entry = first()) {
            const std::u16string key = database_.dictionary(slot)->entry(entry).key;
            database_.dictionaryRemove(slot, key);
        }
        database_.setErased(slot, true);
    }

    Slot finishXData(Slot slot) {
        if (takeXData(database_, slot, list_)) return slot;
        database_.record(slot).erased = true;
        return kNoSlot;
    }

    Slot space() const {
        const Database* building = Database::find(pending().block_record);
        if (building == &database_) return database_.slotOf(pending().block_record);
        const size_t at = findTag(tags_, 67);
        const bool paper = at < tags_.size() && tags_[at].integer() == 1;
        return paper ? database_.paperSpace() : database_.modelSpace();
    }

    Slot makeEntity(bool& complete) {
        if (!resolveNames(database_, type_, tags_) || !arrangeEntity(type_, tags_)) return kNoSlot;
        flattenVertices(type_, tags_);
        const size_t follow = findTag(tags_, 66);
        const bool attributes =
            type_ == "INSERT" && follow < tags_.size() && tags_[follow].integer() == 1;
        const Slot record = space();
        const Slot slot = database_.makeRecord(type_, ObjectClass::Entity,
                                               database_.record(record).handle, std::move(tags_));
        if (finishXData(slot) == kNoSlot) return kNoSlot;
        database_.record(slot).owner = record;
        if (type_ == "POLYLINE" || attributes) {
            complete = false;
            pending().main = database_.idOf(slot);
            pending().parts.assign(1, slot);
        } else {
            database_.appendEntity(record, slot);
        }
        return slot;
    }

    Slot addPart(bool& complete) {
        Pending& state = pending();
        if (Database::find(state.main) != &database_) return kNoSlot;
        const Slot main = database_.slotOf(state.main);
        if (findTag(tags_, 8) == tags_.size()) {
            tags_.emplace(tags_.begin(), 8, textOf(database_, database_.tags(main), 8));
        }
        if (!resolveNames(database_, type_, tags_) || !arrangeEntity(type_, tags_)) return kNoSlot;
        const Slot slot = database_.makeRecord(type_, ObjectClass::SubEntity,
                                               database_.record(main).handle, std::move(tags_));
        if (finishXData(slot) == kNoSlot) return kNoSlot;
        database_.record(slot).owner = main;
        state.parts.push_back(slot);
        complete = type_ == "SEQEND";
        if (!complete) return slot;
        const Slot record = database_.record(main).owner;
        for (const Slot part : state.parts)
            database_.appendEntity(record, part);
        state.main.setNull();
        state.parts.clear();
        return main;
    }

    // --- blocks ---------------------------------------------------------------------------------

    Slot beginBlock(bool& complete) {
        dropPending();
        complete = false;
        std::u16string name = textOf(database_, tags_, 2);
        if (name.starts_with(u"*U") || name.starts_with(u"*u")) name = anonymousName();
        const bool anonymous = name.starts_with(u'*');
        if (!anonymous && acdbSNValid(name.c_str(), 0) != RTNORM) return kNoSlot;
        const Slot present = database_.findSymbol("BLOCK_RECORD", name);
        if (present != kNoSlot) {
            for (const Slot slot : database_.block(present).contents) {
                database_.setErased(slot, true);
            }
            pending().block_record = database_.idOf(present);
            return present;
        }
        Tags extra;
        extra.emplace_back(70, int64_t{0});
        extra.emplace_back(280, int64_t{1});
        extra.emplace_back(281, int64_t{0});
        const Slot record = database_.makeSymbol("BLOCK_RECORD", name, std::move(extra));
        if (record == kNoSlot) return kNoSlot;
        database_.block(record).begin = makeBlockBegin(record, name);
        pending().block_record = database_.idOf(record);
        return record;
    }

    Slot makeBlockBegin(Slot record, const std::u16string& name) {
        Tags begin;
        begin.emplace_back(100, u"AcDbEntity");
        begin.emplace_back(8, u"0");
        begin.emplace_back(100, u"AcDbBlockBegin");
        begin.emplace_back(2, name);
        const size_t flags = findTag(tags_, 70);
        begin.emplace_back(70, flags < tags_.size() ? tags_[flags].integer() : int64_t{0});
        for (const int code : {10, 20, 30}) {
            const size_t at = findTag(tags_, code);
            begin.emplace_back(code, at < tags_.size() ? tags_[at].real() : 0.0);
        }
        begin.emplace_back(3, name);
        begin.emplace_back(1, textOf(database_, tags_, 1));
        const Slot slot = database_.makeRecord("BLOCK", ObjectClass::BlockBegin,
                                               database_.record(record).handle, std::move(begin));
        database_.record(slot).owner = record;
        return slot;
    }

    Slot endBlock() {
        Pending& state = pending();
        if (Database::find(state.block_record) != &database_) return kNoSlot;
        const Slot record = database_.slotOf(state.block_record);
        state.block_record.setNull();
        Block& block = database_.block(record);
        if (block.end == kNoSlot) {
            Tags end;
            end.emplace_back(100, u"AcDbEntity");
            end.emplace_back(8, u"0");
            end.emplace_back(100, u"AcDbBlockEnd");
            block.end = database_.makeRecord("ENDBLK", ObjectClass::BlockEnd,
                                             database_.record(record).handle, std::move(end));
            database_.record(block.end).owner = record;
        }
        return record;
    }

    std::u16string anonymousName() {
        for (size_t number = database_.blockRecords().size();; ++number) {
            std::u16string name = u"*U" + kz::toUtf16(std::to_string(number));
            if (database_.findSymbol("BLOCK_RECORD", name) == kNoSlot) return name;
        }
    }

    Database& database_;
    const resbuf* list_;
    std::string type_;
    Tags tags_;
};

// --- entmod -------------------------------------------------------------------------------------

/// Two tags of the same code with the same value. A name that leads nowhere is shown as a null name
/// and comes back as handle 0: it counts as unchanged.
bool sameValue(const Database& database, const Tag& old_tag, const Tag& new_tag) {
    using dxf::GroupType;
    switch (old_tag.type()) {
        case GroupType::Real:
            return old_tag.real() == new_tag.real() ||
                   (isAngleCode(old_tag.code()) && isSameAngle(old_tag.real(), new_tag.real()));
        case GroupType::Int16:
        case GroupType::Int32:
        case GroupType::Int64:
        case GroupType::Bool:
            return old_tag.integer() == new_tag.integer();
        case GroupType::Handle:
        case GroupType::HandleRef: {
            const uint64_t handle = new_tag.handleValue();
            return old_tag.handleValue() == handle ||
                   (handle == 0 && database.findHandle(old_tag.handleValue()) == kNoSlot);
        }
        default:
            return old_tag.text(database.codec()) == new_tag.text(database.codec());
    }
}

/// Pairs the n-th tag of a code in one list with the n-th of that code in another.
class Occurrences {
  public:
    explicit Occurrences(const Tags& tags) {
        for (size_t i = 0; i < tags.size(); ++i)
            by_code_[tags[i].code()].push_back(i);
    }
    bool has(int code) const { return by_code_.count(code) != 0; }
    /// The next index of this code; SIZE_MAX when there are no more.
    size_t next(int code) {
        const auto found = by_code_.find(code);
        if (found == by_code_.end()) return SIZE_MAX;
        size_t& used = used_[code];
        return used < found->second.size() ? found->second[used++] : SIZE_MAX;
    }

  private:
    std::unordered_map<int, std::vector<size_t>> by_code_;
    std::unordered_map<int, size_t> used_;
};

/// The entity's new tags in the old order: the n-th tag of a code gets the value of the n-th in the
/// list, with its old bytes where that is the same; further ones follow their neighbour in the
/// list, surplus old ones of a code that the list names go, and codes that it doesn't name stay.
Tags mergeTags(const Database& database, const Tags& old_tags, const Tags& new_tags,
               bool& changes) {
    Occurrences old_places(old_tags);
    const Occurrences named(new_tags);
    std::vector<size_t> replacement(old_tags.size(), SIZE_MAX);
    std::vector<size_t> anchor(new_tags.size(), SIZE_MAX);  // old tag that a further one follows
    size_t last_matched = SIZE_MAX;
    changes = false;
    for (size_t i = 0; i < new_tags.size(); ++i) {
        const size_t old_index = old_places.next(new_tags[i].code());
        if (old_index == SIZE_MAX) {
            anchor[i] = last_matched;
            changes = true;
        } else {
            replacement[old_index] = i;
            last_matched = old_index;
        }
    }
    Tags out;
    out.reserve(old_tags.size() + new_tags.size());
    for (size_t i = 0; i < old_tags.size(); ++i) {
        const size_t with = replacement[i];
        if (with == SIZE_MAX) {
            const bool surplus = named.has(old_tags[i].code());
            changes = changes || surplus;
            if (!surplus) out.push_back(old_tags[i]);
            continue;
        }
        const bool same = sameValue(database, old_tags[i], new_tags[with]);
        changes = changes || !same;
        out.push_back(same ? old_tags[i] : new_tags[with]);
        for (size_t next = with + 1; next < new_tags.size() && anchor[next] == i; ++next) {
            out.push_back(new_tags[next]);
        }
    }
    // What stands in front of the first known group of the list has no neighbour: it goes last.
    const Occurrences old_codes(old_tags);
    for (size_t i = 0; i < new_tags.size() && anchor[i] == SIZE_MAX; ++i) {
        if (old_codes.has(new_tags[i].code())) break;
        out.push_back(new_tags[i]);
    }
    return out;
}

/// Part of an object's tags in front of its class groups: type, handle, braces, owner.
size_t headSize(const Tags& tags) {
    const size_t marker = findTag(tags, 100);
    return marker < tags.size() ? marker : std::min<size_t>(tags.size(), 2);
}

/// The data of an xrecord is replaced as a whole, from its class on: its order counts.
bool modifyXrecord(Database& database, Slot slot, const resbuf* list) {
    if (findNode(list, 100) == nullptr) return true;
    Tags wanted;
    if (!xrecordFromList(database, list, wanted)) return false;
    const Tags& present = database.tags(slot);
    const auto head = present.begin() + static_cast<std::ptrdiff_t>(headSize(present));
    const bool same = std::equal(head, present.end(), wanted.begin(), wanted.end(),
                                 [&database](const Tag& old_tag, const Tag& new_tag) {
                                     return old_tag.code() == new_tag.code() &&
                                            sameValue(database, old_tag, new_tag);
                                 });
    if (same) return true;
    Tags& tags = database.changeTags(slot);
    tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(headSize(tags)), tags.end());
    tags.insert(tags.end(), std::make_move_iterator(wanted.begin()),
                std::make_move_iterator(wanted.end()));
    database.touch(slot);
    return true;
}

/// Changes the object's own groups.
bool modifyGroups(Database& database, Slot slot, Tags wanted) {
    const std::string& type = database.typeName(slot);
    dropOwnGroups(wanted, type == "DIMSTYLE");
    if (wanted.empty()) return true;
    const Tags& present = database.tags(slot);
    const ObjectClass object_class = database.record(slot).object_class;
    // A table has its name in front of its handle.
    const size_t head = object_class == ObjectClass::TableHead ? 1 : headSize(present);
    const Tags old_body(present.begin() + static_cast<std::ptrdiff_t>(head), present.end());
    const bool graphical =
        object_class == ObjectClass::Entity || object_class == ObjectClass::SubEntity;
    flattenVertices(type, wanted);
    bool changes = false;
    Tags body = mergeTags(database, old_body, wanted, changes);
    if (!changes) return true;
    if (graphical) {
        if (!resolveNames(database, type, body) || !arrangeEntity(type, body)) return false;
    }
    const std::u16string old_name = database.symbolName(slot);
    Tags tags(present.begin(), present.begin() + static_cast<std::ptrdiff_t>(head));
    for (Tag& tag : body)
        tags.push_back(std::move(tag));
    if (object_class == ObjectClass::TableRecord &&
        !database.renameSymbol(slot, old_name, textOf(database, tags, 2))) {
        return false;
    }
    if (database.isGroup(slot)) {
        database.changeGroupTags(slot, std::move(tags));
    } else {
        database.changeTags(slot) = std::move(tags);
    }
    database.touch(slot);
    if (object_class == ObjectClass::TableRecord) database.recountLockedLayers();
    return true;
}

bool modifyTags(Database& database, Slot slot, const resbuf* list) {
    if (database.typeName(slot) == "XRECORD") return modifyXrecord(database, slot, list);
    Tags wanted;
    Slot extension = kNoSlot;
    if (!tagsFromChain(list, wanted) || !takeExtension(database, wanted, extension)) return false;
    if (!modifyGroups(database, slot, std::move(wanted))) return false;
    if (extension != kNoSlot) database.addExtension(slot, extension);
    return true;
}

}  // namespace
}  // namespace host

extern "C" {

int acdbEntMakeX(const resbuf* list, ads_name name) {
    int status = 0;
    if (host::mustFail(host::Call::acdbEntMakeX, status)) return status;
    host::Database* database = host::currentDatabase();
    if (database == nullptr || list == nullptr) return RTERROR;
    bool complete = false;
    const host::Slot slot = host::EntityMaker(*database, list).make(complete);
    if (slot == host::kNoSlot) {
        host::setErrno(host::HostErrno::BadEntityList);
        return RTREJ;
    }
    if (name != nullptr) database->nameOf(complete ? slot : host::kNoSlot, name);
    return RTNORM;
}

int acdbEntMod(const resbuf* list) {
    int status = 0;
    if (host::mustFail(host::Call::acdbEntMod, status)) return status;
    const resbuf* named = host::findNode(list, -1);
    if (named == nullptr) return RTERROR;
    const AcDbObjectId id = host::Database::idFromName(named->resval.rlname);
    host::Database* database = host::Database::find(id);
    if (database == nullptr) {
        host::setErrno(host::HostErrno::BadEntityName);
        return RTERROR;
    }
    const host::Slot slot = database->slotOf(id);
    const host::ObjectRecord& record = database->record(slot);
    if (record.erased || record.writer || record.readers > 0) return RTERROR;
    if (database->isOnLockedLayer(slot)) {
        host::setErrno(host::HostErrno::LayerLocked);
        return RTERROR;
    }
    const std::string type = host::typeOf(list);
    if (!type.empty() && type != database->typeName(slot)) return RTREJ;
    // The contents of dictionaries change through the dictionary functions only.
    const bool fixed = database->dictionary(slot) != nullptr;
    if (!fixed && !host::modifyTags(*database, slot, list)) {
        host::setErrno(host::HostErrno::BadEntityList);
        return RTREJ;
    }
    return host::takeXData(*database, slot, list) ? RTNORM : RTREJ;
}
}
