/// Reading and writing of an application's chain, for the operations that do both in one go.
#ifndef SRC_ACAD_XD_RX_H
#define SRC_ACAD_XD_RX_H

#include "guards.h"

namespace kz {

/// An application's chain as an object has it.
struct AppChain {
    OwnedChain nodes;    ///< NULL: the object has no data of the application
    bool known = false;  ///< false: the object could not be opened
};

/// Reads the chain of `app`, or the object's whole XDATA when it is NULL.
AppChain readAppChain(const ads_name id, const kz_Char* app);

/// Writes the list to the object as kz_XData_setFldList does. `operation` is the name that a
/// failure is traced under, `present` the application's chain as the caller has just read it. An
/// unknown chain fails: what the object holds must not be replaced by the list alone.
int writeFldList(const kz_Char* operation, const ads_name id, kz_FldList* list, const kz_Char* app,
                 bool clear_existing, AppChain present);

}  // namespace kz

#endif
