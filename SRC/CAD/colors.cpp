/// Colours as texts.
#include "guards.h"
#include "kz/kz_cad_env.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/CAD";

/// Size of a buffer for a colour text [characters].
constexpr size_t kTextSize = 256;

constexpr int kByBlock = 0;
constexpr int kByLayer = 256;

struct StandardColor {
    const kz_Char* name;
    const kz_Char* number;
};
constexpr StandardColor kStandardColors[] = {
    {KZ_T("BYBLOCK"), KZ_T("0")}, {KZ_T("RED"), KZ_T("1")},       {KZ_T("YELLOW"), KZ_T("2")},
    {KZ_T("GREEN"), KZ_T("3")},   {KZ_T("CYAN"), KZ_T("4")},      {KZ_T("BLUE"), KZ_T("5")},
    {KZ_T("MAGENTA"), KZ_T("6")}, {KZ_T("WHITE"), KZ_T("7")},     {KZ_T("DKGRAY"), KZ_T("8")},
    {KZ_T("LTGRAY"), KZ_T("9")},  {KZ_T("BYLAYER"), KZ_T("256")},
};

int indexOf(const kz_Char* color) {
    if (color == nullptr) return kByBlock;
    kz_Char text[kTextSize] = KZ_T("0");
    if (kz_Str_cmpi(color, KZ_CAD_DEFAULT) == 0) {
        kz_AcCADEngine_getColor(text);
    } else {
        kz_Str_ncpy(text, color, kTextSize - 1);
    }
    if (kz_Str_cmpi(text, KZ_T("BYLAYER")) == 0) return kByLayer;
    if (kz_Str_cmpi(text, KZ_T("BYBLOCK")) == 0) return kByBlock;
    return kz::parseInteger(text);
}

}  // namespace

void kz_CAD_translateColor(kz_Char* out, const kz_Char* color) {
    if (out == nullptr || color == nullptr) return;
    const kz_Char* number = color;
    for (const StandardColor& row : kStandardColors) {
        if (kz_Str_cmpi(color, row.name) == 0) number = row.number;
    }
    if (number != out) kz_Str_ncpy(out, number, kTextSize - 1);
}

kz_StrList* kz_CAD_getStandardColors(int numbers) {
    kz::OwnedStrList list(kz_StrList_create());
    for (const StandardColor& row : kStandardColors) {
        if (kz_StrList_insEnd(list.get(), numbers != 0 ? row.number : row.name) != 1) {
            return nullptr;
        }
    }
    kz_StrList_start(list.get());
    return list.release();
}

int kz_AcCAD_xlatedColorToACADColorIndex(const kz_Char* color) {
    KZ_ASSERTION(color != nullptr);
    return indexOf(color);
}

uint16_t kz_AsAcDbColorIndex(const kz_Char* color) {
    return static_cast<uint16_t>(indexOf(color));
}
