/// AcDbGroup and its iterator: views of the drawing's groups.
#include "acad/groups.h"
#include "db/ac_fault.h"
#include "db/database.h"
#include "edit/tag_values.h"
#include "kz_tls21an/memory.h"

namespace {

constexpr int kDescription = 300;
constexpr int kUnnamed = 70;
constexpr int kSelectable = 71;

}  // namespace

// --- iterator -----------------------------------------------------------------------------------

void* AcDbGroupIterator::operator new(size_t size) noexcept {
    return kz_Malloc(size);
}

void AcDbGroupIterator::operator delete(void* block) noexcept {
    kz_Free(block);
}

AcDbObjectId AcDbGroupIterator::objectId() const {
    host::Database* drawing = host::Database::find(group_);
    if (drawing == nullptr) return {};
    return drawing->idOf(drawing->group(drawing->slotOf(group_))->at(index_));
}

Acad::ErrorStatus AcDbGroupIterator::getObject(AcDbObject*& object, AcDb::OpenMode mode) const {
    object = nullptr;
    const AcDbObjectId id = objectId();
    return id.isNull() ? Acad::eIteratorDone : acdbOpenAcDbObject(object, id, mode);
}

bool AcDbGroupIterator::next() {
    if (done()) return false;
    ++index_;
    return !done();
}

bool AcDbGroupIterator::done() const {
    return objectId().isNull();
}

// --- group --------------------------------------------------------------------------------------

AcDbGroup::AcDbGroup(const ACHAR* description, bool selectable)
    : description_(description != nullptr ? description : u""), selectable_(selectable) {}

AcDbGroup::~AcDbGroup() = default;

Acad::ErrorStatus AcDbGroup::describe(host::NewObject& out) {
    out.type = "GROUP";
    out.groups.emplace_back(100, u"AcDbGroup");
    out.groups.emplace_back(kDescription, description_);
    out.groups.emplace_back(kUnnamed, int64_t{0});
    out.groups.emplace_back(kSelectable, int64_t{selectable_ ? 1 : 0});
    return Acad::eOk;
}

Acad::ErrorStatus AcDbGroup::checkWritable() const {
    if (database_ == nullptr) return Acad::eNoDatabase;
    return isWriteEnabled() ? Acad::eOk : Acad::eNotOpenForWrite;
}

int64_t AcDbGroup::integerAt(int code, int64_t otherwise) const {
    const host::Tags& tags = database_->tags(slot_);
    const size_t at = host::findTag(tags, code, host::findTag(tags, 100));
    return at < tags.size() ? tags[at].integer() : otherwise;
}

template <class Change>
Acad::ErrorStatus AcDbGroup::changeGroups(Change change) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    change(database_->changeTags(slot_));
    database_->touch(slot_);
    return Acad::eOk;
}

const ACHAR* AcDbGroup::description() const {
    if (database_ == nullptr) return description_.c_str();
    description_.clear();
    if (!isReadEnabled()) return description_.c_str();
    const host::Tags& tags = database_->tags(slot_);
    const size_t at = host::findTag(tags, kDescription);
    if (at < tags.size()) description_ = tags[at].text(database_->codec());
    return description_.c_str();
}

Acad::ErrorStatus AcDbGroup::setDescription(const ACHAR* description) {
    const Acad::ErrorStatus failed = host::fault(host::Call::setDescription);
    if (failed != Acad::eOk) return failed;
    if (description == nullptr) return Acad::eInvalidInput;
    if (database_ == nullptr) {
        description_ = description;
        return Acad::eOk;
    }
    return changeGroups([&](host::Tags& tags) {
        host::replaceTag(tags, host::Tag(kDescription, std::u16string(description)));
    });
}

bool AcDbGroup::isSelectable() const {
    if (database_ == nullptr) return selectable_;
    return isReadEnabled() && integerAt(kSelectable, 1) != 0;
}

Acad::ErrorStatus AcDbGroup::setSelectable(bool selectable) {
    const Acad::ErrorStatus failed = host::fault(host::Call::setSelectable);
    if (failed != Acad::eOk) return failed;
    if (database_ == nullptr) {
        selectable_ = selectable;
        return Acad::eOk;
    }
    return changeGroups([&](host::Tags& tags) {
        host::replaceTag(tags, host::Tag(kSelectable, int64_t{selectable ? 1 : 0}));
    });
}

bool AcDbGroup::isAnonymous() const {
    return database_ != nullptr && isReadEnabled() && integerAt(kUnnamed, 0) == 1;
}

// --- entities -----------------------------------------------------------------------------------

