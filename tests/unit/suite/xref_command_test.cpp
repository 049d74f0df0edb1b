// The command XREF: what it makes of attached drawings and their layers, what it says, that each of
// its options can be undone, and that failures are remembered until a reload or another path.
#include <filesystem>
#include <utility>

#include "acad/blocks.h"
#include "drawing_files.h"
#include "host/output.h"

namespace {

using host::Attachment;

class XrefCommand : public test::DrawingFiles {
  protected:
    void SetUp() override {
        DrawingFiles::SetUp();
        host::setSink(host::Channel::Message,
                      [this](std::u16string_view text) { said_ += kz::toUtf8(text) + "\n"; });
        line("PART", 3);
        saved("part.dxf");
        line("OTHER");
        line("OTHER");
        saved("other.dxf");
        lisp("(setvar \"CMDECHO\" 0)");
        saved("host.dxf");
        open("host.dxf");
    }
    void TearDown() override {
        host::setSink(host::Channel::Message, {});
        DrawingFiles::TearDown();
    }
    static void xref(const std::string& answers) { lisp("(command \"_.xref\" " + answers + ")"); }
    static void attachPart() { xref("\"_attach\" \"P=part.dxf\" '(1 2) \"\" \"\" 90.0"); }
    static void undo() { lisp("(command \"_.u\")"); }
    static AcDbDatabase* part(size_t index = 0) {
        const std::vector<Attachment> found = host::attachments(editor());
        return index < found.size() ? host::attachedDrawing(found[index].block) : nullptr;
    }
    static std::string inserts() { return lisp("(sslength (ssget \"_X\" '((0 . \"INSERT\"))))"); }
    static std::string layer(const std::string& name) {
        return lisp("(cdr (assoc 62 (tblsearch \"LAYER\" \"" + name + "\")))");
    }
    std::string said() { return std::exchange(said_, {}); }
    bool told(const std::string& text) const { return said_.find(text) != std::string::npos; }

    std::string said_;
};

TEST_F(XrefCommand, AttachInsertsTheDrawingWithItsLayers) {
    attachPart();
    const std::vector<Attachment> found = host::attachments(editor());
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].name, u"P");
    EXPECT_EQ(found[0].path, u"part.dxf");
    EXPECT_FALSE(found[0].overlay);
    EXPECT_EQ(fileOf(part()), "part.dxf");
    EXPECT_EQ(layer("P|PART"), "7") << "the layer's own colour, not that of its line";
    host::Placement placement;
    ASSERT_TRUE(host::firstPlacement(found[0].block, placement));
    EXPECT_EQ(placement.origin[0] * 10 + placement.origin[1], 12.0);
    EXPECT_NEAR(placement.axes[0][1], 1.0, 1e-15);
    lisp("(setvar \"CMDECHO\" 1)");
    lisp("(command \"_.layer\" \"_set\" \"P|PART\" \"\")");
    EXPECT_TRUE(told("is of an attached drawing and can't become the current one"));
    // Once more is another reference to what is there.
    xref("\"_overlay\" \"p=other.dxf\" '(0 0) 2.0 \"\" 0.0");
    EXPECT_TRUE(told("\"P\" is attached already, from part.dxf"));
    EXPECT_EQ(host::attachments(editor()).size(), 1U);
    EXPECT_EQ(inserts(), "2");
}

TEST_F(XrefCommand, WhatCantBeAttachedIsSaidAndChangesNothing) {
    lisp("(entmake '((0 . \"BLOCK\") (2 . \"TAKEN\") (70 . 0) (10 0.0 0.0 0.0)))");
    lisp("(entmake '((0 . \"ENDBLK\")))");
    folder_.write("bad.dxf", "0\nSECTION\n2\nENTITIES\n0\nLINE\n10\nx\n");
    const struct {
        const char* answer;
        const char* message;
    } kCases[] = {{"P=gone.dxf", "XREF: the file \"gone.dxf\" is not found."},
                  {"P=host.dxf", "XREF: \"host.dxf\" leads back to the drawing itself."},
                  {"TAKEN=part.dxf", "XREF: there is a block \"TAKEN\" already."},
                  {"P=bad.dxf", "bad.dxf"},
                  {"A*B=part.dxf", "XREF: \"A*B\" can't be the name of a block."}};
    for (const auto& row : kCases) {
        said_.clear();
        xref(std::string("\"_attach\" \"") + row.answer + "\"");
        EXPECT_TRUE(told(row.message)) << row.answer << ": " << said_;
        EXPECT_TRUE(host::attachments(editor()).empty()) << row.answer;
        EXPECT_EQ(lisp("(tblsearch \"BLOCK\" \"P\")"), "nil");
    }
    said_.clear();
    xref("\"_bind\"");
    EXPECT_TRUE(told("XREF: binding an attached drawing is not available."));
    xref("\"_detach\" \"NONE\"");
    EXPECT_TRUE(told("there is no attached drawing \"NONE\"."));
}

