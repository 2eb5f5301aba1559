#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "files/path_strings.h"
#include "tests/support/text_of.h"

namespace {

using Row = std::pair<std::string, std::string>;

TEST(PathStrings, FolderOfEachKindOfPath) {
    const std::vector<Row> rows = {
        {"/a/b/c.txt", "/a/b/"},
        {"/a/b/", "/a/"},
        {"/ab", "/"},
        {"c.txt", ""},
        {"C:/x", "C:/"},
        {"C:/", ""},
        {"//server/share/x", "//server/share/"},
        {"//server/share", "//server/share"},
        {"a/b/c", "a/b/c"},
        {"a/", "a/"},
        {"/x", "/x"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(textOf(pathFolder(wide(row.first))), row.second) << row.first;
        EXPECT_EQ(textOf(pathFolder(narrow(row.first))), row.second) << row.first;
        EXPECT_EQ(textOf(pathFolder(_kzString8_allSize<200>(row.first.c_str()))), row.second) << row.first;
    }
    // A folder that fills the record gets no "/" behind it (here a "/" before the drive
    // mark is below the root, so nothing is cut).
    const std::string full = "/:" + std::string(248, 'f');
    const _kzString<250> folder = pathFolder(_kzString<250>(full.c_str()));
    EXPECT_EQ(folder.length, 250);
    EXPECT_FALSE(folder.endsWith('/'));
}

TEST(PathStrings, NormaliseResolvesTheFirstRunOfParents) {
    const std::vector<Row> rows = {
        {"<Database>/a/../../x", "<Database>/../x"},
        {"\\\\s\\d\\e\\..\\f", "//s/d/f"},
        {"a/b/../../c/../d", "a/c/../d"},
        {"../x", "x"},
        {"a/../b", "a/b"},
        {"/a///b//c", "/a//b/c"},
        {"<Database>/../x", "<Database>/../x"},
        {"/a/b/c/../../d", "/a/d"},
        {"x", "x"},
    };
    for (const Row& row : rows) {
        _kzString8_allSize<500> path = narrow(row.first);
        EXPECT_EQ(textOf(pathNormalize(path)), row.second) << row.first;
        EXPECT_EQ(textOf(path), row.second) << "the argument changes too: " << row.first;
        _kzString<500> widePath = wide(row.first);
        EXPECT_EQ(textOf(pathNormalize(widePath)), row.second) << row.first;
    }
}

TEST(PathStrings, NamesBaseNamesAndRelativePaths) {
    EXPECT_EQ(textOf(pathFileName(wide("a/"))), "");
    EXPECT_EQ(textOf(pathFileName(wide("abc"))), "abc");
    EXPECT_EQ(textOf(pathFileName(narrow("/x/y/z.txt"))), "z.txt");
    EXPECT_EQ(pathFileName(narrow("/x/" + std::string(150, 'n'))).length, 100);
    EXPECT_EQ(pathFileName(_kzString<250>(std::string(150, 'n').c_str())).length, 100);

    EXPECT_EQ(textOf(pathBaseName(narrow("/a/b.tar.gz"), '/')), "b.tar");
    EXPECT_EQ(textOf(pathBaseName(narrow("/a/.x"), '/')), ".x");
    EXPECT_EQ(textOf(pathBaseName(narrow("ab.c"), '/')), "ab");
    EXPECT_EQ(textOf(pathBaseName(narrow("/a.b"), '/')), "/a");               // a separator at 0 stays
    EXPECT_EQ(textOf(pathBaseName(narrow("c:\\dir\\f.txt"), '\\')), "f.txt"); // a dot at 1 is no extension

    EXPECT_FALSE(pathIsRelative(narrow("[TEMP]/x")));
    EXPECT_FALSE(pathIsRelative(narrow("<database>/x")));
    EXPECT_FALSE(pathIsRelative(_kzString<1000>("[cfgPath]x")));
    EXPECT_FALSE(pathIsRelative(_kzString<250>("/usr")));
    EXPECT_FALSE(pathIsRelative(narrow("C:/x")));
    EXPECT_TRUE(pathIsRelative(narrow("C:x")));
    EXPECT_TRUE(pathIsRelative(narrow("a")));
    EXPECT_TRUE(pathIsRelative(narrow("/")));
    EXPECT_TRUE(pathIsRelative(narrow("C:")));
    EXPECT_TRUE(pathIsRelative(narrow("[tmp]/x")));

    EXPECT_EQ(textOf(pathForwardSlashes(_kzString8_allSize<50>("a\\b\\\\c"))), "a/b//c");
    const unsigned short text[] = {'a', 'b', 0};
    EXPECT_EQ(wideLength(text), 2);
}

} // namespace
