/// Selection sets: their life and their members.
#include "APP/services.h"
#include "checks.h"
#include "guards.h"
#include "kz/kz_point_cnv.h"
#include "kz/kz_selset.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/CAD";

/// As many sets as the platform has.
constexpr int kMostSets = 128;

}  // namespace

// --- life ---------------------------------------------------------------------------------------

kz_CADSelSet* kz_CADSelSet_create(void) {
    ads_name made = {};
    if (acedSSAdd(nullptr, nullptr, made) != RTNORM) return nullptr;
    kz_CADSelSet* set = kz_CADSelSet_fromADSSS(made);
    if (set == nullptr) acedSSFree(made);
    return set;
}

kz_CADSelSet* kz_CADSelSet_fromADSSS(const ads_name set) {
    if (set == nullptr) return nullptr;
    auto* record = static_cast<kz_CADSelSet*>(kz_Malloc(sizeof(kz_CADSelSet)));
    if (record != nullptr) ads_name_set(set, record->name);
    return record;
}

int kz_CADSelSet_toADSSS(ads_name out, const kz_CADSelSetId* set) {
    ads_name copy = {};
    if (out == nullptr || kz_CADSelSetId_isNull(set) == 1) return 0;
    if (acedSSAdd(nullptr, nullptr, copy) != RTNORM) return 0;
    const int count = kz_CADSelSet_length(set);
    for (int i = 0; i < count; ++i) {
        ads_name member = {};
        if (acedSSName(set->name, i, member) == RTNORM) acedSSAdd(member, copy, copy);
    }
    ads_name_set(copy, out);
    return 1;
}

void kz_CADSelSet_destroy(kz_CADSelSet* set) {
    if (set == nullptr) return;
    acedSSFree(set->name);
    kz_Free(set);
}

int kz_CADSelSetId_isNull(const kz_CADSelSetId* set) {
    return set == nullptr || kz::isNull(set->name) ? 1 : 0;
}

int kz_CADSelSet_getNumRemaining(void) {
    ads_name made[kMostSets] = {};
    int count = 0;
    while (count < kMostSets && acedSSAdd(nullptr, nullptr, made[count]) == RTNORM)
        ++count;
    for (int i = count; i-- > 0;)
        acedSSFree(made[i]);
    return count;
}

// --- members ------------------------------------------------------------------------------------

int kz_CADSelSet_length(const kz_CADSelSetId* set) {
    int32_t count = 0;
    if (kz_CADSelSetId_isNull(set) == 1) return 0;
    return acedSSLength(set->name, &count) == RTNORM ? count : 0;
}

kz_CADObjId* kz_CADSelSet_getNth(const kz_CADSelSetId* set, int index) {
    ads_name member = {};
    if (kz_CADSelSetId_isNull(set) == 1) return nullptr;
    return acedSSName(set->name, index, member) == RTNORM ? kz_CADObjId_fromADSEname(member)
                                                          : nullptr;
}

kz_CADObjId* kz_CADSelSet_getNthX(const kz_CADSelSetId* set, int index) {
    resbuf* chain = nullptr;
    // A negative index would give the list of all members.
    if (kz_CADSelSetId_isNull(set) == 1 || index < 0) return nullptr;
    if (acedSSNameX(&chain, set->name, index) != RTNORM) return nullptr;
    const kz::OwnedChain owned(chain);
    const resbuf* node = chain;
    while (node != nullptr && node->restype != RTENAME)
        node = node->rbnext;
    return node == nullptr ? nullptr : kz_CADObjId_fromADSEname(node->resval.rlname);
}

int kz_CADSelSet_getIndex(int32_t* out, const kz_CADSelSetId* set, const kz_CADObjId* id) {
    if (out == nullptr) return 0;
    *out = 0;
    if (kz_CADSelSetId_isNull(set) == 1 || kz_CADObjId_isNull(id) == 1) return 0;
    const int count = kz_CADSelSet_length(set);
    for (int i = 0; i < count; ++i) {
        ads_name member = {};
        if (acedSSName(set->name, i, member) != RTNORM) continue;
        if (!ads_name_equal(member, id->ename)) continue;
        *out = i;
        return 1;
    }
    return 0;
}

