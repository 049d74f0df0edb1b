/// The test's door to the host: platform calls that fail on demand. What is out at the moment
/// stands in host/counters.h, memory shortage in kz_Malloc_failFrom.
#ifndef HOST_TESTING_H
#define HOST_TESTING_H

#include <string_view>
#include <vector>

#include "host/export.h"

namespace host::testing {

/// Names of the platform calls that can be made to fail.
HOST_API std::vector<std::string_view> platformCalls();
/// A platform call and how often it was made.
struct CallCount {
    std::string_view name;
    int calls = 0;
};
/// Counts the platform calls that could be made to fail from now on, until `clearFault`.
HOST_API void countCalls();
/// Those that were made since then.
HOST_API std::vector<CallCount> countedCalls();
/// From now on the `nth` call (from 1) of `function` fails; all others work. A function that
/// answers with a status gives `status`, one that gives a pointer NULL. @return false for an
/// unknown name
HOST_API bool failCall(std::string_view function, int nth, int status);
/// From now on every reading and setting of the system variable `name` (in upper case) gives
/// `status`; one variable at a time.
HOST_API void failVariable(std::string_view name, int status);
/// True when the armed fault has happened.
HOST_API bool faultFired();
/// No call fails any more.
HOST_API void clearFault();

}  // namespace host::testing

#endif
