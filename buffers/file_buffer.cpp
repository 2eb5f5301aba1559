#include "buffers/file_buffer.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/system_error_text.h"

namespace {

constexpr long long kMiB = 1048576;

// A block of `bytes` + 1, zero-filled.
uint8_t* freshBlock(int bytes) { return static_cast<uint8_t*>(std::calloc(static_cast<size_t>(bytes) + 1, 1)); }

} // namespace

_kzFileHeader& _kzFileHeader::operator=(const _kzFileHeader& other) {
    std::memcpy(static_cast<void*>(this), &other, sizeof other);
    readPos = 0;
    return *this;
}

void _kzFileBuffer::freeData() {
    if (!data) return;
    std::free(data);
    data = nullptr;
    capacity = 0;
}

bool _kzFileBuffer::reserveKeep(int bytes, int maxMiB) {
    error = 0;
    if (bytes < 0 || bytes > maxMiB * kMiB) return false;
    if (capacity >= bytes) return true;
    uint8_t* grown = data ? static_cast<uint8_t*>(std::realloc(data, static_cast<size_t>(bytes) + 1)) : freshBlock(bytes);
    if (!grown) {
        std::free(data); // a failed realloc loses the content
        data = nullptr;
        capacity = 0;
        error = kzFileErrNoMemory;
        return false;
    }
    data = grown;
    capacity = bytes;
    return true;
}

bool _kzFileBuffer::reserveFresh(int bytes, int maxMiB) {
    error = 0;
    if (bytes < 0 || bytes > maxMiB * kMiB) return false;
    if (capacity >= bytes) return true;
    freeData();
    data = freshBlock(bytes);
    if (!data) {
        error = kzFileErrNoMemory;
        return false;
    }
    capacity = bytes;
    return true;
}

void _kzFileBuffer::zeroData() {
    if (data) std::memset(data, 0, static_cast<size_t>(capacity));
}

bool _kzFileBuffer::setData(const void* src, const int& count) {
    error = 0;
    if (count < 0 || count > maxBufferSize) return false;
    if (!reserveKeep(count, maxBufferSize / kMiB)) return false;
    if (count > 0) std::memcpy(data, src, static_cast<size_t>(count));
    return true;
}

void _kzFileBuffer::getData(void* dst, const int& count) const {
    if (count > 0 && data) std::memcpy(dst, data, static_cast<size_t>(count));
}

bool _kzFileBuffer::append(const void* src, const int& count) {
    if (count < 1) return true;
    error = 0;
    const long long needed = static_cast<long long>(header.size) + count;
    if (needed > maxBufferSize) return false;
    if (!reserveKeep(static_cast<int>(needed), maxBufferSize / kMiB)) return false;
    std::memcpy(data + header.size, src, static_cast<size_t>(count));
    header.size = static_cast<int32_t>(needed);
    return true;
}

void _kzFileBuffer::appendChunked(const void* src, const int& count) {
    if (count < 1) return;
    error = 0;
    const long long needed = static_cast<long long>(header.size) + count;
    if (needed > capacity) {
        const long long grown = needed + 10240;
        if (grown > maxBufferSize) return;
        if (!reserveKeep(static_cast<int>(grown), maxBufferSize / kMiB)) return;
    }
    std::memcpy(data + header.size, src, static_cast<size_t>(count));
    header.size = static_cast<int32_t>(needed);
}

bool _kzFileBuffer::insertAt(int pos, const void* src, const int& count) {
    if (count < 1) return true;
    if (pos >= header.size) return append(src, count);
    if (pos < 0) pos = 0;
    error = 0;
    const long long needed = static_cast<long long>(header.size) + count;
    if (needed > maxBufferSize) return false;
    if (!reserveKeep(static_cast<int>(needed), maxBufferSize / kMiB)) return false;
    // The content goes behind a gap as wide as the insertion; the head comes back in front.
    _kzFileBuffer shifted;
    cloneWithGap(shifted, count);
    if (!shifted.data) {
        error = shifted.error;
        return false;
    }
    std::memcpy(data + pos, src, static_cast<size_t>(count));
    std::memcpy(data + pos + count, shifted.data + count + pos, static_cast<size_t>(header.size - pos));
    header.size = static_cast<int32_t>(needed);
    return true;
}

bool _kzFileBuffer::readNext(void* dst, const int& count) {
    if (count < 0 || static_cast<long long>(header.readPos) + count > header.size) return false;
    if (count > 0) std::memcpy(dst, data + header.readPos, static_cast<size_t>(count)); // an empty buffer has no data
    header.readPos += count;
    return true;
}

void _kzFileBuffer::cloneWithGap(_kzFileBuffer& dst, const int& gap) const {
    dst.error = 0;
    const long long needed = static_cast<long long>(header.size) + gap;
    if (needed > maxBufferSize || !dst.reserveKeep(static_cast<int>(needed), maxBufferSize / kMiB)) return;
    dst.header = header;
    dst.header.size = static_cast<int32_t>(needed);
    dst.header.size2 = header.size2 + static_cast<uint32_t>(gap);
    dst.header.readPos = header.readPos;
    if (header.size > 0 && data) std::memcpy(dst.data + gap, data, static_cast<size_t>(header.size));
}

_kzString8_allSize<150> _kzFileBuffer::errorText(const int& code) {
    static const struct {
        int code;
        const char* text;
    } kTexts[] = {{0, "No Error"},
                  {kzFileErrNoMemory, "Unable to allocate memory"},
                  {-102, "Wrong File Header"},
                  {-103, "CRC Error, data corrupt!"},
                  {-104, "Unable to read data from file!"},
                  {-105, "Unable to write data into file!"},
                  {-106, "Decompression error, wrong result size"},
                  {-107, "File does not exists!"},
                  {-1000, "File error: End of file reached!"}};
    for (const auto& entry : kTexts)
        if (entry.code == code) return _kzString8_allSize<150>(entry.text);
    _kzString8_allSize<150> text;
    if (code == -101) return text.add("System error: ").add(kzSystemErrorText(-1).asChar());
    char line[64];
    if (code < -1000) std::snprintf(line, sizeof line, "File error %d.", -1000 - code);
    else std::snprintf(line, sizeof line, "unknown error %d.", code);
    return text.add(line);
}
