// Times kzCrc32 against zlib's crc32 on 64 MiB, and _kzFileBuffer::find against glibc's
// memmem on 64 MiB of random bytes and of English-like text with needles of 4, 16 and 64
// bytes, side by side in one process. Prints one line per figure: both medians of seven
// turns and the throughput ratio (the reference's time / ours; above 1 means faster).
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "buffers/checksums.h"
#include "buffers/file_buffer.h"

namespace {

double medianSeconds(const std::function<void()>& work) {
    std::vector<double> times;
    for (int turn = 0; turn < 7; ++turn) {
        const auto start = std::chrono::steady_clock::now();
        work();
        times.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    return times[3];
}

void report(const char* what, double ours, double reference, const char* referenceName) {
    std::printf("%-44s ours %.4f s, %s %.4f s -> ratio %.3f\n", what, ours, referenceName, reference, reference / ours);
}

} // namespace

int main() {
    constexpr size_t kSize = 64u << 20;
    std::mt19937_64 random(20261123);
    std::vector<uint8_t> bytes(kSize);
    for (uint8_t& b : bytes) b = static_cast<uint8_t>(random());
    volatile uint32_t sink = 0;
    const double ours = medianSeconds([&] { sink = sink + kzCrc32(bytes.data(), kSize); });
    const double zlib = medianSeconds([&] { sink = sink + static_cast<uint32_t>(crc32(0, bytes.data(), kSize)); });
    report("CRC-32 of 64 MiB:", ours, zlib, "zlib crc32");

    // English-like text: words of a small vocabulary, as in a log or a job database dump.
    static const char* const kWords[] = {"the", "render", "job", "frame", "node", "finished", "started", "error",
                                         "scene", "layer", "output", "time", "of", "and", "with", "server"};
    std::string text;
    while (text.size() < kSize) text += std::string(kWords[random() % 16]) + (random() % 9 ? " " : ".\n");
    text.resize(kSize);
    for (int kind = 0; kind < 2; ++kind) {
        _kzFileBuffer buffer;
        buffer.append(kind ? text.data() : reinterpret_cast<const char*>(bytes.data()), static_cast<int>(kSize));
        for (size_t length : {4u, 16u, 64u}) {
            // A needle that stands only at the very end, so that both searches read everything.
            std::string needle;
            for (size_t i = 0; i < length; ++i) needle += static_cast<char>(kind ? "qxzjvk"[random() % 6] : random() | 0x80);
            std::memcpy(buffer.data + kSize - length, needle.data(), length);
            const _kzString8_allSize<250> n(needle.c_str(), static_cast<int>(length));
            volatile long found = 0;
            const double bm = medianSeconds([&] { found = found + buffer.find(n, 0); });
            const double glibc = medianSeconds([&] {
                found = found + (static_cast<const uint8_t*>(memmem(buffer.data, kSize, needle.data(), length)) - buffer.data);
            });
            char what[64];
            std::snprintf(what, sizeof what, "find, %s, needle of %zu bytes:", kind ? "text" : "random bytes", length);
            report(what, bm, glibc, "memmem");
        }
    }
    return 0;
}
