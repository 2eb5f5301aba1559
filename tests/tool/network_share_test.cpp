// The whole tool against real network shares, SMB and SFTP side by side, each served on
// 127.0.0.1 and mounted through FUSE: after the first pass the mirror is complete, and from
// then on only what changed is written again. What was written is read on the server's side,
// by each file's inode number and change time.
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/child_process.h"
#include "tests/support/file_checks.h"
#include "tests/support/network_share.h"
#include "tests/support/temp_dir.h"

namespace {

using Identity = std::tuple<ino_t, long long, long long>; // inode, change time in ns, size
using Identities = std::map<std::string, Identity>;

struct ShareRun {
    NetworkShare share;
    TempDir local;
    std::vector<std::pair<std::string, std::string>> files; // a local file, its mirror on the server's side
    ChildProcess tool;

    explicit ShareRun(const char* kind) : share(kind) {}

    // Forty logs of 1 to 64 KiB with whole-second times, and a job database with its journal.
    void start() {
        const std::string root = share.mounted() + "/farm/", served = share.served() + "/farm/sub/";
        for (const std::string& folder : {root, root + "sub", root + "sub/log"}) ASSERT_EQ(::mkdir(folder.c_str(), 0755), 0);
        for (int i = 0; i < 40; ++i) {
            const std::string name = "render" + std::to_string(i);
            files.emplace_back(local.file(name + (i == 0 ? "__local.txt" : ".txt")), served + "log/" + name + "__copyFromLocal.txt");
            writeFile(files.back().first, std::string(1024 + i * 1613, static_cast<char>('a' + i % 26)));
            setModified(files.back().first, 1600000000 + i);
        }
        for (const char* db : {"jobs.db", "jobs.db-journal"}) {
            files.emplace_back(local.file(db), served + "cfg_global/__copyFromLocal/" + db);
            writeFile(files.back().first, std::string(100000, db[7] ? 'j' : 'd')); // the journal differs
        }
        tool = ChildProcess::start(KZ_TOOL_PATH, {"kzStartLocal", local.path(), root, "-log", "-jobdb"}, true);
    }

    // Every mirror there, with the source's content and time in whole seconds.
    bool complete() const {
        for (const auto& [source, mirror] : files)
            if (readFile(mirror) != readFile(source) || modifiedAt(mirror) != modifiedAt(source)) return false;
        return true;
    }

    Identities written() const {
        Identities found;
        for (const auto& file : files) {
            const struct stat st = statOf(file.second);
            found[file.second] = {st.st_ino, st.st_ctim.tv_sec * 1000000000LL + st.st_ctim.tv_nsec, st.st_size};
        }
        return found;
    }
};

TEST(NetworkShares, TheMirrorSettlesOnSmbAndSftp) {
    KZ_NEEDS_OWN_PROCESSES();
    ShareRun smb("smb"), sftp("sftp");
    for (ShareRun* run : {&smb, &sftp})
        if (!run->share.up()) GTEST_SKIP() << run->share.skipReason();
    TempDir serverDir;
    const std::string serverPath = installStandIn(serverDir.path(), "kzServerconsole");
    ChildProcess server = ChildProcess::start(serverPath, {serverPath});
    for (ShareRun* run : {&smb, &sftp}) run->start();

    // The first pass, about seven seconds in, brings everything. A FUSE file system may finish
    // a close after close has returned, so the server's side is read once it has settled.
    for (ShareRun* run : {&smb, &sftp}) ASSERT_TRUE(waitFor([&] { return run->complete(); }, 25000));
    usleep(1500000);
    Identities first[2] = {smb.written(), sftp.written()};

    // The server writes on: the second pass brings that one log and writes nothing else.
    for (ShareRun* run : {&smb, &sftp}) {
        writeFile(run->files[3].first, readFile(run->files[3].first) + "one more line\n");
        setModified(run->files[3].first, 1700000000);
    }
    for (ShareRun* run : {&smb, &sftp}) ASSERT_TRUE(waitFor([&] { return run->complete(); }, 15000));
    usleep(1500000);
    Identities second[2] = {smb.written(), sftp.written()};
    for (int i = 0; i < 2; ++i) {
        const std::string& changed = (i == 0 ? smb : sftp).files[3].second;
        EXPECT_NE(second[i][changed], first[i][changed]) << "share " << i;
        first[i][changed] = second[i][changed];
        EXPECT_EQ(second[i], first[i]) << "share " << i << ": the second pass wrote unchanged files again";
    }

    usleep(7500000); // a whole pass later nothing has been written at all
    EXPECT_EQ(smb.written(), second[0]);
    EXPECT_EQ(sftp.written(), second[1]);
}

} // namespace
