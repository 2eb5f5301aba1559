#include "exe_cache/cache_refresh.h"

#include <cstdio>

#include "buffers/file_list.h"
#include "exe_cache/classify_application.h"
#include "exe_cache/name_tests.h"
#include "exe_cache/verified_copy.h"
#include "files/access_rights.h"
#include "files/dir_scan.h"
#include "files/file_probes.h"
#include "files/path_strings.h"
#include "platform/system_error_text.h"

namespace {

using Path = _kzString8_allSize<500>;
using Log = _kzString8_allSize<1000>;

// Everything one refresh works with: where it reads, where it writes, and how it reports.
struct Refresh {
    Path exeWithPath, localFolder;
    Log* infoLog;
    Log* errorLog;
    bool verbose;
    const uint8_t& fastCopy;
    _kzCopyStats* stats;
    bool copyQtGui, copyPython, copyOpenExr, copyVideoLibs, copyImagePlugins, copyRenderConfig;

    bool copy(const Path& root, const Path& sub, const Path& name) {
        return copyFileLogged(root, localFolder, sub, name, infoLog, errorLog, verbose, fastCopy, stats);
    }

    // Creates a cache folder with its parents and opens it to everybody.
    bool prepare(const Path& folder) {
        if (!folderCreate(folder, true)) {
            appendTo(errorLog, {"Unable to create directory! ", folder.data, "\n"});
            if (verbose) std::printf("Unable to create directory! %s \n", folder.data);
            return false;
        }
        if (!setModeAll(folder.data)) {
            const _kzString8_allSize<250> reason = kzSystemErrorText(-1);
            appendTo(errorLog, {"Unable to set access rights for folder ", folder.data, "! ", reason.data, "\n"});
            if (verbose) std::printf("Unable to set access rights for folder! %s %s\n", folder.data, reason.data);
            return false;
        }
        return true;
    }

    // Copies every name of `root` + `sub` that `wanted` lets through; false at the first
    // failed copy. A folder that can't be read has no names.
    template <typename Rule>
    bool copyFolder(const Path& root, const Path& sub, Rule wanted) {
        _kzDirScan scan;
        scan.start(_kzString<500>(root.combined(sub).data), false, true, false, false);
        while (scan.next()) {
            const Path name(scan.currentName().data);
            if (wanted(name) && !copy(root, sub, name)) return false;
        }
        return true;
    }

    // Makes the cache's `sub` equal to `base` + `sub` for the names `wanted` lets through.
    // A cache file whose name (ignoring case) the source lacks is deleted, but only after
    // the whole source was walked without a failed copy. A name the rule skips still
    // counts as present, so its cache file stays.
    template <typename Rule>
    bool mirror(const Path& base, const Path& sub, Rule wanted) {
        _kzFileList stale;
        {
            _kzDirScan cached;
            cached.start(_kzString<500>(localFolder.combined(sub).data), false, true, false, false);
            while (cached.next()) stale.add(cached.currentName(), false, false);
        }
        const bool walked = copyFolder(base, sub, [&](const Path& name) {
            const int known = stale.find(_kzString<500>(name.data), false);
            if (known >= 0) stale.removeAt(known);
            return wanted(name);
        });
        if (!walked) return false;
        for (int i = 0; i < stale.count; ++i) fileDelete(localFolder.combined(sub).combined(Path(stale.data[i].data)));
        return true;
    }

    bool libraryWanted(const Path& name) const {
        if (containsAny(name, {".upd", ".old", "libpyKZ2"})) return false;
        if (startsWithAny(name, {"av", "libav", "swscale", "libswscale"})) return copyVideoLibs;
        if (containsAny(name, {"python"})) return copyPython;
        if (containsAny(name, {"QtGui"})) return copyQtGui;
        if (startsWithAny(name, {"Half.", "Iex-2_2.", "IexMath-2_2.", "IlmImf-2_2.", "IlmImfUtil-2_2.",
                                 "IlmThread-2_2.", "Imath-2_2.", "libHalf.", "libIex-2_2.", "libIexMath-2_2.",
                                 "libIlmImf-2_2.", "libIlmImfUtil-2_2.", "libIlmThread-2_2.", "libImath-2_2."}))
            return copyOpenExr;
        return true;
    }

    // The heading, then the three paths (once more, without the heading, for a bundle).
    void printStart(const Path& sourcePath, bool heading) const {
        if (!verbose) return;
        if (heading) std::printf("localExeCache_copy\n");
        std::printf("    exeWithPath %s\n    localFolder %s\n    sourcePath %s\n", exeWithPath.data, localFolder.data,
                    sourcePath.data);
    }
    void printStage(const Path& libSourcePath, const Path& libDestFolderAdd) const {
        if (verbose) std::printf("libSourcePath  %s\n    libDestFolderAdd %s\n", libSourcePath.data, libDestFolderAdd.data);
    }

