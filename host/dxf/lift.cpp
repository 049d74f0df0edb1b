/// The lift in two passes: one over the old text that finds its objects and their handles, one that
/// writes the new text into the frame of an empty drawing.
#include "dxf/lift.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "db/tags.h"
#include "dxf/new_drawing.h"
#include "dxf/pairs.h"
#include "dxf/values.h"
#include "kz_tls21an/text.h"

namespace host::dxf {
namespace {

/// An object of a text: its groups from the 0 group on, without comments.
struct Object {
    std::vector<Pair> pairs;
    uint64_t handle = 0;

    std::string_view type() const { return trimmed(pairs.front().value); }
    std::string_view value(int code) const {
        for (const Pair& pair : pairs) {
            if (pair.code == 1001) break;
            if (pair.code == code) return trimmed(pair.value);
        }
        return {};
    }
    int number(int code) const { return static_cast<int>(integerOf(value(code))); }
    bool has(int code) const { return value(code).data() != nullptr; }
};

struct Table {
    Object head;
    std::vector<Object> records;
};

struct OldBlock {
    Object begin;
    std::vector<Object> contents;
    Object end;
    uint64_t record = 0;
};

/// A drawing's text as objects, section by section.
struct Contents {
    std::vector<Pair> header;
    std::map<std::string, Table, std::less<>> tables;
    std::vector<OldBlock> blocks;
    std::vector<Object> entities;
    std::vector<Object> objects;
    std::string others;  ///< sections that nobody knows, as they are
};

std::string upper(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
    return out;
}

/// Reads a text into objects. Every value is checked, so that the lifted text holds no fault that
/// would have to be told at a place that the user doesn't have.
class Parser {
  public:
    Parser(const char* begin, const char* end) : cursor_(begin, end) {}

    Contents read() {
        next();
        if (!isMarker("SECTION")) {
            throw FormatError(pair_.begin, "no DXF drawing: it starts with group " +
                                               std::to_string(pair_.code) + " " +
                                               quoted(pair_.value) + " and not with SECTION");
        }
        while (!isMarker("EOF"))
            readSection();
        return std::move(contents_);
    }

  private:
    void next() {
        do {
            if (!cursor_.next(pair_)) {
                const std::string where =
                    section_.empty() ? "" : " (in section " + std::string(section_) + ")";
                throw FormatError(cursor_.end(), "the file ends without EOF" + where);
            }
        } while (pair_.code == 999);
        checkValue(pair_);
    }

    bool isMarker(std::string_view name) const {
        return pair_.code == 0 && trimmed(pair_.value) == name;
    }

    [[noreturn]] void fail(const std::string& cause) const {
        throw FormatError(pair_.begin, cause);
    }

    bool atSectionEnd() const {
        if (isMarker("ENDSEC")) return true;
        if (isMarker("SECTION") || isMarker("EOF")) fail("a section has no ENDSEC");
        return false;
    }

    void readSection() {
        if (!isMarker("SECTION")) fail("expected SECTION or EOF");
        const char* begin = pair_.begin;
        next();
        if (pair_.code != 2) fail("a section without a name");
        const std::string_view name = trimmed(pair_.value);
        section_ = name;
        next();
        if (name == "HEADER") {
            for (; !atSectionEnd(); next())
                contents_.header.push_back(pair_);
        } else if (name == "TABLES") {
            readTables();
        } else if (name == "BLOCKS") {
            readBlocks();
        } else if (name == "ENTITIES") {
            while (!atSectionEnd())
                contents_.entities.push_back(readObject());
        } else if (name == "OBJECTS") {
            while (!atSectionEnd())
                contents_.objects.push_back(readObject());
        } else {
            while (!atSectionEnd())
                next();
            if (name != "CLASSES") contents_.others.append(begin, pair_.end);
        }
        section_ = {};
        next();
    }

    Object readObject() {
        if (pair_.code != 0) fail("expected an object, found group " + std::to_string(pair_.code));
        Object object;
        bool in_braces = false, in_xdata = false;
        do {
            in_xdata = in_xdata || pair_.code == 1001;
            if (pair_.code == 102) in_braces = trimmed(pair_.value).starts_with('{');
            const int code = object.pairs.empty() || object.type() != "DIMSTYLE" ? 5 : 105;
            const bool own = !in_braces && !in_xdata;
            if (pair_.code == code && object.handle == 0 && own) readHandle(object);
            object.pairs.push_back(pair_);
            next();
        } while (pair_.code != 0);
        return object;
    }

