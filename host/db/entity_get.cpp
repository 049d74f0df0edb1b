/// Entities as lists of groups: reading, walking, erasing; tables and dictionaries in the same
/// form.
#include "acad/ads.h"
#include "base/faults.h"
#include "base/resbuf.h"
#include "base/wildcard.h"
#include "db/groups.h"
#include "edit/shapes.h"
#include "edit/sysvars.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// Database and slot behind an entity name.
struct Named {
    Database* database = nullptr;
    Slot slot = kNoSlot;
    explicit Named(const ads_name name) {
        const AcDbObjectId id = Database::idFromName(name);
        database = Database::find(id);
        if (database != nullptr) slot = database->slotOf(id);
    }
    bool good() const { return slot != kNoSlot; }
    const ObjectRecord& record() const { return database->record(slot); }
};

bool appWanted(const resbuf* apps, const std::u16string& app) {
    for (const resbuf* node = apps; node != nullptr; node = node->rbnext) {
        if (node->restype != RTSTR || node->resval.rstring == nullptr) continue;
        if (wildcardMatchNoCase(app, node->resval.rstring)) return true;
    }
    return false;
}

void addXData(Database& database, Slot slot, const resbuf* apps, ChainBuilder& chain) {
    bool marked = false;
    for (const AppData& app : database.xdata(slot)) {
        if (!appWanted(apps, app.app)) continue;
        if (!marked) chain.add(acutNewRb(-3));
        marked = true;
        resbuf* head = nullptr;
        if (appendXDataChain(app, &head) == nullptr) {
            acutRelRb(head);
            head = nullptr;
        }
        chain.add(head);
    }
}

/// The first living entity of a block, for group -2.
Slot firstEntity(Database& database, Slot block_record) {
    const Block* block = database.findBlock(block_record);
    if (block == nullptr) return kNoSlot;
    for (const Slot slot : block->contents) {
        if (!database.record(slot).erased) return slot;
    }
    return kNoSlot;
}

/// Groups of a table record as tblsearch shows them: without name, handle, owner and markers.
resbuf* symbolList(Database& database, Slot record) {
    ChainBuilder chain;
    const std::string& type = database.typeName(record);
    const bool is_block = type == "BLOCK_RECORD";
    chain.addText(0, is_block ? u"BLOCK" : kz::toUtf16(type));
    Slot source = record;
    const Block* block = is_block ? database.findBlock(record) : nullptr;
    if (block != nullptr && block->begin != kNoSlot) source = block->begin;
    Tags shown;
    bool in_braces = false;
    const Tags& tags = database.tags(source);
    for (size_t i = 1; i < tags.size(); ++i) {
        const int code = tags[i].code();
        if (code == 102) in_braces = !in_braces;
        if (in_braces || code == 102 || code == 5 || code == 105 || code == 100 || code == 330) {
            continue;
        }
        if (is_block && (code == 8 || code == 3 || code == 67)) continue;
        shown.push_back(tags[i]);
    }
    addObjectGroups(database, shown, is_block ? "BLOCK" : type, chain);
    if (is_block) {
        ads_name first;
        database.nameOf(firstEntity(database, record), first);
        if (!ads_name_nil(first)) chain.addName(-2, first);
    }
    return chain.release();
}

/// Table by the name that callers use: blocks are searched under "BLOCK".
SymbolTable* tableOf(Database* database, const ACHAR* name) {
    if (database == nullptr || name == nullptr) return nullptr;
    const std::string plain = kz::toUtf8(kz::toUpper(name));
    return database->table(plain == "BLOCK" ? "BLOCK_RECORD" : plain);
}

Slot symbolOf(Database& database, const SymbolTable& table, const ACHAR* name) {
    return name == nullptr ? kNoSlot : database.findSymbol(table.name, name);
}

resbuf* objectList(Database& database, Slot slot, const resbuf* apps) {
    ChainBuilder chain;
    ads_name name;
    database.nameOf(slot, name);
    chain.addName(-1, name);
    addObjectGroups(database, database.tags(slot), database.typeName(slot), chain);
    if (database.record(slot).object_class == ObjectClass::SubEntity &&
        database.typeName(slot) == "SEQEND") {
        database.nameOf(database.mainEntity(slot), name);
        chain.addName(-2, name);
    }
    if (apps != nullptr) addXData(database, slot, apps, chain);
    return chain.release();
}

/// True while somebody has the object open: it can't be changed by name then.
bool isOpen(const ObjectRecord& record) {
    return record.writer || record.readers > 0;
}

/// Groups and multiline styles live by their entry alone: taken out, they are erased.
bool erasesWhatItLoses(const Named& dictionary) {
    for (const std::u16string_view key : {u"ACAD_GROUP", u"ACAD_MLINESTYLE"}) {
        const Slot root = dictionary.database->namedObjects();
        if (dictionary.database->dictionaryEntry(root, key) == dictionary.slot) return true;
    }
    return false;
}

}  // namespace
}  // namespace host

