// The log mirror: the text files of the local folder go to the network root's log folder,
// under names that mark them as copies.
#pragma once

#include "files/dir_scan.h"
#include "strings/kz_string.h"

// Brings every file of `localFolder` whose name ends in ".txt" (any case) that differs
// from its mirror to `networkRoot` + "sub/log/". One folder level only; the log folder is
// not created here. `logScan` is the run's scan with its one end filter ".txt".
void logPass(const _kzString<500>& localFolder, const _kzString<500>& networkRoot, _kzDirScan& logScan);

// The mirror path of a file called `name`: networkRoot + "sub/log/" + name, with
// "__local.txt" (when the path ends in it), or else every ".txt", turned into
// "__copyFromLocal.txt" along the whole path, ignoring case. Cut at 500 characters.
_kzString<500> logDestination(const _kzString<500>& networkRoot, const _kzString<500>& name);
