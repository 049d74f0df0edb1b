/// Arithmetic, comparison and bits. Integers have 32 bits and wrap; one real among the arguments
/// makes the rest of a sum real, from left to right.
#include <cmath>

#include "lisp/builtin.h"
#include "lisp/compare.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

int32_t wrapped(int64_t number) {
    return static_cast<int32_t>(static_cast<uint32_t>(number));
}

/// Folds numbers from left to right; `whole` and `fraction` are the operation on integers and on
/// reals.
template <class Whole, class Fraction>
Value fold(Interpreter& in, Args args, Whole whole, Fraction fraction) {
    if (args.empty()) return Value::integer(0);
    for (const Value& arg : args)
        numberArg(in, arg);
    int32_t number = args[0].isInteger() ? args[0].integer() : 0;
    size_t i = 1;
    if (args[0].isInteger()) {
        for (; i < args.size() && args[i].isInteger(); ++i) {
            number = whole(number, args[i].integer());
        }
        if (i == args.size()) return Value::integer(number);
    }
    double real = args[0].isInteger() ? number : args[0].real();
    for (; i < args.size(); ++i)
        real = fraction(real, args[i].number());
    return Value::real(real);
}

Value add(Interpreter& in, Args args) {
    return fold(
        in, args, [](int32_t a, int32_t b) { return wrapped(int64_t{a} + b); },
        [](double a, double b) { return a + b; });
}

Value subtract(Interpreter& in, Args args) {
    if (args.size() == 1) {
        if (args[0].isInteger()) return Value::integer(wrapped(-int64_t{args[0].integer()}));
        return Value::real(-numberArg(in, args[0]));
    }
    return fold(
        in, args, [](int32_t a, int32_t b) { return wrapped(int64_t{a} - b); },
        [](double a, double b) { return a - b; });
}

Value multiply(Interpreter& in, Args args) {
    return fold(
        in, args, [](int32_t a, int32_t b) { return wrapped(int64_t{a} * b); },
        [](double a, double b) { return a * b; });
}

template <class Number>
Number nonZero(Interpreter& in, Number divisor) {
    if (divisor == 0) in.fail(u"divide by zero");
    return divisor;
}

Value divide(Interpreter& in, Args args) {
    return fold(
        in, args, [&](int32_t a, int32_t b) { return wrapped(int64_t{a} / nonZero(in, b)); },
        [&](double a, double b) { return a / nonZero(in, b); });
}

Value remainder(Interpreter& in, Args args) {
    return fold(
        in, args, [&](int32_t a, int32_t b) { return wrapped(int64_t{a} % nonZero(in, b)); },
        [&](double a, double b) { return std::fmod(a, nonZero(in, b)); });
}

/// The greatest or least of the numbers, as a real when one of them is.
template <class Before>
Value extreme(Interpreter& in, Args args, Before before) {
    if (args.empty()) return Value::integer(0);
    bool real = false;
    double best = numberArg(in, args[0]);
    for (const Value& arg : args) {
        real = real || arg.isReal();
        if (before(numberArg(in, arg), best)) best = arg.number();
    }
    return real ? Value::real(best) : Value::integer(static_cast<int32_t>(best));
}

Value maximum(Interpreter& in, Args args) {
    return extreme(in, args, [](double a, double b) { return a > b; });
}

Value minimum(Interpreter& in, Args args) {
    return extreme(in, args, [](double a, double b) { return a < b; });
}

Value addOne(Interpreter& in, Args args) {
    if (args[0].isInteger()) return Value::integer(wrapped(int64_t{args[0].integer()} + 1));
    return Value::real(numberArg(in, args[0]) + 1);
}

Value subtractOne(Interpreter& in, Args args) {
    if (args[0].isInteger()) return Value::integer(wrapped(int64_t{args[0].integer()} - 1));
    return Value::real(numberArg(in, args[0]) - 1);
}

Value absolute(Interpreter& in, Args args) {
    if (!args[0].isInteger()) return Value::real(std::fabs(numberArg(in, args[0])));
    return Value::integer(wrapped(std::abs(int64_t{args[0].integer()})));
}

Value fix(Interpreter& in, Args args) {
    if (args[0].isInteger()) return args[0];
    const double whole = std::trunc(numberArg(in, args[0]));
    const bool fits = whole >= std::numeric_limits<int32_t>::min() &&
                      whole <= std::numeric_limits<int32_t>::max();
    return fits ? Value::integer(static_cast<int32_t>(whole)) : Value::real(whole);
}

Value toReal(Interpreter& in, Args args) {
    return Value::real(numberArg(in, args[0]));
}

Value exponential(Interpreter& in, Args args) {
    return Value::real(std::exp(numberArg(in, args[0])));
}
Value sine(Interpreter& in, Args args) {
    return Value::real(std::sin(numberArg(in, args[0])));
}
Value cosine(Interpreter& in, Args args) {
    return Value::real(std::cos(numberArg(in, args[0])));
}

