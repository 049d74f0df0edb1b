/// Finding groups by their names, and the codes that names of groups in a drawing have taken.
#include "ACAD/cad_rx/cad_rx.h"
#include "ACAD/kz_acgrp/kz_acgrp.h"
#include "APP/services.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

/// A drawing that is open, attached or unknown.
constexpr int kAnyDrawing = 3;

/// Opens the dictionary of groups of a drawing.
kz::Opened<AcDbDictionary> openGroups(const AcDbDatabase* drawing) {
    AcDbDictionary* groups = nullptr;
    if (drawing != nullptr) drawing->getGroupDictionary(groups, AcDb::kForRead);
    return kz::Opened<AcDbDictionary>(groups);
}

bool findInAttached(AcDbObjectId& out, const kz_Char* name) {
    const AcDbDatabase* working = kz::workingDatabase();
    return kz::anyAttachedDrawing([&](AcDbDatabase* drawing) {
        KZ_ASSERTION(drawing != working);
        const kz::Opened<AcDbDictionary> groups = openGroups(drawing);
        return groups && groups->getAt(name, out) == Acad::eOk;
    });
}

/// In the drawings that the service knows. What is attached to the working database needn't be
/// searched once more for each of them.
bool findInKnown(AcDbObjectId& out, const kz_Char* name) {
    kz_CADDwgIdList* list = kz_CADDwgIdList_create(0, 0, 1);
    if (list == nullptr) return false;
    bool found = false;
    for (kz_CADDwgIdList_start(list); !found && kz_CADDwgIdList_eol(list) == 0;
         kz_CADDwgIdList_next(list)) {
        const kz_CADDwgId* known = kz_CADDwgIdList_getCurr(list);
        AcDbDatabase* drawing = kz_AcCADDwgId_getAcDbDatabase(known);
        found = drawing != nullptr && kz_GroupKeyToAcDbObjectId(&out, name, drawing, 0, 0) == 1;
    }
    kz_CADDwgIdList_destroy(list);
    return found;
}

}  // namespace

int kz_GroupKeyToAcDbObjectId(AcDbObjectId* out, const kz_Char* name, AcDbDatabase* database,
                              int searchXrefs, int searchDrawings) {
    if (out == nullptr || name == nullptr) return 0;
    {
        const kz::Opened<AcDbDictionary> groups =
            openGroups(database != nullptr ? database : kz::workingDatabase());
        if (!groups) return 0;
        if (groups->getAt(name, *out) == Acad::eOk) return 1;
    }
    if (searchXrefs == 0) return 0;
    if (findInAttached(*out, name)) return 1;
    return searchDrawings != 0 && findInKnown(*out, name) ? 1 : 0;
}

kz_GroupId* kz_AcGroup_getIdFromAcDbDatabase(const kz_Char* name, AcDbDatabase* database,
                                             int searchXrefs) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getIdFromAcDbDatabase"));
    AcDbObjectId object;
    if (kz::isAny(name)) {
        kz::submitGroupError(kz::kNoGroupName);
        return nullptr;
    }
    if (kz_GroupKeyToAcDbObjectId(&object, name, database, searchXrefs, 1) != 1) return nullptr;
    return kz_GroupId_fromAcDbObjectId(&object);
}

kz_GroupId* kz_AcGroup_getId(const kz_Char* name) {
    return kz_AcGroup_getIdFromAcDbDatabase(name, nullptr, 1);
}

kz_GroupId* kz_Group_getIdFromDoc(const kz_Char* name, const kz_Char* drawing) {
    kz_GroupId* id = nullptr;
    if (name == nullptr) {
        kz::submitGroupError(kz::kNoGroupName);
        return nullptr;
    }
    if (drawing != nullptr) {
        kz_CADDwgId* known = kz_CADDwgId_create(drawing, kAnyDrawing);
        AcDbDatabase* database = kz_AcCADDwgId_getAcDbDatabase(known);
        // NULL would stand for the working database.
        if (database != nullptr) id = kz_AcGroup_getIdFromAcDbDatabase(name, database, 0);
        kz_CADDwgId_destroy(known);
    }
    return id != nullptr ? id : kz_AcGroup_getId(name);
}

const kz_Char* kz_Group_scanNextGroupCode(void) {
    static kz_Char buffer[kz::kNameSize];
    // Longer codes could not be stored.
    constexpr size_t kLongestCode = 9;
    kz_Str_ncpy(buffer, KZ_T("0"), kLongestCode);
    const kz::Opened<AcDbDictionary> groups = openGroups(kz::workingDatabase());
    const std::unique_ptr<AcDbDictionaryIterator> walk(groups ? groups->newIterator() : nullptr);
    for (; walk != nullptr && !walk->done(); walk->next()) {
        const kz_Char* code = kz_Group_getGroupCode(walk->name());
        if (code == nullptr || kz_Base36_compare(code, buffer) <= 0) continue;
        kz_Char next[kz::kNameSize];
        kz_Str_ncpy(next, code, kz::kLongestName);
        // What other programs put there needn't be a number.
        const bool counted = kz_Str_len(next) < kz::kLongestName &&
                             kz_Base36_increment(next, 1) == 1 && kz_Str_len(next) <= kLongestCode;
        if (counted) kz_Str_ncpy(buffer, next, kLongestCode);
    }
    return buffer;
}
