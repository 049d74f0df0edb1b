/// Points, vectors and matrices: the decisions of the headers, and arguments that are NULL or have
/// no direction.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

#include "kz_tls21an/format.h"
#include "kz_tls21an/matrix.h"
#include "kz_tls21an/memory.h"
#include "kz_tls21an/text.h"
#include "kz_tls21an/vector.h"

namespace {

template <class Triple>
std::string show(const Triple& v) {
    kz_Char text[128];
    kz_Str_format(text, 128, KZ_T("%.6g %.6g %.6g"), v.x, v.y, v.z);
    return kz::toUtf8(text);
}

constexpr kz_Point origin{0, 0, 0};
constexpr kz_Point untouched{7, 7, 7};

TEST(Point, outMayBeAnArgument) {
    kz_Point a{1, 2, 3};
    EXPECT_EQ(kz_Point_add(&a, &a, &a), 1);
    EXPECT_EQ(show(a), "2 4 6");
    EXPECT_EQ(kz_Point_midpoint(&a, &a, &origin), 1);
    EXPECT_EQ(show(a), "1 2 3");
    EXPECT_EQ(kz_Point_subtract(&a, &origin, &a), 1);
    EXPECT_EQ(show(a), "-1 -2 -3");
    kz_Vector v{1, 0, 0};
    const kz_Vector y{0, 1, 0};
    EXPECT_EQ(kz_Vector_crossProduct(&v, &v, &y), 1);
    EXPECT_EQ(show(v), "0 0 1");
}

TEST(Point, nullArgumentsGiveZeroAndLeaveOut) {
    kz_Point out = untouched;
    double number = 7.0;
    EXPECT_EQ(kz_Point_add(&out, nullptr, &origin), 0);
    EXPECT_EQ(kz_Point_add(nullptr, &origin, &origin), 0);
    EXPECT_EQ(kz_Point_getY(&number, nullptr), 0);
    EXPECT_EQ(kz_Point_distance(&number, &origin, nullptr), 0);
    EXPECT_EQ(kz_Point_setZ(nullptr, 1.0), 0);
    EXPECT_EQ(kz_Point_equal(nullptr, nullptr), 0);
    EXPECT_EQ(show(out), show(untouched));
    EXPECT_EQ(number, 7.0);
    EXPECT_EQ(kz_Point_copy(&out, nullptr), 0);
    EXPECT_EQ(show(out), "0 0 0") << "a copy of no point is the origin";
}

TEST(Point, equalityHasATolerance) {
    const kz_Point near{0.9e-6, -0.9e-6, 0};
    const kz_Point far{0, 0, 1.1e-6};
    EXPECT_EQ(kz_Point_equal(&origin, &near), 1);
    EXPECT_EQ(kz_Point_equal(&origin, &far), 0);
}

TEST(Point, colinearityDoesNotDependOnTheOrder) {
    const kz_Point a{0, 0, 0};
    const kz_Point b{1000, 0, 0};
    const kz_Point close{1, 0.5e-6, 0};
    const kz_Point off{1, 2e-6, 0};
    EXPECT_EQ(kz_Point_colinear(&a, &b, &close), 1);
    EXPECT_EQ(kz_Point_colinear(&a, &close, &b), 1);
    EXPECT_EQ(kz_Point_colinear(&a, &b, &off), 0);
    EXPECT_EQ(kz_Point_colinear(&off, &a, &b), 0);
    EXPECT_EQ(kz_Point_colinear(&a, &a, &off), 1);
    EXPECT_EQ(kz_Point_colinear(&a, &a, &a), 1);
}

TEST(Point, betweenCanExcludeTheEnds) {
    const kz_Point end{2, 2, 2};
    const kz_Point middle{1, 1, 1};
    const kz_Point beyond{3, 3, 3};
    const kz_Point beside{1, 1, 1.1};
    EXPECT_EQ(kz_Point_between(&origin, &middle, &end, 1), 1);
    EXPECT_EQ(kz_Point_between(&origin, &beyond, &end, 0), 0);
    EXPECT_EQ(kz_Point_between(&origin, &beside, &end, 0), 0);
    EXPECT_EQ(kz_Point_between(&origin, &end, &end, 0), 1);
    EXPECT_EQ(kz_Point_between(&origin, &origin, &end, 1), 0);
}

TEST(Point, linesIntersectAlsoBeyondTheirEnds) {
    const kz_Point a{0, 0, 5};
    const kz_Point b{1, 0, 5};
    const kz_Point c{4, 3, 5};
    const kz_Point d{4, 2, 5};
    kz_Point out = untouched;
    EXPECT_EQ(kz_Point_intersectPoint(&out, &a, &b, &c, &d), 1);
    EXPECT_EQ(show(out), "4 0 5");
    const kz_Point skew{4, 2, 6};
    out = untouched;
    const kz_Point parallel{5, 3, 5};
    EXPECT_EQ(kz_Point_intersectPoint(&out, &a, &b, &c, &parallel), 0);
    EXPECT_EQ(kz_Point_intersectPoint(&out, &a, &b, &c, &skew), 0);
    EXPECT_EQ(kz_Point_intersectPoint(&out, &a, &a, &c, &d), 0);
    EXPECT_EQ(show(out), show(untouched));
}

TEST(Point, translations) {
    const kz_Point start{1, 1, 1};
    kz_Point out{};
    EXPECT_EQ(kz_Point_translateByAngle(&out, &start, std::numbers::pi / 2, 3), 1);
    EXPECT_EQ(show(out), "1 4 1");
    const kz_Vector direction{0, 0, 20};
    EXPECT_EQ(kz_Point_translateByVector(&out, &start, &direction, 2), 1);
    EXPECT_EQ(show(out), "1 1 3");
    const kz_Vector none{0, 0, 0};
    EXPECT_EQ(kz_Point_translateByVector(&out, &start, &none, 2), 0);
}

TEST(Point, orthoVectorPointsToThePickedSide) {
    const kz_Point second{1, 0, 0};
    const kz_Point picked{5, -3, 0};
    const kz_Point onLine{5, 0, 0};
    kz_Vector out{};
    EXPECT_EQ(kz_Point_getOrthoVector(&out, &origin, &second, &picked), 1);
    EXPECT_EQ(show(out), "0 -1 0");
    EXPECT_EQ(kz_Point_getOrthoVector(&out, &origin, &second, &onLine), 0);
    EXPECT_EQ(kz_Point_getOrthoVector(&out, &origin, &origin, &picked), 0);
}

TEST(Point, roundingLeavesNoNoiseAndNoNegativeZero) {
    kz_Point point{0.1 + 0.2, -1e-9, 1e20};
    EXPECT_EQ(kz_Point_setToTolerance(&point), 1);
    EXPECT_EQ(point.x, 0.3);
    EXPECT_FALSE(std::signbit(point.y));
    EXPECT_EQ(point.z, 1e20);
    kz_Vector vector{0.99999999999, -0.0, std::nan("")};
    EXPECT_EQ(kz_Point_setToTolerance(&vector), 1);
    EXPECT_EQ(vector.x, 1.0);
    EXPECT_TRUE(std::isnan(vector.z));
    EXPECT_DOUBLE_EQ(kz_Cnv_rtod(kz_Cnv_dtor(180.0)), 180.0);
}

TEST(Vector, unitVectorsNeedALength) {
    kz_Vector v{3, 0, -4};
    double size = 0.0;
    EXPECT_EQ(kz_Vector_magnitude(&size, &v), 1);
    EXPECT_EQ(size, 5.0);
    EXPECT_EQ(kz_Vector_normalize(&v), 1);
    EXPECT_EQ(show(v), "0.6 0 -0.8");
    kz_Vector none{0, 0, 0};
    EXPECT_EQ(kz_Vector_normalize(&none), 0);
    kz_Vector huge{1e300, 1e300, 0};
    EXPECT_EQ(kz_Vector_normalize(&huge), 1);
    EXPECT_EQ(show(huge), "0.707107 0.707107 0");
}

TEST(Vector, theNormalFollowsTheRightHand) {
    const kz_Point a{5, 0, 0};
    const kz_Point b{5, 5, 0};
    const kz_Point far{10, 0, 0};
    kz_Vector out{};
    EXPECT_EQ(kz_Vector_computeNormal(&out, &a, &b), 1);
    EXPECT_EQ(show(out), "0 0 1");
    EXPECT_EQ(kz_Vector_computeNormal(&out, &a, &far), 0);
    EXPECT_EQ(kz_Vector_computeVector(&out, &a, &b), 1);
    EXPECT_EQ(show(out), "0 5 0");
}

TEST(Vector, testsOfDirectionDoNotDependOnLength) {
    const kz_Vector x{1e-3, 0, 0};
    const kz_Vector back{-1e6, 0.1, 0};
    const kz_Vector up{0, 0, 1e6};
    const kz_Vector none{0, 0, 0};
    EXPECT_EQ(kz_Vector_parallel(&x, &back), 1);
    EXPECT_EQ(kz_Vector_orthogonal(&x, &up), 1);
    EXPECT_EQ(kz_Vector_parallel(&x, &up), 0);
    EXPECT_EQ(kz_Vector_orthogonal(&x, &back), 0);
    EXPECT_EQ(kz_Vector_parallel(&x, &none), 0);
    EXPECT_EQ(kz_Vector_orthogonal(&x, &none), 0);
    const kz_Vector slanted{1, 0.01, 0};
    EXPECT_EQ(kz_Vector_parallelWithinTolerance(&x, &slanted, 0.02), 1);
    EXPECT_EQ(kz_Vector_parallelWithinTolerance(&x, &slanted, 0.005), 0);
}

TEST(Matrix, elementsOfATransformLieInFourByFour) {
    kz_TMatrix* matrix = kz_TMatrix_create();
    double value = 7.0;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            EXPECT_EQ(kz_Matrix_getElement(&value, matrix, row, column), 1);
            EXPECT_EQ(value, row == column ? 1.0 : 0.0);
            const double next = row == 3 ? value : 10.0 * row + column;
            EXPECT_EQ(kz_Matrix_setElement(matrix, row, column, next), 1);
        }
    }
    EXPECT_EQ(kz_Matrix_setElement(matrix, 3, 0, 0.5), 0);
    EXPECT_EQ(kz_Matrix_setElement(matrix, 3, 3, 2.0), 0);
    EXPECT_EQ(kz_Matrix_setElement(matrix, 4, 0, 0.0), 0);
    EXPECT_EQ(kz_Matrix_getElement(&value, matrix, 0, -1), 0);
    kz_TMatrix copy{};
    EXPECT_EQ(kz_Matrix_copy(&copy, matrix), 1);
    kz_TMatrix_destroy(matrix);
    EXPECT_EQ(show(copy.origin), "3 13 23");
    kz_RotMatrix rotation{};
    kz_Vector column{};
    EXPECT_EQ(kz_TMatrix_getRMatrix(&rotation, &copy), 1);
    EXPECT_EQ(kz_RotMatrix_getColumn(&column, &rotation, 1), 1);
    EXPECT_EQ(show(column), "1 11 21");
    EXPECT_EQ(kz_RotMatrix_getColumn(&column, &rotation, 3), 0);
}

TEST(Matrix, columnsMakeARotationAndIdentityHasATolerance) {
    const kz_Vector x{1, 2, 3};
    const kz_Vector y{4, 5, 6};
    const kz_Vector z{7, 8, 9};
    kz_RotMatrix* matrix = kz_RotMatrix_create();
    EXPECT_EQ(kz_RotMatrix_isIdentity(matrix), 1);
    EXPECT_EQ(kz_RotMatrix_setElement(matrix, 0, 1, 1e-9), 1);
    EXPECT_EQ(kz_RotMatrix_isIdentity(matrix), 1);
    EXPECT_EQ(kz_RotMatrix_fromColumnVectors(matrix, &x, &y, &z), 1);
    EXPECT_EQ(kz_RotMatrix_isIdentity(matrix), 0);
    EXPECT_EQ(matrix->element[0][2], 7.0);
    EXPECT_EQ(kz_RotMatrix_setElement(matrix, 3, 0, 1.0), 0);
    kz_RotMatrix_destroy(matrix);
    kz_Malloc_failFrom(1);
    EXPECT_EQ(kz_RotMatrix_create(), nullptr);
    EXPECT_EQ(kz_TMatrix_create(), nullptr);
    kz_Malloc_failFrom(0);
}

}  // namespace
