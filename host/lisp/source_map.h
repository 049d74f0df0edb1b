/// Where lists come from: each line of a loaded file has a number of its own, which fits into the
/// head of a list cell. So an error names file and line even when the function was read long ago.
#ifndef HOST_LISP_SOURCE_MAP_H
#define HOST_LISP_SOURCE_MAP_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host::lisp {

class SourceMap {
  public:
    struct Place {
        std::u16string file;  ///< empty for none
        int32_t line = 0;
    };
    /// Number of the line before the first one of `file`, so that line n gets this number plus n. A
    /// file that is loaded again keeps its numbers when they suffice.
    /// @return 0 when all numbers are given out: the places of this file then stay unknown
    uint32_t enter(std::u16string_view file, uint32_t lines);
    Place find(uint32_t number) const;

  private:
    struct Range {
        uint32_t base, lines;
        std::u16string file;
    };
    std::vector<Range> ranges_;  ///< ascending by base
};

}  // namespace host::lisp

#endif