    void readHandle(Object& object) {
        if (!parseHandle(pair_.value, object.handle) || object.handle == 0) {
            fail(quoted(pair_.value) + " is no handle");
        }
        if (!handles_.insert(object.handle).second) {
            fail("handle " + std::string(trimmed(pair_.value)) + " stands twice");
        }
    }

    void readTables() {
        while (!atSectionEnd()) {
            if (!isMarker("TABLE")) fail("expected TABLE or ENDSEC");
            Object head = readObject();
            const std::string name = upper(head.value(2));
            if (name.empty()) throw FormatError(head.pairs.front().begin, "a table without a name");
            Table& table = contents_.tables[name];
            table.head = std::move(head);
            while (!isMarker("ENDTAB")) {
                if (atSectionEnd() || isMarker("TABLE")) fail("table " + name + " has no ENDTAB");
                table.records.push_back(readObject());
            }
            next();
        }
    }

    void readBlocks() {
        while (!atSectionEnd()) {
            if (!isMarker("BLOCK")) fail("expected BLOCK or ENDSEC");
            OldBlock block;
            block.begin = readObject();
            while (!isMarker("ENDBLK")) {
                if (isMarker("BLOCK") || atSectionEnd()) {
                    throw FormatError(block.begin.pairs.front().begin, "a block has no ENDBLK");
                }
                block.contents.push_back(readObject());
            }
            block.end = readObject();
            contents_.blocks.push_back(std::move(block));
        }
    }

