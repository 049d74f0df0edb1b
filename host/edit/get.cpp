/// The input functions: each asks until an answer fits.
#include <cmath>
#include <numbers>

#include "acad/ed.h"
#include "base/faults.h"
#include "edit/ask.h"
#include "edit/typed_points.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

constexpr int kTextRoom = 132;
constexpr int kKeywordRoom = 255;

using Kind = InputToken::Kind;

void copyText(std::u16string_view text, size_t room, ACHAR* out) {
    text = text.substr(0, room);
    text.copy(out, text.size());
    out[text.size()] = 0;
}

}  // namespace

int askAnswer(const InputRules& rules, const ACHAR* prompt, std::u16string_view wrong,
              const std::function<int(const InputToken&)>& accept) {
    const InputRequest request = {prompt == nullptr ? u"" : prompt, false};
    for (;;) {
        InputToken token;
        if (!inputSource().next(request, token)) return RTCAN;
        if (!resolveExpression(token)) continue;
        if (token.kind == Kind::Cancel) return RTCAN;
        if (token.kind == Kind::Enter) {
            if ((rules.flags & RSG_NONULL) == 0) return RTNONE;
            tell(wrong);
            continue;
        }
        if (token.kind == Kind::Text) {
            const std::u16string keyword = rules.keywords.match(token.text);
            if (!keyword.empty()) {
                setLastKeyword(keyword);
                return RTKWORD;
            }
        }
        const int status = accept(token);
        if (status != kAskAgain) return status;
        if (token.kind == Kind::Text && (rules.flags & RSG_OTHER) != 0) {
            setLastKeyword(token.text);
            return RTKWORD;
        }
        tell(wrong);
    }
}

int readPoint(const InputToken& token, const ads_point from, ads_point out) {
    ads_point point;
    if (token.kind == Kind::Point) {
        handedPoint(token, point);
    } else if (token.kind != Kind::Text || !typedPoint(token.text, from, point)) {
        return kAskAgain;
    }
    if (!std::isfinite(point[0]) || !std::isfinite(point[1]) || !std::isfinite(point[2])) {
        return kAskAgain;
    }
    std::copy(point, point + 3, out);
    return RTNORM;
}

namespace {

/// False, with a message, for a value that the flags refuse.
bool allowed(const InputRules& rules, double value) {
    const bool no_zero = (rules.flags & RSG_NOZERO) != 0;
    const bool no_negative = (rules.flags & RSG_NONEG) != 0;
    if (no_zero && no_negative && value <= 0.0) {
        tell(u"Value must be positive and nonzero.");
    } else if (no_zero && value == 0.0) {
        tell(u"Value must be nonzero.");
    } else if (no_negative && value < 0.0) {
        tell(u"Value must be positive.");
    } else {
        return true;
    }
    return false;
}

/// Reads a value that may be refused, which asks again without the general message.
int askValue(const InputRules& rules, const ACHAR* prompt, std::u16string_view wrong,
             const std::function<int(const InputToken&, double&)>& read, double& value) {
    for (;;) {
        double got = 0.0;
        const int status = askAnswer(rules, prompt, wrong,
                                     [&](const InputToken& token) { return read(token, got); });
        if (status != RTNORM) return status;
        if (!allowed(rules, got)) continue;
        value = got;
        return RTNORM;
    }
}

bool isSnapMode(std::u16string_view text) {
    if (text.starts_with(u'_')) text.remove_prefix(1);
    static constexpr std::u16string_view kModes[] = {u"end", u"mid", u"cen", u"nod",
                                                     u"qua", u"int", u"per", u"tan",
                                                     u"nea", u"ins", u"qui", u"non"};
    if (text.size() < 3 || text.find(u',') != std::u16string_view::npos) return false;
    for (const std::u16string_view mode : kModes) {
        if (kz::compareNoCase(text.substr(0, 3), mode) == 0) return true;
    }
    return false;
}

/// Reads points, with the object snap that is typed in front of one.
class PointReader {
  public:
    explicit PointReader(const ads_point base) {
        if (base != nullptr) {
            std::copy(base, base + 3, from_);
        } else {
            lastPoint(from_);
        }
    }

