#include "files/file_probes.h"

#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

#include <cerrno>

#include "files/path_strings.h"
#include "platform/file_kinds.h"

namespace {

bool isFolder(const struct stat& st) { return kzHasFolderBit(st.st_mode); }

// stat on the path; false if it can't be reached.
bool probe(const char* path, struct stat* st) { return ::stat(path, st) == 0; }

bool infoOf(const char* path, _kzTime* time, int64_t* size) {
    struct stat st;
    const bool file = probe(path, &st) && !isFolder(st);
    if (time) time->value = file ? static_cast<int64_t>(st.st_mtime) : 0;
    if (size) *size = file ? static_cast<int64_t>(st.st_size) : 0;
    return file;
}

bool isExistingFolder(const char* path) {
    struct stat st;
    return probe(path, &st) && isFolder(st);
}

// The 8-bit forms: the trailing "/" is overwritten in the caller's record.
template <typename S>
bool folderExistsInPlace(S& path) {
    if (path.length < 3) return false;
    if (path.endsWith('/')) path.data[path.length - 1] = 0;
    return isExistingFolder(path.data);
}

} // namespace

bool fileInfo(const _kzString<500>& path, _kzTime* time, int64_t* size) {
    return infoOf(path.to_kzString8_500().data, time, size);
}

bool fileInfo(const _kzString8_allSize<500>& path, _kzTime* time, int64_t* size) {
    return infoOf(path.data, time, size);
}

bool fileInfo(const _kzString8_allSize<250>& path, _kzTime* time, int64_t* size) {
    return infoOf(path.data, time, size);
}

bool fileExists(const _kzString<500>& path) { return fileInfo(path, nullptr, nullptr); }

bool fileStamp(const _kzString8_allSize<500>& path, _kzFileStamp* stamp) {
    struct stat st;
    const bool file = probe(path.data, &st) && !isFolder(st);
    *stamp = file ? _kzFileStamp{st.st_mtim.tv_sec, st.st_mtim.tv_nsec, st.st_size} : _kzFileStamp{};
    return file;
}

bool fileDelete(const _kzString8_allSize<500>& path) {
    struct stat st;
    if (!probe(path.data, &st)) return true;
    return ::unlink(path.data) == 0;
}

bool fileSetTime(const _kzString8_allSize<500>& path, const _kzTime* time) {
    const time_t t = static_cast<time_t>(time ? time->value : _kzTime(true).value);
    const utimbuf times{t, t};
    return ::utime(path.data, &times) == 0;
}

bool fileMove(const _kzString8_allSize<500>& source, const _kzString8_allSize<500>& destination,
              const bool& overwrite) {
    struct stat st;
    if (probe(destination.data, &st) && !isFolder(st)) {
        if (!overwrite) return true;
        if (::unlink(destination.data) != 0) return false;
    }
    if (!probe(source.data, &st) || isFolder(st)) return false;
    return ::rename(source.data, destination.data) == 0;
}

bool folderExists(_kzString8_allSize<500>& path) { return folderExistsInPlace(path); }

bool folderExists(_kzString8_allSize<250>& path) { return folderExistsInPlace(path); }

bool folderExists(_kzString<500>& path) {
    if (path.length < 3) return false;
    path.dropEnd('/');
    return isExistingFolder(path.to_kzString8_250().data);
}

bool folderExists(const char* path) {
    _kzString8_allSize<500> copy(path);
    return folderExistsInPlace(copy);
}

bool folderCreate(const _kzString8_allSize<500>& path, const bool& withParents) {
    if (path.length < 2) return true;
    if (path.length != 2) {
        _kzString8_allSize<500> bare(path);
        bare.dropEnd('/');
        if (isExistingFolder(bare.data)) return true;
    }
    if (withParents) {
        const _kzString8_allSize<500> parent = pathFolder(path);
        if (parent.length == path.length && parent == path) return false; // nothing left to climb
        if (!folderCreate(parent, true)) return false;
    }
    return ::mkdir(path.data, 0777) == 0 || errno == EEXIST;
}
