/// Object table, names, decoding and the open discipline.
#include "db/database.h"

#include <algorithm>

#include "acad/blocks.h"
#include "acad/dict.h"
#include "acad/groups.h"
#include "base/resbuf.h"
#include "db/links.h"
#include "host/counters.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// Upper 16 bits of the two words of an entity name. With them no word is a canonical address.
constexpr uint64_t kNameMark0 = 0x4B5AU;
constexpr uint64_t kNameMark1 = 0x4E41U;
constexpr uint32_t kSlotCheck = 0x5BD1E995U;

int64_t open_objects = 0;

std::unique_ptr<Database>& currentHolder() {
    static std::unique_ptr<Database> current;
    return current;
}

}  // namespace

/// All living databases by index. An index that is used again gets another generation, so ids of a
/// closed database lead nowhere.
class DatabaseList {
  public:
    static DatabaseList& instance() {
        static DatabaseList* const list = new DatabaseList;  // outlives the current database
        return *list;
    }

    void enter(Database& database) {
        size_t index = 1;
        while (index < cells_.size() && cells_[index].database != nullptr)
            ++index;
        if (index >= cells_.size()) cells_.resize(index + 1);
        cells_[index].database = &database;
        database.index_ = static_cast<uint16_t>(index);
        database.generation_ = ++cells_[index].generation;
    }

    void leave(const Database& database) { cells_[database.index_].database = nullptr; }

    Database* find(uint16_t index, uint16_t generation) const {
        if (index == 0 || index >= cells_.size()) return nullptr;
        const Cell& cell = cells_[index];
        return cell.generation == generation ? cell.database : nullptr;
    }

  private:
    struct Cell {
        Database* database = nullptr;
        uint16_t generation = 0;
    };
    std::vector<Cell> cells_;
};

Database::Database() : records_(1) {
    DatabaseList::instance().enter(*this);
}

Database::~Database() {
    if (links_ != nullptr) announceClosing(*this);
    for (ObjectRecord& record : records_) {
        open_objects -= record.readers + (record.writer ? 1 : 0);
        delete record.object;
    }
    DatabaseList::instance().leave(*this);
}

// --- names --------------------------------------------------------------------------------------

AcDbObjectId Database::idOf(Slot slot) const {
    if (slot == kNoSlot) return {};
    return AcDbObjectId(static_cast<uint64_t>(index_) << 48U |
                        static_cast<uint64_t>(generation_) << 32U | slot);
}

Slot Database::slotOf(AcDbObjectId id) const {
    const uint64_t value = id.asOldId();
    const auto slot = static_cast<Slot>(value);
    return idOf(slot) == id && slot < records_.size() ? slot : kNoSlot;
}

Database* Database::find(AcDbObjectId id) {
    const uint64_t value = id.asOldId();
    Database* database = DatabaseList::instance().find(static_cast<uint16_t>(value >> 48U),
                                                       static_cast<uint16_t>(value >> 32U));
    if (database == nullptr || database->slotOf(id) == kNoSlot) return nullptr;
    return database;
}

void Database::nameOf(Slot slot, ads_name name) const {
    if (slot == kNoSlot) {
        ads_name_clear(name);
        return;
    }
    name[0] = static_cast<int64_t>(kNameMark0 << 48U | static_cast<uint64_t>(index_) << 32U | slot);
    name[1] = static_cast<int64_t>(kNameMark1 << 48U | static_cast<uint64_t>(generation_) << 32U |
                                   (slot ^ kSlotCheck));
}

AcDbObjectId Database::idFromName(const ads_name name) {
    if (name == nullptr) return {};
    const auto word0 = static_cast<uint64_t>(name[0]);
    const auto word1 = static_cast<uint64_t>(name[1]);
    const auto slot = static_cast<Slot>(word0);
    if (word0 >> 48U != kNameMark0 || word1 >> 48U != kNameMark1) return {};
    if (static_cast<uint32_t>(word1) != (slot ^ kSlotCheck)) return {};
    const AcDbObjectId id((word0 >> 32U & 0xFFFFU) << 48U | (word1 >> 32U & 0xFFFFU) << 32U | slot);
    return find(id) == nullptr ? AcDbObjectId{} : id;
}

// --- object table -------------------------------------------------------------------------------

void Database::reserve(size_t objects) {
    records_.reserve(objects + 1);
    handles_.reserve(objects);
}

Slot Database::addRecord(std::string_view type, ObjectClass object_class) {
    if (type_names_.empty() || type_names_[last_type_] != type) {
        const auto [found, made] =
            types_.emplace(std::string(type), static_cast<uint16_t>(type_names_.size()));
        if (made) type_names_.emplace_back(type);
        last_type_ = found->second;
    }
    records_.emplace_back();
    records_.back().type = last_type_;
    records_.back().object_class = object_class;
    return static_cast<Slot>(records_.size() - 1);
}

