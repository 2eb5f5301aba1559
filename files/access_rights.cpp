#include "files/access_rights.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

bool setModeReadWrite(const char* path) { return ::chmod(path, 0666) == 0; }

bool setModeAll(const char* path) { return ::chmod(path, 0777) == 0; }

bool addReadForAll(const char* path) {
    struct stat st;
    const mode_t mode = ::stat(path, &st) == 0 ? ((st.st_mode & 07777) | 0444) : 0777;
    return ::chmod(path, mode) == 0;
}

bool lookupUser(const char* userName, uint32_t& uid, uint32_t& gid) {
    const passwd* user = ::getpwnam(userName);
    if (!user) return false;
    uid = user->pw_uid;
    gid = user->pw_gid;
    return true;
}

bool setOwnerAndMode(const char* path, const char* userName) {
    uid_t uid = static_cast<uid_t>(-1); // leave the owner as it is
    uint32_t found = 0, group = 0;
    if (userName && *userName && lookupUser(userName, found, group)) {
        if (found == 0) return ::chmod(path, 0777) == 0;
        uid = found;
    }
    return ::chmod(path, ::chown(path, uid, static_cast<gid_t>(-1)) == 0 ? 0770 : 0777) == 0;
}

bool kzSetWheel(const char* path, const char* userName, bool withOwner, mode_t mode) {
    const group* wheel = ::getgrnam("wheel");
    if (!wheel) return false;
    uid_t uid = static_cast<uid_t>(-1);
    uint32_t found = 0, group = 0;
    if (withOwner && userName && *userName && lookupUser(userName, found, group)) uid = found;
    if (::chown(path, uid, wheel->gr_gid) != 0) return false;
    return ::chmod(path, mode) == 0;
}
