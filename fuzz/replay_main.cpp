// Runs a fuzz target without libFuzzer: over the files and folders given on the command
// line, then over a fixed series of pseudo-random inputs. This keeps the target built and
// its checks running with any compiler.
#include <dirent.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

void runFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    const std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

int runPath(const std::string& path) {
    struct stat st;
    if (stat(path.c_str(), &st) != 0) return 0;
    if (!S_ISDIR(st.st_mode)) {
        runFile(path);
        return 1;
    }
    int n = 0;
    if (DIR* dir = opendir(path.c_str())) {
        while (dirent* e = readdir(dir))
            if (e->d_name[0] != '.') n += runPath(path + "/" + e->d_name);
        closedir(dir);
    }
    return n;
}

} // namespace

int main(int argc, char** argv) {
    int files = 0;
    for (int i = 1; i < argc; ++i) files += runPath(argv[i]);
    std::mt19937 random(20261123);
    const int series = 20000;
    std::vector<uint8_t> bytes;
    for (int i = 0; i < series; ++i) {
        bytes.resize(random() % 600);
        for (uint8_t& b : bytes) b = static_cast<uint8_t>(random());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::printf("replayed %d files and %d generated inputs\n", files, series);
    int unreached = 0;
    for (int rule = 0; rule < kzFuzzRuleCount; ++rule) {
        if (kzFuzzReached[rule] > 0) continue;
        std::printf("no input reached: %s\n", kzFuzzRules[rule]);
        ++unreached;
    }
    return unreached == 0 ? 0 : 1;
}