bool Database::setHandle(Slot slot, uint64_t handle) {
    if (!handles_.insert(handle, slot)) return false;
    records_[slot].handle = handle;
    raiseHandleSeed(handle + 1);
    return true;
}

Slot Database::makeRecord(std::string_view type, ObjectClass object_class, uint64_t owner,
                          Tags tags) {
    const Slot slot = addRecord(type, object_class);
    const uint64_t handle = newHandle();
    setHandle(slot, handle);
    ObjectData& object = data(slot);
    object.has_tags = object.has_xdata = true;
    object.tags.reserve(tags.size() + 3);
    object.tags.emplace_back(0, kz::toUtf16(type));
    object.tags.push_back(Tag::handle(type == "DIMSTYLE" ? 105 : 5, handle));
    object.tags.push_back(Tag::handle(330, owner));
    for (Tag& tag : tags)
        object.tags.push_back(std::move(tag));
    records_[slot].changed = true;
    undo_.keepCreation(slot);
    touch(slot);
    return slot;
}

void Database::moveHandle(Slot from, Slot to) {
    const uint64_t handle = records_[from].handle;
    records_[from].handle = 0;
    records_[to].handle = handle;
    handles_.replace(handle, to);
}

void Database::raiseHandleSeed(uint64_t seed) {
    handle_seed_ = std::max(handle_seed_, seed);
}

uint64_t Database::newHandle() {
    return handle_seed_++;
}

void Database::setImage(BigBytes bytes, size_t size) {
    image_ = std::move(bytes);
    image_view_ = {image_.get(), size};
}

// --- decoded objects ----------------------------------------------------------------------------

ObjectData& Database::data(Slot slot) {
    ObjectRecord& record = records_[slot];
    if (record.data == nullptr) record.data = std::make_unique<ObjectData>();
    return *record.data;
}

void Database::decodeTags(ObjectRecord& record, ObjectData& data) const {
    data.has_tags = true;
    if (record.bytes == nullptr) return;
    dxf::PairCursor cursor(record.bytes, record.bytes + record.xdata_offset);
    dxf::Pair pair;
    data.tags.reserve(record.xdata_offset / 14 + 2);
    while (cursor.next(pair)) {
        if (pair.code != 999) {
            data.tags.emplace_back(pair);
        } else if (!data.tags.empty()) {
            data.tags.back().takeComment(pair);
        }
    }
}

Tags& Database::decodedTags(Slot slot) {
    ObjectData& object = data(slot);
    if (!object.has_tags) decodeTags(records_[slot], object);
    const auto dictionary = dictionaries_.find(slot);
    if (dictionary != dictionaries_.end() && dictionary->second->changed) writeDictionaryTags(slot);
    const auto group = groups_.find(slot);
    if (group != groups_.end() && group->second->changed) writeGroupTags(slot);
    return object.tags;
}

XData& Database::decodedXData(Slot slot) {
    ObjectData& object = data(slot);
    if (!object.has_xdata) {
        object.has_xdata = true;
        const ObjectRecord& record = records_[slot];
        if (record.xdata_offset < record.size) {
            const std::string_view source(record.bytes + record.xdata_offset,
                                          record.size - record.xdata_offset);
            object.xdata = decodeXData(source, codec_, object.tail);
        }
    }
    return object.xdata;
}

const Tags& Database::tags(Slot slot) {
    return decodedTags(slot);
}

const XData& Database::xdata(Slot slot) {
    return decodedXData(slot);
}

void Database::releaseDecoded(Slot slot) {
    ObjectRecord& record = records_[slot];
    const bool as_in_file = record.bytes != nullptr && !record.changed && record.object == nullptr;
    if (as_in_file && record.data != nullptr && !record.data->tags_changed) record.data.reset();
}

Tags& Database::changeTags(Slot slot) {
    Tags& tags = decodedTags(slot);
    undo_.keepTags(slot);
    ObjectRecord& record = records_[slot];
    record.data->tags_changed = true;
    record.changed = true;
    noteChange();
    tellWatcher(slot);
    return tags;
}

XData& Database::changeXData(Slot slot) {
    XData& xdata = decodedXData(slot);
    undo_.keepXData(slot);
    records_[slot].changed = true;
    noteChange();
    return xdata;
}

void Database::touch(Slot slot) {
    noteChange();
    if (links_ != nullptr) notify(slot, nullptr);
}

