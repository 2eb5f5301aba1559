// File probes on real files and folders in a temporary directory.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include <gtest/gtest.h>

#include "files/file_probes.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

namespace {

TEST(FileProbes, InfoDeleteSetTimeAndMove) {
    TempDir dir;
    writeFile(dir.file("a.txt"), "12345");
    setModified(dir.file("a.txt"), 1500000000);
    _kzTime time;
    int64_t size = -1;
    ASSERT_TRUE(fileInfo(wide(dir.file("a.txt")), &time, &size));
    EXPECT_EQ(time.value, 1500000000);
    EXPECT_EQ(size, 5);
    EXPECT_FALSE(fileInfo(wide(dir.path()), &time, &size)); // a folder reads as a missing file
    EXPECT_EQ(time.value, 0);
    EXPECT_EQ(size, 0);
    _kzFileStamp stamp{1, 1, 1};
    EXPECT_FALSE(fileStamp(narrow(dir.path()), &stamp)); // and has no stamp
    EXPECT_EQ(stamp.seconds, 0);
    EXPECT_FALSE(fileExists(wide(dir.file("none"))));
    makeSocket(dir.file("socket")); // its mode carries the folder bit, which makes a folder here
    EXPECT_FALSE(fileExists(wide(dir.file("socket"))));
    EXPECT_TRUE(folderExists(dir.file("socket").c_str()));

    EXPECT_TRUE(fileDelete(narrow(dir.file("missing"))));
    EXPECT_FALSE(fileDelete(narrow(dir.path()))); // unlink refuses a folder
    const _kzTime when(int64_t(1400000000), true);
    ASSERT_TRUE(fileSetTime(narrow(dir.file("a.txt")), &when));
    EXPECT_EQ(statOf(dir.file("a.txt")).st_atime, 1400000000);
    EXPECT_EQ(statOf(dir.file("a.txt")).st_mtime, 1400000000);
    EXPECT_FALSE(fileSetTime(narrow(dir.file("none")), nullptr));

    writeFile(dir.file("dst"), "old");
    EXPECT_TRUE(fileMove(narrow(dir.file("a.txt")), narrow(dir.file("dst")), false)); // nothing moved
    EXPECT_EQ(readFile(dir.file("dst")), "old");
    ::mkdir(dir.file("folder").c_str(), 0755);
    EXPECT_FALSE(fileMove(narrow(dir.file("folder")), narrow(dir.file("moved")), true)); // only files move
    EXPECT_TRUE(isFolderAt(dir.file("folder")));
    EXPECT_TRUE(fileMove(narrow(dir.file("a.txt")), narrow(dir.file("dst")), true));
    EXPECT_EQ(readFile(dir.file("a.txt")), "<missing>");
    EXPECT_EQ(readFile(dir.file("dst")), "12345");
    EXPECT_TRUE(fileDelete(narrow(dir.file("dst"))));
    EXPECT_EQ(readFile(dir.file("dst")), "<missing>");
}

TEST(FileProbes, FoldersExistAndAreMadeWithTheirParents) {
    TempDir dir;
    _kzString8_allSize<500> folder = narrow(dir.path() + "/");
    EXPECT_TRUE(folderExists(folder));
    EXPECT_EQ(folder.data[folder.length - 1], 0); // the "/" became a NUL, the length stayed
    EXPECT_FALSE(folderExists("/"));
    EXPECT_TRUE(folderCreate(narrow(dir.file("a/b/c/")), true));
    EXPECT_TRUE(isFolderAt(dir.file("a/b/c")));
    EXPECT_TRUE(folderCreate(narrow(dir.file("a/b/c")), false)); // exists already
    EXPECT_FALSE(folderCreate(narrow(dir.file("x/y")), false));  // no parent, none asked for
    EXPECT_FALSE(folderCreate(narrow("//server/share"), true));
    EXPECT_TRUE(folderCreate(narrow("/"), true));
    // A plain file in the way is no failure here; what goes into it fails later.
    writeFile(dir.file("file"), "x");
    EXPECT_TRUE(folderCreate(narrow(dir.file("file")), true));
    EXPECT_FALSE(folderCreate(narrow(dir.file("file/sub")), true));
    // A real permission error: a user who may only read the folder can't create in it. Root
    // may write anywhere, so there an unprivileged user tries.
    ASSERT_EQ(::chmod(dir.path().c_str(), 0555), 0);
    const auto createDenied = [&] {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) _exit(2);
        _exit(folderCreate(narrow(dir.file("new")), true) ? 1 : errno != EACCES ? 3 : 0);
    };
    EXPECT_EXIT(createDenied(), ::testing::ExitedWithCode(0), "");
    ::chmod(dir.path().c_str(), 0755);
}

} // namespace
