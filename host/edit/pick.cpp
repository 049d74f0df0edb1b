/// Picks. The pick box is a square of the display system; PICKBOX is half of its side [pixels].
#include "edit/pick.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

#include "acad/ed.h"
#include "base/faults.h"
#include "edit/ask.h"
#include "edit/drawing_state.h"
#include "edit/entity_system.h"
#include "edit/shapes.h"
#include "edit/spatial_index.h"
#include "edit/tag_values.h"
#include "edit/typed_points.h"

namespace host {
namespace {

class PickVisitor : public ShapeVisitor {
  public:
    /// A block that is open: the insertion that shows it, what it lies in, and the way out of it.
    struct Inside {
        Picked::Container insertion;
        Database* drawing;
        AcGeMatrix3d to_display;
    };
    struct Hit {
        Picked::Container entity;
        size_t curve;  ///< the next of the entity's curves
        std::vector<Inside> inside;
    };

    PickVisitor(Database& database, const AcGePoint3d& place, double half)
        : database_(database), place_(place), half_(half * (1 + 1e-9)) {
        const AcGePoint3d corners[] = {corner(-1, -1), corner(1, -1), corner(1, 1), corner(-1, 1)};
        for (size_t i = 0; i < 4; ++i)
            sides_.push_back(Curve::line(corners[i], corners[(i + 1) % 4]));
    }

    void begin(Slot entity) override {
        open_.emplace_back();
        open_.back().entity = {&drawing(), entity};
    }

    void curve(const Curve& curve, CurveRole) override {
        Open& entity = open_.back();
        const double distance = curve.nearest(place_.x, place_.y).distance;
        if (distance < entity.nearest) {
            entity.nearest = distance;
            entity.curve = entity.curves;
        }
        ++entity.curves;
        entity.shows = true;
        entity.hit = entity.hit || touches(curve, distance);
        if (isFilled(entity.entity)) entity.frame.push_back(curve);
    }

    void mark(MarkKind kind, const AcGePoint3d& point) override {
        Open& entity = open_.back();
        const bool near =
            std::fabs(point.x - place_.x) <= half_ && std::fabs(point.y - place_.y) <= half_;
        if (kind == MarkKind::Node) {
            entity.shows = true;
            entity.hit = entity.hit || near;
        } else if (kind == MarkKind::Insertion) {
            entity.anchored = entity.anchored || near;
        }
    }

    bool enters(const AcDbExtents& box, int) override {
        open_.back().shows = true;
        return place_.x >= box.minPoint().x - half_ && place_.x <= box.maxPoint().x + half_ &&
               place_.y >= box.minPoint().y - half_ && place_.y <= box.maxPoint().y + half_;
    }
    void enterBlock(Database& inner, const AcGeMatrix3d& to) override {
        inside_.push_back({open_.back().entity, &inner, to});
    }
    void leaveBlock() override { inside_.pop_back(); }
    /// A large attached drawing must not be walked over at each pick.
    bool chooses(Database& inner, const AcGeMatrix3d& to, std::vector<Slot>& chosen) override {
        open_.back().shows = true;
        chosen = entitiesIn(inner, inner.modelSpace(), to, {place_.x - half_, place_.y - half_},
                            {place_.x + half_, place_.y + half_});
        std::reverse(chosen.begin(), chosen.end());
        return true;
    }

    void end(Slot) override {
        const Open entity = std::move(open_.back());
        open_.pop_back();
        if (!open_.empty() && entity.shows) open_.back().shows = true;
        // What has nothing to show is picked by its place.
        const bool hit =
            entity.hit || (!entity.shows && entity.anchored) || surrounds(entity.frame);
        if (hit) found_ = Hit{entity.entity, entity.curve, inside_};  // the later, the nearer
    }

    const std::optional<Hit>& found() const { return found_; }

  private:
    struct Open {
        Picked::Container entity = {nullptr, kNoSlot};
        bool shows = false;     ///< a curve or a point, or something inside of it does
        bool hit = false;       ///< one of them is in the pick box
        bool anchored = false;  ///< its insertion point is
        size_t curves = 0;
        double nearest = std::numeric_limits<double>::infinity();
        size_t curve = 0;
        std::vector<Curve> frame;
    };

    Database& drawing() { return inside_.empty() ? database_ : *inside_.back().drawing; }

    AcGePoint3d corner(int x, int y) const {
        return {place_.x + x * half_, place_.y + y * half_, place_.z};
    }

