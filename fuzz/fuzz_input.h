// A fuzz input read as a sequence of small decisions; past its end every byte is 0. And the
// rules a model states, each counted when an input reaches it: a target names them in
// kzFuzzRules and calls reach(rule); the replay without libFuzzer fails where no input
// reached a rule, so a corpus that has lost its way to one shows.
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

extern const char* const kzFuzzRules[];
extern const int kzFuzzRuleCount;
inline int kzFuzzReached[64] = {};
inline void reach(int rule) { ++kzFuzzReached[rule]; }
