/// Field list. A node and its name are one block, a value that was built is moved in and never
/// copied again, and a failed allocation is met before the list changes.
#include "kz_tls21an/fldlist.h"

#include <bit>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <string_view>

#include "geometry_internal.h"
#include "kz_tls21an/diag.h"
#include "kz_tls21an/format.h"
#include "kz_tls21an/matrix.h"
#include "kz_tls21an/memory.h"
#include "kz_tls21an/str.h"
#include "lnklist_internal.h"

namespace {

using kz::LnkNode;

kz_FldNode* fieldOf(const LnkNode* node) {
    return static_cast<kz_FldNode*>(node->element);
}

/// A value on its way into a node; what it owns goes with it when nobody takes it.
class Value {
  public:
    Value() = default;
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
    ~Value() { clear(); }

    /// Copies the value in; false without memory, or when no value can have the type.
    bool assign(int16_t type, const void* source);
    /// Puts the value into a node that holds none.
    void moveTo(kz_FldNode& node) {
        node.type = type_;
        node.value = value_;
        type_ = KZ_FLD_UNKNOWN;
    }
    /// Takes the value out of a node, which is of type U then.
    void moveFrom(kz_FldNode& node) {
        clear();
        type_ = node.type;
        value_ = node.value;
        node.type = KZ_FLD_UNKNOWN;
    }

  private:
    void clear();

