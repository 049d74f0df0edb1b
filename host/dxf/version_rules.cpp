/// The tables of versions.
#include "dxf/version_rules.h"

#include <algorithm>
#include <iterator>

#include "dxf/versions.h"

namespace host::dxf {
namespace {

struct Since {
    std::string_view name;
    std::string_view version;
};

constexpr Since kVariables[] = {
    {"$3DDWFPREC", kR2007},
    {"$CAMERADISPLAY", kR2007},
    {"$CAMERAHEIGHT", kR2007},
    {"$CMATERIAL", kR2007},
    {"$CSHADOW", kR2007},
    {"$DGNFRAME", kR2007},
    {"$DIMARCSYM", kR2007},
    {"$DIMASSOC", kR2004},
    {"$DIMFXL", kR2007},
    {"$DIMFXLON", kR2007},
    {"$DIMJOGANG", kR2007},
    {"$DIMLTEX1", kR2007},
    {"$DIMLTEX2", kR2007},
    {"$DIMLTYPE", kR2007},
    {"$DIMTFILL", kR2007},
    {"$DIMTFILLCLR", kR2007},
    {"$DIMTXTDIRECTION", kR2010},
    {"$DWFFRAME", kR2007},
    {"$HALOGAP", kR2004},
    {"$HIDETEXT", kR2004},
    {"$INDEXCTL", kR2004},
    {"$INTERFERECOLOR", kR2007},
    {"$INTERFEREOBJVS", kR2007},
    {"$INTERFEREVPVS", kR2007},
    {"$INTERSECTIONCOLOR", kR2004},
    {"$INTERSECTIONDISPLAY", kR2004},
    {"$LASTSAVEDBY", kR2004},
    {"$LATITUDE", kR2007},
    {"$LENSLENGTH", kR2007},
    {"$LIGHTGLYPHDISPLAY", kR2007},
    {"$LOFTANG1", kR2007},
    {"$LOFTANG2", kR2007},
    {"$LOFTMAG1", kR2007},
    {"$LOFTMAG2", kR2007},
    {"$LOFTNORMALS", kR2007},
    {"$LOFTPARAM", kR2007},
    {"$LONGITUDE", kR2007},
    {"$NORTHDIRECTION", kR2007},
    {"$OBSCOLOR", kR2004},
    {"$OBSLTYPE", kR2004},
    {"$PROJECTNAME", kR2004},
    {"$PSOLHEIGHT", kR2007},
    {"$PSOLWIDTH", kR2007},
    {"$REALWORLDSCALE", kR2007},
    {"$REQUIREDVERSIONS", kR2013},
    {"$SHADOWPLANELOCATION", kR2007},
    {"$SHOWHIST", kR2007},
    {"$SOLIDHIST", kR2007},
    {"$SORTENTS", kR2004},
    {"$STEPSIZE", kR2007},
    {"$STEPSPERSEC", kR2007},
    {"$TILEMODELIGHTSYNCH", kR2007},
    {"$TIMEZONE", kR2007},
    {"$XCLIPFRAME", kR2004},
};

constexpr Since kTypes[] = {
    {"ACAD_EVALUATION_GRAPH", kR2004},
    {"ACAD_TABLE", kR2004},
    {"ACDBASSOC2DCONSTRAINTGROUP", kR2010},
    {"ACDBASSOCACTION", kR2010},
    {"ACDBASSOCDEPENDENCY", kR2010},
    {"ACDBASSOCGEOMDEPENDENCY", kR2010},
    {"ACDBASSOCNETWORK", kR2010},
    {"ACDBASSOCPERSSUBENTMANAGER", kR2010},
    {"ACDBASSOCVALUEDEPENDENCY", kR2010},
    {"ACDBASSOCVARIABLE", kR2010},
    {"ACDBDATATABLE", kR2004},
    {"ACDBDETAILVIEWSTYLE", kR2013},
    {"ACDBPERSSUBENTMANAGER", kR2010},
    {"ACDBPOINTCLOUDEX", kR2013},
    {"ACDBSECTIONVIEWSTYLE", kR2013},
    {"ACDB_ALDIMOBJECTCONTEXTDATA_CLASS", kR2007},
    {"ACDB_BLKREFOBJECTCONTEXTDATA_CLASS", kR2007},
    {"ACDB_BLOCKREPRESENTATION_DATA", kR2004},
    {"ACDB_DYNAMICBLOCKPURGEPREVENTER_VERSION", kR2004},
    {"ACDB_HATCHSCALECONTEXTDATA_CLASS", kR2007},
    {"ACDB_HATCHVIEWCONTEXTDATA_CLASS", kR2007},
    {"ACDB_LEADEROBJECTCONTEXTDATA_CLASS", kR2007},
    {"ACDB_MLEADEROBJECTCONTEXTDATA_CLASS", kR2007},
    {"ACDB_MTEXTATTRIBUTEOBJECTCONTEXTDATA_CLASS", kR2007},
    {"ACDB_MTEXTOBJECTCONTEXTDATA_CLASS", kR2007},
    {"ACDB_TEXTOBJECTCONTEXTDATA_CLASS", kR2007},
    {"ACMDATAENTRYBLOCK", kR2010},
    {"ACSH_BOX_CLASS", kR2007},
    {"ACSH_EXTRUSION_CLASS", kR2007},
    {"ACSH_HISTORY_CLASS", kR2007},
    {"ARC_DIMENSION", kR2004},
    {"BREAKDATA", kR2007},
    {"BREAKPOINTREF", kR2007},
    {"CAMERA", kR2007},
    {"CELLSTYLEMAP", kR2007},
    {"COORDINATION MODEL", kR2013},
    {"DATALINK", kR2007},
    {"DBCOLOR", kR2004},
    {"DGNDEFINITION", kR2007},
    {"DGNUNDERLAY", kR2007},
    {"DWFDEFINITION", kR2007},
    {"DWFUNDERLAY", kR2007},
    {"EXTRUDEDSURFACE", kR2007},
    {"FIELD", kR2004},
    {"FIELDLIST", kR2004},
    {"GEODATA", kR2010},
    {"GEOMAPIMAGE", kR2013},
    {"GEOPOSITIONMARKER", kR2013},
    {"HELIX", kR2007},
    {"LARGE_RADIAL_DIMENSION", kR2004},
    {"LIGHT", kR2007},
    {"LIGHTLIST", kR2007},
    {"LOFTEDSURFACE", kR2007},
    {"MATERIAL", kR2007},
    {"MENTALRAYRENDERSETTINGS", kR2007},
    {"MESH", kR2010},
    {"MLEADER", kR2007},
    {"MLEADERSTYLE", kR2007},
    {"MOTIONPATH", kR2007},
    {"MPOLYGON", kR2004},
    {"MULTILEADER", kR2007},
    {"NURBSURFACE", kR2010},
    {"PDFDEFINITION", kR2010},
    {"PDFUNDERLAY", kR2010},
    {"PLANESURFACE", kR2007},
    {"POINTCLOUD", kR2010},
    {"POINTCLOUDDEF", kR2010},
    {"POINTCLOUDDEFEX", kR2013},
    {"POINTPATH", kR2007},
    {"POSITIONMARKER", kR2013},
    {"RAPIDRTRENDERSETTINGS", kR2013},
    {"RENDERENVIRONMENT", kR2007},
    {"RENDERGLOBAL", kR2007},
    {"REVOLVEDSURFACE", kR2007},
    {"SCALE", kR2004},
    {"SECTIONOBJECT", kR2007},
    {"SECTIONSETTINGS", kR2007},
    {"SUN", kR2007},
    {"SUNSTUDY", kR2007},
    {"SURFACE", kR2007},
    {"SWEPTSURFACE", kR2007},
    {"TABLECONTENT", kR2007},
    {"TABLEFORMAT", kR2007},
    {"TABLEGEOMETRY", kR2007},
    {"TABLESTYLE", kR2004},
    {"VISUALSTYLE", kR2007},
};

/// Types that R2000 has.
constexpr std::string_view kOldTypes[] = {
    "3DFACE",
    "3DSOLID",
    "ACAD_PROXY_ENTITY",
    "ACAD_PROXY_OBJECT",
    "ACDBDICTIONARYWDFLT",
    "ACDBPLACEHOLDER",
    "ARC",
    "ARCALIGNEDTEXT",
    "ATTDEF",
    "ATTRIB",
    "BODY",
    "CIRCLE",
    "DICTIONARY",
    "DICTIONARYVAR",
    "DIMASSOC",
    "DIMENSION",
    "ELLIPSE",
    "GROUP",
    "HATCH",
    "IDBUFFER",
    "IMAGE",
    "IMAGEDEF",
    "IMAGEDEF_REACTOR",
    "INSERT",
    "LAYER_FILTER",
    "LAYER_INDEX",
    "LAYOUT",
    "LEADER",
    "LINE",
    "LWPOLYLINE",
    "MINSERT",
    "MLINE",
    "MLINESTYLE",
    "MTEXT",
    "OBJECT_PTR",
    "OLE2FRAME",
    "OLEFRAME",
    "PLOTSETTINGS",
    "POINT",
    "POLYLINE",
    "RASTERVARIABLES",
    "RAY",
    "REGION",
    "RTEXT",
    "SEQEND",
    "SHAPE",
    "SOLID",
    "SORTENTSTABLE",
    "SPATIAL_FILTER",
    "SPATIAL_INDEX",
    "SPLINE",
    "TEXT",
    "TOLERANCE",
    "TRACE",
    "VBA_PROJECT",
    "VERTEX",
    "VIEWPORT",
    "WIPEOUT",
    "WIPEOUTVARIABLES",
    "XLINE",
    "XRECORD",
};

template <size_t kCount>
std::string_view versionIn(const Since (&table)[kCount], std::string_view name) {
    const Since* end = table + kCount;
    const Since* found = std::lower_bound(
        table, end, name, [](const Since& row, std::string_view text) { return row.name < text; });
    return found != end && found->name == name ? found->version : std::string_view();
}

using Which = GroupRule::Which;

const std::vector<GroupRule>& groupRules() {
    // Of lights and shadows of a view; VPORT and VIEWPORT have them alike.
    static const std::vector<int> kViewLights = {60,  61,  63,  141, 142, 282, 292,
                                                 332, 333, 335, 348, 361, 421, 431};
    // Contents of an attribute with several lines.
    static const std::vector<int> kLines = {71, 72, 11, 21, 31};
    static const std::vector<GroupRule> rules = {
        {kR2004, "", "AcDbEntity", Which::All, Loss::Colour, {420, 430}},
        {kR2004, "", "AcDbEntity", Which::All, Loss::Transparency, {440}},
        {kR2007, "", "AcDbEntity", Which::All, Loss::Material, {347, 348}},
        {kR2007, "", "AcDbEntity", Which::All, Loss::None, {284}},
        {kR2004, "LAYER", "AcDbLayerTableRecord", Which::All, Loss::Colour, {420, 430}},
        {kR2007, "LAYER", "AcDbLayerTableRecord", Which::All, Loss::None, {347}},
        {kR2013, "LAYER", "AcDbLayerTableRecord", Which::All, Loss::None, {348}},
        {kR2007, "BLOCK_RECORD", "AcDbBlockTableRecord", Which::All, Loss::None, {70, 280, 281}},
        {kR2007,
         "DIMSTYLE",
         "AcDbDimStyleTableRecord",
         Which::All,
         Loss::None,
         {49, 50, 69, 90, 290, 345, 346, 347}},
        {kR2007, "DIMSTYLE", "AcDbDimStyleTableRecord", Which::Repeated, Loss::None, {70}},
        {kR2010, "DIMSTYLE", "AcDbDimStyleTableRecord", Which::All, Loss::None, {294, 295}},
        {kR2007, "VPORT", "AcDbViewportTableRecord", Which::All, Loss::None, kViewLights},
        {kR2007, "VPORT", "AcDbViewportTableRecord", Which::All, Loss::None, {1, 170}},
        {kR2007, "VIEW", "AcDbViewTableRecord", Which::All, Loss::None, {73, 332, 334, 348}},
        {kR2010, "VIEW", "AcDbViewTableRecord", Which::All, Loss::None, {361}},
        {kR2004, "VIEWPORT", "AcDbViewport", Which::All, Loss::None, {170}},
        {kR2007, "VIEWPORT", "AcDbViewport", Which::All, Loss::None, kViewLights},
        {kR2007, "VIEWPORT", "AcDbViewport", Which::All, Loss::None, {91, 343, 344}},
        {kR2004, "LAYOUT", "AcDbPlotSettings", Which::All, Loss::None, {76, 77, 78}},
        {kR2007, "LAYOUT", "AcDbPlotSettings", Which::All, Loss::None, {333}},
        {kR2004, "PLOTSETTINGS", "AcDbPlotSettings", Which::All, Loss::None, {76, 77, 78}},
        {kR2007, "PLOTSETTINGS", "AcDbPlotSettings", Which::All, Loss::None, {333}},
        {kR2004, "MTEXT", "AcDbMText", Which::All, Loss::Background, {90, 63, 45, 421, 431, 441}},
        {kR2007, "MTEXT", "AcDbMText", Which::All, Loss::None, {46}},
        {kR2007, "ATTRIB", "AcDbAttribute", Which::All, Loss::None, {280}},
        {kR2010, "ATTRIB", "AcDbAttribute", Which::BehindMarker, Loss::None, {280}},
        {kR2018, "ATTRIB", "AcDbAttribute", Which::All, Loss::None, kLines},
        {kR2007, "ATTDEF", "AcDbAttributeDefinition", Which::All, Loss::None, {280}},
        {kR2010, "ATTDEF", "AcDbAttributeDefinition", Which::BehindMarker, Loss::None, {280}},
        {kR2018, "ATTDEF", "AcDbAttributeDefinition", Which::All, Loss::None, kLines},
        {kR2007, "DIMENSION", "AcDbDimension", Which::All, Loss::None, {73, 74, 75}},
        {kR2010, "DIMENSION", "AcDbDimension", Which::All, Loss::None, {280}},
        {kR2010, "ARC_DIMENSION", "AcDbDimension", Which::All, Loss::None, {280}},
        {kR2004,
         "HATCH",
         "AcDbHatch",
         Which::All,
         Loss::Gradient,
         {450, 451, 452, 453, 460, 461, 462, 463, 63, 421, 470}},
        {kR2010, "IMAGE", "AcDbRasterImage", Which::All, Loss::None, {290}},
        {kR2010, "WIPEOUT", "AcDbWipeout", Which::All, Loss::None, {290}},
        {kR2010, "LWPOLYLINE", "AcDbPolyline", Which::All, Loss::None, {91}},
        {kR2010, "VERTEX", "AcDbVertex", Which::All, Loss::None, {91}},
        {kR2004, "MLINESTYLE", "AcDbMlineStyle", Which::All, Loss::Colour, {420, 430}},
        {kR2007, "3DSOLID", "AcDb3dSolid", Which::All, Loss::None, {100, 350}},
        {kR2010, "MULTILEADER", "AcDbMLeader", Which::All, Loss::None, {270, 271, 272, 273}},
        {kR2010,
         "MLEADERSTYLE",
         "AcDbMLeaderStyle",
         Which::All,
         Loss::None,
         {179, 271, 272, 273, 298}},
        {kR2010, "ACAD_TABLE", "AcDbTable", Which::All, Loss::None, {280}},
    };
    return rules;
}

}  // namespace

std::string_view versionOfVariable(std::string_view name) {
    return versionIn(kVariables, name);
}

std::string_view versionOfType(std::string_view type) {
    return versionIn(kTypes, type);
}

std::string_view versionOfForm(std::string_view type) {
    return type == "VISUALSTYLE" ? kR2010 : std::string_view();
}

bool isKnownType(std::string_view type) {
    return std::binary_search(std::begin(kOldTypes), std::end(kOldTypes), type) ||
           !versionOfType(type).empty();
}

const TypeRules& VersionRules::of(std::string_view type) {
    const auto [found, made] = types_.try_emplace(std::string(type));
    TypeRules& rules = found->second;
    if (!made) return rules;
    for (const GroupRule& rule : groupRules()) {
        if (rule.version <= target_ || (!rule.type.empty() && rule.type != type)) continue;
        rules.rules.push_back(&rule);
        for (const int code : rule.codes)
            rules.codes.set(static_cast<size_t>(code));
    }
    return rules;
}

}  // namespace host::dxf
