#include "files/path_strings.h"

namespace {

// Each operation is written once over the record type; the header's overloads name the
// types in use.

template <typename Name, typename S>
Name fileNameOf(const S& path) {
    const int slash = path.lastIndexOf('/', -1);
    if (slash >= 0) return Name(path.data + slash + 1, path.length - slash - 1);
    return Name(path.data); // up to the first NUL
}

template <typename S>
S folderOf(S path) {
    if (path.length < 3) return path;
    path.dropEnd('/');

    int rootEnd = 0;
    if (path.data[1] == ':') {
        rootEnd = 2;
    } else if (path.data[1] == '/') {
        // A network root: "//server/share" can't be left upward.
        const int serverEnd = path.indexOf('/', 2);
        const int shareEnd = path.indexOf('/', serverEnd + 1);
        if (shareEnd < 0) return path;
        rootEnd = shareEnd;
    }
    const int last = path.lastIndexOf('/', -1);
    if (last < 0) return S(); // a bare name has no folder
    if (last >= rootEnd) path.setLength(static_cast<short>(last));
    if (path.length < S::capacity) path += '/';
    return path;
}

template <typename S>
bool isRelative(const S& path) {
    if (path.length < 3) return true;
    if (path.data[0] == '/') return false;
    if (path.data[1] == ':' && path.data[2] == '/') return false;
    return !(path.startsWith("<Database>") || path.startsWith("[cfgPath]") || path.startsWith("[temp]"));
}

template <typename S>
S forwardSlashes(S path) {
    path.replace('\\', '/');
    return path;
}

// A head that is a placeholder alone, such as "<Database>/": nothing to climb out of.
template <typename S>
bool isBarePlaceholder(const S& head) {
    if (!head.startsWith('<')) return false;
    S root(head);
    root.dropEnd('/');
    return root.endsWith('>') && root.indexOf('/', 0) < 0;
}

template <typename S>
S normalised(S& path) {
    if (path.length < 2) return path;
    path = forwardSlashes(path);
    const bool networkRoot = path.startsWith("//");
    path.replace(S("//"), S("/"));
    if (networkRoot) path.insert(0, S("/"));

    const S up("../");
    const int first = path.indexOf(up, 0);
    if (first < 0) return path;
    S head = path.left(first);
    if (isBarePlaceholder(head)) return path;
    path.remove(0, first);
    while (path.startsWith("../")) {
        if (isBarePlaceholder(head)) break;
        path.remove(0, 3);
        head = folderOf(head);
    }
    path = head.add(path);
    return path;
}

} // namespace

_kzString<100> pathFileName(const _kzString<500>& path) { return fileNameOf<_kzString<100>>(path); }
_kzString<100> pathFileName(const _kzString<250>& path) { return fileNameOf<_kzString<100>>(path); }
_kzString8_allSize<100> pathFileName(const _kzString8_allSize<1000>& path) {
    return fileNameOf<_kzString8_allSize<100>>(path);
}
_kzString8_allSize<100> pathFileName(const _kzString8_allSize<500>& path) {
    return fileNameOf<_kzString8_allSize<100>>(path);
}
_kzString8_allSize<100> pathFileName(const _kzString8_allSize<250>& path) {
    return fileNameOf<_kzString8_allSize<100>>(path);
}

_kzString<500> pathFolder(_kzString<500> path) { return folderOf(path); }
_kzString<250> pathFolder(_kzString<250> path) { return folderOf(path); }
_kzString<1000> pathFolder(_kzString<1000> path) { return folderOf(path); }
_kzString8_allSize<500> pathFolder(_kzString8_allSize<500> path) { return folderOf(path); }
_kzString8_allSize<250> pathFolder(_kzString8_allSize<250> path) { return folderOf(path); }
_kzString8_allSize<200> pathFolder(_kzString8_allSize<200> path) { return folderOf(path); }

_kzString8_allSize<500> pathBaseName(_kzString8_allSize<500> path, char separator) {
    const int slash = path.lastIndexOf(separator, -1);
    if (slash >= 2) path.remove(0, slash + 1);
    const int dot = path.lastIndexOf('.', -1);
    if (dot >= 2) path.setLength(static_cast<short>(dot));
    return path;
}

bool pathIsRelative(const _kzString8_allSize<500>& path) { return isRelative(path); }
bool pathIsRelative(const _kzString<250>& path) { return isRelative(path); }
bool pathIsRelative(const _kzString<1000>& path) { return isRelative(path); }

_kzString<500> pathForwardSlashes(const _kzString<500>& path) { return forwardSlashes(path); }
_kzString<250> pathForwardSlashes(const _kzString<250>& path) { return forwardSlashes(path); }
_kzString8_allSize<500> pathForwardSlashes(const _kzString8_allSize<500>& path) {
    return forwardSlashes(path);
}
_kzString8_allSize<200> pathForwardSlashes(const _kzString8_allSize<200>& path) {
    return forwardSlashes(path);
}
_kzString8_allSize<150> pathForwardSlashes(const _kzString8_allSize<150>& path) {
    return forwardSlashes(path);
}
_kzString8_allSize<50> pathForwardSlashes(const _kzString8_allSize<50>& path) { return forwardSlashes(path); }

_kzString8_allSize<500> pathNormalize(_kzString8_allSize<500>& path) { return normalised(path); }
_kzString<500> pathNormalize(_kzString<500>& path) { return normalised(path); }

int wideLength(const unsigned short* text) { return kzstr::length16(text); }
