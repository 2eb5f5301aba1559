// Path texts on both templates: the folder, the file name, the base name, the relative test
// and the tidied path, at the roots of drives and network shares and at their capacities.
#include <string>

#include <gtest/gtest.h>

#include "files/path_strings.h"
#include "tests/support/text_of.h"

namespace {

struct Row {
    std::string path, expected;
};

TEST(PathStrings, FolderAndFileNameUpToTheRootsOfDrivesAndShares) {
    const Row folders[] = {{"ab", "ab"}, // too short to have a folder
                           {"abc", ""},  // a bare name has none
                           {"/a/b.txt", "/a/"},
                           {"/a/b/", "/a/"},
                           {"/ab", "/"},
                           {"C:/x", "C:/"},
                           {"/:ab", "/:ab/"}, // a drive's root is not climbed out of
                           {"a\\b/c", "a\\b/"},
                           {"//server/share/x", "//server/share/"},
                           {"//server/share/a/b", "//server/share/a/"},
                           {"//server/share", "//server/share"},
                           {"//server//x", "//server//"}}; // a share without a name
    for (const Row& row : folders) {
        EXPECT_EQ(textOf(pathFolder(narrow(row.path))), row.expected) << "8-bit folder of " << row.path;
        EXPECT_EQ(textOf(pathFolder(wide(row.path))), row.expected) << "16-bit folder of " << row.path;
    }
    const std::string deep = "/" + std::string(90, 'a') + "/b";
    const Row names[] = {{"/a/b.txt", "b.txt"}, {"b.txt", "b.txt"}, {"/a/", ""}, {deep, "b"}};
    for (const Row& row : names) {
        EXPECT_EQ(textOf(pathFileName(narrow(row.path))), row.expected) << "8-bit name of " << row.path;
        EXPECT_EQ(textOf(pathFileName(wide(row.path))), row.expected) << "16-bit name of " << row.path;
    }
    EXPECT_EQ(pathFileName(narrow("/x/" + std::string(150, 'n'))).length, 100);
}

TEST(PathStrings, BaseNamesAndRelativePaths) {
    // A separator or a dot within the first two characters does not count.
    const struct {
        std::string path;
        char separator;
        std::string expected;
    } bases[] = {{"/a/bc.txt", '/', "bc"}, {"C:\\d\\name.ext", '\\', "name"}, {"ab.c", '/', "ab"},
                 {"a.bc", '/', "a.bc"},    {"x/.d", '/', "x/"},               {"ab/c.d.e", '/', "c.d"}};
    for (const auto& row : bases)
        EXPECT_EQ(textOf(pathBaseName(narrow(row.path), row.separator)), row.expected) << row.path;
    const struct {
        std::string path;
        bool relative;
    } paths[] = {{"ab", true},          {"/ab", false},         {"C:/x", false},    {"C:x", true},
                 {"a/b", true},         {"<DATABASE>/x", false}, {"[cfgpath]x", false}, {"[Temp]/x", false},
                 {"[tem", true}};
    for (const auto& row : paths) {
        EXPECT_EQ(pathIsRelative(narrow(row.path)), row.relative) << "8-bit " << row.path;
        EXPECT_EQ(pathIsRelative(_kzString<250>(row.path.c_str())), row.relative) << "16-bit " << row.path;
    }
}

// Separators made single (a leading "//" stays) and the first run of "../" resolved against
// what stands before it, unless that is a bare placeholder; the argument changes too.
TEST(PathStrings, TidiedPaths) {
    const Row rows[] = {{"a", "a"},
                        {"a\\", "a/"},
                        {"a//b", "a/b"},
                        {"//srv//x", "//srv/x"},
                        {"/a/b/../c", "/a/c"},
                        {"/a/b/../../c", "/c"},
                        {"C:\\a\\..\\b", "C:/b"},
                        {"//server/share/a/../b", "//server/share/b"},
                        {"a/../b/../c", "a/b/../c"},
                        {"<Database>/a/../../x", "<Database>/../x"},
                        {"<Database>/../x", "<Database>/../x"}};
    for (const Row& row : rows) {
        _kzString8_allSize<500> narrowPath = narrow(row.path);
        _kzString<500> widePath = wide(row.path);
        EXPECT_EQ(textOf(pathNormalize(narrowPath)), row.expected) << "8-bit " << row.path;
        EXPECT_EQ(textOf(narrowPath), row.expected) << "8-bit argument " << row.path;
        EXPECT_EQ(textOf(pathNormalize(widePath)), row.expected) << "16-bit " << row.path;
    }
}

} // namespace
