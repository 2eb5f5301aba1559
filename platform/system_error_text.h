#pragma once

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

// The system's text for an error number, on one line (line ends become blanks).
// -1 means the present errno; 0 gives "No Error."; a number the system does not know
// gives "Error <number>.". errno is left as it was.
_kzString8_allSize<250> kzSystemErrorText(int code);

// The same text widened, one 16-bit character per byte.
_kzString<500> kzSystemErrorTextWide(int code);