    PairCursor cursor_;
    Pair pair_;
    std::string_view section_;
    Contents contents_;
    std::unordered_set<uint64_t> handles_;
};

// --- classes ------------------------------------------------------------------------------------

/// A class mark and the groups that stand behind it; an empty list takes all that no other class of
/// the entity takes.
struct ClassGroups {
    const char* name;
    std::vector<int> codes;
};

using Classes = std::vector<ClassGroups>;

Classes textClasses(const char* last, std::initializer_list<int> codes) {
    return {{"AcDbText", {}}, {last, codes}};
}

Classes dimensionClasses(const Object& entity) {
    Classes classes = {{"AcDbDimension", {}}};
    constexpr int kKind = 7;
    switch (entity.number(70) & kKind) {
        case 0:
            classes.push_back({"AcDbAlignedDimension", {12, 22, 32, 13, 23, 33, 14, 24, 34, 40}});
            classes.push_back({"AcDbRotatedDimension", {50, 52}});
            break;
        case 1:
            classes.push_back(
                {"AcDbAlignedDimension", {12, 22, 32, 13, 23, 33, 14, 24, 34, 40, 50, 52}});
            break;
        case 2:
            classes.push_back({"AcDb2LineAngularDimension",
                               {13, 23, 33, 14, 24, 34, 15, 25, 35, 16, 26, 36, 40}});
            break;
        case 3:
            classes.push_back({"AcDbDiametricDimension", {15, 25, 35, 40}});
            break;
        case 4:
            classes.push_back({"AcDbRadialDimension", {15, 25, 35, 40}});
            break;
        case 5:
            classes.push_back(
                {"AcDb3PointAngularDimension", {13, 23, 33, 14, 24, 34, 15, 25, 35, 40}});
            break;
        default:
            classes.push_back({"AcDbOrdinateDimension", {13, 23, 33, 14, 24, 34}});
            break;
    }
    return classes;
}

constexpr int kPolyline3d = 8, kMesh = 16, kPolyface = 64, kPolyfacePart = 128;

Classes vertexClasses(const Object& vertex, int polyline_flags) {
    const int flags = vertex.number(70);
    if (polyline_flags & kPolyface) {
        const bool is_face = (flags & kPolyfacePart) != 0 && (flags & kPolyface) == 0;
        if (is_face) return {{"AcDbFaceRecord", {}}};
        return {{"AcDbVertex", {0}}, {"AcDbPolyFaceMeshVertex", {}}};
    }
    if (polyline_flags & kMesh) return {{"AcDbVertex", {0}}, {"AcDbPolygonMeshVertex", {}}};
    if (polyline_flags & kPolyline3d) return {{"AcDbVertex", {0}}, {"AcDb3dPolylineVertex", {}}};
    return {{"AcDbVertex", {0}}, {"AcDb2dVertex", {}}};
}

Classes polylineClasses(int flags) {
    return {{flags & kPolyface     ? "AcDbPolyFaceMesh"
             : flags & kMesh       ? "AcDbPolygonMesh"
             : flags & kPolyline3d ? "AcDb3dPolyline"
                                   : "AcDb2dPolyline",
             {}}};
}

/// Classes of an entity; none for a type that R12 doesn't have.
Classes classesOf(const Object& entity, int polyline_flags) {
    static const std::unordered_map<std::string_view, Classes> kPlain = {
        {"LINE", {{"AcDbLine", {}}}},
        {"3DLINE", {{"AcDbLine", {}}}},
        {"POINT", {{"AcDbPoint", {}}}},
        {"CIRCLE", {{"AcDbCircle", {}}}},
        {"ARC", {{"AcDbCircle", {}}, {"AcDbArc", {50, 51}}}},
        {"TRACE", {{"AcDbTrace", {}}}},
        {"SOLID", {{"AcDbTrace", {}}}},
        {"3DFACE", {{"AcDbFace", {}}}},
        {"TEXT", textClasses("AcDbText", {73})},
        {"ATTRIB", textClasses("AcDbAttribute", {2, 70, 73, 74})},
        {"ATTDEF", textClasses("AcDbAttributeDefinition", {3, 2, 70, 73, 74})},
        {"SHAPE", {{"AcDbShape", {}}}},
        {"VIEWPORT", {{"AcDbViewport", {}}}},
        {"SEQEND", {}},
    };
    const std::string_view type = entity.type();
    if (type == "POLYLINE") return polylineClasses(entity.number(70));
    if (type == "VERTEX") return vertexClasses(entity, polyline_flags);
    if (type == "DIMENSION") return dimensionClasses(entity);
    if (type == "INSERT") {
        const bool array = entity.number(70) > 1 || entity.number(71) > 1;
        return {{array ? "AcDbMInsertBlock" : "AcDbBlockReference", {}}};
    }
    const auto found = kPlain.find(type);
    return found == kPlain.end() ? Classes() : found->second;
}

const char* recordClass(std::string_view table) {
    static const std::unordered_map<std::string_view, const char*> kClasses = {
        {"VPORT", "AcDbViewportTableRecord"},    {"LTYPE", "AcDbLinetypeTableRecord"},
        {"LAYER", "AcDbLayerTableRecord"},       {"STYLE", "AcDbTextStyleTableRecord"},
        {"VIEW", "AcDbViewTableRecord"},         {"UCS", "AcDbUCSTableRecord"},
        {"APPID", "AcDbRegAppTableRecord"},      {"DIMSTYLE", "AcDbDimStyleTableRecord"},
        {"BLOCK_RECORD", "AcDbBlockTableRecord"}};
    const auto found = kClasses.find(table);
    return found == kClasses.end() ? nullptr : found->second;
}

/// Variables of the header that became those of the viewport, or went.
bool isGoneVariable(std::string_view name) {
    static constexpr std::string_view kGone[] = {
        "$AXISMODE", "$AXISUNIT", "$FASTZOOM", "$FLATLAND",    "$GRIDMODE", "$GRIDUNIT",
        "$HANDLING", "$SNAPANG",  "$SNAPBASE", "$SNAPISOPAIR", "$SNAPMODE", "$SNAPSTYLE",
        "$SNAPUNIT", "$VIEWCTR",  "$VIEWDIR",  "$VIEWSIZE",    "$ACADVER",  "$HANDSEED"};
    return std::find(std::begin(kGone), std::end(kGone), name) != std::end(kGone);
}

// --- the lift -----------------------------------------------------------------------------------

class Lift {
  public:
    explicit Lift(Contents old)
        : old_(std::move(old)), frame_text_(newDrawingText()), frame_(readFrame(frame_text_)) {
        uint64_t last = 0x10;
        forEachObject([&last](const Object& object) { last = std::max(last, object.handle); });
        for (const Pair& pair : old_.header) {
            uint64_t seed = 0;
            if (pair.code == 5 && parseHandle(pair.value, seed)) last = std::max(last, seed);
        }
        base_ = last + 1;
        next_ = base_ + kFrameHandles;
    }

