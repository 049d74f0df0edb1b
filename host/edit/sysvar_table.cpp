/// The system variables. Defaults are those of a new metric drawing.
#include "edit/sysvar_table.h"

#include <algorithm>
#include <array>
#include <limits>

namespace host {
namespace {

using Form = VariableForm;
using Kept = VariableKept;
using Rule = VariableRule;

constexpr double kAny = std::numeric_limits<double>::max();
constexpr double kAboveZero = std::numeric_limits<double>::min();
constexpr double kShortest = -32768, kLongest = 32767;
constexpr int16_t kR13 = 1012, kR2000 = 1015, kR2004 = 1018, kR2007 = 1021;
constexpr double kNameLength = 255;
constexpr int kColors = 256;

// --- how rows are written -----------------------------------------------------------------------

constexpr Variable headerShort(std::string_view name, double number, double least, double greatest,
                               int16_t since = 1009, int16_t code = 70) {
    return {.name = name,
            .form = Form::Short,
            .kept = Kept::Header,
            .code = code,
            .number = number,
            .least = least,
            .greatest = greatest,
            .since = since};
}
/// On or off.
constexpr Variable headerSwitch(std::string_view name, int number, int16_t since = 1009,
                                int16_t code = 70) {
    return headerShort(name, number, 0, 1, since, code);
}
constexpr Variable headerReal(std::string_view name, double number, double least = -kAny,
                              double greatest = kAny, int16_t since = 1009, int16_t code = 40) {
    return {.name = name,
            .form = Form::Real,
            .kept = Kept::Header,
            .code = code,
            .number = number,
            .least = least,
            .greatest = greatest,
            .since = since};
}
constexpr Variable headerText(std::string_view name, int16_t code, std::u16string_view text = {},
                              int16_t since = 1009, Rule rule = Rule::None) {
    return {.name = name,
            .form = Form::Text,
            .kept = Kept::Header,
            .code = code,
            .greatest = kNameLength,
            .text = text,
            .rule = rule,
            .since = since};
}
constexpr Variable point(std::string_view name, Form form, Kept kept, int16_t code = 10,
                         double x = 0.0, double y = 0.0) {
    return {.name = name, .form = form, .kept = kept, .code = code, .number = x, .y = y};
}
constexpr Variable number(std::string_view name, Form form, Kept kept, double value, double least,
                          double greatest, int16_t code = 0) {
    return {.name = name,
            .form = form,
            .kept = kept,
            .code = code,
            .number = value,
            .least = least,
            .greatest = greatest};
}
constexpr Variable sessionShort(std::string_view name, double value, double least,
                                double greatest) {
    return number(name, Form::Short, Kept::Session, value, least, greatest);
}
constexpr Variable text(std::string_view name, Kept kept, std::u16string_view value = {},
                        double length = kNameLength) {
    return {.name = name, .form = Form::Text, .kept = kept, .greatest = length, .text = value};
}
/// Worked out by the host, and so not set.
constexpr Variable computed(std::string_view name, Form form) {
    return {.name = name, .form = form, .kept = Kept::Computed, .read_only = true};
}
/// Worked out by the host, which also takes it in.
constexpr Variable state(std::string_view name, Form form, double least = -kAny,
                         double greatest = kAny) {
    return {
        .name = name, .form = form, .kept = Kept::Computed, .least = least, .greatest = greatest};
}
/// Each coordinate is above zero.
constexpr Variable positive(Variable row) {
    row.least = kAboveZero;
    return row;
}
constexpr Variable fixed(Variable row) {
    row.read_only = true;
    return row;
}
constexpr Variable bySpace(Variable row) {
    row.by_space = true;
    return row;
}
constexpr Variable with(Rule rule, Variable row) {
    row.rule = rule;
    return row;
}

// --- the rows -----------------------------------------------------------------------------------

/// Kept in the header, but for those of dimensions.
constexpr auto kOfDrawing = std::to_array<Variable>({
    headerReal("3DDWFPREC", 2, 1, 6, kR2007),
    headerReal("ANGBASE", 0, -kAny, kAny, 1009, 50),
    headerSwitch("ANGDIR", 0),
    headerShort("ATTMODE", 1, 0, 2),
    headerShort("AUNITS", 0, 0, 4),
    headerShort("AUPREC", 0, 0, 8),
    headerSwitch("CAMERADISPLAY", 0, kR2007, 290),
    headerReal("CAMERAHEIGHT", 0, -kAny, kAny, kR2007),
    with(Rule::Color, headerText("CECOLOR", 62, u"BYLAYER")),
    headerReal("CELTSCALE", 1, kAboveZero, kAny, kR13),
    with(Rule::LineType, headerText("CELTYPE", 6, u"ByLayer")),
    with(Rule::LineWeight, headerShort("CELWEIGHT", -1, -3, 211, kR2000, 370)),
    headerReal("CHAMFERA", 0, 0),
    headerReal("CHAMFERB", 0, 0),
    headerReal("CHAMFERC", 0, 0, kAny, kR13),
    headerReal("CHAMFERD", 0, -kAny, kAny, kR13),
    with(Rule::Layer, headerText("CLAYER", 8, u"0")),
    headerShort("CMLJUST", 0, 0, 2, kR13),
    headerReal("CMLSCALE", 20, -kAny, kAny, kR13),
    headerText("CMLSTYLE", 2, u"Standard", kR13),
    headerShort("CSHADOW", 0, 0, 3, kR2007, 280),
    headerShort("DGNFRAME", 0, 0, 2, kR2007, 280),
    headerSwitch("DISPSILH", 0, kR13),
    headerShort("DWFFRAME", 2, 0, 2, kR2007, 280),
    fixed(headerText("DWGCODEPAGE", 3, u"ANSI_1252")),
    bySpace(headerReal("ELEVATION", 0)),
    headerShort("ENDCAPS", 0, 0, 3, kR2000, 280),
    headerSwitch("EXTNAMES", 1, kR2000, 290),
    headerReal("FILLETRAD", 0, 0),
    headerSwitch("FILLMODE", 1),
    headerShort("HALOGAP", 0, 0, 255, kR2004, 280),
    headerSwitch("HIDETEXT", 1, kR2004, 280),
    headerText("HYPERLINKBASE", 1, {}, kR2000),
    headerShort("INDEXCTL", 0, 0, 3, kR2004, 280),
    bySpace(point("INSBASE", Form::Point3, Kept::Header)),
    headerShort("INSUNITS", 4, 0, 24, kR2000),
    with(Rule::Color, headerText("INTERFERECOLOR", 62, u"1", kR2007)),
    headerShort("INTERSECTIONCOLOR", 257, 0, 257, kR2004),
    headerSwitch("INTERSECTIONDISPLAY", 0, kR2004, 280),
    headerShort("JOINSTYLE", 0, 0, 3, kR2000, 280),
    fixed(headerText("LASTSAVEDBY", 1, {}, kR2004)),
    bySpace(headerSwitch("LIMCHECK", 0)),
    bySpace(point("LIMMAX", Form::Point2, Kept::Header, 10, 420.0, 297.0)),
    bySpace(point("LIMMIN", Form::Point2, Kept::Header)),
    headerReal("LTSCALE", 1, kAboveZero),
    headerShort("LUNITS", 2, 1, 5),
    headerShort("LUPREC", 4, 0, 8),
    headerSwitch("LWDISPLAY", 0, kR2000, 290),
    headerShort("MAXACTVP", 64, 2, 64),
    headerSwitch("MEASUREMENT", 1, kR13),
    headerSwitch("MIRRTEXT", 0),
    headerShort("OBSCOLOR", 257, 0, 257, kR2004),
    headerShort("OBSLTYPE", 0, 0, 11, kR2004, 280),
    headerSwitch("ORTHOMODE", 0),
    with(Rule::PointMode, headerShort("PDMODE", 0, 0, 100)),
    headerReal("PDSIZE", 0),
    headerSwitch("PLINEGEN", 0),
    headerReal("PLINEWID", 0, 0),
    headerText("PROJECTNAME", 1, {}, kR2004),
    headerSwitch("PROXYGRAPHICS", 1, kR13),
    headerSwitch("PSLTSCALE", 1),
    headerReal("PSOLHEIGHT", 80, kAboveZero, kAny, kR2007),
    headerReal("PSOLWIDTH", 5, kAboveZero, kAny, kR2007),
    fixed(headerSwitch("PSTYLEMODE", 1, kR2000, 290)),
    headerReal("PSVPSCALE", 0, 0, kAny, kR2000),
    headerSwitch("QTEXTMODE", 0),
    headerSwitch("REALWORLDSCALE", 1, kR2007, 290),
    headerSwitch("REGENMODE", 1),
    headerShort("SHADEDGE", 3, 0, 3),
    headerShort("SHADEDIF", 70, 0, 100),
    headerReal("SHADOWPLANELOCATION", 0, -kAny, kAny, kR2007),
    headerShort("SHOWHIST", 1, 0, 2, kR2007, 280),
    headerReal("SKETCHINC", 1, 0),
    headerShort("SKPOLY", 0, 0, 2),
    headerSwitch("SOLIDHIST", 0, kR2007, 280),
    headerShort("SORTENTS", 127, 0, 127, kR2004, 280),
    headerSwitch("SPLFRAME", 0),
    headerShort("SPLINESEGS", 8, kShortest, kLongest),
    with(Rule::SplineType, headerShort("SPLINETYPE", 6, 5, 6)),
    headerReal("STEPSIZE", 6, kAboveZero, kAny, kR2007),
    headerReal("STEPSPERSEC", 2, 1, 30, kR2007),
    headerText("STYLESHEET", 1, {}, kR2000),
    headerShort("SURFTAB1", 6, 2, 32766),
    headerShort("SURFTAB2", 6, 2, 32766),
    headerShort("SURFTYPE", 6, 5, 8),
    headerShort("SURFU", 6, 2, 200),
    headerShort("SURFV", 6, 2, 200),
    fixed(headerReal("TDCREATE", 0)),
    fixed(headerReal("TDINDWG", 0)),
    fixed(headerReal("TDUCREATE", 0, -kAny, kAny, kR2000)),
    fixed(headerReal("TDUPDATE", 0)),
    fixed(headerReal("TDUSRTIMER", 0)),
    fixed(headerReal("TDUUPDATE", 0, -kAny, kAny, kR2000)),
    headerReal("TEXTSIZE", 2.5, kAboveZero),
    with(Rule::TextStyle, headerText("TEXTSTYLE", 7, u"Standard")),
    headerReal("THICKNESS", 0),
    headerSwitch("TILEMODELIGHTSYNCH", 1, kR2007, 280),
    headerReal("TRACEWID", 1, kAboveZero),
    headerShort("TREEDEPTH", 3020, kShortest, kLongest, kR13),
    bySpace(headerText("UCSBASE", 2, {}, kR2000)),
    headerSwitch("UNITMODE", 0),
    headerShort("USERI1", 0, kShortest, kLongest),
    headerShort("USERI2", 0, kShortest, kLongest),
    headerShort("USERI3", 0, kShortest, kLongest),
    headerShort("USERI4", 0, kShortest, kLongest),
    headerShort("USERI5", 0, kShortest, kLongest),
    headerReal("USERR1", 0),
    headerReal("USERR2", 0),
    headerReal("USERR3", 0),
    headerReal("USERR4", 0),
    headerReal("USERR5", 0),
    headerSwitch("VISRETAIN", 1),
    headerShort("WORLDVIEW", 1, 0, 2),
    headerShort("XCLIPFRAME", 2, 0, 2, kR2004, 280),
    headerSwitch("XEDIT", 1, kR2000, 290),
});

/// The present settings of dimensions, in the header too.
constexpr auto kOfDimensions = std::to_array<Variable>({
    headerShort("DIMADEC", 0, -1, 8, kR2000),
    headerSwitch("DIMALT", 0),
    headerShort("DIMALTD", 3, 0, 8),
    headerReal("DIMALTF", 0.03937007874),
    headerReal("DIMALTRND", 0, 0, kAny, kR2000),
    headerShort("DIMALTTD", 3, 0, 8, kR13),
    headerShort("DIMALTTZ", 0, 0, 15, kR13),
    headerShort("DIMALTU", 2, 1, 8, kR13),
    headerShort("DIMALTZ", 0, 0, 15, kR13),
    headerText("DIMAPOST", 1),
    headerShort("DIMARCSYM", 0, 0, 2, kR2007),
    headerSwitch("DIMASO", 1),
    headerShort("DIMASSOC", 2, 0, 2, kR2004, 280),
    headerReal("DIMASZ", 2.5, 0),
    headerShort("DIMATFIT", 3, 0, 3, kR2000),
    headerShort("DIMAUNIT", 0, 0, 4, kR13),
    headerShort("DIMAZIN", 0, 0, 3, kR2000),
    headerText("DIMBLK", 1),
    headerText("DIMBLK1", 1),
    headerText("DIMBLK2", 1),
    headerReal("DIMCEN", 2.5),
    headerShort("DIMCLRD", 0, 0, kColors),
    headerShort("DIMCLRE", 0, 0, kColors),
    headerShort("DIMCLRT", 0, 0, kColors),
    headerShort("DIMDEC", 2, 0, 8, kR13),
    headerReal("DIMDLE", 0, 0),
    headerReal("DIMDLI", 3.75, 0),
    with(Rule::Character, headerText("DIMDSEP", 70, u",", kR2000)),
    headerReal("DIMEXE", 1.25, 0),
    headerReal("DIMEXO", 0.625, 0),
    headerShort("DIMFRAC", 0, 0, 2, kR2000),
    headerReal("DIMFXL", 1, 0, kAny, kR2007),
    headerSwitch("DIMFXLON", 0, kR2007),
    headerReal("DIMGAP", 0.625),
    headerReal("DIMJOGANG", 0.785398163397, 0.0872664625997, 1.570796326795, kR2007),
    headerShort("DIMJUST", 0, 0, 4, kR13),
    headerText("DIMLDRBLK", 1, {}, kR2000),
    headerReal("DIMLFAC", 1),
    headerSwitch("DIMLIM", 0),
    with(Rule::LineType, headerText("DIMLTEX1", 6, {}, kR2007)),
    with(Rule::LineType, headerText("DIMLTEX2", 6, {}, kR2007)),
    with(Rule::LineType, headerText("DIMLTYPE", 6, {}, kR2007)),
    headerShort("DIMLUNIT", 2, 1, 6, kR2000),
    with(Rule::LineWeight, headerShort("DIMLWD", -2, -3, 211, kR2000)),
    with(Rule::LineWeight, headerShort("DIMLWE", -2, -3, 211, kR2000)),
    headerText("DIMPOST", 1),
    headerReal("DIMRND", 0, 0),
    headerSwitch("DIMSAH", 0),
    headerReal("DIMSCALE", 1, 0),
    headerSwitch("DIMSD1", 0, kR13),
    headerSwitch("DIMSD2", 0, kR13),
    headerSwitch("DIMSE1", 0),
    headerSwitch("DIMSE2", 0),
    headerSwitch("DIMSHO", 1),
    headerSwitch("DIMSOXD", 0),
    fixed(headerText("DIMSTYLE", 2, u"Standard")),
    headerShort("DIMTAD", 1, 0, 4),
    headerShort("DIMTDEC", 2, 0, 8, kR13),
    headerReal("DIMTFAC", 1, kAboveZero),
    headerShort("DIMTFILL", 0, 0, 2, kR2007),
    headerShort("DIMTFILLCLR", 0, 0, kColors, kR2007),
    headerSwitch("DIMTIH", 0),
    headerSwitch("DIMTIX", 0),
    headerReal("DIMTM", 0),
    headerShort("DIMTMOVE", 0, 0, 2, kR2000),
    headerSwitch("DIMTOFL", 1),
    headerSwitch("DIMTOH", 0),
    headerSwitch("DIMTOL", 0),
    headerShort("DIMTOLJ", 0, 0, 2, kR13),
    headerReal("DIMTP", 0),
    headerReal("DIMTSZ", 0, 0),
    headerReal("DIMTVP", 0),
    with(Rule::TextStyle, headerText("DIMTXSTY", 7, u"Standard", kR13)),
    headerReal("DIMTXT", 2.5, kAboveZero),
    headerSwitch("DIMTXTDIRECTION", 0, 1024),
    headerShort("DIMTZIN", 8, 0, 15, kR13),
    headerSwitch("DIMUPT", 0, kR13),
    headerShort("DIMZIN", 0, 0, 15),
});

/// Of the active view: its picture is worked out, the rest stands in its record.
constexpr auto kOfView = std::to_array<Variable>({
    computed("BACKZ", Form::Real),
    computed("FRONTZ", Form::Real),
    number("GRIDMODE", Form::Short, Kept::View, 0, 0, 1, 76),
    point("GRIDUNIT", Form::Point2, Kept::View, 15, 10.0, 10.0),
    computed("LENSLENGTH", Form::Real),
    number("SNAPANG", Form::Real, Kept::View, 0, -kAny, kAny, 50),
    point("SNAPBASE", Form::Point2, Kept::View, 13),
    number("SNAPISOPAIR", Form::Short, Kept::View, 0, 0, 2, 78),
    number("SNAPMODE", Form::Short, Kept::View, 0, 0, 1, 75),
    number("SNAPSTYL", Form::Short, Kept::View, 0, 0, 1, 77),
    positive(point("SNAPUNIT", Form::Point2, Kept::View, 14, 10.0, 10.0)),
    computed("TARGET", Form::Point3),
    state("UCSFOLLOW", Form::Short, 0, 1),
    number("UCSICON", Form::Short, Kept::View, 3, 0, 3, 74),
    computed("VIEWCTR", Form::Point3),
    computed("VIEWDIR", Form::Point3),
    computed("VIEWMODE", Form::Short),
    computed("VIEWSIZE", Form::Real),
    computed("VIEWTWIST", Form::Real),
    computed("VSMAX", Form::Point3),
    computed("VSMIN", Form::Point3),
});

/// Not in the file, and gone with the drawing; but for the space that is worked in.
constexpr auto kBesideDrawing = std::to_array<Variable>({
    fixed(number("AREA", Form::Real, Kept::Drawing, 0, 0, kAny)),
    number("CIRCLERAD", Form::Real, Kept::Drawing, 0, 0, kAny),
    state("CTAB", Form::Text, 0, kNameLength),
    state("CVPORT", Form::Short, 1, kLongest),
    fixed(number("DISTANCE", Form::Real, Kept::Drawing, 0, 0, kAny)),
    number("FACETRES", Form::Real, Kept::Drawing, 0.5, 0.01, 10),
    text("INSNAME", Kept::Drawing),
    number("ISOLINES", Form::Short, Kept::Drawing, 4, 0, 2047),
    fixed(number("LASTANGLE", Form::Real, Kept::Drawing, 0, -kAny, kAny)),
    state("LASTPOINT", Form::Point3),
    fixed(number("PERIMETER", Form::Real, Kept::Drawing, 0, 0, kAny)),
    number("POLYSIDES", Form::Short, Kept::Drawing, 4, 3, 1024),
    text("SHPNAME", Kept::Drawing),
    state("TILEMODE", Form::Short, 0, 1),
    number("UCSAXISANG", Form::Short, Kept::Drawing, 90, 5, 180),
    text("USERS1", Kept::Drawing, {}, 460),
    text("USERS2", Kept::Drawing, {}, 460),
    text("USERS3", Kept::Drawing, {}, 460),
    text("USERS4", Kept::Drawing, {}, 460),
    text("USERS5", Kept::Drawing, {}, 460),
});

constexpr auto kOfSession = std::to_array<Variable>({
    fixed(text("ACADVER", Kept::Session, u"21.0")),
    sessionShort("AFLAGS", 0, 0, 31),
    sessionShort("APBOX", 0, 0, 1),
    sessionShort("APERTURE", 10, 1, 50),
    sessionShort("ATTDIA", 0, 0, 1),
    sessionShort("ATTREQ", 1, 0, 1),
    sessionShort("AUDITCTL", 0, 0, 1),
    sessionShort("AUTOSNAP", 63, 0, 63),
    sessionShort("BACKGROUNDPLOT", 2, 0, 7),
    sessionShort("BINDTYPE", 0, 0, 1),
    sessionShort("BLIPMODE", 0, 0, 1),
    sessionShort("CMDDIA", 1, 0, 1),
    sessionShort("CMDECHO", 1, 0, 1),
    sessionShort("COORDS", 1, 0, 2),
    fixed(text("CPROFILE", Kept::Session)),
    sessionShort("CURSORSIZE", 5, 1, 100),
    sessionShort("DELOBJ", 1, -3, 3),
    sessionShort("DEMANDLOAD", 3, 0, 3),
    number("DONUTID", Form::Real, Kept::Session, 0.5, 0, kAny),
    number("DONUTOD", Form::Real, Kept::Session, 1, kAboveZero, kAny),
    sessionShort("DRAGMODE", 2, 0, 2),
    sessionShort("DRAGP1", 10, 0, kLongest),
    sessionShort("DRAGP2", 25, 0, kLongest),
    sessionShort("DWGCHECK", 1, 0, 3),
    sessionShort("DYNMODE", 0, -3, 3),
    sessionShort("EDGEMODE", 0, 0, 1),
    sessionShort("ERRNO", 0, kShortest, kLongest),
    sessionShort("EXPERT", 0, 0, 5),
    sessionShort("EXPLMODE", 1, 0, 1),
    sessionShort("FILEDIA", 1, 0, 1),
    text("FONTALT", Kept::Session, u"simplex.shx"),
    text("FONTMAP", Kept::Session),
    sessionShort("GRIPBLOCK", 0, 0, 1),
    sessionShort("GRIPS", 2, 0, 2),
    sessionShort("GRIPSIZE", 5, 1, 255),
    sessionShort("HIGHLIGHT", 1, 0, 1),
    number("HPANG", Form::Real, Kept::Session, 0, -kAny, kAny),
    sessionShort("HPASSOC", 1, 0, 1),
    sessionShort("HPDOUBLE", 0, 0, 1),
    sessionShort("HPDRAWORDER", 3, 0, 4),
    number("HPGAPTOL", Form::Real, Kept::Session, 0, 0, 5000),
    text("HPNAME", Kept::Session, u"ANSI31", 34),
    number("HPSCALE", Form::Real, Kept::Session, 1, kAboveZero, kAny),
    number("HPSPACE", Form::Real, Kept::Session, 1, kAboveZero, kAny),
    sessionShort("INSUNITSDEFSOURCE", 4, 0, 24),
    sessionShort("INSUNITSDEFTARGET", 4, 0, 24),
    sessionShort("ISAVEBAK", 1, 0, 1),
    sessionShort("ISAVEPERCENT", 50, 0, 100),
    sessionShort("LISPINIT", 1, 0, 1),
    fixed(text("LOCALE", Kept::Session, u"ENU")),
    fixed(sessionShort("LONGFNAME", 1, 0, 1)),
    sessionShort("LWDEFAULT", 25, 0, 211),
    sessionShort("LWUNITS", 1, 0, 1),
    sessionShort("MAXSORT", 1000, 0, kLongest),
    sessionShort("MBUTTONPAN", 1, 0, 1),
    sessionShort("MENUCTL", 1, 0, 1),
    sessionShort("MENUECHO", 0, 0, 15),
    fixed(text("MENUNAME", Kept::Session)),
    text("MODEMACRO", Kept::Session),
    text("MTEXTED", Kept::Session, u"Internal"),
    sessionShort("NOMUTT", 0, 0, 1),
    number("OFFSETDIST", Form::Real, Kept::Session, 1, -kAny, kAny),
    sessionShort("OFFSETGAPTYPE", 0, 0, 2),
    sessionShort("OSMODE", 0, 0, 32767),
    sessionShort("OSNAPCOORD", 2, 0, 2),
    sessionShort("PAPERUPDATE", 0, 0, 1),
    sessionShort("PEDITACCEPT", 0, 0, 1),
    sessionShort("PICKADD", 1, 0, 2),
    sessionShort("PICKAUTO", 1, 0, 5),
    sessionShort("PICKBOX", 3, 0, 50),
    sessionShort("PICKDRAG", 0, 0, 2),
    sessionShort("PICKFIRST", 1, 0, 1),
    sessionShort("PICKSTYLE", 1, 0, 3),
    sessionShort("PLINETYPE", 2, 0, 2),
    number("POLARANG", Form::Real, Kept::Session, 1.570796326795, 0, kAny),
    number("POLARDIST", Form::Real, Kept::Session, 0, 0, kAny),
    sessionShort("POLARMODE", 0, 0, 15),
    fixed(sessionShort("POPUPS", 1, 0, 1)),
    sessionShort("PROXYNOTICE", 0, 0, 1),
    sessionShort("PROXYSHOW", 1, 0, 2),
    sessionShort("QAFLAGS", 0, 0, kLongest),
    sessionShort("RASTERPREVIEW", 1, 0, 1),
    sessionShort("REMEMBERFOLDERS", 1, 0, 1),
    fixed(text("SAVEFILE", Kept::Session)),
    text("SAVEFILEPATH", Kept::Session),
    sessionShort("SAVETIME", 10, 0, 600),
    fixed(sessionShort("SCREENBOXES", 0, 0, kLongest)),
    fixed(sessionShort("SCREENMODE", 3, 0, 3)),
    sessionShort("SDI", 0, 0, 3),
    sessionShort("SECURELOAD", 0, 0, 2),
    sessionShort("SHORTCUTMENU", 11, 0, 31),
    sessionShort("SNAPTYPE", 0, 0, 1),
    fixed(text("SYSCODEPAGE", Kept::Session, u"UTF-8")),
    sessionShort("TEXTEVAL", 0, 0, 1),
    sessionShort("TEXTFILL", 1, 0, 1),
    sessionShort("TEXTQLTY", 50, 0, 100),
    sessionShort("TOOLTIPS", 1, 0, 1),
    sessionShort("TRACKPATH", 0, 0, 3),
    number("TREEMAX", Form::Long, Kept::Session, 10000000, 0, 2147483647),
    sessionShort("TRIMMODE", 1, 0, 1),
    text("TRUSTEDPATHS", Kept::Session),
    sessionShort("UCSDETECT", 0, 0, 1),
    fixed(text("_VERNUM", Kept::Session, u"21.0.0.0")),
    sessionShort("XLOADCTL", 2, 0, 2),
    sessionShort("XREFCTL", 0, 0, 1),
    sessionShort("XREFNOTIFY", 2, 0, 2),
    sessionShort("ZOOMFACTOR", 60, 3, 100),
    sessionShort("ZOOMWHEEL", 0, 0, 1),
});

constexpr auto kWorkedOut = std::to_array<Variable>({
    computed("ACADPREFIX", Form::Text),   computed("CDATE", Form::Real),
    computed("CMDACTIVE", Form::Short),   computed("CMDNAMES", Form::Text),
    computed("DATE", Form::Real),         computed("DBMOD", Form::Short),
    computed("DWGNAME", Form::Text),      computed("DWGPREFIX", Form::Text),
    computed("DWGTITLED", Form::Short),   computed("EXTMAX", Form::Point3),
    computed("EXTMIN", Form::Point3),     computed("LASTPROMPT", Form::Text),
    computed("LOGINNAME", Form::Text),    computed("MILLISECS", Form::Long),
    computed("PLATFORM", Form::Text),     computed("SAVENAME", Form::Text),
    computed("SCREENSIZE", Form::Point2), computed("TEMPPREFIX", Form::Text),
    computed("UCSNAME", Form::Text),      computed("UCSORG", Form::Point3),
    computed("UCSXDIR", Form::Point3),    computed("UCSYDIR", Form::Point3),
    computed("UNDOCTL", Form::Short),     computed("UNDOMARKS", Form::Short),
    computed("WORLDUCS", Form::Short),
});

template <class... Groups>
constexpr auto sorted(const Groups&... groups) {
    std::array<Variable, (std::tuple_size_v<Groups> + ...)> rows{};
    auto at = rows.begin();
    ((at = std::copy(groups.begin(), groups.end(), at)), ...);
    std::sort(rows.begin(), rows.end(),
              [](const Variable& a, const Variable& b) { return a.name < b.name; });
    return rows;
}

constexpr auto kRows =
    sorted(kOfDrawing, kOfDimensions, kOfView, kBesideDrawing, kOfSession, kWorkedOut);

static_assert(std::adjacent_find(kRows.begin(), kRows.end(),
                                 [](const Variable& a, const Variable& b) {
                                     return a.name == b.name;
                                 }) == kRows.end(),
              "a variable has two rows");

}  // namespace

std::span<const Variable> systemVariables() {
    return kRows;
}

const Variable* findVariable(std::string_view name) {
    const auto found = std::lower_bound(
        kRows.begin(), kRows.end(), name,
        [](const Variable& row, std::string_view wanted) { return row.name < wanted; });
    return found == kRows.end() || found->name != name ? nullptr : &*found;
}

}  // namespace host
