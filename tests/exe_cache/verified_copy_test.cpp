// One file brought up to date in a real folder: the folders it may make and those it may not.
// What goes aside, what is logged and counted is proven by whole refreshes.
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "exe_cache/verified_copy.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

namespace {

TEST(VerifiedCopy, AMissingParentIsMadeOnlyBelowAnExistingRoot) {
    TempDir dir;
    writeFile(dir.file("src"), "data");
    mkdir(dir.file("a").c_str(), 0755);
    // The folder two levels up, or failing that four levels up, must be there; the third
    // level is never looked at.
    const struct { std::string dst, error; } rows[] = {
        {"a/x/y/z/d3", ""},
        {"q/x/y/z/d4", "Copy root folder does not exist '" + dir.path() + "/q/' "},
    };
    for (const auto& row : rows) {
        _kzString8_allSize<500> error, info;
        const bool copied = copyFileChecked(narrow(dir.file("src")), narrow(dir.file(row.dst)), &error, &info, 0, nullptr);
        EXPECT_EQ(copied, row.error.empty());
        EXPECT_EQ(textOf(error), row.error);
        EXPECT_EQ(readFile(dir.file(row.dst)), copied ? "data" : "<missing>");
    }
    EXPECT_EQ(statOf(dir.file("a/x/y/z")).st_mode & 0777, 0777u); // folders made open to all
    EXPECT_EQ(statOf(dir.file("a/x/y/z/d3")).st_mode & 0777, 0777u);
    EXPECT_FALSE(isFolderAt(dir.file("q")));
    // Without texts the answer is the same.
    EXPECT_FALSE(copyFileChecked(narrow(dir.file("none")), narrow(dir.file("d1")), nullptr, nullptr, 0, nullptr));
}

} // namespace
