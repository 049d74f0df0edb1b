/// Parts of the string list that take a piece of a text, for the families of this library that cut
/// texts up.
#ifndef KZ_TOOLS_STRLIST_INTERNAL_H
#define KZ_TOOLS_STRLIST_INTERNAL_H

#include <string_view>

#include "kz_tls21an/strlist.h"

namespace kz {

/// Heap copy of a piece of text; NULL without memory.
kz_Char* copyText(std::u16string_view text);
/// Appends a copy of a piece of text; false without memory, the list unchanged.
bool appendEntry(kz_StrList* list, std::u16string_view text);

}  // namespace kz

#endif
