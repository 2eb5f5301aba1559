// _kzFileList: the one growable container of the system, a plain heap array of whole
// _kzString<500> records in the order they were added (until sort is called). It grows by
// one entry at a time; if the memory can't be had, the list loses all its entries.
#pragma once

#include <cstdint>

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

struct _kzFileList {
    _kzString<500>* data = nullptr; // exactly `count` entries, or null
    int32_t count = 0;
    char scratch[500] = {}; // the text of the last entryAsChar

    _kzFileList() = default;
    ~_kzFileList();
    _kzFileList(const _kzFileList&) = delete;
    _kzFileList& operator=(const _kzFileList&) = delete;

    // Appends `text`, unless `checkDuplicates` is set and an equal entry exists.
    void add(const _kzString<500>& text, const bool& checkDuplicates, const bool& sameCase);
    // Index of the first entry equal to `text` (ignoring case unless `sameCase`), or -1.
    int find(const _kzString<500>& text, const bool& sameCase) const;
    // Puts `text` in front of position `index`; at or behind the end it is appended.
    void insertAt(int index, const _kzString<500>& text);
    void removeAt(int index);
    // Index of the first entry that holds `text`, or -1; an empty text is found nowhere.
    int findContaining(const _kzString<500>& text, const bool& sameCase) const;
    // The entry at `index`; an index outside the list gives the first entry.
    _kzString<500>* at(int index);
    // The entry as 8-bit text (at most 499 characters), valid until the next call; an
    // empty list gives an empty text.
    const char* entryAsChar(int index);
    // Stable sort regardless of case, a prefix in front of what continues it.
    void sort(const bool& descending);
    void assign(const _kzFileList& other);
    // All entries, each in single quotes and followed by a blank: "'a' 'b c' ".
    _kzString8_allSize<1000> quotedText() const;
    // Frees the entries and clears the whole record.
    void release();
};
