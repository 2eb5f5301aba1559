// Looking at real files from a test: their content, time, kind, and the descriptors that
// this process holds open.
#pragma once

#include <sys/stat.h>
#include <utime.h>

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

// The number of entries in /proc/self/fd.
inline int openDescriptors() {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}
