// _kzDirScan: walks the entries of one folder level, never entering sub-folders.
//
// Plain mode reads the directory stream entry by entry and hands back what passes the
// filters. Snapshot mode first reads the whole folder through the same filters into a
// list (sorted if asked), closes the directory, and then replays the list, so that a walk
// sees a fixed set of names even while files come and go. Names compare ignoring case.
//
// The handle owns one heap record; it closes its directory in stop() and when it goes.
#pragma once

#include <cstdint>

#include "strings/kz_string.h"
#include "time/kz_time.h"

struct kzDirScanRecord;

struct _kzDirScan {
    _kzDirScan();
    ~_kzDirScan();
    _kzDirScan(const _kzDirScan&) = delete;
    _kzDirScan& operator=(const _kzDirScan&) = delete;

    // Names must end with one of these (when no start filter is set). Empty texts are
    // ignored; the filters stay for the life of the scan.
    void addEndFilter(const _kzString<500>& text);
    // Names must begin with one of these; end filters then play no part.
    void addStartFilter(const _kzString<500>& text);

    // Starts a walk of `path`: a folder, or a pattern such as "/x/ab*" for names that begin
    // with "ab". With `snapshot` or `sorted` the folder is read whole first.
    void start(const _kzString<500>& path, const bool& withFolders, const bool& snapshot, const bool& sorted,
               const bool& descending);
    // Moves to the next entry that passes the filters; false at the end.
    bool next();

    // The present entry (valid after next() gave true): its bare name, and the folder with
    // the name (cut at 500 characters).
    _kzString<500> currentName() const;
    _kzString<500> currentPath() const;

    // The present entry's attributes, read with stat at the first need. An entry that
    // can't be read counts as a file of size 0 and time 0.
    bool isFolder();
    int64_t fileSize();
    _kzTime fileTime();
    // The same into out-values; the size is 0 when no walk is running. False then.
    bool fileSize(int64_t* size);
    bool fileTime(_kzTime* time);
    // Mode bits as "rw r r " (no dashes), then owner and group names.
    _kzString<250> accessText();

    _kzString<500> givenPath() const;
    _kzString<500> scanPath() const;

    // Closes the directory and ends the walk; a snapshot stays and can be rewound.
    void stop();
    // Walks a snapshot again from its start.
    void rewind();
    // Ends the walk and frees the snapshot, for a caller that reads the folder anew each
    // time and needs no list between walks.
    void releaseSnapshot();
    int entryCount() const;
    // False once the present walk failed to open its folder or to read it; after the start of
    // a snapshot, whether the whole folder was read, which tells an empty folder from one
    // that could not be read.
    bool folderRead() const;
    _kzString<500> entryName(int index) const;
    // Index of the snapshot's first entry equal to `name` (ignoring case unless `sameCase`),
    // or -1.
    int findEntry(const _kzString<500>& name, const bool& sameCase) const;

private:
    bool passesFilter();
    bool entryIsFolder();
    void loadAttributes();
    void closeDirectory();
    kzDirScanRecord* record;
};
