/// The table of units, and the reading of their expressions. Factors are those of the International
/// System and of the international yard and pound, which are exact by definition.
#include "edit/unit_table.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numbers>
#include <string>
#include <unordered_map>

#include "kz_tls21an/text.h"

namespace host {
namespace {

/// Powers of metre, kilogram, second, ampere, kelvin, candela, radian, bit.
using Dimension = std::array<int, 8>;

constexpr Dimension kNumber = {};
constexpr Dimension kLength = {1};
constexpr Dimension kArea = {2};
constexpr Dimension kVolume = {3};
constexpr Dimension kMass = {0, 1};
constexpr Dimension kTime = {0, 0, 1};
constexpr Dimension kSpeed = {1, 0, -1};
constexpr Dimension kForce = {1, 1, -2};
constexpr Dimension kPressure = {-1, 1, -2};
constexpr Dimension kEnergy = {2, 1, -2};
constexpr Dimension kPower = {2, 1, -3};
constexpr Dimension kFrequency = {0, 0, -1};
constexpr Dimension kCurrent = {0, 0, 0, 1};
constexpr Dimension kVoltage = {2, 1, -3, -1};
constexpr Dimension kResistance = {2, 1, -3, -2};
constexpr Dimension kCharge = {0, 0, 1, 1};
constexpr Dimension kCapacitance = {-2, -1, 4, 2};
constexpr Dimension kTemperature = {0, 0, 0, 0, 1};
constexpr Dimension kLight = {0, 0, 0, 0, 0, 1};
constexpr Dimension kAngle = {0, 0, 0, 0, 0, 0, 1};
constexpr Dimension kViscosity = {-1, 1, -1};
constexpr Dimension kSpread = {2, 0, -1};
constexpr Dimension kInformation = {0, 0, 0, 0, 0, 0, 0, 1};

constexpr double kFoot = 0.3048;
constexpr double kInch = 0.0254;
constexpr double kPound = 0.45359237;
constexpr double kGravity = 9.80665;
constexpr double kDegree = std::numbers::pi / 180;

struct Unit {
    const char* names;  ///< apart by blanks; the first ones long, with a plural in s
    Dimension dimension;
    double factor;  ///< to the base units
    double offset;  ///< of its zero, in base units
    bool metric;    ///< takes prefixes
};

const Unit kUnits[] = {
    {"meter metre m", kLength, 1, 0, true},
    {"micron", kLength, 1e-6, 0, false},
    {"angstrom", kLength, 1e-10, 0, false},
    {"inch inches in \"", kLength, kInch, 0, false},
    {"mil thou", kLength, kInch / 1000, 0, false},
    {"foot feet ft '", kLength, kFoot, 0, false},
    {"survey_foot survey_feet", kLength, 1200.0 / 3937, 0, false},
    {"yard yd", kLength, 3 * kFoot, 0, false},
    {"fathom", kLength, 6 * kFoot, 0, false},
    {"rod pole perch", kLength, 16.5 * kFoot, 0, false},
    {"chain", kLength, 66 * kFoot, 0, false},
    {"link", kLength, 0.66 * kFoot, 0, false},
    {"furlong", kLength, 660 * kFoot, 0, false},
    {"mile mi", kLength, 5280 * kFoot, 0, false},
    {"nautical_mile nautmile nmi", kLength, 1852, 0, false},
    {"league", kLength, 3 * 5280 * kFoot, 0, false},
    {"point", kLength, kInch / 72, 0, false},
    {"pica", kLength, kInch / 6, 0, false},
    {"light_year lightyear ly", kLength, 9460730472580800.0, 0, false},
    {"parsec pc", kLength, 3.0856775814913673e16, 0, false},
    {"astronomical_unit au", kLength, 149597870700.0, 0, false},
    {"are", kArea, 100, 0, false},
    {"hectare ha", kArea, 10000, 0, false},
    {"acre", kArea, 43560 * kFoot* kFoot, 0, false},
    {"barn", kArea, 1e-28, 0, false},
    {"liter litre l", kVolume, 0.001, 0, true},
    {"cc", kVolume, 1e-6, 0, false},
    {"gallon gal", kVolume, 231 * kInch* kInch* kInch, 0, false},
    {"quart qt", kVolume, 57.75 * kInch* kInch* kInch, 0, false},
    {"pint pt", kVolume, 28.875 * kInch* kInch* kInch, 0, false},
    {"cup", kVolume, 14.4375 * kInch* kInch* kInch, 0, false},
    {"fluid_ounce floz", kVolume, 1.8046875 * kInch* kInch* kInch, 0, false},
    {"tablespoon tbsp", kVolume, 0.90234375 * kInch* kInch* kInch, 0, false},
    {"teaspoon tsp", kVolume, 0.30078125 * kInch* kInch* kInch, 0, false},
    {"barrel bbl", kVolume, 42 * 231 * kInch* kInch* kInch, 0, false},
    {"bushel bu", kVolume, 2150.42 * kInch* kInch* kInch, 0, false},
    {"board_foot board_feet fbm", kVolume, 144 * kInch* kInch* kInch, 0, false},
    {"cord", kVolume, 128 * kFoot* kFoot* kFoot, 0, false},
    {"stere", kVolume, 1, 0, false},
    {"imperial_gallon", kVolume, 0.00454609, 0, false},
    {"gram gramme g", kMass, 0.001, 0, true},
    {"tonne", kMass, 1000, 0, false},
    {"pound lb lbm", kMass, kPound, 0, false},
    {"ounce oz", kMass, kPound / 16, 0, false},
    {"ton", kMass, 2000 * kPound, 0, false},
    {"long_ton", kMass, 2240 * kPound, 0, false},
    {"hundredweight cwt", kMass, 100 * kPound, 0, false},
    {"stone", kMass, 14 * kPound, 0, false},
    {"grain gr", kMass, kPound / 7000, 0, false},
    {"dram", kMass, kPound / 256, 0, false},
    {"troy_ounce", kMass, 480 * kPound / 7000, 0, false},
    {"carat", kMass, 0.0002, 0, false},
    {"slug", kMass, kPound* kGravity / kFoot, 0, false},
    {"second sec s", kTime, 1, 0, true},
    {"minute min", kTime, 60, 0, false},
    {"hour hr h", kTime, 3600, 0, false},
    {"day", kTime, 86400, 0, false},
    {"week wk", kTime, 7 * 86400, 0, false},
    {"fortnight", kTime, 14 * 86400, 0, false},
    {"year yr", kTime, 365.2425 * 86400, 0, false},
    {"decade", kTime, 3652.425 * 86400, 0, false},
    {"century centuries", kTime, 36524.25 * 86400, 0, false},
    {"millennium millennia", kTime, 365242.5 * 86400, 0, false},
    {"knot kt", kSpeed, 1852.0 / 3600, 0, false},
    {"mph", kSpeed, 5280 * kFoot / 3600, 0, false},
    {"kph", kSpeed, 1000.0 / 3600, 0, false},
    {"newton N", kForce, 1, 0, true},
    {"dyne dyn", kForce, 1e-5, 0, false},
    {"pound_force lbf", kForce, kPound* kGravity, 0, false},
    {"kip", kForce, 1000 * kPound* kGravity, 0, false},
    {"kilogram_force kgf kilopond", kForce, kGravity, 0, false},
    {"poundal", kForce, kPound* kFoot, 0, false},
    {"pascal Pa", kPressure, 1, 0, true},
    {"bar", kPressure, 1e5, 0, true},
    {"atmosphere atm", kPressure, 101325, 0, false},
    {"torr mmHg", kPressure, 101325.0 / 760, 0, false},
    {"psi", kPressure, kPound* kGravity / (kInch * kInch), 0, false},
    {"psf", kPressure, kPound* kGravity / (kFoot * kFoot), 0, false},
    {"ksi", kPressure, 1000 * kPound* kGravity / (kInch * kInch), 0, false},
    {"joule J", kEnergy, 1, 0, true},
    {"erg", kEnergy, 1e-7, 0, false},
    {"calorie cal", kEnergy, 4.1868, 0, true},
    {"btu", kEnergy, 1055.05585262, 0, false},
    {"therm", kEnergy, 105505585.262, 0, false},
    {"watt W", kPower, 1, 0, true},
    {"watt_hour Wh", kEnergy, 3600, 0, true},
    {"horsepower hp", kPower, 550 * kFoot* kPound* kGravity, 0, false},
    {"hertz Hz", kFrequency, 1, 0, true},
    {"becquerel Bq", kFrequency, 1, 0, true},
    {"curie", kFrequency, 3.7e10, 0, true},
    {"ampere amp A", kCurrent, 1, 0, true},
    {"volt V", kVoltage, 1, 0, true},
    {"ohm", kResistance, 1, 0, true},
    {"coulomb C", kCharge, 1, 0, true},
    {"farad F", kCapacitance, 1, 0, true},
    {"poise P", kViscosity, 0.1, 0, true},
    {"stokes St", kSpread, 1e-4, 0, true},
    {"candela cd", kLight, 1, 0, true},
    {"kelvin K", kTemperature, 1, 0, true},
    {"celsius centigrade degc", kTemperature, 1, 273.15, false},
    {"fahrenheit degf", kTemperature, 5.0 / 9, 459.67 * 5 / 9, false},
    {"rankine degr", kTemperature, 5.0 / 9, 0, false},
    {"radian rad", kAngle, 1, 0, true},
    {"degree deg", kAngle, kDegree, 0, false},
    {"arcminute arcmin", kAngle, kDegree / 60, 0, false},
    {"arcsecond arcsec", kAngle, kDegree / 3600, 0, false},
    {"grad gradian gon", kAngle, 0.9 * kDegree, 0, false},
    {"quadrant", kAngle, 90 * kDegree, 0, false},
    {"circle revolution rev turn", kAngle, 360 * kDegree, 0, false},
    {"bit", kInformation, 1, 0, true},
    {"byte", kInformation, 8, 0, true},
    {"dozen", kNumber, 12, 0, false},
    {"gross", kNumber, 144, 0, false},
    {"percent", kNumber, 0.01, 0, false},
};

struct Prefix {
    const char16_t* name;
    const char16_t* sign;
    double factor;
};

const Prefix kPrefixes[] = {
    {u"exa", u"E", 1e18},   {u"peta", u"P", 1e15}, {u"tera", u"T", 1e12},  {u"giga", u"G", 1e9},
    {u"mega", u"M", 1e6},   {u"kilo", u"k", 1e3},  {u"hecto", u"h", 1e2},  {u"deka", u"da", 10},
    {u"deca", u"da", 10},   {u"deci", u"d", 0.1},  {u"centi", u"c", 0.01}, {u"milli", u"m", 1e-3},
    {u"micro", u"u", 1e-6}, {u"nano", u"n", 1e-9}, {u"pico", u"p", 1e-12}, {u"femto", u"f", 1e-15},
    {u"atto", u"a", 1e-18},
};

struct Meaning {
    Dimension dimension{};
    double factor = 1;
    double offset = 0;
};

/// Names as they are written, with prefixes and plurals; each also in lower case where that means
/// nothing else.
class Names {
  public:
    Names() {
        for (const Unit& unit : kUnits)
            enter(unit);
        for (const auto& [name, meaning] : std::unordered_map(names_))
            names_.try_emplace(lower(name), meaning);
    }

