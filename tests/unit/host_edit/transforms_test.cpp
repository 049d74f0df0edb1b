// Transformation of entities by matrices that no command gives: unequal scales, shears, collapses.
#include "edit/transform.h"

#include "edit/copy.h"
#include "edit/shapes.h"
#include "edit/tag_values.h"
#include "editor_test.h"

namespace {

using namespace host;

class Transforms : public EditorTest {
  protected:
    static AcGeMatrix3d scaling(double x, double y, double z) {
        return AcGeMatrix3d().setCoordSystem({}, {x, 0, 0}, {0, y, 0}, {0, 0, z});
    }
    static double real(Slot slot, int code) { return realOf(drawing().tags(slot), code, NAN); }
    static AcGePoint3d point(Slot slot, int code) { return pointOf(drawing().tags(slot), code); }
    static TransformEnd transform(Slot slot, const AcGeMatrix3d& matrix) {
        return transformEntity(drawing(), slot, matrix);
    }
    /// What cannot be done leaves the entity as it was.
    static void refuses(const std::string& groups, const AcGeMatrix3d& matrix) {
        const Slot slot = make(groups);
        const std::string before = eval("(entget (entlast))");
        EXPECT_EQ(transform(slot, matrix), TransformEnd::CannotTake) << groups;
        EXPECT_EQ(eval("(entget (entlast))"), before);
    }
};

TEST_F(Transforms, what_has_only_points_takes_every_matrix) {
    const AcGeMatrix3d matrix = scaling(2, 3, -1);
    const Slot line = make("(0 . \"LINE\") (10 1.0 1.0 1.0) (11 2.0 2.0 2.0)");
    EXPECT_EQ(transform(line, matrix), TransformEnd::Done);
    EXPECT_TRUE(near(point(line, 11), AcGePoint3d(4, 6, -2)));
    const Slot straight = make(
        "(0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 2) (70 . 0)"
        "(38 . 5.0) (10 1.0 1.0) (10 4.0 1.0)");
    EXPECT_EQ(transform(straight, matrix), TransformEnd::Done);
    // Its direction turns over with the z axis, and its x with it.
    EXPECT_TRUE(near(point(straight, 210), AcGePoint3d(0, 0, -1)));
    EXPECT_EQ(real(straight, 38), 5.0);
    EXPECT_TRUE(near(point(straight, 10), AcGePoint3d(-2, 3, 0)));
}

TEST_F(Transforms, what_would_lose_its_form_is_left_alone) {
    const AcGeMatrix3d unequal = scaling(2, 1, 1);
    refuses("(0 . \"CIRCLE\") (10 1.0 1.0 0.0) (40 . 1.0)", unequal);
    refuses("(0 . \"ARC\") (10 1.0 1.0 0.0) (40 . 1.0) (50 . 0.0) (51 . 1.5707963267948966)",
            unequal);
    refuses("(0 . \"TEXT\") (10 1.0 1.0 0.0) (40 . 1.0) (1 . \"x\")", unequal);
    refuses(
        "(0 . \"LWPOLYLINE\") (100 . \"AcDbEntity\") (100 . \"AcDbPolyline\") (90 . 2) (70 . 0)"
        "(10 1.0 1.0) (42 . 1.0) (10 4.0 1.0)",
        unequal);
    const AcGeMatrix3d shear = AcGeMatrix3d().setCoordSystem({}, {1, 0, 0}, {0, 1, 0}, {1, 0, 1});
    refuses("(0 . \"LINE\") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0) (39 . 1.0)", shear);
    refuses("(0 . \"LINE\") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0)", scaling(1, 1, 0));
    const AcGeMatrix3d nowhere = AcGeMatrix3d().setToTranslation({HUGE_VAL, 0, 0});
    refuses("(0 . \"LINE\") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0)", nowhere);
}

TEST_F(Transforms, a_polyline_is_transformed_as_a_whole_or_not_at_all) {
    make("(0 . \"POLYLINE\") (66 . 1)");
    eval("(entmake '((0 . \"VERTEX\") (10 1.0 1.0 0.0)))");
    eval("(entmake '((0 . \"VERTEX\") (10 2.0 1.0 0.0) (42 . 0.5)))");
    eval("(entmake '((0 . \"SEQEND\")))");
    const Slot main = drawing().lastEntity(drawing().modelSpace());
    const std::vector<Slot> parts = partsOf(drawing(), main);
    ASSERT_EQ(parts.size(), 3U);
    EXPECT_EQ(transform(main, scaling(2, 1, 1)), TransformEnd::CannotTake);
    EXPECT_TRUE(near(point(parts[0], 10), AcGePoint3d(1, 1, 0)));
    EXPECT_EQ(transform(main, scaling(2, 2, 2)), TransformEnd::Done);
    EXPECT_TRUE(near(point(parts[1], 10), AcGePoint3d(4, 2, 0)));
}

TEST_F(Transforms, an_ellipse_stays_one_under_every_matrix) {
    const Slot slot = make(
        "(0 . \"ELLIPSE\") (100 . \"AcDbEntity\") (100 . \"AcDbEllipse\") (10 0.0 0.0 0.0)"
        "(11 2.0 0.0 0.0) (210 0.0 0.0 1.0) (40 . 0.5) (41 . 0.0) (42 . 1.5707963267948966)");
    EXPECT_EQ(transform(slot, scaling(1, 6, 1)), TransformEnd::Done);
    EXPECT_TRUE(near(point(slot, 11), AcGePoint3d(0, 6, 0)) ||
                near(point(slot, 11), AcGePoint3d(0, -6, 0)));
    EXPECT_NEAR(real(slot, 40), 2.0 / 6.0, 1e-12);
    // It still goes from (2, 0) to (0, 6).
    const AcDbExtents box = entityExtents(drawing(), slot);
    EXPECT_TRUE(near(box.minPoint(), AcGePoint3d(0, 0, 0)));
    EXPECT_TRUE(near(box.maxPoint(), AcGePoint3d(2, 6, 0)));
    const AcGeMatrix3d shear = AcGeMatrix3d().setCoordSystem({}, {1, 0, 0}, {1, 1, 0}, {0, 0, 1});
    EXPECT_EQ(transform(slot, shear), TransformEnd::Done);
    const AcDbExtents leaning = entityExtents(drawing(), slot);
    EXPECT_NEAR(leaning.maxPoint().y, 6.0, 1e-9);
    EXPECT_NEAR(leaning.maxPoint().x, std::hypot(2.0, 6.0), 1e-9);
}

TEST_F(Transforms, an_insert_takes_unequal_scales_along_its_axes) {
    eval("(entmake '((0 . \"BLOCK\") (2 . \"B\") (70 . 0) (10 0.0 0.0 0.0)))");
    eval("(entmake '((0 . \"ENDBLK\")))");
    const Slot slot =
        make("(0 . \"INSERT\") (2 . \"B\") (10 1.0 2.0 3.0) (50 . 1.5707963267948966) (43 . 4.0)");
    EXPECT_EQ(transform(slot, scaling(2, -3, 5)), TransformEnd::Done);
    EXPECT_TRUE(near(point(slot, 10), AcGePoint3d(2, -6, 15)));
    // Its x axis was the y axis. Mirrored, it runs against it.
    EXPECT_NEAR(real(slot, 50), 90.0, 1e-9);
    EXPECT_NEAR(real(slot, 41), -3.0, 1e-12);
    EXPECT_NEAR(real(slot, 42), 2.0, 1e-12);
    EXPECT_NEAR(real(slot, 43), 20.0, 1e-12);
    refuses("(0 . \"INSERT\") (2 . \"B\") (10 1.0 2.0 3.0) (50 . 0.7853981633974483)",
            scaling(2, 1, 1));
}

TEST_F(Transforms, what_is_turned_back_is_what_it_was) {
    const Slot slot = make("(0 . \"CIRCLE\") (10 1.0 2.0 3.0) (40 . 1.0)");
    const std::string before = eval("(entget (entlast))");
    const AcGeMatrix3d turn = AcGeMatrix3d().setToRotation(kPi, {0, 0, 1}, {5, 5, 0});
    EXPECT_EQ(transform(slot, turn), TransformEnd::Done);
    EXPECT_EQ(transform(slot, turn.inverse()), TransformEnd::Done);
    EXPECT_EQ(eval("(entget (entlast))"), before);
}

TEST_F(Transforms, a_copy_follows_neither_boundary_nor_group) {
    const Slot hatch = make(
        "(0 . \"HATCH\") (100 . \"AcDbEntity\") (8 . \"0\") (100 . \"AcDbHatch\") (10 0.0 0.0 0.0)"
        "(210 0.0 0.0 1.0) (2 . \"SOLID\") (70 . 1) (71 . 1) (91 . 1) (92 . 3) (72 . 0) (73 . 1)"
        "(93 . 3) (10 0.0 0.0) (10 4.0 0.0) (10 0.0 3.0) (97 . 1) (75 . 0) (76 . 1) (98 . 0)");
    Tags& tags = drawing().changeTags(hatch);
    const auto sources = tags.begin() + static_cast<std::ptrdiff_t>(findTag(tags, 97)) + 1;
    tags.insert(sources, Tag::handle(330, 0x10));
    const Slot copy = copyEntity(drawing(), hatch, drawing().modelSpace());
    const Tags& copied = drawing().tags(copy);
    EXPECT_EQ(integerOf(copied, 71, -1), 0);
    EXPECT_EQ(integerOf(copied, 97, -1), 0);
    EXPECT_EQ(findTag(copied, 330, findTag(copied, 100)), copied.size());
    EXPECT_EQ(integerOf(drawing().tags(hatch), 71, -1), 1);
}

TEST_F(Transforms, a_copy_has_an_extension_dictionary_of_its_own) {
    const Slot line = make("(0 . \"LINE\") (10 1.0 1.0 1.0) (11 2.0 2.0 2.0)");
    Database& database = drawing();
    const auto dictionary = [&](uint64_t owner) {
        return database.makeRecord("DICTIONARY", ObjectClass::Object, owner, dictionaryTags());
    };
    const Slot extension = dictionary(database.record(line).handle);
    database.record(extension).owner = line;
    Tags& tags = database.changeTags(line);
    const Tags link = {Tag(102, u"{ACAD_XDICTIONARY"),
                       Tag::handle(360, database.record(extension).handle), Tag(102, u"}")};
    tags.insert(tags.begin() + 2, link.begin(), link.end());
    const Slot inner = dictionary(0);
    ASSERT_EQ(database.dictionaryAdd(extension, u"INNER", inner), Acad::eOk);
    Tags data;
    data.emplace_back(100, u"AcDbXrecord");
    data.emplace_back(1, u"text");
    const Slot record = database.makeRecord("XRECORD", ObjectClass::Object, 0, std::move(data));
    ASSERT_EQ(database.dictionaryAdd(inner, u"NOTE", record), Acad::eOk);

    const Slot copy = copyEntity(database, line, database.modelSpace());
    const Tags& copied = database.tags(copy);
    const Slot own = database.findHandle(copied[findTag(copied, 360)].handleValue());
    ASSERT_NE(own, kNoSlot);
    EXPECT_NE(own, extension);
    EXPECT_EQ(database.record(own).owner, copy);
    const Slot note = database.dictionaryEntry(database.dictionaryEntry(own, u"INNER"), u"NOTE");
    ASSERT_NE(note, kNoSlot);
    EXPECT_NE(note, record);
    const Tags& text = database.tags(note);
    EXPECT_EQ(text[findTag(text, 1)].text(database.codec()), u"text");
}

}  // namespace
