/// The classes of symbol tables and their records: views of the drawing's tables. A layer keeps its
/// state in two groups: 70 has bits for frozen and locked, 62 the colour, negative when it is off.
#include <cstdlib>

#include "acad/blocks.h"
#include "acad/tables.h"
#include "base/faults.h"
#include "db/database.h"
#include "edit/drawing_state.h"
#include "edit/tag_values.h"
#include "kz_tls21an/memory.h"
#include "kz_tls21an/str.h"
#include "kz_tls21an/text.h"

namespace host {

/// A record that is in no table yet.
struct SymbolContent {
    std::u16string name;
    Tags groups;
};

/// An object that belongs to a table, for the class of its table.
AcDbObject* Database::newTableInstance(Slot slot) const {
    if (records_[slot].object_class == ObjectClass::TableRecord) {
        const std::string& type = typeName(slot);
        if (type == "BLOCK_RECORD") return new AcDbBlockTableRecord;
        if (type == "LAYER") return new AcDbLayerTableRecord;
        if (type == "LTYPE") return new AcDbLinetypeTableRecord;
        return new AcDbSymbolTableRecord;
    }
    for (const auto& table : tables_) {
        if (table->head != slot) continue;
        if (table->name == "BLOCK_RECORD") return new AcDbBlockTable;
        if (table->name == "LAYER") return new AcDbLayerTable;
        if (table->name == "LTYPE") return new AcDbLinetypeTable;
    }
    return new AcDbSymbolTable;
}

namespace {

constexpr int kLinetypeCode = 6;
constexpr int kColorCode = 62;
constexpr int kFlagsCode = 70;

constexpr int64_t kFrozenFlag = 1;
constexpr int64_t kLockedFlag = 4;
constexpr int64_t kDependentFlag = 16;

constexpr int64_t kWhite = 7;
constexpr int64_t kLastColor = 255;

/// The object of a table. @return kNoSlot when the drawing has none and none is to be made
Slot tableHead(Database& drawing, const char* name, bool make) {
    const SymbolTable* table = drawing.table(name);
    if (table != nullptr && table->head != kNoSlot) return table->head;
    return make ? drawing.needTableHead(name) : kNoSlot;
}

template <class Table>
Acad::ErrorStatus openTable(Database* drawing, const char* name, AcDb::OpenMode mode,
                            Table*& table) {
    table = nullptr;
    int fault = 0;
    if (mustFail(Call::getSymbolTable, fault)) return static_cast<Acad::ErrorStatus>(fault);
    if (drawing == nullptr) return Acad::eNoDatabase;
    const Slot head = tableHead(*drawing, name, mode == AcDb::kForWrite);
    if (head == kNoSlot) return Acad::eKeyNotFound;
    return acdbOpenObject(table, drawing->idOf(head), mode);
}

/// True for a living record of this table.
bool isRecordOf(const Database& drawing, Slot slot, const char* table) {
    if (slot == kNoSlot) return false;
    const ObjectRecord& record = drawing.record(slot);
    return record.object_class == ObjectClass::TableRecord && !record.erased &&
           drawing.typeName(slot) == table;
}

}  // namespace
}  // namespace host

using host::Database;
using host::kNoSlot;
using host::Slot;

Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbBlockTable*& table, AcDb::OpenMode mode) const {
    return host::openTable(drawing_, "BLOCK_RECORD", mode, table);
}

Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbLayerTable*& table, AcDb::OpenMode mode) const {
    return host::openTable(drawing_, "LAYER", mode, table);
}

Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbLinetypeTable*& table,
                                               AcDb::OpenMode mode) const {
    return host::openTable(drawing_, "LTYPE", mode, table);
}

// --- records ------------------------------------------------------------------------------------

AcDbSymbolTableRecord::AcDbSymbolTableRecord() : content_(new host::SymbolContent) {}
AcDbSymbolTableRecord::~AcDbSymbolTableRecord() = default;

