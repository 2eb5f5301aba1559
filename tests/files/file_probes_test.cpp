// File probes on real files and folders in a temporary directory.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "files/file_probes.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

namespace {

TEST(FileProbes, InfoOnFilesFoldersAndMissingPaths) {
    TempDir dir;
    writeFile(dir.file("a.txt"), "12345");
    _kzTime time;
    int64_t size = -1;
    ASSERT_TRUE(fileInfo(wide(dir.file("a.txt")), &time, &size));
    EXPECT_EQ(size, 5);
    struct stat st;
    ::stat(dir.file("a.txt").c_str(), &st);
    EXPECT_EQ(time.value, st.st_mtime);
    EXPECT_TRUE(fileInfo(narrow(dir.file("a.txt")), nullptr, nullptr));
    EXPECT_TRUE(fileInfo(_kzString8_allSize<250>(dir.file("a.txt").c_str()), nullptr, &size));
    EXPECT_TRUE(fileExists(wide(dir.file("a.txt"))));

    // A folder reads as a missing file.
    EXPECT_FALSE(fileInfo(wide(dir.path()), &time, &size));
    EXPECT_EQ(time.value, 0);
    EXPECT_EQ(size, 0);
    EXPECT_FALSE(fileExists(wide(dir.file("none"))));
    errno = 0;
    EXPECT_FALSE(fileInfo(narrow(dir.file("none")), &time, &size));
    EXPECT_EQ(errno, ENOENT);

    // A 16-bit path longer than 499 characters is probed cut: here it names the file.
    const std::string longPath = dir.file("a.txt") + std::string(600, '/');
    _kzString<1000> tooLong(longPath.c_str());
    const std::string cut = longPath.substr(0, 499);
    EXPECT_EQ(fileInfo(_kzString<500>(tooLong.asUni()), nullptr, nullptr),
              fileInfo(narrow(cut), nullptr, nullptr));
}

TEST(FileProbes, DeleteSetTimeAndMove) {
    TempDir dir;
    EXPECT_TRUE(fileDelete(narrow(dir.file("missing"))));
    writeFile(dir.file("a"), "aaa");
    EXPECT_TRUE(fileDelete(narrow(dir.file("a"))));
    EXPECT_EQ(readFile(dir.file("a")), "<missing>");
    EXPECT_FALSE(fileDelete(narrow(dir.path()))); // unlink refuses a folder

    writeFile(dir.file("t"), "t");
    const _kzTime when(int64_t(1500000000), true);
    ASSERT_TRUE(fileSetTime(narrow(dir.file("t")), &when));
    struct stat st;
    ::stat(dir.file("t").c_str(), &st);
    EXPECT_EQ(st.st_mtime, 1500000000);
    EXPECT_EQ(st.st_atime, 1500000000);
    EXPECT_TRUE(fileSetTime(narrow(dir.file("t")), nullptr));
    ::stat(dir.file("t").c_str(), &st);
    EXPECT_GE(st.st_mtime, _kzTime(true).value - 5);
    EXPECT_FALSE(fileSetTime(narrow(dir.file("none")), nullptr));

    writeFile(dir.file("src"), "new");
    writeFile(dir.file("dst"), "old");
    EXPECT_TRUE(fileMove(narrow(dir.file("src")), narrow(dir.file("dst")), false)); // nothing moved
    EXPECT_EQ(readFile(dir.file("src")), "new");
    EXPECT_EQ(readFile(dir.file("dst")), "old");
    EXPECT_TRUE(fileMove(narrow(dir.file("src")), narrow(dir.file("dst")), true));
    EXPECT_EQ(readFile(dir.file("src")), "<missing>");
    EXPECT_EQ(readFile(dir.file("dst")), "new");
    EXPECT_FALSE(fileMove(narrow(dir.file("src")), narrow(dir.file("other")), true));
    ::mkdir(dir.file("sub").c_str(), 0755);
    EXPECT_FALSE(fileMove(narrow(dir.file("sub")), narrow(dir.file("moved")), true)); // no folders
}

TEST(FileProbes, FolderExistsAndItsTrailingSlashRules) {
    TempDir dir;
    writeFile(dir.file("f"), "x");
    _kzString8_allSize<500> folder = narrow(dir.path() + "/");
    const int length = folder.length;
    EXPECT_TRUE(folderExists(folder));
    EXPECT_EQ(folder.length, length); // the "/" became a NUL, the length stayed
    EXPECT_EQ(folder.data[length - 1], 0);
    _kzString<500> wideFolder = wide(dir.path() + "/");
    EXPECT_TRUE(folderExists(wideFolder));
    EXPECT_EQ(wideFolder.length, length - 1); // the "/" is cut
    const std::string plain = dir.path() + "/";
    EXPECT_TRUE(folderExists(plain.c_str()));
    _kzString8_allSize<250> file(dir.file("f").c_str());
    EXPECT_FALSE(folderExists(file));
    _kzString8_allSize<500> shortPath("ab");
    EXPECT_FALSE(folderExists(shortPath));
    EXPECT_FALSE(folderExists("/"));
}

TEST(FileProbes, FolderCreateWithParentsAndItsRefusals) {
    TempDir dir;
    ASSERT_EQ(::mkdir(dir.file("a").c_str(), 0755), 0);
    EXPECT_TRUE(folderCreate(narrow(dir.file("a/b/c/")), true));
    EXPECT_TRUE(isFolderAt(dir.file("a/b")));
    EXPECT_TRUE(isFolderAt(dir.file("a/b/c")));
    EXPECT_TRUE(folderCreate(narrow(dir.file("a/b/c")), false)); // exists already

    EXPECT_FALSE(folderCreate(narrow(dir.file("x/y")), false)); // no parent, none asked for
    EXPECT_FALSE(isFolderAt(dir.file("x")));
    EXPECT_FALSE(folderCreate(narrow("//server/share"), true));
    EXPECT_FALSE(folderCreate(narrow("a/"), true));
    EXPECT_TRUE(folderCreate(narrow("/"), true));

    // A plain file in the way is no failure here; what goes into it fails later.
    writeFile(dir.file("file"), "x");
    EXPECT_TRUE(folderCreate(narrow(dir.file("file")), true));
    EXPECT_FALSE(folderCreate(narrow(dir.file("file/sub")), true));

    // A relative path of one part is made in the working folder.
    char previous[4096];
    ASSERT_NE(::getcwd(previous, sizeof previous), nullptr);
    ASSERT_EQ(::chdir(dir.path().c_str()), 0);
    EXPECT_TRUE(folderCreate(narrow("rel"), true));
    EXPECT_TRUE(isFolderAt(dir.file("rel")));
    ASSERT_EQ(::chdir(previous), 0);
}

// A real permission error: an unprivileged user can't create in a folder it may only read.
void createWithoutPermission(const std::string& parent) {
    if (setgid(65534) != 0 || setuid(65534) != 0) std::exit(2);
    const bool created = folderCreate(narrow(parent + "/new"), true);
    std::exit(!created && errno == EACCES ? 0 : 1);
}

TEST(FileProbes, FolderCreateFailsWhereItMayNotWrite) {
    TempDir dir;
    ASSERT_EQ(::chmod(dir.path().c_str(), 0755), 0);
    EXPECT_EXIT(createWithoutPermission(dir.path()), ::testing::ExitedWithCode(0), "");
    EXPECT_FALSE(isFolderAt(dir.file("new")));
}

} // namespace
