/// Filters of selections: reading them and matching entities.
#include "edit/select_filter.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "base/resbuf.h"
#include "base/wildcard.h"
#include "dxf/pairs.h"
#include "kz_tls21an/text.h"

namespace host {

using View = std::u16string_view;

/// The groups of the entity that is looked at. One that nobody has decoded yet is read into a
/// buffer, so that a search through a large drawing doesn't keep it all in its decoded form.
class EntityGroups {
  public:
    void look(Database& drawing, Slot entity) {
        drawing_ = &drawing;
        entity_ = entity;
        tags_ = nullptr;
    }
    Database& drawing() const { return *drawing_; }
    Slot entity() const { return entity_; }
    View type() {
        type_ = kz::toUtf16(drawing_->typeName(entity_));
        return type_;
    }
    const Tags& tags() {
        if (tags_ == nullptr) tags_ = &decode();
        return *tags_;
    }

  private:
    const Tags& decode() {
        const ObjectRecord& record = drawing_->record(entity_);
        const bool decoded = record.data != nullptr && record.data->has_tags;
        if (decoded || record.bytes == nullptr) return drawing_->tags(entity_);
        buffer_.clear();
        dxf::PairCursor cursor(record.bytes, record.bytes + record.xdata_offset);
        for (dxf::Pair pair; cursor.next(pair);) {
            if (pair.code != 999) buffer_.emplace_back(pair);
        }
        return buffer_;
    }

    Database* drawing_ = nullptr;
    Slot entity_ = kNoSlot;
    const Tags* tags_ = nullptr;
    Tags buffer_;
    std::u16string type_;
};

namespace {

/// Numbers closer than this are equal.
constexpr double kTolerance = 1e-10;
/// How deep groups of tests may stand in each other.
constexpr int kMaxDepth = 64;

constexpr int kOperator = -4;
constexpr int kXData = -3;
constexpr int kApplication = 1001;

enum class Relation {
    Any,
    Equal,
    Unequal,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Mask,
    MaskEqual
};

struct RelationName {
    View name;
    Relation relation;
};
constexpr RelationName kRelations[] = {
    {u"*", Relation::Any},        {u"=", Relation::Equal},      {u"!=", Relation::Unequal},
    {u"/=", Relation::Unequal},   {u"<>", Relation::Unequal},   {u"<", Relation::Less},
    {u"<=", Relation::LessEqual}, {u">", Relation::Greater},    {u">=", Relation::GreaterEqual},
    {u"&", Relation::Mask},       {u"&=", Relation::MaskEqual},
};

std::optional<Relation> relationOf(View name) {
    for (const RelationName& row : kRelations) {
        if (row.name == name) return row.relation;
    }
    return std::nullopt;
}

bool isOrdered(Relation relation, double value, double limit) {
    const bool equal = std::fabs(value - limit) <= kTolerance;
    switch (relation) {
        case Relation::Any:
            return true;
        case Relation::Equal:
            return equal;
        case Relation::Unequal:
            return !equal;
        case Relation::Less:
            return !equal && value < limit;
        case Relation::LessEqual:
            return equal || value < limit;
        case Relation::Greater:
            return !equal && value > limit;
        case Relation::GreaterEqual:
            return equal || value > limit;
        default:
            return false;
    }
}

bool isOrdered(Relation relation, int64_t value, int64_t limit) {
    if (relation == Relation::Mask) return (value & limit) != 0;
    if (relation == Relation::MaskEqual) return (value & limit) == limit;
    // Integers of drawings are far below the tolerance's reach.
    return isOrdered(relation, static_cast<double>(value), static_cast<double>(limit));
}

/// What an entity has that lacks a group of this code.
struct Absent {
    int code;
    View text;
    double number;
};
constexpr Absent kAbsent[] = {
    {6, u"BYLAYER", 0.0}, {8, u"0", 0.0}, {39, u"", 0.0}, {48, u"", 1.0},
    {60, u"", 0.0},       {62, u"", 256}, {67, u"", 0.0}, {370, u"", -1},
};

const Absent* absentValue(int code) {
    for (const Absent& row : kAbsent) {
        if (row.code == code) return &row;
    }
    return nullptr;
}

/// Name of the layout that shows a space.
std::u16string layoutOf(EntityGroups& entity) {
    Database& drawing = entity.drawing();
    const Slot space = drawing.record(drawing.mainEntity(entity.entity())).owner;
    if (space == drawing.modelSpace()) return u"Model";
    const Tags& groups = drawing.tags(space);
    const size_t at = findTag(groups, 340);
    const Slot layout = at < groups.size() ? drawing.findHandle(groups[at].handleValue()) : kNoSlot;
    if (layout == kNoSlot) return {};
    const Tags& shown = drawing.tags(layout);
    for (size_t i = 0; i < shown.size(); ++i) {
        if (shown[i].code() != 100 || shown[i].text(drawing.codec()) != u"AcDbLayout") continue;
        const size_t name = findTag(shown, 1, i);
        return name < shown.size() ? shown[name].text(drawing.codec()) : std::u16string();
    }
    return {};
}

struct Point {
    double at[3] = {0, 0, 0};
};

/// The point whose x is the tag at `i`.
Point pointAt(const Tags& tags, size_t i) {
    Point point;
    for (int axis = 0; axis < 3 && i < tags.size(); ++axis, ++i) {
        if (axis > 0 && tags[i].code() != tags[i - 1].code() + 10) break;
        point.at[axis] = tags[i].real();
    }
    return point;
}

}  // namespace

/// A test of one group, or of the tests in it.
struct SelectFilter::Test {
    enum class Kind { All, Some, One, None, Group, Application };
    Kind kind = Kind::All;
    std::vector<Test> parts;

