/// The groups of xrecords, and AcDbXrecord.
#include "db/xrecords.h"

#include <algorithm>
#include <utility>

#include "acad/dict.h"
#include "base/faults.h"
#include "base/resbuf.h"
#include "db/groups.h"

namespace host {
namespace {

/// Longest text of a group [characters as the drawing stores them].
constexpr size_t kTextLimit = 2049;
/// Longest binary chunk [hex digits].
constexpr size_t kHexLimit = 254;

/// True for codes that an xrecord may have. Those of type, handle, class and comment would be taken
/// for the object's own.
bool isDataCode(int code) {
    constexpr int kNoData[] = {5, 100, 105};
    if (code < 1 || code > 998 || std::count(std::begin(kNoData), std::end(kNoData), code) > 0) {
        return false;
    }
    const ValueKind kind = valueKind(code);
    return kind == ValueKind::Point ? dxf::isPointCode(code) : kind != ValueKind::None;
}

bool isHex(std::u16string_view digits) {
    const auto isDigit = [](char16_t unit) {
        return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F') ||
               (unit >= u'a' && unit <= u'f');
    };
    return digits.size() % 2 == 0 && digits.size() <= kHexLimit &&
           std::all_of(digits.begin(), digits.end(), isDigit);
}

/// True for a value that the node's group can have in this drawing.
bool isGoodValue(const Database& drawing, const resbuf& node) {
    switch (valueKind(node.restype)) {
        case ValueKind::Text: {
            const ACHAR* raw = node.resval.rstring;
            const std::u16string_view text = raw == nullptr ? std::u16string_view{} : raw;
            if (dxf::groupType(node.restype) == dxf::GroupType::Hex) return isHex(text);
            return drawing.codec().storedLength(text) <= kTextLimit;
        }
        case ValueKind::Name:
            return ads_name_nil(node.resval.rlname) ||
                   Database::find(Database::idFromName(node.resval.rlname)) == &drawing;
        default:
            return true;
    }
}

}  // namespace

Tags xrecordHead(const Database& drawing) {
    Tags tags;
    tags.emplace_back(100, u"AcDbXrecord");
    if (drawing.version() >= "AC1015") tags.emplace_back(280, int64_t{1});
    return tags;
}

size_t xrecordData(const Database& drawing, const Tags& tags) {
    const size_t marker = findTag(tags, 100);
    if (marker == tags.size()) return marker;
    const bool flagged =
        drawing.version() >= "AC1015" && marker + 1 < tags.size() && tags[marker + 1].code() == 280;
    return marker + (flagged ? 2 : 1);
}

Acad::ErrorStatus appendXrecordGroups(const Database& drawing, const resbuf* first,
                                      const resbuf* end, Tags& tags) {
    for (const resbuf* node = first; node != nullptr && node != end; node = node->rbnext) {
        if (!isDataCode(node->restype)) return Acad::eBadDxfSequence;
        if (!isGoodValue(drawing, *node)) return Acad::eInvalidInput;
        appendGroup(*node, tags);
        // A flat point would take a real behind it for its z when it is read.
        if (isPoint2d(node)) tags.emplace_back(node->restype + 20, node->resval.rpoint[2]);
    }
    return Acad::eOk;
}

bool xrecordFromList(const Database& drawing, const resbuf* list, Tags& tags) {
    const resbuf* marker = findNode(list, 100);
    if (marker == nullptr) return false;
    const resbuf* first = marker->rbnext;
    tags = xrecordHead(drawing);
    const bool flagged = tags.back().code() == 280 && first != nullptr && first->restype == 280;
    if (flagged) {
        tags.back() = Tag(280, int64_t{first->resval.rint});
        first = first->rbnext;
    }
    return appendXrecordGroups(drawing, first, findNode(first, -3), tags) == Acad::eOk;
}

}  // namespace host

AcDbXrecord::AcDbXrecord() = default;
AcDbXrecord::~AcDbXrecord() = default;

Acad::ErrorStatus AcDbXrecord::rbChain(resbuf** chain) const {
    int fault = 0;
    if (chain == nullptr) return Acad::eInvalidInput;
    *chain = nullptr;
    if (host::mustFail(host::Call::rbChain, fault)) return static_cast<Acad::ErrorStatus>(fault);
    if (database_ == nullptr) return Acad::eNoDatabase;
    if (!isReadEnabled()) return Acad::eNotOpenForRead;
    const host::Tags& tags = database_->tags(slot_);
    const size_t from = host::xrecordData(*database_, tags);
    host::ChainBuilder builder;
    host::addGroups(*database_, tags, from, builder);
    *chain = builder.release();
    return *chain == nullptr && from < tags.size() ? Acad::eOutOfMemory : Acad::eOk;
}

Acad::ErrorStatus AcDbXrecord::setFromRbChain(const resbuf* chain, AcDbDatabase* database) {
    int fault = 0;
    if (host::mustFail(host::Call::setFromRbChain, fault)) {
        return static_cast<Acad::ErrorStatus>(fault);
    }
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (database == nullptr) database = acdbHostApplicationServices()->workingDatabase();
    const host::Database* drawing = database_ != nullptr ? database_ : host::Database::of(database);
    if (drawing == nullptr) return Acad::eNoDatabase;
    host::Tags groups;
    const Acad::ErrorStatus status = host::appendXrecordGroups(*drawing, chain, nullptr, groups);
    if (status != Acad::eOk) return status;
    if (database_ == nullptr) {
        content_ = std::make_unique<host::XrecordContent>();
        content_->drawing = drawing;
        content_->groups = std::move(groups);
        return Acad::eOk;
    }
    host::Tags& tags = database_->changeTags(slot_);
    const size_t from = host::xrecordData(*drawing, tags);
    tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(from), tags.end());
    tags.insert(tags.end(), std::make_move_iterator(groups.begin()),
                std::make_move_iterator(groups.end()));
    database_->touch(slot_);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbXrecord::describe(host::NewObject& out) {
    if (content_ != nullptr && content_->drawing != &out.drawing) return Acad::eInvalidInput;
    out.type = "XRECORD";
    out.groups = host::xrecordHead(out.drawing);
    if (content_ == nullptr) return Acad::eOk;
    out.groups.insert(out.groups.end(), content_->groups.begin(), content_->groups.end());
    return Acad::eOk;
}
