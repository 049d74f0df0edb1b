/// The decoded form of a database object: its tags in file order. A tag knows the bytes that it was
/// read from until it gets another value, so that what nobody changed is written as it was.
#ifndef HOST_DB_TAGS_H
#define HOST_DB_TAGS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "dxf/codec.h"
#include "dxf/pairs.h"

namespace host {

/// One group: its code and its value.
class Tag {
  public:
    explicit Tag(const dxf::Pair& pair)
        : code_(static_cast<int16_t>(pair.code)),
          value_(Source{pair.begin, pair.value.data(), static_cast<uint32_t>(pair.value.size()),
                        static_cast<uint32_t>(pair.end - pair.begin)}) {}
    Tag(int code, std::u16string text)
        : code_(static_cast<int16_t>(code)), value_(std::move(text)) {}
    Tag(int code, int64_t value) : code_(static_cast<int16_t>(code)), value_(value) {}
    Tag(int code, double value) : code_(static_cast<int16_t>(code)), value_(value) {}
    static Tag handle(int code, uint64_t value) {
        Tag tag(code, static_cast<int64_t>(value));
        return tag;
    }

    int code() const { return code_; }
    dxf::GroupType type() const { return dxf::groupType(code_); }

    /// The value as text (of any type).
    std::u16string text(const dxf::TextCodec& codec) const;
    /// The value as a number; 0 for a text that is none.
    double real() const;
    int64_t integer() const;
    /// The value of a handle group; 0 for none.
    uint64_t handleValue() const;

    /// True as long as the tag has the bytes it was read from.
    bool isSource() const { return std::holds_alternative<Source>(value_); }
    /// Value bytes of a source tag, blanks and all; empty for another.
    std::string_view sourceValue() const;
    /// The lines that the tag was read from, with the comments behind them; empty for another.
    std::string_view source() const;
    /// Lets a source tag go along with the comment that follows it.
    void takeComment(const dxf::Pair& comment);
    /// Appends the two lines as the file holds them.
    void write(const dxf::TextCodec& codec, std::string& out) const;

  private:
    struct Source {
        const char* begin;
        const char* value;
        uint32_t value_size;
        uint32_t size;
    };

    int16_t code_;
    std::variant<Source, std::u16string, int64_t, double> value_;
};

using Tags = std::vector<Tag>;

/// First tag with this code from `from` on; tags.size() when there is none.
size_t findTag(const Tags& tags, int code, size_t from = 0);

/// Appends "code line, value line" with an integer, real, handle or text value. Codes are padded to
/// three characters; reals are the shortest text that reads back the same, with ".0" or an
/// exponent.
void writeCode(int code, std::string& out);
void writeReal(int code, double value, std::string& out);
void writeInteger(int code, int64_t value, std::string& out);
void writeHandle(int code, uint64_t value, std::string& out);
/// The text of a handle: upper case hexadecimal without leading zeros.
std::u16string handleText(uint64_t handle);

}  // namespace host

#endif
