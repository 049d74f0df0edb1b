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

/// Work space in which items are packed. It asks for room once an item, and keeps what it has.
class ItemBuffer {
  public:
    void clear() { size_ = 0; }
    size_t size() const { return size_; }
    std::u16string_view view() const { return {units_.data(), size_}; }

    /// Makes sure that `count` more units can be added without a further check.
    void room(size_t count) {
        if (size_ + count > units_.size()) units_.resize((size_ + count) * 2);
    }
    void add(int unit) { units_[size_++] = static_cast<char16_t>(unit); }
    template <class T>
    void addRaw(const T& value) {
        static_assert(sizeof(T) % sizeof(char16_t) == 0);
        std::memcpy(&units_[size_], &value, sizeof value);
        size_ += sizeof(T) / sizeof(char16_t);
    }
    void addUnits(std::u16string_view text) {
        if (!text.empty()) std::memcpy(&units_[size_], text.data(), text.size() * sizeof(char16_t));
        size_ += text.size();
    }
    /// A text item of up to 65535 units.
    void addText(int code, std::u16string_view text) {
        text = text.substr(0, 0xFFFF);
        room(text.size() + 2);
        add(code);
        add(static_cast<int>(text.size()));
        addUnits(text);
    }
    /// An ASCII text as an item; false when it holds a byte that needs decoding, and nothing is
    /// added.
    bool addAscii(int code, std::string_view bytes) {
        if (bytes.size() > 0xFFFF) return false;
        room(bytes.size() + 2);
        char16_t* to = &units_[size_ + 2];
        for (const char c : bytes) {
            const auto byte = static_cast<unsigned char>(c);
            if (byte >= 0x80 || byte == '\\' || byte == '^') return false;
            *to++ = byte;
        }
        add(code);
        add(static_cast<int>(bytes.size()));
        size_ += bytes.size();
        return true;
    }

  private:
    std::vector<char16_t> units_;
    size_t size_ = 0;
};

