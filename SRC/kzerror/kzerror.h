/// What the parts of the error registry share: the entry and the list.
#ifndef SRC_KZERROR_KZERROR_H
#define SRC_KZERROR_KZERROR_H

#include "kz/kz_error.h"

namespace kz {

/// An entry of the error list, which owns it and its texts.
struct ErrorEntry {
    const kz_ErrorMsg* group;  ///< NULL for an error with its own text
    int32_t code;
    kz_Char* help_file;  ///< may be NULL, as the others
    kz_Char* help_topic;
    kz_Char* custom_text;
};

/// The list of entries, newest first; NULL before the first one.
kz_LnkList* errorList();

}  // namespace kz

#endif
