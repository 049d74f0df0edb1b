/// What the input functions share.
#ifndef HOST_EDIT_ASK_H
#define HOST_EDIT_ASK_H

#include <functional>
#include <string_view>

#include "edit/input.h"
#include "edit/keywords.h"

namespace host {

/// Of `accept` below: the answer does not fit, its message is told already.
constexpr int kAskAgain = 0;

/// Asks until `accept` gives a status. It is called with what is no Enter, no cancel and no
/// keyword; these give RTNONE (unless the rules refuse it), RTCAN and RTKWORD.
/// @param wrong  told when an answer does not fit
int askAnswer(const InputRules& rules, const ACHAR* prompt, std::u16string_view wrong,
              const std::function<int(const InputToken&)>& accept);

/// The point of an answer, typed ones counted from `from`. @return RTNORM, or kAskAgain for an
/// answer that is none
int readPoint(const InputToken& token, const ads_point from, ads_point out);

}  // namespace host

#endif
