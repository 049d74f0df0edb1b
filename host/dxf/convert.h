/// A drawing's text as another version of files has it.
#ifndef HOST_DXF_CONVERT_H
#define HOST_DXF_CONVERT_H

#include <string>
#include <string_view>
#include <vector>

#include "dxf/composer.h"

namespace host::dxf {

/// Puts the composed text of a drawing together as the version `target` has it ($ACADVER, R2000 or
/// later). Texts change between code page and UTF-8; variables, groups and objects that the version
/// doesn't know, or has in another form, are left out, with what leads to them. Objects of a type
/// that the drawing declares among its classes stay, as programs of all versions keep these without
/// knowing them. All else is taken as it stands.
/// @param text        as composed; afterwards that of the other version
/// @param[out] notes  what is lost, one sentence for all, or nothing
void convertVersion(Database& database, std::string_view target, Composition& text,
                    std::vector<std::string>& notes);

}  // namespace host::dxf

#endif
