// A local folder and a network root in a temporary directory, for running mirror passes
// against real files.
#pragma once

#include <sys/stat.h>

#include <string>

#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

struct MirrorFolders {
    TempDir dir;
    std::string local = dir.file("local") + "/";
    std::string root = dir.file("network") + "/";
    std::string logs = root + "sub/log/";
    std::string jobs = root + "sub/cfg_global/__copyFromLocal/";

    MirrorFolders() {
        for (const std::string& folder : {local, root, root + "sub", logs}) ::mkdir(folder.c_str(), 0755);
    }
};
