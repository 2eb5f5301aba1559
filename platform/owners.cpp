#include "platform/owners.h"

#include <pwd.h>

bool kzUserName(unsigned id, const char** name) {
    const passwd* user = ::getpwuid(id);
    *name = user ? user->pw_name : nullptr;
    return user != nullptr;
}

_kzString8_allSize<100> kzUserNameOrId(unsigned id) {
    _kzString8_allSize<100> text;
    const char* name = nullptr;
    if (!kzUserName(id, &name)) return text.add("ID ").addNr(static_cast<long long>(id));
    if (name) text = name;
    return text;
}

_kzString8_allSize<100> kzRightsText(unsigned mode) {
    _kzString8_allSize<100> text;
    for (int shift = 6; shift >= 0; shift -= 3) {
        if (mode & (04u << shift)) text += 'r';
        if (mode & (02u << shift)) text += 'w';
        if (mode & (01u << shift)) text += 'x';
        text += ' ';
    }
    return text;
}
