// The path list: entries checked for duplicates by either case rule, searches, insertions and
// removals at and beyond its ends, sorts that ignore case and keep equal entries in their
// order, copies, and the quoted text of all entries with its capacity.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "buffers/file_list.h"
#include "tests/support/text_of.h"

namespace {

std::vector<std::string> entries(_kzFileList& list) {
    std::vector<std::string> texts;
    for (int i = 0; i < list.count; ++i) texts.push_back(list.entryAsChar(i));
    return texts;
}

using Names = std::vector<std::string>;

TEST(FileList, AddedFoundInsertedRemovedSortedAndCopied) {
    _kzFileList list;
    list.add(wide("a"), false, false);
    list.add(wide("A"), true, true);  // another entry by the exact rule
    list.add(wide("A"), true, false); // a duplicate ignoring case: not added
    list.add(wide("b."), true, true);
    EXPECT_EQ(entries(list), (Names{"a", "A", "b."}));
    const struct {
        const char* text;
        bool exact;
        int found, containing;
    } searches[] = {{"A", true, 1, 1}, {"A", false, 0, 0}, {"B.", true, -1, -1}, {"B.", false, 2, 2},
                    {".", true, -1, 2}, {"", false, -1, -1}};
    for (const auto& row : searches) {
        EXPECT_EQ(list.find(wide(row.text), row.exact), row.found) << row.text << " exact " << row.exact;
        EXPECT_EQ(list.findContaining(wide(row.text), row.exact), row.containing) << row.text << " exact " << row.exact;
    }
    list.insertAt(-1, wide("x")); // before the start: nothing
    list.insertAt(1, wide("ab"));
    list.insertAt(9, wide("Z")); // behind the end: appended
    list.removeAt(-1);
    list.removeAt(5);
    list.removeAt(0);
    EXPECT_EQ(entries(list), (Names{"ab", "A", "b.", "Z"}));
    list.sort(false);
    EXPECT_EQ(entries(list), (Names{"A", "ab", "b.", "Z"}));
    list.sort(true);
    EXPECT_EQ(entries(list), (Names{"Z", "b.", "ab", "A"}));
    _kzFileList copy;
    copy.assign(list);
    EXPECT_EQ(entries(copy), entries(list));
    EXPECT_NE(copy.data, list.data);
}

TEST(FileList, EqualEntriesKeepTheirOrderAndTheQuotedTextIsCut) {
    _kzFileList list;
    for (const char* t : {"b", "A", "a", "ab", "B", "a"}) list.add(wide(t), false, false);
    list.data[2].reserved = 1; // marks the first lower-case "a"
    list.sort(false);
    EXPECT_EQ(list.data[1].reserved, 1); // equal entries keep their order, the record whole
    list.sort(true);
    EXPECT_EQ(entries(list), (Names{"b", "B", "ab", "A", "a", "a"})); // descending too
    _kzFileList quoted;
    quoted.add(wide("b c"), false, false);
    EXPECT_STREQ(quoted.quotedText().asChar(), "'b c' ");
    quoted.add(wide(std::string(600, 'x')), false, false); // an entry holds 500, narrowed to 499
    quoted.add(wide(std::string(600, 'y')), false, false);
    EXPECT_EQ(quoted.quotedText().length, 1000);
    EXPECT_EQ(quoted.quotedText().data[999], 'y');
}

} // namespace
