/// Points as lists of two or three numbers.
#include <cmath>
#include <numbers>

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

const Builtin kRows[] = {
    {"distance", 2, 2, distance, "(distance point point)",
     "Distance of two points; in the plane when one has no z."},
    {"angle", 2, 2, angle, "(angle point point)",
     "Direction from one point to another, in radians from the x axis."},
    {"polar", 3, 3, polar, "(polar point angle distance)",
     "Point in a direction and distance from another."},
};

}  // namespace

std::span<const Builtin> geometryBuiltins() {
    return kRows;
}

}  // namespace host::lisp
