/// Lists of object ids: lists of the tools library that know how to destroy their elements, and the
/// objects of a drawing that a service finds.
#include <cstdarg>

#include "APP/services.h"
#include "argument_lists.h"
#include "checks.h"
#include "kz/kz_objid.h"

namespace {

/// A drawing that is open, attached or unknown.
constexpr int kAnyDrawing = 3;

void destroyElement(void* element) {
    kz_CADObjId_destroy(static_cast<kz_CADObjId*>(element));
}

/// What `find` gives for the drawing of this name.
template <class Find>
kz_CADObjIdList* findInDrawing(const kz_Char* name, Find find) {
    kz_CADDwgId* drawing = kz_CADDwgId_create(name, kAnyDrawing);
    // NULL would stand for the drawing in the editor.
    if (drawing == nullptr) return nullptr;
    kz_CADObjIdList* list = find(drawing);
    kz_CADDwgId_destroy(drawing);
    return list;
}

}  // namespace

kz_CADObjIdList* kz_CADObjIdList_create(kz_CADObjId* first, ...) {
    va_list rest;
    va_start(rest, first);
    kz_CADObjIdList* list = kz::listOfArguments(first, rest);
    va_end(rest);
    return list;
}

int kz_CADObjIdList_destroy(kz_CADObjIdList* list) {
    return kz_LnkList_destroy(list, destroyElement);
}

int kz_CADObjIdList_delAll(kz_CADObjIdList* list) {
    return kz_LnkList_delAll(list, destroyElement);
}

int kz_CADObjIdList_delCurr(kz_CADObjIdList* list) {
    return kz_LnkList_delCurr(list, destroyElement);
}

int kz_CADObjIdList_delNth(kz_CADObjIdList* list, int n) {
    return kz_LnkList_delNth(list, n, destroyElement);
}

kz_LnkPos kz_CADObjIdList_insEnd(kz_CADObjIdList* list, kz_CADObjId* id) {
    return kz_LnkList_insEnd(list, id);
}

int kz_CADObjIdList_join(kz_CADObjIdList* list, kz_CADObjIdList* tail) {
    return kz_LnkList_join(list, tail);
}

int kz_CADObjIdList_start(kz_CADObjIdList* list) {
    return kz_LnkList_start(list);
}

int kz_CADObjIdList_next(kz_CADObjIdList* list) {
    return kz_LnkList_next(list);
}

int kz_CADObjIdList_eol(const kz_CADObjIdList* list) {
    return kz_LnkList_eol(list);
}

int kz_CADObjIdList_length(const kz_CADObjIdList* list) {
    return kz_LnkList_length(list);
}

kz_CADObjId* kz_CADObjIdList_getCurr(const kz_CADObjIdList* list) {
    return static_cast<kz_CADObjId*>(kz_LnkList_getCurr(list));
}

int kz_CADObjIdList_search(kz_CADObjIdList* list, const kz_CADObjId* id) {
    if (list == nullptr || id == nullptr) return -1;
    int position = 0;
    for (kz_LnkList_start(list); kz_LnkList_eol(list) == 0; kz_LnkList_next(list), ++position) {
        if (kz_CADObjId_isEqual(kz_CADObjIdList_getCurr(list), id) == 1) return position;
    }
    return -1;
}

kz_CADObjIdList* kz_CADObjIdList_fromLayer(const kz_Char* drawingName, const kz_Char* layer) {
    if (kz::isEmpty(layer)) return nullptr;
    return findInDrawing(drawingName, [layer](const kz_CADDwgId* drawing) {
        return kz_CADDwgId_getCADObjIdListFromLayer(drawing, layer);
    });
}

kz_CADObjIdList* kz_CADObjIdList_fromColor(const kz_Char* drawingName, const kz_Char* color) {
    if (kz::isEmpty(color)) return nullptr;
    return findInDrawing(drawingName, [color](const kz_CADDwgId* drawing) {
        return kz_CADDwgId_getCADObjIdListFromColor(drawing, color);
    });
}

kz_CADObjIdList* kz_CADObjIdList_fromAttributes(const kz_Char* drawingName, kz_FldList* attributes,
                                                int any) {
    if (attributes == nullptr) return nullptr;
    return findInDrawing(drawingName, [attributes, any](const kz_CADDwgId* drawing) {
        return kz_CADDwgId_getCADObjIdListFromAttributes(drawing, attributes, any);
    });
}
