// Damaged drawings: what recovery reports and keeps, for known faults and for random ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "dxf/binary.h"
#include "dxf_text.h"
#include "entity_list.h"
#include "host/drawing.h"
#include "temp_folder.h"

namespace {

using dxf_text::drawing;
using dxf_text::line;
using dxf_text::pairs;

constexpr int kLines = 20;

std::string handleOf(int number) {
    return std::to_string(30 + number);
}

/// A drawing with lines 30 to 49, each with data, and a block with one more.
std::string soundDrawing() {
    std::string lines;
    for (int i = 0; i < kLines; ++i)
        lines += line(handleOf(i), "0", "1001 OTHER | 1070 " + std::to_string(i));
    std::string text = drawing(lines);
    const std::string block = pairs("0 BLOCK | 8 0 | 2 PUMP | 70 0 | 10 0.0 | 20 0.0 | 30 0.0") +
                              line("60") + pairs("0 ENDBLK | 8 0");
    return text.insert(text.find("0\nENDSEC\n0\nSECTION\n2\nENTITIES"), block);
}

std::string without(std::string text, const std::string& part) {
    const size_t at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    return text.erase(at, part.size());
}

std::string replaced(std::string text, const std::string& part, const std::string& by) {
    const size_t at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    return text.replace(at, part.size(), by);
}

class Recover : public testing::Test {
  protected:
    ~Recover() override { host::closeDrawing(); }

    host::OpenOutcome open(const std::string& file, bool recover) {
        host::OpenOptions options;
        options.recover = recover;
        return host::openDrawing(folder.write("in.dxf", file), options);
    }

    /// Recovers a file that can't be read without it. @return the report in one text
    std::string recover(const std::string& file) {
        const host::OpenOutcome plain = open(file, false);
        EXPECT_FALSE(plain.opened);
        EXPECT_TRUE(plain.damaged) << plain.error;
        const host::OpenOutcome outcome = open(file, true);
        EXPECT_TRUE(outcome.opened) << outcome.error;
        std::string report;
        for (const std::string& sentence : outcome.recovered)
            report += sentence + "\n";
        return report;
    }

    /// Saves what was recovered and opens it as a sound drawing.
    void saveAndOpen() {
        const host::SaveOutcome saved =
            host::saveDrawing(folder.file("out.dxf"), host::SaveOptions());
        ASSERT_TRUE(saved.saved) << saved.error;
        std::string error;
        ASSERT_TRUE(host::openDrawing(folder.file("out.dxf"), error)) << error;
    }

    /// Lines that have their handle, their end point and their data.
    static int wholeLines() {
        int whole = 0;
        for (int i = 0; i < kLines; ++i) {
            const std::string digits = handleOf(i);
            const Ename entity(std::u16string(digits.begin(), digits.end()).c_str());
            if (entity.nil()) continue;
            const resbuf other = {nullptr, RTSTR, {.rstring = const_cast<ACHAR*>(u"OTHER")}};
            const Chain list(acdbEntGetX(entity.name, &other));
            const resbuf* end = find(list.get(), 11);
            const resbuf* data = find(list.get(), 1070);
            whole += textAt(list.get(), 0) == u"LINE" && end != nullptr &&
                     end->resval.rpoint[1] == 6.0 && data != nullptr && data->resval.rint == i;
        }
        return whole;
    }

