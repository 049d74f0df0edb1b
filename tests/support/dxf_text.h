/// Drawings as text in tests: the frame of a minimal drawing around the entities that matter.
#ifndef TESTS_SUPPORT_DXF_TEXT_H
#define TESTS_SUPPORT_DXF_TEXT_H

#include <string>

namespace dxf_text {

/// "0 LINE 5 2F" and so on: pairs in one line, separated by " | ", become two lines each.
inline std::string pairs(const std::string& compact) {
    std::string out;
    size_t at = 0;
    while (at < compact.size()) {
        size_t end = compact.find(" | ", at);
        if (end == std::string::npos) end = compact.size();
        const std::string pair = compact.substr(at, end - at);
        const size_t blank = pair.find(' ');
        out += pair.substr(0, blank) + "\n";
        out += (blank == std::string::npos ? "" : pair.substr(blank + 1)) + "\n";
        at = end + 3;
    }
    return out;
}

/// A drawing of the given version with tables, blocks and dictionaries of its own, and `entities`.
inline std::string drawing(const std::string& entities, const std::string& version = "AC1032",
                           const std::string& code_page = "ANSI_1252") {
    return pairs("0 SECTION | 2 HEADER | 9 $ACADVER | 1 " + version + " | 9 $DWGCODEPAGE | 3 " +
                 code_page +
                 " | 9 $CLAYER | 8 0 | 9 $ELEVATION | 40 2.5 | 9 $HANDSEED | 5 100 | 0 ENDSEC") +
           pairs(
               "0 SECTION | 2 TABLES | "
               "0 TABLE | 2 LTYPE | 5 5 | 330 0 | 100 AcDbSymbolTable | 70 1 | "
               "0 LTYPE | 5 16 | 330 5 | 100 AcDbSymbolTableRecord | 100 AcDbLinetypeTableRecord | "
               "2 Continuous | 70 0 | 3 Solid | 72 65 | 73 0 | 40 0.0 | 0 ENDTAB | "
               "0 TABLE | 2 LAYER | 5 2 | 330 0 | 100 AcDbSymbolTable | 70 2 | "
               "0 LAYER | 5 10 | 330 2 | 100 AcDbSymbolTableRecord | 100 AcDbLayerTableRecord | "
               "2 0 | 70 0 | 62 7 | 6 Continuous | "
               "0 LAYER | 5 11 | 330 2 | 100 AcDbSymbolTableRecord | 100 AcDbLayerTableRecord | "
               "2 Locked | 70 4 | 62 1 | 6 Continuous | 0 ENDTAB | "
               "0 TABLE | 2 APPID | 5 9 | 330 0 | 100 AcDbSymbolTable | 70 2 | "
               "0 APPID | 5 12 | 330 9 | 100 AcDbSymbolTableRecord | 100 AcDbRegAppTableRecord | "
               "2 ACAD | 70 0 | "
               "0 APPID | 5 13 | 330 9 | 100 AcDbSymbolTableRecord | 100 AcDbRegAppTableRecord | "
               "2 OTHER | 70 0 | 0 ENDTAB | "
               "0 TABLE | 2 BLOCK_RECORD | 5 1 | 330 0 | 100 AcDbSymbolTable | 70 2 | "
               "0 BLOCK_RECORD | 5 1F | 330 1 | 100 AcDbSymbolTableRecord | "
               "100 AcDbBlockTableRecord | 2 *Model_Space | "
               "0 BLOCK_RECORD | 5 1B | 330 1 | 100 AcDbSymbolTableRecord | "
               "100 AcDbBlockTableRecord | 2 *Paper_Space | 0 ENDTAB | 0 ENDSEC") +
           pairs(
               "0 SECTION | 2 BLOCKS | "
               "0 BLOCK | 5 20 | 330 1F | 100 AcDbEntity | 8 0 | 100 AcDbBlockBegin | "
               "2 *Model_Space | 70 0 | 10 0.0 | 20 0.0 | 30 0.0 | 3 *Model_Space | 1 ") +
           pairs(
               "0 ENDBLK | 5 21 | 330 1F | 100 AcDbEntity | 8 0 | 100 AcDbBlockEnd | "
               "0 BLOCK | 5 22 | 330 1B | 100 AcDbEntity | 8 0 | 100 AcDbBlockBegin | "
               "2 *Paper_Space | 70 0 | 10 0.0 | 20 0.0 | 30 0.0 | 3 *Paper_Space | 1 ") +
           pairs("0 ENDBLK | 5 23 | 330 1B | 100 AcDbEntity | 8 0 | 100 AcDbBlockEnd | 0 ENDSEC") +
           pairs("0 SECTION | 2 ENTITIES") + entities + pairs("0 ENDSEC") +
           pairs(
               "0 SECTION | 2 OBJECTS | 0 DICTIONARY | 5 C | 330 0 | 100 AcDbDictionary | 281 1 | "
               "3 ACAD_GROUP | 350 D | 0 DICTIONARY | 5 D | 330 C | 100 AcDbDictionary | 281 1 | "
               "0 ENDSEC | 0 EOF");
}

/// A line with handle, layer and further pairs behind its own.
inline std::string line(const std::string& handle, const std::string& layer = "0",
                        const std::string& more = "") {
    return pairs("0 LINE | 5 " + handle + " | 330 1F | 100 AcDbEntity | 8 " + layer +
                 " | 100 AcDbLine | 10 1.50 | 20 2.0 | 30 0.0 | 11 4.0 | 21 6.0 | 31 0.0") +
           (more.empty() ? "" : pairs(more));
}

}  // namespace dxf_text

#endif