    bool touches(const Curve& curve, double distance) const {
        if (distance <= half_) return true;
        if (distance > half_ * std::numbers::sqrt2) return false;
        return std::any_of(sides_.begin(), sides_.end(),
                           [&](const Curve& side) { return !curve.crossings(side).empty(); });
    }

    static bool isFilled(const Picked::Container& entity) {
        const std::string& type = entity.drawing->typeName(entity.entity);
        return type == "TEXT" || type == "MTEXT" || type == "ATTRIB" || type == "ATTDEF" ||
               type == "HATCH" || type == "SOLID" || type == "TRACE";
    }

    /// True when a frame goes around the place: a way out of it crosses it an odd number of times.
    bool surrounds(const std::vector<Curve>& frame) const {
        if (frame.empty()) return false;
        AcDbExtents box;
        for (const Curve& part : frame)
            box.addExt(part.extents());
        const double reach =
            (box.maxPoint() - box.minPoint()).length() + (box.minPoint() - place_).length();
        // A direction that frames are unlikely to have corners in.
        const AcGeVector3d out = AcGeVector3d(0.8137, 0.5813, 0.0) * (2 * reach);
        const Curve way = Curve::line(place_, place_ + out);
        size_t crossings = 0;
        for (const Curve& part : frame)
            crossings += part.crossings(way).size();
        return crossings % 2 == 1;
    }

    Database& database_;
    AcGePoint3d place_;
    double half_;
    std::vector<Curve> sides_;
    std::vector<Open> open_;
    std::vector<Inside> inside_;
    std::optional<Hit> found_;
};

/// The vertex of a polyline that a pick of its curves means: the start of the segment, on a mesh
/// the next one.
Slot pickedVertex(const PickVisitor::Hit& hit, const AcGeMatrix3d& to_display,
                  const AcGePoint3d& place) {
    constexpr int64_t kMeshOrFaces = 16 | 64;
    Database& drawing = *hit.entity.drawing;
    const std::vector<Slot> vertices = drawnVertices(drawing, hit.entity.entity);
    if (vertices.empty()) return hit.entity.entity;
    const bool net = (integerOf(drawing.tags(hit.entity.entity), 70, 0) & kMeshOrFaces) != 0;
    if (!net) return vertices[std::min(hit.curve, vertices.size() - 1)];
    const auto away = [&](Slot vertex) {
        const AcGePoint3d point = to_display * pointOf(drawing.tags(vertex), 10);
        return std::hypot(point.x - place.x, point.y - place.y);
    };
    return *std::min_element(vertices.begin(), vertices.end(),
                             [&](Slot a, Slot b) { return away(a) < away(b); });
}

Picked describe(Slot main, const PickVisitor::Hit& hit, const AcGeMatrix3d& to_display,
                const AcGePoint3d& place) {
    Picked picked;
    picked.main = main;
    picked.drawing = hit.entity.drawing;
    picked.part = hit.entity.entity;
    const bool nested = !hit.inside.empty();
    const AcGeMatrix3d& way = nested ? hit.inside.back().to_display : to_display;
    if (nested) picked.to_world = to_display.inverse() * way;
    for (auto block = hit.inside.rbegin(); block != hit.inside.rend(); ++block)
        picked.containers.push_back(block->insertion);
    if (picked.drawing->typeName(picked.part) == "POLYLINE") {
        picked.part = pickedVertex(hit, way, place);
    }
    return picked;
}

// --- questions ----------------------------------------------------------------------------------

/// An entity that is named and not picked.
Picked named(Database& database, Slot entity) {
    Picked picked;
    picked.main = database.mainEntity(entity);
    picked.drawing = &database;
    picked.part = entity;
    return picked;
}

std::optional<Picked> namedBy(Database& database, const ads_name name) {
    const AcDbObjectId id = Database::idFromName(name);
    if (Database::find(id) != &database) return std::nullopt;
    const Slot slot = database.slotOf(id);
    const ObjectRecord& record = database.record(slot);
    const bool entity =
        record.object_class == ObjectClass::Entity || record.object_class == ObjectClass::SubEntity;
    return entity && !record.erased ? std::optional(named(database, slot)) : std::nullopt;
}

/// Takes what an answer picks or names. @return kAskAgain for an answer that does neither
int takeAnswer(Database& database, const InputToken& token, std::optional<Picked>& picked,
               ads_point point) {
    ads_point from;
    lastPoint(from);
    if (token.kind == InputToken::Kind::Entity) {
        picked = namedBy(database, token.name);
    } else if (token.kind == InputToken::Kind::Text &&
               !Keywords(u"Last").match(token.text).empty()) {
        const Slot last = database.lastEntity(currentSpace(database));
        if (last != kNoSlot) picked = named(database, last);
    } else {
        const int status = readPoint(token, from, point);
        if (status == RTNORM) picked = pickAt(database, {point[0], point[1], point[2]});
        return status;
    }
    std::copy(from, from + 3, point);
    return RTNORM;
}

/// Asks for one entity. ERRNO tells a miss from an Enter.
int askEntity(Database& database, const ACHAR* prompt, std::optional<Picked>& picked,
              ads_point point) {
    InputRules rules = takeInputRules();
    rules.flags = 0;  // they don't reach this function
    const int status = askAnswer(
        rules, prompt == nullptr ? u"Select object: " : prompt, u"Invalid selection.",
        [&](const InputToken& token) { return takeAnswer(database, token, picked, point); });
    if (status == RTNONE) setErrno(HostErrno::NullResponse);
    return status == RTNONE ? static_cast<int>(RTERROR) : status;
}

/// The containers of a pick as a chain; false without memory.
bool chainOf(const Picked& picked, resbuf*& chain) {
    chain = nullptr;
    resbuf** tail = &chain;
    for (const Picked::Container& container : picked.containers) {
        *tail = acutNewRb(RTENAME);
        if (*tail == nullptr) {
            acutRelRb(chain);
            chain = nullptr;
            return false;
        }
        container.drawing->nameOf(container.entity, (*tail)->resval.rlname);
        tail = &(*tail)->rbnext;
    }
    return true;
}

}  // namespace

std::optional<Picked> pickAt(Database& database, const AcGePoint3d& point) {
    if (!isFinite(point)) return std::nullopt;
    const AcGeMatrix3d to_display = currentView(database).worldToDisplay();
    const AcGePoint3d place = to_display * (currentUcs(database).toWorld() * point);
    // Without a pick box the pixel under the cross hairs counts.
    const double half =
        std::max(0.5, static_cast<double>(integerVariable("PICKBOX", 3))) * pixelSize(database);
    ShapeWalker walker(database);
    PickVisitor visitor(database, place, half);
    for (const Slot entity :
         entitiesIn(database, currentSpace(database), to_display, {place.x - half, place.y - half},
                    {place.x + half, place.y + half})) {
        walker.visit(entity, to_display, visitor);
        if (visitor.found()) return describe(entity, *visitor.found(), to_display, place);
    }
    return std::nullopt;
}

}  // namespace host

