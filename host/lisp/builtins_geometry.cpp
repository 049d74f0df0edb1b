/// Points as lists of two or three numbers.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "acad/ed.h"
#include "acad/ge.h"
#include "edit/shape_rules.h"
#include "edit/unit_table.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

struct Point {
    double x = 0, y = 0, z = 0;
    bool flat = true;
};

Point pointArg(Interpreter& in, const Value& value) {
    Point point;
    double* const targets[] = {&point.x, &point.y, &point.z};
    const int32_t count = value.isCons() ? listLength(value) : -1;
    if (count != 2 && count != 3) in.fail(u"bad argument type: 2D/3D point");
    const Value* rest = &value;
    for (int32_t i = 0; i < count; ++i, rest = &rest->cons()->cdr) {
        if (!rest->cons()->car.isNumber()) in.fail(u"bad argument type: 2D/3D point");
        *targets[i] = rest->cons()->car.number();
    }
    point.flat = count == 2;
    return point;
}

Value distance(Interpreter& in, Args args) {
    const Point a = pointArg(in, args[0]), b = pointArg(in, args[1]);
    const double height = a.flat || b.flat ? 0.0 : b.z - a.z;
    return Value::real(std::hypot(b.x - a.x, b.y - a.y, height));
}

Value angle(Interpreter& in, Args args) {
    const Point a = pointArg(in, args[0]), b = pointArg(in, args[1]);
    const double radians = std::atan2(b.y - a.y, b.x - a.x);
    return Value::real(radians < 0 ? radians + 2 * std::numbers::pi : radians);
}

Value polar(Interpreter& in, Args args) {
    const Point from = pointArg(in, args[0]);
    const double radians = numberArg(in, args[1]);
    const double length = numberArg(in, args[2]);
    const Value x = Value::real(from.x + length * std::cos(radians));
    const Value y = Value::real(from.y + length * std::sin(radians));
    return from.flat ? makeList(x, y) : makeList(x, y, Value::real(from.z));
}

Value pointValue(const ads_point point) {
    return makeList(Value::real(point[0]), Value::real(point[1]), Value::real(point[2]));
}

/// A coordinate system: the code of one, an entity, or an extrusion direction.
resbuf systemArg(Interpreter& in, const Value& value) {
    resbuf node{};
    if (value.isInteger()) {
        const int32_t code = value.integer();
        node.restype = RTSHORT;
        const bool fits = code >= 0 && code <= INT16_MAX;
        node.resval.rint = static_cast<int16_t>(fits ? code : -1);
    } else if (value.is(Kind::EntityName)) {
        node.restype = RTENAME;
        ads_name_set(value.as<EntityName>()->name, node.resval.rlname);
    } else {
        const Point direction = pointArg(in, value);
        node.restype = RT3DPOINT;
        node.resval.rpoint[0] = direction.x;
        node.resval.rpoint[1] = direction.y;
        node.resval.rpoint[2] = direction.z;
    }
    return node;
}

constexpr int16_t kUser = 1, kDisplay = 2;

resbuf systemNode(int16_t code) {
    resbuf node{};
    node.restype = RTSHORT;
    node.resval.rint = code;
    return node;
}
bool isSystem(const resbuf& system, int16_t code) {
    return system.restype == RTSHORT && system.resval.rint == code;
}

double elevation() {
    resbuf value{};
    return acedGetVar(u"ELEVATION", &value) == RTNORM ? value.resval.rreal : 0.0;
}

/// Lifts a flat point of the display to the plane that is drawn in, along the line of sight.
void liftFromDisplay(ads_point point) {
    const resbuf display = systemNode(kDisplay), user = systemNode(kUser);
    const ads_point sight = {0.0, 0.0, 1.0};
    ads_point at, way;
    if (acedTrans(point, &display, &user, 0, at) != RTNORM) return;
    if (acedTrans(sight, &display, &user, 1, way) != RTNORM || std::fabs(way[2]) < 1e-10) return;
    point[2] = (elevation() - at[2]) / way[2];
}

Value trans(Interpreter& in, Args args) {
    const Point given = pointArg(in, args[0]);
    const resbuf from = systemArg(in, args[1]), to = systemArg(in, args[2]);
    const bool displacement = bool(optionalArg(args, 3));
    ads_point point = {given.x, given.y, given.z};
    if (given.flat && !displacement) {
        if (isSystem(from, kUser)) point[2] = elevation();
        if (isSystem(from, kDisplay)) liftFromDisplay(point);
    }
    ads_point out;
    if (acedTrans(point, &from, &to, displacement ? 1 : 0, out) != RTNORM) return Value();
    return pointValue(out);
}

Value osnap(Interpreter& in, Args args) {
    const Point given = pointArg(in, args[0]);
    const std::u16string modes(textArg(in, args[1]));
    const ads_point point = {given.x, given.y, given.z};
    ads_point out;
    return acedOsnap(point, modes.c_str(), out) == RTNORM ? pointValue(out) : Value();
}

