/// The XDATA field store on chains: this folder holds the logic that needs no open object. A chain
/// is one application's part, from its 1001 node on, except where a full entity list is named.
#include <algorithm>

#include "RB/field_writer.h"
#include "checks.h"
#include "field_chain.h"
#include "guards.h"
#include "kz/kz_fldcnv.h"
#include "kz/kz_point_cnv.h"
#include "kz/kz_xdata.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/XD";

constexpr int kXDataMarker = -3;
constexpr int kAppName = 1001;
constexpr int kBrace = 1002;
constexpr int kFieldName = 1000;
/// Size of the buffer of a field's name [characters].
constexpr size_t kNameSize = 256;

bool isBrace(const resbuf* node, kz_Char brace) {
    return node->restype == kBrace && node->resval.rstring != nullptr &&
           *node->resval.rstring == brace;
}

bool isAppNode(const resbuf* node, const kz_Char* app) {
    return node->restype == kAppName && kz_Str_cmpi(node->resval.rstring, app) == 0;
}

/// Releases the nodes from the chain's head up to and including `last`. @return what follows
resbuf* releaseThrough(resbuf* head, resbuf* last) {
    resbuf* rest = last->rbnext;
    last->rbnext = nullptr;
    kz_ResBuf_release(head);
    return rest;
}

/// Releases all that follows the node.
void releaseBehind(resbuf* node) {
    kz_ResBuf_release(node->rbnext);
    node->rbnext = nullptr;
}

/// The first name node of a field from `node` on: a text behind an opening brace.
resbuf* nextName(resbuf* node) {
    for (; node != nullptr; node = node->rbnext) {
        if (!isBrace(node, KZ_T('{')) || node->rbnext == nullptr) continue;
        node = node->rbnext;
        if (kz_Rb_typeRb(node) == KZ_RB_STRING) return node;
    }
    return nullptr;
}

/// Where the fields of a chain are. A few names are found by walking along the chain; for more of
/// them the name nodes are hashed first, so that a long list on a long chain takes time by the sum
/// of their lengths.
class FieldPlaces {
  public:
    /// `names` is how many will be asked for at most.
    FieldPlaces(resbuf* chain, int names) : chain_(chain) {
        constexpr int kFewNames = 8;
        if (names > kFewNames) makeIndex(static_cast<size_t>(names));
    }
    ~FieldPlaces() { forgetIndex(); }
    FieldPlaces(const FieldPlaces&) = delete;
    FieldPlaces& operator=(const FieldPlaces&) = delete;

    /// The name node of the first field of that name; NULL when there is none.
    resbuf* find(const kz_Char* name) const {
        if (cells_ != nullptr) return cellOf(name).name;
        resbuf* found = nullptr;
        kz_Xdata_findField(&found, name, chain_);
        return found;
    }
    /// A field was appended to the chain.
    void add(resbuf* name) {
        if (chain_ == nullptr) chain_ = name;
        if (cells_ != nullptr) enter(name);
    }
    /// The index doesn't fit the chain any more.
    void forgetIndex() {
        kz_Free(cells_);
        cells_ = nullptr;
    }

  private:
    struct Cell {
        resbuf* name = nullptr;
    };

    /// Without memory there is no index, and names are found by walking.
    void makeIndex(size_t names) {
        for (resbuf* name = nextName(chain_); name != nullptr; name = nextName(name->rbnext))
            ++names;
        size_t capacity = 32;
        while (capacity < names * 2)
            capacity *= 2;
        cells_ = static_cast<Cell*>(kz_Malloc(capacity * sizeof(Cell)));
        if (cells_ == nullptr) return;
        std::fill_n(cells_, capacity, Cell{});
        mask_ = capacity - 1;
        for (resbuf* name = nextName(chain_); name != nullptr; name = nextName(name->rbnext))
            enter(name);
    }

    void enter(resbuf* name) {
        Cell& cell = cellOf(name->resval.rstring);
        if (cell.name == nullptr) cell.name = name;
    }

    /// The cell of a name, an empty one when no field has it.
    Cell& cellOf(const kz_Char* name) const {
        size_t at = 0;
        for (const kz_Char* unit = name; unit != nullptr && *unit != 0; ++unit)
            at = at * 31 + kz::upperUnit(*unit);
        for (;; ++at) {
            Cell& cell = cells_[at & mask_];
            const bool taken = cell.name != nullptr;
            if (!taken || kz_Str_cmpi(cell.name->resval.rstring, name) == 0) return cell;
        }
    }

