// Matrices, boxes and curves.
#include "geom/curve.h"

#include "editor_test.h"

namespace {

using host::Curve;

TEST(Matrices, coordinate_systems_there_and_back) {
    AcGeMatrix3d matrix;
    matrix.setCoordSystem({5, 6, 7}, {0, 1, 0}, {-1, 0, 0}, {0, 0, 1});
    EXPECT_TRUE(near(matrix * AcGePoint3d(1, 2, 3), AcGePoint3d(3, 7, 10)));
    EXPECT_TRUE(near(matrix * AcGeVector3d(1, 2, 3), AcGeVector3d(-2, 1, 3)));
    EXPECT_EQ(matrix(0, 3), 5.0);
    EXPECT_TRUE((matrix * matrix.inverse()).isEqualTo(AcGeMatrix3d()));
    AcGePoint3d origin;
    AcGeVector3d x, y, z;
    matrix.getCoordSystem(origin, x, y, z);
    EXPECT_TRUE(near(origin, AcGePoint3d(5, 6, 7)) && near(y, AcGeVector3d(-1, 0, 0)));
    AcGeMatrix3d flat;
    flat.setCoordSystem({}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0});
    EXPECT_TRUE(flat.isSingular());
    EXPECT_TRUE(flat.inverse().isEqualTo(flat));
}

TEST(Matrices, products_apply_the_right_one_first) {
    AcGeMatrix3d turn, move, scale;
    turn.setToRotation(kPi / 2, AcGeVector3d::kZAxis, {1, 0, 0});
    move.setToTranslation({10, 0, 0});
    scale.setToScaling(2.0, {1, 1, 1});
    EXPECT_TRUE(near(turn * AcGePoint3d(2, 0, 0), AcGePoint3d(1, 1, 0)));
    EXPECT_TRUE(near(move * turn * AcGePoint3d(2, 0, 0), AcGePoint3d(11, 1, 0)));
    EXPECT_TRUE(near(turn * move * AcGePoint3d(2, 0, 0), AcGePoint3d(1, 11, 0)));
    EXPECT_TRUE(near(scale * AcGePoint3d(2, 3, 4), AcGePoint3d(3, 5, 7)));
    AcGeMatrix3d both = move;
    both *= turn;
    EXPECT_TRUE(both.isEqualTo(move * turn));
    both.setTranslation({0, 0, 9});
    EXPECT_TRUE(near(both.translation(), AcGeVector3d(0, 0, 9)));
}

TEST(Matrices, arbitrary_axis_rule) {
    // From the published rule: the y axis of the world where the direction is near to its z axis.
    EXPECT_TRUE(near(AcGeVector3d(0, 0, -1).perpVector(), AcGeVector3d(-1, 0, 0)));
    EXPECT_TRUE(near(AcGeVector3d(1, 0, 0).perpVector(), AcGeVector3d(0, 1, 0)));
    EXPECT_TRUE(near(AcGeVector3d(0, 5, 0).perpVector(), AcGeVector3d(-1, 0, 0)));
    AcGeMatrix3d plane;
    plane.setToPlaneToWorld({0, 0, -1});
    EXPECT_TRUE(near(plane * AcGePoint3d(1, 2, 3), AcGePoint3d(-1, 2, -3)));
}

TEST(Boxes, unions_and_turned_boxes) {
    AcDbExtents box;
    EXPECT_TRUE(box.isEmpty());
    box.transformBy(AcGeMatrix3d().setToTranslation({1, 1, 1}));
    EXPECT_TRUE(box.isEmpty());
    box.addPoint({0, 0, 0});
    box.addExt(AcDbExtents({1, 1, 0}, {2, 1, 0}));
    box.addExt(AcDbExtents());
    EXPECT_TRUE(near(box.maxPoint(), AcGePoint3d(2, 1, 0)));
    box.transformBy(AcGeMatrix3d().setToRotation(kPi / 2, AcGeVector3d::kZAxis));
    EXPECT_TRUE(near(box.minPoint(), AcGePoint3d(-1, 0, 0)));
    EXPECT_TRUE(near(box.maxPoint(), AcGePoint3d(0, 2, 0)));
}