    int16_t type_ = KZ_FLD_UNKNOWN;
    kz_FldValue value_{};
};

void destroyNode(void* element) {
    auto* node = static_cast<kz_FldNode*>(element);
    Value().moveFrom(*node);
    kz_Free(node);
}

void Value::clear() {
    if (type_ == KZ_FLD_CHAR || type_ == KZ_FLD_HANDLE) kz_Free(value_.text);
    if (type_ == KZ_FLD_LIST) kz_LnkList_destroy(value_.list, destroyNode);
    type_ = KZ_FLD_UNKNOWN;
}

bool Value::assign(int16_t type, const void* source) {
    clear();
    const bool isText = type == KZ_FLD_CHAR || type == KZ_FLD_HANDLE;
    if (!source && !isText) return false;
    switch (type) {
        case KZ_FLD_CHAR:
        case KZ_FLD_HANDLE:
            value_.text = kz_Str_dup(source ? static_cast<const kz_Char*>(source) : KZ_T(""));
            if (!value_.text) return false;
            break;
        case KZ_FLD_INT:
            value_.integer = *static_cast<const int16_t*>(source);
            break;
        case KZ_FLD_LONG:
            value_.longInt = *static_cast<const int32_t*>(source);
            break;
        case KZ_FLD_REAL:
            value_.real = *static_cast<const double*>(source);
            break;
        case KZ_FLD_POINT:
        case KZ_FLD_MPOINT:
        case KZ_FLD_DPOINT:
            value_.point = *static_cast<const kz_Point*>(source);
            break;
        case KZ_FLD_VECTOR:
            value_.vector = *static_cast<const kz_Vector*>(source);
            break;
        default:
            return false;
    }
    type_ = type;
    return true;
}

/// A node without a value; `name` NULL for a value of a V field. NULL without memory.
kz_FldNode* createNode(const kz_Char* name) {
    const size_t nameSize = name ? (kz_Str_len(name) + 1) * sizeof(kz_Char) : 0;
    auto* node = static_cast<kz_FldNode*>(kz_Malloc(sizeof(kz_FldNode) + nameSize));
    if (!node) return nullptr;
    node->name = name ? reinterpret_cast<kz_Char*>(node + 1) : nullptr;
    node->type = KZ_FLD_UNKNOWN;
    if (name) std::memcpy(node->name, name, nameSize);
    return node;
}

/// Appends a node with the value, which is left where it is when there is no memory.
LnkNode* appendNode(kz_LnkList& list, const kz_Char* name, Value& value) {
    kz_FldNode* node = createNode(name);
    if (!node) return nullptr;
    LnkNode* link = kz::insertNode(list, nullptr, node);
    if (!link) {
        kz_Free(node);
        return nullptr;
    }
    value.moveTo(*node);
    return link;
}

LnkNode* findNode(const kz_FldList* list, const kz_Char* name) {
    LnkNode* node = list && name ? list->first : nullptr;
    while (node && kz_Str_cmpi(fieldOf(node)->name, name) != 0)
        node = node->next;
    return node;
}

/// Makes the field's value and `added` the two values of a V field.
bool joinValues(kz_FldNode& field, Value& added) {
    kz_LnkList* list = kz_LnkList_create();
    if (!list) return false;
    Value none;
    LnkNode* const first = appendNode(*list, nullptr, none);
    if (!first || !appendNode(*list, nullptr, added)) {
        kz_LnkList_destroy(list, destroyNode);
        return false;
    }
    Value old;
    old.moveFrom(field);
    old.moveTo(*fieldOf(first));
    field.type = KZ_FLD_LIST;
    field.value.list = list;
    return true;
}

bool addValue(kz_FldNode& field, Value& value) {
    if (field.type == KZ_FLD_UNKNOWN) {
        value.moveTo(field);
        return true;
    }
    if (field.type != KZ_FLD_LIST) return joinValues(field, value);
    return appendNode(*field.value.list, nullptr, value) != nullptr;
}

int makeCurrent(kz_FldList* list, LnkNode* node) {
    if (!node) return 0;
    list->current = node;
    return 1;
}

int modField(kz_FldList* list, const kz_Char* name, int16_t type, const void* source) {
    Value value;
    if (!list || !name || !value.assign(type, source)) return 0;
    LnkNode* node = findNode(list, name);
    if (!node) return makeCurrent(list, appendNode(*list, name, value));
    Value old;
    old.moveFrom(*fieldOf(node));
    value.moveTo(*fieldOf(node));
    return makeCurrent(list, node);
}

const kz_FldNode* currentOfType(const kz_FldList* list, int16_t type) {
    const kz_FldNode* node = kz_FldList_curr(list);
    return node && node->type == type ? node : nullptr;
}

int copyText(const kz_FldNode* node, kz_Char* buffer, int size) {
    if (!buffer || size <= 0) return 0;
    kz_Str_ncpy(buffer, node ? node->value.text : nullptr, static_cast<size_t>(size) - 1);
    return node ? 1 : 0;
}

bool isPointType(int16_t type) {
    return type == KZ_FLD_POINT || type == KZ_FLD_MPOINT || type == KZ_FLD_DPOINT;
}

/// Appends copies of all nodes of `from`.
bool copyNodes(kz_LnkList& to, const kz_LnkList& from);

/// Copies type and value into a new node without a value.
bool copyValue(kz_FldNode& to, const kz_FldNode& from) {
    if (from.type == KZ_FLD_LIST) {
        to.value.list = kz_LnkList_create();
        if (!to.value.list) return false;
        to.type = KZ_FLD_LIST;
        return copyNodes(*to.value.list, *from.value.list);
    }
    const bool isText = from.type == KZ_FLD_CHAR || from.type == KZ_FLD_HANDLE;
    to.value = from.value;
    if (isText) to.value.text = kz_Str_dup(from.value.text);
    if (isText && !to.value.text) return false;
    to.type = from.type;
    return true;
}

bool copyNodes(kz_LnkList& to, const kz_LnkList& from) {
    for (const LnkNode* node = from.first; node; node = node->next) {
        Value none;
        const LnkNode* copy = appendNode(to, fieldOf(node)->name, none);
        if (!copy || !copyValue(*fieldOf(copy), *fieldOf(node))) return false;
    }
    return true;
}

bool isSameText(const kz_Char* a, const kz_Char* b) {
    return a && b ? std::u16string_view(a) == b : a == b;
}

bool isSameReal(double a, double b) {
    return a == b || std::bit_cast<uint64_t>(a) == std::bit_cast<uint64_t>(b);
}

bool isSameTriple(const kz_Vector& a, const kz_Vector& b) {
    return isSameReal(a.x, b.x) && isSameReal(a.y, b.y) && isSameReal(a.z, b.z);
}

bool isSameList(const kz_LnkList& a, const kz_LnkList& b) {
    if (a.length != b.length) return false;
    const LnkNode* other = b.first;
    for (const LnkNode* node = a.first; node; node = node->next, other = other->next) {
        if (kz_FldList_compareNode(fieldOf(node), fieldOf(other)) != 0) return false;
    }
    return true;
}

bool isSameValue(const kz_FldNode& a, const kz_FldNode& b) {
    if (a.type != b.type) return false;
    switch (a.type) {
        case KZ_FLD_CHAR:
        case KZ_FLD_HANDLE:
            return isSameText(a.value.text, b.value.text);
        case KZ_FLD_INT:
            return a.value.integer == b.value.integer;
        case KZ_FLD_LONG:
            return a.value.longInt == b.value.longInt;
        case KZ_FLD_REAL:
            return isSameReal(a.value.real, b.value.real);
        case KZ_FLD_POINT:
        case KZ_FLD_MPOINT:
        case KZ_FLD_DPOINT:
            return isSameTriple(kz::vec(a.value.point), kz::vec(b.value.point));
        case KZ_FLD_VECTOR:
            return isSameTriple(a.value.vector, b.value.vector);
        case KZ_FLD_LIST:
            return isSameList(*a.value.list, *b.value.list);
        default:
            return true;
    }
}

struct Transform {
    const kz_Point* origin;
    const kz_RotMatrix* rotation;
    std::u16string_view letters;
};

kz::Vec3 rotated(const kz_RotMatrix* rotation, const kz::Vec3& v) {
    if (!rotation) return v;
    const auto row = [&](int index) {
        const double* element = rotation->element[index];
        return kz::dot({element[0], element[1], element[2]}, v);
    };
    return {row(0), row(1), row(2)};
}

void transformNodes(const kz_LnkList& list, const Transform& transform) {
    for (const LnkNode* link = list.first; link; link = link->next) {
        kz_FldNode& node = *fieldOf(link);
        if (node.type == KZ_FLD_LIST) transformNodes(*node.value.list, transform);
        if (transform.letters.find(static_cast<kz_Char>(node.type)) == transform.letters.npos) {
            continue;
        }
        if (node.type == KZ_FLD_VECTOR) {
            node.value.vector = rotated(transform.rotation, node.value.vector);
        } else if (isPointType(node.type)) {
            kz::Vec3 moved = rotated(transform.rotation, kz::vec(node.value.point));
            const bool isPosition = node.type != KZ_FLD_DPOINT;
            if (isPosition && transform.origin) moved = kz::sum(moved, kz::vec(*transform.origin));
            node.value.point = kz::asPoint(moved);
        }
    }
}

template <class... Args>
void appendFormatted(std::u16string& out, const kz_Char* format, Args... args) {
    const kz_FormatArg list[] = {kz_formatArg(args)...};
    out += kz_Str_formatText(format, list, sizeof...(Args));
}

/// Appends " letter value", for a V field those of its values.
void appendValue(std::u16string& out, const kz_FldNode& node) {
    appendFormatted(out, KZ_T(" %c"), node.type);
    if (node.type == KZ_FLD_CHAR || node.type == KZ_FLD_HANDLE) {
        appendFormatted(out, KZ_T(" \"%s\""), node.value.text);
    } else if (node.type == KZ_FLD_INT) {
        appendFormatted(out, KZ_T(" %d"), node.value.integer);
    } else if (node.type == KZ_FLD_LONG) {
        appendFormatted(out, KZ_T(" %ld"), node.value.longInt);
    } else if (node.type == KZ_FLD_REAL) {
        appendFormatted(out, KZ_T(" %f"), node.value.real);
    } else if (isPointType(node.type) || node.type == KZ_FLD_VECTOR) {
        const bool isVector = node.type == KZ_FLD_VECTOR;
        const kz::Vec3 triple = isVector ? node.value.vector : kz::vec(node.value.point);
        appendFormatted(out, KZ_T(" %f,%f,%f"), triple.x, triple.y, triple.z);
    } else if (node.type == KZ_FLD_LIST) {
        for (const LnkNode* cell = node.value.list->first; cell; cell = cell->next) {
            appendValue(out, *fieldOf(cell));
        }
    }
}

}  // namespace

