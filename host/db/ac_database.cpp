/// AcDbDatabase: the platform's view of a drawing. The host's own drawings have theirs made when it
/// is first asked for; a constructed one owns its drawing.
#include <unistd.h>

#include <filesystem>

#include "db/database.h"
#include "db/links.h"
#include "dxf/new_drawing.h"
#include "dxf/reader.h"
#include "dxf/writer.h"
#include "kz_tls21an/text.h"

namespace fs = std::filesystem;

namespace host {

DatabaseLinks& Database::links() {
    if (links_ == nullptr) links_ = std::make_unique<DatabaseLinks>();
    return *links_;
}

AcDbDatabase* Database::facade() {
    DatabaseLinks& around = links();
    if (around.facade == nullptr) {
        around.own_facade.reset(new AcDbDatabase(*this));
        around.facade = around.own_facade.get();
    }
    return around.facade;
}

Database* Database::of(const AcDbDatabase* facade) {
    return facade == nullptr ? nullptr : facade->drawing_;
}

}  // namespace host

AcDbHandle::AcDbHandle(const ACHAR* text) {
    constexpr int kDigits = 16;
    uint64_t value = 0;
    for (int i = 0; text != nullptr && text[i] != 0; ++i) {
        const ACHAR unit = kz::upperUnit(text[i]);
        const bool digit = unit >= u'0' && unit <= u'9';
        if (i == kDigits || (!digit && (unit < u'A' || unit > u'F'))) return;
        value = value << 4U | static_cast<uint64_t>(digit ? unit - u'0' : unit - u'A' + 10);
    }
    value_ = value;
}

AcDbDatabase::AcDbDatabase(host::Database& drawing) : drawing_(&drawing) {}

AcDbDatabase::AcDbDatabase(bool buildDefaultDrawing, bool) {
    if (!buildDefaultDrawing) return;
    std::string error;
    own_ = host::dxf::readText(host::dxf::newDrawingText(), "new drawing", error);
    drawing_ = own_.get();
    if (drawing_ != nullptr) drawing_->links().facade = this;
}

AcDbDatabase::~AcDbDatabase() = default;

Acad::ErrorStatus AcDbDatabase::dxfIn(const ACHAR* path, const ACHAR*) {
    if (drawing_ != nullptr) return Acad::eNotApplicable;
    if (path == nullptr || *path == 0) return Acad::eInvalidInput;
    const std::string name = kz::toUtf8(path);
    if (::access(name.c_str(), F_OK) != 0) return Acad::eFileNotFound;
    std::error_code ignored;
    if (::access(name.c_str(), R_OK) != 0 || !fs::is_regular_file(name, ignored)) {
        return Acad::eFileAccessErr;
    }
    std::string error;
    own_ = host::dxf::readFile(name, error);
    drawing_ = own_.get();
    if (drawing_ == nullptr) return Acad::eBadDxfSequence;
    drawing_->links().facade = this;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::saveAs(const ACHAR* path, bool backup, int) {
    if (drawing_ == nullptr) return Acad::eNoDatabase;
    if (path == nullptr || *path == 0) return Acad::eInvalidInput;
    const std::string name = kz::toUtf8(path);
    host::SaveOptions options;
    options.backup = backup;
    options.rename = drawing_->path().empty();
    return host::dxf::writeFile(*drawing_, name, options).saved ? Acad::eOk : Acad::eFileAccessErr;
}

Acad::ErrorStatus AcDbDatabase::getFilename(const ACHAR*& name) const {
    name = nullptr;
    if (drawing_ == nullptr || drawing_->path().empty()) return Acad::eFileNotFound;
    file_name_ = kz::toUtf16(drawing_->path());
    name = file_name_.c_str();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::getAcDbObjectId(AcDbObjectId& id, bool,
                                                const AcDbHandle& handle) const {
    if (handle.isNull()) return Acad::eNullHandle;
    const host::Slot slot =
        drawing_ == nullptr ? host::kNoSlot : drawing_->findHandle(handle.value());
    if (slot == host::kNoSlot) return Acad::eUnknownHandle;
    id = drawing_->idOf(slot);
    return Acad::eOk;
}

void AcDbDatabase::disableUndoRecording(bool disable) {
    if (drawing_ != nullptr) drawing_->undo().disable(disable);
}

bool AcDbDatabase::undoRecording() const {
    return drawing_ != nullptr && !drawing_->undo().isDisabled();
}

AcDbObjectId AcDbDatabase::xrefBlockId() const {
    if (drawing_ == nullptr) return {};
    const host::DatabaseLinks& around = drawing_->links();
    if (around.host_drawing == nullptr) return {};
    return around.host_drawing->idOf(around.host_block);
}

AcDbDatabase* AcDbHostApplicationServices::workingDatabase() const {
    host::Database* current = host::currentDatabase();
    return current == nullptr ? nullptr : current->facade();
}

AcDbHostApplicationServices* acdbHostApplicationServices() {
    static AcDbHostApplicationServices services;
    return &services;
}
