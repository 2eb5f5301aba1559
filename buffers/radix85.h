// A radix-85 code for groups of 32 bits, five printable characters a group, least
// significant digit first; `z` stands for a whole group of 0 and `^` for 0xFFFFFFFF. Its
// alphabet is also what the text form of a file buffer keeps.
#pragma once

// The 85 digits, digit 0 first.
extern const char kzRadix85Alphabet[86];

// The value of *p, 0 to 84; a character outside the alphabet gives 0.
int decodeDigit85(const char* p);
// Writes one group and returns how many characters it took (1 or 5).
int encodeGroup85(unsigned int value, char* out);
// Reads one group from `available` characters; returns how many it used, 0 if too few.
int decodeGroup85(const char* in, unsigned int& value, const int& available);
// Whether the text form keeps this byte: the alphabet, `z` and `^`.
bool isRadix85Character(unsigned char c);
