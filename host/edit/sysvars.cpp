/// System variables: where each kind of them is kept, what fits, and the platform's calls.
#include "edit/sysvars.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>

#include "base/angles.h"
#include "base/faults.h"
#include "base/resbuf.h"
#include "edit/drawing_state.h"
#include "edit/sysvar_table.h"
#include "edit/tag_values.h"
#include "kz_tls21an/memory.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

using Values = std::map<std::string, VariableValue, std::less<>>;

Values& session() {
    static Values values;
    return values;
}

std::map<std::string, std::function<VariableValue()>, std::less<>>& computers() {
    static std::map<std::string, std::function<VariableValue()>, std::less<>> functions;
    return functions;
}

std::string upperName(std::string_view name) {
    std::string upper(name);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return upper;
}

VariableValue defaultOf(const Variable& row) {
    switch (row.form) {
        case VariableForm::Real:
            return row.number;
        case VariableForm::Text:
            return std::u16string(row.text);
        case VariableForm::Point2:
            return AcGePoint2d(row.number, row.y);
        case VariableForm::Point3:
            return AcGePoint3d(row.number, row.y, 0.0);
        default:
            return static_cast<int32_t>(row.number);
    }
}

// --- tags ---------------------------------------------------------------------------------------

/// Angles are in degrees in files and in radians in variables.
double angleFactor(int code) {
    return isAngleCode(code) ? toRadians(1.0) : 1.0;
}

constexpr struct {
    int32_t index;
    std::u16string_view name;
} kColorNames[] = {{0, u"BYBLOCK"}, {256, u"BYLAYER"}, {1, u"RED"},
                   {2, u"YELLOW"},  {3, u"GREEN"},     {4, u"CYAN"},
                   {5, u"BLUE"},    {6, u"MAGENTA"},   {7, u"WHITE"}};

/// A name for the two colours that follow others, else the number.
std::u16string colorText(int64_t index) {
    for (const auto& color : kColorNames) {
        const bool follows = color.index == 0 || color.index == 256;
        if (follows && color.index == index) return std::u16string(color.name);
    }
    return kz::toUtf16(std::to_string(index));
}

std::optional<int32_t> colorIndex(std::u16string_view text) {
    for (const auto& color : kColorNames) {
        if (kz::compareNoCase(text, color.name) == 0) return color.index;
    }
    const int32_t number = kz::parseInteger(text);
    if (text != kz::toUtf16(std::to_string(number)) || number < 1 || number > 255) {
        return std::nullopt;
    }
    return number;
}

std::u16string textFromTag(const Variable& row, const Tag& tag, const dxf::TextCodec& codec) {
    if (row.rule == VariableRule::Color) return colorText(tag.integer());
    if (row.rule == VariableRule::Character) {
        const auto unit = static_cast<char16_t>(tag.integer());
        return unit == 0 ? std::u16string() : std::u16string(1, unit);
    }
    return tag.text(codec);
}

/// Value from tags, of which the first one is at `at` and those of a point follow by their codes.
VariableValue fromTags(const Variable& row, const Tags& tags, size_t at,
                       const dxf::TextCodec& codec) {
    const Tag& first = tags[at];
    const auto coordinate = [&](int axis) {
        const size_t found = findTag(tags, first.code() + 10 * axis, at);
        return found < tags.size() ? tags[found].real() : 0.0;
    };
    switch (row.form) {
        case VariableForm::Real:
            return first.real() * angleFactor(first.code());
        case VariableForm::Text:
            return textFromTag(row, first, codec);
        case VariableForm::Point2:
            return AcGePoint2d(coordinate(0), coordinate(1));
        case VariableForm::Point3:
            return AcGePoint3d(coordinate(0), coordinate(1), coordinate(2));
        default: {
            const int64_t limit = row.form == VariableForm::Short ? INT16_MAX : INT32_MAX;
            return static_cast<int32_t>(std::clamp(first.integer(), -limit - 1, limit));
        }
    }
}

/// Tags of a value that fits the row, from `code` on.
Tags toTags(const Variable& row, int code, const VariableValue& value) {
    Tags tags;
    const auto addPoint = [&](std::initializer_list<double> coordinates) {
        int at = code;
        for (const double coordinate : coordinates) {
            tags.emplace_back(at, coordinate);
            at += 10;
        }
    };
    if (const auto* integer = std::get_if<int32_t>(&value)) {
        tags.emplace_back(code, int64_t{*integer});
    } else if (const auto* real = std::get_if<double>(&value)) {
        tags.emplace_back(code, *real / angleFactor(code));
    } else if (const auto* flat = std::get_if<AcGePoint2d>(&value)) {
        addPoint({flat->x, flat->y});
    } else if (const auto* point = std::get_if<AcGePoint3d>(&value)) {
        addPoint({point->x, point->y, point->z});
    } else if (const auto& text = std::get<std::u16string>(value);
               row.rule == VariableRule::Color) {
        tags.emplace_back(code, int64_t{colorIndex(text).value_or(256)});
    } else if (row.rule == VariableRule::Character) {
        tags.emplace_back(code, int64_t{text.empty() ? char16_t{0} : text.front()});
    } else {
        tags.emplace_back(code, text);
    }
    return tags;
}

