/// Packing of XDATA. An item is: the group code, then for texts the length and the units, for
/// numbers and points their bytes.
#include "db/xdata.h"

#include <cstring>

#include "base/resbuf.h"
#include "db/tags.h"
#include "dxf/pairs.h"

namespace host {
namespace {

/// Longest text of a 1000 group [characters of the drawing's encoding; UTF-16 units since R2007].
constexpr size_t kTextLimit = 255;
/// Longest binary chunk of a 1004 group [hex digits].
constexpr size_t kHexLimit = 254;

template <class T>
void appendRaw(PackedXData& items, const T& value) {
    static_assert(sizeof(T) % sizeof(char16_t) == 0);
    char16_t units[sizeof(T) / sizeof(char16_t)];
    std::memcpy(units, &value, sizeof value);
    items.append(units, sizeof(T) / sizeof(char16_t));
}

void appendText(PackedXData& items, int code, std::u16string_view text) {
    items += static_cast<char16_t>(code);
    items += static_cast<char16_t>(text.size());
    items += text;
}

/// Reads packed items one after the other.
class ItemReader {
  public:
    explicit ItemReader(const PackedXData& items)
        : at_(items.data()), end_(items.data() + items.size()) {}
    bool done() const { return at_ == end_; }
    int code() { return *at_++; }
    std::u16string_view text() {
        const size_t length = *at_++;
        const std::u16string_view view(at_, length);
        at_ += length;
        return view;
    }
    template <class T>
    T raw() {
        T value;
        std::memcpy(&value, at_, sizeof value);
        at_ += sizeof(T) / sizeof(char16_t);
        return value;
    }

