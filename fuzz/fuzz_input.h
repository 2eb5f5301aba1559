// A fuzz input read as a sequence of small decisions; past its end every byte is 0.
#pragma once

#include <cstddef>
#include <cstdint>

struct FuzzInput {
    const uint8_t* data;
    size_t size;
    size_t pos = 0;

    bool more() const { return pos < size; }
    uint8_t byte() { return pos < size ? data[pos++] : 0; }
    int small(int range) { return byte() % range; }
    // For ranges above 256: two bytes.
    int number(int range) { return (byte() << 8 | byte()) % range; }
};