TEST(Curves, bulges_are_arcs) {
    const Curve half = Curve::bulge({0, 0, 0}, {2, 0, 0}, 1.0);
    EXPECT_TRUE(near(half.at(0.5), AcGePoint3d(1, -1, 0)));  // counter-clockwise is to the right
    EXPECT_TRUE(near(half.end(), AcGePoint3d(2, 0, 0)));
    const Curve quarter = Curve::bulge({1, 0, 5}, {0, 1, 5}, std::tan(kPi / 8));
    EXPECT_TRUE(near(quarter.centre(), AcGePoint3d(0, 0, 5)));
    const Curve back = Curve::bulge({0, 1, 0}, {1, 0, 0}, -std::tan(kPi / 8));
    EXPECT_TRUE(near(back.centre(), AcGePoint3d()));
    EXPECT_TRUE(near(back.at(0.5), AcGePoint3d(std::sqrt(0.5), std::sqrt(0.5), 0)));
    EXPECT_TRUE(Curve::bulge({1, 1, 0}, {1, 1, 0}, 1.0).isLine());
}

TEST(Curves, boxes_hold_the_turning_points) {
    // A quarter from 45 to 135 degrees bulges up to its radius.
    const Curve arc = Curve::arc({10, 0, 0}, {2, 0, 0}, {0, 2, 0}, kPi / 4, kPi / 2);
    EXPECT_TRUE(near(arc.extents().maxPoint(), AcGePoint3d(10 + std::sqrt(2), 2, 0)));
    EXPECT_TRUE(near(arc.extents().minPoint(), AcGePoint3d(10 - std::sqrt(2), std::sqrt(2), 0)));
    Curve ellipse = Curve::circle({0, 0, 0}, {2, 0, 0}, {0, 1, 0});
    ellipse.transformBy(AcGeMatrix3d().setToRotation(kPi / 4, AcGeVector3d::kZAxis));
    // Half width of a turned ellipse: root of (a cos)^2 + (b sin)^2.
    EXPECT_NEAR(ellipse.extents().maxPoint().x, std::sqrt(2.5), 1e-12);
    EXPECT_NEAR(ellipse.extents().minPoint().y, -std::sqrt(2.5), 1e-12);
}

TEST(Curves, nearest_places) {
    const Curve line = Curve::line({0, 0, 0}, {10, 0, 5});
    EXPECT_NEAR(line.nearest(3, 4).t, 0.3, 1e-12);
    EXPECT_NEAR(line.nearest(3, 4).distance, 4.0, 1e-12);
    EXPECT_NEAR(line.nearest(-3, 4).distance, 5.0, 1e-12);
    const Curve arc = Curve::arc({0, 0, 0}, {5, 0, 0}, {0, 5, 0}, 0.0, kPi / 2);
    EXPECT_NEAR(arc.nearest(3, 3).distance, 5 - std::sqrt(18), 1e-12);
    EXPECT_NEAR(arc.nearest(3, -4).distance, std::hypot(2, 4), 1e-12);  // the start
    const Curve clockwise = Curve::arc({0, 0, 0}, {5, 0, 0}, {0, 5, 0}, kPi / 2, -kPi / 2);
    EXPECT_NEAR(clockwise.nearest(3, 3).t, 0.5, 1e-12);
    const Curve ellipse = Curve::circle({0, 0, 0}, {4, 0, 0}, {0, 2, 0});
    EXPECT_NEAR(ellipse.nearest(0, 5).distance, 3.0, 1e-9);
    EXPECT_NEAR(ellipse.nearest(-9, 0).distance, 5.0, 1e-9);
}