    std::string write() {
        nameBlocks();
        std::string tables, blocks, entities, objects;
        // Sections take handles in this order; the seed behind the last of them goes in front.
        out_.swap(tables);
        writeTables();
        out_.swap(tables);
        out_.swap(blocks);
        writeBlocks();
        out_.swap(blocks);
        out_.swap(entities);
        writeEntities(old_.entities, 0);
        out_.swap(entities);
        out_.swap(objects);
        for (const Object& object : frame_.objects)
            writeFrameObject(object);
        out_.swap(objects);
        writeHeader();
        section("CLASSES", "");
        section("TABLES", tables);
        section("BLOCKS", blocks);
        section("ENTITIES", entities);
        section("OBJECTS", objects);
        out_ += old_.others;
        out_ += "  0\nEOF\n";
        return std::move(out_);
    }

  private:
    static constexpr uint64_t kFrameHandles = 0x100;

    static Contents readFrame(std::string& text) {
        text.append(kImagePadding, '\0');
        return Parser(text.data(), text.data() + text.size() - kImagePadding).read();
    }

    void forEachObject(const auto& visit) const {
        for (const auto& [name, table] : old_.tables) {
            visit(table.head);
            for (const Object& record : table.records)
                visit(record);
        }
        for (const OldBlock& block : old_.blocks) {
            visit(block.begin);
            for (const Object& entity : block.contents)
                visit(entity);
            visit(block.end);
        }
        for (const Object& entity : old_.entities)
            visit(entity);
    }

    // --- text -----------------------------------------------------------------------------------

    void put(int code, std::string_view value) {
        writeCode(code, out_);
        out_ += value;
        out_ += '\n';
    }
    void put(const Pair& pair) { put(pair.code, pair.value); }
    void putHandle(int code, uint64_t handle) { writeHandle(code, handle, out_); }

    void section(std::string_view name, std::string_view text) {
        put(0, "SECTION");
        put(2, name);
        out_ += text;
        put(0, "ENDSEC");
    }

    uint64_t handleOf(const Object& object) { return object.handle != 0 ? object.handle : next_++; }
    uint64_t frameHandle(uint64_t handle) const { return handle == 0 ? 0 : base_ + handle; }

    /// An object of the empty drawing with its handles moved behind those of the old drawing.
    void writeFrameObject(const Object& object) {
        const bool layout = object.type() == "LAYOUT";
        bool settings = false;
        for (const Pair& pair : object.pairs) {
            if (pair.code == 100) settings = trimmed(pair.value) == "AcDbPlotSettings";
            // Shading of views came with R2004.
            if (layout && settings && pair.code >= 76 && pair.code <= 78) continue;
            const GroupType type = groupType(pair.code);
            uint64_t handle = 0;
            const bool refers = type == GroupType::Handle || type == GroupType::HandleRef;
            if (refers && parseHandle(pair.value, handle)) {
                putHandle(pair.code, frameHandle(handle));
            } else {
                put(pair);
            }
        }
    }

    void writeHeader() {
        put(0, "SECTION");
        put(2, "HEADER");
        put(9, "$ACADVER");
        put(1, "AC1015");
        bool gone = false;
        for (const Pair& pair : old_.header) {
            if (pair.code == 9) gone = isGoneVariable(trimmed(pair.value));
            if (!gone) put(pair);
        }
        put(9, "$HANDSEED");
        putHandle(5, next_);
        put(0, "ENDSEC");
    }

    // --- tables ---------------------------------------------------------------------------------

    /// Gives every block a record. Those of the spaces are in the frame.
    void nameBlocks() {
        for (const Object& record : frame_.tables["BLOCK_RECORD"].records)
            block_records_[upper(record.value(2))] = frameHandle(record.handle);
        std::erase_if(old_.blocks, [](const OldBlock& block) {
            const std::string name = upper(block.begin.value(2));
            return name == "$MODEL_SPACE" || name == "$PAPER_SPACE" || name == "*MODEL_SPACE" ||
                   name == "*PAPER_SPACE";
        });
        for (OldBlock& block : old_.blocks) {
            const std::string name = upper(block.begin.value(2));
            if (name.empty()) {
                throw FormatError(block.begin.pairs.front().begin, "a block without a name");
            }
            block.record = next_++;
            block_records_.emplace(name, block.record);
        }
    }

