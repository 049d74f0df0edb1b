/// Rules of the entity types that date from before class markers.
#include "db/entity_rules.h"

#include <algorithm>

#include "kz_tls21an/text.h"

namespace host {
namespace {

const std::vector<EntityRule>& rules() {
    static const std::vector<EntityRule> kRules = {
        {"LINE", u"AcDbLine", u"", {}, {10, 11}},
        {"POINT", u"AcDbPoint", u"", {}, {10}},
        {"CIRCLE", u"AcDbCircle", u"", {}, {10, 40}},
        {"ARC", u"AcDbCircle", u"AcDbArc", {50, 51}, {10, 40, 50, 51}},
        {"TEXT", u"AcDbText", u"AcDbText", {73}, {1, 10, 40}},
        {"INSERT", u"AcDbBlockReference", u"", {}, {2, 10}},
        {"SOLID", u"AcDbTrace", u"", {}, {10, 11, 12}},
        {"TRACE", u"AcDbTrace", u"", {}, {10, 11, 12, 13}},
        {"3DFACE", u"AcDbFace", u"", {}, {10, 11, 12}},
        {"POLYLINE", u"AcDb2dPolyline", u"", {}, {}},
        {"VERTEX", u"AcDbVertex", u"AcDb2dVertex", {}, {10}},
        {"SEQEND", u"", u"", {}, {}},
        {"ATTRIB", u"AcDbText", u"AcDbAttribute", {2, 70, 73, 74}, {1, 2, 10, 40}},
        {"ATTDEF", u"AcDbText", u"AcDbAttributeDefinition", {2, 3, 70, 73, 74}, {2, 10, 40}},
    };
    return kRules;
}

int64_t flagsOf(const Tags& tags) {
    const size_t at = findTag(tags, 70);
    return at < tags.size() ? tags[at].integer() : 0;
}

/// Class marker of a POLYLINE by its flags.
std::u16string_view polylineMarker(int64_t flags) {
    if ((flags & 8) != 0) return u"AcDb3dPolyline";
    if ((flags & 16) != 0) return u"AcDbPolygonMesh";
    if ((flags & 64) != 0) return u"AcDbPolyFaceMesh";
    return u"AcDb2dPolyline";
}

/// Second class marker of a VERTEX by its flags.
std::u16string_view vertexMarker(int64_t flags) {
    if ((flags & 128) != 0) {
        return (flags & 64) != 0 ? u"AcDbPolyFaceMeshVertex" : u"AcDbFaceRecord";
    }
    if ((flags & 64) != 0) return u"AcDbPolygonMeshVertex";
    if ((flags & 32) != 0) return u"AcDb3dPolylineVertex";
    return u"AcDb2dVertex";
}

bool hasCode(const std::vector<int>& codes, int code) {
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

/// Code of the point that a y or z group belongs to; the code itself for any other.
int pointCode(const Tags& tags, size_t i) {
    const int code = tags[i].code();
    for (const int back : {1, 2}) {
        const auto step = static_cast<size_t>(back);
        if (i < step) break;
        const int first = tags[i - step].code();
        if (dxf::isPointCode(first) && first + 10 * back == code) return first;
    }
    return code;
}

void appendMarker(Tags& out, std::u16string_view marker) {
    if (!marker.empty()) out.emplace_back(100, std::u16string(marker));
}

void arrangeByRule(const EntityRule& rule, Tags& tags) {
    Tags common;
    Tags first;
    Tags second;
    for (size_t i = 0; i < tags.size(); ++i) {
        const int code = pointCode(tags, i);
        if (isCommonEntityCode(code)) {
            common.push_back(tags[i]);
        } else {
            (hasCode(rule.second_codes, code) ? second : first).push_back(tags[i]);
        }
    }
    const int64_t flags = flagsOf(tags);
    Tags out;
    out.emplace_back(100, u"AcDbEntity");
    out.insert(out.end(), common.begin(), common.end());
    appendMarker(out, rule.type == "POLYLINE" ? polylineMarker(flags) : rule.marker);
    if (rule.second_codes.empty()) {
        appendMarker(out, rule.type == "VERTEX" ? vertexMarker(flags) : rule.second_marker);
    }
    out.insert(out.end(), first.begin(), first.end());
    if (!rule.second_codes.empty()) {
        appendMarker(out, rule.second_marker);
        out.insert(out.end(), second.begin(), second.end());
    }
    tags = std::move(out);
}

/// With markers given only what is out of place moves: common groups behind the last class of a
/// simple type, as they are appended to a list by hand.
void arrangeWithMarkers(bool simple_type, Tags& tags) {
    Tags common;
    Tags rest;
    bool in_entity = true;
    bool marked = false;
    for (size_t i = 0; i < tags.size(); ++i) {
        const int code = pointCode(tags, i);
        if (code == 100) {
            in_entity = !marked && tags[i].text(dxf::TextCodec()) == u"AcDbEntity";
            marked = true;
            if (!in_entity) rest.push_back(tags[i]);
            continue;
        }
        const bool belongs = in_entity || (simple_type && isCommonEntityCode(code));
        (belongs ? common : rest).push_back(tags[i]);
    }
    Tags out;
    out.emplace_back(100, u"AcDbEntity");
    for (size_t i = 0; i < common.size(); ++i) {
        // A group given twice: the later one was appended to change the earlier.
        const int code = common[i].code();
        const bool repeated =
            isCommonEntityCode(code) && findTag(common, code, i + 1) < common.size();
        if (!repeated) out.push_back(common[i]);
    }
    out.insert(out.end(), rest.begin(), rest.end());
    tags = std::move(out);
}

}  // namespace

const EntityRule* entityRule(std::string_view type) {
    for (const EntityRule& rule : rules()) {
        if (rule.type == type) return &rule;
    }
    return nullptr;
}

bool isCommonEntityCode(int code) {
    static constexpr int kCodes[] = {6, 8, 48, 60, 62, 67, 284, 347, 370, 390, 410, 420, 430, 440};
    return std::find(std::begin(kCodes), std::end(kCodes), code) != std::end(kCodes);
}

bool isSpacePoint(std::string_view type, int code) {
    static constexpr std::string_view kTypes[] = {
        "3DFACE", "ARC",    "ATTDEF", "ATTRIB",    "BLOCK", "CIRCLE",   "DIMENSION", "ELLIPSE",
        "INSERT", "LEADER", "LINE",   "MTEXT",     "POINT", "POLYLINE", "RAY",       "SHAPE",
        "SOLID",  "SPLINE", "TEXT",   "TOLERANCE", "TRACE", "VERTEX",   "XLINE"};
    if (code == 210) return true;
    return code >= 10 && code <= 16 &&
           std::find(std::begin(kTypes), std::end(kTypes), type) != std::end(kTypes);
}

bool arrangeEntity(std::string_view type, Tags& tags) {
    const EntityRule* rule = entityRule(type);
    const bool marked = findTag(tags, 100) < tags.size();
    if (rule == nullptr && !marked) return false;
    if (rule != nullptr) {
        for (const int code : rule->required) {
            if (findTag(tags, code) == tags.size()) return false;
        }
    }
    if (marked) {
        const bool simple = rule != nullptr || type == "LWPOLYLINE" || type == "MTEXT" ||
                            type == "ELLIPSE" || type == "SPLINE" || type == "RAY" ||
                            type == "XLINE";
        arrangeWithMarkers(simple, tags);
    } else {
        arrangeByRule(*rule, tags);
    }
    return true;
}

}  // namespace host
