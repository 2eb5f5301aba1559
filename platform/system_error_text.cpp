#include "platform/system_error_text.h"

#include <cerrno>
#include <cstdio>

#include "platform/platform_os.h"

_kzString8_allSize<250> kzSystemErrorText(int code) {
    const int savedErrno = errno;
    const int number = code == -1 ? savedErrno : code;
    _kzString8_allSize<250> text;
    if (number == 0) {
        text = "No Error.";
        return text;
    }
    const bool known = kzErrorText_OS(number, text.data, 250);
    if (known) text.calcLength();
    if (!known || text.isEmpty()) {
        char fallback[32];
        std::snprintf(fallback, sizeof fallback, "Error %d.", number);
        text = fallback;
    }
    text.replace('\n', ' ');
    text.replace('\r', ' ');
    errno = savedErrno;
    return text;
}

_kzString<500> kzSystemErrorTextWide(int code) {
    const _kzString8_allSize<250> text = kzSystemErrorText(code);
    return _kzString<500>(text.asUni());
}
