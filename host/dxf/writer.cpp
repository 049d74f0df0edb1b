/// The way of a drawing to its file: its text is composed, put into the form of the file, and
/// saved.
#include "dxf/writer.h"

#include <new>

#include "dxf/composer.h"
#include "dxf/convert.h"
#include "dxf/save_file.h"
#include "dxf/versions.h"

namespace host::dxf {
namespace {

/// Puts the file's contents together.
void fill(Database& database, const std::string& version, Composition& out,
          std::vector<std::string>& notes) {
    // The next handle goes into the header; nobody wants to undo that.
    const UndoPause pause(database.undo());
    compose(database, out);
    if (version != database.version()) convertVersion(database, version, out, notes);
}

bool write(Database& database, const std::string& path, const SaveOptions& options,
           SaveOutcome& outcome) {
    std::string version;
    if (!options.version.empty()) {
        version = targetVersion(options.version, outcome.error);
        if (version.empty()) {
            outcome.error = path + ": " + outcome.error;
            return false;
        }
    }
    FileOrigin& origin = database.origin();
    Composition composition;
    if (version.empty() && origin.save_as.empty() && origin.bytes != nullptr &&
        !database.isChanged()) {
        composition.pieces.push_back(origin.kept());
    } else {
        if (version.empty()) version = database.saveVersion();
        fill(database, version, composition, outcome.notes);
    }
    const bool own = isOwnFile(database, path);
    ReplaceOptions replace;
    replace.backup = options.backup;
    replace.force = options.force;
    if (own) replace.expected = origin.stamp;
    FileStamp written;
    if (!replaceFile(path, composition.pieces, replace, written, outcome.error)) return false;
    if (options.rename) {
        database.setPath(path);
        origin.save_as = version == database.version() ? std::string() : version;
    }
    if (own || options.rename) origin.stamp = written;
    return true;
}

}  // namespace

bool isOwnFile(const Database& database, const std::string& path) {
    if (database.path().empty()) return false;
    if (resolvedPath(database.path()) == resolvedPath(path)) return true;
    // Another name of the same file.
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return false;
    const FileStamp& stamp = database.origin().stamp;
    return stamp.exists() && stamp.device == status.st_dev && stamp.inode == status.st_ino;
}

SaveOutcome writeFile(Database& database, const std::string& path, const SaveOptions& options) {
    SaveOutcome outcome;
    try {
        outcome.saved = write(database, path, options, outcome);
    } catch (const std::bad_alloc&) {
        outcome.error = path + ": not enough memory to write the drawing";
    }
    if (outcome.saved) database.markSaved();
    return outcome;
}

}  // namespace host::dxf
