/// The text of an empty drawing.
#ifndef HOST_DXF_NEW_DRAWING_H
#define HOST_DXF_NEW_DRAWING_H

#include <string>

namespace host::dxf {

/// An R2018 drawing with the tables, blocks, layouts and dictionaries that every reader asks for.
std::string newDrawingText();

}  // namespace host::dxf

#endif
