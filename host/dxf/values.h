/// Checks of a group's value by the type that its code asks for.
#ifndef HOST_DXF_VALUES_H
#define HOST_DXF_VALUES_H

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>

#include "dxf/pairs.h"

namespace host::dxf {

/// The beginning of a text in quotation marks, for messages.
inline std::string quoted(std::string_view text) {
    return "\"" + std::string(trimmed(text).substr(0, 40)) + "\"";
}

/// The integer that a value begins with, 0 for none.
inline int64_t integerOf(std::string_view value) {
    value = trimmed(value);
    if (!value.empty() && value.front() == '+') value.remove_prefix(1);
    int64_t number = 0;
    std::from_chars(value.data(), value.data() + value.size(), number);
    return number;
}

/// True for the types of records that have a table of their name.
inline bool isTableRecord(std::string_view type) {
    static constexpr std::string_view kTables[] = {
        "VPORT", "LTYPE", "LAYER", "STYLE", "VIEW", "UCS", "APPID", "DIMSTYLE", "BLOCK_RECORD"};
    return std::find(std::begin(kTables), std::end(kTables), type) != std::end(kTables);
}

/// True when the value of a group has the form that its code asks for.
inline bool isSoundValue(const Pair& pair) {
    switch (groupType(pair.code)) {
        case GroupType::Real:
            return isReal(pair.value);
        case GroupType::Int16:
        case GroupType::Int32:
        case GroupType::Int64:
        case GroupType::Bool:
            return isInteger(pair.value);
        default:
            return true;
    }
}

[[noreturn]] inline void throwBadValue(const Pair& pair) {
    throw FormatError(pair.value.data(), "group " + std::to_string(pair.code) + " holds " +
                                             quoted(pair.value) + ", which is no number");
}

inline void checkValue(const Pair& pair) {
    if (!isSoundValue(pair)) throwBadValue(pair);
}

}  // namespace host::dxf

#endif