/// Where the lines through two pairs of points meet: in space when all points have a z, else in the
/// plane.
Value inters(Interpreter& in, Args args) {
    Point points[4];
    bool flat = false;
    for (size_t i = 0; i < 4; ++i) {
        points[i] = pointArg(in, args[i]);
        flat = flat || points[i].flat;
    }
    const bool bounded = args.size() < 5 || args[4];
    const auto vector = [&](size_t from, size_t to) {
        return AcGeVector3d(points[to].x - points[from].x, points[to].y - points[from].y,
                            flat ? 0.0 : points[to].z - points[from].z);
    };
    const AcGeVector3d first = vector(0, 1), second = vector(2, 3), between = vector(0, 2);
    const AcGeVector3d normal = first.crossProduct(second);
    const double size = normal.dotProduct(normal);
    const double scale = first.dotProduct(first) * second.dotProduct(second);
    if (size <= 1e-20 * scale || scale == 0) return {};
    const double along = between.crossProduct(second).dotProduct(normal) / size;
    const double other = between.crossProduct(first).dotProduct(normal) / size;
    const AcGeVector3d gap = between + second * other - first * along;
    if (gap.dotProduct(gap) > 1e-16 * std::max(scale, 1.0)) return {};
    const auto inside = [](double part) { return part >= -1e-10 && part <= 1 + 1e-10; };
    if (bounded && !(inside(along) && inside(other))) return {};
    const Value x = Value::real(points[0].x + first.x * along);
    const Value y = Value::real(points[0].y + first.y * along);
    if (flat) return makeList(x, y);
    return makeList(x, y, Value::real(points[0].z + first.z * along));
}

/// The value behind a code of an entity list; nil for none.
Value groupOf(const Value& list, int32_t code) {
    for (const Value* rest = &list; rest->isCons(); rest = &rest->cons()->cdr) {
        const Value& pair = rest->cons()->car;
        if (!pair.isCons() || !pair.cons()->car.isInteger()) continue;
        if (pair.cons()->car.integer() == code) return pair.cons()->cdr;
    }
    return {};
}

/// Corners as if the text stood at the origin, not turned.
Value textBox(Interpreter& in, Args args) {
    const Value text = groupOf(listArg(in, args[0]), 1);
    if (!text.isText()) return {};
    const auto number = [&](int32_t code, double otherwise) {
        const Value value = groupOf(args[0], code);
        return value.isNumber() ? value.number() : otherwise;
    };
    resbuf size{};
    const bool known = acedGetVar(u"TEXTSIZE", &size) == RTNORM && size.restype == RTREAL;
    const double height = number(40, known ? size.resval.rreal : 1.0);
    const double width =
        textWidth(static_cast<double>(text.text().size()), height) * number(41, 1.0);
    const ads_point low = {0, 0, 0}, high = {width, height, 0};
    return makeList(pointValue(low), pointValue(high));
}

/// A number, or each number of a list, in another unit.
Value convertUnit(Interpreter& in, Args args) {
    const auto change = unitChange(textArg(in, args[1]), textArg(in, args[2]));
    const auto converted = [&](const Value& value) {
        const double number = numberArg(in, value);
        return change ? Value::real(number * change->factor + change->offset) : Value();
    };
    if (!args[0].isCons()) return converted(args[0]);
    ListBuilder list;
    for (const Value* rest = &args[0]; rest->isCons(); rest = &rest->cons()->cdr)
        list.add(converted(rest->cons()->car));
    return change ? list.take() : Value();
}

const Builtin kRows[] = {
    {"distance", 2, 2, distance, "(distance point point)",
     "Distance of two points; in the plane when one has no z."},
    {"angle", 2, 2, angle, "(angle point point)",
     "Direction from one point to another, in radians from the x axis."},
    {"polar", 3, 3, polar, "(polar point angle distance)",
     "Point in a direction and distance from another."},
    {"inters", 4, 5, inters, "(inters point1 point2 point3 point4 [bounded])",
     "Where two lines meet, with nil for bounded beyond their ends too; nil when they don't."},
    {"textbox", 1, 1, textBox, "(textbox entity-list)",
     "Corners of a text by its groups 1, 40 and 41, as if it stood at the origin; nil without a "
     "text. Fonts are not read, letters count as 0.8 of their height wide."},
    {"cvunit", 3, 3, convertUnit, "(cvunit number from to)",
     "A number, or a list of numbers, in another unit; nil when the units don't go together."},
    {"trans", 3, 4, trans, "(trans point from to [displacement])",
     "Point or displacement from one coordinate system to another; nil for an unknown one."},
    {"osnap", 2, 2, osnap, "(osnap point modes)",
     "Point of an entity that object snaps find near another; nil for none."},
};

}  // namespace

std::span<const Builtin> geometryBuiltins() {
    return kRows;
}

}  // namespace host::lisp
