/// The code of a drawing as a function of the time at which it is made.
#ifndef SRC_ACAD_DWGD_RX_ID_CODE_H
#define SRC_ACAD_DWGD_RX_ID_CODE_H

#include "kz/kz_platform.h"

namespace kz {

/// Characters of a code with its terminator; dates up to 2059 need eight of them.
constexpr size_t kIdCodeSize = 12;

/// Writes the code of a moment. No code begins with CN: names of groups are made of codes, and
/// those of containers are known by these letters.
/// @return false when there is none
inline bool writeIdCode(kz_Char (&code)[kIdCodeSize], int64_t seconds, int milliseconds) {
    const double moment = static_cast<double>(seconds) * 1000.0 + milliseconds;
    kz_Str_ncpy(code, kz_Base36_fromBase10(moment), kIdCodeSize - 1);
    if (kz_Str_ncmpi(code, KZ_T("CN"), 2) == 0) code[1] = KZ_T('O');
    return code[0] != 0;
}

}  // namespace kz

#endif
