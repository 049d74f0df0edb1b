/// Choosing objects by place and by property. What came out empty is no set.
#include "APP/services.h"
#include "checks.h"
#include "chosen_set.h"
#include "guards.h"
#include "kz/kz_cad_env.h"
#include "kz/kz_point_cnv.h"
#include "kz/kz_selset.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/CAD";

/// Size of the buffers for names and values [characters].
constexpr size_t kTextSize = 256;
/// A square up to this side is a point [drawing units].
constexpr double kLeastSize = 0.001;

constexpr int kOperatorGroup = -4;
constexpr int kLayerGroup = 8;
constexpr int kColorGroup = 62;

const kz_Char* crossingMode(int crossing, const kz_Char* touching, const kz_Char* inside) {
    return crossing != 0 ? touching : inside;
}

/// The set that a path of local points chooses.
kz_CADSelSet* fromPath(kz_PointList* points, const kz_Char* mode) {
    if (points == nullptr) return nullptr;
    const kz::OwnedChain chain(kz_CoordSys_transPointListLocaltoUCS(points));
    return chain == nullptr ? nullptr : kz::choose(mode, chain.get(), nullptr, nullptr);
}

/// The index that the platform's filters know a colour text by.
int16_t indexOfColor(const kz_Char* color) {
    kz_Char text[kTextSize];
    kz_CAD_translateColor(text, color);
    return static_cast<int16_t>(kz_AcCAD_xlatedColorToACADColorIndex(text));
}

/// Appends the test of a text.
void addTest(resbuf** filter, bool is_layer, const kz_Char* value) {
    if (!is_layer) {
        const int16_t index = indexOfColor(value);
        kz_Rb_insEnd(filter, kColorGroup, &index);
        return;
    }
    const kz::OwnedText layer(kz_Str_dup(value));
    KZ_ASSERTION(layer != nullptr);
    kz_Rb_insEnd(filter, kLayerGroup, layer.get());
}

/// Appends the tests of the current field, one for each of its texts. @return false for a field
/// that makes none
bool addTests(resbuf** filter, const kz_FldList* attributes) {
    kz_Char name[kTextSize];
    kz_Char value[kTextSize];
    if (kz_FldList_currFldname(attributes, name) != 1) return false;
    const bool is_layer = kz_Str_cmpi(name, KZ_T("LAYER")) == 0;
    if (!is_layer && kz_Str_cmpi(name, KZ_T("COLOR")) != 0) return false;
    if (kz_FldList_currChar(attributes, value, kTextSize) == 1) {
        addTest(filter, is_layer, value);
        return true;
    }
    kz_LnkList* values = nullptr;
    if (kz_FldList_currList(attributes, &values) != 1) return false;
    bool found = false;
    for (kz_FldList_start(values); kz_FldList_eol(values) == 0; kz_FldList_next(values)) {
        if (kz_FldList_currChar(values, value, kTextSize) != 1) continue;
        addTest(filter, is_layer, value);
        found = true;
    }
    return found;
}

}  // namespace

kz_CADSelSet* kz::choose(const kz_Char* mode, const void* first, const void* second,
                         const resbuf* filter) {
    ads_name set = {};
    if (acedSSGet(mode, first, second, filter, set) != RTNORM) return nullptr;
    int32_t count = 0;
    const bool empty = acedSSLength(set, &count) != RTNORM || count < 1;
    kz_CADSelSet* record = empty ? nullptr : kz_CADSelSet_fromADSSS(set);
    if (record == nullptr) acedSSFree(set);
    return record;
}

kz_CADSelSet* kz_CADSelSet_getAll(void) {
    return kz::choose(KZ_T("_x"), nullptr, nullptr, nullptr);
}

kz_CADSelSet* kz_CADSelSet_fromWindow(const kz_Point* corner, const kz_Point* opposite,
                                      int crossing) {
    if (corner == nullptr || opposite == nullptr) return nullptr;
    kz_Point from = *corner;
    kz_Point to = *opposite;
    if (kz_CoordSys_transPointLocaltoUCS(&from, corner) != 1) return nullptr;
    if (kz_CoordSys_transPointLocaltoUCS(&to, opposite) != 1) return nullptr;
    ads_point first = {};
    ads_point second = {};
    kz_Point_toADSPoint(first, &from);
    kz_Point_toADSPoint(second, &to);
    return kz::choose(crossingMode(crossing, KZ_T("_c"), KZ_T("_w")), first, second, nullptr);
}

kz_CADSelSet* kz_CADSelSet_fromPolygon(kz_PointList* points, int crossing) {
    return fromPath(points, crossingMode(crossing, KZ_T("_cp"), KZ_T("_wp")));
}

kz_CADSelSet* kz_CADSelSet_fromFence(kz_PointList* points) {
    return fromPath(points, KZ_T("_f"));
}

kz_CADSelSet* kz_CADSelSet_fromPoint(const kz_Point* point, double size) {
    if (point == nullptr) return nullptr;
    if (!(size > kLeastSize)) return kz_CADSelSet_fromWindow(point, point, 1);
    // Where no system was set there is none to go back from.
    if (kz_CoordSys_fromView(point) != 1) return nullptr;
    const kz_Point corner = {-size * 0.5, -size * 0.5, 0.0};
    const kz_Point opposite = {size * 0.5, size * 0.5, 0.0};
    kz_CADSelSet* set = kz_CADSelSet_fromWindow(&corner, &opposite, 1);
    kz_CoordSys_previous();
    return set;
}

kz_CADSelSet* kz_CADSelSet_fromLayer(const kz_Char* layer) {
    if (layer == nullptr) return nullptr;
    resbuf* chain = nullptr;
    kz_Rb_insEnd(&chain, kLayerGroup, layer);
    const kz::OwnedChain filter(chain);
    // Without a filter everything would be chosen.
    return filter == nullptr ? nullptr : kz::choose(KZ_T("_X"), nullptr, nullptr, filter.get());
}

kz_CADSelSet* kz_CADSelSet_fromColor(const kz_Char* color) {
    if (color == nullptr) return nullptr;
    const int16_t index = indexOfColor(color);
    resbuf* chain = nullptr;
    kz_Rb_insEnd(&chain, kColorGroup, &index);
    const kz::OwnedChain filter(chain);
    return filter == nullptr ? nullptr : kz::choose(KZ_T("_X"), nullptr, nullptr, filter.get());
}

kz_CADSelSet* kz_CADSelSet_fromAttributes(kz_FldList* attributes, int any) {
    if (attributes == nullptr) return nullptr;
    resbuf* chain = nullptr;
    kz_Rb_insEnd(&chain, kOperatorGroup, any != 0 ? KZ_T("<OR") : KZ_T("<AND"));
    bool found = false;
    for (kz_FldList_start(attributes); kz_FldList_eol(attributes) == 0;
         kz_FldList_next(attributes)) {
        found = addTests(&chain, attributes) || found;
    }
    if (found) kz_Rb_insEnd(&chain, kOperatorGroup, any != 0 ? KZ_T("OR>") : KZ_T("AND>"));
    const kz::OwnedChain filter(chain);
    return found && filter != nullptr ? kz::choose(KZ_T("_X"), nullptr, nullptr, filter.get())
                                      : nullptr;
}