    const Meaning* find(const std::u16string& name) const {
        auto found = names_.find(name);
        if (found == names_.end()) found = names_.find(lower(name));
        return found == names_.end() ? nullptr : &found->second;
    }

  private:
    static std::u16string lower(std::u16string_view text) {
        std::u16string out(text);
        for (char16_t& unit : out)
            unit = kz::lowerUnit(unit);
        return out;
    }

    void enter(const Unit& unit) {
        const std::u16string all = kz::toUtf16(unit.names);
        for (size_t at = 0; at < all.size();) {
            const size_t end = std::min(all.find(u' ', at), all.size());
            const std::u16string name = all.substr(at, end - at);
            at = end + 1;
            const Meaning meaning = {unit.dimension, unit.factor, unit.offset};
            enterName(name, meaning);
            if (unit.metric) enterPrefixed(name, meaning);
        }
    }

    void enterName(const std::u16string& name, const Meaning& meaning) {
        names_.try_emplace(name, meaning);
        if (name.size() > 2) names_.try_emplace(name + u's', meaning);
    }

    void enterPrefixed(const std::u16string& name, Meaning meaning) {
        const double factor = meaning.factor;
        for (const Prefix& prefix : kPrefixes) {
            meaning.factor = factor * prefix.factor;
            const bool is_short = name.size() <= 2;
            enterName((is_short ? prefix.sign : prefix.name) + name, meaning);
        }
    }

