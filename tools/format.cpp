/// Formatted text. Each conversion is laid out as pieces (sign, zeros, digits), so that a huge
/// width or precision costs no more than what the output takes. Reals go through to_chars: no
/// locale.
#include "kz_tls21an/format.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "kz_tls21an/text.h"

namespace {

constexpr int fieldLimit = 1 << 20;
/// Decimal digits that a double can have behind the point; further ones are zeros.
constexpr int realDigitLimit = 1100;

/// Where the text goes: a bounded buffer, or a string.
class Sink {
  public:
    Sink(kz_Char* out, size_t room) : out_(out), room_(room) {}
    explicit Sink(std::u16string& text) : text_(&text) {}

    void put(kz_Char unit) { fill(unit, 1); }

    void fill(kz_Char unit, size_t count) {
        if (text_) {
            text_->append(count, unit);
            return;
        }
        for (; count > 0 && written_ < room_; --count)
            out_[written_++] = unit;
    }

    void write(const kz_Char* units, size_t count) {
        if (text_) {
            text_->append(units, count);
            return;
        }
        for (; count > 0 && written_ < room_; --count)
            out_[written_++] = *units++;
    }

    void write(std::string_view ascii) {
        for (const char unit : ascii)
            put(static_cast<kz_Char>(unit));
    }

    size_t written() const { return written_; }

  private:
    kz_Char* out_ = nullptr;
    size_t room_ = 0;
    size_t written_ = 0;
    std::u16string* text_ = nullptr;
};

/// One conversion as it stands in the format.
struct Spec {
    bool left = false;
    bool plus = false;
    bool space = false;
    bool zero = false;
    bool alternate = false;
    bool isMisfit = false;  // a '*' met an argument that is no integer
    int width = 0;
    int precision = -1;   // -1: none
    int size = 4;         // bytes of an integer
    char textSize = ' ';  // 'h' or 'w' when the size says which text %s takes
    kz_Char letter = 0;
};

/// A number in pieces: prefix, zeros of the precision or the field, head, zeros, tail.
struct Number {
    std::string_view prefix;
    size_t leadingZeros = 0;
    std::string_view head;
    size_t innerZeros = 0;
    std::string_view tail;

