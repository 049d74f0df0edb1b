/// The way of a drawing to its file: its text is composed, put into the form of the file, and
/// saved.
#include "dxf/writer.h"

#include "dxf/composer.h"
#include "dxf/save_file.h"

namespace host::dxf {

bool writeFile(Database& database, const std::string& path, std::string& error) {
    Composition composition;
    {
        // The next handle goes into the header; nobody wants to undo that.
        const UndoPause pause(database.undo());
        compose(database, composition);
    }
    return replaceFile(path, composition.pieces, error);
}

}  // namespace host::dxf
