// Bringing one file of the local cache up to date with its source on the network. A file
// counts as up to date when size and modification time are equal; nothing is read to
// decide it. A cache file that differs is not overwritten in place: it is renamed aside
// with the suffix "_old" (replacing an earlier one), and the new copy takes its name.
// What happens is told in texts the caller owns; each may be absent (null), and every
// append stops silently at the text's capacity.
#pragma once

#include <cstdint>

#include "files/copy_stats.h"
#include "strings/kz_string8.h"

// Copies `src` to `dst` unless they are already equal, creating the destination's folder
// (mode 0777) when the folder above it exists, and gives the copy mode 0777. An empty
// source, or one without a time, is never copied. `throttleMs` is the pause after each
// full chunk. `stats`, if given, counts each file actually copied (see _kzCopyStats).
// True if `dst` is up to date afterwards.
bool copyFileChecked(const _kzString8_allSize<500>& src, const _kzString8_allSize<500>& dst,
                     _kzString8_allSize<500>* errorText, _kzString8_allSize<500>* infoText, int32_t throttleMs,
                     _kzCopyStats* stats);

// copyFileChecked of srcRoot + subFolder + fileName to dstRoot + subFolder + fileName (both
// roots end with "/", subFolder is empty or ends with "/"), pausing 5 ms per chunk when
// `fastCopy` is non-zero and 200 ms otherwise. Its texts, each closed by ";\n", are added
// to the logs and, with `verbose`, printed ("ERROR:  " in front of an error).
bool copyFileLogged(const _kzString8_allSize<500>& srcRoot, const _kzString8_allSize<500>& dstRoot,
                    const _kzString8_allSize<500>& subFolder, const _kzString8_allSize<500>& fileName,
                    _kzString8_allSize<1000>* infoLog, _kzString8_allSize<1000>* errorLog, bool verbose,
                    const uint8_t& fastCopy, _kzCopyStats* stats);
