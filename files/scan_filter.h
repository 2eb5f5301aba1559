// The rule by which a directory scan takes or skips an entry, on its name and kind alone.
#pragma once

#include "buffers/file_list.h"
#include "strings/kz_string.h"

// Names compare ignoring case. A folder passes only with `withFolders`, never as "." or
// "..". Anything else must begin with one of the start filters if there are any, or else
// end with one of the end filters if there are any. Both kinds must then begin with
// `namePrefix` unless it is empty.
bool kzScanAccepts(const _kzString<500>& name, bool isFolder, bool withFolders,
                   const _kzFileList& startFilters, const _kzFileList& endFilters,
                   const _kzString<500>& namePrefix);
