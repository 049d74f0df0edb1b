/// Reading and changing the fields of one object: whole lists and single fields. All of it is built
/// on the reading and writing of an application's chain.
#include <utility>

#include "ACAD/xd_rx/xd_rx.h"
#include "checks.h"
#include "guards.h"
#include "kz/kz_fldcnv.h"
#include "kz/kz_xdata.h"
#include "trace.h"

namespace {

kz::OwnedFldList emptyList() {
    return kz::OwnedFldList(kz_FldList_create(nullptr, 0, nullptr, 0));
}

/// A list of one field with one value; NULL for a value that no field can have.
kz::OwnedFldList oneValue(const kz_Char* name, int16_t type, const void* value) {
    kz::OwnedFldList list = emptyList();
    if (kz_FldList_addVal(list.get(), name, type, value) != 1) list.reset();
    kz_FldList_start(list.get());
    return list;
}

const kz_FldNode* valueNode(const kz_LnkList* values) {
    return static_cast<const kz_FldNode*>(kz_LnkList_getCurr(values));
}

/// True when the field has a value equal to `wanted`.
bool hasValue(const kz_FldNode* field, const kz_FldNode* wanted) {
    if (field->type != KZ_FLD_LIST) return kz_FldList_compareNode(field, wanted) == 0;
    kz_LnkList* values = field->value.list;
    for (kz_LnkList_start(values); kz_LnkList_eol(values) == 0; kz_LnkList_next(values)) {
        if (kz_FldList_compareNode(valueNode(values), wanted) == 0) return true;
    }
    return false;
}

/// The same for the first field of a list and that of another, which may be NULL.
bool hasEqualValue(kz_FldList* list, kz_FldList* wanted) {
    if (wanted == nullptr) return false;
    kz_FldList_start(list);
    return hasValue(kz_FldList_curr(list), kz_FldList_curr(wanted));
}

/// Removes the first equal value of a V field, or all of them. @return how many
int deleteValues(kz_LnkList* values, const kz_FldNode* wanted, bool all) {
    int deleted = 0;
    kz_LnkList_start(values);
    while (kz_LnkList_eol(values) == 0) {
        if (kz_FldList_compareNode(valueNode(values), wanted) != 0) {
            kz_LnkList_next(values);
            continue;
        }
        kz_FldList_delCurr(values);
        ++deleted;
        if (!all) break;
    }
    return deleted;
}

bool isComplete(int16_t type, const void* value, const kz_Char* name) {
    return type != 0 && value != nullptr && !kz::isEmpty(name);
}

/// The application's chain for a read.
kz::AppChain readChain(const ads_name id, kz_FldList* request, const kz_Char* app) {
    kz_FldList_printListDiag(request, kz::kTraceEntry, kz::kTraceData);
    if (kz::isNull(id) || kz::isEmpty(app)) return {};
    acdbRegApp(app);
    return kz::readAppChain(id, app);
}

/// The request filled from the chain, or without a request all fields as a new list.
kz_FldList* readFields(resbuf* chain, kz_FldList* request) {
    if (chain == nullptr) return nullptr;
    if (request != nullptr) return kz_XData_updateFldList(chain, request) == 1 ? request : nullptr;
    resbuf* cursor = chain->rbnext;
    kz_FldList* all = nullptr;
    if (cursor == nullptr || kz_Rb_convertRbToFldList(&all, &cursor, 1) != 1) return nullptr;
    return all;
}

/// A list of the named field (all fields for an empty name), NULL when there is none. `chain` gets
/// what was read, for a caller that goes on to write.
kz::OwnedFldList readField(const ads_name id, const kz_Char* name, const kz_Char* app,
                           kz::AppChain& chain) {
    kz::OwnedFldList list;
    if (!kz::isEmpty(name)) {
        list.reset(kz_FldList_create(name, KZ_FLD_UNKNOWN, nullptr, 0));
        if (list == nullptr) return nullptr;
    }
    chain = readChain(id, list.get(), app);
    kz_FldList* found = readFields(chain.nodes.get(), list.get());
    if (list == nullptr) list.reset(found);  // otherwise what was found is the list itself
    return kz_FldList_count(found) > 0 ? std::move(list) : nullptr;
}

}  // namespace

