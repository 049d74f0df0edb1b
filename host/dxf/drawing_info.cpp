/// What a drawing's header, its sections and its dictionaries say, beside the walk over its
/// objects.
#include "host/drawing_info.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "base/search_path.h"
#include "db/attach.h"
#include "dxf/object_survey.h"
#include "dxf/reader.h"
#include "dxf/versions.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

namespace fs = std::filesystem;

/// Names of the units of insertions by their number.
constexpr const char* kUnits[] = {"none",
                                  "inches",
                                  "feet",
                                  "miles",
                                  "millimetres",
                                  "centimetres",
                                  "metres",
                                  "kilometres",
                                  "microinches",
                                  "mils",
                                  "yards",
                                  "angstroms",
                                  "nanometres",
                                  "microns",
                                  "decimetres",
                                  "decametres",
                                  "hectometres",
                                  "gigametres",
                                  "astronomical units",
                                  "light years",
                                  "parsecs",
                                  "survey feet",
                                  "survey inches",
                                  "survey yards",
                                  "survey miles"};

class Describer {
  public:
    Describer(Database& database, DrawingInfo& out)
        : database_(database), out_(out), survey_(database) {}

    void run() {
        describeFile();
        describeHeader();
        measureSections();
        survey_.run(out_);
        describeLayouts();
        describeFiles();
        out_.findings = survey_.findings();
    }

  private:
    // --- header ---------------------------------------------------------------------------------

    const Tag* valueOf(std::string_view name) {
        const HeaderVariable* variable = database_.header(name);
        return variable == nullptr || variable->tags.empty() ? nullptr : &variable->tags.front();
    }
    std::string textOf(std::string_view name) {
        const Tag* tag = valueOf(name);
        return tag == nullptr ? std::string() : kz::toUtf8(tag->text(database_.codec()));
    }

    void describeFile() {
        const FileOrigin& origin = database_.origin();
        out_.version = origin.version.empty() ? database_.version() : origin.version;
        out_.release = dxf::versionName(out_.version);
        out_.utf8 = database_.codec().isUtf8();
        out_.binary = origin.binary;
        out_.bytes = origin.stamp.size;
    }

