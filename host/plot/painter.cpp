/// The parts of entities on the canvas.
#include "plot/painter.h"

#include <algorithm>
#include <cmath>

#include "base/angles.h"
#include "edit/entity_system.h"
#include "edit/shape_rules.h"
#include "edit/tag_values.h"
#include "edit/view.h"
#include "host/display.h"
#include "kz_tls21an/text.h"
#include "plot/plot_text.h"

namespace host {
namespace {

constexpr PlotColor kStressed = {230, 0, 0}, kPale = {200, 200, 200}, kLabel = {0, 70, 200};
constexpr double kStressedWidth = 0.6, kPointSize = 2.5, kLabelHeight = 1.6;

double headerReal(Database& drawing, std::string_view name, double otherwise) {
    const HeaderVariable* variable = drawing.header(name);
    return variable == nullptr || variable->tags.empty() ? otherwise
                                                         : variable->tags.front().real();
}

bool isNear(const PlotPoint& a, const PlotPoint& b) {
    return std::hypot(a.x - b.x, a.y - b.y) < 1e-6;
}

/// Millimetres that a drawing unit along x takes.
double scaleOf(const AcGeMatrix3d& to_page) {
    return (to_page * AcGeVector3d::kXAxis).length();
}

PlotPoint onPage(const AcGeMatrix3d& to_page, const AcGePoint3d& point) {
    const AcGePoint3d place = to_page * point;
    return {place.x, place.y};
}

/// Lengths of dashes and gaps in turn from those of a line type; none for one that could not be
/// told from a solid line.
std::vector<double> dashesOnPage(const std::vector<double>& lengths, double scale) {
    constexpr double kFinest = 0.4;
    std::vector<double> dashes;
    double period = 0.0;
    for (const double length : lengths) {
        const bool gap = length < 0.0;
        const double size = std::fabs(length) * scale;
        period += size;
        if (dashes.empty() && gap) dashes.push_back(0.0);
        const bool last_is_gap = dashes.size() % 2 == 0 && !dashes.empty();
        if (!dashes.empty() && gap == last_is_gap) {
            dashes.back() += size;
        } else {
            dashes.push_back(size);
        }
    }
    if (dashes.size() % 2 == 1) dashes.push_back(0.0);
    const bool solid = dashes.size() < 2 || period < kFinest || !std::isfinite(period);
    return solid ? std::vector<double>() : dashes;
}

/// The corners of a box around paths.
void boundsOf(const PlotPaths& paths, PlotPoint& least, PlotPoint& greatest) {
    least = {1e20, 1e20};
    greatest = {-1e20, -1e20};
    for (const PlotPath& path : paths) {
        for (const PlotPoint& point : path.points) {
            least = {std::min(least.x, point.x), std::min(least.y, point.y)};
            greatest = {std::max(greatest.x, point.x), std::max(greatest.y, point.y)};
        }
    }
}

/// One family of lines of a hatch pattern, on the page.
struct Family {
    PlotPoint base;
    PlotPoint step;  ///< to the next line
    PlotPoint way;   ///< along the line, of length 1
    std::vector<double> dashes;
};

/// The lines of a family that cross a box.
PlotPaths linesOf(const Family& family, const PlotPoint& least, const PlotPoint& greatest) {
    constexpr double kFinest = 0.25, kMost = 20000;
    const PlotPoint across = {-family.way.y, family.way.x};
    const double spacing = family.step.x * across.x + family.step.y * across.y;
    if (std::fabs(spacing) < 1e-9) return {};
    const double every = std::max(1.0, std::ceil(kFinest / std::fabs(spacing)));
    double first = 1e20, last = -1e20;
    for (const double x : {least.x, greatest.x}) {
        for (const double y : {least.y, greatest.y}) {
            const double at =
                ((x - family.base.x) * across.x + (y - family.base.y) * across.y) / spacing;
            first = std::min(first, at);
            last = std::max(last, at);
        }
    }
    if (!(last - first < kMost * every)) return {};
    double period = 0.0;
    for (const double length : family.dashes)
        period += length;
    const double reach = std::hypot(greatest.x - least.x, greatest.y - least.y);
    PlotPaths lines;
    for (double k = std::ceil(first / every) * every; k <= last; k += every) {
        const PlotPoint origin = {family.base.x + k * family.step.x,
                                  family.base.y + k * family.step.y};
        const double middle = ((least.x + greatest.x) / 2 - origin.x) * family.way.x +
                              ((least.y + greatest.y) / 2 - origin.y) * family.way.y;
        // Dashes are counted from the origin of the line.
        double from = middle - reach;
        if (period > 0.0) from = std::floor(from / period) * period;
        const double to = middle + reach;
        lines.push_back({{{origin.x + from * family.way.x, origin.y + from * family.way.y},
                          {origin.x + to * family.way.x, origin.y + to * family.way.y}},
                         false});
    }
    return lines;
}

/// Segments as few paths as they make; those that lie outside of the page are missing, and the line
/// is broken there.
PlotPaths joined(const PlotPaths& segments) {
    PlotPaths paths;
    for (const PlotPath& segment : segments) {
        if (segment.points.empty()) continue;
        const bool on =
            !paths.empty() && isNear(paths.back().points.back(), segment.points.front());
        if (!on) paths.emplace_back();
        std::vector<PlotPoint>& points = paths.back().points;
        points.insert(points.end(), segment.points.begin() + (on ? 1 : 0), segment.points.end());
    }
    for (PlotPath& path : paths) {
        path.closed = path.points.size() > 2 && isNear(path.points.front(), path.points.back());
        if (path.closed) path.points.pop_back();
    }
    return paths;
}

/// The mean of the colours that a gradient goes through.
PlotColor gradientColor(const Tags& tags, PlotColor otherwise) {
    constexpr int kColor = 421;
    int64_t red = 0, green = 0, blue = 0, count = 0;
    for (size_t at = findTag(tags, kColor); at < tags.size(); at = findTag(tags, kColor, at + 1)) {
        const int64_t rgb = tags[at].integer();
        red += rgb >> 16 & 255;
        green += rgb >> 8 & 255;
        blue += rgb & 255;
        ++count;
    }
    if (count == 0) return otherwise;
    return {static_cast<uint8_t>(red / count), static_cast<uint8_t>(green / count),
            static_cast<uint8_t>(blue / count)};
}

}  // namespace

Painter::Painter(Database& drawing, const PlotRequest& request, const Page& page,
                 const AcGeMatrix3d& to_page, PlotCanvas& canvas, PlotReport& report)
    : database_(drawing), request_(request), page_(page), canvas_(canvas), report_(report) {
    auto book = std::make_unique<StyleBook>(drawing, request.dark);
    inside_.push_back({&drawing, book.get(), to_page, std::nullopt});
    books_[{&drawing, std::u16string()}] = std::move(book);
    for (const AcDbObjectId id : request.stressed) {
        if (Database::find(id) == &drawing)
            stressed_.insert(drawing.mainEntity(drawing.slotOf(id)));
    }
    point_mode_ = static_cast<int64_t>(headerReal(drawing, "$PDMODE", 0.0));
    point_size_ = headerReal(drawing, "$PDSIZE", 0.0);
    fills_ = headerReal(drawing, "$FILLMODE", 1.0) != 0.0;
}

Painter::~Painter() = default;

void Painter::paint(Slot space) {
    const AcGeMatrix3d to_page = toPage();
    ShapeWalker(database_).visitBlock(space, to_page, *this);
}

// --- the walk -----------------------------------------------------------------------------------

Painter::Kind Painter::kindOf(Slot entity) {
    const std::string& type = drawing().typeName(entity);
    if (isText(type)) return Kind::Text;
    if (type == "HATCH") return Kind::Hatch;
    if (type == "SOLID" || type == "TRACE") return fills_ ? Kind::Area : Kind::Lines;
    if (type == "WIPEOUT") return Kind::Mask;
    if (type == "VIEWPORT") return Kind::Window;
    return type == "IMAGE" ? Kind::Frame : Kind::Lines;
}

void Painter::begin(Slot entity) {
    if (!open_.empty()) flush(open_.back());
    Open open;
    open.entity = entity;
    open.kind = kindOf(entity);
    const Inside& inside = inside_.back();
    open.style = inside.styles->styleOf(entity, inside.outer ? &*inside.outer : nullptr);
    AcDbObjectId id = drawing().idOf(entity);
    open.hidden = isOffScreen(id) || (!open_.empty() && open_.back().hidden);
    // An insertion on such a layer shows what its block has on others.
    const bool inserts = EntityShape::isInserting(drawing().typeName(entity));
    open.hidden = open.hidden || (!open.style.plotted && !inserts);
    if (!hidden_layers_.empty() && inside_.size() == 2 && !open.hidden) {
        const Tags& tags = drawing().tags(entity);
        const size_t layer = findTag(tags, 8);
        const Slot record = layer < tags.size()
                                ? drawing().findSymbol("LAYER", tags[layer].text(drawing().codec()))
                                : kNoSlot;
        open.hidden = hidden_layers_.contains(record);
    }
    restyle(open);
    open.widths = widthsOf(entity);
    open_.push_back(std::move(open));
    if (open_.back().kind == Kind::Text && !open_.back().hidden) {
        drawText(drawing(), entity, toPage(), open_.back().style.own.color, canvas_);
        open_.back().shows = true;
    }
}

void Painter::end(Slot entity) {
    Open open = std::move(open_.back());
    open_.pop_back();
    flush(open);
    if (!open_.empty()) {
        open_.back().shows = open_.back().shows || open.shows;
        if (!open_.back().place) open_.back().place = open.place;
        return;
    }
    if (open.hidden || inside_.size() > 1) return;
    const std::string& type = drawing().typeName(entity);
    if (open.shows) {
        ++report_.drawn;
        if (request_.handles) label(open);
    } else if (type != "INSERT" && type != "VIEWPORT") {
        ++report_.not_drawn[type];
    }
}

void Painter::curve(const Curve& curve, CurveRole role) {
    Open& open = open_.back();
    const size_t index = open.curves++;
    open.shows = true;
    if (!open.place) open.place = PlotPoint{curve.start().x, curve.start().y};
    if (open.hidden || open.kind == Kind::Text) return;
    if (role == CurveRole::Frame && open.kind == Kind::Lines) return;
    const bool wide = index < open.widths.size() &&
                      (open.widths[index].from > 0.0 || open.widths[index].to > 0.0);
    if (wide) open.wide = true;
    PlotPaths& paths = open.paths;
    const PlotPoint start = {curve.start().x, curve.start().y};
    // A segment that differs in width from its neighbour is a path of its own.
    const bool on = !paths.empty() && !paths.back().points.empty() &&
                    isNear(paths.back().points.back(), start) && open.widths.empty();
    if (!on) paths.emplace_back();
    if (open.kind != Kind::Lines && open.kind != Kind::Frame) {
        return page_.addBoundary(curve, on, paths.back().points);
    }
    const bool seen = page_.add(curve, on, paths.back().points);
    if (!seen && !on && open.widths.empty()) paths.pop_back();
}

void Painter::mark(MarkKind kind, const AcGePoint3d& point) {
    Open& open = open_.back();
    const PlotPoint at = {point.x, point.y};
    if (!open.place) open.place = at;
    if (kind != MarkKind::Node) return;
    open.shows = true;
    AcDbExtents spot;
    spot.addPoint({point.x, point.y, 0.0});
    if (!open.hidden && page_.sees(spot)) paintPoint(at, open);
}

bool Painter::enters(const AcDbExtents& box, int) {
    open_.back().shows = true;
    return !open_.back().hidden && page_.sees(box);
}

void Painter::enterBlock(Database& drawing, const AcGeMatrix3d& to) {
    flush(open_.back());
    StyleBook* styles = inside_.back().styles;
    if (&drawing != inside_.back().drawing) {
        Database& holder = *inside_.back().drawing;
        const Tags& tags = holder.tags(open_.back().entity);
        const size_t name = findTag(tags, 2);
        const std::u16string prefix =
            name < tags.size() ? tags[name].text(holder.codec()) : std::u16string();
        std::unique_ptr<StyleBook>& book = books_[{&drawing, prefix}];
        if (book == nullptr) book = std::make_unique<StyleBook>(drawing, *styles, prefix);
        styles = book.get();
    }
    inside_.push_back({&drawing, styles, to, open_.back().style});
}

void Painter::leaveBlock() {
    inside_.pop_back();
}

// --- styles -------------------------------------------------------------------------------------

/// Colours that stand for something else than the entity's own. Parts of an entity follow it.
void Painter::restyle(Open& open) const {
    PlotStyle& style = open.style.own;
    if (!open_.empty()) {
        open.replaced = open_.front().replaced;
        if (open.replaced) style.color = open_.front().style.own.color;
        if (open.replaced) style.width = std::max(style.width, open_.front().style.own.width);
        return;
    }
    const AcDbObjectId id = database_.idOf(open.entity);
    if (stressed_.contains(open.entity) || isHighlighted(id)) {
        style.color = kStressed;
        style.width = std::max(style.width, kStressedWidth);
        open.replaced = true;
    } else if (!request_.colored.empty()) {
        const auto found = request_.colored.find(database_.record(open.entity).handle);
        style.color = found == request_.colored.end() ? kPale : found->second;
        open.replaced = true;
    } else if (!stressed_.empty()) {
        style.color = kPale;
        open.replaced = true;
    }
}

PlotPen Painter::penOf(const PlotStyle& style) const {
    return {style.color, style.width, dashesOnPage(style.dashes, page_.scale()), true};
}

// --- lines --------------------------------------------------------------------------------------

std::vector<Painter::Segment> Painter::widthsOf(Slot entity) {
    const std::string& type = drawing().typeName(entity);
    const Tags& tags = drawing().tags(entity);
    const double scale = scaleOf(toPage());
    std::vector<Segment> widths;
    if (type == "LWPOLYLINE") {
        const double all = realOf(tags, 43, 0.0) * scale;
        for (const Tag& tag : tags) {
            if (tag.code() == 10) widths.push_back({all, all});
            if (tag.code() == 40 && !widths.empty()) widths.back().from = tag.real() * scale;
            if (tag.code() == 41 && !widths.empty()) widths.back().to = tag.real() * scale;
        }
    } else if (type == "POLYLINE") {
        const double from = realOf(tags, 40, 0.0), to = realOf(tags, 41, 0.0);
        for (const Slot vertex : drawnVertices(drawing(), entity)) {
            const Tags& groups = drawing().tags(vertex);
            widths.push_back({realOf(groups, 40, from) * scale, realOf(groups, 41, to) * scale});
        }
    }
    const bool any = std::any_of(widths.begin(), widths.end(), [](const Segment& segment) {
        return segment.from > 0.0 || segment.to > 0.0;
    });
    if (!any) widths.clear();
    return widths;
}

/// False for an area beside the page; what else lies there has not come so far.
bool Painter::isOnPage(const Open& open) const {
    if (open.kind == Kind::Lines || open.kind == Kind::Frame) return true;
    PlotPoint least, greatest;
    boundsOf(open.paths, least, greatest);
    return page_.sees({{least.x, least.y, 0.0}, {greatest.x, greatest.y, 0.0}});
}

void Painter::flush(Open& open) {
    if (open.hidden || open.paths.empty() || !isOnPage(open)) {
        open.paths.clear();
        return;
    }
    switch (open.kind) {
        case Kind::Area:
            canvas_.fill(open.paths, open.style.own.color);
            break;
        case Kind::Mask:
            canvas_.fill(open.paths, request_.dark ? PlotColor{} : PlotColor{255, 255, 255});
            break;
        case Kind::Hatch:
            paintHatch(open);
            break;
        case Kind::Window:
            paintWindow(open);
            break;
        case Kind::Text:
            break;
        case Kind::Lines:
        case Kind::Frame:
            if (open.wide) {
                paintWide(open);
            } else {
                canvas_.stroke(open.paths, penOf(open.style.own));
            }
            break;
    }
    open.paths.clear();
}

/// One width all along is a line of that width; a segment that widens is an area.
void Painter::paintWide(Open& open) {
    const Segment& first = open.widths.front();
    const bool even =
        std::all_of(open.widths.begin(), open.widths.end(), [&](const Segment& segment) {
            return segment.from == first.from && segment.to == first.from;
        });
    PlotPen pen = penOf(open.style.own);
    if (even && fills_) {
        pen.width = std::max(pen.width, first.from);
        pen.round = false;
        const PlotPaths paths = joined(open.paths);
        if (!paths.empty()) canvas_.stroke(paths, pen);
        return;
    }
    for (size_t i = 0; i < open.paths.size() && i < open.widths.size(); ++i) {
        const std::vector<PlotPoint>& points = open.paths[i].points;
        if (points.size() < 2) continue;
        const Segment& width = open.widths[i];
        canvas_.stroke({open.paths[i]}, pen);
        if (width.from <= 0.0 && width.to <= 0.0) continue;
        PlotPath left, right;
        const auto last = static_cast<double>(points.size() - 1);
        for (size_t at = 0; at < points.size(); ++at) {
            const PlotPoint& before = points[at == 0 ? 0 : at - 1];
            const PlotPoint& behind = points[std::min(at + 1, points.size() - 1)];
            const double length = std::hypot(behind.x - before.x, behind.y - before.y);
            const double half =
                (width.from + (width.to - width.from) * static_cast<double>(at) / last) / 2;
            const double x = length > 0.0 ? -(behind.y - before.y) / length * half : 0.0;
            const double y = length > 0.0 ? (behind.x - before.x) / length * half : 0.0;
            left.points.push_back({points[at].x + x, points[at].y + y});
            right.points.push_back({points[at].x - x, points[at].y - y});
        }
        left.points.insert(left.points.end(), right.points.rbegin(), right.points.rend());
        left.closed = true;
        if (fills_) {
            canvas_.fill({left}, pen.color);
        } else {
            canvas_.stroke({left}, pen);
        }
    }
}

void Painter::paintPoint(const PlotPoint& at, const Open& open) {
    enum Shape : int64_t { kDot, kNothing, kPlus, kCross, kTick };
    constexpr int64_t kCircle = 32, kSquare = 64;
    const double half = (point_size_ > 0.0 ? point_size_ * page_.scale() : kPointSize) / 2;
    PlotPen pen = penOf(open.style.own);
    pen.dashes.clear();
    PlotPaths paths;
    const auto line = [&](double x1, double y1, double x2, double y2) {
        paths.push_back(
            {{{at.x + x1 * half, at.y + y1 * half}, {at.x + x2 * half, at.y + y2 * half}}, false});
    };
    switch (point_mode_ % kCircle) {
        case kPlus:
            line(-1, 0, 1, 0);
            line(0, -1, 0, 1);
            break;
        case kCross:
            line(-1, -1, 1, 1);
            line(-1, 1, 1, -1);
            break;
        case kTick:
            line(0, 0, 0, -1);
            break;
        case kDot:
            pen.width = std::max(pen.width, 0.5);
            line(0, 0, 0, 0);
            break;
        default:
            break;
    }
    if ((point_mode_ & kSquare) != 0) {
        paths.push_back({{{at.x - half, at.y - half},
                          {at.x + half, at.y - half},
                          {at.x + half, at.y + half},
                          {at.x - half, at.y + half}},
                         true});
    }
    if ((point_mode_ & kCircle) != 0) {
        PlotPath circle = {{}, true};
        constexpr int kSteps = 32;
        for (int i = 0; i < kSteps; ++i) {
            const double angle = toRadians(360.0 * i / kSteps);
            circle.points.push_back({at.x + half * std::cos(angle), at.y + half * std::sin(angle)});
        }
        paths.push_back(circle);
    }
    if (!paths.empty()) canvas_.stroke(paths, pen);
}

void Painter::label(const Open& open) {
    if (!open.place) return;
    const std::string text = kz::toUtf8(handleText(database_.record(open.entity).handle));
    const PlotPoint at = {open.place->x + 0.5, open.place->y - 0.5};
    canvas_.text(text, {at, {at.x + kLabelHeight, at.y}, {at.x, at.y - kLabelHeight}}, kLabel);
}

// --- areas --------------------------------------------------------------------------------------

void Painter::paintHatch(Open& open) {
    const Tags& tags = drawing().tags(open.entity);
    if (!fills_) return;
    constexpr int kSolid = 70, kGradient = 450;
    if (integerOf(tags, kGradient, 0) != 0 && !open.replaced) {
        return canvas_.fill(open.paths, gradientColor(tags, open.style.own.color));
    }
    if (integerOf(tags, kSolid, 0) != 0) return canvas_.fill(open.paths, open.style.own.color);
    canvas_.clip(open.paths);
    paintPattern(tags, toPage() * entityToWorld(drawing(), open.entity), open);
    canvas_.unclip();
}

/// The lines of a pattern stand in the hatch as they are drawn: turned and scaled.
void Painter::paintPattern(const Tags& tags, const AcGeMatrix3d& plane, const Open& open) {
    PlotPoint least, greatest;
    boundsOf(open.paths, least, greatest);
    const PlotPath frame = page_.frame();
    least = {std::max(least.x, frame.points[0].x), std::max(least.y, frame.points[0].y)};
    greatest = {std::min(greatest.x, frame.points[2].x), std::min(greatest.y, frame.points[2].y)};
    if (least.x > greatest.x || least.y > greatest.y) return;
    const double scale = scaleOf(plane);
    for (size_t at = findTag(tags, 53); at < tags.size(); at = findTag(tags, 53, at + 1)) {
        const double angle = toRadians(tags[at].real());
        const auto real = [&](int code) {
            const size_t found = findTag(tags, code, at);
            return found < tags.size() ? tags[found].real() : 0.0;
        };
        Family family;
        family.base = onPage(plane, {real(43), real(44), 0.0});
        const AcGeVector3d step = plane * AcGeVector3d(real(45), real(46), 0.0);
        const AcGeVector3d way =
            (plane * AcGeVector3d(std::cos(angle), std::sin(angle), 0.0)).normal();
        family.step = {step.x, step.y};
        family.way = {way.x, way.y};
        std::vector<double> lengths;
        for (size_t i = at + 1; i < tags.size() && tags[i].code() != 53 && tags[i].code() != 98;
             ++i) {
            if (tags[i].code() == 49) lengths.push_back(tags[i].real());
        }
        family.dashes = dashesOnPage(lengths, scale);
        const PlotPaths lines = linesOf(family, least, greatest);
        if (!lines.empty()) {
            canvas_.stroke(lines,
                           {open.style.own.color, open.style.own.width, family.dashes, true});
        }
    }
}

/// What a viewport of a layout shows of model space.
void Painter::paintWindow(Open& open) {
    if (in_window_ || inside_.size() > 1) return;
    const Tags& tags = drawing().tags(open.entity);
    const double height = realOf(tags, 45, 0.0), paper_height = realOf(tags, 41, 0.0);
    const PlotPaths frame = open.paths;
    canvas_.stroke(frame, penOf(open.style.own));
    constexpr int64_t kOff = 0x20000;
    const bool off = integerOf(tags, 68, 1) == 0 || (integerOf(tags, 90, 0) & kOff) != 0;
    if (off || height <= 0.0 || paper_height <= 0.0) return;
    View view;
    view.target = pointOf(tags, 17);
    view.direction = vectorOf(tags, 16, AcGeVector3d::kZAxis);
    view.twist = toRadians(realOf(tags, 51, 0.0));
    const AcGePoint3d centre = pointOf(tags, 12), place = pointOf(tags, 10);
    const double scale = paper_height / height;
    AcGeMatrix3d to_paper, move;
    for (int i = 0; i < 3; ++i)
        to_paper.entry[i][i] = scale;
    to_paper.setTranslation(place - AcGePoint3d::kOrigin);
    move.setToTranslation({-centre.x, -centre.y, 0.0});
    for (const Tag& tag : tags) {
        if (tag.code() == 331 || tag.code() == 341) {
            hidden_layers_.insert(drawing().findHandle(tag.handleValue()));
        }
    }
    const AcGeMatrix3d to_page = toPage() * to_paper * move * view.worldToDisplay();
    in_window_ = true;
    inside_.push_back({&database_, inside_.back().styles, to_page, std::nullopt});
    canvas_.clip(frame);
    ShapeWalker(database_).visitBlock(database_.modelSpace(), to_page, *this);
    canvas_.unclip();
    inside_.pop_back();
    in_window_ = false;
    hidden_layers_.clear();
}

}  // namespace host
