// The directory scan over real folders.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "files/dir_scan.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

namespace {

// The names a walk delivers, sorted for comparison.
std::vector<std::string> walk(_kzDirScan& scan, const std::string& path, bool withFolders, bool snapshot) {
    scan.start(wide(path), withFolders, snapshot, false, false);
    std::vector<std::string> names;
    while (scan.next()) names.push_back(textOf(scan.currentName()));
    std::sort(names.begin(), names.end());
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
        EXPECT_EQ(walk(txt, dir.path(), false, snapshot), (Names{".hidden.txt", "Abc.txt", "a.txt", "b.TXT"}));
        // Any of the start filters; where there are start filters, end filters do not count.
        _kzDirScan starts;
        starts.addStartFilter(wide("C"));
        starts.addStartFilter(wide("b"));
        starts.addEndFilter(wide(".txt"));
        EXPECT_EQ(walk(starts, dir.path(), false, snapshot), (Names{"b.TXT", "c.log"}));

        // A pattern: names that begin with "ab", in any case, folders too when asked.
        _kzDirScan pattern;
        EXPECT_EQ(walk(pattern, dir.path() + "/ab*", true, snapshot), (Names{"Abc.txt", "abdir", "abx"}));
        EXPECT_EQ(walk(pattern, dir.path() + "/*", false, snapshot).size(), 6u);
    }
}

TEST(DirScan, PathsAttributesAndTheSnapshot) {
    TempDir dir;
    writeFile(dir.file("f.txt"), "12345");
    setModified(dir.file("f.txt"), 1500000000);
    ::chmod(dir.file("f.txt").c_str(), 0640);

    _kzDirScan scan;
    for (const std::string& path : {dir.path(), dir.path() + "/", dir.path() + "\\"}) {
        scan.start(wide(path), false, false, false, false);
        ASSERT_TRUE(scan.next()) << path;
        EXPECT_EQ(textOf(scan.currentPath()), dir.file("f.txt")); // exactly one "/"
        EXPECT_FALSE(scan.next());
    }
    EXPECT_EQ(textOf(scan.scanPath()), dir.path());
    // An entry that stat can't reach (a link to nothing) counts as a file of size 0 and time 0.
    ASSERT_EQ(::symlink(dir.file("nowhere").c_str(), dir.file("link").c_str()), 0);
    scan.start(wide(dir.file("l*")), false, false, false, false);
    ASSERT_TRUE(scan.next());
    EXPECT_EQ(scan.fileSize(), 0);
    EXPECT_EQ(scan.fileTime().value, 0);
    ::unlink(dir.file("link").c_str());

    scan.start(wide(dir.path()), false, true, false, false);
    EXPECT_EQ(scan.entryCount(), 1);
    // The snapshot is fixed: a file that comes now is not in this walk.
    writeFile(dir.file("late.txt"), "x");
    ASSERT_TRUE(scan.next());
    EXPECT_EQ(scan.fileSize(), 5);
    EXPECT_EQ(scan.fileTime().value, 1500000000);
    EXPECT_FALSE(scan.isFolder());
    EXPECT_EQ(textOf(scan.accessText()), "rw r  " + accountName(::geteuid()) + " " + accountName(::getegid()) + " ");
    EXPECT_FALSE(scan.next());
    scan.rewind(); // a snapshot can be walked again; a new start reads the folder anew
    EXPECT_TRUE(scan.next());
    EXPECT_FALSE(scan.next());
    scan.start(wide(dir.path()), false, false, true, true); // sorted implies a snapshot
    ASSERT_EQ(scan.entryCount(), 2);
    EXPECT_EQ(textOf(scan.entryName(0)), "late.txt"); // descending
    EXPECT_EQ(textOf(scan.entryName(1)), "f.txt");
    scan.releaseSnapshot();
    scan.rewind();
    EXPECT_FALSE(scan.next());
    EXPECT_EQ(scan.fileTime().value, 0); // no entry: no time
}


} // namespace
