/// Lisp data that a drawing keeps: under names of their own, or with an entity.
///
/// Each datum is an xrecord in a dictionary KZ_LDATA, whose entries are dictionaries by name in the
/// named objects dictionary, and the data themselves in the extension dictionary of an entity. Its
/// groups: 90 an integer, 40 a real, 1 a text (what is longer than 250 characters in front of it in
/// 3s), 300 a symbol, 330 an entity; a list stands between 102 "{" and 102 "}", with 102 "." in
/// front of what is behind its dot.
#include "db/database.h"
#include "kz_tls21an/text.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

constexpr std::u16string_view kStore = u"KZ_LDATA";
constexpr size_t kLongestText = 250;
/// Lists in lists.
constexpr int kDeepest = 5000;

// --- values -------------------------------------------------------------------------------------

void addText(std::u16string_view text, Tags& tags) {
    for (; text.size() > kLongestText; text.remove_prefix(kLongestText))
        tags.emplace_back(3, std::u16string(text.substr(0, kLongestText)));
    tags.emplace_back(1, std::u16string(text));
}

/// Appends the groups of a value. @return false for one that a drawing can't keep
bool addValue(Database& drawing, const Value& value, Tags& tags, int depth = 0) {
    if (value.isInteger()) {
        tags.emplace_back(90, int64_t{value.integer()});
    } else if (value.isReal()) {
        tags.emplace_back(40, value.real());
    } else if (value.isText()) {
        addText(value.text(), tags);
    } else if (value.isSymbol()) {
        tags.emplace_back(300, std::u16string(value.symbol()->name));
    } else if (value.is(Kind::EntityName)) {
        const AcDbObjectId id = Database::idFromName(value.as<EntityName>()->name);
        if (Database::find(id) != &drawing) return false;
        tags.push_back(Tag::handle(330, drawing.record(drawing.slotOf(id)).handle));
    } else if (value.isNil() || value.isCons()) {
        if (depth == kDeepest) return false;
        tags.emplace_back(102, u"{");
        const Value* rest = &value;
        for (; rest->isCons(); rest = &rest->cons()->cdr) {
            if (!addValue(drawing, rest->cons()->car, tags, depth + 1)) return false;
        }
        if (!rest->isNil()) {
            tags.emplace_back(102, u".");
            if (!addValue(drawing, *rest, tags, depth + 1)) return false;
        }
        tags.emplace_back(102, u"}");
    } else {
        return false;
    }
    return true;
}

/// Reads what addValue wrote; of other groups, what it makes of them.
class ValueReader {
  public:
    ValueReader(Interpreter& in, const Database& drawing, const Tags& tags, size_t at)
        : in_(in), drawing_(drawing), tags_(tags), at_(at) {}

    Value read(int depth = 0) {
        std::u16string text;
        for (; at_ < tags_.size() && tags_[at_].code() == 3; ++at_)
            text += textAt();
        if (at_ >= tags_.size()) return {};
        const Tag& tag = tags_[at_];
        switch (tag.code()) {
            case 90:
                ++at_;
                return Value::integer(static_cast<int32_t>(tag.integer()));
            case 40:
                ++at_;
                return Value::real(tag.real());
            case 300:
                text = textAt();
                ++at_;
                return Value::share(in_.symbols.intern(text));
            case 330: {
                ads_name name;
                ++at_;
                drawing_.nameOf(drawing_.findHandle(tag.handleValue()), name);
                return ads_name_nil(name) ? Value() : makeEntityName(name);
            }
            case 102:
                ++at_;
                return depth < kDeepest ? readList(depth) : Value();
            default:
                text += textAt();
                ++at_;
                return makeText(text);
        }
    }

  private:
    std::u16string textAt() const { return tags_[at_].text(drawing_.codec()); }
    bool isMark(std::u16string_view mark) const {
        return tags_[at_].code() == 102 && textAt() == mark;
    }

    Value readList(int depth) {
        ListBuilder list;
        while (at_ < tags_.size() && !isMark(u"}") && !isMark(u"."))
            list.add(read(depth + 1));
        Value rest;
        if (at_ < tags_.size() && isMark(u".")) {
            ++at_;
            rest = read(depth + 1);
        }
        if (at_ < tags_.size()) ++at_;
        return list.take(std::move(rest));
    }

    Interpreter& in_;
    const Database& drawing_;
    const Tags& tags_;
    size_t at_;
};

// --- places -------------------------------------------------------------------------------------

Slot newDictionary(Database& drawing) {
    return drawing.makeRecord("DICTIONARY", ObjectClass::Object, 0, dictionaryTags());
}

/// The dictionary under a key of another; with `make` a new one where there is none.
Slot subDictionary(Database& drawing, Slot dictionary, std::u16string_view key, bool make) {
    if (dictionary == kNoSlot) return kNoSlot;
    const Slot present = drawing.dictionaryEntry(dictionary, key);
    if (present != kNoSlot || !make) return drawing.isDictionary(present) ? present : kNoSlot;
    const Slot made = newDictionary(drawing);
    return drawing.dictionaryAdd(dictionary, key, made) == Acad::eOk ? made : kNoSlot;
}

