// Fills a folder with files for the benchmarks: make_tree DIR COUNT MIN_BYTES MAX_BYTES
// [SUFFIX]. Sizes and contents are pseudo-random but the same on every run.
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    if (argc < 5) {
        std::fprintf(stderr, "usage: make_tree DIR COUNT MIN_BYTES MAX_BYTES [SUFFIX]\n");
        return 2;
    }
    const std::string dir = argv[1];
    const long count = std::atol(argv[2]);
    const long low = std::atol(argv[3]), high = std::atol(argv[4]);
    const std::string suffix = argc > 5 ? argv[5] : ".txt";
    std::mt19937_64 random(20261123);
    std::vector<char> bytes(static_cast<size_t>(high));
    for (char& b : bytes) b = static_cast<char>('a' + random() % 26);
    for (long i = 0; i < count; ++i) {
        const long size = low + static_cast<long>(random() % static_cast<unsigned long>(high - low + 1));
        const std::string path = dir + "/file" + std::to_string(i) + suffix;
        FILE* f = std::fopen(path.c_str(), "wb");
        if (!f || std::fwrite(bytes.data(), 1, static_cast<size_t>(size), f) != static_cast<size_t>(size))
            return 1;
        std::fclose(f);
    }
    return 0;
}
