/// The store of drawing data: field lists and single fields in the records of a drawing.
#include <memory>
#include <utility>

#include "ACAD/cad_rx/cad_rx.h"
#include "ACAD/dwgd_rx/dwgd_rx.h"

namespace {

/// The record of a drawing.
kz::RecordPlace placeIn(const kz_CADDwgId* drawing, const kz_Char* dict_name,
                        const kz_Char* group) {
    return {kz::databaseOf(drawing), dict_name, group};
}

/// The record of a database, NULL the working one.
kz::RecordPlace placeIn(AcDbDatabase* database, const kz_Char* dict_name, const kz_Char* group) {
    return {database != nullptr ? database : kz::workingDatabase(), dict_name, group};
}

kz_FldList* readList(const kz::RecordPlace& place, kz_FldList* request) {
    kz::RecordFields fields(place);
    return fields.read(request);
}

kz_FldList* readOne(const kz::RecordPlace& place, const kz_Char* name) {
    kz::RecordFields fields(place);
    kz::OwnedFldList list = kz::readField(fields, name);
    kz_FldList_start(list.get());
    return list.release();
}

void destroyFields(void* list) {
    kz_FldList_destroy(static_cast<kz_FldList*>(list));
}

/// A list of field lists.
struct DestroyLists {
    void operator()(kz_LnkList* lists) const { kz_LnkList_destroy(lists, destroyFields); }
};
using OwnedLists = std::unique_ptr<kz_LnkList, DestroyLists>;

}  // namespace

// --- one record ---------------------------------------------------------------------------------

kz_FldList* kz::RecordFields::read(kz_FldList* request) {
    RecordChain record = readRecord(place_);
    known_ = record.known;
    chain_ = std::move(record.nodes);
    if (chain_ == nullptr) return nullptr;
    if (request == nullptr) return kz_AcDwgData_toFldList(chain_.get());
    return kz_AcDwgData_updateFldList(chain_.get(), request) == 1 ? request : nullptr;
}

int kz::RecordFields::write(kz_FldList* list, bool clear_existing) {
    if (!place_.isComplete() || list == nullptr) return 0;
    if (!known_ && !clear_existing) {
        RecordChain record = readRecord(place_);
        // What the record holds must not be replaced by the list alone.
        if (!record.known) return 0;
        chain_ = std::move(record.nodes);
    }
    known_ = false;
    resbuf* chain = chain_.release();
    const int good = kz_AcDwgData_fromFldList(&chain, list, clear_existing ? 1 : 0);
    const OwnedChain written(chain);
    if (good != 1) return 0;
    return kz_AcXrecord_saveToDict(place_.database, place_.dict_name, place_.group, chain);
}

int kz_AcDwgData_setFldList(const kz_CADDwgId* drawing, const kz_Char* dictName,
                            const kz_Char* xGroup, kz_FldList* list, int clearExisting) {
    kz::RecordFields fields(placeIn(drawing, dictName, xGroup));
    return fields.write(list, clearExisting != 0);
}

kz_FldList* kz_AcDwgData_getFldList(const kz_CADDwgId* drawing, const kz_Char* dictName,
                                    const kz_Char* xGroup, kz_FldList* list) {
    return readList(placeIn(drawing, dictName, xGroup), list);
}

kz_FldList* kz_AcDwgData_getFldListFromAcDbDatabase(AcDbDatabase* database, const kz_Char* dictName,
                                                    const kz_Char* xGroup, kz_FldList* list) {
    return readList(placeIn(database, dictName, xGroup), list);
}

kz_FldList* kz_AcDwgData_getFldFromAcDbDatabase(AcDbDatabase* database, const kz_Char* dictName,
                                                const kz_Char* xGroup, const kz_Char* fieldName) {
    return readOne(placeIn(database, dictName, xGroup), fieldName);
}

