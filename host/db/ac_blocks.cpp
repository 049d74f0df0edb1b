/// The table of blocks, the records in it, and the walks over them: views of the drawing's blocks.
#include "acad/blocks.h"

#include "db/ac_fault.h"
#include "db/database.h"
#include "db/entity_content.h"
#include "db/heap_text.h"
#include "edit/block_definition.h"
#include "edit/tag_values.h"
#include "host/drawings.h"
#include "kz_tls21an/text.h"

namespace {

constexpr const char* kTable = "BLOCK_RECORD";
/// Flags of a BLOCK that stands for another drawing.
constexpr int64_t kAttached = 4;
constexpr int64_t kOverlay = 8;

std::u16string textOf(const host::Database& drawing, const host::Tags& tags, int code) {
    const size_t at = host::findTag(tags, code);
    return at < tags.size() ? tags[at].text(drawing.codec()) : std::u16string();
}

/// What keeps an entity of these groups out of a block.
Acad::ErrorStatus checkNames(host::Database& drawing, host::Slot block, std::string_view type,
                             const host::Tags& groups) {
    const size_t linetype = host::findCommonGroup(groups, 6);
    if (linetype < groups.size()) {
        const std::u16string name = groups[linetype].text(drawing.codec());
        const bool known = kz::compareNoCase(name, u"ByBlock") == 0 ||
                           drawing.findSymbol("LTYPE", name) != host::kNoSlot;
        if (!known) return Acad::eKeyNotFound;
    }
    if (type != "INSERT") return Acad::eOk;
    const host::Slot inserted = drawing.findSymbol(kTable, textOf(drawing, groups, 2));
    if (inserted == host::kNoSlot) return Acad::eKeyNotFound;
    return host::containsBlock(drawing, inserted, block) ? Acad::eSelfReference : Acad::eOk;
}

bool isPaper(host::Database& drawing, host::Slot block) {
    constexpr std::u16string_view kPaper = u"*PAPER_SPACE";
    return kz::toUpper(drawing.symbolName(block)).starts_with(kPaper);
}

}  // namespace

// --- record -------------------------------------------------------------------------------------

AcDbBlockTableRecord::AcDbBlockTableRecord() = default;
AcDbBlockTableRecord::~AcDbBlockTableRecord() = default;

const char* AcDbBlockTableRecord::tableName() const {
    return kTable;
}

Acad::ErrorStatus AcDbBlockTableRecord::describe(host::NewObject& out) {
    const Acad::ErrorStatus status = AcDbSymbolTableRecord::describe(out);
    out.groups = host::blockRecordTags(out.drawing);
    return status;
}

