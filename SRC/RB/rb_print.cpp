/// Printing nodes, on the command line and to the trace output.
#include "kz/kz_rb.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/RB";
/// Size of the static buffer [characters].
constexpr size_t kBufferSize = 512;
constexpr size_t kLabelSize = 24;

/// Label of the codes from first to last, a format that takes the code.
struct Label {
    int first;
    int last;
    const kz_Char* format;
};

constexpr Label kLabels[] = {
    {-3, -3, KZ_T("Xdata marker(-3)")},
    {-2, -1, KZ_T("EntName(%i)")},
    {0, 0, KZ_T("Entity(0)")},
    {1, 1, KZ_T("Text(1)")},
    {2, 2, KZ_T("Block(2)")},
    {5, 5, KZ_T("Handle(5)")},
    {8, 8, KZ_T("Layer(8)")},
    {10, 13, KZ_T("Point(%i)")},
    {40, 45, KZ_T("Real(%i)")},
    {50, 50, KZ_T("Angle(%i)")},
    {66, 66, KZ_T("Flag(%i)")},
    {70, 75, KZ_T("Flag(%i)")},
    {210, 210, KZ_T("Extrus(210)")},
    {1000, 1000, KZ_T("Xstring(1000)")},
    {1001, 1001, KZ_T("Xapp(1001)")},
    {1002, 1002, KZ_T("Xcontrol(1002)")},
    {1003, 1003, KZ_T("Xlayer(1003)")},
    {1004, 1004, KZ_T("Xbinary(1004)")},
    {1005, 1005, KZ_T("Xhandle(1005)")},
    {1010, 1010, KZ_T("X3dPoint(1010)")},
    {1011, 1011, KZ_T("XworldPt(1011)")},
    {1012, 1012, KZ_T("XworldDist(1012)")},
    {1013, 1013, KZ_T("XworldVect(1013)")},
    {1040, 1040, KZ_T("Xreal(1040)")},
    {1041, 1041, KZ_T("Xdistance(1041)")},
    {1042, 1042, KZ_T("Xscale(1042)")},
    {1070, 1070, KZ_T("Xint(1070)")},
    {1071, 1071, KZ_T("Xlong(1071)")},
    {RTNONE, RTNONE, KZ_T("RTNONE")},
    {RTREAL, RTREAL, KZ_T("RTREAL")},
    {RTPOINT, RTPOINT, KZ_T("RTPOINT")},
    {RTSHORT, RTSHORT, KZ_T("RTSHORT")},
    {RTANG, RTANG, KZ_T("RTANG")},
    {RTSTR, RTSTR, KZ_T("RTSTR")},
    {RTENAME, RTENAME, KZ_T("RTENAME")},
    {RTPICKS, RTPICKS, KZ_T("RTPICKS")},
    {RTORINT, RTORINT, KZ_T("RTORINT")},
    {RT3DPOINT, RT3DPOINT, KZ_T("RT3DPOINT")},
    {RTLONG, RTLONG, KZ_T("RTLONG")},
    {RTVOID, RTVOID, KZ_T("RTVOID")},
    {RTLB, RTLB, KZ_T("RTLB")},
    {RTLE, RTLE, KZ_T("RTLE")},
    {RTDOTE, RTDOTE, KZ_T("RTDOTE")},
    {RTNIL, RTNIL, KZ_T("RTNIL")},
    {RTDXF0, RTDXF0, KZ_T("RTDXF0")},
    {RTT, RTT, KZ_T("RTT")},
};

void formatLabel(kz_Char* out, int code) {
    const kz_Char* format = KZ_T("%i");
    for (const Label& label : kLabels) {
        if (code >= label.first && code <= label.last) format = label.format;
    }
    kz_Str_format(out, kLabelSize, format, code);
}

/// Formats "label  value" with the final character.
template <class... Args>
void formatValue(kz_Char* out, const resbuf* node, const kz_Char* format, Args... args) {
    kz_Char label[kLabelSize];
    formatLabel(label, node->restype);
    kz_Str_format(out, kBufferSize, format, static_cast<const kz_Char*>(label), args...);
}

/// Nodes without a value print as a word of their own.
void formatBare(kz_Char* out, int code, kz_Char last) {
    switch (code) {
        case RTVOID:
            kz_Str_format(out, kBufferSize, KZ_T("Void symbol%c"), last);
            break;
        case RTLB:
            kz_Str_format(out, kBufferSize, KZ_T("(%c"), last);
            break;
        case RTLE:
            kz_Str_format(out, kBufferSize, KZ_T(")%c"), last);
            break;
        case RTDOTE:
            kz_Str_format(out, kBufferSize, KZ_T(") dotted pair%c"), last);
            break;
        case RTNIL:
            kz_Str_format(out, kBufferSize, KZ_T("NIL symbol%c"), last);
            break;
        case RTT:
            kz_Str_format(out, kBufferSize, KZ_T("T symbol%c"), last);
            break;
        default:
            kz_Str_format(out, kBufferSize, KZ_T("%d  Unknown Type.%c"), code, last);
            break;
    }
}

void formatNode(kz_Char* out, const resbuf* node, kz_Char last) {
    const ads_u_val& value = node->resval;
    const auto first_word = static_cast<uint32_t>(value.rlname[0]);
    switch (kz_Rb_type(node->restype)) {
        case KZ_RB_STRING:
        case KZ_RB_HANDLE:
        case 1002:
            formatValue(out, node, KZ_T("%-20s  %s%c"), static_cast<const kz_Char*>(value.rstring),
                        last);
            break;
        case KZ_RB_SELSET:
            formatValue(out, node, KZ_T("%-20s  <Selection Set: %8lx>%c"), first_word, last);
            break;
        case KZ_RB_ENAME:
            formatValue(out, node, KZ_T("%-20s  <Entity Name: %8lx>%c"), first_word, last);
            break;
        case KZ_RB_POINT:
            formatValue(out, node, KZ_T("%-20s  %f,%f,%f%c"), value.rpoint[0], value.rpoint[1],
                        value.rpoint[2], last);
            break;
        case KZ_RB_REAL:
            formatValue(out, node, KZ_T("%-20s  %f%c"), value.rreal, last);
            break;
        case KZ_RB_LONG:
            formatValue(out, node, KZ_T("%-20s  %ld%c"), value.rlong, last);
            break;
        case KZ_RB_SHORT:
            formatValue(out, node, KZ_T("%-20s  %d%c"), value.rint, last);
            break;
        default:
            formatBare(out, node->restype, last);
            break;
    }
}

}  // namespace

const kz_Char* kz_Rb_printBuffer(const resbuf* node, int lineEnd) {
    static kz_Char buffer[kBufferSize];
    buffer[0] = 0;
    if (node != nullptr) formatNode(buffer, node, lineEnd != 0 ? KZ_T('\n') : KZ_T('\0'));
    return buffer;
}

void kz_Rb_printList(const resbuf* list) {
    for (; list != nullptr; list = list->rbnext) {
        acutPrintf(KZ_T("%s"), kz_Rb_printBuffer(list, 1));
    }
}

void kz_Rb_printListDiag(const resbuf* list, int16_t level, int32_t mask) {
    for (; list != nullptr && kz::traceSpeaks(level, mask); list = list->rbnext) {
        kz_Diag_putOutputMsg(kz_Rb_printBuffer(list, 0), kTraceSource, __LINE__);
    }
}
