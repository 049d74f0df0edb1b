/// Curves: lines, circles, arcs, ellipses, polylines and splines by parameter, by length and by
/// point.
#include <algorithm>
#include <cmath>

#include "edit/entity_path.h"
#include "lisp/builtin.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

/// How far a point may be from the curve that it is on [of the curve's size, at least 1].
constexpr double kOnCurve = 1e-8;

CurvePath pathArg(Interpreter& in, const Value& value) {
    const AcDbObjectId id = Database::idFromName(entityArg(in, value)->name);
    Database* drawing = Database::find(id);
    CurvePath path;
    if (drawing != nullptr && !drawing->record(drawing->slotOf(id)).erased)
        path = pathOf(*drawing, drawing->slotOf(id));
    if (path.empty()) in.badArgument(u"curvep", value);
    return path;
}

AcGePoint3d pointArg(Interpreter& in, const Value& value) {
    ads_point point;
    if (!pointOf(value, point)) in.fail(u"bad argument type: 2D/3D point");
    return {point[0], point[1], point[2]};
}

Value pointValue(const AcGePoint3d& point) {
    return makeList(Value::real(point.x), Value::real(point.y), Value::real(point.z));
}

/// The parameter of a point that is on the path. @return false for another
bool parameterOf(const CurvePath& path, const AcGePoint3d& point, double& parameter) {
    parameter = path.nearest(point);
    return (path.at(parameter) - point).length() <= kOnCurve * std::max(1.0, path.length());
}

Value startParameter(Interpreter& in, Args args) {
    return Value::real(pathArg(in, args[0]).startParameter());
}
Value endParameter(Interpreter& in, Args args) {
    return Value::real(pathArg(in, args[0]).endParameter());
}
Value startPoint(Interpreter& in, Args args) {
    const CurvePath path = pathArg(in, args[0]);
    return pointValue(path.at(path.startParameter()));
}
Value endPoint(Interpreter& in, Args args) {
    const CurvePath path = pathArg(in, args[0]);
    return pointValue(path.at(path.endParameter()));
}
Value isClosed(Interpreter& in, Args args) {
    return in.truth(pathArg(in, args[0]).isClosed());
}

Value pointAtParameter(Interpreter& in, Args args) {
    const CurvePath path = pathArg(in, args[0]);
    const double parameter = numberArg(in, args[1]);
    return path.has(parameter) ? pointValue(path.at(parameter)) : Value();
}
Value lengthAtParameter(Interpreter& in, Args args) {
    const CurvePath path = pathArg(in, args[0]);
    const double parameter = numberArg(in, args[1]);
    return path.has(parameter) ? Value::real(path.lengthTo(parameter)) : Value();
}
Value derivative(Interpreter& in, Args args) {
    const CurvePath path = pathArg(in, args[0]);
    const double parameter = numberArg(in, args[1]);
    if (!path.has(parameter)) return {};
    const AcGeVector3d way = path.derivativeAt(parameter);
    return pointValue({way.x, way.y, way.z});
}

/// @return false for a length that the path hasn't
bool parameterAtLength(const CurvePath& path, double length, double& parameter) {
    const double slack = kOnCurve * std::max(1.0, path.length());
    if (!(length >= -slack && length <= path.length() + slack)) return false;
    parameter = path.parameterAtLength(length);
    return true;
}
Value parameterAtLengthOf(Interpreter& in, Args args) {
    double parameter = 0;
    const bool has = parameterAtLength(pathArg(in, args[0]), numberArg(in, args[1]), parameter);
    return has ? Value::real(parameter) : Value();
}
Value pointAtLength(Interpreter& in, Args args) {
    double parameter = 0;
    const CurvePath path = pathArg(in, args[0]);
    const bool has = parameterAtLength(path, numberArg(in, args[1]), parameter);
    return has ? pointValue(path.at(parameter)) : Value();
}

