/// What the sources of groups share.
#include "ACAD/kz_acgrp/kz_acgrp.h"

namespace kz {
namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

}  // namespace

void submitGroupError(int code) {
    kz_Error_submit(kz_ErrorGroupGroup, code, nullptr, nullptr);
}

void submitGeneralError(int code) {
    kz_Error_submit(kz_ErrorGroupGeneral, code, nullptr, nullptr);
}

GroupTrace::GroupTrace(const kz_Char* function) : function_(function) {
    KZ_TRACEF(kTraceEntry, kTraceGroups, KZ_T("Entering %s."), function_);
}

GroupTrace::~GroupTrace() {
    KZ_TRACEF(kTraceEntry, kTraceGroups, KZ_T("Leaving %s."), function_);
}

AcDbDatabase* databaseOfObject(const AcDbObjectId& object) {
    AcDbObject* opened = nullptr;
    if (acdbOpenObject(opened, object, AcDb::kForRead, true) != Acad::eOk) return nullptr;
    AcDbDatabase* database = opened->database();
    opened->close();
    return database;
}

Opened<AcDbGroup> openGroup(const AcDbObjectId& object, AcDb::OpenMode mode) {
    AcDbGroup* group = nullptr;
    if (acdbOpenObject(group, object, mode) != Acad::eOk) submitGroupError(kGroupNotOpened);
    return Opened<AcDbGroup>(group);
}

}  // namespace kz
