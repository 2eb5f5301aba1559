// Fuzz target for the buffers: the path list against a vector of texts; the file buffer's appends, insertions, read cursor and clones
// against a plain byte string, its two searches against a plain model search (the needle
// often standing right at the end of the data), its text envelope as a round trip and as a
// filter, the radix-85 groups on arbitrary bytes, and CRC-32 against zlib's on runs of up to
// 4000 bytes, whole and split at arbitrary points.
#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "buffers/checksums.h"
#include "buffers/file_buffer.h"
#include "buffers/file_list.h"
#include "buffers/radix85.h"

const char* const kzFuzzRules[] = {"a needle found that ends where the data ends", "a needle found nowhere",
                                   "the text envelope", "radix-85 groups", "appends", "insertions", "reads",
                                   "clones", "the path list", "CRC-32 of a run of 256 bytes or more"};
const int kzFuzzRuleCount = 10;

namespace {

using Input = FuzzInput;

// Up to maxLength bytes, from the alphabet's first `letters` characters, or any bytes for 0.
std::string textOf(Input& in, int maxLength, const char* alphabet, int letters) {
    std::string t;
    for (int n = in.small(maxLength + 1); n > 0; --n) t += letters ? alphabet[in.small(letters)] : static_cast<char>(in.byte());
    return t;
}

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "buffers fuzz: %s\n", what);
    std::abort();
}

int foldUpper(int c) { return (c >= 'a' && c <= 'z') ? c - 32 : c; }

// The first offset at or behind `start` where the needle stands, bytes compared by `same`.
template <typename Same>
int modelFind(const std::string& text, const std::string& needle, int start, Same same) {
    if (start < 0) start = 0;
    if (needle.empty()) return -1;
    for (size_t at = static_cast<size_t>(start); at + needle.size() <= text.size(); ++at) {
        size_t i = 0;
        while (i < needle.size() && same(static_cast<unsigned char>(text[at + i]), static_cast<unsigned char>(needle[i]))) ++i;
        if (i == needle.size()) return static_cast<int>(at);
    }
    return -1;
}

void searches(Input& in) {
    static const char kLetters[] = "abAB~zZ\xE4\xC4";
    std::string text = textOf(in, 300, kLetters, 9);
    const std::string needle = textOf(in, in.small(2) ? 4 : 70, kLetters, 9);
    if (in.small(2)) text += needle; // a needle that ends exactly at the end of the data
    const int start = in.small(320) - 10;
    _kzFileBuffer b;
    b.append(text.data(), static_cast<int>(text.size()));
    const _kzString8_allSize<250> n(needle.c_str(), static_cast<int>(needle.size()));
    const int found = modelFind(text, needle, start, [](int x, int y) { return x == y; });
    if (found >= 0 && found + needle.size() == text.size()) reach(0);
    if (found < 0) reach(1);
    if (b.find(n, start) != found) fail("find");
    const auto fold = [](int x, int y) { return x == foldUpper(y) || x == (y >= 'A' && y <= 'Z' ? y + 32 : y); };
    if (b.findIgnoreCase(n, start) != modelFind(text, needle, start, fold)) fail("findIgnoreCase");
}

// Appends, insertions (a place before the start means the start, one behind the end an
// append), reads with the cursor, and clones behind a gap, against a byte string.
void operations(Input& in) {
    _kzFileBuffer b;
    std::string model;
    int cursor = 0;
    for (int step = 0; in.more() && step < 40; ++step) {
        const std::string bytes = textOf(in, 20, nullptr, 0);
        const int count = static_cast<int>(bytes.size());
        const int operation = in.small(4);
        reach(4 + operation);
        switch (operation) {
        case 0:
            if (!b.append(bytes.data(), count)) fail("append");
            if (b.capacity < b.header.size) fail("capacity after an append");
            model += bytes;
            break;
        case 1: {
            const int at = in.small(60) - 10;
            if (!b.insertAt(at, bytes.data(), count)) fail("insertAt");
            model.insert(static_cast<size_t>(std::min(std::max(at, 0), static_cast<int>(model.size()))), bytes);
            break;
        }
        case 2: {
            char got[64] = {};
            const int n = in.small(24) - 2;
            const bool fits = n >= 0 && cursor + n <= static_cast<int>(model.size());
            if (b.readNext(got, n) != fits) fail("readNext's answer");
            if (fits && std::string(got, static_cast<size_t>(n)) != model.substr(static_cast<size_t>(cursor), static_cast<size_t>(n)))
                fail("readNext's bytes");
            if (fits) cursor += n;
            break;
        }
        default: {
            _kzFileBuffer clone;
            const int gap = in.small(8);
            b.cloneWithGap(clone, gap);
            if (clone.header.size != static_cast<int>(model.size()) + gap) fail("cloneWithGap: size");
            if (clone.header.readPos != cursor) fail("cloneWithGap: cursor");
            if (std::string(reinterpret_cast<char*>(clone.data) + gap, model.size()) != model) fail("cloneWithGap: bytes");
            break;
        }
        }
        if (b.header.size != static_cast<int>(model.size())) fail("size");
        if (b.header.size && std::string(reinterpret_cast<char*>(b.data), model.size()) != model) fail("content");
    }
}