    resbuf* chain_;
    Cell* cells_ = nullptr;
    size_t mask_ = 0;
};

/// Cuts the values of the field behind its name node, with their closing brace, and releases them.
/// @return the nodes that followed the brace
resbuf* cutValues(resbuf* name, FieldPlaces& places) {
    resbuf* values = name->rbnext;
    name->rbnext = nullptr;
    resbuf* last = values;
    while (last->rbnext != nullptr && !isBrace(last, KZ_T('}'))) {
        // A field that lacks its closing brace takes the following one along.
        if (isBrace(last, KZ_T('{'))) places.forgetIndex();
        last = last->rbnext;
    }
    return releaseThrough(values, last);
}

constexpr kz::FieldForm kValuesAndBrace = {true, false, true, false};

/// Replaces the values behind the name node, so that the field keeps its place. `tail` is the end
/// of the whole chain and moves when the field is the last one.
bool replaceField(kz::ChainTail& tail, resbuf* name, const kz_FldNode& field, FieldPlaces& places) {
    if (name->rbnext == nullptr) return false;
    resbuf* rest = cutValues(name, places);
    kz::ChainTail values(&name->rbnext);
    const bool good = kz::appendField(values, field, kValuesAndBrace);
    *values.end() = rest;
    if (rest == nullptr) tail = values;
    return good;
}

bool appendNewField(kz::ChainTail& tail, const kz_Char* name, const kz_FldNode& field,
                    FieldPlaces& places) {
    if (!tail.append(kBrace, KZ_T("{"))) return false;
    resbuf** name_link = tail.end();
    if (!tail.append(kFieldName, name)) return false;
    places.add(*name_link);
    return kz::appendField(tail, field, kValuesAndBrace);
}

/// Stores the values of a field's group: the first in the place of what the field of the list held,
/// the others behind it.
class ValueUpdate {
  public:
    ValueUpdate(kz_FldList* list, const kz_Char* name) : list_(list), name_(name) {}

    void store(const resbuf* node) {
        const ads_u_val& value = node->resval;
        switch (kz_Rb_typeRb(node)) {
            case KZ_RB_STRING:
                put<kz_FldList_modChar, kz_FldList_addCharVal>(value.rstring);
                break;
            case KZ_RB_HANDLE:
                put<kz_FldList_modHandle, kz_FldList_addHandleVal>(value.rstring);
                break;
            case KZ_RB_SHORT:
                put<kz_FldList_modInt, kz_FldList_addIntVal>(value.rint);
                break;
            case KZ_RB_LONG:
                put<kz_FldList_modLong, kz_FldList_addLongVal>(value.rlong);
                break;
            case KZ_RB_REAL:
                put<kz_FldList_modReal, kz_FldList_addRealVal>(value.rreal);
                break;
            case KZ_RB_POINT:
                storePoint(node);
                break;
            default:
                break;
        }
    }

  private:
    void storePoint(const resbuf* node) {
        kz_Point point{};
        kz_Point_fromADSPoint(&point, node->resval.rpoint);
        const kz_Vector vector = {point.x, point.y, point.z};
        const kz_Point* const address = &point;
        switch (node->restype) {
            case 1010:
                put<kz_FldList_modPoint, kz_FldList_addPointVal>(address);
                break;
            case 1011:
                put<kz_FldList_modMpoint, kz_FldList_addMpointVal>(address);
                break;
            case 1012:
                put<kz_FldList_modDpoint, kz_FldList_addDpointVal>(address);
                break;
            case 1013:
                put<kz_FldList_modVector, kz_FldList_addVectorVal>(&vector);
                break;
            default:
                break;
        }
    }

    template <auto Modify, auto Add, class Value>
    void put(Value value) {
        if (first_) {
            Modify(list_, name_, value);
        } else {
            Add(list_, name_, value);
        }
        first_ = false;
    }

    kz_FldList* list_;
    const kz_Char* name_;
    bool first_ = true;
};

void traceMissing(const kz_Char* name) {
    KZ_TRACEF(kz::kTraceExit, kz::kTraceData,
              KZ_T("kz_XData_updateFldList - field '%s' not found."), name);
}

}  // namespace

