/// The pool of result-buffer nodes. Nodes carry a little more than the platform shows: a stamp that
/// tells a living node from a released one, and whether a point has two coordinates only.
#ifndef HOST_BASE_RESBUF_H
#define HOST_BASE_RESBUF_H

#include <string_view>

#include "acad/ads.h"

namespace host {

/// Kind of the value that a node with this restype holds.
enum class ValueKind : uint8_t { None, Text, Short, Long, Int64, Real, Point, Name };

/// Kind by restype: RT codes and DXF groups (10-18, 110-112, 210-213 and 1010-1013 are points,
/// 320-369, 390-399, 480-481, -1 and -2 names, 5, 105 and 1005 texts).
ValueKind valueKind(int restype);

/// Stamp of a living node, never 0; 0 after its release. A node that comes out of the pool again
/// has another stamp, so a caller that kept the stamp knows whether its node is still the same.
uint32_t stampOf(const resbuf* node);

/// A node with a text of its own copy; NULL without memory.
resbuf* newTextNode(int restype, std::u16string_view text);

/// Marks a point node as having x and y only, as vertices of flat polylines do in an entity list.
void markPoint2d(resbuf* node);
bool isPoint2d(const resbuf* node);

}  // namespace host

#endif
