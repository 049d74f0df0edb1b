/// Drawings beside the one in the editor: constructed, read, attached; and observers of objects.
#include <cmath>

#include "acad/entities.h"
#include "drawing_files.h"

namespace {

using SeveralDrawings = test::DrawingFiles;

std::u16string path16(const std::string& path) {
    return kz::toUtf16(path);
}

TEST_F(SeveralDrawings, ConstructedDrawingIsReadChangedAndSavedBesideTheEditorsOne) {
    line("A");
    line("B");
    const std::u16string file = path16(saved("two.dxf"));
    AcDbDatabase read(false, true);
    EXPECT_EQ(read.saveAs(file.c_str()), Acad::eNoDatabase);
    EXPECT_EQ(read.dxfIn(path16(folder_.file("none.dxf")).c_str()), Acad::eFileNotFound);
    EXPECT_EQ(read.dxfIn(path16(folder_.file(".")).c_str()), Acad::eFileAccessErr);
    const std::u16string torn = path16(folder_.write("torn.dxf", "0\nSECTION\n2\n"));
    EXPECT_EQ(read.dxfIn(torn.c_str()), Acad::eBadDxfSequence);
    ASSERT_EQ(read.dxfIn(file.c_str()), Acad::eOk);
    EXPECT_EQ(read.dxfIn(file.c_str()), Acad::eNotApplicable);
    EXPECT_EQ(entities(&read), 2);
    EXPECT_EQ(entities(editor()), 0);
    EXPECT_EQ(fileOf(&read), "two.dxf");

    AcDbObjectId first;
    host::forEachEntity(&read, [&](const host::EntityLook& look) {
        first = look.id;
        return false;
    });
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenObject(entity, first, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(entity->database(), &read);
    entity->erase();
    entity->close();
    EXPECT_EQ(read.saveAs(file.c_str(), true), Acad::eOk);
    AcDbDatabase again(false, true), kept(false, true);
    ASSERT_EQ(again.dxfIn(file.c_str()), Acad::eOk);
    EXPECT_EQ(entities(&again), 1);
    ASSERT_EQ(kept.dxfIn(path16(folder_.file("two.bak")).c_str()), Acad::eOk);
    EXPECT_EQ(entities(&kept), 2);
}

TEST_F(SeveralDrawings, NewDrawingTakesItsFirstFileAndFindsObjectsByHandle) {
    AcDbDatabase made(true, true);
    const ACHAR* name = u"";
    EXPECT_EQ(made.getFilename(name), Acad::eFileNotFound);
    EXPECT_EQ(name, nullptr);
    ASSERT_EQ(made.saveAs(path16(folder_.file("a.dxf")).c_str(), false), Acad::eOk);
    ASSERT_EQ(made.saveAs(path16(folder_.file("b.dxf")).c_str(), false), Acad::eOk);
    EXPECT_EQ(fileOf(&made), "a.dxf");
    AcDbObjectId id;
    EXPECT_EQ(made.getAcDbObjectId(id, false, AcDbHandle(u"nonsense")), Acad::eNullHandle);
    EXPECT_EQ(made.getAcDbObjectId(id, true, AcDbHandle(u"FFFFFFFF")), Acad::eUnknownHandle);
    EXPECT_TRUE(id.isNull());
    // The dictionary that every new drawing has.
    EXPECT_EQ(made.getAcDbObjectId(id, false, AcDbHandle(u"c")), Acad::eOk);
    EXPECT_EQ(AcDbHandle(u"12345678901234567").value(), 0U);
    made.disableUndoRecording(true);
    EXPECT_FALSE(made.undoRecording());
    EXPECT_TRUE(editor()->undoRecording());
    host::closeDrawing();
    EXPECT_EQ(editor(), nullptr);
}

TEST_F(SeveralDrawings, AttachedDrawingIsReadOnceFromItsPathOrFromBesideTheDrawing) {
    line("PART");
    saved("part.dxf");
    attach("P1", "part.dxf");
    attach("P2", R"(c:\\elsewhere\\part.dxf)", 8);
    attach("GONE", "gone.dxf");
    attach("OWN", "", 0);
    saved("host.dxf");
    open("host.dxf");
    const std::vector<host::Attachment> found = host::attachments(editor());
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0].name, u"P1");
    EXPECT_FALSE(found[0].overlay);
    EXPECT_TRUE(found[1].overlay);
    EXPECT_EQ(found[2].path, u"gone.dxf");
    AcDbDatabase* const part = host::attachedDrawing(found[0].block);
    ASSERT_NE(part, nullptr);
    EXPECT_EQ(host::attachedDrawing(found[0].block), part);
    EXPECT_EQ(part->xrefBlockId(), found[0].block);
    EXPECT_TRUE(editor()->xrefBlockId().isNull());
    EXPECT_EQ(entities(part), 1);
    EXPECT_EQ(fileOf(host::attachedDrawing(found[1].block)), "part.dxf");
    EXPECT_EQ(host::attachedDrawing(found[2].block), nullptr);
    EXPECT_EQ(host::attachedDrawing({}), nullptr);
    // A file that comes later is found on a reload.
    folder_.write("gone.dxf", TempFolder::read(folder_.file("part.dxf")));
    EXPECT_EQ(host::attachedDrawing(found[2].block), nullptr);
    lisp("(command \"_.xref\" \"_reload\" \"GONE\")");
    EXPECT_NE(host::attachedDrawing(found[2].block), nullptr);
}

