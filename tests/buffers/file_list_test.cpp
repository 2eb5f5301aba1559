// The path list: duplicates by either case rule, order kept through insertion, removal and a
// stable sort that ignores case, and the quoted text of all entries.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "buffers/file_list.h"
#include "tests/support/text_of.h"

namespace {

using Texts = std::vector<std::string>;

Texts entries(_kzFileList& list) {
    Texts out;
    for (int i = 0; i < list.count; ++i) out.push_back(list.entryAsChar(i));
    return out;
}

TEST(FileList, DuplicatesFindInsertRemoveAndAssign) {
    _kzFileList list;
    EXPECT_EQ(list.find(wide("a"), false), -1);
    list.add(wide("a.txt"), true, false);
    list.add(wide("A.TXT"), true, false); // refused: equal ignoring case
    list.add(wide("a.txt"), true, true);  // refused: equal as it stands, the first entry
    list.add(wide("A.TXT"), true, true);  // taken
    EXPECT_EQ(entries(list), (Texts{"a.txt", "A.TXT"}));
    EXPECT_EQ(list.find(wide("A.txt"), false) * 10 + list.find(wide("A.TXT"), true), 1);
    EXPECT_EQ(list.findContaining(wide("TXT"), true), 1);
    list.insertAt(0, wide("x"));
    list.insertAt(9, wide("y"));
    list.insertAt(2, wide("m"));
    list.removeAt(-1);
    list.removeAt(5);
    EXPECT_EQ(entries(list), (Texts{"x", "a.txt", "m", "A.TXT", "y"}));
    list.removeAt(4);
    _kzFileList copy;
    copy.assign(list);
    EXPECT_EQ(entries(copy), (Texts{"x", "a.txt", "m", "A.TXT"}));
    EXPECT_NE(copy.data, list.data);
}

TEST(FileList, SortIsStableAndIgnoresCaseAndQuotedTextIsCut) {
    _kzFileList list;
    for (const char* t : {"b", "A", "a", "ab", "B", "a"}) list.add(wide(t), false, false);
    list.data[2].reserved = 1; // marks the first lower-case "a"
    list.sort(false);
    EXPECT_EQ(entries(list), (Texts{"A", "a", "a", "ab", "b", "B"}));
    EXPECT_EQ(list.data[1].reserved, 1); // equal entries keep their order
    list.sort(true);
    EXPECT_EQ(entries(list), (Texts{"b", "B", "ab", "A", "a", "a"}));
    _kzFileList quoted;
    quoted.add(wide("b c"), false, false);
    EXPECT_STREQ(quoted.quotedText().asChar(), "'b c' ");
    quoted.add(wide(std::string(600, 'x')), false, false); // an entry holds 500, narrowed to 499
    quoted.add(wide(std::string(600, 'y')), false, false);
    EXPECT_EQ(quoted.quotedText().length, 1000);
    EXPECT_EQ(quoted.quotedText().data[999], 'y');
}

} // namespace
