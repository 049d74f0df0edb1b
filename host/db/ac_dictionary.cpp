/// AcDbDictionary and its iterator: views of the drawing's entries.
#include "acad/dict.h"
#include "base/faults.h"
#include "db/database.h"
#include "db/heap_text.h"
#include "kz_tls21an/memory.h"

namespace {

constexpr std::u16string_view kAnonymous = u"*A";

}  // namespace

// --- iterator -----------------------------------------------------------------------------------

AcDbDictionaryIterator::AcDbDictionaryIterator(AcDbObjectId dictionary) : dictionary_(dictionary) {}
AcDbDictionaryIterator::~AcDbDictionaryIterator() = default;

void* AcDbDictionaryIterator::operator new(size_t size) noexcept {
    return kz_Malloc(size);
}

void AcDbDictionaryIterator::operator delete(void* block) noexcept {
    kz_Free(block);
}

size_t AcDbDictionaryIterator::settle() const {
    host::Database* drawing = host::Database::find(dictionary_);
    const bool ended = drawing == nullptr || index_ == host::DictionaryData::kNone;
    index_ = ended ? host::DictionaryData::kNone
                   : drawing->dictionaryNext(drawing->slotOf(dictionary_), index_);
    return index_;
}

const ACHAR* AcDbDictionaryIterator::name() const {
    if (done()) return nullptr;
    host::Database* drawing = host::Database::find(dictionary_);
    name_ = drawing->dictionary(drawing->slotOf(dictionary_))->entry(index_).key;
    return name_.c_str();
}

bool AcDbDictionaryIterator::next() {
    if (done()) return false;
    ++index_;
    return !done();
}

bool AcDbDictionaryIterator::done() const {
    return settle() == host::DictionaryData::kNone;
}

AcDbObjectId AcDbDictionaryIterator::objectId() const {
    if (done()) return {};
    host::Database* drawing = host::Database::find(dictionary_);
    return drawing->idOf(drawing->dictionaryObject(drawing->slotOf(dictionary_), index_));
}

Acad::ErrorStatus AcDbDictionaryIterator::getObject(AcDbObject*& object,
                                                    AcDb::OpenMode mode) const {
    object = nullptr;
    const AcDbObjectId id = objectId();
    return id.isNull() ? Acad::eIteratorDone : acdbOpenAcDbObject(object, id, mode);
}

// --- dictionary ---------------------------------------------------------------------------------

AcDbDictionary::AcDbDictionary() = default;

Acad::ErrorStatus AcDbDictionary::describe(host::NewObject& out) {
    out.type = "DICTIONARY";
    out.groups = host::dictionaryTags();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::checkReadable() const {
    if (database_ == nullptr) return Acad::eNoDatabase;
    return isReadEnabled() ? Acad::eOk : Acad::eNotOpenForRead;
}

Acad::ErrorStatus AcDbDictionary::checkWritable() const {
    if (database_ == nullptr) return Acad::eNoDatabase;
    return isWriteEnabled() ? Acad::eOk : Acad::eNotOpenForWrite;
}

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* key, AcDbObjectId& id) const {
    int fault = 0;
    if (host::mustFail(host::Call::getAt, fault)) return static_cast<Acad::ErrorStatus>(fault);
    const Acad::ErrorStatus status = checkReadable();
    if (status != Acad::eOk) return status;
    if (key == nullptr) return Acad::eInvalidKey;
    const host::Slot object = database_->dictionaryEntry(slot_, key);
    if (object == host::kNoSlot) return Acad::eKeyNotFound;
    id = database_->idOf(object);
    return Acad::eOk;
}

bool AcDbDictionary::has(const ACHAR* key) const {
    return checkReadable() == Acad::eOk && key != nullptr &&
           database_->dictionaryEntry(slot_, key) != host::kNoSlot;
}

size_t AcDbDictionary::findEntry(AcDbObjectId id) const {
    const host::Slot object = database_->slotOf(id);
    if (object == host::kNoSlot) return host::DictionaryData::kNone;
    const host::DictionaryData* entries = database_->dictionary(slot_);
    const size_t index = entries->findHandle(database_->record(object).handle);
    return database_->dictionaryObject(slot_, index) == object ? index
                                                               : host::DictionaryData::kNone;
}

bool AcDbDictionary::has(AcDbObjectId id) const {
    return checkReadable() == Acad::eOk && findEntry(id) != host::DictionaryData::kNone;
}