bool kz::mergeFields(resbuf** fields, kz_FldList* list, bool look) {
    ChainTail tail(fields);
    FieldPlaces places(*fields, look ? kz_FldList_count(list) : 0);
    bool good = true;
    for (kz_FldList_start(list); good && kz_FldList_eol(list) == 0; kz_FldList_next(list)) {
        const kz_FldNode* field = kz_FldList_curr(list);
        kz_Char name[kNameSize];
        kz_Str_ncpy(name, field->name, kNameSize - 1);
        resbuf* present = look ? places.find(name) : nullptr;
        if (present != nullptr) {
            good = replaceField(tail, present, *field, places);
        } else {
            good = appendNewField(tail, name, *field, places);
        }
    }
    return good;
}

void kz::fillFields(resbuf* chain, kz_FldList* list, void (*missing)(const kz_Char* name)) {
    const FieldPlaces places(chain, kz_FldList_count(list));
    kz_FldList_start(list);
    while (kz_FldList_eol(list) == 0) {
        kz_Char name[kNameSize];
        kz_Str_ncpy(name, kz_FldList_curr(list)->name, kNameSize - 1);
        const resbuf* node = places.find(name);
        if (node == nullptr) {
            kz_FldList_delCurr(list);
            if (missing != nullptr) missing(name);
            continue;
        }
        // Storing makes the first field of that name current, which may be an earlier one.
        const kz_LnkPos position = kz_LnkList_getPos(list);
        ValueUpdate update(list, name);
        for (node = node->rbnext; node != nullptr && !isBrace(node, KZ_T('}'));) {
            update.store(node);
            node = node->rbnext;
        }
        kz_LnkList_setPos(list, position);
        kz_FldList_next(list);
    }
}

int kz_Xdata_findField(resbuf** out, const kz_Char* fieldName, resbuf* chain) {
    if (fieldName == nullptr) return 0;
    for (resbuf* name = nextName(chain); name != nullptr; name = nextName(name->rbnext)) {
        if (kz_Str_cmpi(name->resval.rstring, fieldName) != 0) continue;
        *out = name;
        return 1;
    }
    return 0;
}

int kz_XData_fromFldList(resbuf* chain, kz_FldList* list, int clearExisting) {
    if (chain == nullptr || list == nullptr) return 0;
    if (clearExisting != 0) releaseBehind(chain);
    return kz::mergeFields(&chain->rbnext, list, true);
}

kz_FldList* kz_XData_toFldList(resbuf* chain, const kz_Char* app) {
    resbuf* head = kz_XData_getPointer(chain, app, 0);
    if (head == nullptr) return nullptr;
    resbuf* cursor = head->rbnext;
    kz_FldList* list = nullptr;
    return kz_Rb_convertRbToFldList(&list, &cursor, 1) == 1 ? list : nullptr;
}

int kz_XData_updateFldList(resbuf* chain, kz_FldList* list) {
    if (chain == nullptr || list == nullptr) return 0;
    kz::fillFields(chain, list, traceMissing);
    return 1;
}

int kz_XData_getAppXData(resbuf** chain, const kz_Char* app) {
    if (chain == nullptr) return 0;
    if (*chain == nullptr) return 1;
    resbuf* before = nullptr;  // the last node that goes
    resbuf* head = nullptr;
    for (resbuf* node = *chain; node != nullptr && head == nullptr; node = node->rbnext) {
        const bool wanted = app != nullptr ? isAppNode(node, app) : node->restype == kAppName;
        if (wanted) {
            head = node;
        } else {
            before = node;
        }
    }
    if (before != nullptr) releaseThrough(*chain, before);
    *chain = head;
    if (head == nullptr) return 0;
    resbuf* last = head;
    while (last->rbnext != nullptr && (app == nullptr || last->rbnext->restype != kAppName)) {
        last = last->rbnext;
    }
    releaseBehind(last);
    return 1;
}

resbuf* kz_XData_getPointer(resbuf* chain, const kz_Char* app, int create) {
    if (chain == nullptr || kz::isEmpty(app)) return nullptr;
    resbuf* node = chain;
    while (node->rbnext != nullptr && node->restype != kXDataMarker)
        node = node->rbnext;
    const bool has_marker = node->rbnext != nullptr;
    while (node->rbnext != nullptr && !isAppNode(node, app))
        node = node->rbnext;
    if (node->rbnext != nullptr) return node;
    if (create == 0) return nullptr;
    acdbRegApp(app);
    if (!has_marker && kz_Rb_insEnd(&chain, kXDataMarker, nullptr) == nullptr) return nullptr;
    return kz_Rb_insEnd(&chain, kAppName, app);
}
