// Stand-in for a server process: sleeps for the milliseconds given on the command line,
// or until it is killed when there is none.
#include <cstdlib>
#include <unistd.h>

int main(int argc, char** argv) {
    if (argc < 2) {
        for (;;) pause();
    }
    const long ms = std::strtol(argv[1], nullptr, 10);
    if (ms > 0) usleep(static_cast<useconds_t>(ms) * 1000);
    return 0;
}
