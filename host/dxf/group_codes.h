/// Value types of DXF group codes, as the public reference lists them.
#ifndef HOST_DXF_GROUP_CODES_H
#define HOST_DXF_GROUP_CODES_H

#include <array>
#include <cstdint>

namespace host::dxf {

enum class GroupType : uint8_t { Text, Real, Int16, Int32, Int64, Bool, Handle, HandleRef, Hex };

constexpr int kMaxGroupCode = 1071;

constexpr GroupType computeGroupType(int code) {
    const auto in = [code](int first, int last) { return code >= first && code <= last; };
    if (code == 5 || code == 105) return GroupType::Handle;
    if (code == 1004) return GroupType::Hex;
    if (code == 1005) return GroupType::HandleRef;
    if (in(10, 59) || in(110, 149) || in(210, 239) || in(460, 469) || in(1010, 1059)) {
        return GroupType::Real;
    }
    if (in(60, 79) || in(170, 179) || in(270, 289) || in(370, 389) || in(400, 409) ||
        in(1060, 1070)) {
        return GroupType::Int16;
    }
    if (in(90, 99) || in(420, 429) || in(440, 459) || code == 1071) return GroupType::Int32;
    if (in(160, 169)) return GroupType::Int64;
    if (in(290, 299)) return GroupType::Bool;
    if (in(310, 319)) return GroupType::Hex;
    if (in(320, 369) || in(390, 399) || in(480, 481)) return GroupType::HandleRef;
    return GroupType::Text;
}

inline constexpr auto kGroupTypes = [] {
    std::array<GroupType, kMaxGroupCode + 1> types{};
    for (int code = 0; code <= kMaxGroupCode; ++code) {
        types[static_cast<size_t>(code)] = computeGroupType(code);
    }
    return types;
}();

/// Type of a group's value; codes outside of the table are text.
constexpr GroupType groupType(int code) {
    return code >= 0 && code <= kMaxGroupCode ? kGroupTypes[static_cast<size_t>(code)]
                                              : GroupType::Text;
}

/// True for the x group of a point (10-18, 110-112, 210-213, 1010-1013): y follows as code + 10,
/// and z as code + 20 unless the point is flat.
constexpr bool isPointCode(int code) {
    return (code >= 10 && code <= 18) || (code >= 110 && code <= 112) ||
           (code >= 210 && code <= 213) || (code >= 1010 && code <= 1013);
}

}  // namespace host::dxf

#endif