// --- header, view, drawing ----------------------------------------------------------------------

std::string headerName(Database& database, const Variable& row) {
    const bool paper = row.by_space && inPaperSpace(database);
    return (paper ? "$P" : "$") + std::string(row.name);
}

/// True for a variable that files of the drawing's version have.
bool versionHas(const Database& database, const Variable& row) {
    const std::string& version = database.version();
    return version.size() < 6 || kz::parseInteger(kz::toUtf16(version.substr(2))) >= row.since;
}

VariableValue beside(Database& database, const Variable& row) {
    const Values& values = drawingState(database).variables;
    const auto found = values.find(row.name);
    return found == values.end() ? defaultOf(row) : found->second;
}

VariableValue ofHeader(Database& database, const Variable& row) {
    const HeaderVariable* header = database.header(headerName(database, row));
    if (header != nullptr) return fromTags(row, header->tags, 0, database.codec());
    return beside(database, row);
}

void toHeader(Database& database, const Variable& row, const VariableValue& value) {
    const std::string name = headerName(database, row);
    const HeaderVariable* header = database.header(name);
    if (header == nullptr && !versionHas(database, row)) {
        drawingState(database).variables.insert_or_assign(std::string(row.name), value);
        return;
    }
    const int code = header == nullptr ? row.code : header->tags.front().code();
    database.setHeader(name, toTags(row, code, value));
}

VariableValue ofView(Database& database, const Variable& row) {
    const Slot record = viewRecord(database);
    if (record == kNoSlot) return beside(database, row);
    const Tags& tags = database.tags(record);
    const size_t at = findTag(tags, row.code);
    return at < tags.size() ? fromTags(row, tags, at, database.codec()) : defaultOf(row);
}

void toView(Database& database, const Variable& row, const VariableValue& value) {
    const Slot record = needViewRecord(database);
    Tags& tags = database.changeTags(record);
    for (Tag& tag : toTags(row, row.code, value))
        replaceTag(tags, std::move(tag));
    database.touch(record);
}

// --- what fits ----------------------------------------------------------------------------------

bool isLineWeight(int32_t value) {
    static constexpr int32_t kWeights[] = {-3, -2, -1,  0,   5,   9,   13,  15,  18,
                                           20, 25, 30,  35,  40,  50,  53,  60,  70,
                                           80, 90, 100, 106, 120, 140, 158, 200, 211};
    return std::find(std::begin(kWeights), std::end(kWeights), value) != std::end(kWeights);
}

bool obeysRule(const Variable& row, int32_t value) {
    if (row.rule == VariableRule::LineWeight) return isLineWeight(value);
    // Frames come in steps of 32; the figures are 0 to 4.
    if (row.rule == VariableRule::PointMode) return value % 32 <= 4;
    return true;
}

/// A name as its table spells it; nothing when the table does not have it.
std::optional<std::u16string> symbolSpelling(Database& database, std::string_view table,
                                             std::u16string_view name) {
    const Slot record = database.findSymbol(table, name);
    if (record == kNoSlot) return std::nullopt;
    return database.symbolName(record);
}

std::optional<std::u16string> lineTypeSpelling(Database& database, std::u16string_view name) {
    for (const std::u16string_view special : {u"ByLayer", u"ByBlock"}) {
        if (kz::compareNoCase(name, special) == 0) return std::u16string(special);
    }
    return symbolSpelling(database, "LTYPE", name);
}

std::optional<VariableValue> fittedText(const Variable& row, Database* database,
                                        const std::u16string& text) {
    const bool is_dimension = row.name.starts_with("DIM");
    if (static_cast<double>(text.size()) > row.greatest) return std::nullopt;
    switch (row.rule) {
        case VariableRule::Layer:
            if (!canBeCurrentLayer(*database, database->findSymbol("LAYER", text))) {
                return std::nullopt;
            }
            return symbolSpelling(*database, "LAYER", text);
        case VariableRule::LineType:
            if (is_dimension && text.empty()) return text;
            return lineTypeSpelling(*database, text);
        case VariableRule::TextStyle:
            return symbolSpelling(*database, "STYLE", text);
        case VariableRule::Color:
            if (!colorIndex(text)) return std::nullopt;
            return colorText(*colorIndex(text));
        case VariableRule::Character:
            return text.size() > 1 ? std::optional<VariableValue>() : text;
        default:
            return text;
    }
}

