/// Reading and writing of single tags.
#include "db/tags.h"

#include <charconv>
#include <cmath>

#include "dxf/values.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

double parseRealBytes(std::string_view bytes) {
    bytes = dxf::trimmed(bytes);
    if (!bytes.empty() && bytes.front() == '+') bytes.remove_prefix(1);
    double value = 0.0;
    const auto [end, error] = std::from_chars(bytes.data(), bytes.data() + bytes.size(), value);
    if (error == std::errc::result_out_of_range) {
        // Denormal numbers occur in converted drawings; what is too small counts as zero.
        const size_t exponent = bytes.find_first_of("eE");
        const bool tiny = exponent != std::string_view::npos &&
                          bytes.find('-', exponent) != std::string_view::npos;
        return tiny ? 0.0 : HUGE_VAL;
    }
    return value;
}

}  // namespace

std::string_view Tag::sourceValue() const {
    const auto* source = std::get_if<Source>(&value_);
    return source == nullptr ? std::string_view{}
                             : std::string_view(source->value, source->value_size);
}

std::u16string Tag::text(const dxf::TextCodec& codec) const {
    if (isSource()) return codec.decode(sourceValue());
    if (const auto* text = std::get_if<std::u16string>(&value_)) return *text;
    if (type() == dxf::GroupType::Handle || type() == dxf::GroupType::HandleRef) {
        return handleText(handleValue());
    }
    std::string out;
    write(codec, out);
    const size_t line = out.find('\n') + 1;
    return kz::toUtf16(std::string_view(out).substr(line, out.size() - line - 1));
}

double Tag::real() const {
    if (isSource()) return parseRealBytes(sourceValue());
    if (const auto* value = std::get_if<double>(&value_)) return *value;
    if (const auto* value = std::get_if<int64_t>(&value_)) return static_cast<double>(*value);
    return 0.0;
}

int64_t Tag::integer() const {
    if (isSource()) return dxf::integerOf(sourceValue());
    if (const auto* value = std::get_if<int64_t>(&value_)) return *value;
    if (const auto* value = std::get_if<double>(&value_)) return static_cast<int64_t>(*value);
    return 0;
}

uint64_t Tag::handleValue() const {
    uint64_t handle = 0;
    if (isSource()) {
        dxf::parseHandle(sourceValue(), handle);
    } else if (const auto* value = std::get_if<int64_t>(&value_)) {
        handle = static_cast<uint64_t>(*value);
    } else if (const auto* text = std::get_if<std::u16string>(&value_)) {
        dxf::parseHandle(kz::toUtf8(*text), handle);
    }
    return handle;
}

std::string_view Tag::source() const {
    const auto* source = std::get_if<Source>(&value_);
    return source == nullptr ? std::string_view{} : std::string_view(source->begin, source->size);
}

void Tag::takeComment(const dxf::Pair& comment) {
    if (auto* source = std::get_if<Source>(&value_)) {
        source->size = static_cast<uint32_t>(comment.end - source->begin);
    }
}

void Tag::write(const dxf::TextCodec& codec, std::string& out) const {
    if (const auto* source = std::get_if<Source>(&value_)) {
        out.append(source->begin, source->size);
        if (out.back() != '\n') out += '\n';
        return;
    }
    if (const auto* text = std::get_if<std::u16string>(&value_)) {
        writeCode(code_, out);
        codec.encode(*text, out);
        out += '\n';
        return;
    }
    switch (type()) {
        case dxf::GroupType::Real:
            writeReal(code_, real(), out);
            break;
        case dxf::GroupType::Handle:
        case dxf::GroupType::HandleRef:
            writeHandle(code_, handleValue(), out);
            break;
        default:
            writeInteger(code_, integer(), out);
            break;
    }
}

size_t findTag(const Tags& tags, int code, size_t from) {
    for (size_t i = from; i < tags.size(); ++i) {
        if (tags[i].code() == code) return i;
    }
    return tags.size();
}

void writeCode(int code, std::string& out) {
    char digits[12];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, code);
    const auto length = static_cast<size_t>(end - digits);
    if (length < 3) out.append(3 - length, ' ');
    out.append(digits, length);
    out += '\n';
}

void writeReal(int code, double value, std::string& out) {
    if (!std::isfinite(value)) value = 0.0;  // no file may hold one
    char digits[40];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
    const std::string_view text(digits, static_cast<size_t>(end - digits));
    writeCode(code, out);
    out += text;
    if (text.find_first_of(".e") == std::string_view::npos) out += ".0";
    out += '\n';
}

void writeInteger(int code, int64_t value, std::string& out) {
    writeCode(code, out);
    out += std::to_string(value);
    out += '\n';
}

namespace {

/// Upper case hexadecimal digits of a handle, without leading zeros.
class HandleDigits {
  public:
    explicit HandleDigits(uint64_t handle) {
        do {
            digits_[--begin_] = "0123456789ABCDEF"[handle & 0xFU];
            handle >>= 4U;
        } while (handle != 0);
    }
    std::string_view view() const { return {digits_ + begin_, kSize - begin_}; }

  private:
    static constexpr size_t kSize = 16;
    char digits_[kSize] = {};
    size_t begin_ = kSize;
};

}  // namespace

void writeHandle(int code, uint64_t value, std::string& out) {
    writeCode(code, out);
    out += HandleDigits(value).view();
    out += '\n';
}

std::u16string handleText(uint64_t handle) {
    const HandleDigits digits(handle);
    return {digits.view().begin(), digits.view().end()};
}

}  // namespace host