const host::Tags* AcDbSymbolTableRecord::groups() const {
    if (database_ == nullptr) return &content_->groups;
    return isReadEnabled() ? &database_->tags(slot_) : nullptr;
}

int64_t AcDbSymbolTableRecord::integer(int code, int64_t otherwise) const {
    const host::Tags* tags = groups();
    return tags == nullptr ? otherwise : host::integerOf(*tags, code, otherwise);
}

Acad::ErrorStatus AcDbSymbolTableRecord::change(host::Tag group) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (database_ == nullptr) {
        host::replaceTag(content_->groups, std::move(group));
        return Acad::eOk;
    }
    host::replaceTag(database_->changeTags(slot_), std::move(group));
    database_->touch(slot_);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableRecord::getName(ACHAR*& name) const {
    name = nullptr;
    int fault = 0;
    if (host::mustFail(host::Call::getName, fault)) return static_cast<Acad::ErrorStatus>(fault);
    if (!isReadEnabled()) return Acad::eNotOpenForRead;
    const std::u16string text =
        database_ == nullptr ? content_->name : database_->symbolName(slot_);
    name = kz_Str_dup(text.c_str());
    return name == nullptr ? Acad::eOutOfMemory : Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableRecord::setName(const ACHAR* name) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (acdbSNValid(name, 0) != RTNORM) return Acad::eInvalidInput;
    if (database_ == nullptr) {
        content_->name = name;
        return Acad::eOk;
    }
    // Entities name their layer and line type by the text.
    const std::u16string present = database_->symbolName(slot_);
    if (kz::compareNoCase(present, name) != 0) return Acad::eNotApplicable;
    return present == name ? Acad::eOk : change(host::Tag(2, std::u16string(name)));
}

bool AcDbSymbolTableRecord::isDependent() const {
    return (integer(host::kFlagsCode, 0) & host::kDependentFlag) != 0;
}

const char* AcDbSymbolTableRecord::tableName() const {
    return "";
}

void AcDbSymbolTableRecord::entered() {}

Acad::ErrorStatus AcDbSymbolTableRecord::describe(host::NewObject& out) {
    out.type = tableName();
    out.groups = content_->groups;
    return Acad::eOk;
}

// --- layers and line types ----------------------------------------------------------------------

AcDbLayerTableRecord::AcDbLayerTableRecord() {
    change(host::Tag(host::kFlagsCode, int64_t{0}));
    change(host::Tag(host::kColorCode, host::kWhite));
    change(host::Tag(host::kLinetypeCode, u"Continuous"));
}

const char* AcDbLayerTableRecord::tableName() const {
    return "LAYER";
}

Acad::ErrorStatus AcDbLayerTableRecord::describe(host::NewObject& out) {
    const bool foreign = !linetype_.isNull() && out.drawing.slotOf(linetype_) == kNoSlot;
    return foreign ? Acad::eNotThatKindOfClass : AcDbSymbolTableRecord::describe(out);
}

bool AcDbLayerTableRecord::isFrozen() const {
    return (integer(host::kFlagsCode, 0) & host::kFrozenFlag) != 0;
}

bool AcDbLayerTableRecord::isLocked() const {
    return (integer(host::kFlagsCode, 0) & host::kLockedFlag) != 0;
}

bool AcDbLayerTableRecord::isOff() const {
    return integer(host::kColorCode, host::kWhite) < 0;
}

Acad::ErrorStatus AcDbLayerTableRecord::setFlag(int64_t flag, bool on) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    const int64_t flags = integer(host::kFlagsCode, 0);
    const int64_t wanted = on ? flags | flag : flags & ~flag;
    if (wanted == flags) return Acad::eOk;
    const Acad::ErrorStatus status = change(host::Tag(host::kFlagsCode, wanted));
    if (database_ != nullptr) database_->recountLockedLayers();
    return status;
}

Acad::ErrorStatus AcDbLayerTableRecord::setIsFrozen(bool frozen) {
    const bool is_current = database_ != nullptr && database()->clayer() == objectId();
    if (frozen && is_current && isWriteEnabled()) return Acad::eInvalidInput;
    return setFlag(host::kFrozenFlag, frozen);
}

