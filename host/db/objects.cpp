/// AcDbObject and the functions that open objects by id.
#include "acad/db.h"
#include "base/faults.h"
#include "db/database.h"
#include "db/xdata.h"
#include "kz_tls21an/memory.h"
#include "kz_tls21an/text.h"

AcDbObject::~AcDbObject() = default;

void* AcDbObject::operator new(size_t size) noexcept {
    return kz_Malloc(size);
}

void AcDbObject::operator delete(void* block) noexcept {
    kz_Free(block);
}

Acad::ErrorStatus AcDbObject::describe(host::NewObject&) {
    return Acad::eNotThatKindOfClass;
}

AcDbObjectId AcDbObject::objectId() const {
    return database_ == nullptr ? AcDbObjectId{} : database_->idOf(slot_);
}

AcDbDatabase* AcDbObject::database() const {
    return database_ == nullptr ? nullptr : database_->facade();
}

Acad::ErrorStatus AcDbObject::close() {
    return database_ == nullptr ? Acad::eNoDatabase : database_->close(slot_);
}

Acad::ErrorStatus AcDbObject::upgradeOpen() {
    int fault = 0;
    if (host::mustFail(host::Call::upgradeOpen, fault))
        return static_cast<Acad::ErrorStatus>(fault);
    return database_ == nullptr ? Acad::eNoDatabase : database_->upgradeOpen(slot_);
}

Acad::ErrorStatus AcDbObject::downgradeOpen() {
    return database_ == nullptr ? Acad::eNoDatabase : database_->downgradeOpen(slot_);
}

Acad::ErrorStatus AcDbObject::erase(bool erasing) {
    int fault = 0;
    if (host::mustFail(host::Call::erase, fault)) return static_cast<Acad::ErrorStatus>(fault);
    if (database_ == nullptr) return Acad::eNoDatabase;
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (isErased() == erasing) return erasing ? Acad::eWasErased : Acad::eWasNotErased;
    if (slot_ == database_->namedObjects()) return Acad::eCannotBeErasedByCaller;
    database_->setErased(slot_, erasing);
    return Acad::eOk;
}

bool AcDbObject::isErased() const {
    return database_ != nullptr && database_->record(slot_).erased;
}

bool AcDbObject::isWriteEnabled() const {
    return database_ == nullptr || database_->record(slot_).writer;
}

bool AcDbObject::isReadEnabled() const {
    return isWriteEnabled() || database_->record(slot_).readers > 0;
}

resbuf* AcDbObject::xData(const ACHAR* app) const {
    if (host::mustFail(host::Call::xData)) return nullptr;
    if (database_ == nullptr || !isReadEnabled()) return nullptr;
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (const host::AppData& data : database_->xdata(slot_)) {
        if (app != nullptr && kz::compareNoCase(data.app, app) != 0) continue;
        tail = host::appendXDataChain(data, tail);
        if (tail == nullptr) {
            acutRelRb(head);
            return nullptr;
        }
    }
    return head;
}

Acad::ErrorStatus AcDbObject::setXData(const resbuf* chain) {
    int fault = 0;
    if (host::mustFail(host::Call::setXData, fault)) return static_cast<Acad::ErrorStatus>(fault);
    if (database_ == nullptr) return Acad::eNoDatabase;
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (chain == nullptr) return Acad::eInvalidInput;
    return database_->setXData(slot_, chain);
}

const char* AcDbObject::dxfName() const {
    return database_ == nullptr ? "" : database_->typeName(slot_).c_str();
}

Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErased) {
    object = nullptr;
    int fault = 0;
    if (host::mustFail(host::Call::acdbOpenObject, fault))
        return static_cast<Acad::ErrorStatus>(fault);
    if (id.isNull()) return Acad::eNullObjectId;
    host::Database* database = host::Database::find(id);
    if (database == nullptr) return Acad::ePermanentlyErased;
    return database->open(database->slotOf(id), mode, openErased, object);
}

Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name name) {
    int fault = 0;
    if (host::mustFail(host::Call::acdbGetObjectId, fault))
        return static_cast<Acad::ErrorStatus>(fault);
    const AcDbObjectId found = host::Database::idFromName(name);
    if (found.isNull()) return Acad::eInvalidKey;
    id = found;
    return Acad::eOk;
}

Acad::ErrorStatus acdbGetAdsName(ads_name name, AcDbObjectId id) {
    int fault = 0;
    if (host::mustFail(host::Call::acdbGetAdsName, fault))
        return static_cast<Acad::ErrorStatus>(fault);
    if (id.isNull()) return Acad::eNullObjectId;
    const host::Database* database = host::Database::find(id);
    if (database == nullptr) return Acad::ePermanentlyErased;
    database->nameOf(database->slotOf(id), name);
    return Acad::eOk;
}
