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
    EXPECT_TRUE(setModeReadWrite(wide(file)) && mode() == 0666);
    ::chmod(file.c_str(), 0600);
    EXPECT_TRUE(addReadForAll(wide(file)) && mode() == 0644);
    EXPECT_FALSE(addReadForAll(wide(dir.file("none"))) || setModeAll(dir.file("none").c_str()) ||
                 !setModeAllQuiet(wide(dir.file("none"))));
    uint32_t uid = 7, gid = 7;
    EXPECT_TRUE(lookupUser("root", uid, gid) && uid + gid == 0 && !lookupUser("no such user", uid, gid));
    // The empty and the unknown name leave the owner (chown with -1 succeeds); root's name is
    // no chown at all; another user gets the file, closed to others.
    for (const auto& [user, expected] : {std::pair<const char*, unsigned>{"", 0770}, {"no such user", 0770}, {"root", 0777}, {"nobody", 0770}}) {
        ASSERT_TRUE(setOwnerAndMode(file.c_str(), user)) << user;
        EXPECT_EQ(mode() * 100000 + statOf(file).st_uid, expected * 100000 + (user == std::string("nobody") ? 65534 : 0)) << user;
    }
    const group* wheel = getgrnam("wheel");
    ::chmod(file.c_str(), 0600);
    EXPECT_EQ(setGroupWheel660(narrow(file)) && setOwnerGroupWheel770(wide(file), "root"), wheel != nullptr);
    EXPECT_EQ(mode(), wheel ? 0770u : 0600u); // without a group "wheel" nothing changes
}

} // namespace
