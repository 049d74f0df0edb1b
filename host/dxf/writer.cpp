/// The way of a drawing to its file: its text is composed, put into the form of the file, and
/// saved.
#include "dxf/writer.h"

#include <new>
#include <utility>

#include "dxf/binary.h"
#include "dxf/composer.h"
#include "dxf/convert.h"
#include "dxf/lift.h"
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

/// Puts the contents into the form of the drawing's file.
bool giveForm(const FileOrigin& origin, bool changed, Composition& contents, std::string& cause) {
    if (!changed && origin.bytes != nullptr) {
        contents.pieces.assign(1, origin.kept());
        return true;
    }
    if (!origin.binary) return true;
    std::string binary;
    if (!encodeBinary(contents.pieces, binary, cause)) return false;
    contents.made.push_back(std::move(binary));
    contents.pieces.assign(1, contents.made.back());
    return true;
}

/// Puts the bytes together that the file will have. `version` is the one that was asked for, or
/// empty.
bool putTogether(Database& database, std::string version, Composition& out, SaveOutcome& outcome) {
    const FileOrigin& origin = database.origin();
    if (version.empty()) version = origin.save_as;
    const std::string& present = origin.version.empty() ? database.version() : origin.version;
    const bool changed = database.isChanged() || (!version.empty() && version != present);
    if (version.empty()) version = database.version();
    fill(database, version, out, outcome.notes);
    if (changed && isOldVersion(origin.version)) {
        outcome.notes.emplace_back("the drawing is of R12 or earlier, which is lifted to R2000");
    }
    return giveForm(origin, changed, out, outcome.error);
}

bool write(Database& database, const std::string& path, const SaveOptions& options,
           SaveOutcome& outcome) {
    std::string version;
    if (!options.version.empty()) version = targetVersion(options.version, outcome.error);
    Composition composition;
    if (!outcome.error.empty() || !putTogether(database, version, composition, outcome)) {
        outcome.error = path + ": " + outcome.error;
        return false;
    }
    FileOrigin& origin = database.origin();
    const bool own = isOwnFile(database, path);
    if (own && origin.recovered && !options.force) {
        outcome.error = path +
                        ": damaged, and this is what could be read of it; save under another name, "
                        "or with --force to replace it";
        return false;
    }
    ReplaceOptions replace;
    replace.backup = options.backup;
    replace.force = options.force;
    if (own) replace.expected = origin.stamp;
    FileStamp written;
    if (!replaceFile(path, composition.pieces, replace, written, outcome.error)) return false;
    if (options.rename) {
        database.setPath(path);
        if (!version.empty()) origin.save_as = version;
    }
    if (own || options.rename) {
        origin.stamp = written;
        origin.recovered = false;
    }
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
