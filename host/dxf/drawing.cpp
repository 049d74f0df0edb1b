/// Opening and saving of the drawing in the editor.
#include "host/drawing.h"

#include <exception>

#include "db/attach.h"
#include "dxf/new_drawing.h"
#include "dxf/reader.h"
#include "dxf/writer.h"

namespace host {

void newDrawing() {
    std::string error;
    setCurrentDatabase(dxf::readText(dxf::newDrawingText(), "new drawing", error));
}

bool openDrawing(const std::string& path, std::string& error) {
    std::unique_ptr<Database> database = dxf::readFile(path, error);
    if (database == nullptr) return false;
    setCurrentDatabase(std::move(database));
    tellMissingAttachments(*currentDatabase());
    return true;
}

bool saveDrawing(const std::string& path, std::string& error) {
    Database* database = currentDatabase();
    if (database == nullptr) {
        error = path + ": there is no drawing to save";
        return false;
    }
    try {
        if (!dxf::writeFile(*database, path, error)) return false;
        database->markSaved();
        return true;
    } catch (const std::bad_alloc&) {
        error = path + ": not enough memory to write the drawing";
        return false;
    }
}

bool drawingIsUnsaved() {
    const Database* database = currentDatabase();
    return database != nullptr && database->isUnsaved();
}

void closeDrawing() {
    setCurrentDatabase(nullptr);
}

}  // namespace host
