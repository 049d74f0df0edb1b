/// Small tests of arguments.
#ifndef SRC_CHECKS_H
#define SRC_CHECKS_H

#include "kz/kz_platform.h"

namespace kz {

inline bool isEmpty(const kz_Char* text) {
    return text == nullptr || *text == 0;
}

/// No name, or the name of two zero words.
inline bool isNull(const ads_name name) {
    return name == nullptr || ads_name_nil(name);
}

}  // namespace kz

#endif