    std::unordered_map<std::u16string, Meaning> names_;
};

/// Reads "kg/m^3" from left to right: factors joined by * or blanks, divided by what follows /.
class Expression {
  public:
    explicit Expression(std::u16string_view text) : text_(text) {}

    std::optional<Meaning> read() {
        Meaning whole;
        int factors = 0;
        int sign = 1;
        for (skipBlanks(); at_ < text_.size(); skipBlanks()) {
            if (text_[at_] == u'/' || text_[at_] == u'*') {
                if (factors == 0) return std::nullopt;
                sign = text_[at_++] == u'/' ? -1 : 1;
                continue;
            }
            const std::optional<Meaning> factor = readFactor(sign);
            if (!factor) return std::nullopt;
            whole.factor *= factor->factor;
            for (size_t i = 0; i < whole.dimension.size(); ++i)
                whole.dimension[i] += factor->dimension[i];
            whole.offset = factors == 0 && sign > 0 ? factor->offset : 0;
            ++factors;
        }
        if (factors == 0) return std::nullopt;
        return whole;
    }

  private:
    void skipBlanks() {
        while (at_ < text_.size() && (text_[at_] == u' ' || text_[at_] == u'\t'))
            ++at_;
    }

    std::u16string readWord() {
        const size_t begin = at_;
        while (at_ < text_.size() &&
               std::u16string_view(u" \t*/^").find(text_[at_]) == std::u16string_view::npos) {
            ++at_;
        }
        return std::u16string(text_.substr(begin, at_ - begin));
    }

