#include "files/copy_stats.h"

#include <cstdio>

namespace {

bool topBitSet(uint64_t v) { return (v >> 63) != 0; }

} // namespace

void _kzCopyStats::addCopy(uint64_t added, int64_t ms) {
    if (topBitSet(added) || ms < 0) return;
    ++files;
    bytes += added;
    elapsedMs += ms;
    if (chunkSize >= 1 && throttleMs != 0) throttledChunks = uint16_t(throttledChunks + added / chunkSize);
}

void _kzCopyStats::addCopyThrottled(uint64_t added, int64_t ms, int throttle, int32_t chunk) {
    if (topBitSet(added) || ms < 0) return;
    const int16_t pause = static_cast<int16_t>(throttle);
    throttleMs = static_cast<uint16_t>(pause < 0 ? 0 : pause);
    chunkSize = chunk < 1 ? defaultChunkSize() : chunk;
    ++files;
    bytes += added;
    elapsedMs += ms;
    if (throttleMs > 0) throttledChunks = uint16_t(throttledChunks + added / chunkSize);
}

float _kzCopyStats::speedSetting() const {
    if (throttleMs == 0 || elapsedMs == 0) return 100.0f;
    const int32_t chunk = chunkSize < 1 ? defaultChunkSize() : chunkSize;
    const float chunks = throttledChunks == 0 ? static_cast<float>(bytes / static_cast<uint64_t>(chunk))
                                              : static_cast<float>(throttledChunks);
    return (1.0f - (chunks * throttleMs) / static_cast<float>(elapsedMs)) * 100.0f;
}

float _kzCopyStats::speedMiBs() const {
    if (elapsedMs == 0) return 0.0f;
    return (static_cast<float>(bytes) / 1024.0f / 1024.0f * 1000.0f) / static_cast<float>(elapsedMs);
}

_kzString8_allSize<500> _kzCopyStats::statusText(bool aligned) const {
    char time[64];
    if (elapsedMs <= 60000)
        std::snprintf(time, sizeof time, "%d.%02ds", static_cast<int>(elapsedMs / 1000),
                      static_cast<int>(elapsedMs % 1000 / 10));
    else
        std::snprintf(time, sizeof time, "%d.%02dm.s", static_cast<int>(elapsedMs / 60000),
                      static_cast<int>(elapsedMs / 1000 % 60));
    const float mib = static_cast<float>(bytes) / 1024.0f / 1024.0f;
    const float setting = speedSetting();
    const int rounded = static_cast<int>(setting + (setting < 0 ? -0.5f : 0.5f));
    char text[600];
    std::snprintf(text, sizeof text,
                  aligned ? "%4d files copied ( %7.2f MiB. %s. %7.3f MiB/s. Copy speed setting: %3d"
                          : "%d files copied ( %0.2f MiB. %s. %0.3f MiB/s. Copy speed setting: %d",
                  files, static_cast<double>(mib), time, static_cast<double>(speedMiBs()), rounded);
    _kzString8_allSize<500> status(text);
    status += "% )";
    return status;
}