std::optional<VariableValue> fittedNumber(const Variable& row, double number) {
    if (!(number >= row.least && number <= row.greatest)) return std::nullopt;
    if (row.form == VariableForm::Real) return number;
    const auto integer = static_cast<int32_t>(number);
    if (!obeysRule(row, integer)) return std::nullopt;
    return integer;
}

std::optional<VariableValue> fittedPoint(const Variable& row, const AcGePoint3d& point) {
    if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) {
        return std::nullopt;
    }
    if (row.least > 0.0 && (point.x < row.least || point.y < row.least)) return std::nullopt;
    if (row.form == VariableForm::Point2) return AcGePoint2d(point.x, point.y);
    return point;
}

/// The value in the variable's form; nothing when it can't have it.
std::optional<VariableValue> fitted(const Variable& row, Database* database,
                                    const VariableValue& value) {
    const bool wants_point = row.form == VariableForm::Point2 || row.form == VariableForm::Point3;
    if (const auto* text = std::get_if<std::u16string>(&value)) {
        if (row.form != VariableForm::Text) return std::nullopt;
        return fittedText(row, database, *text);
    }
    if (row.form == VariableForm::Text) return std::nullopt;
    if (const auto* flat = std::get_if<AcGePoint2d>(&value)) {
        return wants_point ? fittedPoint(row, {flat->x, flat->y, 0.0}) : std::nullopt;
    }
    if (const auto* point = std::get_if<AcGePoint3d>(&value)) {
        return wants_point ? fittedPoint(row, *point) : std::nullopt;
    }
    if (wants_point) return std::nullopt;
    if (const auto* integer = std::get_if<int32_t>(&value)) return fittedNumber(row, *integer);
    if (row.form != VariableForm::Real) return std::nullopt;
    return fittedNumber(row, std::get<double>(value));
}

// --- the variables ------------------------------------------------------------------------------

std::optional<VariableValue> computedValue(const Variable& row, Database* database) {
    const auto computer = computers().find(row.name);
    if (computer != computers().end()) return computer->second();
    const WorkedOut* worked_out = findWorkedOut(row.name);
    return worked_out == nullptr ? defaultOf(row) : worked_out->get(database);
}

std::optional<VariableValue> valueOf(const Variable& row) {
    Database* database = currentDatabase();
    if (row.kept == VariableKept::Computed) return computedValue(row, database);
    if (row.kept == VariableKept::Session) {
        const auto found = session().find(row.name);
        return found == session().end() ? defaultOf(row) : found->second;
    }
    if (database == nullptr) return std::nullopt;
    if (row.kept == VariableKept::Header) return ofHeader(*database, row);
    return row.kept == VariableKept::View ? ofView(*database, row) : beside(*database, row);
}

bool keep(const Variable& row, const VariableValue& value) {
    Database* database = currentDatabase();
    const bool of_session = row.kept == VariableKept::Session;
    if (database == nullptr && !of_session) return false;
    const std::optional<VariableValue> fit = fitted(row, database, value);
    if (!fit) return false;
    if (row.kept == VariableKept::Computed) {
        const WorkedOut* worked_out = findWorkedOut(row.name);
        return worked_out != nullptr && worked_out->set != nullptr &&
               worked_out->set(*database, *fit);
    }
    if (row.kept == VariableKept::Header) {
        toHeader(*database, row, *fit);
    } else if (row.kept == VariableKept::View) {
        toView(*database, row, *fit);
    } else {
        Values& values = of_session ? session() : drawingState(*database).variables;
        values.insert_or_assign(std::string(row.name), *fit);
    }
    return true;
}

}  // namespace

std::optional<VariableValue> variable(std::string_view name) {
    const Variable* row = findVariable(upperName(name));
    return row == nullptr ? std::nullopt : valueOf(*row);
}

bool setVariable(std::string_view name, const VariableValue& value) {
    const Variable* row = findVariable(upperName(name));
    return row != nullptr && !row->read_only && keep(*row, value);
}

bool keepVariable(std::string_view name, const VariableValue& value) {
    const Variable* row = findVariable(upperName(name));
    return row != nullptr && keep(*row, value);
}

bool presetVariable(std::string_view name, int32_t value) {
    return keepVariable(name, VariableValue(value));
}
bool presetVariable(std::string_view name, double value) {
    return keepVariable(name, VariableValue(value));
}
bool presetVariable(std::string_view name, std::u16string_view value) {
    return keepVariable(name, VariableValue(std::u16string(value)));
}