kz_FldList* kz_FldList_create(const kz_Char* name, int16_t type, const void* value, int /*size*/) {
    kz_FldList* list = kz_LnkList_create();
    if (!list || !name) return list;
    if (kz_FldList_addVal(list, name, type, value)) return list;
    kz_FldList_destroy(list);
    return nullptr;
}

int kz_FldList_destroy(kz_FldList* list) {
    return kz_LnkList_destroy(list, destroyNode);
}

kz_FldList* kz_FldList_copy(const kz_FldList* list) {
    kz_FldList* copy = list ? kz_LnkList_create() : nullptr;
    if (!copy) return nullptr;
    if (!copyNodes(*copy, *list)) {
        kz_FldList_destroy(copy);
        return nullptr;
    }
    copy->current = copy->first;
    return copy;
}

int kz_FldList_count(const kz_FldList* list) {
    return kz_LnkList_length(list);
}

int kz_FldList_start(kz_FldList* list) {
    return kz_LnkList_start(list);
}

int kz_FldList_next(kz_FldList* list) {
    return kz_LnkList_next(list);
}

int kz_FldList_eol(const kz_FldList* list) {
    return kz_LnkList_eol(list);
}

kz_FldNode* kz_FldList_curr(const kz_FldList* list) {
    return list && list->current ? fieldOf(list->current) : nullptr;
}

