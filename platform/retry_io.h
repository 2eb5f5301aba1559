// read and write that go on where a signal interrupted them before anything was moved.
#pragma once

#include <sys/types.h>

#include <cstddef>

// As read(2) and write(2), called again for as long as they fail with EINTR.
ssize_t kzReadRetrying(int fd, void* buffer, size_t size);
ssize_t kzWriteRetrying(int fd, const void* buffer, size_t size);