int kz_CADSelSet_isMember(const kz_CADSelSetId* set, const kz_CADObjId* id) {
    if (kz_CADSelSetId_isNull(set) == 1 || kz_CADObjId_isNull(id) == 1) return 0;
    return acedSSMemb(id->ename, set->name) == RTNORM ? 1 : 0;
}

int kz_CADSelSet_addObject(kz_CADSelSetId* set, const kz_CADObjId* id) {
    if (kz_CADSelSetId_isNull(set) == 1 || kz_CADObjId_isNull(id) == 1) return 0;
    return acedSSAdd(id->ename, set->name, set->name) == RTNORM ? 1 : 0;
}

int kz_CADSelSet_delObject(kz_CADSelSetId* set, const kz_CADObjId* id) {
    if (kz_CADSelSetId_isNull(set) == 1 || kz_CADObjId_isNull(id) == 1) return 0;
    return acedSSDel(id->ename, set->name) == RTNORM ? 1 : 0;
}

int kz_CADSelSet_append(kz_CADSelSetId* destination, const kz_CADSelSetId* source) {
    if (kz_CADSelSetId_isNull(destination) == 1 || kz_CADSelSetId_isNull(source) == 1) return 0;
    int status = 1;
    const int count = kz_CADSelSet_length(source);
    for (int i = 0; i < count; ++i) {
        kz_CADObjId* member = kz_CADSelSet_getNth(source, i);
        const int added = kz_CADSelSet_addObject(destination, member);
        if (added != 1) status = added;
        kz_CADObjId_destroy(member);
    }
    return status;
}

int kz_CADSelSet_transform(const kz_CADSelSetId* set, const kz_TMatrix* matrix) {
    ads_matrix transform = {};
    if (kz_CADSelSetId_isNull(set) == 1) return 0;
    if (kz_TMatrix_toADSMatrix(transform, matrix) != 1) return 0;
    return acedXformSS(set->name, transform) == RTNORM ? 1 : 0;
}

void kz_CADSelSet_redraw(const kz_CADSelSetId* set, int mode) {
    const int count = kz_CADSelSet_length(set);
    for (int i = 0; i < count; ++i) {
        kz_CADObjId* member = kz_CADSelSet_getNth(set, i);
        kz_CADObjId_redrawObject(member, mode);
        kz_CADObjId_destroy(member);
    }
}

int kz_CADSelSet_getDragOrigin(kz_Point* out) {
    return kz_Point_set(out, 0.0, 0.0, 0.0) == 1 ? 1 : 0;
}

int kz_CADSelSet_getDragXAxis(kz_Point* out) {
    return kz_Point_copy(out, nullptr);
}

kz_CADObjIdList* kz_CADObjIdList_fromCADSelSetId(const kz_CADSelSetId* set, int nested) {
    kz_CADObjIdList* list = nullptr;
    const int count = kz_CADSelSet_length(set);
    for (int i = 0; i < count; ++i) {
        kz_CADObjId* id = nested == 1 ? kz_CADSelSet_getNthX(set, i) : kz_CADSelSet_getNth(set, i);
        if (id == nullptr) continue;
        if (kz_CADObjId_isNull(id) == 1) {
            kz_CADObjId_destroy(id);
        } else if (list != nullptr) {
            if (kz_CADObjIdList_insEnd(list, id) == nullptr) kz_CADObjId_destroy(id);
        } else {
            list = kz_CADObjIdList_create(id, nullptr);
            KZ_ASSERTION(list != nullptr);
            if (list == nullptr) kz_CADObjId_destroy(id);
        }
    }
    return list;
}