    /// A day number of the header as text; days begin at midnight.
    std::string dateOf(std::string_view name) {
        const Tag* tag = valueOf(name);
        constexpr double kFirst = 2299161.0;  // 15 October 1582
        if (tag == nullptr || !(tag->real() >= kFirst && tag->real() < 5000000.0)) return {};
        const auto day = static_cast<int64_t>(std::floor(tag->real()));
        const int64_t minutes =
            std::llround((tag->real() - static_cast<double>(day)) * 1440.0 - 0.5);
        int64_t a = day + 32044;
        const int64_t b = (4 * a + 3) / 146097;
        a -= 146097 * b / 4;
        const int64_t c = (4 * a + 3) / 1461;
        const int64_t d = a - 1461 * c / 4;
        const int64_t month = (5 * d + 2) / 153;
        char text[64];
        std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d",
                      static_cast<int>(100 * b + c - 4800 + month / 10),
                      static_cast<int>(month + 3 - 12 * (month / 10)),
                      static_cast<int>(d - (153 * month + 2) / 5 + 1),
                      static_cast<int>(std::max<int64_t>(minutes, 0) / 60),
                      static_cast<int>(std::max<int64_t>(minutes, 0) % 60));
        return text;
    }

    /// The corners that two variables give. Nothing for a box that holds nothing.
    std::optional<DrawingInfo::Box> boxOf(std::string_view least, std::string_view greatest) {
        DrawingInfo::Box box{};
        for (size_t corner = 0; corner < 2; ++corner) {
            const HeaderVariable* variable = database_.header(corner == 0 ? least : greatest);
            if (variable == nullptr || variable->tags.size() < 2) return std::nullopt;
            for (size_t axis = 0; axis < 3 && axis < variable->tags.size(); ++axis)
                box[corner * 3 + axis] = variable->tags[axis].real();
        }
        if (box[0] > box[3] || box[1] > box[4]) return std::nullopt;
        return box;
    }

    void describeHeader() {
        out_.code_page = textOf("$DWGCODEPAGE");
        out_.saved_by = textOf("$LASTSAVEDBY");
        out_.created = dateOf("$TDCREATE");
        out_.updated = dateOf("$TDUPDATE");
        const Tag* units = valueOf("$INSUNITS");
        const int64_t number = units == nullptr ? 0 : units->integer();
        out_.units = number >= 0 && number < static_cast<int64_t>(std::size(kUnits))
                         ? kUnits[number]
                         : "unknown (" + std::to_string(number) + ")";
        out_.extents = boxOf("$EXTMIN", "$EXTMAX");
        out_.limits = boxOf("$LIMMIN", "$LIMMAX");
    }

    // --- sections -------------------------------------------------------------------------------

    /// The line in front of the one at `at`, without blanks.
    std::string_view lineBefore(const char* at) const {
        const char* begin = database_.image().data() + dxf::markSize(database_.image());
        if (at == begin) return {};
        const char* end = at - 1;
        const char* line = end;
        while (line > begin && line[-1] != '\n')
            --line;
        return dxf::trimmed({line, static_cast<size_t>(end - line)});
    }

    /// Finds the markers of sections by their text, which is faster than by walking over the pairs.
    void measureSections() {
        std::string_view image = database_.image();
        // What stands behind the end doesn't count.
        if (const char* end = database_.insertPoints().eof) {
            image = image.substr(0, static_cast<size_t>(end - image.data()));
        }
        const char* begin = nullptr;
        for (size_t at = image.find("SEC"); at != std::string_view::npos;
             at = image.find("SEC", at + 3)) {
            const bool starts = image.substr(at, 7) == "SECTION";
            const size_t word = starts ? at : at - std::min<size_t>(at, 3);
            if (!starts && image.substr(word, 6) != "ENDSEC") continue;
            const char* line = image.data() + word;
            while (line > image.data() && dxf::isBlank(line[-1]))
                --line;
            if ((line > image.data() && line[-1] != '\n') || lineBefore(line) != "0") continue;
            if (starts && begin == nullptr) {
                begin = line;
                nameSection(image.substr(at));
            } else if (!starts && begin != nullptr && !out_.sections.empty()) {
                out_.sections.back().count = static_cast<uint64_t>(line - begin);
                begin = nullptr;
            }
        }
    }

    void nameSection(std::string_view text) {
        dxf::Pair pair;
        const size_t line = text.find('\n');
        dxf::PairCursor cursor(text.data() + std::min(line + 1, text.size()),
                               text.data() + text.size());
        while (cursor.next(pair) && pair.code == 999) {
        }
        out_.sections.push_back({std::string(dxf::trimmed(pair.value)), 0});
        if (out_.sections.back().name != "CLASSES") return;
        while (cursor.next(pair) && dxf::trimmed(pair.value) != "ENDSEC") {
            if (pair.code == 1) survey_.declare(dxf::trimmed(pair.value));
        }
    }

    // --- layouts --------------------------------------------------------------------------------

    /// Takes the blocks of layouts out of the list of blocks and gives them the names of their
    /// tabs.
    void describeLayouts() {
        std::unordered_map<std::string, std::string> tabs;
        for (Slot slot = 1; slot < database_.slotCount(); ++slot) {
            if (database_.record(slot).object_class == ObjectClass::Object &&
                database_.typeName(slot) == "LAYOUT") {
                nameTab(slot, tabs);
            }
        }
        std::vector<InfoBlock> blocks;
        for (InfoBlock& block : out_.blocks) {
            const std::u16string upper = kz::toUpper(kz::toUtf16(block.name));
            const bool model = upper.starts_with(u"*MODEL_SPACE");
            if (!model && !upper.starts_with(u"*PAPER_SPACE")) {
                blocks.push_back(std::move(block));
                continue;
            }
            const auto tab = tabs.find(block.name);
            if (tab != tabs.end()) block.name = tab->second;
            out_.layouts.insert(model ? out_.layouts.begin() : out_.layouts.end(),
                                std::move(block));
        }
        out_.blocks = std::move(blocks);
    }

    void nameTab(Slot layout, std::unordered_map<std::string, std::string>& tabs) {
        const Tags& tags = database_.tags(layout);
        std::u16string name;
        bool own = false;
        for (const Tag& tag : tags) {
            if (tag.code() == 100) own = tag.text(database_.codec()) == u"AcDbLayout";
            if (own && tag.code() == 1 && name.empty()) name = tag.text(database_.codec());
            if (!own || tag.code() != 330) continue;
            const Slot record = database_.findHandle(tag.handleValue());
            if (record != kNoSlot && database_.typeName(record) == "BLOCK_RECORD") {
                tabs[kz::toUtf8(database_.symbolName(record))] = kz::toUtf8(name);
            }
        }
        database_.releaseDecoded(layout);
    }

    // --- other files ----------------------------------------------------------------------------

    void describeFiles() {
        for (const Slot record : database_.blockRecords()) {
            Attachment attachment;
            if (!describeAttachment(database_, record, attachment)) continue;
            out_.files.push_back({attachment.overlay ? "overlay" : "attached",
                                  kz::toUtf8(attachment.name), kz::toUtf8(attachment.path),
                                  !attachmentFile(database_, attachment.path).empty()});
        }
        for (Slot slot = 1; slot < database_.slotCount(); ++slot) {
            if (database_.record(slot).object_class != ObjectClass::Object) continue;
            const std::string& type = database_.typeName(slot);
            const bool image = type == "IMAGEDEF";
            if (!image && type != "PDFDEFINITION" && type != "DWFDEFINITION" &&
                type != "DGNDEFINITION") {
                continue;
            }
            const Tags& tags = database_.tags(slot);
            const size_t at = findTag(tags, 1);
            const std::string path =
                at < tags.size() ? kz::toUtf8(tags[at].text(database_.codec())) : std::string();
            out_.files.push_back({image ? "image" : "underlay", "", path, isThere(path)});
            database_.releaseDecoded(slot);
        }
    }

    /// A file beside the drawing counts as well as one that the path leads to.
    bool isThere(const std::string& path) const {
        const fs::path plain = plainPath(path);
        const fs::path folder = fs::path(database_.path()).parent_path();
        std::error_code ignored;
        return !path.empty() &&
               (fs::exists(spelledPath((folder / plain).string()), ignored) ||
                fs::exists(spelledPath((folder / plain.filename()).string()), ignored));
    }

    Database& database_;
    DrawingInfo& out_;
    dxf::ObjectSurvey survey_;
};

}  // namespace

OpenOutcome describeDrawing(const std::string& path, DrawingInfo& out, const OpenOptions& options) {
    OpenOutcome outcome;
    const std::unique_ptr<Database> database = dxf::readFile(path, options, outcome);
    if (database == nullptr) return outcome;
    out = DrawingInfo();
    out.path = path;
    try {
        Describer(*database, out).run();
        outcome.opened = true;
    } catch (const std::bad_alloc&) {
        outcome.error = path + ": not enough memory to look at the drawing";
    }
    return outcome;
}

}  // namespace host
