/// List of points over the linked list.
#include "kz_tls21an/pointlist.h"

#include "kz_tls21an/memory.h"

kz_PointList* kz_PointList_create(void) {
    return kz_LnkList_create();
}

int kz_PointList_destroy(kz_PointList* list) {
    return kz_LnkList_destroy(list, kz_Free);
}

int kz_PointList_insEnd(kz_PointList* list, const kz_Point* point) {
    auto* copy = list && point ? static_cast<kz_Point*>(kz_Malloc(sizeof(kz_Point))) : nullptr;
    if (!copy) return 0;
    *copy = *point;
    if (kz_LnkList_insEnd(list, copy)) return 1;
    kz_Free(copy);
    return 0;
}

int kz_PointList_start(kz_PointList* list) {
    return kz_LnkList_start(list);
}

int kz_PointList_next(kz_PointList* list) {
    return kz_LnkList_next(list);
}

int kz_PointList_eol(const kz_PointList* list) {
    return kz_LnkList_eol(list);
}

kz_Point* kz_PointList_getCurr(const kz_PointList* list) {
    return static_cast<kz_Point*>(kz_LnkList_getCurr(list));
}

int kz_PointList_length(const kz_PointList* list) {
    return kz_LnkList_length(list);
}
