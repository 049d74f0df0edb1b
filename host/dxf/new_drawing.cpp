/// The empty drawing is written as text and read like any other, so that a new drawing is in no way
/// a special one. Handles are fixed: the same drawing comes out every time.
#include "dxf/new_drawing.h"

#include <string_view>

namespace host::dxf {
namespace {

constexpr std::string_view kHeader = R"(  0
SECTION
  2
HEADER
  9
$ACADVER
  1
AC1032
  9
$ACADMAINTVER
 90
4
  9
$DWGCODEPAGE
  3
ANSI_1252
  9
$INSBASE
 10
0.0
 20
0.0
 30
0.0
  9
$EXTMIN
 10
1e+20
 20
1e+20
 30
1e+20
  9
$EXTMAX
 10
-1e+20
 20
-1e+20
 30
-1e+20
  9
$LIMMIN
 10
0.0
 20
0.0
  9
$LIMMAX
 10
420.0
 20
297.0
  9
$ORTHOMODE
 70
0
  9
$LTSCALE
 40
1.0
  9
$TEXTSIZE
 40
2.5
  9
$TEXTSTYLE
  7
Standard
  9
$CLAYER
  8
0
  9
$CELTYPE
  6
ByLayer
  9
$CECOLOR
 62
256
  9
$CELTSCALE
 40
1.0
  9
$DIMZIN
 70
0
  9
$DIMSTYLE
  2
Standard
  9
$LUNITS
 70
2
  9
$LUPREC
 70
4
  9
$AUNITS
 70
0
  9
$AUPREC
 70
0
  9
$UNITMODE
 70
0
  9
$ELEVATION
 40
0.0
  9
$PELEVATION
 40
0.0
  9
$THICKNESS
 40
0.0
  9
$ANGBASE
 50
0.0
  9
$ANGDIR
 70
0
  9
$PDMODE
 70
0
  9
$PDSIZE
 40
0.0
  9
$PLINEWID
 40
0.0
  9
$TILEMODE
 70
1
  9
$UCSORG
 10
0.0
 20
0.0
 30
0.0
  9
$UCSXDIR
 10
1.0
 20
0.0
 30
0.0
  9
$UCSYDIR
 10
0.0
 20
1.0
 30
0.0
  9
$MEASUREMENT
 70
1
  9
$INSUNITS
 70
4
  9
$HANDSEED
  5
40
  0
ENDSEC
  0
SECTION
  2
CLASSES
  0
ENDSEC
)";

/// Writes pairs one behind the other.
class PairWriter {
  public:
    PairWriter& pair(int code, std::string_view value) {
        std::string digits = std::to_string(code);
        if (digits.size() < 3) text_.append(3 - digits.size(), ' ');
        text_ += digits;
        text_ += '\n';
        text_ += value;
        text_ += '\n';
        return *this;
    }
    std::string& text() { return text_; }

