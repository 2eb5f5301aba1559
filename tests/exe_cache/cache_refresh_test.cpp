// Whole refreshes from a synthetic network share in a temporary folder into a real cache,
// and the kzLocalCache command as a process.

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "exe_cache/cache_refresh.h"
#include "tests/support/child_process.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

namespace fs = std::filesystem;

namespace {

// The words of a text, as a set: file lists are written as one text each here.
std::set<std::string> words(const std::string& text) {
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), {}};
}

std::string bundleFiles(const std::string& contents, const std::string& name) {
    return contents + "Info.plist " + contents + "PkgInfo " + contents + "MacOS/" + name + " ";
}

// root/apps/bin/ holds the executables with lib/ and platforms/; root/ holds the plug-ins
// and render configuration; root/Lx64 leads to the same bin/ under a platform word. The
// cache's parent does not exist yet: the refresh makes it too.
struct Share {
    TempDir dir;
    std::string root = dir.path() + "/net/", bin = root + "apps/bin/", cache = dir.path() + "/local/cache/";

    Share() {
        const std::string icon = "kzViewer.app/Contents/";
        const auto put = [](const std::string& folder, const std::string& files) {
            for (const auto& file : words(files)) {
                fs::create_directories(fs::path(folder + file).parent_path());
                writeFile(folder + file, folder + file);
            }
        };
        put(bin, "kzClient kzClientcommander kzServercommander kzServerconsole kzCreateVideo kzOther lib/x.upd "
                 "lib/y.old.so lib/libpyKZ2.so lib/avcodec.so lib/libpython3.so lib/libQtGui.so lib/libIlmImf-2_2.so "
                 "lib/libplain.so lib/Resources/qt_menu.nib/menu.nib platforms/libqcocoa.so " +
                 bundleFiles("kzSubmitter.app/Contents/", "kzSubmitter") + bundleFiles(icon, "kzViewer") + icon +
                 "MacOS/startlocal.sh " + icon + "Resources/kzViewer.icns");
        put(root, "plugins/image/img.so plugins/image/i.upd plugins/image/w.dll plugins/image/u.so.1 "
                  "plugins64/image/img64.so plugins64/image/i.upd render_apps/_config/a.cfg render_apps/_config/b.PNG "
                  "render_apps/_config/note.txt render_apps/_config/c.udp.cfg render_apps/_config_inhouse/d.inc");
        fs::create_directory_symlink("apps", root + "Lx64");
    }
    // Every file of the cache, relative to it.
    std::set<std::string> cached() const {
        std::set<std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(cache))
            if (entry.is_regular_file()) files.insert(fs::relative(entry.path(), cache).string());
        return files;
    }
    // The refresh's result followed by its error log; what it did goes to `info`, and the
    // files it copied are counted in `stats`.
    std::string refresh(const std::string& exe, _kzString8_allSize<1000>* info = nullptr) {
        const uint8_t fast = 1;
        _kzString8_allSize<1000> errors;
        const _kzString8_allSize<500> result =
            localExeCache_copy(narrow(exe), narrow(cache), info, &errors, false, fast, &stats);
        return textOf(result) + textOf(errors);
    }
    _kzCopyStats stats;
};

// What every application gets, the pieces its flags (as classification letters) add, and
// its own files.
std::set<std::string> filesFor(const std::string& flags, const std::string& own) {
    std::set<std::string> files = words("lib/libplain.so lib/Resources/qt_menu.nib/menu.nib platforms/libqcocoa.so " + own);
    const std::map<char, std::string> byFlag = {
        {'Q', "lib/libQtGui.so"}, {'P', "lib/libpython3.so"}, {'E', "lib/libIlmImf-2_2.so"}, {'V', "lib/avcodec.so"},
        {'I', "image/img.so"},    {'C', "_config/a.cfg _config/b.PNG _config_inhouse/d.inc"}};
    for (char flag : flags) files.merge(words(byFlag.at(flag)));
    return files;
}

TEST(CacheRefresh, EachFamilyGetsExactlyItsFiles) {
    const std::string icon = "kzViewer.app/Contents/";
    const struct { std::string exe, flags, own; } rows[] = {
        {"kzClient", "QEI", "kzClientcommander"},
        {"kzServerconsole", "PEI", "kzServercommander"},
        {"kzCreateVideo", "QPEVI", ""},
        {"kzSubmitter.app/Contents/MacOS/kzSubmitter", "QPC", bundleFiles("kzSubmitter.app/Contents/", "kzSubmitter")},
        {icon + "MacOS/kzViewer", "QEI", bundleFiles(icon, "kzViewer") + icon + "MacOS/startlocal.sh " + icon + "Resources/kzViewer.icns"},
    };
    for (const auto& row : rows) {
        Share share;
        EXPECT_EQ(share.refresh(share.bin + row.exe), share.cache + row.exe);
        EXPECT_EQ(share.cached(), filesFor(row.flags, row.exe + " " + row.own)) << row.exe;
        EXPECT_EQ(share.stats.files, static_cast<int>(share.cached().size())) << row.exe;
        EXPECT_EQ(share.stats.throttleMs, 5) << row.exe;
    }
}

