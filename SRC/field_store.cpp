/// Single fields, on top of whole lists.
#include "field_store.h"

#include <utility>

#include "checks.h"

namespace kz {
namespace {

OwnedFldList emptyList() {
    return OwnedFldList(kz_FldList_create(nullptr, 0, nullptr, 0));
}

/// A list of one field with one value; NULL for a value that no field can have.
OwnedFldList oneValue(const kz_Char* name, int16_t type, const void* value) {
    OwnedFldList list = emptyList();
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
    return type != 0 && value != nullptr && !isEmpty(name);
}

}  // namespace

OwnedFldList readField(FieldStore& store, const kz_Char* name) {
    OwnedFldList list;
    if (!isEmpty(name)) {
        list.reset(kz_FldList_create(name, KZ_FLD_UNKNOWN, nullptr, 0));
        if (list == nullptr) return nullptr;
    }
    kz_FldList* found = store.read(list.get());
    if (list == nullptr) list.reset(found);  // otherwise what was found is the list itself
    return kz_FldList_count(found) > 0 ? std::move(list) : nullptr;
}

int setField(FieldStore& store, int16_t type, const void* value, const kz_Char* name,
             bool clear_existing, bool unique) {
    if (!isComplete(type, value, name)) return 0;
    if (clear_existing) {
        const OwnedFldList fresh = oneValue(name, type, value);
        return fresh != nullptr ? store.write(fresh.get(), false) : 0;
    }
    OwnedFldList list = readField(store, name);
    bool present = false;
    if (list == nullptr) {
        list = emptyList();
    } else if (unique) {
        present = hasEqualValue(list.get(), oneValue(name, type, value).get());
    }
    if (!present && kz_FldList_addVal(list.get(), name, type, value) != 1) return 0;
    return store.write(list.get(), false);
}

int deleteField(FieldStore& store, const kz_Char* name) {
    const OwnedFldList list(store.read(nullptr));
    if (list == nullptr || name == nullptr) return store.missing();
    if (kz_FldList_find(list.get(), name) == nullptr) return store.missing();
    kz_FldList_delCurr(list.get());
    return store.write(list.get(), true);
}

int deleteFieldValue(FieldStore& store, int16_t type, const void* value, const kz_Char* name,
                     bool all) {
    if (!isComplete(type, value, name)) return 0;
    const OwnedFldList list = readField(store, name);
    const OwnedFldList wanted = oneValue(name, type, value);
    if (list == nullptr || wanted == nullptr) return 0;
    kz_FldList_start(list.get());
    const kz_FldNode* field = kz_FldList_curr(list.get());
    const kz_FldNode* wanted_node = kz_FldList_curr(wanted.get());
    if (field->type != KZ_FLD_LIST) {
        return hasValue(field, wanted_node) ? deleteField(store, name) : 0;
    }
    if (deleteValues(field->value.list, wanted_node, all) == 0) return 0;
    return store.write(list.get(), false);
}

}  // namespace kz
