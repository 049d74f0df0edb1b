// Binary DXF: every type of group in both directions, files of the old form, damage, drawings.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <limits>

#include "dxf/binary.h"
#include "dxf_text.h"
#include "entity_list.h"
#include "host/drawing.h"
#include "temp_folder.h"

namespace {

using dxf_text::drawing;
using dxf_text::line;
using host::dxf::BinaryText;
using host::dxf::decodeBinary;
using host::dxf::encodeBinary;

const std::string kSentinel("AutoCAD Binary DXF\r\n\x1A\0", 22);

std::string encoded(const std::string& text) {
    std::string out;
    std::string error;
    return encodeBinary({text}, out, error) ? out : error;
}

std::string decoded(const std::string& binary) {
    const BinaryText text = decodeBinary(binary);
    if (text.error.empty()) return {text.bytes.get(), text.size};
    return std::to_string(text.error_at) + ": " + text.error;
}

TEST(BinaryDxf, every_type_comes_back) {
    const std::string text =
        "  0\nSECTION\n  5\n2F\n 10\n1.0\n 20\n-0.0\n 30\n1e-312\n 40\n0.1\n "
        "41\n1.7976931348623157e+308\n"
        " 42\n123456789.12345679\n 62\n-7\n 70\n32767\n "
        "90\n-2147483648\n160\n-9223372036854775808\n"
        "290\n1\n291\n255\n310\n00FF7F80\n310\n\n330\n1A\n100\nAcDbLine\n  1\n^J caf\xC3\xA9 \n  "
        "1\n\n"
        "1001\nAPP\n1004\nAB\n1010\n0.5\n1070\n-1\n1071\n65536\n  0\nEOF\n";
    const std::string binary = encoded(text);
    ASSERT_TRUE(binary.starts_with(kSentinel)) << binary;
    EXPECT_EQ(decoded(binary), text);
    EXPECT_EQ(encoded(decoded(binary)), binary);
}

TEST(BinaryDxf, other_spellings_mean_the_same) {
    EXPECT_EQ(decoded(encoded(
                  "0\nSECTION\r\n 999\nnote\n 10\n+1.\n 70\n   7.0\n310\nab\n  0\nEOF\nrest")),
              "  0\nSECTION\n 10\n1.0\n 70\n7\n310\nAB\n  0\nEOF\n");
    // What is too long for one chunk becomes several; a raw line end is the escaped one.
    EXPECT_EQ(decoded(encoded("0\nSECTION\n310\n" + std::string(600, 'A') + "\n  0\nEOF\n")),
              "  0\nSECTION\n310\n" + std::string(254, 'A') + "\n310\n" + std::string(346, 'A') +
                  "\n  0\nEOF\n");
    const std::string raw = kSentinel + std::string("\0\0SECTION\0\1\0a\nb\r^Jc\0", 20);
    EXPECT_EQ(decoded(raw), "  0\nSECTION\n  1\na\\U+000Ab\\U+000D^Jc\n");
    EXPECT_EQ(encoded(decoded(raw)), raw);
}

TEST(BinaryDxf, codes_of_one_byte_are_those_of_old_files) {
    std::string old = kSentinel + std::string(
                                      "\0SECTION\0\x3E\x07\x00\xFF\xE9\x03"
                                      "APP\0",
                                      19);
    old += std::string("\0EOF\0", 5);
    EXPECT_EQ(decoded(old), "  0\nSECTION\n 62\n7\n1001\nAPP\n  0\nEOF\n");
}

TEST(BinaryDxf, damage_is_told_with_its_byte) {
    const std::string start = kSentinel + std::string("\0\0SECTION\0", 10);
    const double infinite = std::numeric_limits<double>::infinity();
    const std::string bytes(reinterpret_cast<const char*>(&infinite), sizeof infinite);
    const struct {
        std::string tail;
        const char* error;
    } kFiles[] = {
        {std::string("\x0A\0\1\2", 4), "32: the file ends within a group"},
        {std::string("\1\0text", 6), "32: the file ends within a text"},
        {std::string("\x36\1\xFF"
                     "ab",
                     5),
         "32: the file ends within a binary chunk"},
        {std::string("\xFF\x7F", 2),
         "32: a group code that there is not; the file is damaged in front of it"},
        {std::string("\x0A\0", 2) + bytes, "32: a number that is infinite or none"},
        {std::string("\x3C", 1), "32: the file ends within a group"},
    };
    for (const auto& file : kFiles)
        EXPECT_EQ(decoded(start + file.tail), file.error);
    EXPECT_EQ(encoded(" 70\n70000\n"),
              "group 70 holds \"70000\", which is too large for binary DXF");
    EXPECT_EQ(encoded("310\nXY\n"), "group 310 holds \"XY\", which is not hexadecimal");
}

class BinaryDrawing : public testing::Test {
  protected:
    ~BinaryDrawing() override { host::closeDrawing(); }

    std::string saved() {
        const host::SaveOutcome outcome = host::saveDrawing(folder.file("out.dxf"), {});
        EXPECT_TRUE(outcome.saved) << outcome.error;
        std::ifstream file(folder.file("out.dxf"), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    TempFolder folder;
};

TEST_F(BinaryDrawing, is_saved_as_binary_and_changes_where_it_was_changed) {
    const std::string text = drawing(line("30") + line("31"));
    // A byte behind the end shows that an unchanged drawing is its file's bytes.
    const std::string binary = encoded(text);
    std::string error;
    ASSERT_TRUE(host::openDrawing(folder.write("in.dxf", binary + "x"), error)) << error;
    EXPECT_EQ(saved(), binary + "x");
    const Ename first(u"30");
    const Chain change(acutBuildList(-1, first.name, 62, 3, 0));
    ASSERT_EQ(acdbEntMod(change.get()), RTNORM);
    const std::string changed = saved();
    const size_t second =
        binary.find(std::string("\0\0LINE\0\5\0"
                                "31\0",
                                12));
    ASSERT_NE(second, std::string::npos);
    EXPECT_TRUE(changed.ends_with(binary.substr(second)));
    EXPECT_NE(decoded(changed).find(" 62\n3\n"), std::string::npos);
}

TEST_F(BinaryDrawing, faults_name_the_byte_of_the_file) {
    const std::string text = drawing(line("30") + line("30"));
    const std::string binary = encoded(text);
    std::string error;
    EXPECT_FALSE(host::openDrawing(folder.write("in.dxf", binary), error));
    const size_t at =
        binary.rfind(std::string("\5\0"
                                 "30\0",
                                 5));
    EXPECT_NE(error.find("in.dxf, byte " + std::to_string(at) + ": handle 30 stands twice"),
              std::string::npos)
        << error;
}

}  // namespace