TEST_F(XrefCommand, DetachTakesNamesAndWildcardsWithAllThatHangsOnThem) {
    attachPart();
    xref("\"_attach\" \"P2=part.dxf\" '(0 0) \"\" \"\" \"\"");
    xref("\"_overlay\" \"Q=other\" '(0 0) \"\" \"\" \"\"");
    EXPECT_EQ(inserts(), "3");
    xref("\"_detach\" \"p*\"");
    ASSERT_EQ(host::attachments(editor()).size(), 1U);
    EXPECT_EQ(inserts(), "1");
    EXPECT_EQ(layer("P|PART"), "nil");
    EXPECT_EQ(layer("P2|PART"), "nil");
    EXPECT_EQ(layer("Q|OTHER"), "7");
    undo();
    EXPECT_EQ(host::attachments(editor()).size(), 3U);
    EXPECT_EQ(inserts(), "3");
    EXPECT_EQ(layer("P2|PART"), "7");
    EXPECT_EQ(fileOf(part()), "part.dxf") << "read again";
    xref("\"_detach\" \"*\"");
    EXPECT_TRUE(host::attachments(editor()).empty());
    EXPECT_EQ(lisp("(ssget \"_X\" '((0 . \"INSERT\")))"), "nil");
}

TEST_F(XrefCommand, EachOptionIsUndone) {
    attachPart();
    undo();
    EXPECT_TRUE(host::attachments(editor()).empty());
    EXPECT_EQ(layer("P|PART"), "nil");
    lisp("(command \"_.redo\")");
    EXPECT_EQ(fileOf(part()), "part.dxf");
    EXPECT_EQ(layer("P|PART"), "7");

    xref("\"_unload\" \"P\"");
    EXPECT_EQ(part(), nullptr);
    undo();
    EXPECT_EQ(fileOf(part()), "part.dxf");
    lisp("(command \"_.redo\")");
    EXPECT_EQ(part(), nullptr);
    xref("\"_reload\" \"P\"");
    EXPECT_NE(part(), nullptr);
    undo();
    EXPECT_EQ(part(), nullptr);
    undo();

    xref("\"_path\" \"P\" \"other.dxf\"");
    EXPECT_EQ(fileOf(part()), "other.dxf");
    EXPECT_EQ(entities(part()), 2);
    EXPECT_EQ(layer("P|OTHER"), "7");
    undo();
    EXPECT_EQ(fileOf(part()), "part.dxf");
    EXPECT_EQ(layer("P|OTHER"), "nil");
}

TEST_F(XrefCommand, AnUnloadedDrawingStaysSoInTheFile) {
    attachPart();
    xref("\"_unload\" \"*\"");
    saved("host.dxf");
    open("host.dxf");
    said_.clear();
    EXPECT_EQ(part(), nullptr);
    lisp("(setvar \"CMDECHO\" 1)");
    xref("\"?\" \"\"");
    EXPECT_TRUE(told("\"P\": part.dxf, attached, unloaded")) << said_;
    xref("\"_reload\" \"P\"");
    EXPECT_NE(part(), nullptr);
    EXPECT_EQ(layer("P|PART"), "7");
}

TEST_F(XrefCommand, AMissingFileIsToldOnceAndLookedForAgainOnReload) {
    attachPart();
    saved("host.dxf");
    std::filesystem::rename(folder_.file("part.dxf"), folder_.file("away.dxf"));
    said_.clear();
    open("host.dxf");
    EXPECT_TRUE(told("Attached drawing \"P\": the file \"part.dxf\" is not found."));
    said_.clear();
    EXPECT_EQ(part(), nullptr);
    std::filesystem::rename(folder_.file("away.dxf"), folder_.file("part.dxf"));
    EXPECT_EQ(part(), nullptr);
    EXPECT_EQ(said(), "");
    lisp("(setvar \"CMDECHO\" 1)");
    xref("\"?\" \"P\"");
    EXPECT_TRUE(told("\"P\": part.dxf, attached, not found")) << said_;
    xref("\"_reload\" \"P\"");
    EXPECT_NE(part(), nullptr);
}

TEST_F(XrefCommand, ABrokenFileIsReadOnce) {
    attachPart();
    saved("host.dxf");
    const std::string good = TempFolder::read(folder_.file("part.dxf"));
    folder_.write("part.dxf", "0\nSECTION\n2\nENTITIES\n0\nLINE\n10\nx\n");
    open("host.dxf");
    said_.clear();
    EXPECT_EQ(part(), nullptr);
    EXPECT_TRUE(told("Attached drawing \"P\": ")) << said_;
    said_.clear();
    EXPECT_EQ(part(), nullptr);
    EXPECT_EQ(said(), "");
    xref("\"_reload\" \"P\"");
    EXPECT_TRUE(told("XREF: \"P\": ")) << said_;
    folder_.write("part.dxf", good);
    xref("\"_reload\" \"P\"");
    EXPECT_NE(part(), nullptr);
}