    void writeTables() {
        // The order of the frame is that of R2000; tables that it hasn't follow.
        static constexpr const char* kOrder[] = {
            "VPORT", "LTYPE", "LAYER", "STYLE", "VIEW", "UCS", "APPID", "DIMSTYLE", "BLOCK_RECORD"};
        for (const char* name : kOrder)
            writeTable(name);
        for (const auto& [name, table] : old_.tables) {
            if (std::find(std::begin(kOrder), std::end(kOrder), name) == std::end(kOrder)) {
                writeUnknownTable(table);
            }
        }
    }

    void writeUnknownTable(const Table& table) {
        for (const Pair& pair : table.head.pairs)
            put(pair);
        for (const Object& record : table.records) {
            for (const Pair& pair : record.pairs)
                put(pair);
        }
        put(0, "ENDTAB");
    }

    void writeTable(const std::string& name) {
        const Table& frame = frame_.tables[name];
        const Table* old = nullptr;
        if (const auto found = old_.tables.find(name); found != old_.tables.end()) {
            old = &found->second;
        }
        const uint64_t head = frameHandle(frame.head.handle);
        writeFrameObject(frame.head);
        std::unordered_set<std::string> names;
        if (old != nullptr && name != "BLOCK_RECORD") {
            for (const Object& record : old->records)
                names.insert(upper(record.value(2)));
        }
        for (const Object& record : frame.records) {
            if (!names.contains(upper(record.value(2)))) writeFrameObject(record);
        }
        if (name == "BLOCK_RECORD") {
            for (const OldBlock& block : old_.blocks)
                writeBlockRecord(block, head);
        } else if (old != nullptr) {
            for (const Object& record : old->records)
                writeRecord(record, name, head);
        }
        put(0, "ENDTAB");
    }

    void writeBlockRecord(const OldBlock& block, uint64_t head) {
        put(0, "BLOCK_RECORD");
        putHandle(5, block.record);
        putHandle(330, head);
        put(100, "AcDbSymbolTableRecord");
        put(100, "AcDbBlockTableRecord");
        put(2, block.begin.value(2));
        putHandle(340, 0);
    }

    void writeRecord(const Object& record, const std::string& table, uint64_t head) {
        put(record.pairs.front());
        putHandle(table == "DIMSTYLE" ? 105 : 5, handleOf(record));
        putHandle(330, head);
        put(100, "AcDbSymbolTableRecord");
        put(100, recordClass(table));
        for (size_t i = 1; i < record.pairs.size(); ++i) {
            const Pair& pair = record.pairs[i];
            if (table == "DIMSTYLE" && pair.code >= 5 && pair.code <= 7) {
                putArrow(pair);
            } else if (pair.code != 5 && pair.code != 105) {
                put(pair);
                // An element of a line type says what it is.
                if (table == "LTYPE" && pair.code == 49) put(74, "0");
            }
        }
    }

    /// Arrow blocks of a dimension style: 5, 6 and 7 were names, 342 to 344 are handles.
    void putArrow(const Pair& pair) {
        const auto found = block_records_.find(upper(trimmed(pair.value)));
        if (found != block_records_.end()) putHandle(pair.code + 337, found->second);
    }

    // --- blocks and entities --------------------------------------------------------------------

    void writeBlocks() {
        for (const OldBlock& block : frame_.blocks) {
            writeFrameObject(block.begin);
            writeFrameObject(block.end);
        }
        for (const OldBlock& block : old_.blocks) {
            writeBlockBegin(block);
            writeEntities(block.contents, block.record);
            put(0, "ENDBLK");
            putHandle(5, handleOf(block.end));
            putHandle(330, block.record);
            put(100, "AcDbEntity");
            put(8, block.end.has(8) ? block.end.value(8) : layerOf(block.begin));
            put(100, "AcDbBlockEnd");
        }
    }

    static std::string_view layerOf(const Object& object) {
        return object.has(8) ? object.value(8) : std::string_view("0");
    }

