/// What all ways of choosing end in.
#ifndef SRC_CHOSEN_SET_H
#define SRC_CHOSEN_SET_H

#include "kz/kz_selset.h"

namespace kz {

/// acedSSGet as a record that the caller destroys; NULL when nothing was chosen, no set of the
/// platform is then left behind.
kz_CADSelSet* choose(const kz_Char* mode, const void* first, const void* second,
                     const resbuf* filter);

}  // namespace kz

#endif