Acad::ErrorStatus AcDbLayerTableRecord::setIsLocked(bool locked) {
    return setFlag(host::kLockedFlag, locked);
}

Acad::ErrorStatus AcDbLayerTableRecord::setIsOff(bool off) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    const int64_t color = std::abs(integer(host::kColorCode, host::kWhite));
    return isOff() == off ? Acad::eOk : change(host::Tag(host::kColorCode, off ? -color : color));
}

AcCmColor AcDbLayerTableRecord::color() const {
    AcCmColor color;
    const int64_t index = std::abs(integer(host::kColorCode, host::kWhite));
    color.setColorIndex(static_cast<uint16_t>(index));
    return color;
}

Acad::ErrorStatus AcDbLayerTableRecord::setColor(const AcCmColor& color) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    const int64_t index = color.colorIndex();
    if (index < 1 || index > host::kLastColor) return Acad::eInvalidInput;
    return change(host::Tag(host::kColorCode, isOff() ? -index : index));
}

AcDbObjectId AcDbLayerTableRecord::linetypeObjectId() const {
    const host::Tags* tags = groups();
    if (database_ == nullptr) return linetype_;
    if (tags == nullptr) return {};
    const size_t at = host::findTag(*tags, host::kLinetypeCode);
    if (at == tags->size()) return {};
    return database_->idOf(database_->findSymbol("LTYPE", (*tags)[at].text(database_->codec())));
}

Acad::ErrorStatus AcDbLayerTableRecord::setLinetypeObjectId(AcDbObjectId linetype) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (linetype.isNull()) return Acad::eNullObjectId;
    Database* drawing = database_ == nullptr ? Database::find(linetype) : database_;
    const Slot slot = drawing == nullptr ? kNoSlot : drawing->slotOf(linetype);
    if (drawing == nullptr || !host::isRecordOf(*drawing, slot, "LTYPE")) {
        return Acad::eNotThatKindOfClass;
    }
    if (database_ == nullptr) linetype_ = linetype;
    return change(host::Tag(host::kLinetypeCode, drawing->symbolName(slot)));
}

AcDbLinetypeTableRecord::AcDbLinetypeTableRecord() {
    for (const auto& [code, value] : {std::pair{host::kFlagsCode, 0}, {72, 65}, {73, 0}}) {
        change(host::Tag(code, int64_t{value}));
    }
    change(host::Tag(40, 0.0));
}

const char* AcDbLinetypeTableRecord::tableName() const {
    return "LTYPE";
}

// --- iterator -----------------------------------------------------------------------------------

void* AcDbSymbolTableIterator::operator new(size_t size) noexcept {
    return kz_Malloc(size);
}

void AcDbSymbolTableIterator::operator delete(void* block) noexcept {
    kz_Free(block);
}

namespace {

/// The table whose object this is; NULL once its drawing is closed.
const host::SymbolTable* tableOf(AcDbObjectId id) {
    Database* drawing = Database::find(id);
    if (drawing == nullptr) return nullptr;
    const Slot slot = drawing->slotOf(id);
    for (const auto& table : drawing->tables()) {
        if (table->head == slot) return table.get();
    }
    return nullptr;
}

}  // namespace

void AcDbSymbolTableIterator::settle(bool forward, bool skip_deleted) {
    const Database* drawing = Database::find(table_);
    const host::SymbolTable* table = tableOf(table_);
    while (skip_deleted && table != nullptr && !done()) {
        if (!drawing->record(table->records[static_cast<size_t>(index_)]).erased) return;
        index_ += forward ? 1 : -1;
    }
}

void AcDbSymbolTableIterator::start(bool atBeginning, bool skipDeleted) {
    const host::SymbolTable* table = tableOf(table_);
    const int64_t count = table == nullptr ? 0 : static_cast<int64_t>(table->records.size());
    index_ = atBeginning ? 0 : count - 1;
    settle(atBeginning, skipDeleted);
}