    size_t length() const {
        return prefix.size() + leadingZeros + head.size() + innerZeros + tail.size();
    }
};

void putPadded(Sink& sink, const Spec& spec, const kz_Char* units, size_t count) {
    const auto width = static_cast<size_t>(spec.width);
    const size_t padding = width > count ? width - count : 0;
    if (!spec.left) sink.fill(' ', padding);
    sink.write(units, count);
    if (spec.left) sink.fill(' ', padding);
}

void putNumber(Sink& sink, const Spec& spec, Number number, bool fillWithZeros) {
    const auto width = static_cast<size_t>(spec.width);
    const size_t length = number.length();
    size_t padding = width > length ? width - length : 0;
    if (fillWithZeros && !spec.left) {
        number.leadingZeros += padding;
        padding = 0;
    }
    if (!spec.left) sink.fill(' ', padding);
    sink.write(number.prefix);
    sink.fill('0', number.leadingZeros);
    sink.write(number.head);
    sink.fill('0', number.innerZeros);
    sink.write(number.tail);
    if (spec.left) sink.fill(' ', padding);
}

std::string_view signPrefix(const Spec& spec, bool isNegative) {
    if (isNegative) return "-";
    if (spec.plus) return "+";
    return spec.space ? " " : "";
}

uint64_t lowBytes(int64_t value, int bytes) {
    const auto bits = static_cast<uint64_t>(value);
    return bytes >= 8 ? bits : bits & ((uint64_t{1} << (8 * bytes)) - 1);
}

/// The low bytes as a signed number.
int64_t signedLowBytes(int64_t value, int bytes) {
    if (bytes >= 8) return value;
    const uint64_t signBit = uint64_t{1} << (8 * bytes - 1);
    return static_cast<int64_t>((lowBytes(value, bytes) ^ signBit) - signBit);
}

void putDigits(Sink& sink, const Spec& spec, std::string_view prefix, uint64_t value, int base) {
    std::array<char, 24> buffer{};
    const bool isOmitted = value == 0 && spec.precision == 0;
    char* end = buffer.data();
    if (!isOmitted) end = std::to_chars(end, buffer.data() + buffer.size(), value, base).ptr;
    if (spec.letter == 'X' || spec.letter == 'p') {
        for (char* digit = buffer.data(); digit != end; ++digit) {
            if (*digit >= 'a') *digit = static_cast<char>(*digit - 32);
        }
    }
    Number number;
    number.prefix = prefix;
    number.head = {buffer.data(), static_cast<size_t>(end - buffer.data())};
    const auto least = static_cast<size_t>(spec.precision < 0 ? 1 : spec.precision);
    if (least > number.head.size()) number.leadingZeros = least - number.head.size();
    const bool startsWithZero = number.leadingZeros > 0 || (end != buffer.data() && value == 0);
    if (base == 8 && spec.alternate && !startsWithZero) number.leadingZeros = 1;
    putNumber(sink, spec, number, spec.zero && spec.precision < 0);
}

void putInteger(Sink& sink, const Spec& spec, const kz_FormatArg& arg) {
    if (spec.letter == 'd' || spec.letter == 'i') {
        const int64_t value = signedLowBytes(arg.integer, spec.size);
        const auto bits = static_cast<uint64_t>(value);
        putDigits(sink, spec, signPrefix(spec, value < 0), value < 0 ? 0 - bits : bits, 10);
        return;
    }
    const uint64_t value = lowBytes(arg.integer, spec.size < arg.size ? spec.size : arg.size);
    if (spec.letter == 'u') {
        putDigits(sink, spec, "", value, 10);
    } else if (spec.letter == 'o') {
        putDigits(sink, spec, "", value, 8);
    } else {
        const std::string_view mark = spec.letter == 'x' ? "0x" : "0X";
        putDigits(sink, spec, spec.alternate && value != 0 ? mark : "", value, 16);
    }
}

/// The digits of a real that isn't negative, with room for the point that '#' may add.
class RealText {
  public:
    RealText(double value, const Spec& spec) {
        const char letter = static_cast<char>(spec.letter | 0x20);
        const int precision = spec.precision < 0 ? 6 : spec.precision;
        if (letter == 'f') {
            convert(value, std::chars_format::fixed, precision);
        } else if (letter == 'e') {
            convert(value, std::chars_format::scientific, precision);
        } else if (!spec.alternate) {
            convert(value, std::chars_format::general, precision);
            innerZeros_ = 0;  // %g drops them
        } else {
            convertGeneral(value, precision == 0 ? 1 : precision);
        }
        if (!std::isfinite(value)) innerZeros_ = 0;
        if (spec.alternate && std::isfinite(value)) addPoint();
        if (spec.letter != static_cast<kz_Char>(letter)) toUpperCase();
    }

    Number number() const {
        Number number;
        const size_t mantissa = mantissaLength();
        number.head = {buffer_.data(), mantissa};
        number.innerZeros = innerZeros_;
        number.tail = {buffer_.data() + mantissa, length_ - mantissa};
        return number;
    }

  private:
    void convert(double value, std::chars_format format, int precision) {
        const int digits = precision < realDigitLimit ? precision : realDigitLimit;
        char* const end = buffer_.data() + buffer_.size();
        length_ = static_cast<size_t>(
            std::to_chars(buffer_.data(), end, value, format, digits).ptr - buffer_.data());
        innerZeros_ = static_cast<size_t>(precision - digits);
    }

    /// %#g: as %g, but all digits of the precision stay.
    void convertGeneral(double value, int precision) {
        convert(value, std::chars_format::scientific, precision - 1);
        if (!std::isfinite(value)) return;
        const size_t mark = mantissaLength() + 1;
        const char* digits = buffer_.data() + mark + (buffer_[mark] == '+' ? 1 : 0);
        int exponent = 0;
        std::from_chars(digits, buffer_.data() + length_, exponent);
        if (exponent < -4 || exponent >= precision) return;
        convert(value, std::chars_format::fixed, precision - 1 - exponent);
    }

