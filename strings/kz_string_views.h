// Capacity-free views of the current string records.
//
// A view has the same head as the records (length, then for the 16-bit form a reserved
// word) followed by the characters, with no array size of its own. `asUni()` of a record
// of any capacity returns the record's own address as a view; this is how strings of
// different capacities meet, since no template converts directly from a sibling capacity.
// The views are declared may_alias because they are, by design, a second type for the
// same bytes.
#pragma once

#include <cstdint>

struct __attribute__((may_alias)) _kzString_Uni_pointer {
    uint16_t length;
    uint16_t reserved;
    unsigned short data[1]; // the first of `length` characters and a terminator

    const unsigned short* chars() const { return data; }
    unsigned short* chars() { return data; }
};

struct __attribute__((packed, may_alias)) _kzString8_Uni_pointer {
    uint16_t length;
    char data[1]; // the first of `length` characters and a terminator

    const char* chars() const { return data; }
    char* chars() { return data; }
};

static_assert(sizeof(_kzString_Uni_pointer) == 6, "16-bit view head: length, reserved, text");
static_assert(sizeof(_kzString8_Uni_pointer) == 3, "8-bit view head: length, text");