    TempFolder folder;
};

TEST_F(Recover, each_fault_is_told_and_all_else_kept) {
    const std::string sound = soundDrawing();
    const std::string cases[][2] = {
        {without(sound, "0\nEOF\n"), "mended: the end of the file (EOF) is missing\n1 fault"},
        {without(sound, "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n"),
         "mended: entities outside of any block are in a block RECOVERED1 now"},
        {without(sound, "0\nSECTION\n2\nENTITIES\n"), "mended: section ENTITIES had no beginning"},
        {without(sound,
                 "0\nENDTAB\n0\nTABLE\n2\nAPPID\n5\n9\n330\n0\n100\nAcDbSymbolTable\n70\n2\n"),
         "mended: a record of APPID stood in table LAYER"},
        {without(sound, "0\nTABLE\n2\nAPPID\n5\n9\n330\n0\n100\nAcDbSymbolTable\n70\n2\n"),
         "mended: a record of APPID stood outside of any table"},
        {without(sound, "0\nENDTAB\n0\nENDSEC\n"), "mended: section TABLES had no end"},
        {replaced(sound, "2\nPUMP", "2\n "), "mended: a block without a name is called RECOVERED1"},
        {without(sound, "0\nENDBLK\n8\n0\n"), "mended: block PUMP had no end"},
        {replaced(sound, "5\n60\n", "5\n\n"), "mended: \"\" is no handle; the LINE gets a new one"},
        {replaced(sound, "5\n60\n", "5\n20\n"), "mended: handle 20 stands twice"},
        {replaced(sound, "$ELEVATION\n40\n2.5", "$ELEVATION\n40\n2,5"),
         "mended: group 40 holds \"2,5\"; 2 in its place"},
        {replaced(sound, "0\nSECTION\n2\nBLOCKS", "rubbish\n\n0\nSECTION\n2\nBLOCKS"),
         "dropped: 2 lines where a group code should be, \"rubbish\"\n0 faults mended, 1 dropped"},
        {replaced(sound, "0\nSECTION\n2\nBLOCKS", "9\n$LTSCALE\n40\n3.0\n0\nSECTION\n2\nBLOCKS"),
         "mended: section HEADER had no beginning"},
        {replaced(sound, "0\nENDSEC\n0\nEOF", "0\nENDSEC\n0\nENDSEC\n0\nEOF"),
         "dropped: 1 group outside of any section\n0 faults mended, 1 dropped"},
    };
    for (const auto& [file, sentence] : cases) {
        const std::string report = recover(file);
        EXPECT_NE(report.find(sentence), std::string::npos) << sentence << "\n" << report;
        EXPECT_EQ(wholeLines(), kLines) << sentence;
        saveAndOpen();
        EXPECT_EQ(wholeLines(), kLines) << sentence;
    }
}

TEST_F(Recover, sound_files_and_no_drawings_are_left_alone) {
    const host::OpenOutcome sound = open(soundDrawing(), true);
    EXPECT_TRUE(sound.opened && sound.recovered.empty() && !sound.damaged);
    for (const char* text : {"hello\nworld\n", "", "0\nEOF\n"}) {
        EXPECT_FALSE(open(text, false).damaged);
        EXPECT_FALSE(open(text, true).opened);
    }
}

TEST_F(Recover, the_damaged_file_is_replaced_by_force_only) {
    const std::string damaged = without(soundDrawing(), "0\nEOF\n");
    recover(damaged);
    const std::string path = folder.file("in.dxf");
    host::SaveOptions options;
    const host::SaveOutcome refused = host::saveDrawing(path, options);
    EXPECT_FALSE(refused.saved);
    EXPECT_NE(refused.error.find("damaged"), std::string::npos) << refused.error;
    EXPECT_EQ(TempFolder::read(path), damaged);
    options.force = true;
    EXPECT_TRUE(host::saveDrawing(path, options).saved);
    EXPECT_TRUE(open(TempFolder::read(path), false).opened);
}

TEST_F(Recover, binary_and_old_drawings_too) {
    const std::string sound = soundDrawing();
    std::string binary, error;
    ASSERT_TRUE(host::dxf::encodeBinary({sound}, binary, error)) << error;
    // Cut in the last third, behind the lines.
    const std::string report = recover(binary.substr(0, binary.size() - 60));
    EXPECT_NE(report.find("dropped: all behind byte "), std::string::npos) << report;
    EXPECT_EQ(wholeLines(), kLines);
    saveAndOpen();
    EXPECT_EQ(wholeLines(), kLines);
    EXPECT_TRUE(host::dxf::isBinary(TempFolder::read(folder.file("out.dxf"))));

    recover(
        pairs("0 SECTION | 2 HEADER | 9 $ACADVER | 1 AC1009 | 0 ENDSEC | 0 SECTION | "
              "2 ENTITIES | 0 LINE | 5 30 | 8 0 | 10 1.0 | 20 0.0 | 11 4.0 | 21 6x"));
    const Chain list(acdbEntGet(Ename(u"30").name));
    ASSERT_NE(find(list.get(), 11), nullptr);
    EXPECT_EQ(find(list.get(), 11)->resval.rpoint[1], 6.0);
}

/// The starts of the lines of a text.
std::vector<size_t> lineStarts(const std::string& text) {
    std::vector<size_t> starts = {0};
    for (size_t at = text.find('\n'); at + 1 < text.size(); at = text.find('\n', at + 1))
        starts.push_back(at + 1);
    return starts;
}

TEST_F(Recover, a_lost_line_costs_no_more_than_what_stood_there) {
    const std::string sound = soundDrawing();
    std::mt19937 chance(1);
    const std::vector<size_t> starts = lineStarts(sound);
    for (int round = 0; round < 300; ++round) {
        const size_t at = starts[chance() % starts.size()];
        std::string damaged = sound;
        damaged.erase(at, sound.find('\n', at) + 1 - at);
        const host::OpenOutcome outcome = open(damaged, true);
        ASSERT_TRUE(outcome.opened) << "without the line at " << at << ": " << outcome.error;
        EXPECT_GE(wholeLines(), kLines - 2) << "without the line at " << at;
    }
}

TEST_F(Recover, whatever_is_read_can_be_saved_and_read) {
    const std::string sound = soundDrawing();
    std::mt19937 chance(2);
    for (int round = 0; round < 400; ++round) {
        std::string damaged = sound;
        for (unsigned hits = 1 + chance() % 4; hits > 0; --hits) {
            const size_t at = chance() % damaged.size();
            const size_t size = std::min<size_t>(chance() % 200, damaged.size() - at);
            switch (chance() % 4) {
                case 0:
                    damaged[at] = static_cast<char>(chance());
                    break;
                case 1:
                    damaged.erase(at, size);
                    break;
                case 2:
                    damaged.insert(chance() % damaged.size(), damaged.substr(at, size));
                    break;
                default:
                    damaged.insert(at, chance() % 2 == 0 ? "\n" : "\n0\n");
            }
        }
        const host::OpenOutcome outcome = open(damaged, true);
        if (!outcome.opened) {
            // A name of another kind of file is all that can be in the way.
            EXPECT_FALSE(damaged.starts_with("0\n")) << outcome.error;
            continue;
        }
        SCOPED_TRACE(round);
        saveAndOpen();
    }
}

}  // namespace
