/// How operations of the editor answer.
#ifndef HOST_EDIT_REFUSAL_H
#define HOST_EDIT_REFUSAL_H

#include <string_view>

namespace host {

/// Empty when it was done; otherwise a sentence for the user, and nothing has changed.
using Refusal = std::u16string_view;

inline constexpr Refusal kDone{};

}  // namespace host

#endif
