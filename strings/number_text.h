// Short texts of numbers, as 16-bit strings.
#pragma once

#include "strings/kz_string.h"

// The decimal text of v.
_kzString<25> kzIntToText(const int& v);

// The whole part, the separator (always, also for 0 decimals), then the fraction scaled by
// 10^decimals and rounded, zero-filled to `decimals` digits. The fraction is not corrected
// for its sign or for carrying into the whole part: -1.5 with 2 decimals reads "-1.-50",
// 1.999 reads "1.100".
_kzString<25> kzFloatToText(const int& decimals, const unsigned short& separator, float value);
