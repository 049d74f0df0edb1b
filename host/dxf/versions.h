/// Versions of drawing files, by code and by name.
#ifndef HOST_DXF_VERSIONS_H
#define HOST_DXF_VERSIONS_H

#include <string>
#include <string_view>

namespace host::dxf {

/// The first versions with a feature that others lack, as $ACADVER says them.
constexpr std::string_view kR2000 = "AC1015";
constexpr std::string_view kR2004 = "AC1018";
constexpr std::string_view kR2007 = "AC1021";
constexpr std::string_view kR2010 = "AC1024";
constexpr std::string_view kR2013 = "AC1027";
constexpr std::string_view kR2018 = "AC1032";

/// "R2004" for "AC1018", the text itself for an unknown code.
std::string versionName(std::string_view code);

/// The code of a version that drawings can be saved in, from "R2004", "2004" or "AC1018" in any
/// case; a year between versions is the one before it. @return the code; empty with one sentence in
/// `refusal` for a version that is none, or that can't be written
std::string targetVersion(std::string_view wanted, std::string& refusal);

}  // namespace host::dxf

#endif
