// Drawing files: what is refused and how it is said, what survives a round trip.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "dxf_text.h"
#include "entity_list.h"
#include "host/counters.h"
#include "host/drawing.h"
#include "temp_folder.h"

namespace {

using dxf_text::drawing;
using dxf_text::line;
using dxf_text::pairs;

class DxfFile : public testing::Test {
  protected:
    ~DxfFile() override { host::closeDrawing(); }

    std::string open(const std::string& text) {
        std::string error;
        if (host::openDrawing(folder.write("in.dxf", text), error)) return "";
        return error.substr(folder.file("in.dxf").size());
    }

    std::string save() {
        std::string error;
        EXPECT_TRUE(host::saveDrawing(folder.file("out.dxf"), error)) << error;
        return TempFolder::read(folder.file("out.dxf"));
    }

    TempFolder folder;
};

/// The one change of the round-trip tests: data on the entity with handle 30.
void setData(const char16_t* handle = u"30") {
    ASSERT_EQ(acdbRegApp(u"PLANT"), RTNORM);
    const Ename entity(handle);
    const Chain list(acutBuildList(-1, entity.name, -3, 1001, u"PLANT", 1070, 7, 0));
    ASSERT_EQ(acdbEntMod(list.get()), RTNORM);
}

TEST_F(DxfFile, refusals_name_line_and_cause) {
    EXPECT_EQ(open(""), ": the file is empty");
    EXPECT_EQ(open("hello\nworld\n"), ", line 1: expected a group code, found \"hello\"");
    EXPECT_EQ(open("  0\nLINE\n"),
              ", line 1: no DXF drawing: it starts with group 0 \"LINE\" and not with SECTION");
    EXPECT_EQ(open(std::string("AC1032\0\0\0\0\0", 11)),
              ": a DWG file; save it as DXF in a CAD program and open that file");
    const std::string twice = drawing(line("30") + line("30"));
    const size_t second = twice.rfind("5\n30\n330\n1F\n100\nAcDbEntity");
    const auto at =
        std::count(twice.begin(), twice.begin() + static_cast<std::ptrdiff_t>(second), '\n');
    EXPECT_EQ(open(twice).find(", line " + std::to_string(at + 1) + ": handle 30"), 0U);
    EXPECT_NE(
        open(drawing(line("30") + line("30"))).find("handle 30 stands twice; the LINE at line"),
        std::string::npos);
    EXPECT_NE(
        open(drawing(line("30", "0", "39 1,5"))).find("group 39 holds \"1,5\", which is no number"),
        std::string::npos);
    EXPECT_NE(open(drawing(line("3G"))).find("\"3G\" is no handle (object LINE)"),
              std::string::npos);
}

TEST_F(DxfFile, a_file_cut_anywhere_is_refused_or_whole) {
    const std::string whole =
        drawing(line("30", "0", "1001 OTHER | 1010 1.0 | 1020 2.0 | 1030 3.0"));
    const size_t end = whole.size() - 1;  // the last line end may be missing
    for (size_t size = 0; size < end; size += 7) {
        EXPECT_NE(open(whole.substr(0, size)), "") << "cut at " << size;
    }
    EXPECT_EQ(open(whole.substr(0, end)), "");
}

TEST_F(DxfFile, a_section_without_endsec_is_named) {
    std::string text = drawing(line("30"));
    const size_t at = text.find("0\nENDSEC\n0\nSECTION\n2\nOBJECTS");
    text.erase(at, std::string("0\nENDSEC\n").size());
    EXPECT_NE(open(text).find("section ENTITIES has no ENDSEC before SECTION"), std::string::npos);
}

TEST_F(DxfFile, folders_and_unreadable_files_are_refused) {
    std::string error;
    EXPECT_FALSE(host::openDrawing(folder.file("."), error));
    EXPECT_NE(error.find("a folder, not a drawing"), std::string::npos);
    EXPECT_FALSE(host::openDrawing(folder.file("missing.dxf"), error));
    EXPECT_NE(error.find("No such file or directory"), std::string::npos);
    if (geteuid() != 0) {  // the superuser may read everything
        const std::string path = folder.write("secret.dxf", drawing(""));
        chmod(path.c_str(), 0);
        EXPECT_FALSE(host::openDrawing(path, error));
        EXPECT_NE(error.find("Permission denied"), std::string::npos);
    }
}

TEST_F(DxfFile, a_refused_file_leaves_the_present_drawing) {
    ASSERT_EQ(open(drawing(line("30"))), "");
    EXPECT_NE(open("rubbish"), "");
    EXPECT_FALSE(Ename(u"30").nil());
}

TEST_F(DxfFile, an_unchanged_drawing_is_saved_as_the_same_bytes) {
    for (const char* version : {"AC1015", "AC1018", "AC1021", "AC1027", "AC1032"}) {
        const std::string text =
            pairs("999 a comment") + drawing(line("30") + pairs("0 STRANGE | 5 31 | 1 x"), version);
        ASSERT_EQ(open(text), "");
        const Chain read(acdbEntGet(Ename(u"30").name));
        EXPECT_EQ(save(), text) << version;
    }
}

TEST_F(DxfFile, a_change_touches_nothing_but_its_object) {
    const std::string before = line("2F", "0", "1001 OTHER | 1040 1.50");
    const std::string foreign = "1001 OTHER | 1000 kept | 1040 2.500";
    const std::string after = pairs(
        "0 INSERT | 5 31 | 330 1F | 100 AcDbEntity | 8 0 | "
        "100 AcDbBlockReference | 66 1 | 2 B | 10 0 | 20 0 | 30 0 | "
        "0 ATTRIB | 5 32 | 330 31 | 8 0 | 1 text | 0 SEQEND | 5 33 | 8 0");
    const std::string text = drawing(before + line("30", "0", foreign) + after);
    ASSERT_EQ(open(text), "");
    setData();
    std::string expected =
        drawing(before + line("30", "0", foreign) + "1001\nPLANT\n1070\n7\n" + after);
    // What the change needs: the application's record, and a seed above its handle.
    const std::string saved = save();
    EXPECT_NE(saved.find("  0\nAPPID\n  5\n100\n330\n9\n100\nAcDbSymbolTableRecord\n100\n"
                         "AcDbRegAppTableRecord\n  2\nPLANT\n 70\n0\n0\nENDTAB"),
              std::string::npos);
    EXPECT_NE(saved.find("9\n$HANDSEED\n  5\n101\n"), std::string::npos);
    const size_t entities = saved.find("ENTITIES");
    EXPECT_EQ(saved.substr(entities), expected.substr(expected.find("ENTITIES")));
}

TEST_F(DxfFile, files_with_carriage_returns_keep_them) {
    std::string text = drawing(line("30"));
    for (size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2)
        text.insert(at, "\r");
    ASSERT_EQ(open(text), "");
    setData();
    const std::string saved = save();
    for (size_t at = 0; (at = saved.find('\n', at)) != std::string::npos; ++at) {
        ASSERT_EQ(saved[at - 1], '\r') << saved.substr(at > 40 ? at - 40 : 0, 50);
    }
    EXPECT_NE(saved.find("1001\r\nPLANT\r\n1070\r\n7\r\n"), std::string::npos);
}

TEST_F(DxfFile, saving_again_and_reopening_give_the_same) {
    ASSERT_EQ(open(drawing(line("30") + line("31"))), "");
    setData();
    const std::string first = save();
    EXPECT_EQ(save(), first);
    std::string error;
    ASSERT_TRUE(host::openDrawing(folder.file("out.dxf"), error)) << error;
    EXPECT_EQ(save(), first);
    setData(u"31");
    EXPECT_NE(save(), first);
}

TEST_F(DxfFile, text_follows_the_encoding_of_the_version) {
    const auto readText = [](const char16_t* handle) {
        const Chain list(acdbEntGet(Ename(handle).name));
        return textAt(list.get(), 1);
    };
    const auto text = [](const std::string& value) {
        return pairs(
            "0 TEXT | 5 30 | 330 1F | 100 AcDbEntity | 8 0 | 100 AcDbText | 10 0 | 20 0 | "
            "30 0 | 40 1 | 1 " +
            value + " | 100 AcDbText");
    };
    ASSERT_EQ(open(drawing(text("\xD0\x9D\xD0\xB0\xD1\x81\xD0\xBE\xD1\x81 \\U+6CF5"))), "");
    EXPECT_EQ(readText(u"30"), u"Насос 泵");
    ASSERT_EQ(open(drawing(text("\xCD\xE0\xF1\xEE\xF1"), "AC1015", "ANSI_1251")), "");
    EXPECT_EQ(readText(u"30"), u"Насос");
    ASSERT_EQ(open(drawing(text("\xB1\xC3 ok"), "AC1018", "ANSI_936")), "");
    EXPECT_EQ(readText(u"30"), u"泵 ok");
    // Bytes without a meaning come back as they were, through a changed object too.
    ASSERT_EQ(open(drawing(text("a\xFF\xFE b"))), "");
    const Ename entity(u"30");
    const std::u16string odd = readText(u"30");
    const Chain list(acutBuildList(-1, entity.name, 1, (odd + u"!").c_str(), 0));
    ASSERT_EQ(acdbEntMod(list.get()), RTNORM);
    EXPECT_NE(save().find("a\xFF\xFE b!\n"), std::string::npos);
}

TEST_F(DxfFile, a_byte_order_mark_is_passed_over) {
    ASSERT_EQ(open("\xEF\xBB\xBF" + drawing(line("30"))), "");
    EXPECT_TRUE(save().starts_with("\xEF\xBB\xBF"));
}

TEST_F(DxfFile, new_text_is_written_in_the_encoding_of_the_version) {
    const auto written = [this](const std::string& version, const std::string& page) {
        EXPECT_EQ(open(drawing(line("30"), version, page)), "");
        acdbRegApp(u"PLANT");
        const Chain list(
            acutBuildList(-1, Ename(u"30").name, -3, 1001, u"PLANT", 1000, u"Труба 泵 ^\n", 0));
        EXPECT_EQ(acdbEntMod(list.get()), RTNORM);
        const std::string saved = save();
        const size_t at = saved.find("1000\n") + 5;
        return saved.substr(at, saved.find('\n', at) - at);
    };
    EXPECT_EQ(written("AC1032", "ANSI_1252"), "Труба 泵 ^ ^J");
    EXPECT_EQ(written("AC1015", "ANSI_1251"), "\xD2\xF0\xF3\xE1\xE0 \\U+6CF5 ^ ^J");
    EXPECT_EQ(written("AC1015", "ANSI_1252"),
              "\\U+0422\\U+0440\\U+0443\\U+0431\\U+0430 \\U+6CF5 ^ ^J");
}

TEST_F(DxfFile, a_failed_save_leaves_target_and_folder_as_they_were) {
    ASSERT_EQ(open(drawing(line("30"))), "");
    std::string error;
    EXPECT_FALSE(host::saveDrawing(folder.file("no/such/out.dxf"), error));
    EXPECT_NE(error.find("there is no folder"), std::string::npos);
    EXPECT_FALSE(host::saveDrawing(folder.file("."), error));
    EXPECT_NE(error.find("a folder"), std::string::npos);
    EXPECT_EQ(folder.count(), 1U);
}

TEST_F(DxfFile, saving_over_a_link_or_a_file_keeps_link_and_permissions) {
    ASSERT_EQ(open(drawing(line("30"))), "");
    const std::string target = folder.write("target.dxf", "old");
    chmod(target.c_str(), 0640);
    ASSERT_EQ(symlink(target.c_str(), folder.file("link.dxf").c_str()), 0);
    std::string error;
    ASSERT_TRUE(host::saveDrawing(folder.file("link.dxf"), error)) << error;
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link.dxf")));
    EXPECT_EQ(TempFolder::read(target), TempFolder::read(folder.file("in.dxf")));
    struct stat status {};
    stat(target.c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(DxfFile, objects_without_handles_get_them_when_something_changes) {
    const std::string bare = pairs("0 LINE | 8 0 | 10 0 | 20 0 | 30 0 | 11 1 | 21 1 | 31 0");
    ASSERT_EQ(open(drawing(bare)), "");
    EXPECT_EQ(save(), drawing(bare));
    EXPECT_FALSE(Ename(u"100").nil());
    setData(u"100");
    EXPECT_NE(save().find("0\nLINE\n  5\n100\n8\n0\n"), std::string::npos);
}

TEST_F(DxfFile, odd_spellings_and_comments_of_a_changed_object_stay) {
    const std::string head =
        "0\nLINE\n999\nbehind the type\n 5\n30\n102\n{OWN\n  70 \n 007 \n102\n}\n";
    const std::string odd =
        "  330\n 1F\n100\nAcDbEntity\n8\n0\n999\nbehind the layer\n62\n    -0\n100\nAcDbLine\n"
        "10\n+1.50E+000\n20\n.5\n30\n0\n11\n-4.\n21\n  6.0  \n31\n1e-312\n424242\nunknown\n";
    const std::string data =
        "1001\nOTHER\n1010\n 1.0\n999\nin a point\n1020\n2.\n1030\n+3\n1070\n  7\n";
    ASSERT_EQ(open(drawing(head + odd + data)), "");
    setData();
    EXPECT_NE(save().find(head + odd + data + "1001\nPLANT\n1070\n7\n0\nENDSEC\n"),
              std::string::npos);
    // The comment behind a group that gets another value comes behind the type.
    const Chain list(acutBuildList(-1, Ename(u"30").name, 8, u"Locked", 0));
    ASSERT_EQ(acdbEntMod(list.get()), RTNORM);
    std::string changed = head + odd;
    changed.replace(changed.find("8\n0\n999\nbehind the layer\n"), 25, "  8\nLocked\n");
    changed.insert(7, "999\nbehind the layer\n");
    EXPECT_NE(save().find(changed + data), std::string::npos);
}

TEST_F(DxfFile, an_embedded_object_behind_the_xdata_survives_a_change) {
    ASSERT_EQ(open(drawing(
                  line("30", "0", "1001 OTHER | 1070 1 | 101 Embedded Object | 70 1 | 10 0.50"))),
              "");
    setData();
    EXPECT_NE(
        save().find("1001\nOTHER\n1070\n1\n1001\nPLANT\n1070\n7\n101\nEmbedded Object\n70\n1\n"
                    "10\n0.50\n"),
        std::string::npos);
}

TEST_F(DxfFile, a_new_drawing_has_what_readers_need) {
    host::newDrawing();
    EXPECT_FALSE(Chain(acdbTblSearch(u"LAYER", u"0", 0)) == nullptr);
    EXPECT_FALSE(Chain(acdbTblSearch(u"ltype", u"CONTINUOUS", 0)) == nullptr);
    ads_name dictionary;
    ASSERT_EQ(acdbNamedObjDict(dictionary), RTNORM);
    EXPECT_FALSE(Chain(acdbDictSearch(dictionary, u"ACAD_GROUP", 0)) == nullptr);
    ads_name none;
    EXPECT_NE(acdbEntLast(none), RTNORM);
    EXPECT_EQ(host::openObjectCount(), 0);
}

}  // namespace
