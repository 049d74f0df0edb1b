/// Group ids and lists of them, and the two tests of a group's name.
#include <cstdarg>

#include "ACAD/kz_acgrp/kz_acgrp.h"
#include "argument_lists.h"

namespace {

constexpr const char* kTraceSource = "SRC/kzgrputl";

void destroyElement(void* element) {
    kz_Group_destroyId(static_cast<kz_GroupId*>(element));
}

bool beginsWith(const kz_Char* text, const kz_Char* prefix) {
    while (*prefix != 0 && *text == *prefix) {
        ++text;
        ++prefix;
    }
    return *prefix == 0;
}

}  // namespace

// --- ids ----------------------------------------------------------------------------------------

kz_GroupId* kz_Group_createId(const kz_GroupId* source) {
    auto* id = static_cast<kz_GroupId*>(kz_Malloc(sizeof(kz_GroupId)));
    KZ_ASSERTION(id != nullptr);
    kz_Group_copyId(id, source);
    return id;
}

kz_GroupId* kz_Group_dupId(const kz_GroupId* id) {
    return id != nullptr ? kz_Group_createId(id) : nullptr;
}

int kz_Group_copyId(kz_GroupId* destination, const kz_GroupId* source) {
    if (destination == nullptr) return 0;
    *destination = source != nullptr ? *source : kz_GroupId{};
    return 1;
}

void kz_Group_destroyId(kz_GroupId* id) {
    kz_Free(id);
}

int kz_Group_isNull(const kz_GroupId* id) {
    return id == nullptr || ads_name_nil(id->ename) ? 1 : 0;
}

int kz_Group_isEqual(const kz_GroupId* a, const kz_GroupId* b) {
    if (a == b) return 1;
    return a != nullptr && b != nullptr && ads_name_equal(a->ename, b->ename) ? 1 : 0;
}

kz_GroupId* kz_GroupId_fromADSEname(const ads_name name) {
    kz_GroupId* id = name != nullptr ? kz_Group_createId(nullptr) : nullptr;
    if (id != nullptr) ads_name_set(name, id->ename);
    return id;
}

int kz_GroupId_toADSEname(ads_name out, const kz_GroupId* id) {
    if (out == nullptr || kz_Group_isNull(id) == 1) return 0;
    ads_name_set(id->ename, out);
    return 1;
}

kz_GroupId* kz_GroupId_fromAcDbObjectId(const AcDbObjectId* object) {
    ads_name name = {};
    if (object == nullptr || acdbGetAdsName(name, *object) != Acad::eOk) return nullptr;
    return kz_GroupId_fromADSEname(name);
}

int kz_Group_getAcDbObjectId(AcDbObjectId* out, const kz_GroupId* id) {
    if (out == nullptr || id == nullptr) return 0;
    const Acad::ErrorStatus status = acdbGetObjectId(*out, id->ename);
    KZ_ASSERTION(status == Acad::eOk);
    return status == Acad::eOk ? 1 : 0;
}

int kz_AcGroup_isValid(const kz_GroupId* id) {
    AcDbObjectId object;
    return kz_Group_isNull(id) == 0 && acdbGetObjectId(object, id->ename) == Acad::eOk ? 1 : 0;
}

int kz_Group_isValid(const kz_GroupId* id) {
    return kz_AcGroup_isValid(id);
}

// --- lists --------------------------------------------------------------------------------------

kz_GroupIdList* kz_GroupIdList_create(kz_GroupId* first, ...) {
    va_list rest;
    va_start(rest, first);
    kz_GroupIdList* list = kz::listOfArguments(first, rest);
    va_end(rest);
    return list;
}

int kz_GroupIdList_destroy(kz_GroupIdList* list) {
    return kz_LnkList_destroy(list, destroyElement);
}

kz_LnkPos kz_GroupIdList_insEnd(kz_GroupIdList* list, kz_GroupId* id) {
    return kz_LnkList_insEnd(list, id);
}

kz_GroupId* kz_GroupIdList_getCurr(const kz_GroupIdList* list) {
    return static_cast<kz_GroupId*>(kz_LnkList_getCurr(list));
}

kz_GroupId* kz_GroupIdList_getNth(const kz_GroupIdList* list, int n) {
    return static_cast<kz_GroupId*>(kz_LnkList_getNth(list, n));
}

// --- names --------------------------------------------------------------------------------------

int kz_Group_isAMovarGroupName(const kz_Char* name) {
    constexpr int kLastKind = 3;
    const int kind = kz_Group_getGroupNameType(name);
    return kind >= 0 && kind <= kLastKind ? 1 : 0;
}

int kz_Group_isAContainerGroupName(const kz_Char* name) {
    if (name == nullptr) return 0;
    return beginsWith(name, KZ_T("KZ_CN_")) || beginsWith(name, KZ_T("KZ_CN0_")) ? 1 : 0;
}