kz_FldNode* kz_FldList_find(kz_FldList* list, const kz_Char* name) {
    if (!list) return nullptr;
    list->current = findNode(list, name);
    return kz_FldList_curr(list);
}

int kz_FldList_delCurr(kz_FldList* list) {
    return kz_LnkList_delCurr(list, destroyNode);
}

int kz_FldList_currFldname(const kz_FldList* list, kz_Char* buffer) {
    if (!buffer) return 0;
    const kz_FldNode* node = kz_FldList_curr(list);
    kz_Str_ncpy(buffer, node ? node->name : nullptr, SIZE_MAX);
    return node && node->name ? 1 : 0;
}

int kz_FldList_currFldtype(const kz_FldList* list, int16_t* type) {
    const kz_FldNode* node = kz_FldList_curr(list);
    return node ? kz::store(type, node->type) : 0;
}

int kz_FldList_currChar(const kz_FldList* list, kz_Char* buffer, int size) {
    return copyText(currentOfType(list, KZ_FLD_CHAR), buffer, size);
}

int kz_FldList_currHandle(const kz_FldList* list, kz_Char* buffer, int size) {
    return copyText(currentOfType(list, KZ_FLD_HANDLE), buffer, size);
}

int kz_FldList_currInt(const kz_FldList* list, int16_t* out) {
    const kz_FldNode* node = currentOfType(list, KZ_FLD_INT);
    return node ? kz::store(out, node->value.integer) : 0;
}

int kz_FldList_currLong(const kz_FldList* list, int32_t* out) {
    const kz_FldNode* node = currentOfType(list, KZ_FLD_LONG);
    return node ? kz::store(out, node->value.longInt) : 0;
}

int kz_FldList_currReal(const kz_FldList* list, double* out) {
    const kz_FldNode* node = currentOfType(list, KZ_FLD_REAL);
    return node ? kz::store(out, node->value.real) : 0;
}

int kz_FldList_currPoint(const kz_FldList* list, kz_Point* out) {
    const kz_FldNode* node = kz_FldList_curr(list);
    return node && isPointType(node->type) ? kz::store(out, node->value.point) : 0;
}

int kz_FldList_currVector(const kz_FldList* list, kz_Vector* out) {
    const kz_FldNode* node = currentOfType(list, KZ_FLD_VECTOR);
    return node ? kz::store(out, node->value.vector) : 0;
}

int kz_FldList_currList(const kz_FldList* list, kz_LnkList** out) {
    const kz_FldNode* node = currentOfType(list, KZ_FLD_LIST);
    return node ? kz::store(out, node->value.list) : 0;
}

int kz_FldList_modChar(kz_FldList* list, const kz_Char* name, const kz_Char* value) {
    return modField(list, name, KZ_FLD_CHAR, value);
}

int kz_FldList_modHandle(kz_FldList* list, const kz_Char* name, const kz_Char* value) {
    return modField(list, name, KZ_FLD_HANDLE, value);
}

int kz_FldList_modInt(kz_FldList* list, const kz_Char* name, int16_t value) {
    return modField(list, name, KZ_FLD_INT, &value);
}

int kz_FldList_modLong(kz_FldList* list, const kz_Char* name, int32_t value) {
    return modField(list, name, KZ_FLD_LONG, &value);
}

int kz_FldList_modReal(kz_FldList* list, const kz_Char* name, double value) {
    return modField(list, name, KZ_FLD_REAL, &value);
}

int kz_FldList_modPoint(kz_FldList* list, const kz_Char* name, const kz_Point* value) {
    return modField(list, name, KZ_FLD_POINT, value);
}

int kz_FldList_modMpoint(kz_FldList* list, const kz_Char* name, const kz_Point* value) {
    return modField(list, name, KZ_FLD_MPOINT, value);
}

int kz_FldList_modDpoint(kz_FldList* list, const kz_Char* name, const kz_Point* value) {
    return modField(list, name, KZ_FLD_DPOINT, value);
}

int kz_FldList_modVector(kz_FldList* list, const kz_Char* name, const kz_Vector* value) {
    return modField(list, name, KZ_FLD_VECTOR, value);
}

int kz_FldList_modUnknown(kz_FldList* list, const kz_Char* name) {
    if (!list || !name) return 0;
    Value none;
    LnkNode* const node = findNode(list, name);
    return makeCurrent(list, node ? node : appendNode(*list, name, none));
}

int kz_FldList_addCharVal(kz_FldList* list, const kz_Char* name, const kz_Char* value) {
    return kz_FldList_addVal(list, name, KZ_FLD_CHAR, value);
}

