// Fuzz target for the path and name logic of the mirror passes: the log mirror's
// destination names, pathFolder, pathNormalize and the scan's name filter.
//
// Destination names and the filter are compared with plain std::string models of their
// rules; pathFolder and pathNormalize must give the same text on the 8-bit and the 16-bit
// templates and keep their shape. Every result must keep the record invariants.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "buffers/file_list.h"
#include "files/path_strings.h"
#include "files/scan_filter.h"
#include "tests/support/text_of.h"
#include "tool/log_pass.h"

namespace {

using Input = FuzzInput;

[[noreturn]] void fail(const char* what, const std::string& a, const std::string& b) {
    std::fprintf(stderr, "path fuzz: %s\n  input: [%s]\n  other: [%s]\n", what, a.c_str(), b.c_str());
    std::abort();
}

// Text built from pieces that the path rules care about.
std::string randomText(Input& in, int pieces) {
    static const char* const kPieces[] = {"/", "//",   "\\",   "..",          "../",     ".", "a",
                                          "B", ".txt", ".TXT", "__local.txt", "__LOCAL", ":", "<Database>",
                                          "x", "sub",  "*",    "jobs.db",     "\xE4"};
    std::string text;
    const int n = in.small(pieces + 1);
    for (int i = 0; i < n; ++i) text += kPieces[in.small(sizeof kPieces / sizeof kPieces[0])];
    return text;
}

std::string upper(std::string s) {
    for (char& c : s)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
    return s;
}

// Replace every occurrence ignoring case, going on behind what was put in, cut at `cap`.
std::string replaceAll(std::string s, const std::string& from, const std::string& to, size_t cap) {
    size_t p = upper(s).find(upper(from));
    while (p != std::string::npos) {
        s = (s.substr(0, p) + to + s.substr(p + from.size())).substr(0, cap);
        const size_t next = p + to.size();
        p = next + from.size() > s.size() ? std::string::npos : upper(s).find(upper(from), next);
    }
    return s;
}

std::string modelLogDestination(const std::string& root, const std::string& name) {
    const std::string path = (root + "sub/log/" + name).substr(0, 500);
    const bool local = path.size() >= 11 && upper(path.substr(path.size() - 11)) == upper("__local.txt");
    return replaceAll(path, local ? "__local.txt" : ".txt", "__copyFromLocal.txt", 500);
}

template <typename S>
void checkRecord(const S& s, const char* what) {
    if (s.length > S::capacity || s.data[s.length] != 0) fail(what, "record invariant", "");
}

bool modelAccepts(const std::string& name, bool isFolder, bool withFolders,
                  const std::vector<std::string>& starts, const std::vector<std::string>& ends,
                  const std::string& prefix) {
    const auto begins = [&](const std::string& p) {
        return !name.empty() && !p.empty() && p.size() <= name.size() &&
               upper(name.substr(0, p.size())) == upper(p);
    };
    const auto finishes = [&](const std::string& p) {
        return !name.empty() && !p.empty() && p.size() <= name.size() &&
               upper(name.substr(name.size() - p.size())) == upper(p);
    };
    if (isFolder) {
        if (!withFolders || name == "." || name == "..") return false;
    } else if (!starts.empty()) {
        bool any = false;
        for (const std::string& s : starts) any = any || begins(s);
        if (!any) return false;
    } else if (!ends.empty()) {
        bool any = false;
        for (const std::string& e : ends) any = any || finishes(e);
        if (!any) return false;
    }
    return prefix.empty() || begins(prefix);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input in{data, size};
    const std::string root = randomText(in, 8) + "/";
    const std::string name = randomText(in, 6);

    // The log mirror's destination name.
    const _kzString<500> destination =
        logDestination(_kzString<500>(root.c_str()), _kzString<500>(name.c_str()));
    checkRecord(destination, "logDestination");
    const std::string expected = modelLogDestination(root.substr(0, 500), name);
    if (textOf(destination) != expected)
        fail("logDestination differs from the model", root + "|" + name, expected);

    // pathFolder and pathNormalize: the two templates agree on ASCII text.
    std::string path = randomText(in, 10);
    if (path.find('\xE4') != std::string::npos) path.clear();
    const _kzString8_allSize<500> folder8 = pathFolder(_kzString8_allSize<500>(path.c_str()));
    const _kzString<500> folder16 = pathFolder(_kzString<500>(path.c_str()));
    checkRecord(folder8, "pathFolder");
    if (textOf(folder8) != textOf(folder16)) fail("pathFolder: templates differ", path, textOf(folder8));
    const std::string f = textOf(folder8);
    std::string trimmed = path;
    if (trimmed.size() >= 3 && trimmed.back() == '/') trimmed.pop_back();
    const bool shaped = f.empty() || f == path || f == trimmed ||
                        (f.back() == '/' && trimmed.compare(0, f.size() - 1, f, 0, f.size() - 1) == 0);
    if (!shaped) fail("pathFolder is no folder of its path", path, f);

    _kzString8_allSize<500> n8(path.c_str());
    _kzString<500> n16(path.c_str());
    const _kzString8_allSize<500> normal8 = pathNormalize(n8);
    const _kzString<500> normal16 = pathNormalize(n16);
    checkRecord(normal8, "pathNormalize");
    if (textOf(normal8) != textOf(normal16)) fail("pathNormalize: templates differ", path, textOf(normal8));
    if (textOf(n8) != textOf(normal8)) fail("pathNormalize: argument and result differ", path, textOf(n8));
    if (path.size() >= 2 && textOf(normal8).find('\\') != std::string::npos)
        fail("backslash left", path, textOf(normal8));

    // The scan's name filter.
    _kzFileList starts, ends;
    std::vector<std::string> startTexts, endTexts;
    const auto someFilters = [&](_kzFileList& list, std::vector<std::string>& texts) {
        for (int i = in.small(3); i > 0; --i) {
            const std::string text = randomText(in, 2);
            if (text.empty()) continue; // a scan takes no empty filter
            texts.push_back(text);
            list.add(_kzString<500>(text.c_str()), false, false);
        }
    };
    someFilters(starts, startTexts);
    someFilters(ends, endTexts);
    const std::string prefix = in.small(3) == 0 ? randomText(in, 2) : "";
    const bool isFolder = in.small(2), withFolders = in.small(2);
    const std::string entry = in.small(8) == 0 ? (in.small(2) ? "." : "..") : name;
    const bool accepted = kzScanAccepts(_kzString<500>(entry.c_str()), isFolder, withFolders, starts, ends,
                                        _kzString<500>(prefix.c_str()));
    if (accepted != modelAccepts(entry, isFolder, withFolders, startTexts, endTexts, prefix))
        fail("scan filter differs from the model", entry, prefix);
    return 0;
}
