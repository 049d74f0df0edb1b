/// Properties of objects by their ids: what the platform's entities say, as the suite's texts.
#include "ACAD/cad_rx/cad_rx.h"
#include "checks.h"
#include "guards.h"
#include "kz/kz_cad_env.h"
#include "kz/kz_objprops.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/cad_rx";

/// Size of the buffers for texts [characters].
constexpr size_t kTextSize = 256;

using OpenEntity = kz::Opened<AcDbEntity>;

/// Reads from the object by `read`, a function on the entity that gives true when `out` was filled.
template <class Read>
int readEntity(const void* out, const kz_CADObjId* id, Read read) {
    if (out == nullptr) return 0;
    const OpenEntity entity = kz::openObject<AcDbEntity>(id, AcDb::kForRead);
    return entity && read(entity.get()) ? 1 : 0;
}

/// Changes the object by `change`, a function on the entity that gives the platform's status.
template <class Change>
int changeEntity(const kz_CADObjId* id, Change change) {
    const OpenEntity entity = kz::openObject<AcDbEntity>(id, AcDb::kForWrite);
    return entity && change(entity.get()) == Acad::eOk ? 1 : 0;
}

/// Copies a text that the platform made.
bool takeText(kz_Char* out, ACHAR* made) {
    const kz::OwnedText text(made);
    if (text == nullptr || kz_Str_len(text.get()) >= kTextSize) return false;
    kz_Str_ncpy(out, text.get(), kTextSize - 1);
    return true;
}

/// A value to be set: the text itself, or for the marker what `current` tells.
class Wanted {
  public:
    Wanted(const kz_Char* text, int (*current)(kz_Char*)) : text_(text) {
        if (kz::isEmpty(text) || kz_Str_cmpi(text, KZ_CAD_DEFAULT) != 0) return;
        text_ = current(current_) == 1 ? current_ : nullptr;
    }
    bool isMissing() const { return kz::isEmpty(text_); }
    const kz_Char* get() const { return text_; }

  private:
    const kz_Char* text_;
    kz_Char current_[kTextSize] = {};
};

bool isPolyline(AcDbEntity* entity) {
    return AcDb2dPolyline::cast(entity) != nullptr || AcDb3dPolyline::cast(entity) != nullptr;
}

}  // namespace

// --- reading ------------------------------------------------------------------------------------

int kz_CADObjId_getColor(kz_Char* out, const kz_CADObjId* id) {
    return readEntity(out, id, [out](const AcDbEntity* entity) {
        kz_Str_format(out, kTextSize, KZ_T("%d"), static_cast<int>(entity->colorIndex()));
        return true;
    });
}

int kz_CADObjId_getLayer(kz_Char* out, const kz_CADObjId* id) {
    return readEntity(out, id,
                      [out](const AcDbEntity* entity) { return takeText(out, entity->layer()); });
}

int kz_CADObjId_getLineStyle(kz_Char* out, const kz_CADObjId* id) {
    return readEntity(
        out, id, [out](const AcDbEntity* entity) { return takeText(out, entity->linetype()); });
}

int kz_CADObjId_getLineStyleScale(double* out, const kz_CADObjId* id) {
    return readEntity(out, id, [out](const AcDbEntity* entity) {
        *out = entity->linetypeScale();
        return true;
    });
}

int kz_CADObjId_getLineWeight(kz_Char* out, const kz_CADObjId* id) {
    return readEntity(out, id, [out](AcDbEntity* entity) {
        const AcDb2dPolyline* polyline = AcDb2dPolyline::cast(entity);
        const double width = polyline != nullptr ? polyline->defaultStartWidth() : 0.0;
        kz_Str_format(out, kTextSize, KZ_T("%lf"), width);
        return true;
    });
}

int kz_CADObjId_isVisible(const kz_CADObjId* id) {
    const OpenEntity entity = kz::openObject<AcDbEntity>(id, AcDb::kForRead);
    return entity && entity->visibility() == AcDb::kVisible ? 1 : 0;
}

