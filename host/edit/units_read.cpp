/// Texts of distances and angles to numbers. Each spelling is a row of parts, read from the front.
#include <cmath>
#include <numbers>

#include "base/angles.h"
#include "edit/units.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

using View = std::u16string_view;

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

/// What both kinds of texts are made of.
class Parts {
  public:
    explicit Parts(View text) : text_(text) {
        while (!text_.empty() && text_.back() == u' ')
            text_.remove_suffix(1);
        skipBlanks();
    }

    bool atEnd() const { return text_.empty(); }

    void skipBlanks() {
        while (!text_.empty() && text_.front() == u' ')
            text_.remove_prefix(1);
    }

    bool take(char16_t unit) {
        if (text_.empty() || kz::upperUnit(text_.front()) != unit) return false;
        text_.remove_prefix(1);
        return true;
    }

    /// -1 for a minus sign, else 1.
    double sign() {
        if (take(u'-')) return -1.0;
        take(u'+');
        return 1.0;
    }

    struct Number {
        double value = 0.0;
        bool integer = false;
    };

    /// Digits with or without a point and an exponent.
    std::optional<Number> number() {
        const size_t whole = digitsAt(0);
        size_t end = whole;
        size_t digits = whole;
        if (end < text_.size() && text_[end] == u'.') {
            const size_t decimals = digitsAt(end + 1);
            digits += decimals;
            end += 1 + decimals;
        }
        if (digits == 0) return std::nullopt;
        end += exponentAt(end);
        const Number found{kz::parseReal(text_.substr(0, end)), end == whole};
        text_.remove_prefix(end);
        return found;
    }

    /// The denominator behind a numerator. False for none, with a stroke without one too.
    std::optional<double> denominator() {
        if (!take(u'/')) return std::nullopt;
        const std::optional<Number> below = number();
        if (!below || !below->integer || below->value == 0.0) return std::nullopt;
        return below->value;
    }

    /// A number, a fraction, or a whole number with a fraction: 5.5, 1/2, 5 1/2, 5-1/2.
    std::optional<double> mixed() {
        const std::optional<Number> first = number();
        if (!first || !first->integer || atEnd()) return value(first);
        if (text_.front() == u'/') return divided(first->value);
        const View before = text_;
        if (take(u'-') || take(u' ')) {
            skipBlanks();
            const std::optional<Number> numerator = number();
            if (numerator && numerator->integer && !atEnd() && text_.front() == u'/') {
                const std::optional<double> fraction = divided(numerator->value);
                if (!fraction || *fraction >= 1.0) return std::nullopt;
                return first->value + *fraction;
            }
            text_ = before;
        }
        return first->value;
    }

  private:
    static std::optional<double> value(const std::optional<Number>& number) {
        return number ? std::optional<double>(number->value) : std::nullopt;
    }

    std::optional<double> divided(double numerator) {
        const std::optional<double> below = denominator();
        return below ? std::optional<double>(numerator / *below) : std::nullopt;
    }

    size_t digitsAt(size_t from) const {
        size_t end = from;
        while (end < text_.size() && isDigit(text_[end]))
            ++end;
        return end - from;
    }

    /// Length of an exponent; 0 for a mark without digits, which is something else.
    size_t exponentAt(size_t from) const {
        if (from >= text_.size() || (text_[from] != u'e' && text_[from] != u'E')) return 0;
        size_t at = from + 1;
        if (at < text_.size() && (text_[at] == u'+' || text_[at] == u'-')) ++at;
        const size_t digits = digitsAt(at);
        return digits == 0 ? 0 : at + digits - from;
    }

    View text_;
};

/// Inches behind a foot mark. False for what is none.
bool addInches(Parts& parts, double& total) {
    parts.skipBlanks();
    if (parts.atEnd()) return true;
    parts.take(u'-');
    parts.skipBlanks();
    const std::optional<double> inches = parts.mixed();
    if (!inches) return false;
    total += *inches;
    parts.take(u'"');
    return parts.atEnd();
}