Acad::ErrorStatus AcDbDictionary::nameAt(AcDbObjectId id, ACHAR*& name) const {
    name = nullptr;
    int fault = 0;
    if (host::mustFail(host::Call::nameAt, fault)) return static_cast<Acad::ErrorStatus>(fault);
    const Acad::ErrorStatus status = checkReadable();
    if (status != Acad::eOk) return status;
    const size_t index = findEntry(id);
    if (index == host::DictionaryData::kNone) return Acad::eKeyNotFound;
    name = host::heapText(database_->dictionary(slot_)->entry(index).key);
    return name == nullptr ? Acad::eOutOfMemory : Acad::eOk;
}

size_t AcDbDictionary::numEntries() const {
    return checkReadable() == Acad::eOk ? database_->dictionary(slot_)->livingCount() : 0;
}

Acad::ErrorStatus AcDbDictionary::setAt(const ACHAR* key, AcDbObject* object, AcDbObjectId& id) {
    int fault = 0;
    if (host::mustFail(host::Call::setAt, fault)) return static_cast<Acad::ErrorStatus>(fault);
    Acad::ErrorStatus status = checkWritable();
    if (status != Acad::eOk) return status;
    if (object == nullptr) return Acad::eNullObjectPointer;
    if (object->database() != nullptr) return Acad::eAlreadyInDb;
    if (key == nullptr) return Acad::eInvalidKey;
    std::u16string name = key;
    if (name == kAnonymous) name = database_->dictionary(slot_)->anonymousKey();
    status = database_->checkNewEntry(slot_, name, host::kNoSlot);
    const bool replaces = status == Acad::eDuplicateKey;
    if (status != Acad::eOk && !replaces) return status;
    host::Slot made = host::kNoSlot;
    status = database_->takeOver(*object, made);
    if (status != Acad::eOk) return status;
    if (replaces) database_->dictionaryRemove(slot_, name);
    id = database_->idOf(made);
    return database_->dictionaryAdd(slot_, name, made);
}

Acad::ErrorStatus AcDbDictionary::remove(const ACHAR* key) {
    int fault = 0;
    if (host::mustFail(host::Call::remove, fault)) return static_cast<Acad::ErrorStatus>(fault);
    const Acad::ErrorStatus status = checkWritable();
    if (status != Acad::eOk) return status;
    return key == nullptr ? Acad::eInvalidKey : database_->dictionaryRemove(slot_, key);
}

Acad::ErrorStatus AcDbDictionary::remove(AcDbObjectId id) {
    const Acad::ErrorStatus status = checkWritable();
    if (status != Acad::eOk) return status;
    const size_t index = findEntry(id);
    if (index == host::DictionaryData::kNone) return Acad::eKeyNotFound;
    return remove(database_->dictionary(slot_)->entry(index).key.c_str());
}

bool AcDbDictionary::setName(const ACHAR* oldKey, const ACHAR* newKey) {
    if (host::mustFail(host::Call::setName) || checkWritable() != Acad::eOk) return false;
    if (oldKey == nullptr || newKey == nullptr) return false;
    return database_->dictionaryRename(slot_, oldKey, newKey) == Acad::eOk;
}

AcDbDictionaryIterator* AcDbDictionary::newIterator() const {
    if (host::mustFail(host::Call::newIterator) || checkReadable() != Acad::eOk) return nullptr;
    return new AcDbDictionaryIterator(objectId());
}

// --- where dictionaries begin -------------------------------------------------------------------

Acad::ErrorStatus AcDbDatabase::getNamedObjectsDictionary(AcDbDictionary*& dictionary,
                                                          AcDb::OpenMode mode) const {
    dictionary = nullptr;
    int fault = 0;
    if (host::mustFail(host::Call::getNamedObjectsDictionary, fault)) {
        return static_cast<Acad::ErrorStatus>(fault);
    }
    if (drawing_ == nullptr) return Acad::eNoDatabase;
    return acdbOpenObject(dictionary, drawing_->idOf(drawing_->needNamedObjects()), mode);
}

Acad::ErrorStatus AcDbDatabase::getGroupDictionary(AcDbDictionary*& dictionary,
                                                   AcDb::OpenMode mode) const {
    dictionary = nullptr;
    int fault = 0;
    if (host::mustFail(host::Call::getGroupDictionary, fault)) {
        return static_cast<Acad::ErrorStatus>(fault);
    }
    if (drawing_ == nullptr) return Acad::eNoDatabase;
    return acdbOpenObject(dictionary, drawing_->idOf(drawing_->needGroups()), mode);
}