    int code = 0;
    ValueKind value = ValueKind::None;
    std::array<Relation, 3> relations{Relation::Equal, Relation::Equal, Relation::Equal};
    bool whole = true;  ///< of a point: one relation for all of it
    std::u16string text;
    Point point;  ///< numbers stand in its first coordinate
    int64_t integer = 0;
    bool flat = false;  ///< a point without z

    bool matches(EntityGroups& entity) const {
        const auto met = [&entity](const Test& part) { return part.matches(entity); };
        switch (kind) {
            case Kind::All:
                return std::all_of(parts.begin(), parts.end(), met);
            case Kind::Some:
                return std::any_of(parts.begin(), parts.end(), met);
            case Kind::One:
                return std::count_if(parts.begin(), parts.end(), met) == 1;
            case Kind::None:
                return std::none_of(parts.begin(), parts.end(), met);
            case Kind::Application:
                return hasApplication(entity);
            case Kind::Group:
                break;
        }
        return hasGroup(entity);
    }

  private:
    bool hasApplication(EntityGroups& entity) const {
        const XData& data = entity.drawing().xdata(entity.entity());
        return std::any_of(data.begin(), data.end(), [this](const AppData& app) {
            return wildcardMatchNoCase(app.app, text);
        });
    }

    bool hasGroup(EntityGroups& entity) const {
        if (relations[0] == Relation::Any && value != ValueKind::Point) return true;
        if (code == 0) return fitsText(entity.type());
        if (code == 410) return fitsText(layoutOf(entity));
        const Tags& tags = entity.tags();
        bool found = false;
        for (size_t i = findTag(tags, code); i < tags.size(); i = findTag(tags, code, i + 1)) {
            found = true;
            if (fits(entity, tags, i)) return true;
        }
        return !found && fitsAbsent();
    }