bool AcDbSymbolTableIterator::done() const {
    const host::SymbolTable* table = tableOf(table_);
    return table == nullptr || index_ < 0 || static_cast<size_t>(index_) >= table->records.size();
}

void AcDbSymbolTableIterator::step(bool forward, bool skipDeleted) {
    if (done()) return;
    index_ += forward ? 1 : -1;
    settle(forward, skipDeleted);
}

Acad::ErrorStatus AcDbSymbolTableIterator::getRecordId(AcDbObjectId& id) const {
    if (done()) return Acad::eIteratorDone;
    id = Database::find(table_)->idOf(tableOf(table_)->records[static_cast<size_t>(index_)]);
    return Acad::eOk;
}

// --- tables -------------------------------------------------------------------------------------

Acad::ErrorStatus AcDbSymbolTable::checkReadable() const {
    if (database_ == nullptr) return Acad::eNoDatabase;
    return isReadEnabled() ? Acad::eOk : Acad::eNotOpenForRead;
}

std::string AcDbSymbolTable::tableName() const {
    const host::SymbolTable* table = tableOf(objectId());
    return table == nullptr ? std::string() : table->name;
}

Acad::ErrorStatus AcDbSymbolTable::getAt(const ACHAR* name, AcDbObjectId& id) const {
    int fault = 0;
    if (host::mustFail(host::Call::getAt, fault)) return static_cast<Acad::ErrorStatus>(fault);
    const Acad::ErrorStatus status = checkReadable();
    if (status != Acad::eOk) return status;
    const Slot record = name == nullptr ? kNoSlot : database_->findSymbol(tableName(), name);
    if (record == kNoSlot) return Acad::eKeyNotFound;
    id = database_->idOf(record);
    return Acad::eOk;
}

bool AcDbSymbolTable::has(const ACHAR* name) const {
    return checkReadable() == Acad::eOk && name != nullptr &&
           database_->findSymbol(tableName(), name) != kNoSlot;
}

bool AcDbSymbolTable::has(AcDbObjectId id) const {
    return checkReadable() == Acad::eOk &&
           host::isRecordOf(*database_, database_->slotOf(id), tableName().c_str());
}

Acad::ErrorStatus AcDbSymbolTable::add(AcDbSymbolTableRecord* record) {
    AcDbObjectId id;
    return add(id, record);
}

Acad::ErrorStatus AcDbSymbolTable::add(AcDbObjectId& id, AcDbSymbolTableRecord* record) {
    int fault = 0;
    if (host::mustFail(host::Call::add, fault)) return static_cast<Acad::ErrorStatus>(fault);
    if (database_ == nullptr) return Acad::eNoDatabase;
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (record == nullptr) return Acad::eNullObjectPointer;
    if (record->database() != nullptr) return Acad::eAlreadyInDb;
    if (record->tableName() != tableName()) return Acad::eNotThatKindOfClass;
    const std::u16string& name = record->content_->name;
    if (acdbSNValid(name.c_str(), 0) != RTNORM) return Acad::eInvalidInput;
    Slot made = kNoSlot;
    const Acad::ErrorStatus status = database_->takeOverSymbol(*record, name, made);
    if (status != Acad::eOk) return status;
    record->content_.reset();
    record->entered();
    database_->recountLockedLayers();
    id = database_->idOf(made);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTable::newIterator(AcDbSymbolTableIterator*& iterator, bool atBeginning,
                                               bool skipDeleted) const {
    iterator = nullptr;
    if (host::mustFail(host::Call::newIterator)) return Acad::eOutOfMemory;
    const Acad::ErrorStatus status = checkReadable();
    if (status != Acad::eOk) return status;
    iterator = new AcDbSymbolTableIterator(objectId());
    if (iterator == nullptr) return Acad::eOutOfMemory;
    iterator->start(atBeginning, skipDeleted);
    return Acad::eOk;
}
