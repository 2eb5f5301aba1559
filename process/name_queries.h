// The questions both process tables answer the same way, over any table with `count` and
// `entries` whose slots have `name`, `pid` and `uid`: names match whole and exactly (the
// caller has upper-cased the name, as the tables keep theirs), owners ignoring case.
#pragma once

#include <signal.h>

#include <cstdint>
#include <cstring>

#include <cstdlib>

#include "platform/system_error_text.h"
#include "process/process_os.h"
#include "process/raw_process.h"
#include "strings/kz_string8.h"

namespace kzproc {

inline bool sameName(const _kzString8_allSize<25>& entry, const _kzString8_allSize<25>& upperName) {
    return entry.data[0] == upperName.data[0] && entry.length == upperName.length &&
           std::memcmp(entry.data, upperName.data, upperName.length) == 0;
}

// An owner name compared in upper case, in a copy; the entry keeps its spelling.
inline bool sameOwner(_kzString8_allSize<25> owner, const _kzString8_allSize<25>& upperOwner) {
    return owner.makeUpper().isEqualSameCase(upperOwner);
}

// The number of entries of the name; *pidOut ends as the pid of the last of them. With
// `ownerOf(index)` given, only those whose owner matches `upperOwner` count.
template <typename Table, typename OwnerOf>
int countMatching(Table& table, const _kzString8_allSize<25>& upperName, const _kzString8_allSize<25>* upperOwner,
                  OwnerOf ownerOf, uint64_t* pidOut, bool firstOnly = false) {
    int n = 0;
    for (int i = 0; i < table.count; ++i) {
        if (!sameName(table.entries[i].name, upperName)) continue;
        if (upperOwner && !sameOwner(ownerOf(i), *upperOwner)) continue;
        ++n;
        if (pidOut) *pidOut = table.entries[i].pid;
        if (firstOnly) break;
    }
    return n;
}

template <typename Table>
int countByName(Table& table, const _kzString8_allSize<25>& upperName, uint64_t* pidOut, bool firstOnly = false) {
    return countMatching(table, upperName, nullptr, [](int) { return _kzString8_allSize<25>(); }, pidOut, firstOnly);
}

// A raw record's name as the tables keep it: at most 16 characters, in upper case.
inline _kzString8_allSize<25> upperNameOf(const kzRawProcess& record) {
    _kzString8_allSize<25> name(record.name, static_cast<int>(strnlen(record.name, sizeof record.name)));
    return name.makeUpper();
}

// Appends raw records as slots in the given order, up to `limit` slots; names in upper case,
// load fields cleared.
template <typename Table>
void storeRaw(Table& table, const kzRawProcess* records, long n, int limit, bool clearOwner) {
    for (long i = 0; i < n && table.count < limit; ++i) {
        auto& entry = table.entries[table.count++];
        entry.pid = records[i].pid;
        entry.parentPid = records[i].parentPid;
        entry.uid = records[i].uid;
        entry.name = upperNameOf(records[i]);
        if (clearOwner) entry.owner.clear();
        entry.memoryMB = 0;
        entry.cpuSeconds = 0;
    }
}

// Reads the kernel's table and appends it as storeRaw does. Where it can't be read, the table
// stays as it is and its errorText says why.
template <typename Table>
void collectInto(Table& table, int limit, bool clearOwner) {
    kzRawProcess* records = nullptr;
    long n = 0;
    if (kzReadRawProcesses_OS(&records, &n)) {
        storeRaw(table, records, n, limit, clearOwner);
    } else {
        table.errorText += " sysctl:";
        table.errorText += kzSystemErrorText(-1).asChar();
    }
    std::free(records);
}

template <typename Table>
void signalByName(const Table& table, const _kzString8_allSize<25>& upperName, int signal) {
    for (int i = 0; i < table.count; ++i)
        if (sameName(table.entries[i].name, upperName)) ::kill(static_cast<pid_t>(table.entries[i].pid), signal);
}

template <typename Table>
int indexOfPid(const Table& table, unsigned pid) {
    for (int i = 0; i < table.count; ++i)
        if (table.entries[i].pid == pid) return i;
    return -1;
}

} // namespace kzproc