    size_t mantissaLength() const {
        const size_t mark = std::string_view(buffer_.data(), length_).find_first_of("eE");
        return mark == std::string_view::npos ? length_ : mark;
    }

    void addPoint() {
        if (std::string_view(buffer_.data(), length_).find('.') != std::string_view::npos) return;
        const size_t mantissa = mantissaLength();
        for (size_t index = length_; index > mantissa; --index) {
            buffer_[index] = buffer_[index - 1];
        }
        buffer_[mantissa] = '.';
        ++length_;
    }

    void toUpperCase() {
        for (size_t index = 0; index < length_; ++index) {
            if (buffer_[index] >= 'a') buffer_[index] = static_cast<char>(buffer_[index] - 32);
        }
    }

    std::array<char, realDigitLimit + 400> buffer_{};
    size_t length_ = 0;
    size_t innerZeros_ = 0;
};

void putReal(Sink& sink, const Spec& spec, double value) {
    const RealText text(std::fabs(value), spec);
    Number number = text.number();
    number.prefix = signPrefix(spec, std::signbit(value) && !std::isnan(value));
    putNumber(sink, spec, number, spec.zero && std::isfinite(value));
}

void putText(Sink& sink, const Spec& spec, const kz_Char* text) {
    if (!text) text = KZ_T("(null)");
    size_t length = 0;
    const size_t limit = spec.precision < 0 ? SIZE_MAX : static_cast<size_t>(spec.precision);
    while (length < limit && text[length] != 0)
        ++length;
    putPadded(sink, spec, text, length);
}

bool isOneOf(kz_Char unit, std::string_view letters) {
    return unit != 0 && unit < 0x80 && letters.find(static_cast<char>(unit)) != letters.npos;
}

class Formatter {
  public:
    Formatter(Sink& sink, const kz_FormatArg* args, size_t count)
        : sink_(sink), args_(args), count_(count) {}

    void run(const kz_Char* format) {
        while (*format != 0) {
            if (*format == '%') {
                format = putConversion(format);
            } else {
                sink_.put(*format++);
            }
        }
    }

  private:
    /// Handles the conversion at `start`; gives the place behind it.
    const kz_Char* putConversion(const kz_Char* start) {
        const size_t firstArg = next_;
        Spec spec;
        const kz_Char* end = start + 1;
        if (*end == '%') {
            sink_.put('%');
            return end + 1;
        }
        const bool isComplete = parse(end, spec);
        if (!isComplete || next_ >= count_) {  // what follows the sign prints as ordinary text
            next_ = firstArg;
            sink_.put('%');
            return start + 1;
        }
        const kz_FormatArg& arg = args_[next_++];
        if (spec.isMisfit || !put(spec, arg)) sink_.write(start, static_cast<size_t>(end - start));
        return end;
    }

    bool parse(const kz_Char*& at, Spec& spec) {
        for (; isOneOf(*at, "-+ 0#"); ++at)
            setFlag(spec, *at);
        if (!parseNumber(at, spec, spec.width)) return false;
        if (spec.width < 0) {
            spec.left = true;
            spec.width = -spec.width;
        }
        if (*at == '.') {
            ++at;
            if (!parseNumber(at, spec, spec.precision)) return false;
            if (spec.precision < 0) spec.precision = -1;
        }
        parseSize(at, spec);
        spec.letter = *at;
        if (!isOneOf(*at, "diuxXocsSfeEgGp")) return false;
        ++at;
        return true;
    }

    static void setFlag(Spec& spec, kz_Char flag) {
        if (flag == '-') spec.left = true;
        if (flag == '+') spec.plus = true;
        if (flag == ' ') spec.space = true;
        if (flag == '0') spec.zero = true;
        if (flag == '#') spec.alternate = true;
    }

