/// Numbers of source lines.
#include "lisp/source_map.h"

#include <algorithm>

namespace host::lisp {

namespace {
constexpr uint32_t kNumbers = 1u << 24;
}

uint32_t SourceMap::enter(std::u16string_view file, uint32_t lines) {
    const auto known = std::find_if(ranges_.begin(), ranges_.end(), [&](const Range& range) {
        return range.file == file && range.lines >= lines;
    });
    if (known != ranges_.end()) return known->base;
    // Base 0 would make line 0 of the first file look like "no place", and every base must differ.
    const uint32_t base = ranges_.empty() ? 1 : ranges_.back().base + ranges_.back().lines + 1;
    if (lines >= kNumbers - base) return 0;
    ranges_.push_back({base, lines, std::u16string(file)});
    return base;
}

SourceMap::Place SourceMap::find(uint32_t number) const {
    const auto behind =
        std::upper_bound(ranges_.begin(), ranges_.end(), number,
                         [](uint32_t wanted, const Range& range) { return wanted < range.base; });
    if (number == 0 || behind == ranges_.begin()) return {};
    const Range& range = *(behind - 1);
    return {range.file, static_cast<int32_t>(number - range.base)};
}

}  // namespace host::lisp
