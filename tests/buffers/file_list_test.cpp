#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "buffers/file_list.h"
#include "tests/support/text_of.h"

namespace {

std::vector<std::string> entries(_kzFileList& list) {
    std::vector<std::string> out;
    for (int i = 0; i < list.count; ++i) out.push_back(list.entryAsChar(i));
    return out;
}

using Texts = std::vector<std::string>;

TEST(FileList, AddFindAndDuplicates) {
    _kzFileList list;
    EXPECT_EQ(list.find(wide("a"), false), -1);
    EXPECT_STREQ(list.entryAsChar(0), ""); // an empty list has no entry to give
    list.add(wide("a.txt"), false, false);
    list.add(wide("a.txt"), false, false);
    EXPECT_EQ(list.count, 2);
    list.add(wide("A.TXT"), true, false); // refused: equal ignoring case
    EXPECT_EQ(list.count, 2);
    list.add(wide("A.TXT"), true, true); // taken: not equal as it stands
    EXPECT_EQ(list.count, 3);
    EXPECT_EQ(list.find(wide("A.txt"), false), 0);
    EXPECT_EQ(list.find(wide("A.txt"), true), -1);
    EXPECT_EQ(list.find(wide("A.TXT"), true), 2);
    list.add(wide(""), false, false);
    EXPECT_EQ(list.find(wide(""), true), 3);
    EXPECT_EQ(list.findContaining(wide("TXT"), false), 0);
    EXPECT_EQ(list.findContaining(wide("TXT"), true), 2);
    EXPECT_EQ(list.findContaining(wide(""), false), -1);
    EXPECT_EQ(textOf(*list.at(99)), "a.txt"); // out of range: the first entry
    EXPECT_EQ(list.at(-1), list.data);
}

TEST(FileList, InsertRemoveAndAssign) {
    _kzFileList list;
    list.add(wide("a"), false, false);
    list.add(wide("b"), false, false);
    list.insertAt(0, wide("x"));
    EXPECT_EQ(entries(list), (Texts{"x", "a", "b"}));
    list.insertAt(5, wide("y"));
    EXPECT_EQ(entries(list), (Texts{"x", "a", "b", "y"}));
    list.insertAt(2, wide("m"));
    EXPECT_EQ(entries(list), (Texts{"x", "a", "m", "b", "y"}));
    list.insertAt(-1, wide("never"));
    list.removeAt(5);
    list.removeAt(-1);
    EXPECT_EQ(list.count, 5);
    list.removeAt(0);
    list.removeAt(3);
    EXPECT_EQ(entries(list), (Texts{"a", "m", "b"}));

    _kzFileList copy;
    copy.add(wide("old"), false, false);
    copy.assign(list);
    EXPECT_EQ(entries(copy), (Texts{"a", "m", "b"}));
    EXPECT_NE(copy.data, list.data);
    copy.release();
    EXPECT_EQ(copy.count, 0);
    EXPECT_EQ(copy.data, nullptr);
}

TEST(FileList, SortIsStableAndIgnoresCase) {
    _kzFileList list;
    for (const char* t : {"b", "A", "a", "ab", "B", "a"}) list.add(wide(t), false, false);
    list.data[2].reserved = 1; // marks the first lower-case "a"
    list.sort(false);
    EXPECT_EQ(entries(list), (Texts{"A", "a", "a", "ab", "b", "B"}));
    EXPECT_EQ(list.data[1].reserved, 1); // equal entries keep their order
    list.sort(true);
    EXPECT_EQ(entries(list), (Texts{"b", "B", "ab", "A", "a", "a"}));
}

TEST(FileList, QuotedTextAndLongEntries) {
    _kzFileList list;
    list.add(wide("a"), false, false);
    list.add(wide("b c"), false, false);
    EXPECT_STREQ(list.quotedText().asChar(), "'a' 'b c' ");
    list.add(wide(std::string(600, 'x')), false, false);      // an entry holds 500
    EXPECT_EQ(std::string(list.entryAsChar(2)).size(), 499u); // narrowed to 499
    EXPECT_EQ(list.quotedText().length, 10 + 503);
    list.add(wide(std::string(600, 'y')), false, false);
    const _kzString8_allSize<1000> quoted = list.quotedText();
    EXPECT_EQ(quoted.length, 1000);
    EXPECT_EQ(quoted.data[999], 'y');
}

} // namespace
