// Looking at real files from a test: their content, time, kind, and the descriptors that
// this process holds open.
#pragma once

#include <pwd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utime.h>

#include <cstring>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// The whole content, or "<missing>" if the file can't be opened.
inline std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return in ? std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()) : "<missing>";
}

// All zero where there is nothing to stat: no time, and no kind.
inline struct stat statOf(const std::string& path) {
    struct stat st {};
    ::stat(path.c_str(), &st);
    return st;
}

inline long long modifiedAt(const std::string& path) { return statOf(path).st_mtime; }

inline void setModified(const std::string& path, long long when) {
    const utimbuf times{static_cast<time_t>(when), static_cast<time_t>(when)};
    ::utime(path.c_str(), &times);
}

inline bool isFolderAt(const std::string& path) { return S_ISDIR(statOf(path).st_mode); }

// A socket file at the path (a socket bound there and closed): no folder, though its mode
// carries the folder bit 0x4000.
inline void makeSocket(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::close(fd);
}

// A file owner's or group's id named as the user database names it, "ID n" where it has no
// entry: the system names a group id through the user lookup too.
inline std::string accountName(unsigned id) {
    const passwd* entry = getpwuid(id);
    return entry ? entry->pw_name : "ID " + std::to_string(id);
}

// The number of entries in /proc/self/fd.
inline int openDescriptors() {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}
