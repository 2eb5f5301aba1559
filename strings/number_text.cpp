#include <cstdio>

#include "strings/string_core.h"

namespace kzstr {

int formatInt(char* buf, long long v) { return std::snprintf(buf, 24, "%lld", v); }

int formatUnsigned(char* buf, unsigned long long v) { return std::snprintf(buf, 24, "%llu", v); }

} // namespace kzstr
