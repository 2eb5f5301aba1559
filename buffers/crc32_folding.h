// CRC-32 of whole 16-byte blocks by carry-less multiplication, where the processor has it.
#pragma once

#include <cstdint>

// Runs the register form of the CRC (started at 0xFFFFFFFF, not yet inverted) over the
// longest run of whole 16-byte blocks at the start of `data`, and returns how many bytes
// that was: 0 where the processor lacks the instructions or the run is below 64 bytes.
uint64_t kzCrc32Folded(uint32_t& crc, const uint8_t* data, uint64_t length);
