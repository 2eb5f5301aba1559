// The job database mirror: every file of the local folder with "jobs.db" in its name goes,
// under its own name, to a fixed folder below the network root.
#pragma once

#include "files/dir_scan.h"
#include "strings/kz_string.h"

// Creates the job database folder (with its parents), removes from it the files of a
// "jobs.db" name that the local folder no longer holds, and brings every file whose name
// holds "jobs.db" (any case, any position) that differs from its mirror there. Ends at
// once if the folder can't be created. `jobScan` is the run's scan without filters.
void jobDbPass(const _kzString<500>& localFolder, const _kzString<500>& networkRoot, _kzDirScan& jobScan);

// networkRoot + "sub/cfg_global/__copyFromLocal/", cut at 500 characters.
_kzString<500> jobDbFolder(const _kzString<500>& networkRoot);
