/// The drawing in the editor, for programs around the host.
#ifndef HOST_DRAWING_H
#define HOST_DRAWING_H

#include <string>
#include <vector>

#include "host/export.h"

namespace host {

/// Starts with a new empty drawing (R2018). A drawing that was open is closed without saving.
HOST_API void newDrawing();
/// Opens a DXF drawing in the place of the present one.
/// @return true; false with one sentence in `error` that names file, line (where there is one) and
/// cause, and the present drawing stays as it is
HOST_API bool openDrawing(const std::string& path, std::string& error);

/// How a drawing is opened.
struct OpenOptions {
    /// What can be read of a damaged drawing is read.
    bool recover = false;
};

/// What came of opening.
struct OpenOutcome {
    bool opened = false;
    std::string error;     ///< one sentence when it wasn't
    bool damaged = false;  ///< opening with `recover` could help
    /// What was done to a damaged drawing, one sentence each, and a sum; empty for a sound one.
    std::vector<std::string> recovered;
};

/// The same with options. A recovered drawing counts as changed, and is saved over its damaged file
/// only by force.
HOST_API OpenOutcome openDrawing(const std::string& path, const OpenOptions& options);

/// How a drawing is saved.
struct SaveOptions {
    /// A file that is replaced stays as NAME.bak.
    bool backup = false;
    /// Also over the drawing's own file when another program changed it since it was opened or it
    /// is damaged, and over a write-protected one.
    bool force = false;
    /// The drawing goes by the file's name from then on.
    bool rename = false;
    /// "R2004", "2004" or "AC1018"; empty for the version of the drawing.
    std::string version;
};

/// What came of saving.
struct SaveOutcome {
    bool saved = false;
    std::string error;               ///< one sentence when it wasn't
    std::vector<std::string> notes;  ///< what the file's version can't hold, one sentence each
};

/// Saves the drawing: a temporary file beside the target is written, synced and renamed, so the
/// target holds the old drawing or the new one, never a part. When it isn't saved the target is
/// untouched.
HOST_API SaveOutcome saveDrawing(const std::string& path, const SaveOptions& options);
/// The same with the usual options. @return true; false with one sentence in `error`
HOST_API bool saveDrawing(const std::string& path, std::string& error);
/// True when the drawing has changes that were not saved.
HOST_API bool drawingIsUnsaved();
/// Closes the drawing; afterwards there is none.
HOST_API void closeDrawing();

}  // namespace host

#endif
