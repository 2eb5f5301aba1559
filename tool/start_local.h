// kzStartLocal: keeps the network folder's copy of the server's local files up to date for
// as long as the server process runs.
#pragma once

#include "strings/kz_string.h"

// The whole run: banner, arguments, the watch loop, "QUIT". Returns 0 after "QUIT" and -1
// after the usage line.
int kzStartLocalMain(int argc, char** argv);

// "true"/"false" with `asWord`, else "1"/"0".
_kzString<500> boolText(bool value, bool asWord);