TEST_F(SeveralDrawings, CircularAttachmentsEnd) {
    attach("SELF", "a.dxf");
    attach("NEXT", "b.dxf");
    saved("a.dxf");
    attach("BACK", "a.dxf");
    saved("b.dxf");
    open("a.dxf");
    const std::vector<host::Attachment> found = host::attachments(editor());
    EXPECT_EQ(host::attachedDrawing(found.at(0).block), nullptr);
    AcDbDatabase* const next = host::attachedDrawing(found.at(1).block);
    ASSERT_NE(next, nullptr);
    EXPECT_EQ(host::attachedDrawing(host::attachments(next).at(0).block), nullptr);
}

TEST_F(SeveralDrawings, PlacementTakesScaleRotationExtrusionAndBasePoint) {
    lisp("(entmake '((0 . \"BLOCK\") (2 . \"B\") (70 . 4) (10 1.0 0.0 0.0)))");
    lisp("(entmake '((0 . \"ENDBLK\")))");
    lisp("(entmake '((0 . \"BLOCK\") (2 . \"FLIP\") (70 . 4) (10 0.0 0.0 0.0)))");
    lisp("(entmake '((0 . \"ENDBLK\")))");
    insert("B", "(10 10.0 0.0 0.0) (41 . 2.0) (50 . 1.5707963267948966)");
    insert("B", "(10 99.0 0.0 0.0)");
    insert("FLIP", "(10 3.0 4.0 5.0) (210 0.0 0.0 -1.0)");
    const std::vector<host::Attachment> found = host::attachments(editor());
    ASSERT_EQ(found.size(), 2U);
    host::Placement turned, flipped;
    EXPECT_TRUE(host::firstPlacement(found[0].block, turned));
    EXPECT_TRUE(host::firstPlacement(found[1].block, flipped));
    EXPECT_FALSE(host::firstPlacement({}, flipped));
    EXPECT_NEAR(turned.angle, std::acos(0.0), 1e-12);
    EXPECT_NEAR(turned.axes[0][1], 2.0, 1e-12);
    EXPECT_NEAR(turned.axes[1][0], -1.0, 1e-12);
    EXPECT_NEAR(turned.origin[0], 10.0, 1e-12);
    EXPECT_NEAR(turned.origin[1], -2.0, 1e-12);
    EXPECT_NEAR(flipped.origin[0], -3.0, 1e-12);
    EXPECT_NEAR(flipped.origin[1], 4.0, 1e-12);
    EXPECT_NEAR(flipped.origin[2], -5.0, 1e-12);
    EXPECT_NEAR(flipped.axes[0][0], -1.0, 1e-12);
}

class Recorder : public host::ObjectObserver {
  public:
    void changed(AcDbObjectId) override { log += "c"; }
    void erased(AcDbObjectId id, bool isErased) override {
        log += isErased ? "e" : "r";
        if (leaveWhenErased) host::stopObserving(id, this);
    }
    void closing(AcDbObjectId) override { log += "x"; }
    std::string log;
    bool leaveWhenErased = false;
};

TEST_F(SeveralDrawings, ObserversHearOfTheirObjectOnly) {
    line("0");
    line("0");
    ads_name name;
    AcDbObjectId id;
    ASSERT_EQ(acdbEntNext(nullptr, name), RTNORM);
    ASSERT_EQ(acdbGetObjectId(id, name), Acad::eOk);
    Recorder stays, leaves;
    leaves.leaveWhenErased = true;
    EXPECT_TRUE(host::observe(id, &leaves));
    EXPECT_TRUE(host::observe(id, &stays));
    EXPECT_FALSE(host::observe(id, &stays));
    EXPECT_FALSE(host::observe({}, &stays));
    lisp("(entdel (entlast))");
    EXPECT_EQ(stays.log, "");
    lisp("(setq e (entnext)) (entmod (list (cons -1 e) '(8 . \"NEW\")))");
    lisp("(entdel e) (entdel e)");
    EXPECT_EQ(stays.log, "cer");
    EXPECT_EQ(leaves.log, "ce");
    EXPECT_FALSE(host::stopObserving(id, &leaves));
    host::closeDrawing();
    EXPECT_EQ(stays.log, "cerx");
    EXPECT_FALSE(host::observe(id, &stays));
}

}  // namespace
