#include "tests/support/temp_dir.h"

#include <ftw.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

namespace {
int removeEntry(const char* path, const struct stat*, int, FTW*) { return ::remove(path); }
} // namespace

TempDir::TempDir(const char* base) {
    if (!base) base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/kz_test_XXXXXX";
    if (!mkdtemp(pattern.data())) ADD_FAILURE() << "mkdtemp failed for " << pattern;
    path_ = pattern;
}

TempDir::~TempDir() { nftw(path_.c_str(), removeEntry, 16, FTW_DEPTH | FTW_PHYS); }

void writeFile(const std::string& path, const std::string& content) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << content;
    if (!out) ADD_FAILURE() << "could not write " << path;
}
