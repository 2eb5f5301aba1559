// CPU seconds and resident memory per process, the CPU percentage between two tables, and
// the two sorts of the table.
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/system_error_text.h"
#include "process/process_list.h"
#include "process/process_load.h"
#include "process/process_os.h"

int kzMemoryMB(uint64_t residentBytes) { return static_cast<int>((((residentBytes + 512) >> 10) + 512) >> 10); }

bool kzMayNotBeRead(int error) { return error == EACCES || error == EPERM || error == ENOENT || error == ESRCH; }

double kzCpuPercent(double secondsNow, double secondsBefore, double interval) {
    const float d = static_cast<float>(secondsNow - secondsBefore);
    return static_cast<double>(d * 100.0f) / interval;
}

int kzMeasureLoad(uint32_t pid, double* cpuSeconds, int* memoryMB) {
    double seconds = 0;
    uint64_t bytes = 0;
    const int error = kzReadProcessLoad_OS(pid, &seconds, &bytes);
    *cpuSeconds = error ? 0 : seconds;
    *memoryMB = error ? 0 : kzMemoryMB(bytes);
    if (*memoryMB == 0 && bytes != 0) *memoryMB = 1;
    return error;
}

int _kzProcessList::measureProcess(const int& index) {
    if (!measureStarted) beginMeasure(); // the first measurement after a snapshot opens the period
    _kzProcessEntry& entry = entries[index];
    // Through locals: the packed entry's fields may stand at any 4-byte offset.
    double seconds = 0;
    int megabytes = 0;
    const int error = kzMeasureLoad(entry.pid, &seconds, &megabytes);
    entry.cpuSeconds = seconds;
    entry.memoryMB = megabytes;
    if (kzMayNotBeRead(error)) {
        entry.cpuSeconds = -5.0; // another user's process, or one that has just gone: no message
        return 1;
    }
    if (error) {
        errorText += " task_for_pid failed. kr:";
        errorText.addNr(error);
        errorText += ". ";
        errorText += kzSystemErrorText(error).asChar();
        entry.cpuSeconds = -error;
        return 0;
    }
    if (entry.memoryMB == 0) entry.memoryMB = 1; // 0 stands only for a process without a measurement
    return 1;
}

int _kzProcessList::measureProcessChecked(const int& index) {
    if (index == 0) return 1;
    if (index < 0 || index > count - 1) return 0;
    if (skipLoad) return 1;
    return measureProcess(index);
}

bool _kzProcessList::updateFull() {
    takeSnapshot();
    if (!collectLoad) return true;
    for (int i = 0; i < count; ++i)
        if (!measureProcess(i)) return false;
    logText += "; CPU+Mem: ";
    logText += stepTimer.restartText().asChar();
    fillOwners(true);
    return true;
}

bool _kzProcessList::cpuPercent(float& out, const int& index, const _kzProcessList& other, const int& scale) const {
    out = 0;
    if (!(measureInterval > 0) || !(entries[index].cpuSeconds > 0)) return false;
    const int before = other.indexOfPidInTable(entries[index].pid);
    if (before < 0) return true; // a new process, or an empty earlier table
    double percent = kzCpuPercent(entries[index].cpuSeconds, other.entries[before].cpuSeconds, other.measureInterval);
    if (scale >= 1) percent *= scale;
    out = static_cast<float>(percent);
    return true;
}

void _kzProcessList::appendCountText() {
    errorText += "(pCount:";
    errorText.addNr(count);
    errorText += ")  ";
}

namespace {

bool goesBefore(const _kzProcessEntry& a, const _kzProcessEntry& b, bool descending, bool byName) {
    if (!byName) return descending ? a.pid > b.pid : a.pid < b.pid;
    const int shorter = a.name.length < b.name.length ? a.name.length : b.name.length;
    int order = std::memcmp(a.name.data, b.name.data, static_cast<size_t>(shorter));
    if (order == 0) order = a.name.length - b.name.length;
    if (order == 0) return descending ? a.pid > b.pid : a.pid < b.pid;
    return descending ? order > 0 : order < 0;
}

} // namespace

void _kzProcessList::sortEntries(int left, int right, bool descending, bool byName) {
    if (right <= left) return;
    // One heap entry serves every exchange of this call.
    _kzProcessEntry* scratch = static_cast<_kzProcessEntry*>(std::malloc(sizeof(_kzProcessEntry)));
    if (!scratch) return;
    const auto exchange = [&](int a, int b) {
        std::memcpy(static_cast<void*>(scratch), &entries[a], sizeof *scratch);
        std::memmove(static_cast<void*>(&entries[a]), &entries[b], sizeof *scratch);
        std::memcpy(static_cast<void*>(&entries[b]), scratch, sizeof *scratch);
    };
    exchange((left + right) / 2, right);
    int store = left;
    for (int i = left; i < right; ++i)
        if (goesBefore(entries[i], entries[right], descending, byName)) exchange(i, store++);
    exchange(right, store);
    std::free(scratch);
    sortEntries(left, store - 1, descending, byName);
    sortEntries(store + 1, right, descending, byName);
}