    std::optional<Meaning> readFactor(int sign) {
        static const Names names;
        std::u16string word = readWord();
        int power =
            kz::compareNoCase(word, u"sq") == 0 || kz::compareNoCase(word, u"square") == 0  ? 2
            : kz::compareNoCase(word, u"cu") == 0 || kz::compareNoCase(word, u"cubic") == 0 ? 3
                                                                                            : 1;
        if (power != 1) {
            skipBlanks();
            word = readWord();
        }
        const Meaning* unit = names.find(word);
        if (unit == nullptr) return std::nullopt;
        if (at_ < text_.size() && text_[at_] == u'^') {
            ++at_;
            const int32_t given = kz::parseInteger(readWord());
            if (given < -9 || given > 9 || given == 0) return std::nullopt;
            power *= given;
        }
        return raised(*unit, power * sign);
    }

    static Meaning raised(const Meaning& unit, int power) {
        Meaning result;
        for (size_t i = 0; i < unit.dimension.size(); ++i)
            result.dimension[i] = unit.dimension[i] * power;
        for (int i = 0; i < std::abs(power); ++i)
            result.factor *= unit.factor;
        if (power < 0) result.factor = 1 / result.factor;
        if (power == 1) result.offset = unit.offset;
        return result;
    }

    std::u16string_view text_;
    size_t at_ = 0;
};

}  // namespace

std::optional<UnitChange> unitChange(std::u16string_view from, std::u16string_view to) {
    const std::optional<Meaning> first = Expression(from).read();
    const std::optional<Meaning> second = Expression(to).read();
    if (!first || !second || first->dimension != second->dimension) return std::nullopt;
    return UnitChange{first->factor / second->factor,
                      (first->offset - second->offset) / second->factor};
}

}  // namespace host
