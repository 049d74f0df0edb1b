/// The drawing in the editor, for programs around the host.
#ifndef HOST_DRAWING_H
#define HOST_DRAWING_H

#include <string>

#include "host/export.h"

namespace host {

/// Starts with a new empty drawing (R2018). A drawing that was open is closed without saving.
HOST_API void newDrawing();
/// Opens a DXF drawing in the place of the present one.
/// @return true; false with one sentence in `error` that names file, line (where there is one) and
/// cause, and the present drawing stays as it is
HOST_API bool openDrawing(const std::string& path, std::string& error);
/// Saves the drawing: a temporary file beside the target is written, synced and renamed, so the
/// target holds the old drawing or the new one, never a part.
/// @return true; false with one sentence in `error`, the target is untouched
HOST_API bool saveDrawing(const std::string& path, std::string& error);
/// True when the drawing has changes that were not saved.
HOST_API bool drawingIsUnsaved();
/// Closes the drawing; afterwards there is none.
HOST_API void closeDrawing();

}  // namespace host

#endif
