/// Writing of field lists, for the operations that have read the application's chain before.
#ifndef SRC_ACAD_XD_RX_H
#define SRC_ACAD_XD_RX_H

#include "guards.h"

namespace kz {

/// Writes the list to the object as kz_XData_setFldList does. `operation` is the name that a
/// failure is traced under. `present` is the application's chain on the object as the caller has
/// just read it (NULL inside: no data yet).
int writeFldList(const kz_Char* operation, const ads_name id, kz_FldList* list, const kz_Char* app,
                 bool clear_existing, OwnedChain present);

}  // namespace kz

#endif
