/// The XDATA of an object, application by application.
#include "CAD/attached_points.h"
#include "guards.h"
#include "kz/kz_appdata.h"
#include "kz/kz_fldcnv.h"
#include "kz/kz_xdata.h"

namespace {

constexpr int kAppName = 1001;

using OwnedAppData = std::unique_ptr<kz_AppData, kz::Destroyer<kz_AppData_destroy>>;

void destroyElement(void* element) {
    kz_AppData_destroy(static_cast<kz_AppData*>(element));
}

/// The last node of the application that `head` begins.
resbuf* lastOfApp(resbuf* head) {
    resbuf* last = head;
    while (last->rbnext != nullptr && last->rbnext->restype != kAppName)
        last = last->rbnext;
    return last;
}

/// Appends a record; one that can't be appended is lost.
void append(kz_AppDataList* list, OwnedAppData data) {
    if (data != nullptr && kz_LnkList_insEnd(list, data.get()) != nullptr)
        static_cast<void>(data.release());
}

/// Reads the application's nodes behind `head`, which nothing follows, into a record.
int readApp(kz_AppDataList* list, resbuf* head) {
    kz_FldList* read = nullptr;
    resbuf* cursor = head->rbnext;
    const int status = kz_Rb_convertRbToFldList(&read, &cursor, 1);
    kz::OwnedFldList fields(read);
    if (status != 1) return status;
    OwnedAppData data(kz_AppData_create(head->resval.rstring, fields.get()));
    if (data != nullptr) static_cast<void>(fields.release());
    append(list, std::move(data));
    return status;
}

}  // namespace

// --- records ------------------------------------------------------------------------------------

kz_AppData* kz_AppData_create(const kz_Char* name, kz_FldList* fields) {
    kz::OwnedText copy(kz_Str_dup(name));
    auto* data = static_cast<kz_AppData*>(kz_Malloc(sizeof(kz_AppData)));
    if (copy == nullptr || data == nullptr) {
        kz_Free(data);
        return nullptr;
    }
    *data = {copy.release(), fields};
    return data;
}

void kz_AppData_destroy(kz_AppData* data) {
    if (data == nullptr) return;
    kz_Free(data->name);
    kz_FldList_destroy(data->fields);
    kz_Free(data);
}

kz_AppData* kz_AppData_dup(const kz_AppData* data) {
    if (data == nullptr) return nullptr;
    kz::OwnedFldList fields(kz_FldList_copy(data->fields));
    if (fields == nullptr && data->fields != nullptr) return nullptr;
    kz_AppData* copy = kz_AppData_create(data->name, fields.get());
    if (copy != nullptr) static_cast<void>(fields.release());
    return copy;
}

// --- reading ------------------------------------------------------------------------------------

kz_AppDataList* kz_AppDataList_getFromCADObjId(const kz_CADObjId* id) {
    if (kz_CADObjId_isNull(id) == 1) return nullptr;
    const kz::OwnedChain chain(kz_Xdata_getFromEnt(id->ename, nullptr));
    kz_AppDataList* list = nullptr;
    if (kz_AppDataList_fromXdata(&list, chain.get()) != 1) {
        kz_AppDataList_destroy(list);
        return nullptr;
    }
    const kz::DrawingTransform transform(id);
    if (transform.moves()) {
        kz_AppData_applyTransform(list, transform.origin(), transform.rotation(),
                                  kz::DrawingTransform::letters());
    }
    return list;
}

int kz_AppDataList_fromXdata(kz_AppDataList** list, resbuf* chain) {
    if (list == nullptr || chain == nullptr) return 0;
    *list = kz_AppDataList_create();
    if (*list == nullptr) return 0;
    resbuf* head = chain;
    while (head != nullptr && head->restype != kAppName)
        head = head->rbnext;
    int status = 0;
    while (head != nullptr) {
        // The reader goes to the end of a chain, so each application is one for its time.
        resbuf* last = lastOfApp(head);
        resbuf* next = last->rbnext;
        last->rbnext = nullptr;
        status = readApp(*list, head);
        last->rbnext = next;
        head = next;
    }
    return status;
}

