#include "platform/retry_io.h"

#include <unistd.h>

#include <cerrno>

ssize_t kzReadRetrying(int fd, void* buffer, size_t size) {
    ssize_t n;
    do n = ::read(fd, buffer, size);
    while (n < 0 && errno == EINTR);
    return n;
}

ssize_t kzWriteRetrying(int fd, const void* buffer, size_t size) {
    ssize_t n;
    do n = ::write(fd, buffer, size);
    while (n < 0 && errno == EINTR);
    return n;
}
