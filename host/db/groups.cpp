/// Tags to groups and back.
#include "db/groups.h"

#include "base/angles.h"
#include "base/resbuf.h"
#include "db/entity_rules.h"

namespace host {

resbuf* ChainBuilder::add(resbuf* node) {
    failed_ = failed_ || node == nullptr;
    if (node == nullptr) return nullptr;
    *tail_ = node;
    while (*tail_ != nullptr)
        tail_ = &(*tail_)->rbnext;
    return node;
}

resbuf* ChainBuilder::addText(int code, std::u16string_view text) {
    return add(newTextNode(code, text));
}

resbuf* ChainBuilder::addName(int code, const ads_name name) {
    resbuf* node = add(acutNewRb(code));
    if (node != nullptr) ads_name_set(name, node->resval.rlname);
    return node;
}

resbuf* ChainBuilder::addShort(int code, int value) {
    resbuf* node = add(acutNewRb(code));
    if (node != nullptr) node->resval.rint = static_cast<int16_t>(value);
    return node;
}

resbuf* ChainBuilder::release() {
    resbuf* chain = failed_ ? nullptr : head_;
    if (failed_) acutRelRb(head_);
    head_ = nullptr;
    tail_ = &head_;
    failed_ = false;
    return chain;
}

namespace {

/// Adds a point; gives the index of its last tag. Of a point in space the height may be missing,
/// which stands for 0.
size_t addPoint(const Tags& tags, size_t i, bool inSpace, ChainBuilder& chain) {
    resbuf* node = chain.add(acutNewRb(tags[i].code()));
    if (node == nullptr) return i;
    const int code = tags[i].code();
    node->resval.rpoint[0] = tags[i].real();
    if (i + 1 >= tags.size() || tags[i + 1].code() != code + 10) return i;
    node->resval.rpoint[1] = tags[++i].real();
    if (i + 1 >= tags.size() || tags[i + 1].code() != code + 20) {
        if (!inSpace) markPoint2d(node);
        return i;
    }
    node->resval.rpoint[2] = tags[++i].real();
    return i;
}

void addValue(const Database& database, const Tag& tag, ChainBuilder& chain) {
    switch (valueKind(tag.code())) {
        case ValueKind::Text:
            chain.addText(tag.code(), tag.text(database.codec()));
            return;
        case ValueKind::Name: {
            ads_name name;
            database.nameOf(database.findHandle(tag.handleValue()), name);
            chain.addName(tag.code(), name);
            return;
        }
        default:
            break;
    }
    resbuf* node = chain.add(acutNewRb(tag.code()));
    if (node == nullptr) return;
    switch (valueKind(tag.code())) {
        case ValueKind::Real:
            node->resval.rreal = tag.real();
            break;
        case ValueKind::Point:
            node->resval.rpoint[0] = tag.real();
            break;
        case ValueKind::Short:
            node->resval.rint = static_cast<int16_t>(tag.integer());
            break;
        case ValueKind::Long:
            node->resval.rlong = static_cast<int32_t>(tag.integer());
            break;
        case ValueKind::Int64:
            node->resval.mnInt64 = tag.integer();
            break;
        default:
            break;
    }
}

uint64_t handleOf(const ads_name name) {
    const AcDbObjectId id = Database::idFromName(name);
    const Database* database = Database::find(id);
    return database == nullptr ? 0 : database->record(database->slotOf(id)).handle;
}

}  // namespace

void addGroups(const Database& database, const Tags& tags, size_t from, ChainBuilder& chain) {
    for (size_t i = from; i < tags.size(); ++i) {
        if (dxf::isPointCode(tags[i].code())) {
            i = addPoint(tags, i, false, chain);
        } else {
            addValue(database, tags[i], chain);
        }
    }
}

void addObjectGroups(const Database& database, const Tags& tags, std::string_view type,
                     ChainBuilder& chain) {
    const bool xrecord = type == "XRECORD";
    for (size_t i = 0; i < tags.size(); ++i) {
        if (dxf::isPointCode(tags[i].code())) {
            i = addPoint(tags, i, !xrecord && isSpacePoint(type, tags[i].code()), chain);
        } else if (isAngleCode(tags[i].code()) && !xrecord) {
            addValue(database, Tag(tags[i].code(), toRadians(tags[i].real())), chain);
        } else {
            addValue(database, tags[i], chain);
        }
    }
}

bool appendGroup(const resbuf& node, Tags& tags) {
    const int code = node.restype;
    switch (valueKind(code)) {
        case ValueKind::Text: {
            const ACHAR* text = node.resval.rstring;
            tags.emplace_back(code, std::u16string(text == nullptr ? u"" : text));
            return true;
        }
        case ValueKind::Name:
            tags.push_back(Tag::handle(code, handleOf(node.resval.rlname)));
            return true;
        case ValueKind::Real:
            tags.emplace_back(code, node.resval.rreal);
            return true;
        case ValueKind::Point:
            tags.emplace_back(code, node.resval.rpoint[0]);
            tags.emplace_back(code + 10, node.resval.rpoint[1]);
            if (!isPoint2d(&node)) tags.emplace_back(code + 20, node.resval.rpoint[2]);
            return true;
        case ValueKind::Short:
            tags.emplace_back(code, int64_t{node.resval.rint});
            return true;
        case ValueKind::Long:
            tags.emplace_back(code, int64_t{node.resval.rlong});
            return true;
        case ValueKind::Int64:
            tags.emplace_back(code, node.resval.mnInt64);
            return true;
        default:
            return false;
    }
}

bool tagsFromChain(const resbuf* chain, Tags& tags) {
    for (const resbuf* node = chain; node != nullptr && node->restype != -3; node = node->rbnext) {
        const int code = node->restype;
        if (code == -1 || code == -2 || code == RTDXF0) continue;
        if (code < 0 || code == 1001 || code > dxf::kMaxGroupCode) return false;
        if (!appendGroup(*node, tags)) return false;
        if (isAngleCode(code)) tags.back() = Tag(code, toDegrees(tags.back().real()));
    }
    return true;
}

const resbuf* findNode(const resbuf* chain, int code) {
    while (chain != nullptr && chain->restype != code)
        chain = chain->rbnext;
    return chain;
}

}  // namespace host