uint32_t AcDbGroup::numEntities() const {
    if (database_ == nullptr || !isReadEnabled()) return 0;
    return static_cast<uint32_t>(database_->group(slot_)->size());
}

uint32_t AcDbGroup::allEntityIds(std::vector<AcDbObjectId>& ids) const {
    if (database_ == nullptr || !isReadEnabled()) return 0;
    for (const host::Slot entity : database_->group(slot_)->all())
        ids.push_back(database_->idOf(entity));
    return numEntities();
}

Acad::ErrorStatus AcDbGroup::getIndex(AcDbObjectId entity, uint32_t& index) const {
    const Acad::ErrorStatus failed = host::fault(host::Call::getIndex);
    if (failed != Acad::eOk) return failed;
    if (database_ == nullptr || !isReadEnabled()) return Acad::eNotOpenForRead;
    const host::Slot slot = database_->slotOf(entity);
    const size_t found = database_->group(slot_)->indexOf(slot);
    if (slot == host::kNoSlot || found == host::GroupData::kNone) return Acad::eKeyNotFound;
    index = static_cast<uint32_t>(found);
    return Acad::eOk;
}

AcDbGroupIterator* AcDbGroup::newIterator() const {
    if (host::mustFail(host::Call::newIterator)) return nullptr;
    if (database_ == nullptr || !isReadEnabled()) return nullptr;
    return new AcDbGroupIterator(objectId());
}

Acad::ErrorStatus AcDbGroup::insert(size_t index, AcDbObjectId entity) {
    const Acad::ErrorStatus status = checkWritable();
    if (status != Acad::eOk) return status;
    if (entity.isNull()) return Acad::eNullObjectId;
    return database_->groupInsert(slot_, index, database_->slotOf(entity));
}

Acad::ErrorStatus AcDbGroup::append(AcDbObjectId entity) {
    const Acad::ErrorStatus failed = host::fault(host::Call::append);
    return failed != Acad::eOk ? failed : insert(host::GroupData::kNone, entity);
}

Acad::ErrorStatus AcDbGroup::prepend(AcDbObjectId entity) {
    const Acad::ErrorStatus failed = host::fault(host::Call::prepend);
    return failed != Acad::eOk ? failed : insert(0, entity);
}

Acad::ErrorStatus AcDbGroup::insertAt(uint32_t index, AcDbObjectId entity) {
    const Acad::ErrorStatus failed = host::fault(host::Call::insertAt);
    if (failed != Acad::eOk) return failed;
    const Acad::ErrorStatus status = checkWritable();
    if (status != Acad::eOk) return status;
    return index > numEntities() ? Acad::eInvalidIndex : insert(index, entity);
}

Acad::ErrorStatus AcDbGroup::remove(AcDbObjectId entity) {
    const Acad::ErrorStatus failed = host::fault(host::Call::remove);
    if (failed != Acad::eOk) return failed;
    const Acad::ErrorStatus status = checkWritable();
    if (status != Acad::eOk) return status;
    if (entity.isNull()) return Acad::eNullObjectId;
    return database_->groupRemove(slot_, database_->slotOf(entity));
}

Acad::ErrorStatus AcDbGroup::removeAt(uint32_t index) {
    const Acad::ErrorStatus failed = host::fault(host::Call::removeAt);
    if (failed != Acad::eOk) return failed;
    const Acad::ErrorStatus status = checkWritable();
    if (status != Acad::eOk) return status;
    if (index >= numEntities()) return Acad::eInvalidIndex;
    return database_->groupRemove(slot_, database_->group(slot_)->at(index));
}

Acad::ErrorStatus AcDbGroup::replace(AcDbObjectId oldEntity, AcDbObjectId newEntity) {
    const Acad::ErrorStatus failed = host::fault(host::Call::replace);
    if (failed != Acad::eOk) return failed;
    Acad::ErrorStatus status = checkWritable();
    if (status != Acad::eOk) return status;
    const size_t index = database_->group(slot_)->indexOf(database_->slotOf(oldEntity));
    if (index == host::GroupData::kNone) return Acad::eKeyNotFound;
    status = insert(index, newEntity);
    return status == Acad::eOk ? database_->groupRemove(slot_, database_->slotOf(oldEntity))
                               : status;
}

Acad::ErrorStatus AcDbGroup::clear() {
    const Acad::ErrorStatus failed = host::fault(host::Call::clear);
    if (failed != Acad::eOk) return failed;
    const Acad::ErrorStatus status = checkWritable();
    if (status != Acad::eOk) return status;
    for (const host::Slot entity : database_->group(slot_)->all())
        database_->groupRemove(slot_, entity);
    return Acad::eOk;
}