Acad::ErrorStatus Database::setXData(Slot slot, const resbuf* chain) {
    XData& wanted = packing_;
    const Acad::ErrorStatus status = packXData(chain, codec_, wanted);
    if (status != Acad::eOk) return status;
    for (const AppData& app : wanted) {
        if (findSymbol("APPID", app.app) == kNoSlot) return Acad::eRegappIdNotFound;
    }
    const XData& present = xdata(slot);
    const auto sameApp = [](const std::u16string& name) {
        return [&name](const AppData& app) { return kz::compareNoCase(app.app, name) == 0; };
    };
    size_t size = 0;
    for (const AppData& app : present) {
        if (std::none_of(wanted.begin(), wanted.end(), sameApp(app.app))) size += app.items.size();
    }
    for (const AppData& app : wanted)
        size += app.items.size();
    // An item takes up to two bytes a packed unit and little besides; only near the limit it is
    // counted.
    if (size * 2 > kXDataLimit / 2) {
        XData together = wanted;
        for (const AppData& app : present) {
            if (std::none_of(wanted.begin(), wanted.end(), sameApp(app.app)))
                together.push_back(app);
        }
        if (xdataSize(together) > kXDataLimit) return Acad::eXdataSizeExceeded;
    }
    XData* target = nullptr;
    for (AppData& app : wanted) {
        const auto found = std::find_if(present.begin(), present.end(), sameApp(app.app));
        const bool missing = found == present.end();
        if (missing ? app.items.empty() : found->items == app.items) continue;
        const auto at = found - present.begin();
        if (target == nullptr) target = &changeXData(slot);
        if (missing) {
            target->push_back(app);
        } else if (app.items.empty()) {
            target->erase(target->begin() + at);
        } else {
            (*target)[static_cast<size_t>(at)].items = app.items;
            (*target)[static_cast<size_t>(at)].source = {};
        }
    }
    if (target != nullptr) touch(slot);
    return Acad::eOk;
}

void Database::turnErased(Slot slot) {
    ObjectRecord& record = records_[slot];
    record.erased = !record.erased;
    noteChange();
    tellWatcher(slot);
    if (DictionaryData* holder = dictionary(record.owner)) {
        const size_t entry = holder->findHandle(record.handle);
        if (entry != DictionaryData::kNone) holder->setHidden(entry, record.erased);
        // While the journal swaps, an owner that is as its file has it stays so.
        if (!undo_.isSwapping()) changeEntries(record.owner);
        holder->changed = records_[record.owner].changed;
    }
    if (record.object_class == ObjectClass::TableRecord && !record.erased) {
        if (SymbolTable* symbols = table(typeName(slot))) {
            symbols->by_name.insert_or_assign(kz::toUpper(symbolName(slot)), slot);
        }
    }
    if (links_ != nullptr) notify(slot, &record.erased);
    Block* block = record.erased ? nullptr : blockOfEntity(slot);
    if (block == nullptr) return;
    block->living_begin = std::min<size_t>(block->living_begin, record.position);
    block->living_end = std::max<size_t>(block->living_end, record.position + 1);
}

void Database::setErased(Slot slot, bool erased) {
    const ObjectRecord& record = records_[slot];
    if (record.erased == erased) return;
    undo_.keepErased(slot);
    turnErased(slot);
    if (isGroup(slot)) bindMembers(slot);
    if (record.object_class != ObjectClass::Entity) return;
    const Block* block = findBlock(record.owner);
    if (block == nullptr) return;
    for (size_t i = record.position + 1; i < block->contents.size(); ++i) {
        const Slot part = block->contents[i];
        if (records_[part].object_class != ObjectClass::SubEntity) break;
        if (records_[part].erased == erased) continue;
        undo_.keepErased(part);
        turnErased(part);
    }
}

void Database::setOwner(Slot slot, Slot owner) {
    if (records_[slot].owner == owner) return;
    undo_.keepOwner(slot);
    records_[slot].owner = owner;
    tellWatcher(slot);
}

// --- open and close -----------------------------------------------------------------------------

AcDbObject* Database::newInstance(Slot slot) {
    using Make = AcDbObject* (*)();
    struct Row {
        std::string_view type;
        Make make;
    };
    static constexpr Row kRows[] = {
        {"CIRCLE", []() -> AcDbObject* { return new AcDbCircle; }},
        {"ELLIPSE", []() -> AcDbObject* { return new AcDbEllipse; }},
        {"GROUP", []() -> AcDbObject* { return new AcDbGroup; }},
        {"INSERT", []() -> AcDbObject* { return new AcDbBlockReference; }},
        {"POINT", []() -> AcDbObject* { return new AcDbPoint; }},
        {"XRECORD", []() -> AcDbObject* { return new AcDbXrecord; }}};
    const ObjectClass object_class = records_[slot].object_class;
    if (object_class == ObjectClass::TableHead || object_class == ObjectClass::TableRecord) {
        return newTableInstance(slot);
    }
    if (isDictionary(slot)) return new AcDbDictionary;
    const std::string& type = typeName(slot);
    if (type == "POLYLINE") return newPolyline(slot);
    for (const Row& row : kRows) {
        if (row.type == type) return row.make();
    }
    const bool graphical =
        object_class == ObjectClass::Entity || object_class == ObjectClass::SubEntity;
    return graphical ? new AcDbEntity : new AcDbObject;
}