    void writeBlockBegin(const OldBlock& block) {
        const Object& begin = block.begin;
        put(0, "BLOCK");
        putHandle(5, handleOf(begin));
        putHandle(330, block.record);
        put(100, "AcDbEntity");
        put(8, layerOf(begin));
        put(100, "AcDbBlockBegin");
        bool named = false, path = false;
        for (size_t i = 1; i < begin.pairs.size(); ++i) {
            const int code = begin.pairs[i].code;
            if (code == 5 || code == 8 || code == 100 || code == 330) continue;
            named = named || code == 3;
            path = path || code == 1;
            put(begin.pairs[i]);
        }
        if (!named) put(3, begin.value(2));
        if (!path) put(1, "");
    }

    /// Entities of a block, or with record 0 of the space that each names.
    void writeEntities(const std::vector<Object>& entities, uint64_t record) {
        const uint64_t model = block_records_["*MODEL_SPACE"];
        const uint64_t paper = block_records_["*PAPER_SPACE"];
        uint64_t main = 0;  // the polyline or insertion whose parts follow
        bool main_in_paper = false;
        int polyline_flags = 0;
        for (const Object& entity : entities) {
            const std::string_view type = entity.type();
            const bool part =
                main != 0 && (type == "VERTEX" || type == "ATTRIB" || type == "SEQEND");
            const bool in_paper = record == 0 && (part ? main_in_paper : entity.number(67) == 1);
            const uint64_t space = record != 0 ? record : in_paper ? paper : model;
            const uint64_t handle = handleOf(entity);
            writeEntity(entity, handle, part ? main : space, in_paper, polyline_flags);
            if (!part) {
                main = entity.number(66) == 1 || type == "POLYLINE" ? handle : 0;
                main_in_paper = in_paper;
                polyline_flags = type == "POLYLINE" ? entity.number(70) : 0;
            }
            if (type == "SEQEND") main = 0;
        }
    }

    static bool isCommon(int code) {
        return code == 6 || code == 8 || code == 48 || code == 60 || code == 62;
    }

    void writeEntity(const Object& entity, uint64_t handle, uint64_t owner, bool in_paper,
                     int polyline_flags) {
        put(0, entity.type() == "3DLINE" ? std::string_view("LINE") : entity.type());
        putHandle(5, handle);
        putHandle(330, owner);
        const bool marked = entity.has(100);  // by a program that knew later versions
        if (!marked) writeCommon(entity, in_paper);
        const Classes classes = marked ? Classes() : classesOf(entity, polyline_flags);
        const size_t xdata = xdataBegin(entity);
        if (classes.empty()) {
            for (size_t i = 1; i < xdata; ++i) {
                const int code = entity.pairs[i].code;
                const bool written = code == 5 || code == 330 ||
                                     (!marked && (isCommon(code) || code == 67 || code == 38));
                if (!written) put(entity.pairs[i]);
            }
        }
        const std::string elevation = elevationOf(entity);
        for (const ClassGroups& one : classes)
            writeClass(entity, xdata, one, classes, elevation);
        if (entity.type() == "VIEWPORT" && !marked) writeView(entity, xdata);
        for (size_t i = xdata; i < entity.pairs.size(); ++i)
            put(entity.pairs[i]);
    }

    void writeCommon(const Object& entity, bool in_paper) {
        put(100, "AcDbEntity");
        if (in_paper) put(67, "1");
        put(8, layerOf(entity));
        for (const Pair& pair : entity.pairs) {
            if (pair.code == 1001) break;
            if (isCommon(pair.code) && pair.code != 8) put(pair);
        }
    }

    static size_t xdataBegin(const Object& entity) {
        const auto found = std::find_if(entity.pairs.begin(), entity.pairs.end(),
                                        [](const Pair& pair) { return pair.code == 1001; });
        return static_cast<size_t>(found - entity.pairs.begin());
    }

    /// The oldest drawings have the height of flat entities in group 38.
    static std::string elevationOf(const Object& entity) {
        return entity.has(38) && !entity.has(30) ? std::string(entity.value(38)) : std::string();
    }

