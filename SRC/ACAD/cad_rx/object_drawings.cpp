/// The drawing that an object lies in: its id, its file, and how it lies in the current one.
#include "ACAD/cad_rx/cad_rx.h"
#include "APP/services.h"
#include "checks.h"
#include "guards.h"
#include "kz/kz_cad_env.h"
#include "kz/kz_objprops.h"

namespace {

/// A drawing that is open, attached or unknown.
constexpr int kAnyDrawing = 3;
/// Size of the buffers for files [characters].
constexpr size_t kPathSize = 513;
/// What a pick found: an object of the drawing, or one inside an attached drawing.
constexpr int kPicked = 1;
constexpr int kPickedInside = 2;

/// The file of a drawing, when it has one.
kz::OwnedText fileOf(const AcDbDatabase& drawing) {
    const ACHAR* name = nullptr;
    return kz::OwnedText(drawing.getFilename(name) == Acad::eOk ? kz_Str_dup(name) : nullptr);
}

kz::OwnedText editorFile() {
    kz_Char name[kPathSize];
    return kz::OwnedText(kz_CAD_getDrawingName(name) == 1 ? kz_Str_dup(name) : nullptr);
}

/// True when one of the attachments of the working database is this drawing.
bool isAttachedHere(const AcDbDatabase* drawing) {
    return kz::anyAttachedDrawing([&](AcDbDatabase* found) { return found == drawing; });
}

/// The name of a drawing that the service knows.
kz::OwnedText knownName(const AcDbDatabase* drawing) {
    kz_CADDwgIdList* list = kz_CADDwgIdList_create(0, 0, 1);
    if (list == nullptr) return nullptr;
    kz::OwnedText name;
    for (kz_CADDwgIdList_start(list); name == nullptr && kz_CADDwgIdList_eol(list) == 0;
         kz_CADDwgIdList_next(list)) {
        const kz_CADDwgId* known = kz_CADDwgIdList_getCurr(list);
        const bool named = known != nullptr && known->database == drawing && known->name != nullptr;
        if (named) name.reset(kz_Str_dup(known->name));
    }
    kz_CADDwgIdList_destroy(list);
    return name;
}

/// The file of a drawing that is not the one in the editor.
kz::OwnedText outsideFile(const AcDbDatabase* drawing, int* attached, int* found_open,
                          bool search) {
    if (isAttachedHere(drawing)) {
        *attached = 1;
        ACHAR* path = nullptr;
        acdbOriginalXrefFullPathFor(drawing, path);
        return kz::OwnedText(path);
    }
    kz::OwnedText name = search ? knownName(drawing) : nullptr;
    if (name != nullptr) *found_open = 1;
    return name;
}

/// The whole path of a file that is named without one.
kz::OwnedText wholePath(kz::OwnedText file) {
    if (file == nullptr || kz_Str_index(file.get(), KZ_T("\\"), 0) >= 0) return file;
    kz_Char found[kPathSize];
    if (acedFindFile(file.get(), found) != RTNORM) return file;
    return kz::OwnedText(kz_Str_dup(found));
}

}  // namespace

bool kz::isAttachment(const AcDbBlockTableRecord& block) {
    return block.isFromExternalReference() || block.isFromOverlayReference();
}

bool kz::anyAttachedDrawing(const std::function<bool(AcDbDatabase*)>& test) {
    const AcDbDatabase* working = kz::workingDatabase();
    AcDbBlockTable* opened = nullptr;
    if (working == nullptr || working->getSymbolTable(opened, AcDb::kForRead) != Acad::eOk) {
        return false;
    }
    const kz::Opened<AcDbBlockTable> table(opened);
    AcDbSymbolTableIterator* made = nullptr;
    if (table->newIterator(made) != Acad::eOk) return false;
    const std::unique_ptr<AcDbSymbolTableIterator> walk(made);
    for (; !walk->done(); walk->step()) {
        AcDbBlockTableRecord* record = nullptr;
        if (walk->getRecord(record, AcDb::kForRead) != Acad::eOk) continue;
        const kz::Opened<AcDbBlockTableRecord> block(record);
        AcDbDatabase* drawing =
            kz::isAttachment(*block.get()) ? block->xrefDatabase(true) : nullptr;
        if (drawing != nullptr && test(drawing)) return true;
    }
    return false;
}