/// A polyline's flags tell its class; meshes have none of their own.
AcDbObject* Database::newPolyline(Slot slot) {
    constexpr int64_t kInSpace = 8;
    constexpr int64_t kMesh = 16 | 64;
    const Tags& groups = tags(slot);
    const size_t at = findTag(groups, 70);
    const int64_t flags = at < groups.size() ? groups[at].integer() : 0;
    if ((flags & kInSpace) != 0) return new AcDb3dPolyline;
    return (flags & kMesh) != 0 ? new AcDbEntity : new AcDb2dPolyline;
}

bool Database::makeObject(Slot slot) {
    AcDbObject* object = newInstance(slot);
    if (object == nullptr) return false;
    object->database_ = this;
    object->slot_ = slot;
    records_[slot].object = object;
    return true;
}

Acad::ErrorStatus Database::takeOver(AcDbObject& object, Slot& made) {
    NewObject fresh{*this, {}, {}};
    const Acad::ErrorStatus status = object.describe(fresh);
    if (status != Acad::eOk) return status;
    made = makeRecord(fresh.type, ObjectClass::Object, 0, std::move(fresh.groups));
    adopt(object, made);
    return Acad::eOk;
}

Acad::ErrorStatus Database::takeOverSymbol(AcDbObject& object, std::u16string_view name,
                                           Slot& made) {
    NewObject fresh{*this, {}, {}};
    const Acad::ErrorStatus status = object.describe(fresh);
    if (status != Acad::eOk) return status;
    made = makeSymbol(fresh.type, name, std::move(fresh.groups));
    if (made == kNoSlot) return Acad::eDuplicateKey;
    adopt(object, made);
    return Acad::eOk;
}

void Database::adopt(AcDbObject& object, Slot slot) {
    ObjectRecord& record = records_[slot];
    object.database_ = this;
    object.slot_ = slot;
    record.object = &object;
    record.writer = true;
    ++open_objects;
}

Acad::ErrorStatus Database::open(Slot slot, AcDb::OpenMode mode, bool open_erased,
                                 AcDbObject*& object) {
    ObjectRecord& record = records_[slot];
    if (record.erased && !open_erased) return Acad::eWasErased;
    if (record.writer) return Acad::eWasOpenForWrite;
    if (record.object == nullptr && !makeObject(slot)) return Acad::eOutOfMemory;
    if (mode == AcDb::kForWrite) {
        if (record.readers > 0) return Acad::eWasOpenForRead;
        if (locked_layers_ > 0 && isOnLockedLayer(slot)) return Acad::eOnLockedLayer;
        record.writer = true;
    } else {
        if (record.readers == UINT16_MAX) return Acad::eWasOpenForRead;
        ++record.readers;
    }
    ++open_objects;
    object = record.object;
    return Acad::eOk;
}

Acad::ErrorStatus Database::close(Slot slot) {
    ObjectRecord& record = records_[slot];
    if (record.writer) {
        record.writer = false;
    } else if (record.readers > 0) {
        --record.readers;
    } else {
        return Acad::eNotOpenForRead;
    }
    --open_objects;
    return Acad::eOk;
}

Acad::ErrorStatus Database::upgradeOpen(Slot slot) {
    ObjectRecord& record = records_[slot];
    if (record.writer) return Acad::eWasOpenForWrite;
    if (record.readers == 0) return Acad::eNotOpenForRead;
    if (record.readers > 1) return Acad::eWasOpenForRead;
    if (locked_layers_ > 0 && isOnLockedLayer(slot)) return Acad::eOnLockedLayer;
    record.readers = 0;
    record.writer = true;
    return Acad::eOk;
}

Acad::ErrorStatus Database::downgradeOpen(Slot slot) {
    ObjectRecord& record = records_[slot];
    if (!record.writer) return Acad::eNotOpenForWrite;
    record.writer = false;
    record.readers = 1;
    return Acad::eOk;
}

int64_t openObjectCount() {
    return open_objects;
}

Database* currentDatabase() {
    return currentHolder().get();
}

void setCurrentDatabase(std::unique_ptr<Database> database) {
    currentHolder() = std::move(database);
}

}  // namespace host
