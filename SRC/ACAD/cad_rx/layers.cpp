/// Layers of a drawing, through its layer table; and the colour of new objects, which is the
/// drawing's, too.
#include "ACAD/cad_rx/cad_rx.h"
#include "checks.h"
#include "guards.h"
#include "kz/kz_cad_env.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/cad_rx";

/// Size of a buffer for a colour text [characters].
constexpr size_t kTextSize = 256;

/// Index of the colour by layer, the greatest one.
constexpr int kByLayer = 256;

/// An object that is closed when the guard goes.
template <class T>
class Closing {
  public:
    Closing() = default;
    ~Closing() {
        if (object_ != nullptr) object_->close();
    }
    Closing(const Closing&) = delete;
    Closing& operator=(const Closing&) = delete;

    /// Where an opening function puts its object.
    T*& slot() { return object_; }
    T* operator->() const { return object_; }

  private:
    T* object_ = nullptr;
};

/// True when the step went well; otherwise it is traced.
bool good(Acad::ErrorStatus status) {
    KZ_ASSERTION(status == Acad::eOk);
    return status == Acad::eOk;
}

/// Opens a layer. False without a database and for a missing layer.
bool openLayer(AcDbDatabase* drawing, const kz_Char* name, AcDb::OpenMode mode,
               Closing<AcDbLayerTableRecord>& layer) {
    Closing<AcDbLayerTable> table;
    if (drawing == nullptr || kz::isEmpty(name)) return false;
    if (drawing->getSymbolTable(table.slot()) != Acad::eOk) return false;
    return table->getAt(name, layer.slot(), mode) == Acad::eOk;
}

/// What a layer of the working database says of itself.
int ask(const kz_Char* name, bool (AcDbLayerTableRecord::*question)() const) {
    Closing<AcDbLayerTableRecord> layer;
    if (!openLayer(kz::workingDatabase(), name, AcDb::kForRead, layer)) return 0;
    return (layer.slot()->*question)() ? 1 : 0;
}

/// The id of the line type that new layers have.
bool findContinuous(const AcDbDatabase& drawing, AcDbObjectId& linetype) {
    Closing<AcDbLinetypeTable> table;
    return good(drawing.getSymbolTable(table.slot())) &&
           good(table->getAt(KZ_T("CONTINUOUS"), linetype));
}

/// Adds a new layer, which the table owns once it has taken it over.
bool addLayer(AcDbLayerTable& table, const kz_Char* name, AcDbObjectId linetype) {
    std::unique_ptr<AcDbLayerTableRecord> layer(new AcDbLayerTableRecord);
    KZ_ASSERTION(layer != nullptr);
    if (layer == nullptr || !good(layer->setName(name))) return false;
    if (!good(layer->setLinetypeObjectId(linetype)) || !good(table.add(layer.get()))) return false;
    layer.release()->close();
    return true;
}

}  // namespace

int kz_CAD_ColorSet(const kz_Char* color) {
    AcDbDatabase* drawing = kz::workingDatabase();
    if (color == nullptr || drawing == nullptr) return 0;
    kz_Char number[kTextSize];
    AcCmColor value;
    kz_CAD_translateColor(number, color);
    const int index = kz_AcCAD_xlatedColorToACADColorIndex(number);
    if (index < 0 || index > kByLayer) return 0;
    value.setColorIndex(static_cast<uint16_t>(index));
    return drawing->setCecolor(value) == Acad::eOk ? 1 : 0;
}

int kz_CAD_createLayer(const kz_CADDwgId* drawing, const kz_Char* name) {
    if (kz::isEmpty(name)) return 0;
    const AcDbDatabase* database = kz::databaseOf(drawing);
    KZ_ASSERTION(database != nullptr);
    if (database == nullptr) return 0;
    Closing<AcDbLayerTable> table;
    AcDbObjectId linetype;
    if (!good(database->getSymbolTable(table.slot(), AcDb::kForWrite))) return 0;
    if (!findContinuous(*database, linetype)) return 0;
    return addLayer(*table.slot(), name, linetype) ? 1 : 0;
}

int kz_CAD_setLayer(const kz_CADDwgId* drawing, const kz_Char* name) {
    AcDbDatabase* database = kz::databaseOf(drawing);
    Closing<AcDbLayerTable> table;
    AcDbObjectId layer;
    if (database == nullptr || kz::isEmpty(name)) return 0;
    if (database->getSymbolTable(table.slot()) != Acad::eOk) return 0;
    if (table->getAt(name, layer) != Acad::eOk) return 0;
    return database->setClayer(layer) == Acad::eOk ? 1 : 0;
}

int kz_CAD_LayerIsFrozen(const kz_Char* name) {
    return ask(name, &AcDbLayerTableRecord::isFrozen);
}

int kz_CAD_LayerIsLocked(const kz_Char* name) {
    return ask(name, &AcDbLayerTableRecord::isLocked);
}

int kz_CAD_LayerIsOff(const kz_Char* name) {
    return ask(name, &AcDbLayerTableRecord::isOff);
}

int kz_CAD_LayerSetColor(const kz_CADDwgId* drawing, const kz_Char* name, const kz_Char* color) {
    if (name == nullptr || color == nullptr) return 0;
    kz_Char number[kTextSize];
    kz_CAD_translateColor(number, color);
    const int index = kz::parseInteger(number);
    AcCmColor value;
    Closing<AcDbLayerTableRecord> layer;
    // By block and by layer are no colours that a layer can have.
    if (index < 1 || index >= kByLayer) return 0;
    value.setColorIndex(static_cast<uint16_t>(index));
    if (!openLayer(kz::databaseOf(drawing), name, AcDb::kForWrite, layer)) return 0;
    return layer->setColor(value) == Acad::eOk ? 1 : 0;
}
