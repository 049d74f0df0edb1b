/// What a failed call of the platform gave, as text for the error list and the trace.
#include "kz/kz_error.h"

namespace {

struct StatusName {
    int status;
    const kz_Char* name;
};

const StatusName kStatusNames[] = {
    {RTNORM, KZ_T("RTNORM")}, {RTERROR, KZ_T("RTERROR")}, {RTCAN, KZ_T("RTCAN")},
    {RTREJ, KZ_T("RTREJ")},   {RTFAIL, KZ_T("RTFAIL")},   {RTKWORD, KZ_T("RTKWORD")},
};

template <class Status>
void formatStatus(kz_Char* buffer, const kz_Char* format, const kz_Char* function, Status status) {
    if (buffer == nullptr) return;
    if (function == nullptr) function = KZ_T("<Unknown>");
    kz_Str_format(buffer, KZ_DIAG_BUFFER_SIZE, format, function, status);
}

}  // namespace

void kz_Error_getADSErrorMsg(kz_Char* buffer, const kz_Char* functionName, int status) {
    for (const StatusName& row : kStatusNames) {
        if (row.status != status) continue;
        formatStatus(buffer, KZ_T("ADS function %s returned %s."), functionName, row.name);
        return;
    }
    formatStatus(buffer, KZ_T("ADS function %s returned %d."), functionName, status);
}

void kz_Error_getARXErrorMsg(kz_Char* buffer, const kz_Char* functionName, int status) {
    formatStatus(buffer, KZ_T("ARX function %s returned error status: %d."), functionName, status);
}