kz_Char* kz_AcCAD_getDwgNameFromEnt(const AcDbEntity* entity, int* attached, int* foundOpen,
                                    int search) {
    if (attached == nullptr || foundOpen == nullptr) return nullptr;
    *attached = *foundOpen = 0;
    const AcDbDatabase* drawing = entity != nullptr ? entity->database() : nullptr;
    if (drawing == nullptr) return nullptr;
    kz::OwnedText file;
    if (drawing == kz::workingDatabase()) {
        file = fileOf(*drawing);
        if (file == nullptr) file = editorFile();
    } else {
        file = outsideFile(drawing, attached, foundOpen, search != 0);
    }
    return wholePath(std::move(file)).release();
}

kz_Char* kz_AcCAD_getDwgNameFromEntObjId(const AcDbObjectId* object, int* attached, int* foundOpen,
                                         int search) {
    if (object == nullptr || attached == nullptr || foundOpen == nullptr) return nullptr;
    *attached = *foundOpen = 0;
    const kz::Opened<AcDbEntity> entity = kz::openObject<AcDbEntity>(*object, AcDb::kForRead);
    return entity ? kz_AcCAD_getDwgNameFromEnt(entity.get(), attached, foundOpen, search) : nullptr;
}

int kz_CADObjId_getDrawingName(kz_Char* out, const kz_CADObjId* id) {
    AcDbObjectId object;
    if (out == nullptr || kz_CADObjId_getAcDbObjectId(&object, id) != 1) return 0;
    int attached = 0, found_open = 0;
    const kz::OwnedText file(kz_AcCAD_getDwgNameFromEntObjId(&object, &attached, &found_open, 1));
    if (file == nullptr) return 0;
    kz_Str_ncpy(out, file.get(), kz_Str_len(file.get()));
    return 1;
}

kz_CADDwgId* kz_CADObjId_getDwgId(const kz_CADObjId* id) {
    if (kz_CADObjId_isNull(id) == 1) return nullptr;
    const AcDbDatabase* drawing = kz_AcCAD_getAcDbDatabaseFromEname(id->ename);
    if (drawing == nullptr) return nullptr;
    kz::OwnedText name;
    if (drawing != kz::workingDatabase()) {
        AcDbObjectId object;
        int attached = 0, found_open = 0;
        kz_CADObjId_getAcDbObjectId(&object, id);
        name.reset(kz_AcCAD_getDwgNameFromEntObjId(&object, &attached, &found_open, 1));
        // Without a name the drawing in the editor would be taken for the object's.
        if (name == nullptr) return nullptr;
    }
    return kz_CADDwgId_create(name.get(), kAnyDrawing);
}

int kz_CADObjId_getDwgTransform(int* attached, kz_Point* origin, kz_RotMatrix* rotation,
                                const kz_CADObjId* id) {
    if (kz_CADObjId_isNull(id) == 1) return 0;
    const int state = kz_CADObjId_getNestedState(id);
    if (state == kPicked || state == kPickedInside) {
        if (attached != nullptr) *attached = state == kPickedInside ? 1 : 0;
        if (kz_CADObjId_getOrigin(origin, id) == 1) {
            return kz_CADObjId_getRMatrix(rotation, id);
        }
    }
    kz_CADDwgId* drawing = kz_CADObjId_getDwgId(id);
    if (drawing == nullptr) return 0;
    double angle = 0.0;
    const int status = kz_CADDwgId_getTransform(attached, origin, rotation, &angle, drawing);
    kz_CADDwgId_destroy(drawing);
    return status;
}
