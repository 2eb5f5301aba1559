// Fuzz target for the path and name logic: the log mirror's destination names, the path
// texts (folder, file name, base name, relative or not, tidied), the executable's folder
// from argv[0] and one folder up, the copy's tail test, and the scan's name filter.
//
// Each is compared with a plain std::string model of its rules; pathFolder and
// pathNormalize must also give the same text on the 8-bit and the 16-bit templates. Every
// result must keep the record invariants.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "buffers/file_list.h"
#include "files/file_copy.h"
#include "files/path_strings.h"
#include "files/scan_filter.h"
#include "platform/executable_folder.h"
#include "tests/support/text_of.h"
#include "tool/log_pass.h"

const char* const kzFuzzRules[] = {"a log name of __local.txt", "a \"../\" resolved", "a relative argv[0]",
                                   "a tail that looks like zero fill", "a name the scan filter takes"};
const int kzFuzzRuleCount = 5;

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
                                          "x", "sub",  "*",    "jobs.db",     "\xE4", "[temp]", "[CFGPATH]/", "C:"};
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
    if (local) reach(0);
    return replaceAll(path, local ? "__local.txt" : ".txt", "__copyFromLocal.txt", 500);
}

// The folder, with its trailing "/": a path below 3 characters is its own folder; the root of
// a drive ("C:") or of a network path ("//server/share") is not climbed out of.
std::string modelFolder(std::string p, size_t capacity) {
    if (p.size() < 3) return p;
    if (p.back() == '/') p.pop_back();
    size_t rootEnd = 0;
    if (p.size() > 1 && p[1] == ':') rootEnd = 2;
    if (p.size() > 1 && p[1] == '/') {
        const size_t first = p.find('/', 2);
        const size_t second = first == std::string::npos ? p.find('/', 0) : p.find('/', first + 1);
        if (second == std::string::npos) return p;
        rootEnd = second;
    }
    const size_t last = p.rfind('/');
    if (last == std::string::npos) return "";
    if (last >= rootEnd) p.resize(last);
    return p.size() < capacity ? p + "/" : p;
}

// Doubled separators made single (a leading "//" stays), and the first run of "../" resolved
// against what stands before it, unless that is a bare placeholder such as "<Database>".
std::string modelNormalize(std::string p) {
    if (p.size() < 2) return p;
    for (char& c : p)
        if (c == '\\') c = '/';
    const bool network = p.compare(0, 2, "//") == 0;
    p = replaceAll(p, "//", "/", 500);
    if (network) p = ("/" + p).substr(0, 500);
    const size_t at = p.find("../");
    if (at == std::string::npos) return p;
    reach(1);
    std::string head = p.substr(0, at);
    const auto bareRoot = [&] {
        std::string copy = head;
        if (!copy.empty() && copy.back() == '/') copy.pop_back();
        return !head.empty() && head[0] == '<' && !copy.empty() && copy.back() == '>' && copy.find('/') == std::string::npos;
    };
    if (bareRoot()) return p;
    p.erase(0, at);
    while (p.compare(0, 3, "../") == 0 && !bareRoot()) {
        p.erase(0, 3);
        head = modelFolder(head, 500);
    }
    return (head + p).substr(0, 500);
}

std::string modelFileName(const std::string& p) {
    const size_t last = p.rfind('/');
    return (last == std::string::npos ? p : p.substr(last + 1)).substr(0, 100);
}

// Without folder and extension; a separator or a dot within the first two characters doesn't count.
std::string modelBaseName(std::string p, char separator) {
    const size_t last = p.rfind(separator);
    if (last != std::string::npos && last >= 2) p.erase(0, last + 1);
    const size_t dot = p.rfind('.');
    if (dot != std::string::npos && dot >= 2) p.resize(dot);
    return p;
}

bool modelRelative(const std::string& p) {
    if (p.size() < 3) return true;
    if (p[0] == '/' || (p[1] == ':' && p[2] == '/')) return false;
    for (const char* root : {"<DATABASE>", "[CFGPATH]", "[TEMP]"})
        if (upper(p).compare(0, std::strlen(root), root) == 0) return false;
    return true;
}

// One folder up, with a trailing "/"; a "/" at index 0 or 1 cuts nothing, and a server's share
// ("//server/share") is not left upward.
std::string modelParent(std::string p) {
    if (p.size() < 3) return p;
    if (p.back() == '/') p.pop_back();
    const size_t last = p.rfind('/');
    bool cut = last != std::string::npos && last >= 2;
    if (cut && p[1] == '/') {
        const size_t before = p.rfind('/', last - 1);
        cut = before != std::string::npos && before >= 2;
    }
    if (cut) p.resize(last);
    return p.size() < 250 ? p + "/" : p;
}

