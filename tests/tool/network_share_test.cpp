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
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/child_process.h"
#include "tests/support/file_checks.h"
#include "tests/support/network_share.h"
#include "tests/support/temp_dir.h"

namespace {

using Identity = std::tuple<ino_t, long long, long long>; // inode, change time in ns, size

// The files of one folder as the server keeps them.
std::map<std::string, Identity> identities(const std::string& folder) {
    std::map<std::string, Identity> found;
    if (DIR* dir = opendir(folder.c_str())) {
        while (dirent* entry = readdir(dir)) {
            struct stat st;
            if (::stat((folder + "/" + entry->d_name).c_str(), &st) == 0 && S_ISREG(st.st_mode))
                found[entry->d_name] = {st.st_ino, st.st_ctim.tv_sec * 1000000000LL + st.st_ctim.tv_nsec, st.st_size};
        }
        closedir(dir);
    }
    return found;
}

struct ShareRun {
    NetworkShare share;
    TempDir local;
    std::vector<std::string> logs;
    ChildProcess tool;

    explicit ShareRun(const char* kind) : share(kind) {}

    std::string root() const { return share.mounted() + "/farm/"; }
    std::string servedLogs() const { return share.served() + "/farm/sub/log"; }
    std::string servedJobs() const { return share.served() + "/farm/sub/cfg_global/__copyFromLocal"; }

    // Forty logs of 1 to 64 KiB with whole-second times, and a job database with its journal.
    void prepare() {
        ASSERT_EQ(::mkdir((root()).c_str(), 0755), 0);
        ASSERT_EQ(::mkdir((root() + "sub").c_str(), 0755), 0);
        ASSERT_EQ(::mkdir((root() + "sub/log").c_str(), 0755), 0);
        for (int i = 0; i < 40; ++i) {
            logs.push_back("render" + std::to_string(i) + (i == 0 ? "__local.txt" : ".txt"));
            writeFile(local.file(logs.back()), std::string(1024 + i * 1613, static_cast<char>('a' + i % 26)));
            setModified(local.file(logs.back()), 1600000000 + i);
        }
        writeFile(local.file("jobs.db"), std::string(200000, 'j'));
        writeFile(local.file("jobs.db-journal"), "journal");
    }

    std::string mirrorName(const std::string& log) const {
        const std::string::size_type at = log.find("__local.txt");
        return at == std::string::npos ? log.substr(0, log.size() - 4) + "__copyFromLocal.txt"
                                       : log.substr(0, at) + "__copyFromLocal.txt";
    }

    // Every mirror there, with the source's content and time in whole seconds.
    bool mirrorComplete() const {
        for (const std::string& log : logs) {
            const std::string mirror = servedLogs() + "/" + mirrorName(log);
            if (readFile(mirror) != readFile(local.file(log)) || modifiedAt(mirror) != modifiedAt(local.file(log)))
                return false;
        }
        for (const char* db : {"jobs.db", "jobs.db-journal"})
            if (readFile(servedJobs() + "/" + db) != readFile(local.file(db)) ||
                modifiedAt(servedJobs() + "/" + db) != modifiedAt(local.file(db)))
                return false;
        return true;
    }

    std::map<std::string, Identity> written() const {
        std::map<std::string, Identity> all = identities(servedLogs());
        for (const auto& [name, identity] : identities(servedJobs())) all["jobs/" + name] = identity;
        return all;
    }
};

bool waitFor(const std::function<bool()>& condition, int timeoutMs) {
    const long long deadline = monotonicMs() + timeoutMs;
    while (!condition()) {
        if (monotonicMs() > deadline) return false;
        usleep(100000);
    }
    return true;
}

TEST(NetworkShares, TheMirrorSettlesOnSmbAndSftp) {
    KZ_NEEDS_OWN_PROCESSES();
    ShareRun smb("smb"), sftp("sftp");
    for (ShareRun* run : {&smb, &sftp})
        if (!run->share.up()) GTEST_SKIP() << run->share.skipReason();

    TempDir serverDir;
    const std::string serverPath = installStandIn(serverDir.path(), "kzServerconsole");
    ChildProcess server = ChildProcess::start(serverPath, {serverPath});
    for (ShareRun* run : {&smb, &sftp}) {
        run->prepare();
        run->tool =
            ChildProcess::start(KZ_TOOL_PATH, {"kzStartLocal", run->local.path(), run->root(), "-log", "-jobdb"}, true);
    }

    // The first pass, about seven seconds in, brings everything. A FUSE file system may finish
    // a close after close has returned, so the server's side is read once it has settled.
    for (ShareRun* run : {&smb, &sftp}) ASSERT_TRUE(waitFor([&] { return run->mirrorComplete(); }, 25000));
    usleep(1500000);
    std::map<std::string, Identity> first[2] = {smb.written(), sftp.written()};
    for (const auto& files : first) ASSERT_EQ(files.size(), 42u);

    // The server writes on: the second pass brings that one log and writes nothing else.
    const std::string& changed = smb.logs[3];
    for (ShareRun* run : {&smb, &sftp}) {
        writeFile(run->local.file(changed), readFile(run->local.file(changed)) + "one more line\n");
        setModified(run->local.file(changed), 1700000000);
    }
    for (ShareRun* run : {&smb, &sftp}) ASSERT_TRUE(waitFor([&] { return run->mirrorComplete(); }, 15000));
    usleep(1500000);
    std::map<std::string, Identity> second[2] = {smb.written(), sftp.written()};
    const std::string changedMirror = smb.mirrorName(changed);
    for (int i = 0; i < 2; ++i) {
        EXPECT_NE(second[i][changedMirror], first[i][changedMirror]) << "share " << i;
        first[i].erase(changedMirror);
        std::map<std::string, Identity> others = second[i];
        others.erase(changedMirror);
        EXPECT_EQ(others, first[i]) << "share " << i << ": the second pass wrote unchanged files again";
    }

    // A whole pass later nothing has been written at all.
    usleep(7500000);
    EXPECT_EQ(smb.written(), second[0]);
    EXPECT_EQ(sftp.written(), second[1]);

    server.kill();
    for (ShareRun* run : {&smb, &sftp}) {
        int exitCode = -1;
        EXPECT_TRUE(run->tool.waitExit(5000, &exitCode));
        EXPECT_EQ(exitCode, 0);
    }
}

} // namespace