kz_FldList* kz_XData_getFldList(const ads_name id, kz_FldList* list, const kz_Char* app) {
    const kz::AppChain chain = readChain(id, list, app);
    return readFields(chain.nodes.get(), list);
}

kz_FldList* kz_XData_getFld(const ads_name id, const kz_Char* fieldName, const kz_Char* app) {
    kz::AppChain chain;
    return readField(id, fieldName, app, chain).release();
}

int kz_XData_setFld(const ads_name id, int16_t type, const void* value, const kz_Char* fieldName,
                    const kz_Char* app, int clearExisting, int uniqueData) {
    if (!isComplete(type, value, fieldName)) return 0;
    if (clearExisting != 0) {
        const kz::OwnedFldList fresh = oneValue(fieldName, type, value);
        return fresh != nullptr ? kz_XData_setFldList(id, fresh.get(), app, 0) : 0;
    }
    kz::AppChain chain;
    kz::OwnedFldList list = readField(id, fieldName, app, chain);
    bool present = false;
    if (list == nullptr) {
        list = emptyList();
    } else if (uniqueData != 0) {
        present = hasEqualValue(list.get(), oneValue(fieldName, type, value).get());
    }
    if (!present && kz_FldList_addVal(list.get(), fieldName, type, value) != 1) return 0;
    return kz::writeFldList(KZ_T("kz_XData_setFldList"), id, list.get(), app, false,
                            std::move(chain));
}

int kz_XData_deleteFld(const ads_name id, const kz_Char* fieldName, const kz_Char* app) {
    const kz::OwnedFldList list(kz_XData_getFldList(id, nullptr, app));
    if (list == nullptr || fieldName == nullptr) return 1;
    if (kz_FldList_find(list.get(), fieldName) == nullptr) return 1;
    kz_FldList_delCurr(list.get());
    return kz_XData_setFldList(id, list.get(), app, 1);
}

int kz_XData_deleteFldValue(const ads_name id, int16_t type, const void* value,
                            const kz_Char* fieldName, const kz_Char* app, int clearAll) {
    if (!isComplete(type, value, fieldName)) return 0;
    const kz::OwnedFldList list(kz_XData_getFld(id, fieldName, app));
    const kz::OwnedFldList wanted = oneValue(fieldName, type, value);
    if (list == nullptr || wanted == nullptr) return 0;
    kz_FldList_start(list.get());
    const kz_FldNode* field = kz_FldList_curr(list.get());
    const kz_FldNode* wanted_node = kz_FldList_curr(wanted.get());
    if (field->type != KZ_FLD_LIST) {
        return hasValue(field, wanted_node) ? kz_XData_deleteFld(id, fieldName, app) : 0;
    }
    if (deleteValues(field->value.list, wanted_node, clearAll != 0) == 0) return 0;
    return kz_XData_setFldList(id, list.get(), app, 0);
}

kz_FldList* kz_XData_getHandle(const ads_name id, const kz_Char* fieldName, const kz_Char* app) {
    return kz_XData_getFld(id, fieldName, app);
}

int kz_XData_setHandle(const ads_name id, const kz_Char* handle, const kz_Char* fieldName,
                       const kz_Char* app, int clearExisting) {
    return kz_XData_setFld(id, KZ_FLD_HANDLE, handle, fieldName, app, clearExisting, 1);
}

int kz_XData_deleteHandle(const ads_name id, const kz_Char* handle, const kz_Char* fieldName,
                          const kz_Char* app) {
    return kz_XData_deleteFldValue(id, KZ_FLD_HANDLE, handle, fieldName, app, 0);
}