// The executable's folder from argv[0] when the system gives none (empty for none): below 4
// characters nothing; a complete path ("/..." or "C:...") or a bare name as it is; a relative
// path joined to the working folder, each "../" taking one folder off it.
std::string modelExecutableFolder(const std::string& argv0) {
    std::string f = argv0.substr(0, 250);
    if (f.size() < 4) return "";
    if (f[0] != '/' && f[1] != ':' && f.find('/') != std::string::npos) {
        reach(2);
        char cwd[250];
        std::string base = ::getcwd(cwd, sizeof cwd) ? cwd : "";
        if (base.size() >= 4) {
            if (base.back() != '/' && base.size() < 250) base += '/';
            size_t rest = 0;
            for (size_t at = f.find("../"); at != std::string::npos; at = f.find("../", at + 3)) {
                base = modelParent(base);
                rest = at + 3;
            }
            f = (base + f.substr(rest)).substr(0, 250);
        }
    }
    f = modelParent(f);
    if (f.size() >= 3 && f.compare(f.size() - 3, 3, "/./") == 0) f.resize(f.size() - 2);
    return f;
}

// Whether the end of a chunk of `n` bytes looks like unwritten zero fill: these bytes, counted
// from the end (1 is the last), must all be 0.
bool modelTailZero(const std::string& chunk) {
    const long n = static_cast<long>(chunk.size());
    std::vector<long> from;
    if (n >= 501) from = {1, 50, 200, 201, 202, 500, 501};
    else if (n >= 301) from = {1, 50, 300};
    else if (n >= 11) from = {1, 7, 10};
    else if (n >= 1) from = {1};
    else return false;
    for (const long p : from)
        if (chunk[static_cast<size_t>(n - p)] != 0) return false;
    return true;
}

template <typename S>
void checkRecord(const S& s, const char* what) {
    if (s.length > S::capacity) fail(what, "length above the capacity", "");
    if (s.data[s.length] != 0) fail(what, "no terminator", "");
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
    if (textOf(folder8) != modelFolder(path, 500)) fail("pathFolder differs from the model", path, textOf(folder8));
    if (textOf(pathFileName(_kzString8_allSize<500>(path.c_str()))) != modelFileName(path))
        fail("pathFileName differs from the model", path, modelFileName(path));
    const char separator = in.small(2) ? '/' : '\\';
    if (textOf(pathBaseName(_kzString8_allSize<500>(path.c_str()), separator)) != modelBaseName(path, separator))
        fail("pathBaseName differs from the model", path, modelBaseName(path, separator));
    if (pathIsRelative(_kzString8_allSize<500>(path.c_str())) != modelRelative(path) ||
        pathIsRelative(_kzString<250>(path.c_str())) != modelRelative(path))
        fail("pathIsRelative differs from the model", path, "");

    _kzString8_allSize<500> n8(path.c_str());
    _kzString<500> n16(path.c_str());
    const _kzString8_allSize<500> normal8 = pathNormalize(n8);
    const _kzString<500> normal16 = pathNormalize(n16);
    checkRecord(normal8, "pathNormalize");
    if (textOf(normal8) != textOf(normal16)) fail("pathNormalize: templates differ", path, textOf(normal8));
    if (textOf(n8) != textOf(normal8)) fail("pathNormalize: argument and result differ", path, textOf(n8));
    if (textOf(normal8) != modelNormalize(path)) fail("pathNormalize differs from the model", path, modelNormalize(path));

    // The executable's folder from argv[0], and one folder up.
    const std::string argv0 = randomText(in, 6);
    if (argv0.find('\xE4') == std::string::npos) {
        _kzString8_allSize<250> folder;
        const bool found = kzResolveExecutableFolder(folder, argv0.c_str());
        const std::string expected = modelExecutableFolder(argv0);
        if (found != !expected.empty()) fail("executable folder found or not, unlike the model", argv0, expected);
        if (textOf(folder) != expected) fail("executable folder differs from the model", argv0, expected);
        if (textOf(kzParentFolder(_kzString8_allSize<250>(argv0.c_str()))) != modelParent(argv0))
            fail("kzParentFolder differs from the model", argv0, modelParent(argv0));
    }

    // The tail test of the file copy, around its thresholds, with zeros where it looks.
    std::string chunk(static_cast<size_t>(in.small(2) ? in.small(12) : in.number(700)), 'x');
    for (int zeros = in.small(12); zeros > 0 && !chunk.empty(); --zeros) {
        static const long kPlaces[] = {1, 7, 10, 50, 200, 201, 202, 300, 500, 501, 2};
        const long place = kPlaces[in.small(11)];
        if (place <= static_cast<long>(chunk.size())) chunk[chunk.size() - static_cast<size_t>(place)] = 0;
    }
    const bool zeroFill = modelTailZero(chunk);
    if (zeroFill) reach(3);
    if (kzTailLooksZero(reinterpret_cast<const unsigned char*>(chunk.data()), static_cast<long>(chunk.size())) !=
        zeroFill)
        fail("tail test differs from the model", std::to_string(chunk.size()), "");

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
    const bool takes = modelAccepts(entry, isFolder, withFolders, startTexts, endTexts, prefix);
    if (takes) reach(4);
    if (accepted != takes)
        fail("scan filter differs from the model", entry, prefix);
    return 0;
}