// The path list against a vector of texts: duplicates by either case rule, insertion,
// removal, searches, a stable sort that ignores case (both ways), and copies.
void pathList(Input& in) {
    reach(8);
    static const char kLetters[] = "aAbB.";
    _kzFileList list;
    std::vector<std::string> model;
    const auto same = [](const std::string& a, const std::string& b, bool exact) {
        if (a.size() != b.size()) return false;
        for (size_t i = 0; i < a.size(); ++i)
            if (exact ? a[i] != b[i] : foldUpper(a[i]) != foldUpper(b[i])) return false;
        return true;
    };
    const auto upper = [](std::string t) {
        for (char& c : t) c = static_cast<char>(foldUpper(c));
        return t;
    };
    for (int step = 0; in.more() && step < 30; ++step) {
        const std::string text = textOf(in, 3, kLetters, 5);
        const _kzString<500> entry(text.c_str());
        const bool exact = in.small(2);
        int found = -1, containing = -1;
        for (size_t i = model.size(); i-- > 0;) {
            if (same(model[i], text, exact)) found = static_cast<int>(i);
            if (!text.empty() && (exact ? model[i] : upper(model[i])).find(exact ? text : upper(text)) != std::string::npos)
                containing = static_cast<int>(i);
        }
        switch (in.small(6)) {
        case 0: {
            const bool checked = in.small(2);
            list.add(entry, checked, exact);
            if (!checked || found < 0) model.push_back(text);
            break;
        }
        case 1:
            if (list.find(entry, exact) != found) fail("find");
            if (list.findContaining(entry, exact) != containing) fail("findContaining");
            break;
        case 2: {
            const int at = in.small(8) - 1;
            list.insertAt(at, entry); // a place before the start inserts nothing
            if (at >= 0) model.insert(model.begin() + std::min(at, static_cast<int>(model.size())), text);
            break;
        }
        case 3: {
            const int at = in.small(8) - 1;
            list.removeAt(at);
            if (at >= 0 && at < static_cast<int>(model.size())) model.erase(model.begin() + at);
            break;
        }
        case 4: {
            const bool descending = in.small(2);
            list.sort(descending);
            std::stable_sort(model.begin(), model.end(), [&](const std::string& a, const std::string& b) {
                return descending ? upper(a) > upper(b) : upper(a) < upper(b);
            });
            break;
        }
        default: {
            _kzFileList copy;
            copy.assign(list);
            if (copy.count != list.count) fail("assign: count");
            if (copy.count && copy.data == list.data) fail("assign: shared entries");
            break;
        }
        }
        if (list.count != static_cast<int>(model.size())) fail("path list count");
        for (int i = 0; i < list.count; ++i)
            if (list.entryAsChar(i) != model[static_cast<size_t>(i)]) fail("path list entry");
    }
}

bool kept(unsigned char c) { return c >= 33 && c <= 125 && c != 34 && c != 39 && c != 60 && c != 62 && c != 92 && c != 96; }

void envelope(Input& in) {
    reach(2);
    const bool markers = in.small(2);
    const std::string raw = textOf(in, 450, nullptr, 0);
    std::string allowed;
    for (unsigned char c : raw)
        if (kept(c)) allowed += static_cast<char>(c);
    _kzFileBuffer b;
    b.header.textMode = 1;
    b.header.version = 3;
    // Allowed characters come back unchanged after a round trip ...
    b.append(allowed.data(), static_cast<int>(allowed.size()));
    b.wrapText(markers);
    b.unwrapText(markers);
    if (std::string(reinterpret_cast<char*>(b.data), b.header.size) != allowed) fail("wrapText/unwrapText round trip");
    // ... and without markers anything else is dropped.
    _kzFileBuffer noisy;
    noisy.header.textMode = 1;
    noisy.header.version = 4;
    noisy.append(raw.data(), static_cast<int>(raw.size()));
    noisy.unwrapText(false);
    if (std::string(reinterpret_cast<char*>(noisy.data), noisy.header.size) != allowed) fail("unwrapText filter");
}

void groups(Input& in) {
    reach(3);
    unsigned int value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | in.byte();
    char out[5];
    unsigned int back = ~value;
    const int written = encodeGroup85(value, out);
    if (decodeGroup85(out, back, written) != written) fail("radix-85 round trip: length");
    if (back != value) fail("radix-85 round trip: value");
    char arbitrary[5];
    for (char& c : arbitrary) c = static_cast<char>(in.byte());
    const int available = in.small(6);
    back = 7;
    const int used = decodeGroup85(arbitrary, back, available);
    if (used > available) fail("decodeGroup85 read beyond its input");
    if (used == 0 && back != 7) fail("decodeGroup85 changed the value of nothing decoded");
}

void crc(Input& in) {
    std::string data;
    for (int n = in.number(4001); n > 0; --n) data += static_cast<char>(in.byte() ^ n);
    const auto* bytes = reinterpret_cast<const uint8_t*>(data.data());
    const uint32_t length = static_cast<uint32_t>(data.size());
    const uint32_t expected = static_cast<uint32_t>(crc32(0, bytes, length));
    if (length >= 256) reach(9);
    if (kzCrc32(bytes, length) != expected) fail("kzCrc32 differs from zlib");
    uint32_t running = 0xFFFFFFFFu;
    for (uint32_t done = 0; done < length;) {
        const uint32_t piece = std::min<uint32_t>(length - done, 1 + static_cast<uint32_t>(in.small(600)));
        kzCrc32Update(running, bytes + done, piece);
        done += piece;
    }
    if (~running != expected) fail("kzCrc32Update in pieces differs from zlib");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input in{data, size};
    switch (in.small(6)) {
    case 0: searches(in); break;
    case 1: envelope(in); break;
    case 2: groups(in); break;
    case 3: operations(in); break;
    case 4: pathList(in); break;
    default: crc(in); break;
    }
    return 0;
}
