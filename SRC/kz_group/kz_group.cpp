/// What callers of the suite use of groups: forwarders to what opens database objects, and what is
/// built from other calls.
#include "ACAD/kz_acgrp/kz_acgrp.h"
#include "APP/services.h"
#include "kz/kz_objprops.h"

// --- finding and attributes ---------------------------------------------------------------------

kz_GroupId* kz_Group_getId(const kz_Char* name) {
    return kz_Group_getIdFromDoc(name, nullptr);
}

int kz_Group_isValidByName(const kz_Char* name) {
    const kz::OwnedGroup id(kz_Group_getId(name));
    return kz_Group_isValid(id.get());
}

int kz_Group_getName(kz_Char* out, const kz_GroupId* id) {
    return kz_AcGroup_getName(out, id);
}

int kz_Group_getType(kz_Char* out, const kz_GroupId* id) {
    return kz_AcGroup_getType(out, id);
}

int kz_Group_isTypeOf(const kz_GroupId* id, const kz_Char* type) {
    if (kz::isAny(type)) return 1;
    kz_Char found[kz::kTypeSize];
    return kz_Group_getType(found, id) == 1 && kz_Str_cmpi(found, type) == 0 ? 1 : 0;
}

int kz_Group_getOldName(kz_Char* out, const kz_GroupId* id) {
    return kz_AcGroup_getOldName(out, id);
}

int kz_Group_setOldName(const kz_GroupId* id, const kz_Char* name) {
    return kz_AcGroup_setOldName(id, name);
}

int kz_Group_isAMember(const kz_CADObjId* object) {
    return kz_AcGroup_isAMember(object);
}

// --- fields -------------------------------------------------------------------------------------

kz_CADObjId* kz_Group_getMasterObject(const kz_GroupId* id) {
    return kz_AcGroup_getMasterObject(id);
}

kz_CADObjId* kz_Group_getMasterFromMember(const kz_CADObjId* object) {
    return kz_AcGroup_getMasterFromMember(object);
}

kz_GroupId* kz_Group_getParentGroup(const kz_GroupId* id) {
    return kz_AcGroup_getParentGroup(id);
}

kz_GroupId* kz_Group_getRootGroup(const kz_GroupId* id) {
    return kz_AcGroup_getRootGroup(id);
}

int kz_Group_isARootGroup(const kz_GroupId* id) {
    return kz_AcGroup_isARootGroup(id);
}

int kz_Group_getNumChildren(const kz_GroupId* id, const kz_Char* type) {
    return kz_AcGroup_getNumChildren(id, type);
}

kz_GroupId* kz_Group_getNthChild(const kz_GroupId* id, const kz_Char* type, int n) {
    return kz_AcGroup_getNthChild(id, type, n);
}

int kz_Group_getSubGroupName(kz_Char* out, const kz_CADObjId* object) {
    return kz_AcGroup_getSubGroupName(out, object);
}

int kz_Group_isErased(const kz_GroupId* id) {
    return kz_AcGroup_isErased(id, 1);
}

// --- walk, entities, state ----------------------------------------------------------------------

int kz_Group_beginGetNext(const kz_CADDwgId* drawing) {
    return kz_AcGroup_beginGetNext(drawing);
}

kz_GroupId* kz_Group_getNext(int* erased, const kz_Char* type, int restart) {
    return kz_AcGroup_getNext(erased, type, 0, restart);
}

kz_GroupId* kz_Group_getCurr(int* erased, const kz_Char* type) {
    return kz_AcGroup_getCurr(erased, type, 0);
}

void kz_Group_endGetNext(void) {
    kz_AcGroup_endGetNext();
}

kz_CADSelSet* kz_Group_getMemberSelSet(const kz_GroupId* id, const kz_Char* type,
                                       const kz_Char* subGroup, int noChildren, int includeMaster) {
    return kz_AcGroup_getMemberSelSet(id, type, subGroup, noChildren, includeMaster);
}

kz_CADObjIdList* kz_Group_getMemberList(const kz_GroupId* id, const kz_Char* type,
                                        const kz_Char* subGroup, int noChildren,
                                        int includeMaster) {
    return kz_AcGroup_getMemberList(id, type, subGroup, noChildren, includeMaster);
}

kz_CADObjIdList* kz_Group_getMasters(kz_CADObjIdList* entities) {
    kz::OwnedObjects masters;
    // The same as looking each one up in the list, which would take long for many groups.
    kz::Visited known;
    for (kz_CADObjIdList_start(entities); kz_CADObjIdList_eol(entities) == 0;
         kz_CADObjIdList_next(entities)) {
        kz::OwnedObject master(kz_Group_getMasterFromMember(kz_CADObjIdList_getCurr(entities)));
        if (master == nullptr || !known.enter(master->ename)) continue;
        if (masters == nullptr) masters.reset(kz_CADObjIdList_create(nullptr));
        if (kz_CADObjIdList_insEnd(masters.get(), master.get()) != nullptr)
            static_cast<void>(master.release());
    }
    kz_CADObjIdList_start(masters.get());
    return masters.release();
}

kz_CADObjIdList* kz_Group_getMastersFromCADSelSetId(const kz_CADSelSetId* set, int nested) {
    const kz::OwnedObjects entities(kz_CADObjIdList_fromCADSelSetId(set, nested));
    return kz_Group_getMasters(entities.get());
}

int kz_Group_setVisibility(const kz_GroupId* id, const kz_Char* type, const kz_Char* subGroup,
                           int noChildren, int includeMaster, int visible) {
    if (kz_Group_isNull(id) == 1) return 0;
    const kz::OwnedSet set(kz_Group_getMemberSelSet(id, type, subGroup, noChildren, includeMaster));
    return set != nullptr ? kz_CADSelSet_setVisibility(set.get(), visible) : 0;
}

int kz_Group_getDrawingName(kz_Char* out, const kz_GroupId* id) {
    return kz_AcGroup_getDrawingName(out, id);
}

int kz_Group_getQualifiedName(kz_Char* drawing, kz_Char* name, const kz_GroupId* id) {
    kz_Group_getName(name, id);
    return kz_Group_getDrawingName(drawing, id);
}

kz_CADDwgId* kz_Group_getDwgId(const kz_GroupId* id) {
    const kz::OwnedObject master(kz_Group_getMasterObject(id));
    return kz_CADObjId_getDwgId(master.get());
}

int kz_Group_getDwgTransform(int* attached, kz_Point* origin, kz_RotMatrix* rotation,
                             const kz_GroupId* id) {
    kz_CADDwgId* drawing = kz_Group_getDwgId(id);
    if (drawing == nullptr) return 0;
    double angle = 0.0;
    const int status = kz_CADDwgId_getTransform(attached, origin, rotation, &angle, drawing);
    kz_CADDwgId_destroy(drawing);
    return status;
}

int kz_Group_isSelectable(const kz_GroupId* id) {
    return kz_AcGroup_isSelectable(id);
}

int kz_Group_setSelectable(const kz_GroupId* id, int queryOnly, int value) {
    return kz_AcGroup_setSelectable(id, queryOnly, value);
}