    int read(const InputToken& token, ads_point out) const { return readPoint(token, from_, out); }

  private:
    ads_point from_ = {0, 0, 0};
};

/// Asks for a point; an object snap in front of it moves it.
int askPoint(const InputRules& rules, const ads_point base, const ACHAR* prompt, ads_point result) {
    PointReader reader(base);
    std::u16string snap;
    const ACHAR* text = prompt;
    for (;;) {
        bool chose_snap = false;
        ads_point point;
        const int status = askAnswer(rules, text, u"Invalid point.", [&](const InputToken& token) {
            chose_snap = token.kind == Kind::Text && isSnapMode(token.text);
            if (!chose_snap) return reader.read(token, point);
            snap = token.text;
            return static_cast<int>(RTNORM);
        });
        if (status != RTNORM) return status;
        if (chose_snap) {
            text = u"of ";
            continue;
        }
        if (!snap.empty() && kz::compareNoCase(snap, u"_non") != 0 &&
            kz::compareNoCase(snap, u"non") != 0 &&
            acedOsnap(point, snap.c_str(), point) != RTNORM) {
            tell(u"No object snap " + snap + u" found for the point.");
            snap.clear();
            text = prompt;
            continue;
        }
        setLastPoint(point);
        std::copy(point, point + 3, result);
        return RTNORM;
    }
}

/// The second point of a distance or an angle.
int secondPoint(const InputRules& rules, const ads_point first, ads_point second) {
    InputRules point_rules;
    point_rules.flags = rules.flags & RSG_NONULL;
    return askPoint(point_rules, first, u"Specify second point: ", second);
}

/// Reads a value that two points can stand for. `measure` gives it from them.
int askMeasure(const ads_point base, const ACHAR* prompt, std::u16string_view wrong,
               const std::function<std::optional<double>(const InputToken&)>& number,
               const std::function<double(const ads_point, const ads_point)>& measure,
               ads_real* value) {
    const InputRules rules = takeInputRules();
    PointReader reader(base);
    const auto read = [&](const InputToken& token, double& got) {
        if (const auto typed = number(token)) {
            got = *typed;
            return static_cast<int>(RTNORM);
        }
        ads_point point;
        const int status = reader.read(token, point);
        if (status != RTNORM) return status;
        ads_point second;
        if (base != nullptr) {
            got = measure(base, point);
            return status;
        }
        const int again = secondPoint(rules, point, second);
        if (again == RTNORM) got = measure(point, second);
        return again;
    };
    double got = 0.0;
    const int status = askValue(rules, prompt, wrong, read, got);
    if (status == RTNORM) *value = got;
    return status;
}

std::optional<double> numberOf(const InputToken& token) {
    if (token.kind == Kind::Real && std::isfinite(token.real)) return token.real;
    if (token.kind == Kind::Integer) return token.integer;
    return std::nullopt;
}

double directionBetween(const ads_point from, const ads_point to) {
    const double angle = std::atan2(to[1] - from[1], to[0] - from[0]);
    return angle < 0.0 ? angle + 2.0 * std::numbers::pi : angle;
}

/// Numbers that a command hands over as an angle are in degrees, as they would be typed.
std::optional<double> angleOf(const InputToken& token, bool direction) {
    const auto read = direction ? typedDirection : typedAngle;
    if (token.kind == Kind::Text) return read(token.text);
    return numberOf(token) ? read(token.typed()) : std::nullopt;
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" {

int acedGetPoint(const ads_point base, const ACHAR* prompt, ads_point result) {
    int status = 0;
    if (mustFail(Call::acedGetPoint, status)) return status;
    return askPoint(takeInputRules(), base, prompt, result);
}

int acedGetCorner(const ads_point base, const ACHAR* prompt, ads_point result) {
    int status = 0;
    if (mustFail(Call::acedGetCorner, status)) return status;
    return askPoint(takeInputRules(), base, prompt, result);
}

int acedGetAngle(const ads_point base, const ACHAR* prompt, ads_real* radians) {
    int status = 0;
    if (mustFail(Call::acedGetAngle, status)) return status;
    return askMeasure(
        base, prompt, u"Requires valid numeric angle or second point.",
        [](const InputToken& token) { return angleOf(token, false); }, directionBetween, radians);
}

int acedGetOrient(const ads_point base, const ACHAR* prompt, ads_real* radians) {
    return askMeasure(
        base, prompt, u"Requires valid numeric angle or second point.",
        [](const InputToken& token) { return angleOf(token, true); }, directionBetween, radians);
}

int acedGetDist(const ads_point base, const ACHAR* prompt, ads_real* distance) {
    int status = 0;
    if (mustFail(Call::acedGetDist, status)) return status;
    return askMeasure(
        base, prompt, u"Requires numeric distance or two points.",
        [](const InputToken& token) {
            return token.kind == Kind::Text ? typedDistance(token.text) : numberOf(token);
        },
        [](const ads_point a, const ads_point b) { return acutDistance(a, b); }, distance);
}

int acedGetReal(const ACHAR* prompt, ads_real* value) {
    int status = 0;
    if (mustFail(Call::acedGetReal, status)) return status;
    const auto read = [](const InputToken& token, double& got) {
        const auto number = token.kind == Kind::Text ? typedDistance(token.text) : numberOf(token);
        if (!number) return kAskAgain;
        got = *number;
        return static_cast<int>(RTNORM);
    };
    return askValue(takeInputRules(), prompt, u"Requires numeric value.", read, *value);
}

int acedGetInt(const ACHAR* prompt, int* value) {
    int status = 0;
    if (mustFail(Call::acedGetInt, status)) return status;
    const auto read = [](const InputToken& token, double& got) {
        if (token.kind == Kind::Integer) {
            got = token.integer;
            return static_cast<int>(RTNORM);
        }
        const auto number =
            token.kind == Kind::Text ? typedInteger(token.text) : std::optional<int32_t>();
        if (!number) return kAskAgain;
        got = *number;
        return static_cast<int>(RTNORM);
    };
    double got = 0.0;
    status = askValue(takeInputRules(), prompt, u"Requires an integer value.", read, got);
    if (status == RTNORM) *value = static_cast<int>(got);
    return status;
}

int acedGetString(int blanks, const ACHAR* prompt, ACHAR* result) {
    int status = 0;
    if (mustFail(Call::acedGetString, status)) return status;
    takeInputRules();  // they don't reach this function, but they are spent
    InputToken token;
    const InputRequest request = {prompt == nullptr ? u"" : prompt, blanks != 0};
    if (!inputSource().next(request, token) || token.kind == Kind::Cancel) return RTCAN;
    if (token.kind == Kind::Text && token.text.starts_with(u'!') && !resolveExpression(token))
        return RTCAN;
    copyText(token.typed(), kTextRoom, result);
    return RTNORM;
}

int acedGetKword(const ACHAR* prompt, ACHAR* result) {
    int status = 0;
    if (mustFail(Call::acedGetKword, status)) return status;
    InputRules rules = takeInputRules();
    status = askAnswer(rules, prompt, u"Invalid option keyword.",
                       [](const InputToken&) { return kAskAgain; });
    if (status != RTKWORD) return status;  // Enter, a cancel
    copyText(lastKeyword(), kTextRoom, result);
    return RTNORM;
}

int acedGetInput(ACHAR* result) {
    int status = 0;
    if (mustFail(Call::acedGetInput, status)) return status;
    if (lastKeyword().empty()) return RTNONE;
    copyText(lastKeyword(), kKeywordRoom, result);
    return RTNORM;
}

int acedGraphScr(void) {
    return RTNORM;
}

int acedTextScr(void) {
    return RTNORM;
}
}
