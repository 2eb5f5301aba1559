#include "exe_cache/name_tests.h"

bool startsWithAny(const _kzString8_allSize<500>& name, std::initializer_list<const char*> texts) {
    for (const char* text : texts)
        if (name.startsWith(text)) return true;
    return false;
}

bool containsAny(const _kzString8_allSize<500>& name, std::initializer_list<const char*> texts) {
    for (const char* text : texts)
        if (name.indexOf(text, 0) >= 0) return true;
    return false;
}

bool endsWithAny(const _kzString8_allSize<500>& name, std::initializer_list<const char*> texts) {
    for (const char* text : texts)
        if (name.endsWith(text)) return true;
    return false;
}
