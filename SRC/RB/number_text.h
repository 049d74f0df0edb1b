/// Numbers from the decimal beginning of a text, independent of the locale.
#ifndef SRC_RB_NUMBER_TEXT_H
#define SRC_RB_NUMBER_TEXT_H

#include "kz/kz_platform.h"

namespace kz {

/// Leading blanks, a sign, digits; 0 on rubbish, clamped to the range of 32 bits.
int32_t parseLong(const kz_Char* text);
/// The same with fraction and exponent; 0.0 on rubbish. Looks at 127 characters.
double parseReal(const kz_Char* text);
/// Toward zero; the smallest number for a real that does not fit, as the processor gives it.
int32_t truncateToLong(double value);

}  // namespace kz

#endif
