#include "files/dir_scan.h"

#include <dirent.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "buffers/file_list.h"
#include "files/file_probes.h"
#include "files/path_strings.h"
#include "files/scan_filter.h"
#include "platform/file_kinds.h"
#include "platform/owners.h"

struct kzDirScanRecord {
    uint8_t active = 0;      // a walk is running
    uint8_t replay = 0;      // next() walks `entries`, not the directory stream
    uint8_t withFolders = 0; // folders are delivered too
    uint8_t readFailed = 0;  // opening or reading the folder failed in this walk
    _kzString<500> givenPath;
    _kzString<500> folder; // with trailing "/"; entry names are joined to it
    _kzFileList startFilters;
    _kzFileList endFilters;
    _kzString<500> scanPath;   // what opendir gets, without trailing "/"
    _kzString<500> namePrefix; // from a pattern such as "ab*"
    uint8_t attributesValid = 0;
    int32_t index = -1; // position in `entries`, -1 before the first
    _kzTime modified;
    int64_t size = 0;
    uint8_t isFolder = 0;
    uint16_t ownerId = 0;
    uint16_t groupId = 0;
    uint16_t mode = 0;
    dirent* current = nullptr;
    DIR* handle = nullptr;
    _kzFileList entries; // the snapshot: names without folder
    _kzDirScan* owner = nullptr;
};

_kzDirScan::_kzDirScan() : record(new (std::nothrow) kzDirScanRecord) {
    if (record) record->owner = this;
}

_kzDirScan::~_kzDirScan() {
    if (!record) return;
    closeDirectory();
    delete record; // its lists free their blocks
    record = nullptr;
}

void _kzDirScan::closeDirectory() {
    if (record->handle) closedir(record->handle);
    record->handle = nullptr;
    record->current = nullptr;
}

void _kzDirScan::addEndFilter(const _kzString<500>& text) {
    if (record && text.hasData()) record->endFilters.add(text, false, false);
}

void _kzDirScan::addStartFilter(const _kzString<500>& text) {
    if (record && text.hasData()) record->startFilters.add(text, false, false);
}

void _kzDirScan::start(const _kzString<500>& path, const bool& withFolders, const bool& snapshot,
                       const bool& sorted, const bool& descending) {
    if (!record) return;
    kzDirScanRecord& r = *record;
    closeDirectory();
    r.active = 0;
    r.replay = 0;
    r.withFolders = withFolders ? 1 : 0;
    r.readFailed = 0;
    r.givenPath = pathForwardSlashes(path);
    r.scanPath = r.givenPath;
    r.namePrefix.clear();

    const _kzString<500>& p = r.givenPath;
    const bool pattern = p.endsWith('*');
    if (pattern && p.length >= 2 && p.data[p.length - 2] == '/') {
        r.folder = p.left(p.length - 1); // "/x/*": the folder, every name
    } else if (pattern) {
        r.folder = pathFolder(p); // "/x/ab*": names beginning with "ab"
        r.namePrefix = _kzString<500>(pathFileName(p).asUni());
        r.namePrefix.setLength(static_cast<short>(r.namePrefix.length - 1));
        r.scanPath = r.folder.combined("*");
    } else if (fileExists(p)) {
        r.folder = pathFolder(p); // a file: what the walk then gives is not settled
    } else if (p.endsWith('/')) {
        r.folder = p;
        r.scanPath += "*";
    } else if (p.length < _kzString<500>::capacity) {
        r.folder = p.combined("/");
        r.scanPath += "/*";
    } else {
        r.folder = p;
    }
    r.scanPath.setLength(static_cast<short>(r.scanPath.length - 2)); // the folder without "/*"

    r.active = 1;
    r.replay = 0;
    r.entries.release();
    if (!snapshot && !sorted) return;

    while (next()) r.entries.add(currentName(), false, false);
    if (sorted) r.entries.sort(descending);
    r.index = -1;
    r.active = 1;
    r.replay = 1;
    closeDirectory();
}

bool _kzDirScan::next() {
    if (!record || !record->active) return false;
    kzDirScanRecord& r = *record;
    r.attributesValid = 0;
    if (r.replay) {
        if (r.index + 1 < r.entries.count) {
            ++r.index;
            return true;
        }
        r.active = 0;
        return false;
    }
    if (!r.handle) {
        r.handle = opendir(r.scanPath.to_kzString8_250().data);
        if (!r.handle) {
            r.readFailed = 1;
            r.active = 0;
            r.replay = 0;
            r.current = nullptr;
            return false;
        }
    }
    // Rejected entries are skipped in this loop, with nothing kept per entry. The end of the
    // folder and a failed read both give null; only a failure sets errno.
    errno = 0;
    while ((r.current = readdir(r.handle)) != nullptr) {
        r.attributesValid = 0;
        if (passesFilter()) return true;
        errno = 0;
    }
    if (errno != 0) r.readFailed = 1;
    closeDirectory();
    r.active = 0;
    r.replay = 0;
    return false;
}

