/// The frame of the twins on objects and drawings.
#include "ACAD/cad_li/cad_call.h"

#include "checks.h"
#include "kz/kz_error.h"
#include "kz/kz_point_cnv.h"
#include "trace.h"

namespace kz {
namespace {

constexpr TwinFamily kFamily = {"SRC/ACAD/cad_li", kTraceCad};
/// General error "Invalid or missing parameter(s)".
constexpr int kInvalidParameters = 12;

}  // namespace

CadCall::CadCall(const kz_Char* name, const kz_Char* refusal) : CadCall(kFamily, name, refusal) {}

CadCall::CadCall(const TwinFamily& family, const kz_Char* name, const kz_Char* refusal)
    : TwinCall(family, name, nullptr), source_(family.source), refusal_(refusal) {}

CadCall::~CadCall() {
    if (readAll() || refusal_ == nullptr) return;
    kz_Error_submit(kz_ErrorGroupGeneral, kInvalidParameters, nullptr, nullptr);
    if (traceSpeaks(kTraceExit, kTraceCad)) {
        traceFormatted(source_, __LINE__, KZ_T("%s%s"), name(), refusal_);
    }
}

const int64_t* CadCall::drawingName() {
    read([this](resbuf** cursor) { return kz_Rb_getNextADSName(drawing_, cursor, nullptr, 0); });
    return drawing_;
}

kz_CADDwgId* CadCall::readDrawing(bool nil_allowed) {
    kz_CADDwgId* drawing = nullptr;
    const resbuf* node = rest();
    // A handle that nobody has reads as a null name, too.
    const bool handle = node != nullptr && kz_Rb_typeRb(node) == KZ_RB_STRING;
    read([&](resbuf** cursor) {
        ads_name name = {};
        if (kz_Rb_getNextADSName(name, cursor, nullptr, nil_allowed ? 1 : 0) != 1) return 0;
        drawing = kz_CADDwgId_fromADSName(name, 1);
        // A name that is no drawing must not turn into the working database.
        return drawing != nullptr || (nil_allowed && !handle && isNull(name)) ? 1 : 0;
    });
    return drawing;
}

kz_CADObjId* CadCall::object() {
    read([this](resbuf** cursor) {
        return kz_Rb_getNextADSName(object_.ename, cursor, nullptr, 0);
    });
    return &object_;
}

kz_CADSelSetId* CadCall::selectionSet() {
    read([this](resbuf** cursor) { return kz_Rb_getNextSelSet(set_.name, cursor, nullptr, 0); });
    return &set_;
}

const kz_Point* CadCall::point() {
    read([this](resbuf** cursor) {
        double values[3] = {};
        if (kz_Rb_getNextPoint(values, cursor, nullptr, 0) != 1) return 0;
        return kz_Point_fromADSPoint(&point_, values);
    });
    return &point_;
}

double CadCall::realOrZero() {
    double value = 0.0;
    int is_nil = 0;
    read([&](resbuf** cursor) { return kz_Rb_getNextReal(&value, cursor, &is_nil, 1); });
    return is_nil != 0 ? 0.0 : value;
}

int CadCall::given() {
    const resbuf* node = rest();
    return node != nullptr && kz_Rb_typeRb(node) != KZ_RB_NIL ? 1 : 0;
}

const kz_Char* CadCall::textOrNull() {
    kz_Char* copy = nullptr;
    read([&copy](resbuf** cursor) { return kz_Rb_getNextStringPtr(&copy, cursor, nullptr, 1); });
    text_.reset(copy);
    return copy;
}

int CadCall::integer(int absent) {
    int16_t value = 0;
    int is_nil = 0;
    read([&](resbuf** cursor) { return kz_Rb_getNextInt(&value, cursor, &is_nil, 1); });
    return is_nil != 0 ? absent : value;
}

void CadCall::answerName(const ads_name name) {
    setStatus(isNull(name) ? 0 : 1);
    if (!isNull(name)) acedRetName(name, RTENAME);
}

}  // namespace kz