int kz_CADObjId_getVisibility(int32_t* out, const kz_CADObjId* id) {
    if (out == nullptr || kz_CADObjId_isNull(id) == 1) return 0;
    *out = kz_CADObjId_isVisible(id);
    return 1;
}

// --- changing -----------------------------------------------------------------------------------

int kz_CADObjId_setColor(const kz_CADObjId* id, const kz_Char* color) {
    if (kz::isEmpty(color)) return 0;
    kz_Char translated[kTextSize] = {};
    kz_CAD_translateColor(translated, color);
    const uint16_t index = kz_AsAcDbColorIndex(translated);
    const OpenEntity entity = kz::openObject<AcDbEntity>(id, AcDb::kForWrite);
    if (!entity) return 0;
    if (isPolyline(entity.get())) return kz_AcCAD_setPolylineColor(entity.get(), index);
    return entity->setColorIndex(index, true) == Acad::eOk ? 1 : 0;
}

int kz_CADObjId_setLayer(const kz_CADObjId* id, const kz_Char* layer) {
    const Wanted wanted(layer, kz_AcCADEngine_getCurrLayer);
    if (wanted.isMissing()) return 0;
    const OpenEntity entity = kz::openObject<AcDbEntity>(id, AcDb::kForWrite);
    if (!entity) return 0;
    if (isPolyline(entity.get())) return kz_AcCAD_setPolylineLayer(entity.get(), wanted.get());
    return entity->setLayer(wanted.get(), true) == Acad::eOk ? 1 : 0;
}

int kz_CADObjId_setLineStyle(const kz_CADObjId* id, const kz_Char* style) {
    const Wanted wanted(style, kz_AcCADEngine_getLineStyle);
    if (wanted.isMissing()) return 0;
    return changeEntity(
        id, [&](AcDbEntity* entity) { return entity->setLinetype(wanted.get(), true); });
}

int kz_CADObjId_setLineStyleScale(const kz_CADObjId* id, double scale) {
    if (scale == 0.0) return 0;
    return changeEntity(
        id, [scale](AcDbEntity* entity) { return entity->setLinetypeScale(scale, true); });
}

int kz_CADObjId_setLineWeight(const kz_CADObjId* id, const kz_Char* weight) {
    const Wanted wanted(weight, kz_AcCADEngine_getLineWeight);
    if (wanted.isMissing()) return 0;
    const double width = kz::parseReal(std::u16string_view(wanted.get()));
    return changeEntity(id, [width](AcDbEntity* entity) {
        AcDb2dPolyline* polyline = AcDb2dPolyline::cast(entity);
        if (polyline == nullptr) return Acad::eNotThatKindOfClass;
        const Acad::ErrorStatus status = polyline->setDefaultStartWidth(width);
        return status == Acad::eOk ? polyline->setDefaultEndWidth(width) : status;
    });
}

int kz_CADObjId_setVisibility(const kz_CADObjId* id, int visible) {
    const OpenEntity entity = kz::openObject<AcDbEntity>(id, AcDb::kForWrite);
    if (!entity) return 0;
    const bool was_visible = entity->visibility() == AcDb::kVisible;
    entity->setVisibility(visible != 0 ? AcDb::kVisible : AcDb::kInvisible, true);
    return was_visible ? 1 : 0;
}

int kz_CADObjId_highlight(const kz_CADObjId* id, int on) {
    return changeEntity(id, [on](const AcDbEntity* entity) {
        return on != 0 ? entity->highlight() : entity->unhighlight();
    });
}

int kz_AcCAD_setPolylineColor(AcDbEntity* polyline, int index) {
    KZ_ASSERTION(polyline != nullptr);
    if (polyline == nullptr) return 0;
    polyline->setColorIndex(static_cast<uint16_t>(index), true);
    return 1;
}

int kz_AcCAD_setPolylineLayer(AcDbEntity* polyline, const kz_Char* layer) {
    KZ_ASSERTION(polyline != nullptr);
    if (polyline == nullptr) return 0;
    polyline->setLayer(layer, true);
    return 1;
}
