/// The text of a drawing: what nobody changed as the bytes it was read from, what was changed or
/// made from its decoded form.
#ifndef HOST_DXF_COMPOSER_H
#define HOST_DXF_COMPOSER_H

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "db/database.h"

namespace host::dxf {

/// The drawing as a row of pieces, each in the file image or in `made`.
struct Composition {
    std::vector<std::string_view> pieces;
    /// Texts that stay where they are when more come, each with the padding of a file image.
    std::deque<std::string> made;
};

/// Puts the drawing's text together. The pieces are valid as long as database and composition are.
void compose(Database& database, Composition& out);

}  // namespace host::dxf

#endif