/// Room that an item of any kind but a text takes.
constexpr size_t kItemRoom = 16;

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
                ItemBuffer& items) {
    const ValueKind kind = valueKind(pair.code);
    if (kind == ValueKind::Text) {
        const bool verbatim = pair.code == 1002 || pair.code == 1004 || pair.code == 1005;
        const std::string_view bytes = verbatim ? dxf::trimmed(pair.value) : pair.value;
        if (!items.addAscii(pair.code, bytes)) items.addText(pair.code, codec.decode(bytes));
        return;
    }
    if (kind == ValueKind::None) return;  // no group of XDATA: kept in the file, not shown
    const Tag tag(pair);
    items.room(kItemRoom);
    items.add(pair.code);
    switch (kind) {
        case ValueKind::Point: {
            Coordinates point{tag.real(), 0.0, 0.0};
            dxf::PairCursor ahead = cursor;
            dxf::Pair next;
            const auto follows = [&](int code) {
                do {
                    if (!ahead.next(next)) return false;
                } while (next.code == 999);
                return next.code == code;
            };
            if (follows(pair.code + 10)) {
                point.y = Tag(next).real();
                cursor = ahead;
                if (follows(pair.code + 20)) {
                    point.z = Tag(next).real();
                    cursor = ahead;
                }
            }
            items.addRaw(point);
            break;
        }
        case ValueKind::Real:
            items.addRaw(tag.real());
            break;
        case ValueKind::Short:
            items.addRaw(static_cast<int16_t>(tag.integer()));
            break;
        default:
            items.addRaw(static_cast<int32_t>(tag.integer()));
            break;
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

/// True for a text that a 1000 group can hold.
bool fitsGroup(std::u16string_view text, const dxf::TextCodec& codec) {
    constexpr size_t kLongestCharacter = 7;  // \U+XXXX
    return text.size() * kLongestCharacter <= kTextLimit || codec.storedLength(text) <= kTextLimit;
}

bool packText(const resbuf& node, const dxf::TextCodec& codec, int& depth, ItemBuffer& items) {
    const ACHAR* raw = node.resval.rstring;
    const std::u16string_view text = raw == nullptr ? std::u16string_view{} : raw;
    if (node.restype == 1002) {
        if (text != u"{" && text != u"}") return false;
        depth += text == u"{" ? 1 : -1;
        if (depth < 0) return false;
    } else if (node.restype == 1004) {
        if (text.size() > kHexLimit) return false;
    } else if (!fitsGroup(text, codec)) {
        return false;
    }
    items.addText(node.restype, text);
    return true;
}

bool packItem(const resbuf& node, const dxf::TextCodec& codec, int& depth, ItemBuffer& items) {
    const int code = node.restype;
    if (code < 1000 || code > 1071) return false;
    const ValueKind kind = valueKind(code);
    if (kind == ValueKind::Text) return packText(node, codec, depth, items);
    if (kind == ValueKind::None) return false;
    if (kind == ValueKind::Point && (code < 1010 || code > 1013)) return false;
    items.room(kItemRoom);
    items.add(code);
    switch (kind) {
        case ValueKind::Point:
            items.addRaw(
                Coordinates{node.resval.rpoint[0], node.resval.rpoint[1], node.resval.rpoint[2]});
            break;
        case ValueKind::Real:
            items.addRaw(node.resval.rreal);
            break;
        case ValueKind::Short:
            items.addRaw(node.resval.rint);
            break;
        default:
            items.addRaw(node.resval.rlong);
            break;
    }
    return true;
}

/// The work space of all packing; there is one thread.
ItemBuffer& workSpace() {
    static ItemBuffer buffer;
    buffer.clear();
    return buffer;
}

/// Gives an application the packed items, with a little room for one more field.
void takeItems(AppData& app, const ItemBuffer& items) {
    constexpr size_t kOneField = 32;
    if (app.items.capacity() < items.size()) app.items.reserve(items.size() + kOneField);
    app.items = items.view();
}

}  // namespace

XData decodeXData(std::string_view source, const dxf::TextCodec& codec, std::string_view& tail) {
    XData data;
    tail = {};
    ItemBuffer& items = workSpace();
    const char* app_begin = nullptr;
    const auto finishApp = [&](const char* end) {
        if (data.empty()) return;
        takeItems(data.back(), items);
        data.back().source = {app_begin, static_cast<size_t>(end - app_begin)};
        items.clear();
    };
    dxf::PairCursor cursor(source.data(), source.data() + source.size());
    dxf::Pair pair;
    const char* end = cursor.position();
    while (cursor.next(pair)) {
        if (pair.code == 1001) {
            finishApp(end);
            data.emplace_back();
            data.back().app = codec.decode(dxf::trimmed(pair.value));
            app_begin = pair.begin;
        } else if (pair.code < 999) {
            tail = {pair.begin, static_cast<size_t>(cursor.end() - pair.begin)};
            break;
        } else if (pair.code != 999 && !data.empty()) {
            decodeItem(pair, cursor, codec, items);
        }
        end = cursor.position();
    }
    finishApp(end);
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
    ItemBuffer& items = workSpace();
    size_t used = 0;  // elements of `out` are taken again with the memory that they have
    int depth = 0;
    const auto finishApp = [&] {
        if (used > 0) takeItems(out[used - 1], items);
        items.clear();
    };
    const resbuf* node = chain;
    while (node != nullptr && node->restype != 1001 && node->restype != -3)
        node = node->rbnext;
    if (node != nullptr && node->restype == -3) node = node->rbnext;
    if (node == nullptr) return Acad::eBadDxfSequence;
    for (; node != nullptr; node = node->rbnext) {
        if (node->restype == 1001) {
            if (depth != 0 || node->resval.rstring == nullptr) return Acad::eBadDxfSequence;
            finishApp();
            if (used == out.size()) out.emplace_back();
            out[used++].app = node->resval.rstring;
        } else if (used == 0 || !packItem(*node, codec, depth, items)) {
            return Acad::eBadDxfSequence;
        }
        if (items.size() > kXDataLimit * 2) return Acad::eXdataSizeExceeded;
    }
    finishApp();
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
