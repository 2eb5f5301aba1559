// The name tests of the cache and its one way of writing a log: small helpers shared by the
// classification, the verified copy and the refresh.
#pragma once

#include <initializer_list>

#include "strings/kz_string8.h"

// Whether a file name starts with, contains or ends with any of the texts, ignoring case.
bool startsWithAny(const _kzString8_allSize<500>& name, std::initializer_list<const char*> texts);
bool containsAny(const _kzString8_allSize<500>& name, std::initializer_list<const char*> texts);
bool endsWithAny(const _kzString8_allSize<500>& name, std::initializer_list<const char*> texts);

// Appends the parts one after another to `text`, if it is present; what does not fit is cut.
template <int N>
void appendTo(_kzString8_allSize<N>* text, std::initializer_list<const char*> parts) {
    if (!text) return;
    for (const char* part : parts) text->add(part);
}