// Whether the present entry of the directory stream is a folder. Where the directory tells
// the kind of an entry and the joined path is short enough to reach it unchanged, that
// answer spares a stat per entry; links and unknown kinds are read with stat.
bool _kzDirScan::entryIsFolder() {
    kzDirScanRecord& r = *record;
    const unsigned kind = r.current ? r.current->d_type : static_cast<unsigned>(DT_UNKNOWN);
    const bool kindKnown = kind != DT_UNKNOWN && kind != DT_LNK && !r.attributesValid &&
                           r.folder.length + static_cast<int>(std::strlen(r.current->d_name)) <= 249;
    if (kindKnown) return kind == DT_DIR;
    loadAttributes();
    return r.isFolder != 0;
}

bool _kzDirScan::passesFilter() {
    const kzDirScanRecord& r = *record;
    const bool folder = entryIsFolder();
    return kzScanAccepts(currentName(), folder, r.withFolders, r.startFilters, r.endFilters, r.namePrefix);
}

void _kzDirScan::loadAttributes() {
    kzDirScanRecord& r = *record;
    if (r.attributesValid) return;
    struct stat st;
    if (::stat(currentPath().to_kzString8_250().data, &st) != 0) {
        r.isFolder = 0;
        r.modified.value = 0;
        r.size = 0;
    } else {
        r.isFolder = kzHasFolderBit(st.st_mode) ? 1 : 0;
        r.modified.value = static_cast<int64_t>(st.st_mtime);
        r.size = static_cast<int64_t>(st.st_size);
        r.ownerId = static_cast<uint16_t>(st.st_uid);
        r.groupId = static_cast<uint16_t>(st.st_gid);
        r.mode = static_cast<uint16_t>(st.st_mode);
    }
    r.attributesValid = 1;
}

_kzString<500> _kzDirScan::currentName() const {
    if (!record) return _kzString<500>();
    const kzDirScanRecord& r = *record;
    if (r.replay)
        return (r.index >= 0 && r.index < r.entries.count) ? r.entries.data[r.index] : _kzString<500>();
    return r.current ? _kzString<500>(r.current->d_name) : _kzString<500>();
}

_kzString<500> _kzDirScan::currentPath() const {
    if (!record) return _kzString<500>();
    return record->folder.combined(currentName());
}

bool _kzDirScan::isFolder() {
    if (!record || !record->active) return false;
    loadAttributes();
    return record->isFolder != 0;
}

int64_t _kzDirScan::fileSize() {
    int64_t size = 0;
    fileSize(&size);
    return size;
}

_kzTime _kzDirScan::fileTime() {
    _kzTime time;
    fileTime(&time);
    return time;
}

bool _kzDirScan::fileSize(int64_t* size) {
    *size = 0;
    if (!record || !record->active) return false;
    loadAttributes();
    *size = record->size;
    return true;
}

bool _kzDirScan::fileTime(_kzTime* time) {
    time->value = 0;
    if (!record || !record->active) return false;
    loadAttributes();
    *time = record->modified;
    return true;
}

_kzString<250> _kzDirScan::accessText() {
    _kzString<250> text;
    if (!record) return text;
    loadAttributes();
    // Group ids go through the same user lookup.
    _kzString8_allSize<250> text8(kzRightsText(record->mode).asChar());
    text8.add(kzUserNameOrId(record->ownerId).asChar()).add(" ").add(kzUserNameOrId(record->groupId).asChar()).add(" ");
    text = _kzString<250>(text8.asChar());
    return text;
}

_kzString<500> _kzDirScan::givenPath() const { return record ? record->givenPath : _kzString<500>(); }

_kzString<500> _kzDirScan::scanPath() const { return record ? record->scanPath : _kzString<500>(); }

void _kzDirScan::stop() {
    if (!record) return;
    closeDirectory();
    record->active = 0;
}

void _kzDirScan::rewind() {
    if (!record || record->index < 0) return;
    record->active = 1;
    record->index = -1;
}

void _kzDirScan::releaseSnapshot() {
    if (!record) return;
    stop();
    record->replay = 0;
    record->index = -1;
    record->entries.release();
}

bool _kzDirScan::folderRead() const { return record && !record->readFailed; }

int _kzDirScan::entryCount() const { return record ? record->entries.count : 0; }

_kzString<500> _kzDirScan::entryName(int index) const { return record->entries.data[index]; }

int _kzDirScan::findEntry(const _kzString<500>& name, const bool& sameCase) const {
    return record ? record->entries.find(name, sameCase) : -1;
}
