// The directory scan over real folders.
#include <dirent.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "files/dir_scan.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

namespace {

// The names a walk delivers, sorted for comparison unless the order matters.
std::vector<std::string> walk(_kzDirScan& scan, const std::string& path, bool withFolders, bool snapshot,
                              bool keepOrder = false) {
    scan.start(wide(path), withFolders, snapshot, false, false);
    std::vector<std::string> names;
    while (scan.next()) names.push_back(textOf(scan.currentName()));
    if (!keepOrder) std::sort(names.begin(), names.end());
    return names;
}

using Names = std::vector<std::string>;

TEST(DirScan, FiltersIgnoreCaseAndFoldersComeOnlyWhenAsked) {
    TempDir dir;
    for (const char* name : {"a.txt", "b.TXT", "c.log", ".hidden.txt", "abx", "Abc.txt"})
        writeFile(dir.file(name), "x");
    ::mkdir(dir.file("x.txt").c_str(), 0755);
    ::mkdir(dir.file("abdir").c_str(), 0755);

    for (bool snapshot : {false, true}) {
        _kzDirScan all;
        EXPECT_EQ(walk(all, dir.path(), false, snapshot),
                  (Names{".hidden.txt", "Abc.txt", "a.txt", "abx", "b.TXT", "c.log"}));
        EXPECT_EQ(walk(all, dir.path(), true, snapshot),
                  (Names{".hidden.txt", "Abc.txt", "a.txt", "abdir", "abx", "b.TXT", "c.log", "x.txt"}));

        _kzDirScan txt;
        txt.addEndFilter(wide(".txt"));
        txt.addEndFilter(wide(""));
        EXPECT_EQ(walk(txt, dir.path(), false, snapshot),
                  (Names{".hidden.txt", "Abc.txt", "a.txt", "b.TXT"}));

        // A start filter sets the end filters aside.
        _kzDirScan starts;
        starts.addEndFilter(wide(".log"));
        starts.addStartFilter(wide("AB"));
        EXPECT_EQ(walk(starts, dir.path(), false, snapshot), (Names{"Abc.txt", "abx"}));

        // A pattern: names that begin with "ab", in any case, folders too when asked.
        _kzDirScan pattern;
        EXPECT_EQ(walk(pattern, dir.path() + "/ab*", true, snapshot), (Names{"Abc.txt", "abdir", "abx"}));
        EXPECT_EQ(walk(pattern, dir.path() + "/*", false, snapshot).size(), 6u);
    }
}

TEST(DirScan, PathsAttributesAndTheSnapshot) {
    TempDir dir;
    writeFile(dir.file("f.txt"), "12345");
    ::chmod(dir.file("f.txt").c_str(), 0640);
    struct stat st;
    ::stat(dir.file("f.txt").c_str(), &st);

    _kzDirScan scan;
    for (const std::string& path : {dir.path(), dir.path() + "/", dir.path() + "\\"}) {
        scan.start(wide(path), false, false, false, false);
        ASSERT_TRUE(scan.next()) << path;
        EXPECT_EQ(textOf(scan.currentPath()), dir.file("f.txt")); // exactly one "/"
        EXPECT_FALSE(scan.next());
    }
    EXPECT_EQ(textOf(scan.scanPath()), dir.path());

    scan.start(wide(dir.path()), false, true, false, false);
    EXPECT_EQ(scan.entryCount(), 1);
    // The snapshot is fixed: a file that comes now is not in this walk.
    writeFile(dir.file("late.txt"), "x");
    ASSERT_TRUE(scan.next());
    EXPECT_EQ(scan.fileSize(), 5);
    EXPECT_EQ(scan.fileTime().value, st.st_mtime);
    EXPECT_FALSE(scan.isFolder());
    // No dashes for missing bits; the group id goes through the user lookup as well.
    const passwd* owner = getpwuid(st.st_uid);
    const passwd* group = getpwuid(st.st_gid);
    const std::string groupName = group ? group->pw_name : "ID " + std::to_string(st.st_gid);
    EXPECT_EQ(textOf(scan.accessText()), std::string("rw r  ") + owner->pw_name + " " + groupName + " ");
    EXPECT_FALSE(scan.next());
    int64_t size = 7;
    EXPECT_FALSE(scan.fileSize(&size)); // the walk has ended
    EXPECT_EQ(size, 0);

    // A snapshot can be walked again; a new start reads the folder anew.
    scan.rewind();
    EXPECT_TRUE(scan.next());
    EXPECT_FALSE(scan.next());
    scan.start(wide(dir.path()), false, false, true, true); // sorted implies a snapshot
    ASSERT_EQ(scan.entryCount(), 2);
    EXPECT_EQ(textOf(scan.entryName(0)), "late.txt");
    EXPECT_EQ(textOf(scan.entryName(1)), "f.txt");
    scan.releaseSnapshot();
    EXPECT_EQ(scan.entryCount(), 0);
    EXPECT_FALSE(scan.next());
    scan.rewind();
    EXPECT_FALSE(scan.next());
}

TEST(DirScan, AnEntryThatVanishesCountsAsAnEmptyFile) {
    TempDir dir;
    writeFile(dir.file("gone.txt"), "12345");
    ::mkdir(dir.file("folder.txt").c_str(), 0755);
    _kzDirScan scan;
    scan.addEndFilter(wide(".txt"));
    scan.start(wide(dir.path()), true, true, true, false);
    ASSERT_EQ(scan.entryCount(), 2);
    ::unlink(dir.file("gone.txt").c_str());
    ::rmdir(dir.file("folder.txt").c_str());
    ASSERT_TRUE(scan.next());
    EXPECT_EQ(textOf(scan.currentName()), "folder.txt");
    EXPECT_FALSE(scan.isFolder()); // read now, after it went
    ASSERT_TRUE(scan.next());
    EXPECT_EQ(scan.fileSize(), 0);
    EXPECT_EQ(scan.fileTime().value, 0);
}

TEST(DirScan, MissingFoldersLongPathsAndNoDescriptorLeft) {
    TempDir dir;
    const int before = openDescriptors();
    _kzDirScan scan;
    EXPECT_TRUE(walk(scan, dir.file("missing"), false, false).empty());
    EXPECT_TRUE(walk(scan, dir.file("missing"), false, true).empty());
    EXPECT_EQ(scan.entryCount(), 0);

    // A folder whose path has more than 249 characters is opened cut, which fails.
    std::string deep = dir.path();
    while (deep.size() < 260) {
        deep += "/" + std::string(40, 'd');
        ASSERT_EQ(::mkdir(deep.c_str(), 0755), 0);
    }
    writeFile(deep + "/f", "x");
    EXPECT_TRUE(walk(scan, deep, false, true).empty());

    // Descriptors: a plain walk stopped half-way, and a scan destroyed with an open walk.
    for (int i = 0; i < 3; ++i) writeFile(dir.file("f" + std::to_string(i)), "x");
    scan.start(wide(dir.path()), false, false, false, false);
    ASSERT_TRUE(scan.next());
    EXPECT_GT(openDescriptors(), before);
    scan.stop();
    EXPECT_FALSE(scan.next());
    EXPECT_EQ(openDescriptors(), before);
    {
        _kzDirScan other;
        other.start(wide(dir.path()), false, false, false, false);
        ASSERT_TRUE(other.next());
    }
    EXPECT_EQ(openDescriptors(), before);
}

// An unreadable folder yields nothing, for a user whom the permission bits stop.
void scanWithoutPermission(const std::string& folder) {
    if (setgid(65534) != 0 || setuid(65534) != 0) std::exit(2);
    _kzDirScan scan;
    scan.start(wide(folder), false, true, false, false);
    std::exit(!scan.next() && scan.entryCount() == 0 ? 0 : 1);
}

TEST(DirScan, AnUnreadableFolderYieldsNothing) {
    TempDir dir;
    ::chmod(dir.path().c_str(), 0755);
    ::mkdir(dir.file("closed").c_str(), 0700);
    writeFile(dir.file("closed/secret.txt"), "x");
    EXPECT_EXIT(scanWithoutPermission(dir.file("closed")), ::testing::ExitedWithCode(0), "");
}

} // namespace