TEST_F(XrefCommand, ANewPathOfTheRecordLeadsToItsFile) {
    attachPart();
    const AcDbObjectId block = host::attachments(editor()).at(0).block;
    EXPECT_EQ(fileOf(host::attachedDrawing(block)), "part.dxf");
    AcDbBlockTableRecord* record = nullptr;
    ASSERT_EQ(acdbOpenObject(record, block, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(record->setPathName(u"other.dxf"), Acad::eOk);
    record->close();
    EXPECT_EQ(fileOf(host::attachedDrawing(block)), "other.dxf");
}

TEST_F(XrefCommand, NestedDrawingsAreFoundBesideTheOutermostToo) {
    xref("\"_attach\" \"IN=part.dxf\" '(0 0) \"\" \"\" \"\"");
    xref("\"_overlay\" \"OVER=other.dxf\" '(0 0) \"\" \"\" \"\"");
    std::filesystem::create_directory(folder_.file("sub"));
    saved("sub/mid.dxf");
    lisp("(setvar \"CMDECHO\" 0)");
    saved("host.dxf");
    open("host.dxf");
    xref("\"_attach\" \"sub/mid\" '(0 0) \"\" \"\" \"\"");
    AcDbDatabase* const middle = part();
    ASSERT_NE(middle, nullptr);
    const std::vector<Attachment> inner = host::attachments(middle);
    ASSERT_EQ(inner.size(), 2U);
    EXPECT_EQ(fileOf(host::attachedDrawing(inner[0].block)), "part.dxf");
    EXPECT_EQ(host::attachedDrawing(inner[1].block), nullptr) << "an overlay is not handed on";
    EXPECT_NE(layer("IN|PART"), "nil") << "its layers come with those of the middle one";
}

TEST_F(XrefCommand, WhatIsAttachedIsSeenByExtentsSnapsAndPicks) {
    attachPart();  // its line goes from (1 2) to (1 3)
    EXPECT_EQ(lisp("(equal (list (getvar \"EXTMIN\") (getvar \"EXTMAX\")) "
                   "'((1.0 2.0 0.0) (1.0 3.0 0.0)) 1e-9)"),
              "T");
    EXPECT_EQ(lisp("(equal (osnap '(1.0 2.9) \"_end\") '(1.0 3.0 0.0) 1e-9)"), "T");
    EXPECT_EQ(lisp("(cdr (assoc 8 (entget (car (nentselp '(1.0 2.5))))))"), "\"PART\"");
    lisp("(command \"_.layer\" \"_freeze\" \"P|PART\" \"\")");
    EXPECT_EQ(lisp("(nentselp '(1.0 2.5))"), "nil") << "the drawing's own state counts";
    lisp("(command \"_.xref\" \"_reload\" \"P\")");
    EXPECT_EQ(lisp("(nentselp '(1.0 2.5))"), "nil") << "and a reload leaves it";
    lisp("(command \"_.layer\" \"_thaw\" \"P|PART\" \"\")");
    lisp("(command \"_.zoom\" \"_c\" '(0 0) 20.0)");
    lisp("(command \"_.xref\" \"_unload\" \"P\")");
    EXPECT_EQ(lisp("(nentselp '(1.0 2.5))"), "nil");
    undo();
    EXPECT_NE(lisp("(nentselp '(1.0 2.5))"), "nil");
    lisp("(command \"_.move\" (entlast) \"\" '(0 0) '(5 0))");
    EXPECT_NE(lisp("(nentselp '(6.0 2.5))"), "nil");
    EXPECT_EQ(lisp("(nentselp '(1.0 2.5))"), "nil");
}

TEST_F(XrefCommand, TheBasePointIsThatOfTheFile) {
    lisp("(setvar \"INSBASE\" '(0.0 1.0 0.0))");
    line("0");
    saved("based.dxf");
    open("host.dxf");
    xref("\"_attach\" \"B=based.dxf\" '(10 10) \"\" \"\" \"\"");
    EXPECT_EQ(lisp("(equal (getvar \"EXTMIN\") '(10.0 9.0 0.0) 1e-9)"), "T");
    host::Placement placement;
    ASSERT_TRUE(host::firstPlacement(host::attachments(editor()).at(0).block, placement));
    EXPECT_EQ(placement.origin[1], 9.0);
}

}  // namespace
