/// Drawings of R12 and earlier, lifted to R2000: the same entities, table records and blocks with
/// what R2000 asks for - handles, owners, class marks, block records, layouts.
#ifndef HOST_DXF_LIFT_H
#define HOST_DXF_LIFT_H

#include <string>
#include <string_view>

namespace host::dxf {

/// The $ACADVER of a drawing's text; "AC1009" for a text without one that has no class marks
/// either, "AC1015" for one that has them. Looks no further than it has to.
std::string statedVersion(const char* begin, const char* end);

/// True for drawings before R13.
bool isOldVersion(std::string_view version);

/// The text of an old drawing as one of R2000 (AC1015). Handles stay where the drawing has them.
/// Groups keep their spelling and, within a class, their order; XDATA, comments' neighbours and
/// unknown groups stay with their object. What R2000 names by a handle and R12 by a name (arrow
/// blocks of dimension styles) becomes a handle; views of viewports come from the XDATA that R12
/// keeps them in.
/// @throws FormatError for what is no sound drawing, at the place in the given text
std::string liftOldDrawing(const char* begin, const char* end);

}  // namespace host::dxf

#endif
