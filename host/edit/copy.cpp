/// Copies of entities.
#include "edit/copy.h"

#include <algorithm>

#include "edit/block_definition.h"
#include "edit/tag_values.h"
#include "edit/transform.h"

namespace host {
namespace {

/// The groups of an entity that a copy has too: without type, handle, owner, what stands in braces,
/// and objects that only the original may own.
Tags ownGroups(const Tags& tags) {
    Tags out;
    bool in_class = false;
    bool in_braces = false;
    for (const Tag& tag : tags) {
        const int code = tag.code();
        in_class = in_class || code == 100;
        if (code == 102) {
            in_braces = !in_braces;
            continue;
        }
        const bool own = code == 0 || code == 360 || (!in_class && (code == 5 || code == 330));
        if (!in_braces && !own) out.push_back(tag);
    }
    return out;
}

/// An entity of paper space says so.
void setPaperFlag(Tags& tags, bool paper) {
    std::erase_if(tags, [](const Tag& tag) { return tag.code() == 67 || tag.code() == 410; });
    const size_t marker = findTag(tags, 100);
    if (!paper || marker >= tags.size()) return;
    tags.emplace(tags.begin() + static_cast<std::ptrdiff_t>(marker) + 1, 67, int64_t{1});
}

/// Cuts what ties an entity to others that are not copied with it.
void untie(std::string_view type, Tags& tags) {
    if (type == "HATCH") {
        for (Tag& tag : tags) {
            if (tag.code() == 71) tag = Tag(71, int64_t{0});
        }
        // 97 also counts the fit points of splines; the sources stand right behind theirs.
        for (size_t i = 0; i + 1 < tags.size(); ++i) {
            if (tags[i].code() == 97 && tags[i + 1].code() == 330) tags[i] = Tag(97, int64_t{0});
        }
        std::erase_if(tags, [](const Tag& tag) { return tag.code() == 330; });
    } else if (type == "LEADER") {
        constexpr int64_t kNoAnnotation = 3;
        std::erase_if(tags, [](const Tag& tag) { return tag.code() == 340; });
        replaceTag(tags, Tag(73, kNoAnnotation));
    }
}

// --- extension dictionaries ---------------------------------------------------------------------

Slot copyObject(Database& database, Slot source);

/// A copy that nothing owns yet, like all of these.
Slot copyDictionary(Database& database, Slot source) {
    Tags tags = dictionaryTags();
    const size_t hard = findTag(database.tags(source), 280);
    if (hard < database.tags(source).size()) {
        tags.emplace(tags.begin() + 1, 280, database.tags(source)[hard].integer());
    }
    const Slot copy = database.makeRecord("DICTIONARY", ObjectClass::Object, 0, std::move(tags));
    for (size_t i = database.dictionaryNext(source, 0); i != DictionaryData::kNone;
         i = database.dictionaryNext(source, i + 1)) {
        const std::u16string key = database.dictionary(source)->entry(i).key;
        const Slot object = copyObject(database, database.dictionaryObject(source, i));
        database.dictionaryAdd(copy, key, object);
    }
    return copy;
}

Slot copyObject(Database& database, Slot source) {
    if (database.isDictionary(source)) return copyDictionary(database, source);
    const Tags& tags = database.tags(source);
    const size_t marker = findTag(tags, 100);
    Tags copied(tags.begin() + static_cast<std::ptrdiff_t>(marker), tags.end());
    const std::string type = database.typeName(source);
    const Slot copy = database.makeRecord(type, ObjectClass::Object, 0, std::move(copied));
    if (!database.xdata(source).empty()) {
        XData xdata = database.xdata(source);
        database.changeXData(copy) = std::move(xdata);
    }
    return copy;
}

void copyExtension(Database& database, Slot source, Slot copy) {
    const Slot extension = database.extension(source);
    if (!database.isDictionary(extension)) return;
    database.addExtension(copy, copyDictionary(database, extension));
}

// --- entities -----------------------------------------------------------------------------------

/// The copy of one object, with the XDATA, owned by a block or a main entity.
Slot copyRecord(Database& database, Slot source, Slot owner, bool paper) {
    const std::string type = database.typeName(source);
    Tags tags = copiedGroups(type, database.tags(source), paper);
    const ObjectClass object_class = database.record(source).object_class;
    const Slot copy =
        database.makeRecord(type, object_class, database.record(owner).handle, std::move(tags));
    database.record(copy).owner = owner;
    if (!database.xdata(source).empty()) {
        XData xdata = database.xdata(source);
        database.changeXData(copy) = std::move(xdata);
    }
    copyExtension(database, source, copy);
    return copy;
}

/// A picture of its own for the copy of a dimension.
void copyPicture(Database& database, Slot dimension) {
    const Slot picture = blockOfReference(database, dimension);
    const Block* drawn = database.findBlock(picture);
    if (drawn == nullptr || !database.symbolName(picture).starts_with(u"*D")) return;
    const std::vector<Slot> contents = drawn->contents;
    const std::u16string name = anonymousBlockName(database, u'D');
    const Slot block = defineBlock(database, name, blockBase(database, picture));
    for (const Slot slot : contents) {
        const ObjectRecord& record = database.record(slot);
        if (!record.erased && record.object_class == ObjectClass::Entity) {
            copyEntity(database, slot, block);
        }
    }
    replaceTag(database.changeTags(dimension), Tag(2, name));
}

/// Viewports of a layout go by different numbers.
void numberViewport(Database& database, Slot viewport, Slot block) {
    int64_t greatest = 1;
    for (const Slot slot : database.block(block).contents) {
        if (database.record(slot).erased || database.typeName(slot) != "VIEWPORT") continue;
        greatest = std::max(greatest, integerOf(database.tags(slot), 69, 0));
    }
    replaceTag(database.changeTags(viewport), Tag(69, greatest + 1));
}

}  // namespace

Tags copiedGroups(std::string_view type, const Tags& tags, bool paper) {
    Tags copied = ownGroups(tags);
    setPaperFlag(copied, paper);
    untie(type, copied);
    return copied;
}

Slot copyEntity(Database& database, Slot entity, Slot block) {
    const std::vector<Slot> parts = partsOf(database, entity);
    const bool paper = block == database.paperSpace();
    const Slot copy = copyRecord(database, entity, block, paper);
    std::vector<Slot> copies;
    copies.reserve(parts.size());
    for (const Slot part : parts)
        copies.push_back(copyRecord(database, part, copy, paper));
    database.appendEntity(block, copy);
    for (const Slot part : copies)
        database.appendEntity(block, part);
    if (database.typeName(copy) == "DIMENSION") copyPicture(database, copy);
    if (database.typeName(copy) == "VIEWPORT") numberViewport(database, copy, block);
    return copy;
}

}  // namespace host