  private:
    const char16_t* at_;
    const char16_t* end_;
};

struct Coordinates {
    double x;
    double y;
    double z;
};

/// Decodes one item; y and z of a point are taken from the following pairs.
void decodeItem(const dxf::Pair& pair, dxf::PairCursor& cursor, const dxf::TextCodec& codec,
                PackedXData& items) {
    const Tag tag(pair);
    switch (valueKind(pair.code)) {
        case ValueKind::Text: {
            items += static_cast<char16_t>(pair.code);
            const size_t length_at = items.size();
            items += u'\0';
            const bool verbatim = pair.code == 1002 || pair.code == 1004 || pair.code == 1005;
            codec.decode(verbatim ? dxf::trimmed(pair.value) : pair.value, items);
            if (items.size() - length_at - 1 > 0xFFFF) items.resize(length_at + 1 + 0xFFFF);
            items[length_at] = static_cast<char16_t>(items.size() - length_at - 1);
            break;
        }
        case ValueKind::Point: {
            items += static_cast<char16_t>(pair.code);
            Coordinates point{tag.real(), 0.0, 0.0};
            dxf::PairCursor ahead = cursor;
            dxf::Pair next;
            if (ahead.next(next) && next.code == pair.code + 10) {
                point.y = Tag(next).real();
                cursor = ahead;
                if (ahead.next(next) && next.code == pair.code + 20) {
                    point.z = Tag(next).real();
                    cursor = ahead;
                }
            }
            appendRaw(items, point);
            break;
        }
        case ValueKind::Real:
            items += static_cast<char16_t>(pair.code);
            appendRaw(items, tag.real());
            break;
        case ValueKind::Short:
            items += static_cast<char16_t>(pair.code);
            appendRaw(items, static_cast<int16_t>(tag.integer()));
            break;
        case ValueKind::Long:
            items += static_cast<char16_t>(pair.code);
            appendRaw(items, static_cast<int32_t>(tag.integer()));
            break;
        default:
            break;  // no group of XDATA: kept in the file, not shown
    }
}

void writeItem(ItemReader& reader, const dxf::TextCodec& codec, std::string& out) {
    const int code = reader.code();
    switch (valueKind(code)) {
        case ValueKind::Text:
            writeCode(code, out);
            codec.encode(reader.text(), out);
            out += '\n';
            break;
        case ValueKind::Point: {
            const auto point = reader.raw<Coordinates>();
            writeReal(code, point.x, out);
            writeReal(code + 10, point.y, out);
            writeReal(code + 20, point.z, out);
            break;
        }
        case ValueKind::Real:
            writeReal(code, reader.raw<double>(), out);
            break;
        case ValueKind::Short:
            writeInteger(code, reader.raw<int16_t>(), out);
            break;
        default:
            writeInteger(code, reader.raw<int32_t>(), out);
            break;
    }
}

resbuf* itemNode(ItemReader& reader) {
    const int code = reader.code();
    const ValueKind kind = valueKind(code);
    if (kind == ValueKind::Text) return newTextNode(code, reader.text());
    resbuf* node = acutNewRb(code);
    if (node == nullptr) return nullptr;
    switch (kind) {
        case ValueKind::Point: {
            const auto point = reader.raw<Coordinates>();
            node->resval.rpoint[0] = point.x;
            node->resval.rpoint[1] = point.y;
            node->resval.rpoint[2] = point.z;
            break;
        }
        case ValueKind::Real:
            node->resval.rreal = reader.raw<double>();
            break;
        case ValueKind::Short:
            node->resval.rint = reader.raw<int16_t>();
            break;
        default:
            node->resval.rlong = reader.raw<int32_t>();
            break;
    }
    return node;
}

size_t itemSize(ItemReader& reader) {
    const int code = reader.code();
    switch (valueKind(code)) {
        case ValueKind::Text: {
            const size_t length = reader.text().size();
            if (code == 1002) return 2;
            if (code == 1003 || code == 1005) return 9;
            if (code == 1004) return 2 + length / 2;
            return 5 + 2 * length;
        }
        case ValueKind::Point:
            reader.raw<Coordinates>();
            return 25;
        case ValueKind::Real:
            reader.raw<double>();
            return 9;
        case ValueKind::Short:
            reader.raw<int16_t>();
            return 3;
        default:
            reader.raw<int32_t>();
            return 5;
    }
}

/// Length of a text as the limit counts it.
size_t storedLength(std::u16string_view text, const dxf::TextCodec& codec) {
    if (codec.isUtf8() || text.size() * 7 <= kTextLimit) return text.size();
    std::string bytes;
    codec.encode(text, bytes);
    return bytes.size();
}

bool packText(const resbuf& node, const dxf::TextCodec& codec, int& depth, PackedXData& items) {
    const ACHAR* raw = node.resval.rstring;
    const std::u16string_view text = raw == nullptr ? std::u16string_view{} : raw;
    if (node.restype == 1002) {
        if (text != u"{" && text != u"}") return false;
        depth += text == u"{" ? 1 : -1;
        if (depth < 0) return false;
    } else if (node.restype == 1004) {
        if (text.size() > kHexLimit) return false;
    } else if (storedLength(text, codec) > kTextLimit) {
        return false;
    }
    appendText(items, node.restype, text);
    return true;
}

bool packItem(const resbuf& node, const dxf::TextCodec& codec, int& depth, PackedXData& items) {
    const int code = node.restype;
    if (code < 1000 || code > 1071) return false;
    const ValueKind kind = valueKind(code);
    if (kind == ValueKind::Text) return packText(node, codec, depth, items);
    if (kind == ValueKind::None) return false;
    if (kind == ValueKind::Point && (code < 1010 || code > 1013)) return false;
    items += static_cast<char16_t>(code);
    switch (kind) {
        case ValueKind::Point:
            appendRaw(items, Coordinates{node.resval.rpoint[0], node.resval.rpoint[1],
                                         node.resval.rpoint[2]});
            break;
        case ValueKind::Real:
            appendRaw(items, node.resval.rreal);
            break;
        case ValueKind::Short:
            appendRaw(items, node.resval.rint);
            break;
        default:
            appendRaw(items, node.resval.rlong);
            break;
    }
    return true;
}

}  // namespace

XData decodeXData(std::string_view source, const dxf::TextCodec& codec, std::string_view& tail) {
    XData data;
    tail = {};
    dxf::PairCursor cursor(source.data(), source.data() + source.size());
    dxf::Pair pair;
    while (cursor.next(pair)) {
        if (pair.code == 1001) {
            data.push_back({codec.decode(dxf::trimmed(pair.value)), {}, pair.bytes()});
            // A field is some 20 units long; what is left of the object is an upper bound.
            const auto left = static_cast<size_t>(cursor.end() - cursor.position());
            data.back().items.reserve(left / 2 < 512 ? left / 2 : 512);
        } else if (pair.code < 999) {
            tail = {pair.begin, static_cast<size_t>(cursor.end() - pair.begin)};
            break;
        } else if (!data.empty()) {
            AppData& app = data.back();
            decodeItem(pair, cursor, codec, app.items);
            app.source = {app.source.data(),
                          static_cast<size_t>(cursor.position() - app.source.data())};
        }
    }
    return data;
}

void writeXData(const XData& data, const dxf::TextCodec& codec, std::string& out) {
    for (const AppData& app : data) {
        if (!app.source.empty()) {
            out += app.source;
            if (out.back() != '\n') out += '\n';
            continue;
        }
        writeCode(1001, out);
        codec.encode(app.app, out);
        out += '\n';
        ItemReader reader(app.items);
        while (!reader.done())
            writeItem(reader, codec, out);
    }
}

resbuf** appendXDataChain(const AppData& data, resbuf** tail) {
    resbuf* node = newTextNode(1001, data.app);
    ItemReader reader(data.items);
    while (node != nullptr) {
        *tail = node;
        tail = &node->rbnext;
        if (reader.done()) return tail;
        node = itemNode(reader);
    }
    return nullptr;
}

Acad::ErrorStatus packXData(const resbuf* chain, const dxf::TextCodec& codec, XData& out) {
    size_t used = 0;  // elements of `out` are taken again with the memory that they have
    int depth = 0;
    const resbuf* node = chain;
    while (node != nullptr && node->restype != 1001 && node->restype != -3)
        node = node->rbnext;
    if (node != nullptr && node->restype == -3) node = node->rbnext;
    if (node == nullptr) return Acad::eBadDxfSequence;
    for (; node != nullptr; node = node->rbnext) {
        if (node->restype == 1001) {
            if (depth != 0 || node->resval.rstring == nullptr) return Acad::eBadDxfSequence;
            if (used == out.size()) out.emplace_back();
            AppData& app = out[used++];
            app.app = node->resval.rstring;
            app.items.clear();
        } else if (used == 0 || !packItem(*node, codec, depth, out[used - 1].items)) {
            return Acad::eBadDxfSequence;
        }
        if (used > 0 && out[used - 1].items.size() > kXDataLimit * 2) {
            return Acad::eXdataSizeExceeded;
        }
    }
    out.resize(used);
    return depth == 0 ? Acad::eOk : Acad::eBadDxfSequence;
}

size_t xdataSize(const XData& data) {
    size_t size = 0;
    for (const AppData& app : data) {
        size += 9;
        ItemReader reader(app.items);
        while (!reader.done())
            size += itemSize(reader);
    }
    return size;
}

}  // namespace host
