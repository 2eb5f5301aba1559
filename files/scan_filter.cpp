#include "files/scan_filter.h"

namespace {

bool startsWithAny(const _kzString<500>& name, const _kzFileList& filters) {
    for (int i = 0; i < filters.count; ++i)
        if (name.startsWith(filters.data[i])) return true;
    return false;
}

bool endsWithAny(const _kzString<500>& name, const _kzFileList& filters) {
    for (int i = 0; i < filters.count; ++i)
        if (name.endsWith(filters.data[i])) return true;
    return false;
}

} // namespace

bool kzScanAccepts(const _kzString<500>& name, bool isFolder, bool withFolders,
                   const _kzFileList& startFilters, const _kzFileList& endFilters,
                   const _kzString<500>& namePrefix) {
    if (isFolder) {
        if (!withFolders || name == "." || name == "..") return false;
    } else if (startFilters.count > 0) {
        if (!startsWithAny(name, startFilters)) return false;
    } else if (endFilters.count > 0) {
        if (!endsWithAny(name, endFilters)) return false;
    }
    return namePrefix.isEmpty() || name.startsWith(namePrefix);
}
