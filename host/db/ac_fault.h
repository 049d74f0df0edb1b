/// Faults of the database classes.
#ifndef HOST_DB_AC_FAULT_H
#define HOST_DB_AC_FAULT_H

#include "acad/db.h"
#include "base/faults.h"

namespace host {

/// The status that a test has asked for; eOk for none.
inline Acad::ErrorStatus fault(Call call) {
    int status = 0;
    return mustFail(call, status) ? static_cast<Acad::ErrorStatus>(status) : Acad::eOk;
}

}  // namespace host

#endif
