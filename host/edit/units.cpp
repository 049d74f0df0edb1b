/// Distance texts to numbers. All spellings that a CAD seat takes for a distance are read in every
/// unit mode: decimals, exponents, feet and inches, fractions.
#include <cmath>
#include <optional>
#include <string_view>

#include "acad/ads.h"
#include "base/faults.h"
#include "kz_tls21an/text.h"

namespace {

using View = std::u16string_view;

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

/// Reads one part of a distance from the front of a text.
class DistanceReader {
  public:
    explicit DistanceReader(View text) : text_(text) {}

    /// The whole text as a distance, e.g. 12.5, 1.25E+01, 1'-5.50", 1'-5 1/2", 17 1/2, 3/4.
    std::optional<double> read() {
        skipBlanks();
        const bool negative = take(u'-');
        if (!negative) take(u'+');
        std::optional<double> value = number();
        if (!value) return std::nullopt;
        double total = 0.0;
        if (take(u'\'')) {
            total = *value * 12.0;
            skipBlanks();
            take(u'-');
            skipBlanks();
            value = number();
        }
        if (value) {
            total += *value + mixedFraction(*value);
            take(u'"');
        }
        skipBlanks();
        if (!text_.empty() || bad_) return std::nullopt;
        return negative ? -total : total;
    }

  private:
    void skipBlanks() {
        while (!text_.empty() && text_.front() == u' ')
            text_.remove_prefix(1);
    }

    bool take(char16_t unit) {
        if (text_.empty() || text_.front() != unit) return false;
        text_.remove_prefix(1);
        return true;
    }

    /// A decimal number, or a fraction that stands for a whole one.
    std::optional<double> number() {
        size_t length = 0;
        size_t digits = 0;
        while (length < text_.size() && (isDigit(text_[length]) || text_[length] == u'.')) {
            if (isDigit(text_[length])) ++digits;
            ++length;
        }
        if (digits == 0) return std::nullopt;
        size_t end = length;
        if (end < text_.size() && (text_[end] == u'e' || text_[end] == u'E')) {
            size_t exponent = end + 1;
            if (exponent < text_.size() && (text_[exponent] == u'+' || text_[exponent] == u'-')) {
                ++exponent;
            }
            const size_t first = exponent;
            while (exponent < text_.size() && isDigit(text_[exponent]))
                ++exponent;
            if (exponent > first) end = exponent;
        }
        const double value = kz::parseReal(text_.substr(0, end));
        text_.remove_prefix(end);
        if (take(u'/')) {
            const std::optional<double> below = number();
            if (!below || *below == 0.0) {
                bad_ = true;
                return std::nullopt;
            }
            return value / *below;
        }
        return value;
    }

    /// The fraction behind whole inches, as in 5 1/2 or 5-1/2.
    double mixedFraction(double whole) {
        if (whole != std::floor(whole) || text_.empty()) return 0.0;
        if (text_.front() != u' ' && text_.front() != u'-') return 0.0;
        const View before = text_;
        text_.remove_prefix(1);
        const std::optional<double> fraction = number();
        if (fraction && *fraction < 1.0) return *fraction;
        text_ = before;
        return 0.0;
    }

    View text_;
    bool bad_ = false;
};

}  // namespace

extern "C" int acdbDisToF(const ACHAR* text, int unit, ads_real* value) {
    int status = 0;
    if (host::mustFail(host::Call::acdbDisToF, status)) return status;
    if (text == nullptr || value == nullptr || unit < -1 || unit > 5 || unit == 0) return RTERROR;
    const std::optional<double> distance = DistanceReader(text).read();
    if (!distance) return RTERROR;
    *value = *distance;
    return RTNORM;
}