extern "C" {

using host::Named;

int acdbHandEnt(const ACHAR* handle, ads_name name) {
    int status = 0;
    if (host::mustFail(host::Call::acdbHandEnt, status)) return status;
    host::Database* database = host::currentDatabase();
    uint64_t value = 0;
    if (database == nullptr || handle == nullptr || name == nullptr) return RTERROR;
    if (!host::dxf::parseHandle(kz::toUtf8(handle), value)) return RTERROR;
    const host::Slot slot = database->findHandle(value);
    if (slot == host::kNoSlot) return RTERROR;
    database->nameOf(slot, name);
    return RTNORM;
}

resbuf* acdbEntGetX(const ads_name name, const resbuf* apps) {
    if (host::mustFail(host::Call::acdbEntGet)) return nullptr;
    const Named entity(name);
    if (!entity.good() || entity.record().erased) {
        host::setErrno(host::HostErrno::BadEntityName);
        return nullptr;
    }
    return host::objectList(*entity.database, entity.slot, apps);
}

resbuf* acdbEntGet(const ads_name name) {
    return acdbEntGetX(name, nullptr);
}

int acdbEntDel(const ads_name name) {
    int status = 0;
    if (host::mustFail(host::Call::acdbEntDel, status)) return status;
    const Named entity(name);
    if (!entity.good()) return RTERROR;
    const host::ObjectRecord& record = entity.record();
    const bool fixed = record.object_class != host::ObjectClass::Entity &&
                       record.object_class != host::ObjectClass::Object;
    if (fixed || record.writer || record.readers > 0) return RTERROR;
    if (entity.slot == entity.database->namedObjects()) return RTERROR;
    if (entity.database->isOnLockedLayer(entity.slot)) {
        host::setErrno(host::HostErrno::LayerLocked);
        return RTERROR;
    }
    entity.database->setErased(entity.slot, !record.erased);
    return RTNORM;
}

int acdbEntLast(ads_name name) {
    int status = 0;
    if (host::mustFail(host::Call::acdbEntLast, status)) return status;
    host::Database* database = host::currentDatabase();
    const host::Slot slot =
        database == nullptr ? host::kNoSlot : database->lastEntity(host::currentSpace(*database));
    if (slot == host::kNoSlot || name == nullptr) return RTERROR;
    database->nameOf(slot, name);
    return RTNORM;
}

int acdbEntNext(const ads_name name, ads_name next) {
    int status = 0;
    if (host::mustFail(host::Call::acdbEntNext, status)) return status;
    host::Database* database = host::currentDatabase();
    host::Slot slot = host::kNoSlot;
    if (name != nullptr && !ads_name_nil(name)) {
        const Named entity(name);
        if (!entity.good() || entity.database->blockOfEntity(entity.slot) == nullptr) {
            host::setErrno(host::HostErrno::BadEntityName);
            return RTERROR;
        }
        database = entity.database;
        slot = entity.slot;
    }
    if (database == nullptr || next == nullptr) return RTERROR;
    const host::Slot found = database->nextEntity(slot, host::currentSpace(*database));
    if (found == host::kNoSlot) return RTERROR;
    database->nameOf(found, next);
    return RTNORM;
}

int acdbRegApp(const ACHAR* app) {
    int status = 0;
    if (host::mustFail(host::Call::acdbRegApp, status)) return status;
    host::Database* database = host::currentDatabase();
    if (database == nullptr || app == nullptr) return RTERROR;
    if (database->findSymbol("APPID", app) != host::kNoSlot) return RTNORM;
    if (acdbSNValid(app, 1) != RTNORM) return RTERROR;
    // Readers register, too, and a reader must not end what could be redone.
    const host::UndoPause pause(database->undo());
    host::Tags tags;
    tags.emplace_back(70, int64_t{0});
    return database->makeSymbol("APPID", app, std::move(tags)) != host::kNoSlot ? RTNORM : RTERROR;
}

int acdbSNValid(const ACHAR* name, int allowPipe) {
    const std::u16string_view text = name == nullptr ? std::u16string_view{} : name;
    if (text.empty() || text.size() > 255) return RTERROR;
    for (const ACHAR unit : text) {
        if (unit < 0x20 || (unit == u'|' && allowPipe == 0)) return RTERROR;
        if (std::u16string_view(u"<>/\\\":;?*,=`").find(unit) != std::u16string_view::npos) {
            return RTERROR;
        }
    }
    return text.front() == u' ' || text.back() == u' ' ? RTERROR : RTNORM;
}

// --- tables -------------------------------------------------------------------------------------

resbuf* acdbTblSearch(const ACHAR* table, const ACHAR* name, int setNext) {
    if (host::mustFail(host::Call::acdbTblSearch)) return nullptr;
    host::Database* database = host::currentDatabase();
    host::SymbolTable* symbols = host::tableOf(database, table);
    if (symbols == nullptr) return nullptr;
    const host::Slot record = host::symbolOf(*database, *symbols, name);
    if (record == host::kNoSlot) return nullptr;
    if (setNext != 0) symbols->walk = database->record(record).position + 1;
    return host::symbolList(*database, record);
}

resbuf* acdbTblNext(const ACHAR* table, int rewind) {
    host::Database* database = host::currentDatabase();
    host::SymbolTable* symbols = host::tableOf(database, table);
    if (symbols == nullptr) return nullptr;
    if (rewind != 0) symbols->walk = 0;
    while (symbols->walk < symbols->records.size()) {
        const host::Slot record = symbols->records[symbols->walk++];
        const bool is_layout = record == database->modelSpace() || record == database->paperSpace();
        if (!database->record(record).erased && !is_layout) {
            return host::symbolList(*database, record);
        }
    }
    return nullptr;
}

int acdbTblObjName(const ACHAR* table, const ACHAR* name, ads_name object) {
    host::Database* database = host::currentDatabase();
    const host::SymbolTable* symbols = host::tableOf(database, table);
    if (symbols == nullptr || object == nullptr) return RTERROR;
    host::Slot record = host::symbolOf(*database, *symbols, name);
    if (record == host::kNoSlot) return RTERROR;
    const host::Block* block = database->findBlock(record);
    if (block != nullptr && block->begin != host::kNoSlot) record = block->begin;
    database->nameOf(record, object);
    return RTNORM;
}

// --- dictionaries -------------------------------------------------------------------------------

int acdbNamedObjDict(ads_name dictionary) {
    host::Database* database = host::currentDatabase();
    if (database == nullptr || dictionary == nullptr) return RTERROR;
    const host::Slot slot = database->needNamedObjects();
    database->nameOf(slot, dictionary);
    return RTNORM;
}

resbuf* acdbDictSearch(const ads_name dictionary, const ACHAR* key, int setNext) {
    const Named holder(dictionary);
    if (!holder.good() || key == nullptr) return nullptr;
    host::DictionaryData* entries = holder.database->dictionary(holder.slot);
    const host::Slot object = holder.database->dictionaryEntry(holder.slot, key);
    if (entries == nullptr || object == host::kNoSlot) return nullptr;
    if (setNext != 0) entries->walk = entries->find(key) + 1;
    return host::objectList(*holder.database, object, nullptr);
}

resbuf* acdbDictNext(const ads_name dictionary, int rewind) {
    const Named holder(dictionary);
    host::DictionaryData* entries =
        holder.good() ? holder.database->dictionary(holder.slot) : nullptr;
    if (entries == nullptr) return nullptr;
    const size_t next =
        holder.database->dictionaryNext(holder.slot, rewind != 0 ? 0 : entries->walk);
    if (next == host::DictionaryData::kNone) {
        entries->walk = entries->count();
        return nullptr;
    }
    entries->walk = next + 1;
    const host::Slot object = holder.database->dictionaryObject(holder.slot, next);
    return host::objectList(*holder.database, object, nullptr);
}

int acdbDictAdd(const ads_name dictionary, const ACHAR* key, const ads_name object) {
    const Named holder(dictionary);
    const Named entry(object);
    if (!holder.good() || !entry.good() || key == nullptr) return RTERROR;
    if (holder.database != entry.database || host::isOpen(holder.record())) return RTERROR;
    const Acad::ErrorStatus status = holder.database->dictionaryAdd(holder.slot, key, entry.slot);
    return status == Acad::eOk ? RTNORM : RTREJ;
}

int acdbDictRemove(const ads_name dictionary, const ACHAR* key) {
    const Named holder(dictionary);
    if (!holder.good() || key == nullptr || host::isOpen(holder.record())) return RTERROR;
    const host::Slot object = holder.database->dictionaryEntry(holder.slot, key);
    if (holder.database->dictionaryRemove(holder.slot, key) != Acad::eOk) return RTREJ;
    if (host::erasesWhatItLoses(holder)) holder.database->setErased(object, true);
    return RTNORM;
}

int acdbDictRename(const ads_name dictionary, const ACHAR* oldKey, const ACHAR* newKey) {
    const Named holder(dictionary);
    if (!holder.good() || oldKey == nullptr || newKey == nullptr) return RTERROR;
    if (host::isOpen(holder.record())) return RTERROR;
    const Acad::ErrorStatus status = holder.database->dictionaryRename(holder.slot, oldKey, newKey);
    return status == Acad::eOk ? RTNORM : RTREJ;
}
}