int kz_DwgData_setFldList(const kz_CADDwgId* drawing, const kz_Char* dictName,
                          const kz_Char* xGroup, kz_FldList* list, int clearExisting) {
    kz_FldList_start(list);
    return kz_AcDwgData_setFldList(drawing, dictName, xGroup, list, clearExisting);
}

kz_FldList* kz_DwgData_getFldList(const kz_CADDwgId* drawing, const kz_Char* dictName,
                                  const kz_Char* xGroup, kz_FldList* list) {
    return kz_AcDwgData_getFldList(drawing, dictName, xGroup, list);
}

kz_FldList* kz_DwgData_getFld(const kz_CADDwgId* drawing, const kz_Char* dictName,
                              const kz_Char* xGroup, const kz_Char* fieldName) {
    return readOne(placeIn(drawing, dictName, xGroup), fieldName);
}

int kz_DwgData_setFld(const kz_CADDwgId* drawing, const kz_Char* dictName, const kz_Char* xGroup,
                      const kz_Char* fieldName, int16_t type, const void* value, int clearExisting,
                      int uniqueData) {
    kz::RecordFields fields(placeIn(drawing, dictName, xGroup));
    return kz::setField(fields, type, value, fieldName, clearExisting != 0, uniqueData != 0);
}

int kz_DwgData_deleteFldList(const kz_CADDwgId* drawing, const kz_Char* dictName,
                             const kz_Char* xGroup) {
    return kz_AcDwgData_deleteFldList(drawing, dictName, xGroup);
}

int kz_DwgData_deleteFld(const kz_CADDwgId* drawing, const kz_Char* dictName, const kz_Char* xGroup,
                         const kz_Char* fieldName) {
    kz::RecordFields fields(placeIn(drawing, dictName, xGroup));
    return kz::deleteField(fields, fieldName);
}

int kz_DwgData_deleteFldValue(const kz_CADDwgId* drawing, const kz_Char* dictName,
                              const kz_Char* xGroup, const kz_Char* fieldName, int16_t type,
                              const void* value, int clearAll) {
    kz::RecordFields fields(placeIn(drawing, dictName, xGroup));
    return kz::deleteFieldValue(fields, type, value, fieldName, clearAll != 0);
}

// --- a whole dictionary -------------------------------------------------------------------------

kz_StrList* kz_AcDwgData_getXGroups(const kz_CADDwgId* drawing, const kz_Char* dictName) {
    AcDbDatabase* const database = kz::databaseOf(drawing);
    return database != nullptr ? kz_AcXrecord_GetKeysFromDict(database, dictName) : nullptr;
}

kz_StrList* kz_DwgData_getXGroups(const kz_CADDwgId* drawing, const kz_Char* dictName) {
    return kz_AcDwgData_getXGroups(drawing, dictName);
}

kz_LnkList* kz_AcDwgData_getDict(AcDbDatabase* database, const kz_Char* dictName) {
    const kz::OwnedStrList keys(kz_AcXrecord_GetKeysFromDict(database, dictName));
    OwnedLists lists(keys != nullptr ? kz_LnkList_create() : nullptr);
    if (lists == nullptr) return nullptr;
    for (; kz_StrList_eol(keys.get()) == 0; kz_StrList_next(keys.get())) {
        const kz::RecordChain record =
            kz::readRecord(placeIn(database, dictName, kz_StrList_getCurr(keys.get())));
        if (!record.exists) continue;
        kz::OwnedFldList fields(kz_AcDwgData_toFldList(record.nodes.get()));
        if (fields == nullptr) continue;
        if (kz_LnkList_insEnd(lists.get(), fields.get()) == nullptr) return nullptr;
        static_cast<void>(fields.release());  // the list's
    }
    if (kz_LnkList_start(lists.get()) == 0) return nullptr;
    return lists.release();
}

void kz_DwgData_disableUndoRecording(const kz_CADDwgId* drawing, int disable) {
    AcDbDatabase* const database = kz::databaseOf(drawing);
    if (database != nullptr) database->disableUndoRecording(disable != 0);
}
