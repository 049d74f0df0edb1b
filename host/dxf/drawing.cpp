/// Opening and saving of the drawing in the editor.
#include "host/drawing.h"

#include <utility>

#include "db/attach.h"
#include "dxf/new_drawing.h"
#include "dxf/reader.h"
#include "dxf/writer.h"

namespace host {

void newDrawing() {
    std::string error;
    setCurrentDatabase(dxf::readText(dxf::newDrawingText(), "new drawing", error));
}

OpenOutcome openDrawing(const std::string& path, const OpenOptions& options) {
    OpenOutcome outcome;
    std::unique_ptr<Database> database = dxf::readFile(path, options, outcome);
    if (database == nullptr) return outcome;
    outcome.opened = true;
    setCurrentDatabase(std::move(database));
    tellMissingAttachments(*currentDatabase());
    return outcome;
}

bool openDrawing(const std::string& path, std::string& error) {
    OpenOutcome outcome = openDrawing(path, OpenOptions());
    error = std::move(outcome.error);
    return outcome.opened;
}

SaveOutcome saveDrawing(const std::string& path, const SaveOptions& options) {
    Database* database = currentDatabase();
    if (database != nullptr) return dxf::writeFile(*database, path, options);
    return {false, path + ": there is no drawing to save", {}};
}

bool saveDrawing(const std::string& path, std::string& error) {
    SaveOutcome outcome = saveDrawing(path, SaveOptions());
    error = std::move(outcome.error);
    return outcome.saved;
}

bool drawingIsUnsaved() {
    const Database* database = currentDatabase();
    return database != nullptr && database->isUnsaved();
}

void closeDrawing() {
    setCurrentDatabase(nullptr);
}

}  // namespace host