    bool fits(EntityGroups& entity, const Tags& tags, size_t i) const {
        switch (value) {
            case ValueKind::Text:
                return fitsText(tags[i].text(entity.drawing().codec()));
            case ValueKind::Point:
                return fitsPoint(pointAt(tags, i));
            case ValueKind::Real:
                return isOrdered(relations[0], tags[i].real(), point.at[0]);
            case ValueKind::Name:
                return isOrdered(relations[0], static_cast<int64_t>(tags[i].handleValue()),
                                 integer);
            default:
                return isOrdered(relations[0], tags[i].integer(), integer);
        }
    }

    bool fitsText(View found) const {
        const bool match = wildcardMatchNoCase(found, text);
        if (relations[0] == Relation::Equal) return match;
        if (relations[0] == Relation::Unequal) return !match;
        const int order = kz::compareNoCase(found, text);
        return isOrdered(relations[0], static_cast<double>(order), 0.0);
    }

    bool fitsPoint(const Point& found) const {
        const int axes = flat ? 2 : 3;
        bool equal = true;
        bool ordered = true;
        for (int i = 0; i < axes; ++i) {
            equal = equal && isOrdered(Relation::Equal, found.at[i], point.at[i]);
            ordered =
                ordered && isOrdered(relations[static_cast<size_t>(i)], found.at[i], point.at[i]);
        }
        if (!whole) return ordered;
        return relations[0] == Relation::Unequal ? !equal : equal;
    }

    bool fitsAbsent() const {
        if (code == 210) return fitsPoint({{0, 0, 1}});
        const Absent* absent = absentValue(code);
        if (absent == nullptr) return false;
        if (value == ValueKind::Text) return fitsText(absent->text);
        if (value == ValueKind::Real) return isOrdered(relations[0], absent->number, point.at[0]);
        return isOrdered(relations[0], static_cast<int64_t>(absent->number), integer);
    }
};

namespace {

uint64_t handleOf(const ads_name name) {
    const AcDbObjectId id = Database::idFromName(name);
    const Database* drawing = Database::find(id);
    return drawing == nullptr ? 0 : drawing->record(drawing->slotOf(id)).handle;
}

/// Reads a chain into tests. Test is a type of the filter's own, so it comes as an argument.
template <class Test>
class FilterReader {
  public:
    explicit FilterReader(const resbuf* chain) : node_(chain) {}

    bool readAll(Test& all) { return readParts(all, {}, 0) && node_ == nullptr; }

  private:
    using Kind = typename Test::Kind;
    struct Bracket {
        View open;
        View close;
        Kind kind;
        size_t parts;  ///< how many it must hold; 0 for any number from 1 on
    };
    static constexpr Bracket kBrackets[] = {
        {u"<AND", u"AND>", Kind::All, 0},
        {u"<OR", u"OR>", Kind::Some, 0},
        {u"<XOR", u"XOR>", Kind::One, 2},
        {u"<NOT", u"NOT>", Kind::None, 1},
    };

    static View textOf(const resbuf& node) {
        return node.resval.rstring == nullptr ? View() : View(node.resval.rstring);
    }

    /// Reads up to the end of the chain, or to the operator that closes a group.
    bool readParts(Test& into, View close, int depth) {
        while (node_ != nullptr) {
            if (node_->restype == kOperator) {
                const std::u16string name = kz::toUpper(textOf(*node_));
                node_ = node_->rbnext;
                if (name == close) return true;
                if (!readOperator(into, name, depth)) return false;
            } else if (node_->restype == kXData) {
                node_ = node_->rbnext;
                if (!readApplications(into)) return false;
            } else if (!readGroup(into, Test())) {
                return false;
            }
        }
        return close.empty();
    }

    bool readOperator(Test& into, View name, int depth) {
        for (const Bracket& bracket : kBrackets) {
            if (bracket.open != name) continue;
            Test& test = into.parts.emplace_back();
            test.kind = bracket.kind;
            if (depth == kMaxDepth || !readParts(test, bracket.close, depth + 1)) return false;
            return bracket.parts == 0 ? !test.parts.empty() : test.parts.size() == bracket.parts;
        }
        Test test;
        return readRelations(test, name) && node_ != nullptr && readGroup(into, std::move(test));
    }

