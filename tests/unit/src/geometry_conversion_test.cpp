/// Geometry between the suite's forms and the platform's.
#include "chain_text.h"

namespace {

using test::Arguments;
using test::ChainTest;

class GeometryConversion : public ChainTest {};

TEST_F(GeometryConversion, PointsAndVectorsKeepTheirCoordinates) {
    ads_point point = {1.0, 2.0, 3.0};
    kz_Point suite_point{};
    EXPECT_EQ(kz_Point_fromADSPoint(&suite_point, point), 1);
    EXPECT_EQ(kz_Point_fromADSPoint(nullptr, point), 0);
    ads_point back = {};
    EXPECT_EQ(kz_Point_toADSPoint(back, &suite_point), 1);
    EXPECT_EQ(kz_Point_toADSPoint(back, nullptr), 0);
    EXPECT_EQ(back[0] * 100 + back[1] * 10 + back[2], 123.0);
    kz_Vector vector{};
    EXPECT_EQ(kz_Vector_fromADSPoint(&vector, point), 1);
    EXPECT_EQ(kz_Vector_toADSPoint(back, nullptr), 0);
    const AcGeVector3d platform = kz_Vector_asAcGeVector3d(&vector);
    EXPECT_EQ(platform.z, 3.0);
    EXPECT_EQ(kz_Vector_asKz_Vector(platform).y, 2.0);
    EXPECT_EQ(kz_Point_asKz_Point(kz_Point_asAcGePoint3d(&suite_point)).x, 1.0);
    EXPECT_EQ(kz_Point_asAcGePoint3d(nullptr).x, 0.0);
}

TEST_F(GeometryConversion, EachModuleTracesUnderItsOwnBit) {
    ads_point point = {};
    ads_matrix matrix = {};
    kz_Point suite_point{};
    kz_Vector vector{};
    const auto convert_all = [&] {
        kz_Point_fromADSPoint(&suite_point, point);
        kz_Vector_toADSPoint(point, &vector);
        kz_TMatrix_toADSMatrix(matrix, nullptr);
    };
    const std::pair<int32_t, const char*> cases[] = {
        {0x8, "kz_Point_fromADSPoint"},
        {0x20, "kz_Vector_toADSPoint"},
        {0x10, "kz_TMatrix_toADSMatrix"},
    };
    for (const auto& [mask, name] : cases) {
        traceAt(3, mask);
        convert_all();
        EXPECT_EQ(traced(), "Entering " + std::string(name) + ".\nLeaving " + name + ".");
    }
    traceAt(2);
    convert_all();
    EXPECT_EQ(traced(), "");
}

TEST_F(GeometryConversion, TransformsGoThereAndBackRowByRow) {
    const ads_matrix matrix = {{0, -1, 0, 5}, {1, 0, 0, 6}, {0, 0, 1, 7}, {0, 0, 0, 1}};
    kz_TMatrix* transform = kz_TMatrix_create();
    EXPECT_EQ(kz_TMatrix_fromADSMatrix(transform, matrix), 1);
    EXPECT_EQ(transform->origin.z, 7.0);
    EXPECT_EQ(transform->rotation.element[0][1], -1.0);
    ads_matrix back = {};
    EXPECT_EQ(kz_TMatrix_toADSMatrix(back, transform), 1);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(back[i / 4][i % 4], matrix[i / 4][i % 4]) << i;
    EXPECT_EQ(kz_TMatrix_toADSMatrix(back, nullptr), 0);
    EXPECT_EQ(kz_TMatrix_fromADSMatrix(nullptr, matrix), 0);
    ads_matrix perspective = {};
    EXPECT_EQ(kz_TMatrix_fromADSMatrix(transform, perspective), 0) << "no last row of 0 0 0 1";
    kz_TMatrix_destroy(transform);
}

TEST_F(GeometryConversion, PointListsTakeThePointsOfALispList) {
    Arguments arguments("( <1,2,3> 5 <4,5> ) T");
    kz_PointList* list = kz_PointList_fromRb(&arguments.at);
    EXPECT_EQ(arguments.rest(), "T");
    EXPECT_EQ(kz_PointList_length(list), 2);
    EXPECT_EQ(test::take(kz_PointList_toRb(list)), "<1,2,3> <4,5,0>");
    kz_PointList_destroy(list);
    Arguments none("( 5 ) T");
    EXPECT_EQ(kz_PointList_fromRb(&none.at), nullptr);
    EXPECT_EQ(none.rest(), "T");
    EXPECT_EQ(kz_PointList_toRb(nullptr), nullptr);
}

}  // namespace
