/// Objects of a drawing by colour, by layer, and by both as a field list gives them.
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "cadservice.h"
#include "host/drawings.h"
#include "kz_tls21an/text.h"

namespace {

constexpr int kNoColor = -1;
constexpr int kValueSize = 256;

/// One thing that an entity must have.
struct Criterion {
    bool isLayer = false;
    std::u16string layer;
    int color = kNoColor;

    bool holds(const host::EntityLook& look) const {
        return isLayer ? kz::compareNoCase(look.layer, layer) == 0 : look.color == color;
    }
};

/// Index of a colour text; kNoColor, which no entity has, for any other text.
int colorIndex(const std::u16string& text) {
    static constexpr std::u16string_view kNames[] = {u"BYBLOCK", u"RED",   u"YELLOW",  u"GREEN",
                                                     u"CYAN",    u"BLUE",  u"MAGENTA", u"WHITE",
                                                     u"DKGRAY",  u"LTGRAY"};
    if (kz::compareNoCase(text, u"BYLAYER") == 0) return 256;
    for (size_t i = 0; i < std::size(kNames); ++i) {
        if (kz::compareNoCase(text, kNames[i]) == 0) return static_cast<int>(i);
    }
    const bool digits = !text.empty() && text.size() <= 3 &&
                        text.find_first_not_of(u"0123456789") == std::u16string::npos;
    const int index = digits ? kz::parseInteger(text) : kNoColor;
    return index <= 256 ? index : kNoColor;
}

Criterion byLayer(std::u16string layer) {
    return {true, std::move(layer), kNoColor};
}

Criterion byColor(const std::u16string& text) {
    return {false, {}, colorIndex(text)};
}

void destroyObjectId(void* element) {
    auto* const id = static_cast<kz_CADObjId*>(element);
    kz_TMatrix_destroy(id->tMatrix);
    kz_Free(id);
}

/// Appends an object to the list, which is made for the first one.
bool append(kz_CADObjIdList*& list, AcDbObjectId object) {
    if (list == nullptr) list = kz_LnkList_create();
    void* const block = list == nullptr ? nullptr : kz_Malloc(sizeof(kz_CADObjId));
    if (block == nullptr) return false;
    auto* const id = new (block) kz_CADObjId{};
    const bool done =
        acdbGetAdsName(id->ename, object) == Acad::eOk && kz_LnkList_insEnd(list, id) != nullptr;
    if (!done) destroyObjectId(id);
    return done;
}

kz_CADObjIdList* collect(const kz_CADDwgId* drawing, const std::vector<Criterion>& criteria,
                         bool any) {
    if (criteria.empty()) return nullptr;
    kz_CADObjIdList* list = nullptr;
    bool whole = true;
    host::forEachEntity(suite::databaseOf(drawing), [&](const host::EntityLook& look) {
        const auto holds = [&](const Criterion& criterion) { return criterion.holds(look); };
        const bool match = any ? std::any_of(criteria.begin(), criteria.end(), holds)
                               : std::all_of(criteria.begin(), criteria.end(), holds);
        if (match) whole = append(list, look.id);
        return whole;
    });
    // A part of the objects would pass for all of them.
    if (!whole) {
        kz_LnkList_destroy(list, destroyObjectId);
        return nullptr;
    }
    kz_LnkList_start(list);
    return list;
}

/// Adds the current text of the list, or each of its texts, as criteria.
void addCriteria(kz_FldList* list, bool isLayer, std::vector<Criterion>& out) {
    kz_Char text[kValueSize];
    if (kz_FldList_currChar(list, text, kValueSize) == 1) {
        out.push_back(isLayer ? byLayer(text) : byColor(text));
        return;
    }
    kz_LnkList* values = nullptr;
    if (kz_FldList_currList(list, &values) != 1) return;
    for (kz_FldList_start(values); kz_FldList_eol(values) == 0; kz_FldList_next(values)) {
        if (kz_FldList_currChar(values, text, kValueSize) == 1)
            out.push_back(isLayer ? byLayer(text) : byColor(text));
    }
}

}  // namespace

kz_CADObjIdList* kz_CADDwgId_getCADObjIdListFromAttributes(const kz_CADDwgId* id,
                                                           kz_FldList* attributes, int any) {
    return suite::guarded<kz_CADObjIdList*>(nullptr, [&] {
        std::vector<Criterion> criteria;
        for (kz_FldList_start(attributes); kz_FldList_eol(attributes) == 0;
             kz_FldList_next(attributes)) {
            const kz_FldNode* const field = kz_FldList_curr(attributes);
            const bool isLayer = kz_Str_cmpi(field->name, KZ_T("LAYER")) == 0;
            if (isLayer || kz_Str_cmpi(field->name, KZ_T("COLOR")) == 0)
                addCriteria(attributes, isLayer, criteria);
        }
        return collect(id, criteria, any != 0);
    });
}

kz_CADObjIdList* kz_CADDwgId_getCADObjIdListFromColor(const kz_CADDwgId* id, const kz_Char* color) {
    return suite::guarded<kz_CADObjIdList*>(nullptr, [&]() -> kz_CADObjIdList* {
        if (color == nullptr || *color == 0) return nullptr;
        return collect(id, {byColor(color)}, false);
    });
}

kz_CADObjIdList* kz_CADDwgId_getCADObjIdListFromLayer(const kz_CADDwgId* id, const kz_Char* layer) {
    return suite::guarded<kz_CADObjIdList*>(nullptr, [&]() -> kz_CADObjIdList* {
        if (layer == nullptr || *layer == 0) return nullptr;
        return collect(id, {byLayer(layer)}, false);
    });
}
