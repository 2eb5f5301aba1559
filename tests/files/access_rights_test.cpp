// Modes and owners set on real files, as root hands them to other users.
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "files/access_rights.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

namespace {

TEST(AccessRights, ModesOwnersAndTheWheelGroup) {
    if (geteuid() != 0) GTEST_SKIP() << "handing files to other users needs root";
    TempDir dir;
    const std::string file = dir.file("f");
    writeFile(file, "x");
    const auto mode = [&] { return statOf(file).st_mode & 07777; };
    EXPECT_TRUE(setModeReadWrite(wide(file)));
    EXPECT_EQ(mode(), 0666u);
    ::chmod(file.c_str(), 0600);
    EXPECT_TRUE(addReadForAll(wide(file)));
    EXPECT_EQ(mode(), 0644u);
    // A missing file: the plain forms fail, the quiet one says nothing and succeeds.
    EXPECT_FALSE(addReadForAll(wide(dir.file("none"))));
    EXPECT_FALSE(setModeAll(dir.file("none").c_str()));
    EXPECT_TRUE(setModeAllQuiet(wide(dir.file("none"))));
    uint32_t uid = 7, gid = 7;
    EXPECT_TRUE(lookupUser("root", uid, gid));
    EXPECT_EQ(uid, 0u);
    EXPECT_EQ(gid, 0u);
    EXPECT_FALSE(lookupUser("no such user", uid, gid));
    // The empty and the unknown name leave the owner (chown with -1 succeeds); root's name is
    // no chown at all; another user gets the file, closed to others.
    const struct {
        const char* user;
        unsigned mode, owner;
    } owners[] = {{"", 0770, 0}, {"no such user", 0770, 0}, {"root", 0777, 0}, {"nobody", 0770, 65534}};
    for (const auto& o : owners) {
        ASSERT_TRUE(setOwnerAndMode(file.c_str(), o.user)) << o.user;
        EXPECT_EQ(mode(), o.mode) << o.user;
        EXPECT_EQ(statOf(file).st_uid, o.owner) << o.user;
    }
    const group* wheel = getgrnam("wheel");
    ::chmod(file.c_str(), 0600);
    EXPECT_EQ(setGroupWheel660(narrow(file)), wheel != nullptr);
    EXPECT_EQ(setOwnerGroupWheel770(wide(file), "root"), wheel != nullptr);
    EXPECT_EQ(mode(), wheel ? 0770u : 0600u); // without a group "wheel" nothing changes
}

// With a group "wheel" (4242 here): a group file of the test's own is bound over /etc/group
// in a mount namespace of a child's own, which the machine never sees. Only the forms that
// name a user change the owner.
TEST(AccessRights, TheWheelGroupWhereThereIsOne) {
    if (geteuid() != 0) GTEST_SKIP() << "handing files to other users needs root";
    TempDir dir;
    const std::string file = dir.file("f"), groups = dir.file("group");
    writeFile(file, "x");
    writeFile(groups, readFile("/etc/group") + "wheel:x:4242:\n");
    const pid_t child = ::fork();
    if (child == 0) {
        if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount(groups.c_str(), "/etc/group", nullptr, MS_BIND, nullptr) != 0)
            _exit(2);
        if (::chown(file.c_str(), 65534, 0) != 0) _exit(3);
        const bool group660 = setGroupWheel660(narrow(file));
        const struct stat kept = statOf(file);
        const bool owner770 = setOwnerGroupWheel770(wide(file), "root");
        const struct stat given = statOf(file);
        const bool checks[] = {group660,          kept.st_uid == 65534,  kept.st_gid == 4242, (kept.st_mode & 07777) == 0660,
                               owner770,          given.st_uid == 0,     given.st_gid == 4242, (given.st_mode & 07777) == 0770};
        for (int i = 0; i < 8; ++i)
            if (!checks[i]) _exit(10 + i);
        _exit(0);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    if (code == 2) GTEST_SKIP() << "no mount namespace of its own here";
    EXPECT_EQ(code, 0) << "10 and more: 10 + the index of the first check that failed";
}

} // namespace