TEST(Curves, crossings) {
    const Curve line = Curve::line({-10, 3, 0}, {10, 3, 0});
    const Curve circle = Curve::circle({0, 0, 0}, {5, 0, 0}, {0, 5, 0});
    ASSERT_EQ(line.crossings(circle).size(), 2U);
    for (const auto& crossing : circle.crossings(line))
        EXPECT_NEAR(std::fabs(circle.at(crossing.t).x), 4.0, 1e-12);
    EXPECT_EQ(Curve::line({-10, 5, 0}, {10, 5, 0}).crossings(circle).size(), 1U);  // touches
    EXPECT_TRUE(Curve::line({-10, 6, 0}, {10, 6, 0}).crossings(circle).empty());
    const Curve other = Curve::circle({8, 0, 0}, {0, 5, 0}, {-5, 0, 0});
    ASSERT_EQ(circle.crossings(other).size(), 2U);
    EXPECT_NEAR(circle.at(circle.crossings(other)[0].t).x, 4.0, 1e-12);
    EXPECT_EQ(circle.crossings(Curve::circle({10, 0, 0}, {5, 0, 0}, {0, 5, 0})).size(), 1U);
    const Curve wide = Curve::circle({0, 0, 0}, {8, 0, 0}, {0, 3, 0});
    ASSERT_EQ(wide.crossings(circle).size(), 4U);
    for (const auto& crossing : wide.crossings(circle)) {
        const AcGePoint3d point = wide.at(crossing.t);
        EXPECT_NEAR(point.x * point.x + point.y * point.y, 25.0, 1e-6);
        EXPECT_NEAR(point.x * point.x / 64 + point.y * point.y / 9, 1.0, 1e-9);
    }
    EXPECT_TRUE(line.crossings(Curve::line({0, 0, 0}, {9, 0, 0})).empty());
    EXPECT_TRUE(line.crossings(Curve::line({0, 0, 0}, {0, 2, 0})).empty());
}

TEST(Curves, tangents_perpendiculars_and_quadrants) {
    const Curve circle = Curve::circle({0, 0, 0}, {5, 0, 0}, {0, 5, 0});
    const std::vector<double> touching = circle.tangents({13, 0, 0});
    ASSERT_EQ(touching.size(), 2U);
    EXPECT_NEAR(circle.at(touching[0]).x, 25.0 / 13, 1e-12);
    EXPECT_TRUE(circle.tangents({1, 1, 0}).empty());
    const Curve ellipse = Curve::circle({0, 0, 0}, {4, 0, 0}, {0, 2, 0});
    EXPECT_EQ(ellipse.perpendiculars({10, 0, 0}).size(), 2U);
    EXPECT_EQ(ellipse.perpendiculars({0.5, 0, 0}).size(), 4U);
    EXPECT_NEAR(Curve::line({0, 0, 0}, {2, 0, 0}).perpendiculars({6, 1, 0})[0], 3.0, 1e-12);
    // The half axes of an ellipse that is given by two other diameters.
    const Curve sheared = Curve::circle({0, 0, 0}, {1, 0, 0}, {1, 1, 0});
    AcGeVector3d major, minor;
    sheared.axes(major, minor);
    EXPECT_NEAR(major.dotProduct(minor), 0.0, 1e-12);
    EXPECT_NEAR(major.length() * minor.length(), 1.0, 1e-12);
    EXPECT_NEAR(major.length(), (1 + std::sqrt(5)) / 2, 1e-12);
    ASSERT_EQ(sheared.quadrants().size(), 4U);
    EXPECT_TRUE(near(sheared.at(sheared.quadrants()[0]), AcGePoint3d() + major));
}

TEST(Splines, points_lie_on_the_curve) {
    // A parabola: at the middle a quarter, a half and a quarter of the control points.
    const std::vector<AcGePoint3d> control = {{0, 0, 0}, {1, 2, 0}, {2, 0, 0}};
    const std::vector<double> knots = {0, 0, 0, 1, 1, 1};
    const auto parabola = host::splinePoints(2, knots, control, {});
    EXPECT_TRUE(near(parabola.front(), control.front()) && near(parabola.back(), control.back()));
    EXPECT_TRUE(near(parabola[parabola.size() / 2], AcGePoint3d(1, 1, 0)));
    // With weights it is a quarter of a circle.
    const auto quarter =
        host::splinePoints(2, knots, {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {1, std::sqrt(0.5), 1});
    for (const AcGePoint3d& point : quarter)
        EXPECT_NEAR(point.asVector().length(), 1.0, 1e-12);
    EXPECT_EQ(host::splinePoints(3, knots, control, {}).size(), 3U);
}

}  // namespace
