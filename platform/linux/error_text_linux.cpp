#include <cstddef>

#include "platform/platform_os.h"

// glibc offers two strerror_r: the GNU one, which C++ builds see and which never fails,
// and the POSIX one, which reports an unknown number as a failure. The POSIX one is the
// one we need, and glibc exports it under this name.
extern "C" int __xpg_strerror_r(int code, char* buffer, size_t size) noexcept;

bool kzErrorText_OS(int code, char* buffer, int size) {
    if (size < 1) return false;
    return __xpg_strerror_r(code, buffer, static_cast<size_t>(size)) == 0;
}