void AcDbBlockTableRecord::entered() {
    host::addBlockEnds(*database_, slot_, AcGePoint3d::kOrigin);
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbEntity* entity) {
    AcDbObjectId ignored;
    return appendAcDbEntity(ignored, entity);
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity) {
    Acad::ErrorStatus status = host::fault(host::Call::appendAcDbEntity);
    if (status != Acad::eOk) return status;
    if (database_ == nullptr || !isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (entity == nullptr) return Acad::eNullObjectPointer;
    if (entity->database() != nullptr) return Acad::eAlreadyInDb;
    const host::EntityContent& content = entity->content();
    if (content.type.empty()) return Acad::eNotThatKindOfClass;
    status = checkNames(*database_, slot_, content.type, content.groups);
    if (status != Acad::eOk) return status;
    host::Tags groups = content.groups;
    const host::Tag on_paper(67, int64_t{1});
    if (isPaper(*database_, slot_)) host::setCommonGroup(groups, 67, &on_paper);
    database_->needLayer(textOf(*database_, groups, 8));
    const host::Slot made =
        database_->makeRecord(content.type, host::ObjectClass::Entity,
                              database_->record(slot_).handle, std::move(groups));
    database_->appendEntity(slot_, made);
    database_->adopt(*entity, made);
    entity->content_.reset();
    id = database_->idOf(made);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::newIterator(AcDbBlockTableRecordIterator*& iterator,
                                                    bool atBeginning, bool skipDeleted) const {
    iterator = nullptr;
    const Acad::ErrorStatus failed = host::fault(host::Call::newIterator);
    if (failed != Acad::eOk) return failed;
    if (database_ == nullptr || !isReadEnabled()) return Acad::eNotOpenForRead;
    iterator = new AcDbBlockTableRecordIterator(objectId());
    if (iterator == nullptr) return Acad::eOutOfMemory;
    iterator->start(atBeginning, skipDeleted);
    return Acad::eOk;
}

const host::Tags* AcDbBlockTableRecord::definition() const {
    const bool readable = database_ != nullptr && isReadEnabled();
    const host::Block* block = readable ? database_->findBlock(slot_) : nullptr;
    const bool defined = block != nullptr && block->begin != host::kNoSlot;
    return defined ? &database_->tags(block->begin) : nullptr;
}

int64_t AcDbBlockTableRecord::blockFlags() const {
    const host::Tags* begin = definition();
    return begin != nullptr ? host::integerOf(*begin, 70, 0) : 0;
}

bool AcDbBlockTableRecord::isFromExternalReference() const {
    return (blockFlags() & kAttached) != 0;
}

bool AcDbBlockTableRecord::isFromOverlayReference() const {
    return (blockFlags() & kOverlay) != 0;
}

AcDbDatabase* AcDbBlockTableRecord::xrefDatabase(bool) const {
    return host::mustFail(host::Call::xrefDatabase) || !isReadEnabled()
               ? nullptr
               : host::attachedDrawing(objectId());
}

Acad::ErrorStatus AcDbBlockTableRecord::pathName(ACHAR*& path) const {
    path = nullptr;
    const Acad::ErrorStatus failed = host::fault(host::Call::pathName);
    if (failed != Acad::eOk) return failed;
    if (!isReadEnabled()) return Acad::eNotOpenForRead;
    const host::Tags* begin = definition();
    path = host::heapText(begin != nullptr ? textOf(*database_, *begin, 1) : std::u16string());
    return path == nullptr ? Acad::eOutOfMemory : Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::setPathName(const ACHAR* path) {
    const Acad::ErrorStatus failed = host::fault(host::Call::setPathName);
    if (failed != Acad::eOk) return failed;
    if (database_ == nullptr || !isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (path == nullptr) return Acad::eInvalidInput;
    if ((blockFlags() & (kAttached | kOverlay)) == 0) return Acad::eNotApplicable;
    const host::Slot begin = database_->findBlock(slot_)->begin;
    host::replaceTag(database_->changeTags(begin), host::Tag(1, std::u16string(path)));
    database_->touch(begin);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::newBlockReferenceIdIterator(
    AcDbBlockReferenceIdIterator*& iterator) const {
    iterator = nullptr;
    const Acad::ErrorStatus failed = host::fault(host::Call::newBlockReferenceIdIterator);
    if (failed != Acad::eOk) return failed;
    if (database_ == nullptr || !isReadEnabled()) return Acad::eNotOpenForRead;
    iterator = new AcDbBlockReferenceIdIterator;
    if (iterator == nullptr) return Acad::eOutOfMemory;
    for (const host::Slot holder : database_->blockRecords()) {
        if (database_->record(holder).erased) continue;
        for (const host::Slot entity : database_->findBlock(holder)->contents) {
            const bool refers = !database_->record(entity).erased &&
                                database_->typeName(entity) == "INSERT" &&
                                host::blockOfReference(*database_, entity) == slot_;
            if (refers) iterator->ids_.push_back(database_->idOf(entity));
        }
    }
    return Acad::eOk;
}

// --- walk over a block --------------------------------------------------------------------------

void* AcDbBlockTableRecordIterator::operator new(size_t size) noexcept {
    return kz_Malloc(size);
}

void AcDbBlockTableRecordIterator::operator delete(void* block) noexcept {
    kz_Free(block);
}

void AcDbBlockTableRecordIterator::settle(bool forward, bool skipDeleted) {
    host::Database* drawing = host::Database::find(record_);
    const host::Block* block =
        drawing == nullptr ? nullptr : drawing->findBlock(drawing->slotOf(record_));
    if (block == nullptr) return;
    const auto size = static_cast<int64_t>(block->contents.size());
    for (; index_ >= 0 && index_ < size; index_ += forward ? 1 : -1) {
        const host::ObjectRecord& entity =
            drawing->record(block->contents[static_cast<size_t>(index_)]);
        const bool main = entity.object_class == host::ObjectClass::Entity;
        if (main && !(entity.erased && skipDeleted)) break;
    }
}

void AcDbBlockTableRecordIterator::start(bool atBeginning, bool skipDeleted) {
    host::Database* drawing = host::Database::find(record_);
    const host::Block* block =
        drawing == nullptr ? nullptr : drawing->findBlock(drawing->slotOf(record_));
    index_ = 0;
    if (block == nullptr) return;
    // Programs that erase the first entity again and again start here each time.
    if (skipDeleted) index_ = static_cast<int64_t>(block->living_begin);
    if (!atBeginning) {
        index_ = static_cast<int64_t>(skipDeleted ? block->living_end : block->contents.size()) - 1;
    }
    settle(atBeginning, skipDeleted);
}

AcDbObjectId AcDbBlockTableRecordIterator::current() const {
    host::Database* drawing = host::Database::find(record_);
    const host::Block* block =
        drawing == nullptr ? nullptr : drawing->findBlock(drawing->slotOf(record_));
    const auto index = static_cast<size_t>(index_);
    if (block == nullptr || index_ < 0 || index >= block->contents.size()) return {};
    return drawing->idOf(block->contents[index]);
}

bool AcDbBlockTableRecordIterator::done() const {
    return current().isNull();
}

void AcDbBlockTableRecordIterator::step(bool forward, bool skipDeleted) {
    if (done()) return;
    index_ += forward ? 1 : -1;
    settle(forward, skipDeleted);
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntityId(AcDbObjectId& id) const {
    const AcDbObjectId found = current();
    if (found.isNull()) return Acad::eIteratorDone;
    id = found;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntity(AcDbEntity*& entity, AcDb::OpenMode mode,
                                                          bool openErased) const {
    entity = nullptr;
    const Acad::ErrorStatus failed = host::fault(host::Call::getEntity);
    if (failed != Acad::eOk) return failed;
    AcDbObjectId id;
    const Acad::ErrorStatus status = getEntityId(id);
    return status == Acad::eOk ? acdbOpenObject(entity, id, mode, openErased) : status;
}

// --- walk over references -----------------------------------------------------------------------

void* AcDbBlockReferenceIdIterator::operator new(size_t size) noexcept {
    return kz_Malloc(size);
}

void AcDbBlockReferenceIdIterator::operator delete(void* block) noexcept {
    kz_Free(block);
}

Acad::ErrorStatus AcDbBlockReferenceIdIterator::getBlockReferenceId(AcDbObjectId& id) const {
    if (done()) return Acad::eIteratorDone;
    id = ids_[index_];
    return Acad::eOk;
}

// --- attached drawings --------------------------------------------------------------------------

Acad::ErrorStatus acdbOriginalXrefFullPathFor(const AcDbDatabase* drawing, ACHAR*& path) {
    path = nullptr;
    const Acad::ErrorStatus failed = host::fault(host::Call::acdbOriginalXrefFullPathFor);
    if (failed != Acad::eOk) return failed;
    const ACHAR* file = nullptr;
    if (drawing == nullptr) return Acad::eNoDatabase;
    const Acad::ErrorStatus status = drawing->getFilename(file);
    if (status != Acad::eOk) return status;
    path = host::heapText(file);
    return path == nullptr ? Acad::eOutOfMemory : Acad::eOk;
}
