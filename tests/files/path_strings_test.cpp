// Path texts: fuzz/path_fuzz.cpp checks the folder, file name, base name, relative test and
// tidying of arbitrary paths against models of their rules, on both templates. Here the
// capacities and the rows of the rules' own examples.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "files/path_strings.h"
#include "tests/support/text_of.h"

namespace {

using Rows = std::vector<std::pair<std::string, std::string>>;

TEST(PathStrings, TheRulesOwnExamplesAndTheCapacities) {
    for (const auto& [path, folder] : Rows{{"C:/x", "C:/"}, {"//server/share/x", "//server/share/"}, {"//server/share", "//server/share"}})
        EXPECT_EQ(textOf(pathFolder(wide(path))), folder) << path;
    _kzString8_allSize<500> changed = narrow("<Database>/a/../../x");
    EXPECT_EQ(textOf(pathNormalize(changed)), "<Database>/../x");
    EXPECT_EQ(pathFileName(narrow("/x/" + std::string(150, 'n'))).length, 100);
    EXPECT_FALSE(pathIsRelative(narrow("[TEMP]/x")));
}

} // namespace