int kz_FldList_addHandleVal(kz_FldList* list, const kz_Char* name, const kz_Char* value) {
    return kz_FldList_addVal(list, name, KZ_FLD_HANDLE, value);
}

int kz_FldList_addIntVal(kz_FldList* list, const kz_Char* name, int16_t value) {
    return kz_FldList_addVal(list, name, KZ_FLD_INT, &value);
}

int kz_FldList_addLongVal(kz_FldList* list, const kz_Char* name, int32_t value) {
    return kz_FldList_addVal(list, name, KZ_FLD_LONG, &value);
}

int kz_FldList_addRealVal(kz_FldList* list, const kz_Char* name, double value) {
    return kz_FldList_addVal(list, name, KZ_FLD_REAL, &value);
}

int kz_FldList_addPointVal(kz_FldList* list, const kz_Char* name, const kz_Point* value) {
    return kz_FldList_addVal(list, name, KZ_FLD_POINT, value);
}

int kz_FldList_addMpointVal(kz_FldList* list, const kz_Char* name, const kz_Point* value) {
    return kz_FldList_addVal(list, name, KZ_FLD_MPOINT, value);
}

int kz_FldList_addDpointVal(kz_FldList* list, const kz_Char* name, const kz_Point* value) {
    return kz_FldList_addVal(list, name, KZ_FLD_DPOINT, value);
}

int kz_FldList_addVectorVal(kz_FldList* list, const kz_Char* name, const kz_Vector* value) {
    return kz_FldList_addVal(list, name, KZ_FLD_VECTOR, value);
}

int kz_FldList_addVal(kz_FldList* list, const kz_Char* name, int16_t type, const void* value) {
    if (type == KZ_FLD_UNKNOWN) return kz_FldList_modUnknown(list, name);
    Value added;
    if (!list || !name || !added.assign(type, value)) return 0;
    LnkNode* const node = findNode(list, name);
    if (!node) return makeCurrent(list, appendNode(*list, name, added));
    return addValue(*fieldOf(node), added) ? makeCurrent(list, node) : 0;
}

int kz_FldList_compareNode(const kz_FldNode* a, const kz_FldNode* b) {
    if (!a || !b) return a == b ? 0 : 1;
    return isSameValue(*a, *b) ? 0 : 1;
}

int kz_FldList_getChar(const kz_FldList* list, const kz_Char* name, kz_Char* buffer, int size) {
    const LnkNode* found = findNode(list, name);
    const kz_FldNode* node = found ? fieldOf(found) : nullptr;
    const bool isText = node && (node->type == KZ_FLD_CHAR || node->type == KZ_FLD_HANDLE);
    return copyText(isText ? node : nullptr, buffer, size);
}

int kz_FldList_getInt(const kz_FldList* list, const kz_Char* name, int16_t* out) {
    using Limits = std::numeric_limits<int16_t>;
    const LnkNode* found = findNode(list, name);
    if (!found) return 0;
    const kz_FldNode& node = *fieldOf(found);
    if (node.type == KZ_FLD_INT) return kz::store(out, node.value.integer);
    if (node.type != KZ_FLD_LONG) return 0;
    const int32_t value = node.value.longInt;
    if (value < Limits::min() || value > Limits::max()) return 0;
    return kz::store(out, static_cast<int16_t>(value));
}

int kz_FldList_appInt(kz_FldList* list, const kz_Char* name, int16_t value) {
    Value appended;
    if (!list || !name || !appended.assign(KZ_FLD_INT, &value)) return 0;
    return appendNode(*list, name, appended) ? 1 : 0;
}

int kz_FldList_applyTransform(kz_FldList* list, const kz_Point* origin,
                              const struct kz_RotMatrix* rotation, const kz_Char* letters) {
    if (!list) return 0;
    transformNodes(*list, {origin, rotation, letters ? letters : KZ_T("PMDO")});
    return 1;
}

void kz_FldList_printListDiag(kz_FldList* list, int16_t level, int32_t mask) {
    if (!list || level > kz_Diag_getLevel() || (mask & kz_Diag_getCondition()) == 0) return;
    try {
        for (const LnkNode* node = list->first; node; node = node->next) {
            std::u16string line = fieldOf(node)->name ? fieldOf(node)->name : u"";
            appendValue(line, *fieldOf(node));
            kz_Diag_putOutputMsg(line.c_str(), "tools/fldlist", __LINE__);
        }
    } catch (const std::bad_alloc&) {
        // the rest of the dump is lost; a trace never fails its caller
    }
}
