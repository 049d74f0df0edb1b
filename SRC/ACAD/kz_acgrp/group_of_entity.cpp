/// From an entity to its group: through the handle of its master to the name that this one bears.
#include "ACAD/kz_acgrp/kz_acgrp.h"
#include "kz/kz_fldcnv.h"
#include "kz/kz_xdata.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

void traceNoData() {
    KZ_TRACEF(kz::kTraceFailure, kz::kTraceGroups,
              KZ_T("No xdata found in given entity for app name %s"), kz::kGroupApp);
}

/// The master of a member. False with an error for one that can't be found.
bool masterOf(ads_name out, const kz_FldList* fields, AcDbDatabase* drawing) {
    kz_Char handle[kz::kHandleSize];
    if (kz_FldList_getChar(fields, kz::kMasterField, handle, kz::kHandleSize) != 1) {
        KZ_TRACEF(kz::kTraceFailure, kz::kTraceGroups,
                  KZ_T("Field, %s, not found in given field list"), kz::kMasterField);
        kz::submitGeneralError(kz::kFieldNotFound);
        return false;
    }
    if (kz_AcCAD_getEntNameFromHandle(out, handle, drawing) == 1) return true;
    kz::submitGeneralError(kz::kInvalidHandle);
    return false;
}

/// One step on the way: `next` gets the entity to go on with, or stays null where `group` is the
/// answer.
void step(const kz_FldList* fields, int to_root, AcDbDatabase* drawing, ads_name next,
          kz::OwnedGroup& group) {
    kz_Char role[kz::kTypeSize], name[kz::kNameSize];
    if (kz_FldList_getChar(fields, kz::kRoleField, role, kz::kTypeSize) != 1) return;
    if (kz::isSame(role, kz::kMemberRole)) {
        masterOf(next, fields, drawing);
        return;
    }
    if (!kz::isSame(role, kz::kMasterRole)) return;
    const bool has_parent =
        to_root != 0 && kz_FldList_getChar(fields, kz::kParentField, name, kz::kNameRead) == 1 &&
        *name != 0;
    if (has_parent) {
        kz_AcGroup_getMasterEntNameFromGroupName(next, name, 1, drawing);
        return;
    }
    kz_FldList_getChar(fields, kz::kNameField, name, kz::kNameRead);
    group.reset(kz_Group_getId(name));
}

/// The fields of an entity and its drawing; NULL for one in no group.
kz::OwnedFldList fieldsOf(const ads_name name, AcDbDatabase*& drawing) {
    AcDbObjectId object;
    kz::OwnedFldList list(kz_XData_getFldList(name, nullptr, kz::kGroupApp));
    if (list == nullptr) traceNoData();
    drawing = acdbGetObjectId(object, name) == Acad::eOk ? kz::databaseOfObject(object) : nullptr;
    return drawing != nullptr ? std::move(list) : nullptr;
}

/// The part of a chain that is the groups' own, cut out for the time that it is read.
class GroupPart {
  public:
    explicit GroupPart(resbuf* chain) {
        constexpr int kAppName = 1001;
        for (resbuf* node = chain; node != nullptr; node = node->rbnext) {
            if (node->restype != kAppName) continue;
            if (head_ != nullptr) break;
            if (kz_Str_cmpi(node->resval.rstring, kz::kGroupApp) == 0) head_ = node;
        }
        if (head_ == nullptr) return;
        last_ = head_;
        while (last_->rbnext != nullptr && last_->rbnext->restype != kAppName)
            last_ = last_->rbnext;
        behind_ = std::exchange(last_->rbnext, nullptr);
    }
    ~GroupPart() {
        if (last_ != nullptr) last_->rbnext = behind_;
    }
    GroupPart(const GroupPart&) = delete;
    GroupPart& operator=(const GroupPart&) = delete;

    /// Its fields; NULL when there are none.
    kz::OwnedFldList fields() const {
        kz_FldList* read = nullptr;
        resbuf* cursor = head_ != nullptr ? head_->rbnext : nullptr;
        if (cursor != nullptr) kz_Rb_convertRbToFldList(&read, &cursor, 1);
        return kz::OwnedFldList(read);
    }

  private:
    resbuf* head_ = nullptr;
    resbuf* last_ = nullptr;
    resbuf* behind_ = nullptr;
};

}  // namespace

kz_GroupId* kz_Group_getFromFldList(kz_FldList* list, int toRoot, AcDbDatabase* database) {
    const kz::GroupTrace trace(KZ_T("kz_Group_getFromFldList"));
    kz::OwnedGroup group;
    kz::Visited visited;
    ads_name next = {};
    if (list == nullptr) return nullptr;
    step(list, toRoot, database, next, group);
    while (!ads_name_nil(next) && visited.enter(next)) {
        AcDbDatabase* drawing = nullptr;
        const kz::OwnedFldList fields = fieldsOf(next, drawing);
        ads_name_clear(next);
        step(fields.get(), toRoot, drawing, next, group);
    }
    return group.release();
}

kz_GroupId* kz_Group_getFromEntityName(const ads_name name, int toRoot) {
    const kz::GroupTrace trace(KZ_T("kz_Group_getFromEntityName"));
    if (kz::isNull(name)) return nullptr;
    AcDbDatabase* drawing = nullptr;
    const kz::OwnedFldList fields = fieldsOf(name, drawing);
    return kz_Group_getFromFldList(fields.get(), toRoot, drawing);
}

kz_GroupId* kz_Group_getFromMember(const kz_CADObjId* object, int toRoot) {
    return object != nullptr ? kz_Group_getFromEntityName(object->ename, toRoot) : nullptr;
}

kz_GroupId* kz_Group_getFromXdata(resbuf* chain, int toRoot) {
    const kz::GroupTrace trace(KZ_T("kz_Group_getFromXdata"));
    kz::OwnedFldList fields;
    {
        const GroupPart part(chain);
        fields = part.fields();
    }
    if (fields == nullptr) traceNoData();
    return kz_Group_getFromFldList(fields.get(), toRoot, nullptr);
}

kz_GroupId* kz_Group_getFromPersistObjId(const kz_Char* object, const kz_CADDwgId* drawing,
                                         int toRoot) {
    if (object == nullptr) return nullptr;
    const kz::OwnedObject id(kz_CADObjId_createFromDwgId(object, drawing));
    return kz_Group_getFromMember(id.get(), toRoot);
}