    Path run();
};

bool anyName(const Path&) { return true; }

Path Refresh::run() {
    Path sourcePath = pathFolder(exeWithPath);
    printStart(sourcePath, true);
    const bool isAppBundle = sourcePath.indexOf(".app/", 0) >= 0;
    if (isAppBundle) {
        // From the bundle's MacOS folder to the folder that holds the bundle.
        sourcePath = pathFolder(pathFolder(pathFolder(sourcePath)));
        printStart(sourcePath, false);
    }
    const Path exeName(pathFileName(exeWithPath).data);

    if (!folderExists(sourcePath.data)) {
        appendTo(errorLog, {"KZ network folder not found! ", sourcePath.data, "\n"});
        if (verbose) std::printf("KZ network folder not found! %s\n", sourcePath.data);
        return exeWithPath;
    }
    folderCreate(localFolder, true);
    if (!folderExists(localFolder.data)) {
        appendTo(errorLog, {"KZ local cache folder not found! ", localFolder.data, "\n"});
        if (verbose) std::printf("KZ local cache folder not found! %s\n", localFolder.data);
        return exeWithPath;
    }
    classifyApplication(copyQtGui, copyPython, copyOpenExr, copyVideoLibs, copyImagePlugins, copyRenderConfig,
                        exeName);

    // Shared libraries, by the name rules of the classification.
    Path libSourcePath = sourcePath.combined("lib/");
    Path libDestFolderAdd("lib/");
    const Path libFolder = localFolder.combined("lib");
    if (!folderExists(libFolder.data) && !prepare(libFolder)) return exeWithPath;
    printStage(libSourcePath, libDestFolderAdd);
    if (!copyFolder(sourcePath, libDestFolderAdd, [this](const Path& name) { return libraryWanted(name); }))
        return exeWithPath;
    if (verbose) std::printf("sourcePath %s localFolder %s\n", sourcePath.data, localFolder.data);

    if (exeName.startsWith("kzClient") && !copy(sourcePath, Path(), Path("kzClientcommander"))) return exeWithPath;
    if (exeName.startsWith("kzServer") && !copy(sourcePath, Path(), Path("kzServercommander"))) return exeWithPath;

    // GUI resources and platform plug-ins, whole, for every application.
    libSourcePath.add("Resources/qt_menu.nib/");
    libDestFolderAdd.add("Resources/qt_menu.nib/");
    printStage(libSourcePath, libDestFolderAdd);
    if (!prepare(localFolder.combined("lib/Resources/qt_menu.nib"))) return exeWithPath;
    if (!copyFolder(sourcePath, libDestFolderAdd, anyName)) return exeWithPath;
    libSourcePath = sourcePath.combined("platforms/");
    libDestFolderAdd = Path("platforms/");
    printStage(libSourcePath, libDestFolderAdd);
    if (!prepare(localFolder.combined("platforms"))) return exeWithPath;
    if (!copyFolder(sourcePath, libDestFolderAdd, anyName)) return exeWithPath;

    // The executable, after its libraries.
    Path resultPath;
    if (isAppBundle) {
        const Path contents = exeName.combined(".app/Contents/");
        const Path macOS = contents.combined("MacOS/");
        const Path resources = contents.combined("Resources/");
        const Path icon = exeName.combined(".icns");
        if (!copy(sourcePath, contents, Path("Info.plist")) || !copy(sourcePath, contents, Path("PkgInfo")))
            return exeWithPath;
        if (fileInfo(sourcePath.combined(resources).combined(icon), nullptr, nullptr) &&
            !copy(sourcePath, resources, icon))
            return exeWithPath;
        if (fileInfo(sourcePath.combined(macOS).combined("startlocal.sh"), nullptr, nullptr) &&
            !copy(sourcePath, macOS, Path("startlocal.sh")))
            return exeWithPath;
        if (!copy(sourcePath, macOS, exeName)) return exeWithPath;
        resultPath = bundleExecutablePath(localFolder.combined(exeName));
    } else {
        if (!copy(sourcePath, Path(), exeName)) return exeWithPath;
        resultPath = localFolder.combined(exeName);
    }

    const Path networkRoot = pathFolder(pathFolder(sourcePath));
    if (copyImagePlugins) {
        const bool wide = containsAny(exeWithPath, {"win64", "lx64", "mac64"});
        const Path base = networkRoot.combined(wide ? "plugins64/" : "plugins/");
        if (!mirror(base, Path("image/"), [](const Path& name) {
                return !containsAny(name, {".upd", ".old"}) && !endsWithAny(name, {".dll", ".so.1", ".so.1.0.0"});
            }))
            return exeWithPath;
    }
    if (copyRenderConfig) {
        const Path base = networkRoot.combined("render_apps/");
        const auto configWanted = [](const Path& name) {
            return containsAny(name, {".png", ".inc", ".cfg"}) && !containsAny(name, {".udp", ".old"});
        };
        if (!mirror(base, Path("_config/"), configWanted) || !mirror(base, Path("_config_inhouse/"), configWanted))
            return exeWithPath;
    }
    return resultPath;
}

} // namespace

_kzString8_allSize<500> localExeCache_copy(const _kzString8_allSize<500>& exeWithPath,
                                           const _kzString8_allSize<500>& localFolder,
                                           _kzString8_allSize<1000>* infoLog, _kzString8_allSize<1000>* errorLog,
                                           bool verbose, const uint8_t& fastCopy, _kzCopyStats* stats) {
    if (errorLog) errorLog->clear();
    if (infoLog) infoLog->clear();
    Refresh refresh{exeWithPath, localFolder, infoLog, errorLog, verbose, fastCopy, stats,
                    true, true, true, false, false, false};
    return refresh.run();
}

_kzString8_allSize<500> bundleExecutablePath(const _kzString8_allSize<500>& path) {
    return path.combined(".app/Contents/MacOS/").combined(pathFileName(path).data);
}

_kzString<250> bundleExecutablePath(const _kzString<250>& path) {
    const _kzString<100> name = pathFileName(path);
    _kzString<250> result(path);
    result.add(".app/Contents/MacOS/");
    result.add(name.data, name.length);
    return result;
}
