/// The table of the errors of groups, which stays inside the library.
#ifndef SRC_GROUP_ERRORS_H
#define SRC_GROUP_ERRORS_H

#include "kz/kz_error.h"

extern const kz_ErrorMsg kz_ErrorGroupGroup[];

#endif
