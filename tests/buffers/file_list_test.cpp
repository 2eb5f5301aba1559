// The path list: its operations against a model are in fuzz/buffers_fuzz.cpp; here the order
// of equal entries through a sort, the quoted text of all entries and its capacity.
#include <string>

#include <gtest/gtest.h>

#include "buffers/file_list.h"
#include "tests/support/text_of.h"

namespace {

TEST(FileList, EqualEntriesKeepTheirOrderAndTheQuotedTextIsCut) {
    _kzFileList list;
    for (const char* t : {"b", "A", "a", "ab", "B", "a"}) list.add(wide(t), false, false);
    list.data[2].reserved = 1; // marks the first lower-case "a"
    list.sort(false);
    EXPECT_EQ(list.data[1].reserved, 1); // equal entries keep their order, the record whole
    _kzFileList quoted;
    quoted.add(wide("b c"), false, false);
    EXPECT_STREQ(quoted.quotedText().asChar(), "'b c' ");
    quoted.add(wide(std::string(600, 'x')), false, false); // an entry holds 500, narrowed to 499
    quoted.add(wide(std::string(600, 'y')), false, false);
    EXPECT_EQ(quoted.quotedText().length, 1000);
    EXPECT_EQ(quoted.quotedText().data[999], 'y');
    _kzFileList copy;
    copy.assign(quoted);
    EXPECT_NE(copy.data, quoted.data);
}

} // namespace
