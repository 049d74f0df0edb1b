/// The frame of a Lisp twin: what all twins do on entry and exit, and their readers.
#include "twin.h"

#include "trace.h"

namespace kz {
namespace {

/// Traces a format with the twin's name (and its result word, if any).
template <class... Args>
void traceCall(const TwinFamily& family, int16_t level, const kz_Char* format, Args... args) {
    if (traceSpeaks(level, family.mask)) traceFormatted(family.source, __LINE__, format, args...);
}

}  // namespace

TwinCall::TwinCall(const TwinFamily& family, const kz_Char* name, const char* usage)
    : family_(family), name_(name), usage_(usage) {
    traceCall(family, kTraceEntry, KZ_T("Entering %s"), name);
    acedRetNil();
    cursor_ = acedGetArgs();
    if (family.mask != 0) kz_Rb_printListDiag(cursor_, kTraceEntry, kTraceData);
}

TwinCall::~TwinCall() {
    if (!read_all_ && usage_ != nullptr) message(usage_);
    traceCall(family_, kTraceExit, KZ_T("%s exiting...%s"), name_,
              status_ == 1 ? KZ_T("successful") : KZ_T("error"));
}

const int64_t* TwinCall::entity() {
    note(read_all_ && kz_Rb_getNextADSName(entity_, &cursor_, nullptr, 0) == 1);
    return entity_;
}

const kz_Char* TwinCall::longText() {
    kz_Char* copy = nullptr;
    note(read_all_ && kz_Rb_getNextStringPtr(&copy, &cursor_, nullptr, 0) == 1);
    long_text_.reset(copy);
    return copy;
}

int TwinCall::flag() {
    int16_t value = 0;
    note(read_all_ && kz_Rb_getNextInt(&value, &cursor_, nullptr, 1) == 1);
    return value;
}

LispValue TwinCall::value() {
    kz_FldList* list = nullptr;
    note(read_all_ && kz_Rb_getNextUnknown(&list, &cursor_, nullptr, 0) == 1);
    fields_.reset(list);
    kz_FldList_start(list);
    const auto* node = static_cast<const kz_FldNode*>(kz_LnkList_getCurr(list));
    if (node == nullptr) return {};
    const bool is_text = node->type == KZ_FLD_CHAR || node->type == KZ_FLD_HANDLE;
    return {node->type, is_text ? static_cast<const void*>(node->value.text) : &node->value};
}

bool TwinCall::ready() const {
    if (!read_all_) return false;
    if (!ads_name_nil(entity_)) return true;
    traceCall(family_, kTraceFailure, KZ_T("Entity not found in %s."), name_);
    return false;
}

void TwinCall::message(const char* text) {
    acutPrintf(kz_Msg(text, "TOOL", 7));
}

void TwinCall::answerStatus(int status) {
    status_ = status;
    if (status == 1) acedRetT();
}

void TwinCall::note(bool good) {
    read_all_ = good;
    status_ = good;
}

kz_FldList* TwinCall::readFields(int nil_allowed) {
    kz_FldList* list = nullptr;
    note(read_all_ && kz_Rb_getNextFldList(&list, &cursor_, nullptr, nil_allowed) == 1);
    fields_.reset(list);
    return list;
}

const kz_Char* TwinCall::readText(int nil_allowed) {
    kz_Char* buffer = texts_[text_count_++];
    *buffer = 0;
    note(read_all_ && kz_Rb_getNextString(buffer, kTextSize, &cursor_, nullptr, nil_allowed) == 1);
    return buffer;
}

}  // namespace kz
