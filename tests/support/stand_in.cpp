// Stand-in for a server process: sleeps for the milliseconds given on the command line (for
// ever with none or -1), after touching as many MiB of memory as a second argument asks.
#include <cstdlib>
#include <cstring>
#include <unistd.h>

int main(int argc, char** argv) {
    if (argc > 2) {
        const size_t bytes = std::strtoul(argv[2], nullptr, 10) << 20;
        std::memset(std::malloc(bytes), 1, bytes);
    }
    const long ms = argc > 1 ? std::strtol(argv[1], nullptr, 10) : -1;
    if (ms < 0)
        for (;;) pause();
    usleep(static_cast<useconds_t>(ms) * 1000);
    return 0;
}
