// Mode and owner of what the suite creates: small, silent wrappers of chmod and chown. Each
// gives a boolean and leaves errno as the failed call left it, so that a caller can fetch
// the system's text right behind it. A 16-bit path is narrowed to its first 249 characters.
#pragma once

#include <sys/types.h>

#include <cstdint>

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

bool setModeReadWrite(const char* path); // 0666
bool setModeAll(const char* path);       // 0777
// The present mode with read for all added (0444); 0777 if the mode can't be read.
bool addReadForAll(const char* path);
// Hands the file to a user and closes it to others (0770); a file that could not be handed
// over is opened to everybody (0777). The name of uid 0 means no chown and 0777.
bool setOwnerAndMode(const char* path, const char* userName);
bool lookupUser(const char* userName, uint32_t& uid, uint32_t& gid);
// The group "wheel" (and with `userName` the owner too), then `mode`; false where the
// machine has no group "wheel", changing nothing.
bool kzSetWheel(const char* path, const char* userName, bool withOwner, mode_t mode);

template <int N>
bool setModeReadWrite(const _kzString<N>& path) {
    return setModeReadWrite(path.to_kzString8_250().data);
}
template <int N>
bool setModeAll(const _kzString<N>& path) {
    return setModeAll(path.to_kzString8_250().data);
}
template <int N>
bool setModeAllQuiet(const _kzString<N>& path) {
    setModeAll(path);
    return true;
}
template <int N>
bool addReadForAll(const _kzString<N>& path) {
    return addReadForAll(path.to_kzString8_250().data);
}
template <int N>
bool setOwnerAndMode(const _kzString<N>& path, const _kzString<N>& userName) {
    return setOwnerAndMode(path.to_kzString8_250().data, userName.to_kzString8_250().data);
}
template <int N>
bool setGroupWheel660(const _kzString8_allSize<N>& path) {
    return kzSetWheel(path.data, "", false, 0660);
}
template <int N>
bool setGroupWheel770(const _kzString8_allSize<N>& path) {
    return kzSetWheel(path.data, "", false, 0770);
}
template <int N>
bool setOwnerGroupWheel770(const _kzString<N>& path, const char* userName) {
    return kzSetWheel(path.to_kzString8_250().data, userName, true, 0770);
}
