#include "platform/executable_folder.h"

#include <unistd.h>

#include "platform/platform_os.h"

bool kzFindExecutableFolder(_kzString8_allSize<250>& folder, const char* argv0) {
    // The system's answer keeps at most 249 characters, like every narrowed path.
    char path[4096];
    if (kzExecutablePath_OS(path, sizeof path))
        folder.fromChar(path, kzstr::minInt(kzstr::length8(path), 249));
    return kzResolveExecutableFolder(folder, argv0);
}

bool kzResolveExecutableFolder(_kzString8_allSize<250>& folder, const char* argv0) {
    if (folder.isEmpty() && argv0) {
        folder = argv0;
        if (folder.length < 4) folder.clear();
        const bool complete = folder.startsWith('/') || (folder.length > 1 && folder.data[1] == ':');
        if (folder.hasData() && !complete && folder.indexOf('/', 0) >= 0) {
            // A relative path: it is joined to the working folder, each "../" taking one
            // folder off that base.
            _kzString8_allSize<250> base;
            if (::getcwd(base.data, 250)) base.calcLength();
            if (base.length >= 4) {
                base.endWith('/');
                const _kzString8_allSize<250> up("../");
                int rest = 0;
                for (int at = folder.indexOf(up, 0); at >= 0; at = folder.indexOf(up, at + 3)) {
                    base = kzParentFolder(base);
                    rest = at + 3;
                }
                base.add(folder.data + rest, static_cast<unsigned>(folder.length - rest));
                folder = base;
            }
        }
    }
    if (folder.isEmpty()) return false;
    folder = kzParentFolder(folder);
    if (folder.length >= 3 && folder.endsWith("/./")) folder.setLength(static_cast<short>(folder.length - 2));
    return true;
}

_kzString8_allSize<250> kzExecutableFolder(const char* argv0) {
    _kzString8_allSize<250> folder;
    kzFindExecutableFolder(folder, argv0);
    return folder;
}

_kzString8_allSize<250> kzParentFolder(_kzString8_allSize<250> path) {
    if (path.length < 3) return path;
    path.dropEnd('/');
    const int last = path.lastIndexOf('/', -1);
    bool cut = last >= 2;
    // "//server/share": only a "/" between the share and the last one allows a cut.
    if (cut && path.data[1] == '/') cut = path.lastIndexOf('/', last - 1) >= 2;
    if (cut) path.setLength(static_cast<short>(last));
    if (path.length < 250) path += '/';
    return path;
}
