/// Definitions of blocks.
#include "edit/block_definition.h"

#include <unordered_set>

#include "acad/ads.h"
#include "edit/tag_values.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

constexpr int64_t kAnonymous = 1;
constexpr int64_t kHasAttributes = 2;

Tags beginTags(std::u16string_view name, const AcGePoint3d& base) {
    Tags tags;
    tags.emplace_back(100, u"AcDbEntity");
    tags.emplace_back(8, u"0");
    tags.emplace_back(100, u"AcDbBlockBegin");
    tags.emplace_back(2, std::u16string(name));
    tags.emplace_back(70, name.starts_with(u'*') ? kAnonymous : int64_t{0});
    for (Tag& tag : pointTags(10, base))
        tags.push_back(std::move(tag));
    tags.emplace_back(3, std::u16string(name));
    tags.emplace_back(1, std::u16string());
    return tags;
}

Tags endTags() {
    Tags tags;
    tags.emplace_back(100, u"AcDbEntity");
    tags.emplace_back(8, u"0");
    tags.emplace_back(100, u"AcDbBlockEnd");
    return tags;
}

Slot makeEnd(Database& database, std::string_view type, ObjectClass object_class, Slot record,
             Tags tags) {
    const Slot slot =
        database.makeRecord(type, object_class, database.record(record).handle, std::move(tags));
    database.record(slot).owner = record;
    return slot;
}

void empty(Database& database, Slot record) {
    const std::vector<Slot> contents = database.block(record).contents;
    for (const Slot slot : contents)
        database.setErased(slot, true);
}

}  // namespace

Tags blockRecordTags(const Database& database) {
    Tags tags;
    if (database.version() < "AC1021") return tags;
    tags.emplace_back(70, int64_t{0});
    tags.emplace_back(280, int64_t{1});
    tags.emplace_back(281, int64_t{0});
    return tags;
}

void addBlockEnds(Database& database, Slot record, const AcGePoint3d& base) {
    const std::u16string name = database.symbolName(record);
    const Slot begin =
        makeEnd(database, "BLOCK", ObjectClass::BlockBegin, record, beginTags(name, base));
    const Slot end = makeEnd(database, "ENDBLK", ObjectClass::BlockEnd, record, endTags());
    Block& block = database.block(record);
    block.begin = begin;
    block.end = end;
}

Slot defineBlock(Database& database, std::u16string_view name, const AcGePoint3d& base) {
    const bool anonymous = name.starts_with(u'*');
    if (!anonymous && acdbSNValid(std::u16string(name).c_str(), 0) != RTNORM) return kNoSlot;
    Slot record = database.findSymbol("BLOCK_RECORD", name);
    if (record != kNoSlot) {
        empty(database, record);
        const Slot begin = database.block(record).begin;
        if (begin == kNoSlot) return kNoSlot;
        replacePoint(database.changeTags(begin), 10, base);
        database.touch(begin);
        return record;
    }
    record = database.makeSymbol("BLOCK_RECORD", name, blockRecordTags(database));
    if (record != kNoSlot) addBlockEnds(database, record, base);
    return record;
}

void noteAttributes(Database& database, Slot record) {
    const Block* block = database.findBlock(record);
    if (block == nullptr || block->begin == kNoSlot) return;
    bool asks = false;
    for (const Slot slot : block->contents)
        asks = asks || (!database.record(slot).erased && database.typeName(slot) == "ATTDEF");
    const int64_t flags = integerOf(database.tags(block->begin), 70, 0);
    const int64_t wanted = asks ? flags | kHasAttributes : flags & ~kHasAttributes;
    if (flags == wanted) return;
    replaceTag(database.changeTags(block->begin), Tag(70, wanted));
    database.touch(block->begin);
}

AcGePoint3d blockBase(Database& database, Slot record) {
    const Block* block = database.findBlock(record);
    if (block == nullptr || block->begin == kNoSlot) return {};
    return pointOf(database.tags(block->begin), 10);
}

std::u16string anonymousBlockName(Database& database, char16_t kind) {
    for (size_t number = database.blockRecords().size();; ++number) {
        std::u16string name = u"*";
        name += kind;
        name += kz::toUtf16(std::to_string(number));
        if (database.findSymbol("BLOCK_RECORD", name) == kNoSlot) return name;
    }
}

Slot blockOfReference(Database& database, Slot entity) {
    const std::string& type = database.typeName(entity);
    if (type != "INSERT" && type != "DIMENSION") return kNoSlot;
    const Tags& tags = database.tags(entity);
    const size_t at = findTag(tags, 2);
    return at < tags.size() ? database.findSymbol("BLOCK_RECORD", tags[at].text(database.codec()))
                            : kNoSlot;
}

bool containsBlock(Database& database, Slot outer, Slot inner) {
    std::unordered_set<Slot> seen = {outer};
    std::vector<Slot> waiting = {outer};
    while (!waiting.empty()) {
        const Slot record = waiting.back();
        waiting.pop_back();
        if (record == inner) return true;
        const Block* block = database.findBlock(record);
        if (block == nullptr) continue;
        for (const Slot slot : block->contents) {
            if (database.record(slot).erased) continue;
            const Slot next = blockOfReference(database, slot);
            if (next != kNoSlot && seen.insert(next).second) waiting.push_back(next);
        }
    }
    return false;
}

}  // namespace host