kz_AppData* kz_AppDataList_search(kz_AppDataList* list, const kz_Char* name) {
    if (name == nullptr) return nullptr;
    for (kz_AppDataList_start(list); kz_AppDataList_eol(list) == 0; kz_AppDataList_next(list)) {
        kz_AppData* data = kz_AppDataList_getCurr(list);
        if (kz_Str_cmpi(data->name, name) == 0) return data;
    }
    return nullptr;
}

kz_FldList* kz_AppDataList_getFldList(kz_AppDataList* list, const kz_Char* name) {
    const kz_AppData* data = kz_AppDataList_search(list, name);
    return data != nullptr ? data->fields : nullptr;
}

kz_AppDataList* kz_AppDataList_dup(kz_AppDataList* list) {
    if (list == nullptr) return nullptr;
    kz_AppDataList* copy = kz_AppDataList_create();
    if (copy == nullptr) return nullptr;
    // The source's position is its user's.
    const kz_LnkPos position = kz_LnkList_getPos(list);
    for (kz_AppDataList_start(list); kz_AppDataList_eol(list) == 0; kz_AppDataList_next(list))
        append(copy, OwnedAppData(kz_AppData_dup(kz_AppDataList_getCurr(list))));
    kz_LnkList_setPos(list, position);
    kz_AppDataList_start(copy);
    return copy;
}

int kz_AppData_applyTransform(kz_AppDataList* list, const kz_Point* origin,
                              const kz_RotMatrix* rotation, const kz_Char* letters) {
    if (list == nullptr) return 0;
    int status = 1;
    for (kz_AppDataList_start(list); kz_AppDataList_eol(list) == 0; kz_AppDataList_next(list)) {
        kz_FldList* fields = kz_AppDataList_getCurr(list)->fields;
        if (fields == nullptr) continue;
        const int one = kz_FldList_applyTransform(fields, origin, rotation, letters);
        if (status == 1) status = one;
    }
    kz_AppDataList_start(list);
    return status;
}

// --- the list -----------------------------------------------------------------------------------

kz_AppDataList* kz_AppDataList_create(void) {
    return kz_LnkList_create();
}

int kz_AppDataList_destroy(kz_AppDataList* list) {
    return kz_LnkList_destroy(list, destroyElement);
}

int kz_AppDataList_delAll(kz_AppDataList* list) {
    return kz_LnkList_delAll(list, destroyElement);
}

int kz_AppDataList_delCurr(kz_AppDataList* list) {
    return kz_LnkList_delCurr(list, destroyElement);
}

int kz_AppDataList_delNth(kz_AppDataList* list, int n) {
    return kz_LnkList_delNth(list, n, destroyElement);
}

int kz_AppDataList_start(kz_AppDataList* list) {
    return kz_LnkList_start(list);
}

int kz_AppDataList_end(kz_AppDataList* list) {
    return kz_LnkList_end(list);
}

int kz_AppDataList_next(kz_AppDataList* list) {
    return kz_LnkList_next(list);
}

int kz_AppDataList_prev(kz_AppDataList* list) {
    return kz_LnkList_prev(list);
}

int kz_AppDataList_skip(kz_AppDataList* list, int n) {
    return kz_LnkList_skip(list, n);
}

int kz_AppDataList_eol(const kz_AppDataList* list) {
    return kz_LnkList_eol(list);
}

int kz_AppDataList_isLast(const kz_AppDataList* list) {
    return kz_LnkList_isLast(list);
}

int kz_AppDataList_length(const kz_AppDataList* list) {
    return kz_LnkList_length(list);
}

kz_AppData* kz_AppDataList_getCurr(const kz_AppDataList* list) {
    return static_cast<kz_AppData*>(kz_LnkList_getCurr(list));
}

kz_AppData* kz_AppDataList_getNth(const kz_AppDataList* list, int n) {
    return static_cast<kz_AppData*>(kz_LnkList_getNth(list, n));
}

kz_LnkPos kz_AppDataList_insEnd(kz_AppDataList* list, kz_AppData* data) {
    return kz_LnkList_insEnd(list, data);
}

kz_LnkPos kz_AppDataList_insStart(kz_AppDataList* list, kz_AppData* data) {
    return kz_LnkList_insStart(list, data);
}

int kz_AppDataList_join(kz_AppDataList* list, kz_AppDataList* tail) {
    return kz_LnkList_join(list, tail);
}
