#include <unistd.h>

#include "platform/platform_os.h"

bool kzExecutablePath_OS(char* buffer, int size) {
    if (size < 2) return false;
    const ssize_t n = ::readlink("/proc/self/exe", buffer, static_cast<size_t>(size - 1));
    if (n <= 0 || n >= size - 1) return false; // unknown, or possibly cut
    buffer[n] = 0;
    return true;
}