using namespace host;

extern "C" {

int acedEntSel(const ACHAR* prompt, ads_name entity, ads_point point) {
    int status = 0;
    if (mustFail(Call::acedEntSel, status)) return status;
    Database* const database = currentDatabase();
    if (entity == nullptr || point == nullptr || database == nullptr) return RTERROR;
    std::optional<Picked> picked;
    ads_point place = {0, 0, 0};
    status = askEntity(*database, prompt, picked, place);
    if (status != RTNORM) return status;
    if (!picked) {
        setErrno(HostErrno::PickFailed);
        return RTERROR;
    }
    database->nameOf(picked->main, entity);
    std::copy(place, place + 3, point);
    return RTNORM;
}

int acedNEntSelP(const ACHAR* prompt, ads_name entity, ads_point point, int pointIsGiven,
                 ads_matrix matrix, resbuf** containers) {
    int status = 0;
    if (mustFail(Call::acedNEntSelP, status)) return status;
    Database* const database = currentDatabase();
    if (entity == nullptr || point == nullptr || database == nullptr) return RTERROR;
    std::optional<Picked> picked;
    ads_point place = {point[0], point[1], point[2]};
    if (pointIsGiven != 0) {
        picked = pickAt(*database, {place[0], place[1], place[2]});
    } else {
        status = askEntity(*database, prompt, picked, place);
        if (status != RTNORM) return status;
    }
    if (!picked) {
        setErrno(HostErrno::PickFailed);
        return RTERROR;
    }
    resbuf* chain = nullptr;
    if (containers != nullptr && !chainOf(*picked, chain)) return RTERROR;
    picked->drawing->nameOf(picked->part, entity);
    std::copy(place, place + 3, point);
    for (unsigned int row = 0; matrix != nullptr && row < 4; ++row) {
        for (unsigned int column = 0; column < 4; ++column)
            matrix[row][column] = picked->to_world(row, column);
    }
    if (containers != nullptr) *containers = chain;
    return RTNORM;
}
}
