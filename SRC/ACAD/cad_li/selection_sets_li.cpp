/// Lisp twins of the selection sets.
#include "ACAD/cad_li/cad_call.h"

namespace {

/// What a refused argument is traced with.
constexpr const kz_Char* kNoSet = KZ_T(": Invalid or missing selection set parameter.");
constexpr const kz_Char* kTooMany = KZ_T(": Invalid parameters.");

}  // namespace

/// (kz_CADSelSet_getNumRemaining) -> integer
/// How many selection sets could still be made.
KZ_TWIN kz_CADSelSet_getNumRemaining_li(void) {
    const kz::CadCall call(KZ_T("kz_CADSelSet_getNumRemaining_li"), kTooMany);
    acedRetInt(kz_CADSelSet_getNumRemaining());
    return 1;
}

/// (kz_CADSelSet_destroy set) -> T | nil
/// Frees a selection set, which no function takes from then on.
KZ_TWIN kz_CADSelSet_destroy_li(void) {
    kz::CadCall call(KZ_T("kz_CADSelSet_destroy_li"), kNoSet);
    const kz_CADSelSetId* given = call.selectionSet();
    if (!call.readAll()) return 1;
    kz_CADSelSet* set = kz_CADSelSet_fromADSSS(given->name);
    call.answerStatus(set != nullptr ? 1 : 0);
    kz_CADSelSet_destroy(set);
    return 1;
}
