/// Settings of a drawing as its platform view gives and takes them.
#include "acad/db.h"
#include "db/database.h"
#include "edit/drawing_state.h"
#include "edit/ucs.h"

namespace {

/// The coordinate system of model space, whatever space is worked in.
host::Ucs modelUcs(host::Database* drawing) {
    return drawing == nullptr ? host::Ucs() : host::modelSpaceUcs(*drawing);
}

}  // namespace

AcGePoint3d AcDbDatabase::ucsorg() const {
    return modelUcs(drawing_).origin;
}

AcGeVector3d AcDbDatabase::ucsxdir() const {
    return modelUcs(drawing_).x;
}

AcGeVector3d AcDbDatabase::ucsydir() const {
    return modelUcs(drawing_).y;
}

AcCmColor AcDbDatabase::cecolor() const {
    AcCmColor color;
    const host::HeaderVariable* header =
        drawing_ == nullptr ? nullptr : drawing_->header("$CECOLOR");
    if (header != nullptr) {
        color.setColorIndex(static_cast<uint16_t>(header->tags.front().integer()));
    }
    return color;
}

Acad::ErrorStatus AcDbDatabase::setCecolor(const AcCmColor& color) {
    if (drawing_ == nullptr) return Acad::eNoDatabase;
    drawing_->setHeader("$CECOLOR", host::Tag(62, int64_t{color.colorIndex()}));
    return Acad::eOk;
}

AcDbObjectId AcDbDatabase::clayer() const {
    if (drawing_ == nullptr) return {};
    const host::HeaderVariable* header = drawing_->header("$CLAYER");
    const std::u16string name =
        header == nullptr ? u"0" : header->tags.front().text(drawing_->codec());
    return drawing_->idOf(drawing_->findSymbol("LAYER", name));
}

Acad::ErrorStatus AcDbDatabase::setClayer(AcDbObjectId layer) {
    if (drawing_ == nullptr) return Acad::eNoDatabase;
    if (layer.isNull()) return Acad::eNullObjectId;
    const host::Slot slot = drawing_->slotOf(layer);
    if (slot == host::kNoSlot || drawing_->typeName(slot) != "LAYER") {
        return Acad::eNotThatKindOfClass;
    }
    if (drawing_->record(slot).erased) return Acad::eWasErased;
    if (!host::canBeCurrentLayer(*drawing_, slot)) return Acad::eInvalidInput;
    drawing_->setHeader("$CLAYER", host::Tag(8, drawing_->symbolName(slot)));
    return Acad::eOk;
}
