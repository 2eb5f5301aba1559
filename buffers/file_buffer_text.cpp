// The text form of a file buffer: its bytes in lines of 100 characters, optionally between
// two marker lines of eleven tildes, and the way back, which keeps only the characters of
// the radix-85 code.
#include <cstring>

#include "buffers/file_buffer.h"

namespace {

const char kMarker[] = "~~~~~~~~~~~";
constexpr int kMarkerLength = 11;
const char kLineEnd[] = "\r\n";

bool textFormApplies(const _kzFileHeader& h) { return h.textMode != 0 && (h.version == 3 || h.version == 4); }

// The first run of eleven tildes that covers one of the offsets from, from + 10, ... (five
// more tildes right before it or right behind it); -1 if none.
int markerHit(const uint8_t* text, int size, int from) {
    const auto tildes = [&](int first, int count) {
        if (first < 0 || first + count > size) return false;
        for (int i = first; i < first + count; ++i)
            if (text[i] != '~') return false;
        return true;
    };
    for (int at = from; at < size; at += 10)
        if (text[at] == '~' && (tildes(at - 5, 5) || tildes(at + 1, 5))) return at;
    return -1;
}

bool keptInText(uint8_t c) {
    return c >= 33 && c <= 125 && c != 34 && c != 39 && c != 60 && c != 62 && c != 92 && c != 96;
}

} // namespace

void _kzFileBuffer::wrapText(const bool& markers) {
    if (!textFormApplies(header)) return;
    const _kzString8_allSize<250> marker(kMarker);
    if ((header.size >= 12 && std::memcmp(data, kMarker, kMarkerLength) == 0) || find(marker, -1) >= 0) return;
    _kzFileBuffer original;
    cloneWithGap(original, 0);
    const long long needed = static_cast<long long>(header.size) + 2LL * (header.size / 100) + 72;
    error = 0;
    if (needed > maxBufferSize || !reserveFresh(static_cast<int>(needed), maxBufferSize / 1048576)) return;
    header.size = 0;
    if (markers) {
        append(kLineEnd, 2);
        append(kMarker, kMarkerLength);
        append(kLineEnd, 2);
    }
    for (int done = 0; done < original.header.size;) {
        const int line = original.header.size - done < 100 ? original.header.size - done : 100;
        append(original.data + done, line);
        done += line;
        if (line == 100) append(kLineEnd, 2);
    }
    if (markers) {
        append(kLineEnd, 2);
        append(kMarker, kMarkerLength);
        append(kLineEnd, 2);
    }
}

void _kzFileBuffer::unwrapText(const bool& markers) {
    if (!textFormApplies(header)) return;
    _kzFileBuffer original;
    cloneWithGap(original, 0);
    const uint8_t* text = original.data;
    const int size = original.header.size;
    int begin = 0, end = size - 1;
    if (markers && text) {
        int hit = markerHit(text, size, 0);
        if (hit >= 0) {
            while (hit < size && text[hit] == '~') ++hit;
            begin = hit;
        }
        if (begin < size && (hit = markerHit(text, size, begin)) >= 0) {
            while (hit >= 0 && text[hit] == '~') --hit;
            end = hit;
        }
    }
    header.size = 0;
    for (int i = begin; text && i <= end; ++i)
        if (keptInText(text[i])) data[header.size++] = text[i];
}
