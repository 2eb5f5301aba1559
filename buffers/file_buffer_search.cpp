// Boyer-Moore search in a file buffer, with the bad-character and the good-suffix table
// built on the stack for each call; exact, or matching a byte against both case forms of
// the needle's character.
#include "buffers/file_buffer.h"

namespace {

constexpr int kMaxNeedle = 250;

int upperOf(int c) { return (c >= 'a' && c <= 'z') ? c - 32 : c; }
int lowerOf(int c) { return (c >= 'A' && c <= 'Z') ? c + 32 : c; }

// Exact: one form of each needle byte.
struct Exact {
    const unsigned char* needle;
    bool same(int a, int b) const { return needle[a] == needle[b]; }
    bool matches(unsigned char byte, int i) const { return byte == needle[i]; }
    void enter(int* badCharacter, int i, int shift) const { badCharacter[needle[i]] = shift; }
};

// Ignoring case: both the upper and the lower form of each needle byte.
struct BothCases {
    const unsigned char* needle;
    bool same(int a, int b) const {
        return upperOf(needle[a]) == upperOf(needle[b]) || lowerOf(needle[a]) == lowerOf(needle[b]);
    }
    bool matches(unsigned char byte, int i) const { return byte == upperOf(needle[i]) || byte == lowerOf(needle[i]); }
    void enter(int* badCharacter, int i, int shift) const {
        badCharacter[upperOf(needle[i])] = shift;
        badCharacter[lowerOf(needle[i])] = shift;
    }
};

template <typename Match>
int boyerMoore(const uint8_t* data, int size, int m, int start, const Match& match) {
    if (start < 0) start = 0;
    if (m < 1 || start >= size || size - start < m) return -1;
    int badCharacter[256];
    for (int& entry : badCharacter) entry = m;
    for (int i = 0; i < m; ++i) match.enter(badCharacter, i, m - 1 - i); // the rightmost wins
    // Entry k: the smallest shift s below m at which the k matched bytes of the needle's end
    // stand again (bytes before the needle's start count as equal); m if there is none.
    int goodSuffix[kMaxNeedle + 2];
    goodSuffix[0] = 1;
    for (int k = 1; k <= m; ++k) {
        goodSuffix[k] = m;
        for (int s = 1; s < m; ++s) {
            int j = 0;
            while (j < k && (m - 1 - s - j < 0 || match.same(m - 1 - j, m - 1 - s - j))) ++j;
            if (j == k) {
                goodSuffix[k] = s;
                break;
            }
        }
    }
    if (m == 1) goodSuffix[1] = 1;
    const uint8_t* text = data + start;
    const int length = size - start;
    for (int pos = m - 1; pos < length;) {
        // While the last byte mismatches, the shift is its bad-character entry alone (the
        // good-suffix entry for no matched bytes is 1); only a candidate end is compared. The
        // common full shift is a branch of its own, so that the processor can run ahead
        // without waiting for each load.
        for (int shift; (shift = badCharacter[text[pos]]) != 0;) {
            if (shift == m) {
                if ((pos += m) >= length) return -1;
                continue;
            }
            if ((pos += shift) >= length) return -1;
        }
        int j = 0;
        while (j < m && match.matches(text[pos - j], m - 1 - j)) ++j;
        if (j == m) return start + pos - m + 1;
        const int bad = badCharacter[text[pos - j]] - j;
        pos += bad > goodSuffix[j] ? bad : goodSuffix[j];
    }
    return -1;
}

} // namespace

int _kzFileBuffer::find(const _kzString8_allSize<250>& needle, int start) const {
    if (!data) return -1;
    return boyerMoore(data, header.size, needle.length, start,
                      Exact{reinterpret_cast<const unsigned char*>(needle.data)});
}

int _kzFileBuffer::findIgnoreCase(const _kzString8_allSize<250>& needle, int start) const {
    if (!data) return -1;
    return boyerMoore(data, header.size, needle.length, start,
                      BothCases{reinterpret_cast<const unsigned char*>(needle.data)});
}
