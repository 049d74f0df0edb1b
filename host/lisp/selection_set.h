/// Selection sets as Lisp values. A set has one object however often it comes to Lisp, so that it
/// is freed in the editor exactly when the last reference has gone.
#ifndef HOST_LISP_SELECTION_SET_H
#define HOST_LISP_SELECTION_SET_H

#include "lisp/value.h"

namespace host::lisp {

/// The object of a set: the one that lives already, or a new one, which then owns the set.
Value selectionSetValue(const ads_name name);

}  // namespace host::lisp

#endif