    /// One relation, or one for each coordinate; those that are left out are met by any number.
    static bool readRelations(Test& test, View text) {
        test.whole = text.find(u',') == View::npos;
        if (!test.whole) test.relations.fill(Relation::Any);
        for (size_t i = 0; i < test.relations.size(); ++i) {
            const size_t comma = text.find(u',');
            const std::optional<Relation> relation = relationOf(text.substr(0, comma));
            if (!relation) return false;
            test.relations[i] = *relation;
            if (comma == View::npos) return true;
            text.remove_prefix(comma + 1);
        }
        return false;
    }

    bool readGroup(Test& into, Test test) {
        const resbuf& node = *node_;
        test.kind = Kind::Group;
        test.code = node.restype == RTDXF0 ? 0 : node.restype;
        test.value = valueKind(test.code);
        if (test.code < 0 || test.code >= 1000 || !readValue(node, test)) return false;
        if (!relationsFit(test)) return false;
        into.parts.push_back(std::move(test));
        node_ = node_->rbnext;
        return true;
    }

    static bool readValue(const resbuf& node, Test& test) {
        switch (test.value) {
            case ValueKind::Text:
                test.text = textOf(node);
                return true;
            case ValueKind::Point:
                std::copy(node.resval.rpoint, node.resval.rpoint + 3, test.point.at);
                test.flat = isPoint2d(&node);
                return true;
            case ValueKind::Real:
                test.point.at[0] = node.resval.rreal;
                return true;
            case ValueKind::Short:
                test.integer = node.resval.rint;
                return true;
            case ValueKind::Long:
                test.integer = node.resval.rlong;
                return true;
            case ValueKind::Int64:
                test.integer = node.resval.mnInt64;
                return true;
            case ValueKind::Name:
                test.integer = static_cast<int64_t>(handleOf(node.resval.rlname));
                return true;
            default:
                return false;
        }
    }

    /// Bits can be asked of integers only, several relations of points only. A relation of order
    /// that stands alone in front of a point is that of its x.
    static bool relationsFit(Test& test) {
        const bool is_point = test.value == ValueKind::Point;
        if (!test.whole) return is_point && bitsFit(test);
        const Relation relation = test.relations[0];
        if (is_point && relation != Relation::Equal && relation != Relation::Unequal) {
            test.relations = {relation, Relation::Any, Relation::Any};
            test.whole = false;
        }
        return bitsFit(test);
    }

    static bool bitsFit(const Test& test) {
        const bool integers = test.value == ValueKind::Short || test.value == ValueKind::Long ||
                              test.value == ValueKind::Int64;
        return integers ||
               std::none_of(test.relations.begin(), test.relations.end(), [](Relation relation) {
                   return relation == Relation::Mask || relation == Relation::MaskEqual;
               });
    }

    bool readApplications(Test& into) {
        bool any = false;
        for (; node_ != nullptr && node_->restype == kApplication; node_ = node_->rbnext) {
            Test& test = into.parts.emplace_back();
            test.kind = Kind::Application;
            test.text = textOf(*node_);
            any = true;
        }
        return any;
    }

    const resbuf* node_;
};

}  // namespace

SelectFilter::SelectFilter()
    : all_(std::make_unique<Test>()), groups_(std::make_unique<EntityGroups>()) {}
SelectFilter::~SelectFilter() = default;

bool SelectFilter::read(const resbuf* chain) {
    *all_ = Test();
    if (FilterReader<Test>(chain).readAll(*all_)) return true;
    // One of no tests is met by nothing.
    *all_ = Test();
    all_->kind = Test::Kind::Some;
    return false;
}

bool SelectFilter::matches(Database& drawing, Slot entity) const {
    groups_->look(drawing, entity);
    return all_->matches(*groups_);
}

}  // namespace host