  private:
    std::string text_;
};

void beginTable(PairWriter& out, std::string_view name, std::string_view handle,
                std::string_view count) {
    out.pair(0, "TABLE").pair(2, name).pair(5, handle).pair(330, "0");
    out.pair(100, "AcDbSymbolTable").pair(70, count);
}

PairWriter& record(PairWriter& out, std::string_view table, std::string_view handle,
                   std::string_view head, std::string_view marker, std::string_view name) {
    out.pair(0, table).pair(table == "DIMSTYLE" ? 105 : 5, handle).pair(330, head);
    return out.pair(100, "AcDbSymbolTableRecord").pair(100, marker).pair(2, name);
}

void writeTables(PairWriter& out) {
    out.pair(0, "SECTION").pair(2, "TABLES");

    beginTable(out, "VPORT", "8", "1");
    record(out, "VPORT", "20", "8", "AcDbViewportTableRecord", "*Active").pair(70, "0");
    out.pair(10, "0.0").pair(20, "0.0").pair(11, "1.0").pair(21, "1.0");
    out.pair(12, "210.0").pair(22, "148.5").pair(13, "0.0").pair(23, "0.0");
    out.pair(14, "10.0").pair(24, "10.0").pair(15, "10.0").pair(25, "10.0");
    out.pair(16, "0.0").pair(26, "0.0").pair(36, "1.0").pair(17, "0.0").pair(27, "0.0");
    out.pair(37, "0.0").pair(40, "297.0").pair(41, "1.5").pair(42, "50.0");
    out.pair(0, "ENDTAB");

    beginTable(out, "LTYPE", "5", "3");
    const auto linetype = [&](std::string_view handle, std::string_view name,
                              std::string_view about) {
        record(out, "LTYPE", handle, "5", "AcDbLinetypeTableRecord", name).pair(70, "0");
        out.pair(3, about).pair(72, "65").pair(73, "0").pair(40, "0.0");
    };
    linetype("14", "ByBlock", "");
    linetype("15", "ByLayer", "");
    linetype("16", "Continuous", "Solid line");
    out.pair(0, "ENDTAB");

    beginTable(out, "LAYER", "2", "1");
    record(out, "LAYER", "10", "2", "AcDbLayerTableRecord", "0").pair(70, "0");
    out.pair(62, "7").pair(6, "Continuous").pair(370, "-3").pair(390, "F");
    out.pair(0, "ENDTAB");

    beginTable(out, "STYLE", "3", "1");
    record(out, "STYLE", "11", "3", "AcDbTextStyleTableRecord", "Standard").pair(70, "0");
    out.pair(40, "0.0").pair(41, "1.0").pair(50, "0.0").pair(71, "0").pair(42, "2.5");
    out.pair(3, "txt").pair(4, "");
    out.pair(0, "ENDTAB");

    beginTable(out, "VIEW", "6", "0");
    out.pair(0, "ENDTAB");
    beginTable(out, "UCS", "7", "0");
    out.pair(0, "ENDTAB");

    beginTable(out, "APPID", "9", "1");
    record(out, "APPID", "12", "9", "AcDbRegAppTableRecord", "ACAD").pair(70, "0");
    out.pair(0, "ENDTAB");

    beginTable(out, "DIMSTYLE", "A", "1");
    out.pair(100, "AcDbDimStyleTable").pair(71, "0");
    record(out, "DIMSTYLE", "27", "A", "AcDbDimStyleTableRecord", "Standard").pair(70, "0");
    out.pair(340, "11");
    out.pair(0, "ENDTAB");

    beginTable(out, "BLOCK_RECORD", "1", "2");
    const auto block = [&](std::string_view handle, std::string_view name,
                           std::string_view layout) {
        record(out, "BLOCK_RECORD", handle, "1", "AcDbBlockTableRecord", name);
        out.pair(340, layout).pair(70, "0").pair(280, "1").pair(281, "0");
    };
    block("1F", "*Model_Space", "22");
    block("1B", "*Paper_Space", "1E");
    out.pair(0, "ENDTAB");

    out.pair(0, "ENDSEC");
}

void writeBlock(PairWriter& out, std::string_view name, std::string_view record_handle,
                std::string_view begin, std::string_view end, bool paper) {
    out.pair(0, "BLOCK").pair(5, begin).pair(330, record_handle).pair(100, "AcDbEntity");
    if (paper) out.pair(67, "1");
    out.pair(8, "0").pair(100, "AcDbBlockBegin").pair(2, name).pair(70, "0");
    out.pair(10, "0.0").pair(20, "0.0").pair(30, "0.0").pair(3, name).pair(1, "");
    out.pair(0, "ENDBLK").pair(5, end).pair(330, record_handle).pair(100, "AcDbEntity");
    if (paper) out.pair(67, "1");
    out.pair(8, "0").pair(100, "AcDbBlockEnd");
}

void dictionary(PairWriter& out, std::string_view handle, std::string_view owner) {
    out.pair(0, "DICTIONARY").pair(5, handle).pair(330, owner);
    out.pair(100, "AcDbDictionary").pair(281, "1");
}

void layout(PairWriter& out, std::string_view handle, std::string_view name, std::string_view order,
            std::string_view flags, std::string_view record_handle) {
    out.pair(0, "LAYOUT").pair(5, handle).pair(330, "1A").pair(100, "AcDbPlotSettings");
    out.pair(1, "").pair(4, "A3").pair(6, "");
    out.pair(40, "7.5").pair(41, "20.0").pair(42, "7.5").pair(43, "20.0");
    out.pair(44, "420.0").pair(45, "297.0").pair(46, "0.0").pair(47, "0.0").pair(48, "0.0");
    out.pair(49, "0.0").pair(140, "0.0").pair(141, "0.0").pair(142, "1.0").pair(143, "1.0");
    out.pair(70, flags).pair(72, "1").pair(73, "0").pair(74, "5").pair(7, "").pair(75, "16");
    out.pair(76, "0").pair(77, "2").pair(78, "300").pair(147, "1.0").pair(148, "0.0");
    out.pair(149, "0.0").pair(100, "AcDbLayout").pair(1, name).pair(70, "1").pair(71, order);
    out.pair(10, "0.0").pair(20, "0.0").pair(11, "420.0").pair(21, "297.0");
    out.pair(12, "0.0").pair(22, "0.0").pair(32, "0.0");
    out.pair(14, "1e+20").pair(24, "1e+20").pair(34, "1e+20");
    out.pair(15, "-1e+20").pair(25, "-1e+20").pair(35, "-1e+20").pair(146, "0.0");
    out.pair(13, "0.0").pair(23, "0.0").pair(33, "0.0").pair(16, "1.0").pair(26, "0.0");
    out.pair(36, "0.0").pair(17, "0.0").pair(27, "1.0").pair(37, "0.0").pair(76, "1");
    out.pair(330, record_handle);
}

void writeObjects(PairWriter& out) {
    out.pair(0, "SECTION").pair(2, "OBJECTS");
    dictionary(out, "C", "0");
    out.pair(3, "ACAD_GROUP").pair(350, "D").pair(3, "ACAD_LAYOUT").pair(350, "1A");
    out.pair(3, "ACAD_MLINESTYLE").pair(350, "17").pair(3, "ACAD_PLOTSTYLENAME").pair(350, "E");
    dictionary(out, "D", "C");
    dictionary(out, "1A", "C");
    out.pair(3, "Layout1").pair(350, "1E").pair(3, "Model").pair(350, "22");
    dictionary(out, "17", "C");
    out.pair(3, "Standard").pair(350, "18");
    out.pair(0, "ACDBDICTIONARYWDFLT").pair(5, "E").pair(330, "C");
    out.pair(100, "AcDbDictionary").pair(281, "1").pair(3, "Normal").pair(350, "F");
    out.pair(100, "AcDbDictionaryWithDefault").pair(340, "F");
    out.pair(0, "ACDBPLACEHOLDER").pair(5, "F").pair(330, "E");
    out.pair(0, "MLINESTYLE").pair(5, "18").pair(330, "17").pair(100, "AcDbMlineStyle");
    out.pair(2, "Standard").pair(70, "0").pair(3, "").pair(62, "256");
    out.pair(51, "90.0").pair(52, "90.0").pair(71, "2");
    out.pair(49, "0.5").pair(62, "256").pair(6, "ByLayer");
    out.pair(49, "-0.5").pair(62, "256").pair(6, "ByLayer");
    layout(out, "1E", "Layout1", "1", "688", "1B");
    layout(out, "22", "Model", "0", "1712", "1F");
    out.pair(0, "ENDSEC");
}

}  // namespace

std::string newDrawingText() {
    PairWriter out;
    out.text() = kHeader;
    writeTables(out);
    out.pair(0, "SECTION").pair(2, "BLOCKS");
    writeBlock(out, "*Model_Space", "1F", "23", "24", false);
    writeBlock(out, "*Paper_Space", "1B", "1C", "1D", true);
    out.pair(0, "ENDSEC").pair(0, "SECTION").pair(2, "ENTITIES").pair(0, "ENDSEC");
    writeObjects(out);
    out.pair(0, "EOF");
    return std::move(out.text());
}

}  // namespace host::dxf
