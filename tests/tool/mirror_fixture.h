// A local folder and a network root in a temporary directory, for running mirror passes
// against real files.
#pragma once

#include <sys/stat.h>
#include <utime.h>

#include <cstdio>
#include <string>

#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

struct MirrorFolders {
    TempDir dir;
    std::string local = dir.file("local") + "/";
    std::string root = dir.file("network") + "/";
    std::string logs = root + "sub/log/";
    std::string jobs = root + "sub/cfg_global/__copyFromLocal/";

    MirrorFolders() {
        ::mkdir(local.c_str(), 0755);
        ::mkdir(root.c_str(), 0755);
        ::mkdir((root + "sub").c_str(), 0755);
        ::mkdir(logs.c_str(), 0755);
    }
};

inline std::string readFile(const std::string& path) {
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return "<missing>";
    std::string text;
    char buffer[4096];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) text.append(buffer, n);
    std::fclose(f);
    return text;
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
