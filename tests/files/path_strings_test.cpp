// Path texts: the folder of each kind of path, the first run of parents resolved, names,
// base names and relative paths. (fuzz/path_fuzz.cpp checks that both templates agree.)
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "files/path_strings.h"
#include "tests/support/text_of.h"

namespace {

using Rows = std::vector<std::pair<std::string, std::string>>;

TEST(PathStrings, FoldersAndTheFirstRunOfParents) {
    for (const auto& [path, folder] :
         Rows{{"/a/b/c.txt", "/a/b/"}, {"/a/b/", "/a/"}, {"/ab", "/"}, {"c.txt", ""}, {"C:/x", "C:/"}, {"C:/", ""},
              {"//server/share/x", "//server/share/"}, {"//server/share", "//server/share"}, {"a/b/c", "a/b/c"}}) {
        EXPECT_EQ(textOf(pathFolder(wide(path))), folder) << path;
        EXPECT_EQ(textOf(pathFolder(_kzString8_allSize<200>(path.c_str()))), folder) << path;
    }
    for (const auto& [path, normal] :
         Rows{{"<Database>/a/../../x", "<Database>/../x"}, {"\\\\s\\d\\e\\..\\f", "//s/d/f"}, {"a/b/../../c/../d", "a/c/../d"},
              {"../x", "x"}, {"/a///b//c", "/a//b/c"}, {"/a/b/c/../../d", "/a/d"}}) {
        _kzString8_allSize<500> changed = narrow(path);
        EXPECT_EQ(textOf(pathNormalize(changed)), normal) << path;
        EXPECT_EQ(textOf(changed), normal) << "the argument changes too: " << path;
    }
}

TEST(PathStrings, NamesBaseNamesAndRelativePaths) {
    EXPECT_EQ(textOf(pathFileName(narrow("/x/y/z.txt"))), "z.txt");
    EXPECT_EQ(pathFileName(narrow("/x/" + std::string(150, 'n'))).length, 100);
    for (const auto& [path, base] : Rows{{"/a/b.tar.gz", "b.tar"}, {"/a/.x", ".x"}, {"ab.c", "ab"}, {"/a.b", "/a"}})
        EXPECT_EQ(textOf(pathBaseName(narrow(path), '/')), base) << path;
    EXPECT_EQ(textOf(pathBaseName(narrow("c:\\dir\\f.txt"), '\\')), "f.txt"); // a dot at 1 is no extension
    for (const char* path : {"[TEMP]/x", "<database>/x", "/usr", "C:/x"}) EXPECT_FALSE(pathIsRelative(narrow(path))) << path;
    for (const char* path : {"C:x", "a", "/", "[tmp]/x"}) EXPECT_TRUE(pathIsRelative(narrow(path))) << path;
}

} // namespace
