// Environment variables, the size of a working buffer, and the names of component kinds.
#pragma once

#include <cstdint>

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

// The variable's text, cut at 250 or 5000 characters; empty if it isn't set.
_kzString8_allSize<250> kzGetEnv(const _kzString8_allSize<250>& name);
_kzString8_allSize<5000> kzGetEnvLong(const _kzString8_allSize<5000>& name);

// A working buffer for data of `size` bytes: a little larger than the data for small data,
// two thirds of it from 50 MiB, half of it from 100 MiB.
uint64_t kzBufferSizeFor(uint64_t size);

// The display name of a kind of suite component: "None" for 0, "unknown" outside the table.
_kzString<25> kzComponentKindName(const unsigned& kind);
