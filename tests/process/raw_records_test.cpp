// How raw records become table slots: the cap, the order, the names. Synthetic records
// stand in for a kernel with more processes than this machine has.
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "process/process_list.h"

namespace {

std::vector<kzRawProcess> syntheticProcesses(int n) {
    std::vector<kzRawProcess> records(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) {
        kzRawProcess& r = records[static_cast<size_t>(i)];
        r.pid = static_cast<uint32_t>(100000 + (n - i)); // a descending pid shows the order is kept
        r.parentPid = static_cast<uint32_t>(i);
        r.uid = static_cast<uint32_t>(i % 7);
        std::snprintf(r.name, sizeof r.name, "proc%d", i);
    }
    return records;
}

// A table that counts as collected, so that findByName looks at what was stored.
std::unique_ptr<_kzProcessList> storedTable(const std::vector<kzRawProcess>& records) {
    auto table = std::make_unique<_kzProcessList>(false);
    table->collected = 1;
    table->storeRawProcesses(records.data(), static_cast<long>(records.size()));
    return table;
}

TEST(RawRecords, AtMost3999SlotsInTheDeliveredOrder) {
    const std::vector<kzRawProcess> records = syntheticProcesses(5000);
    auto table = storedTable(records);
    ASSERT_EQ(table->count, 3999);
    for (int i = 0; i < table->count; ++i) {
        ASSERT_EQ(table->entries[i].pid, records[static_cast<size_t>(i)].pid) << i;
        ASSERT_EQ(table->entries[i].parentPid, static_cast<uint32_t>(i));
        ASSERT_EQ(table->entries[i].uid, static_cast<uint32_t>(i % 7));
    }
    uint64_t pid = 0;
    _kzString8_allSize<25> last("proc3998");
    EXPECT_TRUE(table->findByName(last, false, &pid));
    EXPECT_EQ(pid, records[3998].pid);
    _kzString8_allSize<25> dropped("proc3999");
    EXPECT_FALSE(table->findByName(dropped, false, &pid));
    EXPECT_EQ(pid, 0u);
    EXPECT_TRUE(table->entries[3999].name.isEmpty()); // the last slot is never filled

    // Storing goes on from the present count and stops at the same cap.
    table->storeRawProcesses(records.data(), 10);
    EXPECT_EQ(table->count, 3999);
}

TEST(RawRecords, NamesAreUpperCasedAndTheFirstMatchWins) {
    std::vector<kzRawProcess> records = syntheticProcesses(4);
    std::strcpy(records[0].name, "zsh");
    std::strcpy(records[1].name, "kzServerconsole");
    std::strcpy(records[2].name, "KZSERVERconsole");
    std::strcpy(records[3].name, "kzServerconsoleL");
    auto table = storedTable(records);
    EXPECT_STREQ(table->entries[1].name.data, "KZSERVERCONSOLE");
    EXPECT_STREQ(table->entries[3].name.data, "KZSERVERCONSOLEL");
    uint64_t pid = 0;
    _kzString8_allSize<25> name("kzServerconsole");
    ASSERT_TRUE(table->findByName(name, false, &pid));
    EXPECT_EQ(pid, records[1].pid);
    // Same first letter and length but another text: no match.
    _kzString8_allSize<25> near("kzServerconsolX");
    EXPECT_FALSE(table->findByName(near, false, &pid));
}

TEST(RawRecords, AnEmptyDeliveryLeavesAnEmptyTable) {
    auto table = storedTable({});
    EXPECT_EQ(table->count, 0);
    _kzString8_allSize<25> name("init");
    uint64_t pid = 99;
    EXPECT_FALSE(table->findByName(name, false, &pid));
    EXPECT_EQ(pid, 0u);
}

} // namespace
