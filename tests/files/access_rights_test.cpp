// Modes and owners set on real files, as root hands them to other users.
#include <grp.h>
#include <sys/stat.h>
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

} // namespace
