/// Objects and their layers, the records of layer states, and the members of selection sets: what
/// of object properties needs no open object.
#include "checks.h"
#include "kz/kz_objprops.h"

namespace {

/// Size of a layer name's buffer [characters].
constexpr size_t kNameSize = 256;

bool isEveryLayer(const kz_Char* layer) {
    return kz::isEmpty(layer) || kz_Str_cmpi(layer, KZ_T("*")) == 0;
}

}  // namespace

int kz_CADObjId_isOnLayer(const kz_CADObjId* id, const kz_Char* layer) {
    if (kz_CADObjId_isNull(id) == 1) return 0;
    if (isEveryLayer(layer)) return 1;
    kz_Char name[kNameSize];
    return kz_CADObjId_getLayer(name, id) == 1 && kz_Str_cmpi(name, layer) == 0 ? 1 : 0;
}

int kz_CADObjIdList_isOnLayer(kz_CADObjIdList* list, const kz_Char* layer) {
    if (list == nullptr) return 0;
    if (isEveryLayer(layer)) return 1;
    for (kz_CADObjIdList_start(list); kz_CADObjIdList_eol(list) == 0; kz_CADObjIdList_next(list)) {
        if (kz_CADObjId_isOnLayer(kz_CADObjIdList_getCurr(list), layer) == 1) return 1;
    }
    return 0;
}

int kz_CADSelSet_setVisibility(const kz_CADSelSetId* set, int visible) {
    int32_t count = 0;
    if (set == nullptr || kz::isNull(set->name)) return 0;
    if (acedSSLength(set->name, &count) != RTNORM) return 0;
    int status = 1;
    for (int32_t i = 0; i < count; ++i) {
        kz_CADObjId member = {};
        if (acedSSName(set->name, i, member.ename) == RTNORM) {
            kz_CADObjId_setVisibility(&member, visible);
        } else {
            status = 0;
        }
    }
    return status;
}

kz_LayerStateNode* kz_LayerStateNode_create(const kz_Char* name, int32_t frozen, int32_t locked,
                                            int32_t off) {
    if (name == nullptr || kz_Str_len(name) >= kNameSize) return nullptr;
    auto* node = static_cast<kz_LayerStateNode*>(kz_Malloc(sizeof(kz_LayerStateNode)));
    if (node == nullptr) return nullptr;
    *node = {{}, frozen, locked, off};
    kz_Str_ncpy(node->name, name, kNameSize - 1);
    return node;
}

void kz_LayerStateNode_destroy(kz_LayerStateNode* node) {
    kz_Free(node);
}

int kz_LayerStateNode_compare(const kz_LayerStateNode* a, const kz_LayerStateNode* b) {
    return a == nullptr || b == nullptr ? -1 : kz_Str_cmpi(a->name, b->name);
}
