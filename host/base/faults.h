/// Faults on demand: a test lets the n-th call of a platform function fail. While nothing is armed
/// a call costs one comparison.
#ifndef HOST_BASE_FAULTS_H
#define HOST_BASE_FAULTS_H

namespace host {

/// The functions that can be made to fail, by the names that tests use.
enum class Call {
    acutNewRb,
    acutBuildList,
    acdbOpenObject,
    acdbGetObjectId,
    acdbGetAdsName,
    acdbHandEnt,
    acdbEntGet,
    acdbEntDel,
    acdbEntMakeX,
    acdbEntMod,
    acdbEntLast,
    acdbEntNext,
    acdbRegApp,
    acdbTblSearch,
    acdbDisToF,
    acedGetVar,
    acedSetVar,
    acedTrans,
    acedRedraw,
    acedSSAdd,
    acedSSName,
    xData,
    setXData,
    upgradeOpen,
    erase,
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

}  // namespace host

#endif
