/// Object snaps.
#include "acad/ed.h"

extern "C" int acedOsnap(const ads_point, const ACHAR*, ads_point) {
    return RTERROR;
}