Value squareRoot(Interpreter& in, Args args) {
    if (numberArg(in, args[0]) < 0) in.failWith(u"function undefined for argument:", args[0]);
    return Value::real(std::sqrt(args[0].number()));
}

Value logarithm(Interpreter& in, Args args) {
    if (numberArg(in, args[0]) <= 0) in.failWith(u"function undefined for argument:", args[0]);
    return Value::real(std::log(args[0].number()));
}

Value arcTangent(Interpreter& in, Args args) {
    const double first = numberArg(in, args[0]);
    if (args.size() == 1) return Value::real(std::atan(first));
    return Value::real(std::atan2(first, numberArg(in, args[1])));
}

/// Power of integers by squaring; it wraps as multiplication does.
int32_t wholePower(int32_t base, int32_t exponent) {
    if (exponent < 0) return base == 1 ? 1 : base == -1 ? (exponent % 2 ? -1 : 1) : 0;
    uint32_t result = 1;
    for (auto factor = static_cast<uint32_t>(base); exponent > 0; exponent /= 2) {
        if (exponent % 2) result *= factor;
        factor *= factor;
    }
    return static_cast<int32_t>(result);
}

Value power(Interpreter& in, Args args) {
    const double base = numberArg(in, args[0]);
    const double exponent = numberArg(in, args[1]);
    if (args[0].isInteger() && args[1].isInteger()) {
        return Value::integer(wholePower(args[0].integer(), args[1].integer()));
    }
    const double result = std::pow(base, exponent);
    if (std::isnan(result)) in.failWith(u"function undefined for argument:", args[0]);
    return Value::real(result);
}

Value greatestCommonDivisor(Interpreter& in, Args args) {
    int64_t a = std::abs(int64_t{integerArg(in, args[0])});
    int64_t b = std::abs(int64_t{integerArg(in, args[1])});
    while (b != 0)
        a = std::exchange(b, a % b);
    return Value::integer(wrapped(a));
}

/// True when the relation holds between all neighbours.
template <class Holds>
Value chain(Interpreter& in, Args args, Holds holds) {
    for (size_t i = 1; i < args.size(); ++i) {
        if (!holds(args[i - 1], args[i])) return Value();
    }
    return in.truth(true);
}

Value numericallyEqual(Interpreter& in, Args args) {
    return chain(in, args, isSameValue);
}

Value notEqual(Interpreter& in, Args args) {
    return chain(in, args, [](const Value& a, const Value& b) { return !isSameValue(a, b); });
}

Value less(Interpreter& in, Args args) {
    return chain(in, args,
                 [](const Value& a, const Value& b) { return std::is_lt(orderOf(a, b)); });
}

Value greater(Interpreter& in, Args args) {
    return chain(in, args,
                 [](const Value& a, const Value& b) { return std::is_gt(orderOf(a, b)); });
}

Value notGreater(Interpreter& in, Args args) {
    return chain(in, args,
                 [](const Value& a, const Value& b) { return std::is_lteq(orderOf(a, b)); });
}

Value notLess(Interpreter& in, Args args) {
    return chain(in, args,
                 [](const Value& a, const Value& b) { return std::is_gteq(orderOf(a, b)); });
}

Value eq(Interpreter& in, Args args) {
    return in.truth(isEq(args[0], args[1]));
}

Value equal(Interpreter& in, Args args) {
    const double fuzz = args.size() == 3 ? numberArg(in, args[2]) : 0.0;
    return in.truth(isEqual(in, args[0], args[1], fuzz));
}

Value isZero(Interpreter& in, Args args) {
    return in.truth(numberArg(in, args[0]) == 0);
}
Value isMinus(Interpreter& in, Args args) {
    return in.truth(numberArg(in, args[0]) < 0);
}
Value isNumber(Interpreter& in, Args args) {
    return in.truth(args[0].isNumber());
}

template <class Operation>
Value foldBits(Interpreter& in, Args args, Operation operation) {
    int32_t bits = args.empty() ? 0 : integerArg(in, args[0]);
    for (size_t i = 1; i < args.size(); ++i)
        bits = operation(bits, integerArg(in, args[i]));
    return Value::integer(bits);
}

Value bitAnd(Interpreter& in, Args args) {
    return foldBits(in, args, [](int32_t a, int32_t b) { return a & b; });
}

Value bitOr(Interpreter& in, Args args) {
    return foldBits(in, args, [](int32_t a, int32_t b) { return a | b; });
}

Value bitNot(Interpreter& in, Args args) {
    return Value::integer(~integerArg(in, args[0]));
}

