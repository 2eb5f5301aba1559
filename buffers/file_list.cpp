#include "buffers/file_list.h"

#include <cstdlib>
#include <cstring>

namespace {

using Entry = _kzString<500>;

void copyEntry(Entry* to, const Entry& from) {
    std::memcpy(static_cast<void*>(to), &from, sizeof(Entry));
    to->reserved = 0;
}

void swapEntries(Entry* a, Entry* b) {
    unsigned char held[sizeof(Entry)];
    std::memcpy(held, static_cast<void*>(a), sizeof(Entry));
    std::memcpy(static_cast<void*>(a), static_cast<void*>(b), sizeof(Entry));
    std::memcpy(static_cast<void*>(b), held, sizeof(Entry));
}

} // namespace

_kzFileList::~_kzFileList() {
    std::free(data);
    data = nullptr;
}

void _kzFileList::release() {
    std::free(data);
    data = nullptr;
    count = 0;
    std::memset(scratch, 0, sizeof scratch);
}

void _kzFileList::add(const Entry& text, const bool& checkDuplicates, const bool& sameCase) {
    if (checkDuplicates && find(text, sameCase) >= 0) return;
    const size_t bytes = static_cast<size_t>(count + 1) * sizeof(Entry);
    void* block = data ? std::realloc(static_cast<void*>(data), bytes)
                       : std::calloc(static_cast<size_t>(count + 1), sizeof(Entry));
    if (!block) {
        std::free(data); // the list loses its entries rather than half of them
        data = nullptr;
        count = 0;
        return;
    }
    data = static_cast<Entry*>(block);
    copyEntry(&data[count], text);
    ++count;
}

int _kzFileList::find(const Entry& text, const bool& sameCase) const {
    for (int i = 0; i < count; ++i) {
        const bool equal = sameCase ? (data[i].length == text.length &&
                                       kzstr::equalRange(data[i].data, text.data, text.length, false))
                                    : data[i].isEqual(text);
        if (equal) return i;
    }
    return -1;
}

void _kzFileList::insertAt(int index, const Entry& text) {
    if (index < 0) return;
    add(text, false, false);
    if (index >= count - 1 || !data) return;
    std::memmove(static_cast<void*>(&data[index + 1]), &data[index],
                 static_cast<size_t>(count - 1 - index) * sizeof(Entry));
    copyEntry(&data[index], text);
}

void _kzFileList::removeAt(int index) {
    if (index < 0 || index >= count) return;
    std::memmove(static_cast<void*>(&data[index]), &data[index + 1],
                 static_cast<size_t>(count - 1 - index) * sizeof(Entry));
    --count;
}

int _kzFileList::findContaining(const Entry& text, const bool& sameCase) const {
    for (int i = 0; i < count; ++i)
        if ((sameCase ? data[i].indexOfCaseSen(text, 0) : data[i].indexOf(text, 0)) >= 0) return i;
    return -1;
}

Entry* _kzFileList::at(int index) { return (index < 0 || index >= count) ? data : &data[index]; }

const char* _kzFileList::entryAsChar(int index) {
    const Entry* entry = at(index);
    if (!entry) {
        scratch[0] = 0;
        return scratch;
    }
    entry->toChar(scratch, sizeof scratch);
    return scratch;
}

void _kzFileList::sort(const bool& descending) {
    for (int last = count - 1; last >= 1; --last)
        for (int j = 0; j < last; ++j) {
            const int order = data[j].compare(data[j + 1]);
            if (descending ? order < 0 : order > 0) swapEntries(&data[j], &data[j + 1]);
        }
}

void _kzFileList::assign(const _kzFileList& other) {
    if (&other == this) return;
    std::free(data);
    data = nullptr;
    count = 0;
    if (other.count <= 0) return;
    void* block = std::calloc(static_cast<size_t>(other.count), sizeof(Entry));
    if (!block) return;
    data = static_cast<Entry*>(block);
    std::memcpy(static_cast<void*>(data), other.data, static_cast<size_t>(other.count) * sizeof(Entry));
    count = other.count;
}

_kzString8_allSize<1000> _kzFileList::quotedText() const {
    _kzString8_allSize<1000> text;
    char narrow[1001];
    for (int i = 0; i < count; ++i) {
        data[i].toChar(narrow, sizeof narrow);
        text += "'";
        text += narrow; // up to its first NUL
        text += "' ";
    }
    return text;
}
