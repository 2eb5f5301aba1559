// _kzFileBuffer: a block of bytes in memory behind a header of counters and flags, at most
// 1500 MiB. It grows, appends and inserts, reads on with a cursor, searches (Boyer-Moore,
// exact or ignoring case), lays its content out as text lines between markers and back, and
// names the failures of a file layer that fills such buffers. It does no file I/O itself.
// The radix-85 group code used for its text form stands in buffers/radix85.h.
#pragma once

#include <cstdint>

#include "strings/kz_string8.h"

#pragma pack(push, 1)
struct _kzFileHeader {
    uint32_t field0 = 0; // carried along by copies, as are the other fieldNN
    int32_t size = 0;    // bytes in use
    uint32_t field8 = 0;
    uint32_t size2 = 0; // a second byte count, raised with `size` by cloneWithGap
    uint32_t field16 = 0;
    uint32_t field20 = 0;
    int32_t readPos = 0;  // the cursor of readNext
    uint8_t textMode = 0; // wrapText and unwrapText act only where this is set ...
    uint8_t version = 1;  // ... and this is 3 or 4
    uint8_t field30 = 0;
    uint8_t field31 = 0;

    _kzFileHeader() = default;
    _kzFileHeader(const _kzFileHeader&) = default;
    // Copies every field but the read cursor, which starts again at 0.
    _kzFileHeader& operator=(const _kzFileHeader& other);
};

struct _kzFileBuffer {
    _kzFileHeader header;
    int32_t capacity = 0;    // bytes usable in data; the allocation has one more
    uint8_t* data = nullptr; // from calloc and realloc, owned here
    int32_t error = 0;       // the code of the last failure (see errorText)
    uint16_t reserved = 0;

    static constexpr int32_t maxBufferSize = 0x5DC00000; // 1500 MiB

    _kzFileBuffer() = default;
    ~_kzFileBuffer() { freeData(); }
    _kzFileBuffer(const _kzFileBuffer&) = delete;
    _kzFileBuffer& operator=(const _kzFileBuffer&) = delete;

    void freeData();
    // Room for `bytes` (at most maxMiB MiB), keeping the content, or freshly zeroed.
    bool reserveKeep(int bytes, int maxMiB);
    bool reserveFresh(int bytes, int maxMiB);
    void zeroData();

    // Copies `count` bytes to the start of data; the caller sets the size.
    bool setData(const void* src, const int& count);
    void getData(void* dst, const int& count) const;
    // Appends behind the size, growing to exactly the new size ...
    bool append(const void* src, const int& count);
    // ... or with 10240 bytes of slack, for series of small appends.
    void appendChunked(const void* src, const int& count);
    bool insertAt(int pos, const void* src, const int& count);
    bool readNext(void* dst, const int& count);
    // Gives dst the content behind a gap of `gap` bytes, and the header with both sizes
    // raised by the gap.
    void cloneWithGap(_kzFileBuffer& dst, const int& gap) const;

    // Offsets of the first occurrence at or behind `start`, or -1.
    int find(const _kzString8_allSize<250>& needle, int start) const;
    int findIgnoreCase(const _kzString8_allSize<250>& needle, int start) const;

    // Lines of 100 characters, optionally between markers of eleven tildes, and back.
    void wrapText(const bool& markers);
    void unwrapText(const bool& markers);

    _kzString8_allSize<150> errorText() const { return errorText(error); }
    static _kzString8_allSize<150> errorText(const int& code);
};
#pragma pack(pop)

constexpr int kzFileErrNoMemory = -100;

static_assert(sizeof(_kzFileHeader) == 32, "the file header is 32 packed bytes");
static_assert(sizeof(_kzFileBuffer) == 32 + 4 + sizeof(void*) + 4 + 2, "the buffer record is packed");