Value shift(Interpreter& in, Args args) {
    const auto bits = static_cast<uint32_t>(integerArg(in, args[0]));
    const int32_t count = integerArg(in, args[1]);
    if (count >= 32 || count <= -32) return Value::integer(0);
    return Value::integer(static_cast<int32_t>(count >= 0 ? bits << count : bits >> -count));
}

/// Each bit of `table` stands for one combination: 1 for both set, 2 and 4 for the first or second
/// alone, 8 for none.
Value boole(Interpreter& in, Args args) {
    const int32_t table = integerArg(in, args[0]);
    return foldBits(in, args.subspan(1), [table](int32_t a, int32_t b) {
        return (table & 1 ? a & b : 0) | (table & 2 ? a & ~b : 0) | (table & 4 ? ~a & b : 0) |
               (table & 8 ? ~a & ~b : 0);
    });
}

const Builtin kRows[] = {
    {"+", 0, kAnyNumber, add, "(+ [number ...])", "Sum."},
    {"-", 0, kAnyNumber, subtract, "(- [number ...])",
     "First number less the others; one number is negated."},
    {"*", 0, kAnyNumber, multiply, "(* [number ...])", "Product; 0 for no number."},
    {"/", 0, kAnyNumber, divide, "(/ [number ...])",
     "First number divided by the others; integers give the whole quotient."},
    {"rem", 0, kAnyNumber, remainder, "(rem [number ...])",
     "Remainder of the first number divided by the others."},
    {"max", 0, kAnyNumber, maximum, "(max [number ...])", "Greatest number."},
    {"min", 0, kAnyNumber, minimum, "(min [number ...])", "Least number."},
    {"1+", 1, 1, addOne, "(1+ number)", "Number plus one."},
    {"1-", 1, 1, subtractOne, "(1- number)", "Number less one."},
    {"abs", 1, 1, absolute, "(abs number)", "Absolute value."},
    {"fix", 1, 1, fix, "(fix number)",
     "Whole part as an integer; as a real where it doesn't fit 32 bits."},
    {"float", 1, 1, toReal, "(float number)", "Number as a real."},
    {"exp", 1, 1, exponential, "(exp number)", "Power of e."},
    {"expt", 2, 2, power, "(expt base exponent)", "Power; an integer for two integers."},
    {"log", 1, 1, logarithm, "(log number)", "Natural logarithm."},
    {"sqrt", 1, 1, squareRoot, "(sqrt number)", "Square root."},
    {"sin", 1, 1, sine, "(sin angle)", "Sine of an angle in radians."},
    {"cos", 1, 1, cosine, "(cos angle)", "Cosine of an angle in radians."},
    {"atan", 1, 2, arcTangent, "(atan number [divisor])",
     "Arc tangent in radians; of a quotient in the quadrant of its parts."},
    {"gcd", 2, 2, greatestCommonDivisor, "(gcd integer integer)", "Greatest common divisor."},
    {"=", 1, kAnyNumber, numericallyEqual, "(= value ...)",
     "T when neighbours are equal numbers or texts."},
    {"/=", 1, kAnyNumber, notEqual, "(/= value ...)", "T when no neighbours are equal."},
    {"<", 1, kAnyNumber, less, "(< value ...)", "T when each value is less than the next."},
    {">", 1, kAnyNumber, greater, "(> value ...)", "T when each value is greater than the next."},
    {"<=", 1, kAnyNumber, notGreater, "(<= value ...)",
     "T when no value is greater than the next."},
    {">=", 1, kAnyNumber, notLess, "(>= value ...)", "T when no value is less than the next."},
    {"eq", 2, 2, eq, "(eq value value)", "T for the same object."},
    {"equal", 2, 3, equal, "(equal value value [fuzz])",
     "T for values of the same structure; numbers may differ by fuzz."},
    {"zerop", 1, 1, isZero, "(zerop number)", "T for zero."},
    {"minusp", 1, 1, isMinus, "(minusp number)", "T for a negative number."},
    {"numberp", 1, 1, isNumber, "(numberp value)", "T for an integer or a real."},
    {"logand", 0, kAnyNumber, bitAnd, "(logand [integer ...])", "Bits that all integers have."},
    {"logior", 0, kAnyNumber, bitOr, "(logior [integer ...])",
     "Bits that any of the integers has."},
    {"~", 1, 1, bitNot, "(~ integer)", "All bits reversed."},
    {"lsh", 2, 2, shift, "(lsh integer count)",
     "Bits shifted to the left; to the right for a negative count."},
    {"boole", 2, kAnyNumber, boole, "(boole table integer ...)",
     "Bits combined by a truth table: 1 and, 6 exclusive or, 7 or, 8 nor."},
};

}  // namespace

std::span<const Builtin> numberBuiltins() {
    return kRows;
}

}  // namespace host::lisp
