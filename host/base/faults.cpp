/// The armed fault and the counters of calls.
#include "base/faults.h"

#include <array>
#include <string>

#include "host/testing.h"

namespace host {
namespace {

constexpr std::array<std::string_view, static_cast<size_t>(Call::Count_)> kNames = {
#define KZ_CALL(name) #name,
#include "base/fault_calls.inc"
#undef KZ_CALL
};

struct Fault {
    size_t call = kNames.size();
    int nth = 0;
    int status = 0;
    int calls = 0;
    bool fired = false;
};

Fault armed;

/// How often each function was called; counted while nothing is to fail.
std::array<int, kNames.size()> counts{};

struct VariableFault {
    std::string name;
    int status = 0;
};

VariableFault failing_variable;

}  // namespace

bool faults_armed = false;

bool countCall(Call call, int& status) {
    ++counts[static_cast<size_t>(call)];
    if (static_cast<size_t>(call) != armed.call) return false;
    if (++armed.calls != armed.nth) return false;
    armed.fired = true;
    status = armed.status;
    return true;
}

bool variableMustFail(std::string_view name, int& status) {
    if (failing_variable.name != name) return false;
    status = failing_variable.status;
    return true;
}

namespace testing {

std::vector<std::string_view> platformCalls() {
    return {kNames.begin(), kNames.end()};
}

void countCalls() {
    armed = {};
    counts = {};
    faults_armed = true;
}

std::vector<CallCount> countedCalls() {
    std::vector<CallCount> called;
    for (size_t i = 0; i < kNames.size(); ++i) {
        if (counts[i] > 0) called.push_back({kNames[i], counts[i]});
    }
    return called;
}

bool failCall(std::string_view function, int nth, int status) {
    for (size_t i = 0; i < kNames.size(); ++i) {
        if (kNames[i] != function) continue;
        armed = {i, nth, status, 0, false};
        faults_armed = true;
        return true;
    }
    return false;
}

void failVariable(std::string_view name, int status) {
    failing_variable = {std::string(name), status};
}

bool faultFired() {
    return armed.fired;
}

void clearFault() {
    armed = {};
    faults_armed = false;
    failing_variable = {};
}

}  // namespace testing
}  // namespace host
