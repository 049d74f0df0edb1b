/// Selection sets of the platform, as records of the library.
#ifndef KZ_SELSET_H
#define KZ_SELSET_H

#include "kz/kz_platform.h"

/// A selection set by the platform's name for it, so that the record passes wherever the platform
/// wants an ads_name. Allocated with kz_Malloc.
struct kz_CADSelSet {
    ads_name name;  ///< both words 0: no set
};

/// The same as a value that may be NULL.
typedef kz_CADSelSet kz_CADSelSetId;

#endif