    /// Digits, nothing (0) or '*'. False when '*' has no argument.
    bool parseNumber(const kz_Char*& at, Spec& spec, int& number) {
        number = 0;
        if (*at == '*') {
            ++at;
            if (next_ >= count_) return false;
            const kz_FormatArg& arg = args_[next_++];
            if (arg.kind != kz_FormatArg::Integer) {
                spec.isMisfit = true;
                return true;
            }
            const int64_t value = signedLowBytes(arg.integer, 4);
            number = static_cast<int>(value > fieldLimit    ? fieldLimit
                                      : value < -fieldLimit ? -fieldLimit
                                                            : value);
            return true;
        }
        for (; isOneOf(*at, "0123456789"); ++at) {
            number = number * 10 + (*at - '0');
            if (number > fieldLimit) number = fieldLimit;
        }
        return true;
    }

    static void parseSize(const kz_Char*& at, Spec& spec) {
        const std::u16string_view sizes[] = {u"hh", u"h", u"ll", u"l", u"I64", u"w"};
        constexpr int bytes[] = {1, 2, 8, 4, 8, 4};
        for (size_t index = 0; index < std::size(sizes); ++index) {
            size_t matched = 0;
            while (matched < sizes[index].size() && at[matched] == sizes[index][matched])
                ++matched;
            if (matched < sizes[index].size()) continue;
            at += matched;
            spec.size = bytes[index];
            spec.textSize = sizes[index].front() == 'h' ? 'h' : 'w';
            return;
        }
    }

    /// False when the argument is not of the conversion's kind; nothing is written then.
    bool put(const Spec& spec, const kz_FormatArg& arg) {
        switch (spec.letter) {
            case 's':
            case 'S':
                return putString(spec, arg);
            case 'c':
                return putCharacter(spec, arg);
            case 'p':
                return putPointer(spec, arg);
            case 'f':
            case 'e':
            case 'E':
            case 'g':
            case 'G':
                if (arg.kind != kz_FormatArg::Real) return false;
                putReal(sink_, spec, arg.real);
                return true;
            default:
                if (arg.kind != kz_FormatArg::Integer) return false;
                putInteger(sink_, spec, arg);
                return true;
        }
    }

    bool putString(const Spec& spec, const kz_FormatArg& arg) {
        const bool isNarrow = spec.textSize == 'h' || (spec.letter == 'S' && spec.textSize == ' ');
        if (arg.kind == kz_FormatArg::Text && !isNarrow) {
            putText(sink_, spec, arg.text);
            return true;
        }
        if (arg.kind != kz_FormatArg::NarrowText || !isNarrow) return false;
        putText(sink_, spec, arg.narrow ? kz::toUtf16(arg.narrow).c_str() : nullptr);
        return true;
    }

    bool putCharacter(const Spec& spec, const kz_FormatArg& arg) {
        if (arg.kind != kz_FormatArg::Integer) return false;
        const auto unit = static_cast<kz_Char>(arg.integer);
        putPadded(sink_, spec, &unit, 1);
        return true;
    }

    bool putPointer(const Spec& spec, const kz_FormatArg& arg) {
        if (arg.kind == kz_FormatArg::Integer || arg.kind == kz_FormatArg::Real) return false;
        Spec digits = spec;
        digits.precision = 2 * static_cast<int>(sizeof(void*));
        const void* pointer = arg.kind == kz_FormatArg::Text         ? arg.text
                              : arg.kind == kz_FormatArg::NarrowText ? arg.narrow
                                                                     : arg.pointer;
        putDigits(sink_, digits, "", reinterpret_cast<uintptr_t>(pointer), 16);
        return true;
    }

    Sink& sink_;
    const kz_FormatArg* args_;
    size_t count_;
    size_t next_ = 0;
};

}  // namespace

int kz_Str_formatArgs(kz_Char* out, size_t size, const kz_Char* format, const kz_FormatArg* args,
                      size_t count) {
    if (!out || size == 0) return 0;
    Sink sink(out, size - 1);
    try {
        if (format) Formatter(sink, args, count).run(format);
    } catch (const std::bad_alloc&) {
        // 8-bit text needs a conversion; without memory the text ends here
    }
    out[sink.written()] = 0;
    return static_cast<int>(sink.written());
}

std::u16string kz_Str_formatText(const kz_Char* format, const kz_FormatArg* args, size_t count) {
    std::u16string text;
    Sink sink(text);
    if (format) Formatter(sink, args, count).run(format);
    return text;
}
