/// What a run of commands has added: the walk over main entities, and the marker that it starts
/// from.
#include <string_view>

#include "guards.h"
#include "kz/kz_selset.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/cad_rx";

constexpr size_t kMarkerSize = 66;
constexpr int kTypeGroup = 0;

bool isPartOfAnother(std::u16string_view type) {
    return type == u"VERTEX" || type == u"SEQEND" || type == u"ATTRIB";
}

/// Puts an entity and all behind it into a new set.
kz_CADSelSet* collectFrom(ads_name entity) {
    kz_CADSelSet* set = kz_CADSelSet_create();
    if (set == nullptr) return nullptr;
    do {
        acedSSAdd(entity, set->name, set->name);
    } while (kz_AcCAD_nextMainEntity(entity, entity, 1) == 1);
    if (kz_CADSelSet_length(set) > 0) return set;
    kz_CADSelSet_destroy(set);
    return nullptr;
}

}  // namespace

int kz_AcCAD_nextMainEntity(const ads_name previous, ads_name out, int skip) {
    if (out == nullptr) return 0;
    if (skip == 0) return acdbEntNext(previous, out) == RTNORM ? 1 : 0;
    ads_name entity = {};
    if (previous != nullptr) ads_name_set(previous, entity);
    ads_name_clear(out);  // may be `previous`
    for (;;) {
        ads_name next = {};
        if (acdbEntNext(ads_name_nil(entity) ? nullptr : entity, next) != RTNORM) return 0;
        const kz::OwnedChain groups(acdbEntGet(next));
        const kz_Char* type = kz_Rb_toString(groups.get(), kTypeGroup);
        if (type == nullptr) return 0;
        ads_name_set(next, entity);
        if (isPartOfAnother(type)) continue;
        ads_name_set(next, out);
        return 1;
    }
}

kz_CADSelSetMarker* kz_CADSelSet_begin(void) {
    ads_name last = {};
    kz_CADSelSetMarker* marker = nullptr;
    if (acdbEntLast(last) == RTNORM) {
        marker = static_cast<kz_CADSelSetMarker*>(kz_Malloc(kMarkerSize));
    }
    if (marker != nullptr) ads_name_set(last, marker->last);
    KZ_TRACEF(kz::kTraceExit, kz::kTraceCad,
              KZ_T("Leaving kz_CADSelSet_begin with element [%d] [%d]..."),
              static_cast<int32_t>(last[0]), static_cast<int32_t>(last[1]));
    return marker;
}

kz_CADSelSet* kz_CADSelSet_end(kz_CADSelSetMarker* marker, int free) {
    bool found = false;
    ads_name first = {};
    if (marker == nullptr) {
        found = kz_AcCAD_nextMainEntity(nullptr, first, 1) == 1;
    } else if (const kz::OwnedChain groups(acdbEntGet(marker->last)); groups != nullptr) {
        found = kz_AcCAD_nextMainEntity(marker->last, first, 1) == 1;
    }
    kz_CADSelSet* set = found ? collectFrom(first) : nullptr;
    if (free != 0) kz_CADSelSet_destroyMarker(marker);
    return set;
}

void kz_CADSelSet_destroyMarker(kz_CADSelSetMarker* marker) {
    kz_Free(marker);
}
