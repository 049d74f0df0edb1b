/// System variables: one table says name, kind, and where the value lives.
#ifndef HOST_EDIT_SYSVARS_H
#define HOST_EDIT_SYSVARS_H

namespace host {

/// Values of the ERRNO variable that the host sets.
enum class HostErrno : int {
    None = 0,
    BadEntityName = 2,
    NoEntity = 6,
    BadEntityList = 25,
    BadXData = 66,
    LayerLocked = 68,
};

/// A variable's value for the host itself; `otherwise` when it is unknown or of another kind.
int integerVariable(const char* name, int otherwise);
double realVariable(const char* name, double otherwise);

/// Remembers why a call failed; success never clears it.
void setErrno(HostErrno value);

}  // namespace host

#endif
