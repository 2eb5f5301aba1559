// Looking at real files from a test: their content, time, kind, and the descriptors that
// this process holds open.
#pragma once

#include <dirent.h>
#include <sys/stat.h>
#include <utime.h>

#include <cstdio>
#include <string>

// The whole content, or "<missing>" if the file can't be opened.
inline std::string readFile(const std::string& path) {
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return "<missing>";
    std::string text;
    char buffer[65536];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) text.append(buffer, n);
    std::fclose(f);
    return text;
}

inline struct stat statOf(const std::string& path) {
    struct stat st {};
    ::stat(path.c_str(), &st);
    return st;
}

inline long long modifiedAt(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 ? static_cast<long long>(st.st_mtime) : -1;
}

inline void setModified(const std::string& path, long long when) {
    const utimbuf times{static_cast<time_t>(when), static_cast<time_t>(when)};
    ::utime(path.c_str(), &times);
}

inline bool isFolderAt(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// The number of entries in /proc/self/fd.
inline int openDescriptors() {
    int n = 0;
    if (DIR* fds = opendir("/proc/self/fd")) {
        while (readdir(fds)) ++n;
        closedir(fds);
    }
    return n;
}
