/// The table of versions.
#include "dxf/versions.h"

#include <algorithm>

namespace host::dxf {
namespace {

struct Version {
    std::string_view code;
    std::string_view name;
    bool written;
};

constexpr Version kVersions[] = {
    {"AC1006", "R10", false}, {"AC1009", "R12", false}, {"AC1012", "R13", false},
    {"AC1014", "R14", false}, {kR2000, "R2000", true},  {kR2004, "R2004", true},
    {kR2007, "R2007", true},  {kR2010, "R2010", true},  {kR2013, "R2013", true},
    {kR2018, "R2018", true},
};

/// "R2004" for "2004", and for "2005" and "2006", which write the same files.
std::string nameOfYear(std::string_view year) {
    const bool digits = year.size() == 4 && std::all_of(year.begin(), year.end(), [](char c) {
                            return c >= '0' && c <= '9';
                        });
    if (!digits || year < "2000" || year > "2030") return "R" + std::string(year);
    std::string name;
    for (const Version& version : kVersions) {
        if (version.written && version.name.substr(1) <= year) name = version.name;
    }
    return name;
}

}  // namespace

std::string versionName(std::string_view code) {
    for (const Version& version : kVersions) {
        if (version.code == code) return std::string(version.name);
    }
    return std::string(code);
}

std::string targetVersion(std::string_view wanted, std::string& refusal) {
    std::string upper;
    for (const char c : wanted)
        upper += static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
    const bool named = upper.starts_with('R');
    const std::string name = nameOfYear(std::string_view(upper).substr(named ? 1 : 0));
    for (const Version& version : kVersions) {
        if (version.code != upper && version.name != name) continue;
        if (version.written) return std::string(version.code);
        refusal =
            "drawings can't be saved as " + std::string(version.name) + ", only as R2000 or later";
        return {};
    }
    refusal = "\"" + std::string(wanted) +
              "\" is no version of drawings; R2000, R2004, R2007, R2010, R2013 and R2018 are";
    return {};
}

}  // namespace host::dxf