/// Where the data of a name or of an entity lie.
Slot storeOf(Interpreter& in, Database& drawing, const Value& place, bool make) {
    if (!place.is(Kind::EntityName)) {
        const std::u16string name(textArg(in, place));
        const Slot all = subDictionary(drawing, drawing.needNamedObjects(), kStore, make);
        return subDictionary(drawing, all, name, make);
    }
    const AcDbObjectId id = Database::idFromName(place.as<EntityName>()->name);
    if (Database::find(id) != &drawing) in.badArgument(u"lentityp", place);
    const Slot object = drawing.slotOf(id);
    if (drawing.record(object).erased) in.badArgument(u"lentityp", place);
    Slot extension = drawing.extension(object);
    if (extension == kNoSlot && make) {
        if (drawing.isOnLockedLayer(object)) return kNoSlot;
        const Slot made = newDictionary(drawing);
        if (drawing.addExtension(object, made)) extension = made;
    }
    return subDictionary(drawing, extension, kStore, make);
}

Database& drawingOf(Interpreter& in) {
    Database* drawing = currentDatabase();
    if (drawing == nullptr) in.fail(u"no drawing is open");
    return *drawing;
}

Value valueOf(Interpreter& in, Database& drawing, Slot record) {
    const Tags& tags = drawing.tags(record);
    size_t at = findTag(tags, 100);
    at += at < tags.size() ? 1 : 0;
    if (at < tags.size() && tags[at].code() == 280) ++at;
    return ValueReader(in, drawing, tags, at).read();
}

// --- functions ----------------------------------------------------------------------------------

Value put(Interpreter& in, Args args) {
    Database& drawing = drawingOf(in);
    const std::u16string key(textArg(in, args[1]));
    Tags groups;
    groups.emplace_back(100, u"AcDbXrecord");
    groups.emplace_back(280, int64_t{1});
    if (!addValue(drawing, args[2], groups)) in.failWith(u"bad argument value:", args[2]);
    const Slot store = storeOf(in, drawing, args[0], true);
    if (store == kNoSlot) in.failWith(u"bad argument value:", args[0]);
    const Slot present = drawing.dictionaryEntry(store, key);
    if (present != kNoSlot) {
        drawing.dictionaryRemove(store, key);
        drawing.setErased(present, true);
    }
    const Slot made = drawing.makeRecord("XRECORD", ObjectClass::Object, 0, std::move(groups));
    if (drawing.dictionaryAdd(store, key, made) != Acad::eOk)
        in.failWith(u"bad argument value:", args[1]);
    return args[2];
}

Value get(Interpreter& in, Args args) {
    Database& drawing = drawingOf(in);
    const std::u16string key(textArg(in, args[1]));
    const Slot store = storeOf(in, drawing, args[0], false);
    const Slot found = store == kNoSlot ? kNoSlot : drawing.dictionaryEntry(store, key);
    return found == kNoSlot ? optionalArg(args, 2) : valueOf(in, drawing, found);
}

Value remove(Interpreter& in, Args args) {
    Database& drawing = drawingOf(in);
    const std::u16string key(textArg(in, args[1]));
    const Slot store = storeOf(in, drawing, args[0], false);
    const Slot found = store == kNoSlot ? kNoSlot : drawing.dictionaryEntry(store, key);
    if (found == kNoSlot) return {};
    drawing.dictionaryRemove(store, key);
    drawing.setErased(found, true);
    return in.truth(true);
}

Value list(Interpreter& in, Args args) {
    Database& drawing = drawingOf(in);
    const Slot store = storeOf(in, drawing, args[0], false);
    ListBuilder data;
    if (store == kNoSlot) return {};
    for (size_t i = drawing.dictionaryNext(store, 0); i != DictionaryData::kNone;
         i = drawing.dictionaryNext(store, i + 1)) {
        const std::u16string key = drawing.dictionary(store)->entry(i).key;
        data.add(makeCons(makeText(key), valueOf(in, drawing, drawing.dictionaryObject(store, i))));
    }
    return data.take();
}

Value test(Interpreter& in, Args args) {
    Tags groups;
    return in.truth(addValue(drawingOf(in), args[0], groups));
}

const Builtin kRows[] = {
    {"vlax-ldata-put", 3, 4, put, "(vlax-ldata-put place key value [private])",
     "Keeps a value in the drawing, under a name or with an entity; gives the value."},
    {"vlax-ldata-get", 2, 4, get, "(vlax-ldata-get place key [default [private]])",
     "The value that the drawing keeps; default, or nil, for none."},
    {"vlax-ldata-delete", 2, 3, remove, "(vlax-ldata-delete place key [private])",
     "Drops a value that the drawing keeps; nil when there is none."},
    {"vlax-ldata-list", 1, 2, list, "(vlax-ldata-list place [private])",
     "Pairs of keys and values that are kept under a name or with an entity."},
    {"vlax-ldata-test", 1, 1, test, "(vlax-ldata-test value)",
     "T for a value that a drawing can keep: numbers, texts, symbols, entities, and lists of "
     "them."},
};

}  // namespace

std::span<const Builtin> ldataBuiltins() {
    return kRows;
}

}  // namespace host::lisp