int integerVariable(std::string_view name, int otherwise) {
    const std::optional<VariableValue> value = variable(name);
    const auto* integer = value ? std::get_if<int32_t>(&*value) : nullptr;
    return integer == nullptr ? otherwise : *integer;
}

double realVariable(std::string_view name, double otherwise) {
    const std::optional<VariableValue> value = variable(name);
    const auto* real = value ? std::get_if<double>(&*value) : nullptr;
    return real == nullptr ? otherwise : *real;
}

std::u16string textVariable(std::string_view name) {
    const std::optional<VariableValue> value = variable(name);
    const auto* text = value ? std::get_if<std::u16string>(&*value) : nullptr;
    return text == nullptr ? std::u16string() : *text;
}

void computeVariable(const char* name, std::function<VariableValue()> compute) {
    computers().insert_or_assign(name, std::move(compute));
}

void setErrno(HostErrno value) {
    session().insert_or_assign("ERRNO", static_cast<int32_t>(value));
}

namespace {

// --- result buffers -----------------------------------------------------------------------------

int giveText(std::u16string_view text, resbuf* value) {
    auto* copy = static_cast<ACHAR*>(kz_Malloc((text.size() + 1) * sizeof(ACHAR)));
    if (copy == nullptr) return RTERROR;
    if (!text.empty()) std::memcpy(copy, text.data(), text.size() * sizeof(ACHAR));
    copy[text.size()] = 0;
    value->restype = RTSTR;
    value->resval.rstring = copy;
    return RTNORM;
}

int givePoint(int16_t restype, double x, double y, double z, resbuf* value) {
    value->restype = restype;
    value->resval.rpoint[0] = x;
    value->resval.rpoint[1] = y;
    value->resval.rpoint[2] = z;
    return RTNORM;
}

int give(const Variable& row, const VariableValue& found, resbuf* value) {
    if (const auto* text = std::get_if<std::u16string>(&found)) return giveText(*text, value);
    if (const auto* flat = std::get_if<AcGePoint2d>(&found)) {
        return givePoint(RTPOINT, flat->x, flat->y, 0.0, value);
    }
    if (const auto* point = std::get_if<AcGePoint3d>(&found)) {
        return givePoint(RT3DPOINT, point->x, point->y, point->z, value);
    }
    if (const auto* real = std::get_if<double>(&found)) {
        value->restype = RTREAL;
        value->resval.rreal = *real;
    } else if (row.form == VariableForm::Long) {
        value->restype = RTLONG;
        value->resval.rlong = std::get<int32_t>(found);
    } else {
        value->restype = RTSHORT;
        value->resval.rint = static_cast<int16_t>(std::get<int32_t>(found));
    }
    return RTNORM;
}

std::optional<VariableValue> valueFrom(const resbuf& node) {
    const ads_real* const at = node.resval.rpoint;
    switch (node.restype) {
        case RTSHORT:
            return int32_t{node.resval.rint};
        case RTLONG:
            return node.resval.rlong;
        case RTREAL:
        case RTANG:
        case RTORINT:
            return node.resval.rreal;
        case RTPOINT:
            return AcGePoint2d(at[0], at[1]);
        case RT3DPOINT:
            return AcGePoint3d(at[0], at[1], at[2]);
        case RTSTR:
            if (node.resval.rstring == nullptr) return std::nullopt;
            return std::u16string(node.resval.rstring);
        default:
            return std::nullopt;
    }
}

}  // namespace
}  // namespace host

extern "C" {

int acedGetVar(const ACHAR* name, resbuf* value) {
    int status = 0;
    if (host::mustFail(host::Call::acedGetVar, status)) return status;
    if (name == nullptr || value == nullptr) return RTERROR;
    const std::string plain = host::upperName(kz::toUtf8(name));
    if (host::variableMustFail(plain, status)) return status;
    const host::Variable* row = host::findVariable(plain);
    const std::optional<host::VariableValue> found =
        row == nullptr ? std::nullopt : host::valueOf(*row);
    return found ? host::give(*row, *found, value) : RTERROR;
}

int acedSetVar(const ACHAR* name, const resbuf* value) {
    int status = 0;
    if (host::mustFail(host::Call::acedSetVar, status)) return status;
    if (name == nullptr || value == nullptr) return RTERROR;
    const std::string plain = host::upperName(kz::toUtf8(name));
    if (host::variableMustFail(plain, status)) return status;
    const std::optional<host::VariableValue> wanted = host::valueFrom(*value);
    return wanted && host::setVariable(plain, *wanted) ? RTNORM : RTERROR;
}
}
