// Bringing one application of the suite from the network folder into a local cache folder:
// its shared libraries, GUI resources and platform plug-ins, its executable (plain or as a
// bundle), and, as its name asks for them, image plug-ins and render configuration. Each
// file goes through the verified copy, so a second run copies only what changed.
//
// Network layout, with `source` the folder of the executable (or of its bundle):
//   source/lib/, source/lib/Resources/qt_menu.nib/, source/platforms/, the executable;
//   two levels above `source`: plugins/ or plugins64/ (with image/), render_apps/ (with
//   _config/ and _config_inhouse/).
// The cache mirrors lib/, lib/Resources/qt_menu.nib/, platforms/, image/, _config/,
// _config_inhouse/ and the executable. In image/, _config/ and _config_inhouse/ a cache
// file without a source is deleted, but only after a whole walk without a failed copy.
#pragma once

#include <cstdint>

#include "files/copy_stats.h"
#include "strings/kz_string.h"
#include "strings/kz_string8.h"

// Refreshes the cache in `localFolder` (ending with "/") for the executable `exeWithPath`
// (for a bundle the path inside it: ".../X.app/Contents/MacOS/X"). Both logs, where given,
// are cleared first; `infoLog` receives what was done, `errorLog` what went wrong.
// `verbose` prints the steps as well. A non-zero `fastCopy` pauses 5 ms per chunk, zero
// 200 ms. `stats`, if given, counts the files copied.
//
// The result is the executable's path in the cache, or on any failure `exeWithPath`
// unchanged; whatever was copied before a failure stays.
_kzString8_allSize<500> localExeCache_copy(const _kzString8_allSize<500>& exeWithPath,
                                           const _kzString8_allSize<500>& localFolder,
                                           _kzString8_allSize<1000>* infoLog, _kzString8_allSize<1000>* errorLog,
                                           bool verbose, const uint8_t& fastCopy, _kzCopyStats* stats);

// `path` + ".app/Contents/MacOS/" + the file name of `path`, cut at the capacity.
_kzString8_allSize<500> bundleExecutablePath(const _kzString8_allSize<500>& path);
_kzString<250> bundleExecutablePath(const _kzString<250>& path);
