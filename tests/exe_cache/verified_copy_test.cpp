// One file brought up to date in a real folder: what is refused, what is created, what goes
// aside, what the logs and the copy totals say.
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "exe_cache/verified_copy.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

namespace {

TEST(VerifiedCopy, RefusedSourcesAndMissingFolders) {
    TempDir dir;
    writeFile(dir.file("empty"), "");
    writeFile(dir.file("src"), "data");
    mkdir(dir.file("a").c_str(), 0755);
    // A missing parent is made (mode 0777) when the folder two or, failing that, four levels
    // up is there; the third level is never looked at.
    const struct { std::string src, dst, error; } rows[] = {
        {"none", "d1", "Source file does not exists! " + dir.file("none")},
        {"empty", "d0", "Source has no file size! " + dir.file("empty")},
        {"src", "a/b/d2", ""},
        {"src", "a/x/y/z/d3", ""},
        {"src", "q/x/y/z/d4", "Copy root folder does not exist '" + dir.path() + "/q/' "},
    };
    for (const auto& row : rows) {
        _kzString8_allSize<500> error, info;
        EXPECT_EQ(copyFileChecked(narrow(dir.file(row.src)), narrow(dir.file(row.dst)), &error, &info, 0, nullptr), row.error.empty());
        EXPECT_EQ(textOf(error) + readFile(dir.file(row.dst)), row.error + (row.error.empty() ? "data" : "<missing>"));
    }
    EXPECT_EQ(statOf(dir.file("a/x/y/z")).st_mode & statOf(dir.file("a/x/y/z/d3")).st_mode & 0777, 0777u);
    EXPECT_FALSE(isFolderAt(dir.file("q")) || copyFileChecked(narrow(dir.file("none")), narrow(dir.file("d1")), nullptr, nullptr, 0, nullptr));
}

TEST(VerifiedCopy, ChangedFilesGoAsideAndOnlyRealCopiesAreCounted) {
    TempDir dir;
    // copyFileLogged copies root + sub + name to out/ + sub + name; sub is empty here.
    const _kzString8_allSize<500> root = narrow(dir.path() + "/"), out = narrow(dir.file("out/")), sub, name = narrow("src");
    const std::string src = dir.file("src"), copied = dir.file("out/src");
    _kzString8_allSize<1000> info, errors;
    _kzCopyStats stats;
    const uint8_t fast = 1;
    mkdir(dir.file("out").c_str(), 0755);
    writeFile(dir.file("out/src_old"), "older");
    // Up to date, nothing happens; a different time in either direction is a change.
    for (const auto& [content, when] : {std::pair<const char*, long long>{"first", 1000000000}, {"first", 1000000000}, {"secnd", 900000000}}) {
        writeFile(src, content);
        setModified(src, when);
        EXPECT_TRUE(copyFileLogged(root, out, sub, name, &info, &errors, false, fast, &stats));
        EXPECT_EQ(readFile(copied) + std::to_string(modifiedAt(copied)), content + std::to_string(when));
    }
    EXPECT_EQ(readFile(copied + "_old"), "first"); // over the older one
    EXPECT_EQ(textOf(info) + textOf(errors), "Copy " + src + " => " + copied + " ... ;\nRenaming dest file " + copied + ";\nCopy " + src + " => " + copied + " ... ;\n");
    EXPECT_EQ(stats.files * 1000 + stats.bytes + stats.throttleMs * 1000000, 5002010u);
    // A failed copy is logged and not counted; a full log keeps what fits.
    errors = _kzString8_allSize<1000>(std::string(990, 'x').c_str());
    EXPECT_FALSE(copyFileLogged(root, out, sub, narrow("none"), &info, &errors, false, fast, &stats));
    EXPECT_EQ(textOf(errors) + std::to_string(stats.files), std::string(990, 'x') + "Source fil2");
}

} // namespace
