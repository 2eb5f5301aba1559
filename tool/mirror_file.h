// The step both mirror passes share: bring one file to its mirror unless the mirror is
// already up to date.
#pragma once

#include "strings/kz_string.h"

// Copies `source` to `destination` unless the destination exists with exactly the same
// modification time (whole seconds) and size. The copy overwrites and doesn't pause. Says
// nothing and reports nothing: whatever failed differs at the next pass and is tried again.
//
// A copy that can be trusted to stay true gets the source's time, which is what lets the
// next pass skip it. A copy is not trusted (it is unsettled) when the source changed while
// it was copied, or when the second of the source's time has not yet passed: a write later
// in that same second would leave time and size as they are. An unsettled copy gets a time
// one second before the source's, so the next pass copies it again.
void mirrorFile(const _kzString<500>& source, const _kzString<500>& destination);
