// A real database engine writes the job database while the job pass mirrors it, in both of
// its journal modes. Once the writer has closed, two passes leave the job folder holding
// exactly the local files, and a reader that opens a copy of the mirror sees what the writer
// left: no side file of an earlier moment is laid over the newer database.
#include <sqlite3.h>
#include <time.h>
#include <unistd.h>

#include <filesystem>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/tool/mirror_fixture.h"
#include "tool/job_db_pass.h"

namespace {

void exec(sqlite3* db, const std::string& sql) {
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &error), SQLITE_OK) << sql << ": " << (error ? error : "");
    sqlite3_free(error);
}

// The first column of the first row of a query, as text.
std::string queryText(sqlite3* db, const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    std::string text = "<no row>";
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr) == SQLITE_OK && sqlite3_step(statement) == SQLITE_ROW)
        text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    else
        text = sqlite3_errmsg(db);
    sqlite3_finalize(statement);
    return text;
}

std::set<std::string> namesIn(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) names.insert(entry.path().filename());
    return names;
}

// Waits until the second of the file's time is over by the clock that writes are stamped from.
void waitForTheSecondAfter(const std::string& path) {
    timespec now;
    while (::clock_gettime(CLOCK_REALTIME_COARSE, &now) == 0 && now.tv_sec <= modifiedAt(path)) ::usleep(20000);
}

TEST(JobDbReader, OpensACopyOfTheMirrorAsTheWriterLeftIt) {
    for (const char* mode : {"DELETE", "WAL"}) {
        MirrorFolders f;
        _kzDirScan jobScan;
        const auto pass = [&] { jobDbPass(wide(f.local), wide(f.root), jobScan); };
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open((f.local + "jobs.db").c_str(), &db), SQLITE_OK);
        exec(db, std::string("PRAGMA journal_mode=") + mode);
        exec(db, "CREATE TABLE jobs(id INTEGER PRIMARY KEY, state INTEGER, name TEXT);"
                 "CREATE INDEX jobsByState ON jobs(state);"
                 "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000)"
                 "  INSERT INTO jobs SELECT i, 0, printf('job %05d', i) FROM n;");
        // Small transactions that rewrite pages in place; a pass now and then, one of them in
        // the middle of a transaction, when the journal or the log is being written.
        for (int round = 1; round <= 12; ++round) {
            exec(db, "BEGIN");
            exec(db, "UPDATE jobs SET state = " + std::to_string(round) + " WHERE id % 12 = " + std::to_string(round % 12));
            if (round % 4 == 0) pass();
            exec(db, "COMMIT");
            if (round % 5 == 0) pass();
        }
        const std::set<std::string> sideFiles = namesIn(f.jobs);
        ASSERT_EQ(sqlite3_close(db), SQLITE_OK);
        EXPECT_GT(sideFiles.size(), 1u) << mode << ": the mirror had no side file to outlive its source";

        pass();
        waitForTheSecondAfter(f.local + "jobs.db");
        pass();
        EXPECT_EQ(namesIn(f.jobs), namesIn(f.local)) << mode;
        EXPECT_TRUE(readFile(f.jobs + "jobs.db") == readFile(f.local + "jobs.db")) << mode << ": the mirror differs";
        EXPECT_EQ(modifiedAt(f.jobs + "jobs.db"), modifiedAt(f.local + "jobs.db")) << mode << ": the copy settled";

        // The reader opens a copy of the mirror folder, as a reader on the network should.
        const std::string reader = f.dir.file("reader");
        std::filesystem::copy(f.jobs, reader);
        sqlite3* copy = nullptr;
        ASSERT_EQ(sqlite3_open((reader + "/jobs.db").c_str(), &copy), SQLITE_OK);
        EXPECT_EQ(queryText(copy, "PRAGMA integrity_check"), "ok") << mode;
        // Every twelfth job carries the state of the last round that touched it: 12 for ids
        // divisible by 12.
        EXPECT_EQ(queryText(copy, "SELECT count(*) FROM jobs WHERE state = 12"), "250") << mode;
        EXPECT_EQ(queryText(copy, "SELECT count(*) FROM jobs WHERE state = 0"), "0") << mode;
        sqlite3_close(copy);
    }
}

} // namespace
