/// Extended entity data of one object, apart by application and packed: the group code and the
/// value of each item one behind the other in 16-bit units. An application's data keeps the bytes
/// it was read from until it is replaced.
#ifndef HOST_DB_XDATA_H
#define HOST_DB_XDATA_H

#include <string>
#include <string_view>
#include <vector>

#include "acad/db.h"
#include "dxf/codec.h"

namespace host {

/// Largest size of the XDATA of one object [bytes as a drawing stores them].
constexpr size_t kXDataLimit = 16383;

/// Packed items of one application (its 1001 not among them).
using PackedXData = std::u16string;

struct AppData {
    std::u16string app;  ///< name as the 1001 group has it
    PackedXData items;
    std::string_view source;  ///< bytes in the file from the 1001 pair on; empty when made here
};

using XData = std::vector<AppData>;

/// Decodes the pairs from the first 1001 on. The form of the values was checked when the file was
/// read. `tail` gets the bytes from the first group on that is no XDATA, as of an embedded object.
XData decodeXData(std::string_view source, const dxf::TextCodec& codec, std::string_view& tail);

/// Appends the XDATA as the file holds it.
void writeXData(const XData& data, const dxf::TextCodec& codec, std::string& out);

/// Appends a chain with the 1001 node and the items behind `tail`. @return the new tail; NULL
/// without memory
resbuf** appendXDataChain(const AppData& data, resbuf** tail);

/// Takes the applications out of a chain (a -3 node in front is skipped). An application without
/// items stands for its removal. What `out` held is overwritten. @return eBadDxfSequence for
/// unmatched braces, an item outside of an application, a group that XDATA can't hold, or a text
/// that is too long
Acad::ErrorStatus packXData(const resbuf* chain, const dxf::TextCodec& codec, XData& out);

/// Size of all applications together as kXDataLimit counts it.
size_t xdataSize(const XData& data);

}  // namespace host

#endif
