/// What is in a drawing file, counted, and what is odd about it.
#ifndef HOST_DRAWING_INFO_H
#define HOST_DRAWING_INFO_H

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/drawing.h"
#include "host/export.h"

namespace host {

struct InfoCount {
    std::string name;
    uint64_t count = 0;
};

/// A layout, or a block; of a layout `name` is that of the tab.
struct InfoBlock {
    std::string name;
    uint64_t entities = 0;
    uint64_t references = 0;  ///< INSERTs
};

struct InfoLayer {
    std::string name;
    uint64_t entities = 0;
    int color = 7;
    bool on = true, frozen = false, locked = false;
};

struct InfoStyle {
    std::string name;
    std::string font;  ///< files, or the family of a TrueType font
};

struct InfoApplication {
    std::string name;
    bool registered = false;
    uint64_t objects = 0;  ///< that carry its data
    uint64_t bytes = 0;
};

/// A file that the drawing names.
struct InfoFile {
    std::string kind;  ///< "attached", "overlay", "image" or "underlay"
    std::string name;  ///< of the block; empty for others
    std::string path;  ///< as the drawing has it
    bool found = false;
};

struct InfoObject {
    std::string handle;
    std::string type;
    uint64_t bytes = 0;
};

/// Something odd, how often it was found, and where at first.
struct InfoFinding {
    std::string what;
    uint64_t count = 0;
    std::vector<std::string> examples;
};

struct DrawingInfo {
    std::string path;
    std::string version;    ///< "AC1032"
    std::string release;    ///< "R2018"
    std::string code_page;  ///< as the header has it
    bool utf8 = false;
    bool binary = false;
    uint64_t bytes = 0;
    std::string saved_by;
    std::string created, updated;       ///< "2024-05-17 09:30"; empty for unknown
    std::string units;                  ///< of insertions, "millimetres"
    using Box = std::array<double, 6>;  ///< least x, y, z, greatest x, y, z
    std::optional<Box> extents;
    std::optional<Box> limits;  ///< z is 0

    std::vector<InfoCount> sections;      ///< bytes, in the order of the file
    std::vector<InfoCount> entity_types;  ///< the most frequent first
    std::vector<InfoCount> object_types;
    std::vector<InfoBlock> layouts;  ///< model space first
    std::vector<InfoBlock> blocks;
    std::vector<InfoLayer> layers;
    std::vector<InfoCount> line_types;  ///< entities that name them
    std::vector<InfoStyle> text_styles;
    std::vector<std::string> dimension_styles;
    std::vector<InfoApplication> applications;
    std::vector<InfoFile> files;
    std::vector<InfoObject> largest;
    uint64_t entities = 0;  ///< in all spaces and blocks, without vertices and attributes
    uint64_t parts = 0;     ///< vertices, attributes, ends of sequences
    uint64_t objects = 0;   ///< of the section OBJECTS
    uint64_t groups = 0, dictionaries = 0, xrecords = 0;
    uint64_t data_bytes = 0;  ///< of extended data
    std::vector<InfoFinding> findings;
};

/// Reads a drawing and counts. The drawing in the editor has no part in it.
/// @return as opening it would; `out` holds something when it was opened
HOST_API OpenOutcome describeDrawing(const std::string& path, DrawingInfo& out,
                                     const OpenOptions& options = {});

}  // namespace host

#endif
