/// Faults on demand: a test lets the n-th call of a platform function fail. While nothing is armed
/// a call costs one comparison.
#ifndef HOST_BASE_FAULTS_H
#define HOST_BASE_FAULTS_H

#include <string_view>

namespace host {

/// The functions that can be made to fail.
enum class Call {
#define KZ_CALL(name) name,
#include "base/fault_calls.inc"
#undef KZ_CALL
    Count_
};

extern bool faults_armed;

/// Counts the call; true when it is the one to fail, then `status` is what the test asked for.
bool countCall(Call call, int& status);

/// True when this call has to fail.
inline bool mustFail(Call call, int& status) {
    return faults_armed && countCall(call, status);
}
inline bool mustFail(Call call) {
    int status = 0;
    return mustFail(call, status);
}

/// True when a test lets the system variable of this name (in upper case) fail.
bool variableMustFail(std::string_view name, int& status);

}  // namespace host

#endif