TEST(CacheRefresh, SecondRunCopiesNothingAndStaleFilesGoAfterACleanWalk) {
    Share share;
    const std::string exe = share.root + "Lx64/bin/kzServerconsole", done = share.cache + "kzServerconsole";
    // Each cache file with its inode and change time: equal lists mean nothing was written.
    const auto identities = [&] {
        std::string list;
        for (const auto& file : share.cached())
            list += file + std::to_string(statOf(share.cache + file).st_ino) + "." +
                    std::to_string(statOf(share.cache + file).st_ctim.tv_nsec) + " ";
        return list;
    };
    share.refresh(exe);
    const std::string before = identities();
    const int copied = share.stats.files;
    _kzString8_allSize<1000> info;
    EXPECT_EQ(share.refresh(exe, &info), done);
    EXPECT_EQ(textOf(info), ""); // nothing to tell: nothing was copied
    EXPECT_EQ(identities(), before);
    EXPECT_EQ(share.stats.files, copied);

    // A library whose source only went back in time goes aside for good, over an earlier
    // _old; a changed plug-in too, but its _old has no source and goes at a later refresh.
    // A cache name that differs only in case from a source name the rule skips stays. An
    // empty source fails the walk: nothing is deleted.
    setModified(share.bin + "lib/libplain.so", 1000000000);
    writeFile(share.root + "plugins64/image/img64.so", "changed");
    for (const char* file : {"image/stale.so", "image/I.UPD", "lib/libplain.so_old"}) writeFile(share.cache + file, "x");
    writeFile(share.root + "plugins64/image/zero.so", "");
    const std::string lib = share.cache + "lib/libplain.so";
    EXPECT_EQ(share.refresh(exe, &info), exe + "Source has no file size! " + share.root + "plugins64/image/zero.so;\n");
    const std::string told = "Renaming dest file " + lib + ";\nCopy " + share.root + "Lx64/bin/lib/libplain.so => " + lib;
    EXPECT_EQ(textOf(info).substr(0, told.size() + 7), told + " ... ;\n");
    EXPECT_EQ(readFile(lib + "_old"), share.bin + "lib/libplain.so"); // the old version, over the earlier _old
    EXPECT_EQ(readFile(share.cache + "image/stale.so"), "x");
    fs::remove(share.root + "plugins64/image/zero.so");
    for (int run = 0; run < 2; ++run) EXPECT_EQ(share.refresh(exe), done);
    EXPECT_EQ(share.cached(), filesFor("PE", "kzServerconsole kzServercommander image/img64.so image/I.UPD lib/libplain.so_old"));
    EXPECT_EQ(readFile(share.cache + "image/img64.so"), "changed");
    EXPECT_EQ(modifiedAt(lib), 1000000000);
}

// The command as a process: its exit status, a blank, and what it wrote on both streams.
std::string runCommand(const std::string& args) {
    TempDir dir;
    Child child = Child::start({"/bin/sh", "-c", "exec " KZ_LOCAL_CACHE_PATH " " + args}, dir.file("out"), "kzLocalCache");
    int status = -1;
    child.waitExit(20000, &status);
    return std::to_string(status) + " " + readFile(dir.file("out"));
}

TEST(CacheRefresh, MissingFoldersAndTheCommand) {
    Share share;
    const std::string gone = share.root + "gone/bin/kzClient", other = share.bin + "kzOther";
    EXPECT_EQ(share.refresh(gone), gone + "KZ network folder not found! " + share.root + "gone/bin/\n");
    writeFile(share.dir.file("file"), "x");
    share.cache = share.dir.file("file/cache/");
    EXPECT_EQ(share.refresh(other), other + "KZ local cache folder not found! " + share.cache + "\n");
    // A cache folder that another user made can't be opened to everybody: said with the reason.
    // Only root can make a folder of another user; an unprivileged user refreshes there.
    if (geteuid() == 0) {
        ::chmod(share.dir.path().c_str(), 0755);
        share.cache = share.dir.file("owned/");
        ::mkdir(share.cache.c_str(), 0755);
        ::chmod(share.cache.c_str(), 0777); // everybody may make folders in it; "platforms" is root's
        ::mkdir((share.cache + "platforms").c_str(), 0755);
        const auto notOwner = [&] {
            if (setgid(65534) != 0 || setuid(65534) != 0) _exit(2);
            std::fputs(share.refresh(other).c_str(), stderr);
            _exit(0);
        };
        EXPECT_EXIT(notOwner(), ::testing::ExitedWithCode(0), "Unable to set access rights for folder .*/owned/platforms! Operation not permitted\n$");
    }

    // The platform folder is made and opened to everybody even with no file to copy into it.
    const std::string cache = share.dir.file("cmd");
    fs::remove(share.bin + "platforms/libqcocoa.so");
    for (const auto& [args, expected] : std::vector<std::pair<std::string, std::string>>{
             {other, "2 usage: kzLocalCache <executable on the network> <local cache folder> [-fast] [-v]\n"},
             {other + " " + cache + " -FAST", "0 " + cache + "/kzOther\n"},
             {share.bin + "gone " + cache + " -fast", "1 Source file does not exists! " + share.bin + "gone;\n" + share.bin + "gone\n"},
             {other + " " + cache + " -v -fast", "0 localExeCache_copy\n    exeWithPath " + other}})
        EXPECT_EQ(runCommand(args).substr(0, expected.size()), expected) << args;
    EXPECT_EQ(statOf(cache + "/platforms").st_mode & 0777, 0777u);
}

} // namespace
