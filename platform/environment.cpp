#include "platform/environment.h"

#include <cstdlib>

_kzString8_allSize<250> kzGetEnv(const _kzString8_allSize<250>& name) {
    return _kzString8_allSize<250>(std::getenv(name.data));
}

_kzString8_allSize<5000> kzGetEnvLong(const _kzString8_allSize<5000>& name) {
    return _kzString8_allSize<5000>(std::getenv(name.data));
}

uint64_t kzBufferSizeFor(uint64_t size) {
    if (size < 52428800) return size + (size >> 12) + (size >> 14) + 211;
    if (size < 104857600) return size * 2 / 3;
    return size >> 1;
}

_kzString<25> kzComponentKindName(const unsigned& kind) {
    static const char* const kNames[] = {
        "None",    "Server",   "Client",  "Monitor", "Submitter", "Renderer",   "Scheduler",
        "Worker",  "Manager",  "Console", "Service", "Plugin",    "Launcher",   "Updater",
        "Watcher", "Uploader", "Viewer",  "Editor",  "Converter", "Downloader", "Tool",
    };
    static_assert(sizeof kNames / sizeof kNames[0] == 21, "kinds 0 to 20");
    return _kzString<25>(kind < 21 ? kNames[kind] : "unknown");
}
