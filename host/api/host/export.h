/// Export mark of what the host offers to the programs and tests around it.
#ifndef HOST_EXPORT_H
#define HOST_EXPORT_H

#include "acad/adesk.h"

#define HOST_API ACAD_API

#endif