Value parameterAtPoint(Interpreter& in, Args args) {
    double parameter = 0;
    const bool on = parameterOf(pathArg(in, args[0]), pointArg(in, args[1]), parameter);
    return on ? Value::real(parameter) : Value();
}
Value lengthAtPoint(Interpreter& in, Args args) {
    double parameter = 0;
    const CurvePath path = pathArg(in, args[0]);
    const bool on = parameterOf(path, pointArg(in, args[1]), parameter);
    return on ? Value::real(path.lengthTo(parameter)) : Value();
}
Value nearestPoint(Interpreter& in, Args args) {
    const CurvePath path = pathArg(in, args[0]);
    const AcGePoint3d point = pointArg(in, args[1]);
    const bool beyond = static_cast<bool>(optionalArg(args, 2));
    return pointValue(beyond ? path.nearestBeyond(point) : path.at(path.nearest(point)));
}
Value area(Interpreter& in, Args args) {
    return Value::real(pathArg(in, args[0]).doubleArea().length() / 2);
}

const Builtin kRows[] = {
    {"vlax-curve-getStartParam", 1, 1, startParameter, "(vlax-curve-getStartParam curve)",
     "Parameter of the start: 0 for lines and polylines, an angle for arcs, a knot for splines."},
    {"vlax-curve-getEndParam", 1, 1, endParameter, "(vlax-curve-getEndParam curve)",
     "Parameter of the end: the length of a line, the number of a polyline's parts, an angle of an "
     "arc."},
    {"vlax-curve-getStartPoint", 1, 1, startPoint, "(vlax-curve-getStartPoint curve)",
     "Point of the start."},
    {"vlax-curve-getEndPoint", 1, 1, endPoint, "(vlax-curve-getEndPoint curve)",
     "Point of the end."},
    {"vlax-curve-isClosed", 1, 1, isClosed, "(vlax-curve-isClosed curve)",
     "T for a curve that ends where it starts."},
    {"vlax-curve-getPointAtParam", 2, 2, pointAtParameter,
     "(vlax-curve-getPointAtParam curve parameter)", "Point at a parameter; nil beyond the ends."},
    {"vlax-curve-getDistAtParam", 2, 2, lengthAtParameter,
     "(vlax-curve-getDistAtParam curve parameter)",
     "Length from the start to a parameter; nil beyond the ends."},
    {"vlax-curve-getFirstDeriv", 2, 2, derivative, "(vlax-curve-getFirstDeriv curve parameter)",
     "Direction at a parameter, as long as the point moves with it; nil beyond the ends."},
    {"vlax-curve-getParamAtDist", 2, 2, parameterAtLengthOf,
     "(vlax-curve-getParamAtDist curve length)",
     "Parameter at a length from the start; nil beyond the ends."},
    {"vlax-curve-getPointAtDist", 2, 2, pointAtLength, "(vlax-curve-getPointAtDist curve length)",
     "Point at a length from the start; nil beyond the ends."},
    {"vlax-curve-getParamAtPoint", 2, 2, parameterAtPoint,
     "(vlax-curve-getParamAtPoint curve point)",
     "Parameter of a point on the curve; nil for one that isn't."},
    {"vlax-curve-getDistAtPoint", 2, 2, lengthAtPoint, "(vlax-curve-getDistAtPoint curve point)",
     "Length from the start to a point on the curve; nil for one that isn't."},
    {"vlax-curve-getClosestPointTo", 2, 3, nearestPoint,
     "(vlax-curve-getClosestPointTo curve point [beyond])",
     "Point of the curve next to a point; with beyond also past the ends of a line or an arc."},
    {"vlax-curve-getArea", 1, 1, area, "(vlax-curve-getArea curve)",
     "Area that the curve and the line between its ends enclose."},
};

}  // namespace

std::span<const Builtin> curveBuiltins() {
    return kRows;
}

}  // namespace host::lisp
