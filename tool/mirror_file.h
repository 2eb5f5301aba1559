// The step both mirror passes share: bring one file to its mirror unless the mirror is
// already up to date.
#pragma once

#include "strings/kz_string.h"

// Copies `source` to `destination` unless the destination exists with exactly the same
// modification time and size. The copy overwrites, doesn't pause, and gives the
// destination the source's time, which is what lets the next pass skip it. Says nothing
// and reports nothing: whatever failed differs at the next pass and is tried again.
void mirrorFile(const _kzString<500>& source, const _kzString<500>& destination);