    void writeClass(const Object& entity, size_t xdata, const ClassGroups& wanted,
                    const Classes& classes, const std::string& elevation) {
        const auto holds = [](const ClassGroups& one, int code) {
            return std::find(one.codes.begin(), one.codes.end(), code) != one.codes.end();
        };
        put(100, wanted.name);
        for (size_t i = 1; i < xdata; ++i) {
            const Pair& pair = entity.pairs[i];
            const int code = pair.code;
            if (code == 5 || code == 67 || code == 38 || code == 330 || isCommon(code)) continue;
            const bool other = std::any_of(classes.begin(), classes.end(), [&](const auto& one) {
                return &one != &wanted && holds(one, code);
            });
            if (!(wanted.codes.empty() ? !other : holds(wanted, code))) continue;
            put(pair);
            if (!elevation.empty() && code >= 20 && code <= 29) put(code + 10, elevation);
        }
    }

    // --- viewports ------------------------------------------------------------------------------

    /// The view of a viewport, which R12 keeps in XDATA of ACAD behind "MVIEW".
    void writeView(const Object& entity, size_t xdata) {
        std::vector<std::string_view> points, reals, integers;
        bool own = false;
        for (size_t i = xdata; i < entity.pairs.size(); ++i) {
            const Pair& pair = entity.pairs[i];
            const std::string_view value = trimmed(pair.value);
            if (pair.code == 1001) own = value == "ACAD";
            if (!own) continue;
            if (pair.code == 1010 || pair.code == 1020 || pair.code == 1030)
                points.push_back(value);
            if (pair.code == 1040) reals.push_back(value);
            if (pair.code == 1070) integers.push_back(value);
        }
        constexpr size_t kPoints = 6, kReals = 14, kIntegers = 11;
        if (points.size() < kPoints || reals.size() < kReals || integers.size() < kIntegers) return;
        put(12, reals[2]), put(22, reals[3]);
        put(13, reals[8]), put(23, reals[9]);
        put(14, reals[10]), put(24, reals[11]);
        put(15, reals[12]), put(25, reals[13]);
        put(16, points[3]), put(26, points[4]), put(36, points[5]);
        put(17, points[0]), put(27, points[1]), put(37, points[2]);
        put(42, reals[4]), put(43, reals[5]), put(44, reals[6]);
        put(45, reals[1]), put(50, reals[7]), put(51, reals[0]);
        put(72, integers[2]);
        writeInteger(90, viewFlags(integers), out_);
    }

    /// View mode, icon, snap and grid as bits. Turned off layers stay in the XDATA.
    static int64_t viewFlags(const std::vector<std::string_view>& integers) {
        const auto number = [&](size_t index) { return integerOf(integers[index]); };
        int64_t flags = number(1) & 0x1F;
        if (number(4) & 1) flags |= 0x20;
        if (number(4) & 2) flags |= 0x40;
        if (number(3) != 0) flags |= 0x80;
        if (number(5) != 0) flags |= 0x100;
        if (number(6) != 0) flags |= 0x200;
        if (number(7) != 0) flags |= 0x400;
        return flags;
    }

    Contents old_;
    std::string frame_text_;
    Contents frame_;
    uint64_t base_ = 0;
    uint64_t next_ = 0;
    std::unordered_map<std::string, uint64_t> block_records_;
    std::string out_;
};

}  // namespace

std::string statedVersion(const char* begin, const char* end) {
    PairCursor cursor(begin, end);
    Pair pair;
    try {
        bool found = false, in_header = false;
        while (cursor.next(pair)) {
            const std::string_view value = trimmed(pair.value);
            if (pair.code == 0 && (value == "ENDSEC" || value == "EOF")) break;
            if (found && pair.code == 1) return std::string(value);
            if (pair.code == 9) found = value == "$ACADVER";
            if (pair.code == 2 && !in_header && value != "HEADER") break;
            in_header = in_header || pair.code == 2;
        }
    } catch (const FormatError&) {
        // Whoever reads the drawing tells it.
    }
    const std::string_view text(begin, static_cast<size_t>(end - begin));
    return text.find("AcDb") == std::string_view::npos ? "AC1009" : "AC1015";
}

bool isOldVersion(std::string_view version) {
    return version < "AC1012" || !version.starts_with("AC1");
}

std::string liftOldDrawing(const char* begin, const char* end) {
    return Lift(Parser(begin, end).read()).write();
}

}  // namespace host::dxf
