/// Records in the dictionaries of applications.
#include <memory>
#include <utility>

#include "ACAD/cad_rx/cad_rx.h"
#include "ACAD/dwgd_rx/dwgd_rx.h"
#include "checks.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/dwgd_rx";

using Dictionary = kz::Opened<AcDbDictionary>;
using Record = kz::Opened<AcDbXrecord>;

AcDbDatabase* orWorking(AcDbDatabase* database) {
    return database != nullptr ? database : kz::workingDatabase();
}

/// The named objects dictionary; nothing is open when it can't be.
Dictionary openRoot(AcDbDatabase* database, AcDb::OpenMode mode) {
    AcDbDictionary* root = nullptr;
    if (database != nullptr) database->getNamedObjectsDictionary(root, mode);
    return Dictionary(root);
}

/// The entry of a dictionary as a T; nothing is open unless it gives eOk.
template <class T>
Acad::ErrorStatus openEntry(const Dictionary& dictionary, const kz_Char* key, AcDb::OpenMode mode,
                            kz::Opened<T>& entry) {
    T* opened = nullptr;
    const Acad::ErrorStatus status = dictionary->getAt(key, opened, mode);
    entry = kz::Opened<T>(opened);
    return status;
}

/// The application's dictionary.
Acad::ErrorStatus openApplication(AcDbDatabase* database, const kz_Char* key, AcDb::OpenMode mode,
                                  Dictionary& application) {
    const Dictionary root = openRoot(database, AcDb::kForRead);
    return root ? openEntry(root, key, mode, application) : Acad::eNoDatabase;
}

/// Enters a new object, which is then open for write; it is freed when it can't be entered.
template <class T>
kz::Opened<T> enterNew(const Dictionary& dictionary, const kz_Char* key, std::unique_ptr<T> made) {
    AcDbObjectId id;
    const bool good = made != nullptr && dictionary->setAt(key, made.get(), id) == Acad::eOk;
    return kz::Opened<T>(good ? made.release() : nullptr);
}

/// The application's dictionary for write. `is_new` tells that it was missing and has been made.
Dictionary needApplication(AcDbDatabase* database, const kz_Char* key, bool& is_new) {
    const Dictionary root = openRoot(database, AcDb::kForWrite);
    if (!root) return {};
    Dictionary application;
    is_new = openEntry(root, key, AcDb::kForWrite, application) == Acad::eKeyNotFound;
    if (!is_new) return application;
    std::unique_ptr<AcDbDictionary> made(new AcDbDictionary);
    KZ_ASSERTION(made != nullptr);
    return enterNew(root, key, std::move(made));
}

/// True for what a read of an entry gives when there is nothing of the wanted kind.
bool isMissing(Acad::ErrorStatus status) {
    return status == Acad::eKeyNotFound || status == Acad::eNotThatKindOfClass;
}

}  // namespace

bool kz::RecordPlace::isComplete() const {
    return database != nullptr && !isEmpty(dict_name) && !isEmpty(group);
}

kz::RecordChain kz::readRecord(const RecordPlace& place) {
    RecordChain chain;
    if (!place.isComplete()) return chain;
    Dictionary application;
    Record record;
    Acad::ErrorStatus status =
        openApplication(place.database, place.dict_name, AcDb::kForRead, application);
    if (status == Acad::eOk) {
        status = openEntry(application, place.group, AcDb::kForRead, record);
    }
    if (status == Acad::eOk) {
        resbuf* nodes = nullptr;
        status = record->rbChain(&nodes);
        chain.nodes.reset(nodes);
        chain.exists = status == Acad::eOk;
    }
    chain.known = chain.exists || isMissing(status);
    return chain;
}

resbuf* kz_AcXrecord_getFromDict(AcDbDatabase* database, const kz_Char* dictName,
                                 const kz_Char* xGroup) {
    return kz::readRecord({orWorking(database), dictName, xGroup}).nodes.release();
}

int kz_AcXrecord_saveToDict(AcDbDatabase* database, const kz_Char* dictName, const kz_Char* xGroup,
                            const resbuf* chain) {
    const kz::RecordPlace place = {orWorking(database), dictName, xGroup};
    if (!place.isComplete()) return 0;
    // The record is filled before it gets into the drawing, and takes the place of the old one by
    // being entered: what is refused leaves the old one as it was.
    std::unique_ptr<AcDbXrecord> made(new AcDbXrecord);
    KZ_ASSERTION(made != nullptr);
    if (made == nullptr || made->setFromRbChain(chain, place.database) != Acad::eOk) return 0;
    bool is_new = false;
    Dictionary application = needApplication(place.database, dictName, is_new);
    if (!application) return 0;
    Record record = enterNew(application, xGroup, std::move(made));
    application.close();
    if (record.close()) return 1;
    if (is_new) kz_AcDwgData_delDict(place.database, dictName);
    return 0;
}

int kz_AcXrecord_removeFromDict(AcDbDatabase* database, const kz_Char* dictName,
                                const kz_Char* xGroup) {
    if (kz::isEmpty(dictName) || kz::isEmpty(xGroup)) return 0;
    const Dictionary root = openRoot(orWorking(database), AcDb::kForWrite);
    if (!root) return 0;
    Dictionary application;
    const Acad::ErrorStatus status = openEntry(root, dictName, AcDb::kForWrite, application);
    if (status == Acad::eOk) application->remove(xGroup);
    return status == Acad::eOk || status == Acad::eKeyNotFound ? 1 : 0;
}

kz_StrList* kz_AcXrecord_GetKeysFromDict(AcDbDatabase* database, const kz_Char* dictName) {
    if (kz::isEmpty(dictName)) return nullptr;
    Dictionary application;
    openApplication(orWorking(database), dictName, AcDb::kForRead, application);
    if (!application) return nullptr;
    const std::unique_ptr<AcDbDictionaryIterator> entries(application->newIterator());
    KZ_ASSERTION(entries != nullptr);
    kz::OwnedStrList keys(kz_StrList_create(nullptr));
    bool good = entries != nullptr && keys != nullptr;
    for (; good && !entries->done(); entries->next())
        good = kz_StrList_insEnd(keys.get(), entries->name()) == 1;
    if (!good || kz_StrList_length(keys.get()) == 0) return nullptr;
    kz_StrList_start(keys.get());
    return keys.release();
}

int kz_AcDwgData_deleteFldList(const kz_CADDwgId* drawing, const kz_Char* dictName,
                               const kz_Char* xGroup) {
    if (kz::isEmpty(dictName) || kz::isEmpty(xGroup)) return 0;
    Dictionary application;
    openApplication(kz::databaseOf(drawing), dictName, AcDb::kForWrite, application);
    return application && application->remove(xGroup) == Acad::eOk ? 1 : 0;
}

int kz_AcDwgData_delDict(AcDbDatabase* database, const kz_Char* dictName) {
    if (kz::isEmpty(dictName)) return 0;
    const Dictionary root = openRoot(orWorking(database), AcDb::kForWrite);
    if (!root) return 0;
    const Acad::ErrorStatus status = root->remove(dictName);
    return status == Acad::eOk || status == Acad::eKeyNotFound ? 1 : 0;
}