std::optional<double> readMagnitude(View text) {
    Parts feet(text);
    const std::optional<Parts::Number> first = feet.number();
    if (first && feet.take(u'\'')) {
        double total = first->value * 12.0;
        if (!addInches(feet, total)) return std::nullopt;
        return total;
    }
    Parts inches(text);
    const std::optional<double> value = inches.mixed();
    inches.take(u'"');
    return inches.atEnd() ? value : std::nullopt;
}

/// Minutes and seconds behind the degrees' mark, in degrees. Nothing for what is none.
std::optional<double> minutesAndSeconds(Parts& parts) {
    parts.skipBlanks();
    double total = 0.0;
    double part = 60.0;
    for (std::optional<Parts::Number> number = parts.number(); number; number = parts.number()) {
        const bool minutes = part == 60.0 && parts.take(u'\'');
        if (!minutes && !parts.take(u'"')) return std::nullopt;
        total += number->value / (minutes ? 60.0 : 3600.0);
        if (!minutes) return total;
        part = 3600.0;
        parts.skipBlanks();
    }
    return total;
}

bool takeDegreeMark(Parts& parts) {
    return parts.take(u'D') || parts.take(u'\u00B0');
}

/// Degrees from a number with or without marks.
std::optional<double> readDegrees(Parts& parts) {
    const std::optional<Parts::Number> degrees = parts.number();
    if (!degrees) return std::nullopt;
    if (!takeDegreeMark(parts)) return degrees->value;
    const std::optional<double> rest = minutesAndSeconds(parts);
    return rest ? std::optional<double>(degrees->value + *rest) : std::nullopt;
}

/// A bearing behind its N or S: the angle toward east or west. Nothing else may follow.
std::optional<double> readBearing(Parts& parts, bool north) {
    const double pole = north ? 90.0 : 270.0;
    if (parts.atEnd()) return pole * kDegree;
    parts.skipBlanks();
    const std::optional<double> angle = readDegrees(parts);
    if (!angle || *angle > 90.0) return std::nullopt;
    parts.skipBlanks();
    const bool east = parts.take(u'E');
    if (!east && !parts.take(u'W')) return std::nullopt;
    if (!parts.atEnd()) return std::nullopt;
    const double degrees = pole + (east == north ? -*angle : *angle);
    return (degrees < 360.0 ? degrees : 0.0) * kDegree;
}

double unitSize(int units) {
    if (units == kGrads) return std::numbers::pi / 200.0;
    return units == kRadians ? 1.0 : kDegree;
}

std::optional<double> readMarked(Parts& parts, int units) {
    const double sign = parts.sign();
    const std::optional<Parts::Number> number = parts.number();
    if (!number) return std::nullopt;
    double radians = number->value * unitSize(units);
    if (takeDegreeMark(parts)) {
        const std::optional<double> rest = minutesAndSeconds(parts);
        if (!rest) return std::nullopt;
        radians = (number->value + *rest) * kDegree;
    } else if (parts.take(u'G')) {
        radians = number->value * unitSize(kGrads);
    } else if (parts.take(u'R')) {
        radians = number->value;
    }
    return parts.atEnd() ? std::optional<double>(sign * radians) : std::nullopt;
}

std::optional<double> finite(std::optional<double> value) {
    return value && std::isfinite(*value) ? value : std::nullopt;
}

}  // namespace

std::optional<double> parseDistance(View text) {
    while (!text.empty() && text.front() == u' ')
        text.remove_prefix(1);
    const bool negative = !text.empty() && text.front() == u'-';
    if (negative || (!text.empty() && text.front() == u'+')) text.remove_prefix(1);
    if (!text.empty() && text.front() == u' ') return std::nullopt;
    const std::optional<double> magnitude = finite(readMagnitude(text));
    return magnitude && negative ? -*magnitude : magnitude;
}

std::optional<double> parseAngle(View text, int units) {
    if (units < kDegrees || units > kSurveyor) return std::nullopt;
    Parts parts(text);
    for (const bool north : {true, false}) {
        if (parts.take(north ? u'N' : u'S')) return finite(readBearing(parts, north));
    }
    const bool east = parts.take(u'E');
    if (east || parts.take(u'W')) {
        if (!parts.atEnd()) return std::nullopt;
        return east ? 0.0 : std::numbers::pi;
    }
    return finite(readMarked(parts, units));
}

}  // namespace host
