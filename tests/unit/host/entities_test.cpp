// Entities by their classes: what all of them have, what follows behind a polyline or a reference,
// places and sizes, and entities that callers make.
#include "acad/entities.h"

#include <numbers>

#include "drawn.h"
#include "host/display.h"
#include "host/testing.h"
#include "host/undo.h"

namespace {

using drawn::Open;
using drawn::text;

class Entities : public drawn::Drawing {
  protected:
    static std::string layerOf(AcDbObjectId id) {
        const Open<AcDbEntity> entity(id, AcDb::kForRead);
        return text(entity->layer());
    }
    static int colourOf(AcDbObjectId id) {
        const Open<AcDbEntity> entity(id, AcDb::kForRead);
        return entity->colorIndex();
    }
};

bool same(const AcGePoint3d& a, const AcGePoint3d& b) {
    return a.isEqualTo(b, 1e-9);
}

// --- what entities have in common ---------------------------------------------------------------

TEST_F(Entities, a_plain_entity_shows_what_goes_without_saying) {
    const Open<AcDbEntity> entity(line(), AcDb::kForRead);
    EXPECT_EQ(text(entity->layer()), "Walls");
    EXPECT_EQ(entity->colorIndex(), 256);
    EXPECT_EQ(text(entity->linetype()), "ByLayer");
    EXPECT_EQ(entity->linetypeScale(), 1.0);
    EXPECT_EQ(entity->visibility(), AcDb::kVisible);
}

TEST_F(Entities, properties_are_set_and_go_again_where_they_go_without_saying) {
    const AcDbObjectId id = line();
    Open<AcDbEntity> entity(id);
    EXPECT_EQ(entity->setColorIndex(3), Acad::eOk);
    EXPECT_EQ(entity->setLayer(u"0"), Acad::eOk);
    EXPECT_EQ(entity->setLinetype(u"CONTINUOUS"), Acad::eOk);
    EXPECT_EQ(entity->setLinetypeScale(-2.5), Acad::eOk);
    EXPECT_EQ(entity->setVisibility(AcDb::kInvisible), Acad::eOk);
    EXPECT_EQ(entity->colorIndex(), 3);
    EXPECT_EQ(text(entity->linetype()), "Continuous") << "as the drawing spells it";
    EXPECT_EQ(entity->linetypeScale(), -2.5);
    EXPECT_EQ(group(id, 8) + group(id, 60), "01");
    EXPECT_EQ(entity->setColorIndex(256), Acad::eOk);
    EXPECT_EQ(entity->setLinetype(u"bylayer"), Acad::eOk);
    EXPECT_EQ(entity->setLinetypeScale(1.0), Acad::eOk);
    EXPECT_EQ(entity->setVisibility(AcDb::kVisible), Acad::eOk);
    for (const int code : {62, 6, 48, 60})
        EXPECT_EQ(group(id, code), "nil") << code;
}

TEST_F(Entities, what_is_no_value_is_refused_and_changes_nothing) {
    const AcDbObjectId id = line();
    {
        Open<AcDbEntity> entity(id);
        EXPECT_EQ(entity->setColorIndex(257), Acad::eInvalidIndex);
        EXPECT_EQ(entity->setLayer(u"Nowhere"), Acad::eKeyNotFound);
        EXPECT_EQ(entity->setLayer(nullptr), Acad::eInvalidInput);
        EXPECT_EQ(entity->setLinetype(u"Wavy"), Acad::eKeyNotFound);
        EXPECT_EQ(entity->setLinetypeScale(0.0), Acad::eInvalidInput);
        EXPECT_EQ(text(entity->layer()), "Walls");
    }
    const Open<AcDbEntity> entity(id, AcDb::kForRead);
    EXPECT_EQ(entity->setColorIndex(1), Acad::eNotOpenForWrite);
    EXPECT_EQ(entity->setVisibility(AcDb::kInvisible), Acad::eNotOpenForWrite);
    EXPECT_EQ(entity->transformBy(AcGeMatrix3d()), Acad::eNotOpenForWrite);
    EXPECT_EQ(entity->colorIndex(), 256);
}

TEST_F(Entities, an_index_takes_the_place_of_a_true_colour) {
    const AcDbObjectId id =
        draw("((0 . \"LINE\") (62 . 5) (420 . 255) (10 0.0 0.0 0.0) (11 1.0 0.0 0.0))");
    Open<AcDbEntity> entity(id);
    EXPECT_EQ(entity->setColorIndex(1), Acad::eOk);
    EXPECT_EQ(group(id, 62) + group(id, 420), "1nil");
}

TEST_F(Entities, groups_of_the_own_class_are_not_taken_for_common_ones) {
    const AcDbObjectId id = draw(
        "((0 . \"MLINE\") (100 . \"AcDbEntity\") (8 . \"0\") (100 . \"AcDbMline\") "
        "(2 . \"STANDARD\") (40 . 1.0) (70 . 0) (71 . 1) (72 . 0) (62 . 9))");
    Open<AcDbEntity> entity(id);
    EXPECT_EQ(entity->colorIndex(), 256);
    EXPECT_EQ(entity->setColorIndex(256), Acad::eOk);
    EXPECT_EQ(group(id, 62), "9");
}

TEST_F(Entities, vertices_and_attributes_follow_when_they_are_asked_to) {
    line();  // its layer
    for (const AcDbObjectId main : {polyline(), polyline(8), reference()}) {
        {
            Open<AcDbEntity> entity(main);
            EXPECT_EQ(entity->setColorIndex(1), Acad::eOk);
            EXPECT_EQ(entity->setLayer(u"walls"), Acad::eOk);
            EXPECT_EQ(entity->setVisibility(AcDb::kInvisible), Acad::eOk);
            EXPECT_EQ(entity->setLinetypeScale(4.0, false), Acad::eOk);
        }
        const AcDbObjectId first = part(main, 0);
        EXPECT_EQ(colourOf(first), 1);
        EXPECT_EQ(layerOf(first), "Walls");
        EXPECT_EQ(group(first, 60) + group(first, 48), "1nil");
    }
}

TEST_F(Entities, a_part_that_somebody_has_open_keeps_the_whole_as_it_is) {
    const AcDbObjectId main = polyline();
    const Open<AcDbEntity> vertex(part(main, 1), AcDb::kForRead);
    Open<AcDbEntity> entity(main);
    EXPECT_EQ(entity->setColorIndex(1), Acad::eWasOpenForRead);
    EXPECT_EQ(entity->colorIndex(), 256);
    EXPECT_EQ(entity->setColorIndex(1, false), Acad::eOk);
}

TEST_F(Entities, undo_brings_back_what_entity_and_parts_had) {
    const AcDbObjectId main = polyline();
    {
        const host::UndoStep step("PAINT");
        Open<AcDbEntity> entity(main);
        EXPECT_EQ(entity->setColorIndex(2), Acad::eOk);
    }
    EXPECT_EQ(colourOf(part(main, 1)), 2);
    host::undo(1);
    EXPECT_EQ(colourOf(main), 256);
    EXPECT_EQ(colourOf(part(main, 1)), 256);
}

TEST_F(Entities, a_locked_layer_refuses_the_opening_for_change) {
    const AcDbObjectId id = line();
    lisp(
        "(setq l (entget (tblobjname \"LAYER\" \"Walls\")))"
        "(entmod (subst '(70 . 4) (assoc 70 l) l))");
    const Open<AcDbEntity> entity(id);
    EXPECT_EQ(entity.status, Acad::eOnLockedLayer);
    EXPECT_EQ(entity.get(), nullptr);
}

TEST_F(Entities, highlighting_is_shown_and_not_drawn) {
    const AcDbObjectId id = line();
    const Open<AcDbEntity> entity(id, AcDb::kForRead);
    EXPECT_EQ(entity->highlight(), Acad::eOk);
    EXPECT_TRUE(host::isHighlighted(id));
    EXPECT_EQ(entity->unhighlight(), Acad::eOk);
    EXPECT_FALSE(host::isHighlighted(id));
    EXPECT_EQ(AcDbPoint().highlight(), Acad::eNoDatabase);
}

TEST_F(Entities, a_move_takes_vertices_and_attributes_along) {
    AcGeMatrix3d way;
    way.setToTranslation(AcGeVector3d(1.0, 2.0, 0.0));
    const AcDbObjectId id = reference();
    {
        Open<AcDbBlockReference> moved(id);
        EXPECT_EQ(moved->transformBy(way), Acad::eOk);
        EXPECT_TRUE(same(moved->position(), {11.0, 22.0, 0.0}));
    }
    EXPECT_EQ(group(part(id, 0), 10), "11.000000");
    Open<AcDbCircle> circle(draw("((0 . \"CIRCLE\") (10 1.0 1.0 0.0) (40 . 2.0))"));
    AcGeMatrix3d stretch;
    stretch(0, 0) = 2.0;
    EXPECT_EQ(circle->transformBy(stretch), Acad::eCannotScaleNonUniformly);
    EXPECT_EQ(circle->radius(), 2.0);
}

// --- classes ------------------------------------------------------------------------------------

TEST_F(Entities, a_polyline_is_of_the_class_that_its_flags_tell) {
    const Open<AcDbEntity> flat(polyline(1), AcDb::kForRead);
    const Open<AcDbEntity> in_space(polyline(8), AcDb::kForRead);
    const Open<AcDbEntity> light(
        draw("((0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 2) "
             "(43 . 1.0) (10 0.0 0.0) (10 1.0 0.0))"),
        AcDb::kForRead);
    EXPECT_NE(AcDb2dPolyline::cast(flat.get()), nullptr);
    EXPECT_EQ(AcDb3dPolyline::cast(flat.get()), nullptr);
    EXPECT_NE(AcDb3dPolyline::cast(in_space.get()), nullptr);
    EXPECT_EQ(AcDb2dPolyline::cast(in_space.get()), nullptr);
    EXPECT_EQ(AcDb2dPolyline::cast(light.get()), nullptr);
    const Open<AcDbCircle> none(light->objectId(), AcDb::kForRead);
    EXPECT_EQ(none.status, Acad::eNotThatKindOfClass);
}

TEST_F(Entities, widths_of_a_polyline) {
    const AcDbObjectId id = polyline();
    Open<AcDb2dPolyline> entity(id);
    EXPECT_EQ(entity->defaultStartWidth(), 0.5);
    EXPECT_EQ(entity->defaultEndWidth(), 0.0);
    EXPECT_EQ(entity->setDefaultStartWidth(2.0), Acad::eOk);
    EXPECT_EQ(entity->setDefaultEndWidth(3.0), Acad::eOk);
    EXPECT_EQ(entity->setDefaultEndWidth(-1.0), Acad::eInvalidInput);
    EXPECT_EQ(entity->defaultStartWidth() + entity->defaultEndWidth(), 5.0);
}

TEST_F(Entities, places_are_those_of_the_world) {
    // A circle that faces down has its x axis the other way round.
    const Open<AcDbCircle> circle(
        draw("((0 . \"CIRCLE\") (10 -3.0 4.0 -7.0) (40 . 2.0) (210 0.0 0.0 -1.0))"),
        AcDb::kForRead);
    EXPECT_TRUE(same(circle->center(), {3.0, 4.0, 7.0}));
    const Open<AcDbEllipse> ellipse(
        draw("((0 . \"ELLIPSE\") (100 . \"AcDbEntity\") (100 . \"AcDbEllipse\") (10 1.0 2.0 3.0) "
             "(11 0.0 4.0 0.0) (210 0.0 0.0 1.0) (40 . 0.5) (41 . 0.0) (42 . 6.28))"),
        AcDb::kForRead);
    EXPECT_TRUE(same(ellipse->center(), {1.0, 2.0, 3.0}));
    EXPECT_TRUE(ellipse->majorAxis().isEqualTo({0.0, 4.0, 0.0}));
    EXPECT_EQ(ellipse->radiusRatio(), 0.5);
}

// --- references ---------------------------------------------------------------------------------

TEST_F(Entities, a_reference_places_its_block) {
    const Open<AcDbBlockReference> entity(reference(), AcDb::kForRead);
    const Open<AcDbBlockTableRecord> block(entity->blockTableRecord(), AcDb::kForRead);
    ASSERT_NE(block.get(), nullptr);
    ACHAR* name = nullptr;
    EXPECT_EQ(block->getName(name), Acad::eOk);
    EXPECT_EQ(text(name), "Part");
    EXPECT_TRUE(same(entity->position(), {10.0, 20.0, 0.0}));
    EXPECT_NEAR(entity->rotation(), std::numbers::pi / 2, 1e-12);
    // The base point of the block goes to the insertion point.
    EXPECT_TRUE(same(entity->blockTransform() * AcGePoint3d(1, 0, 0), {10.0, 20.0, 0.0}));
    EXPECT_TRUE(same(entity->blockTransform() * AcGePoint3d(2, 0, 0), {10.0, 22.0, 0.0}));
}

TEST_F(Entities, a_reference_is_placed_by_any_matrix_with_right_angles) {
    const AcDbObjectId id = reference();
    Open<AcDbBlockReference> entity(id);
    AcGeMatrix3d turned, mirrored, upright;
    turned.setCoordSystem({5, 6, 7}, {0, 3, 0}, {-3, 0, 0}, {0, 0, 3});
    mirrored.setCoordSystem({1, 2, 0}, {-1, 0, 0}, {0, 1, 0}, {0, 0, 1});
    upright.setCoordSystem({0, 0, 4}, {1, 0, 0}, {0, 0, 2}, {0, -1, 0});
    for (const AcGeMatrix3d& matrix : {turned, mirrored, upright, AcGeMatrix3d()}) {
        EXPECT_EQ(entity->setBlockTransform(matrix), Acad::eOk);
        EXPECT_TRUE(entity->blockTransform().isEqualTo(matrix, 1e-9));
    }
    EXPECT_EQ(group(part(id, 0), 10), "10.000000") << "attributes stay";
    AcGeMatrix3d skewed, flat;
    skewed.setCoordSystem({0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 0, 1});
    flat.setCoordSystem({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0});
    EXPECT_EQ(entity->setBlockTransform(skewed), Acad::eCannotScaleNonUniformly);
    EXPECT_EQ(entity->setBlockTransform(flat), Acad::eCannotScaleNonUniformly);
    EXPECT_TRUE(entity->blockTransform().isEqualTo(AcGeMatrix3d(), 1e-9));
}

// --- faults -------------------------------------------------------------------------------------

TEST_F(Entities, a_refused_change_leaves_the_entity_as_it_was) {
    Open<AcDb2dPolyline> entity(polyline());
    const auto refused = [](const char* call) {
        EXPECT_TRUE(host::testing::failCall(call, 1, Acad::eOutOfMemory));
    };
    refused("setColorIndex");
    EXPECT_EQ(entity->setColorIndex(1), Acad::eOutOfMemory);
    refused("setDefaultStartWidth");
    EXPECT_EQ(entity->setDefaultStartWidth(9.0), Acad::eOutOfMemory);
    refused("layer");
    EXPECT_EQ(entity->layer(), nullptr);
    host::testing::clearFault();
    EXPECT_EQ(entity->colorIndex(), 256);
    EXPECT_EQ(entity->defaultStartWidth(), 0.5);
}

}  // namespace
