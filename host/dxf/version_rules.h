/// What the versions of drawing files brought: header variables, types of objects, and groups of
/// types that were there before.
#ifndef HOST_DXF_VERSION_RULES_H
#define HOST_DXF_VERSION_RULES_H

#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "dxf/group_codes.h"

namespace host::dxf {

/// First version whose header has the variable; empty for one that R2000 has or that is unknown.
std::string_view versionOfVariable(std::string_view name);
/// The same for a type of objects.
std::string_view versionOfType(std::string_view type);

/// First version that writes the objects of a type in another form than those before; empty for a
/// type that has always had the same.
std::string_view versionOfForm(std::string_view type);
/// True for a type that programs know without a declaration among the classes, or one of the table
/// behind versionOfType.
bool isKnownType(std::string_view type);

/// What is lost with a group.
enum class Loss : uint8_t { None, Colour, Transparency, Material, Gradient, Background };

/// Groups of one class that came with a version.
struct GroupRule {
    std::string_view version;
    std::string_view type;    ///< empty for all entities
    std::string_view marker;  ///< group 100 of the class that has them
    /// The groups are only those directly behind the marker, or all but the first of their code.
    enum class Which : uint8_t { All, BehindMarker, Repeated } which;
    Loss loss;
    std::vector<int> codes;
};

/// The rules of one type that matter to a target version.
struct TypeRules {
    std::vector<const GroupRule*> rules;
    std::bitset<kMaxGroupCode + 1> codes;  ///< that any of the rules names
};

/// The rules for what a version doesn't know.
class VersionRules {
  public:
    explicit VersionRules(std::string_view target) : target_(target) {}
    const TypeRules& of(std::string_view type);

  private:
    std::string target_;
    std::unordered_map<std::string, TypeRules> types_;
};

}  // namespace host::dxf

#endif
