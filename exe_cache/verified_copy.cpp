#include "exe_cache/verified_copy.h"

#include <cstdio>

#include "exe_cache/name_tests.h"
#include "files/access_rights.h"
#include "files/file_copy.h"
#include "files/file_probes.h"
#include "files/path_strings.h"
#include "platform/system_error_text.h"
#include "time/kz_time_ms.h"

namespace {

// The system's text of the present errno, read before anything else can change it.
_kzString8_allSize<250> errorNow() { return kzSystemErrorText(-1); }

bool isFolder(const _kzString8_allSize<500>& path) { return folderExists(path.data); }

// Makes sure the folder that will hold `dst` exists. It is created (with mode 0777) only
// when the folder two levels up, or failing that four levels up, exists: a cache root that
// is gone is reported, not re-created.
bool prepareParent(const _kzString8_allSize<500>& dst, _kzString8_allSize<500>* errorText) {
    const _kzString8_allSize<500> parent = pathFolder(dst);
    if (isFolder(parent)) return true;
    if (!isFolder(pathFolder(parent))) {
        const _kzString8_allSize<500> root = pathFolder(pathFolder(pathFolder(parent)));
        if (!isFolder(root)) {
            appendTo(errorText, {"Copy root folder does not exist '", root.data, "' "});
            return false;
        }
    }
    folderCreate(parent, true);
    setModeAll(parent.data);
    if (isFolder(parent)) return true;
    const _kzString8_allSize<250> reason = errorNow();
    appendTo(errorText, {"Unable to create destination folder '", parent.data, "' ", reason.data});
    return false;
}

} // namespace

bool copyFileChecked(const _kzString8_allSize<500>& src, const _kzString8_allSize<500>& dst,
                     _kzString8_allSize<500>* errorText, _kzString8_allSize<500>* infoText, int32_t throttleMs,
                     _kzCopyStats* stats) {
    _kzTime srcTime, dstTime;
    int64_t srcSize = 0, dstSize = 0;
    if (!fileInfo(src, &srcTime, &srcSize)) {
        appendTo(errorText, {"Source file does not exists! ", src.data});
        return false;
    }
    if (srcSize <= 0) {
        appendTo(errorText, {"Source has no file size! ", src.data});
        return false;
    }
    if (srcTime.value <= 0) {
        appendTo(errorText, {"Source has no file time! ", src.data});
        return false;
    }

    bool needed = true;
    if (fileInfo(dst, &dstTime, &dstSize)) {
        needed = dstSize != srcSize || dstTime.value != srcTime.value;
        if (needed) {
            // The differing file goes aside; a failed rename is told, and the copy below
            // (which removes the file) is tried all the same.
            appendTo(infoText, {"Renaming dest file ", dst.data, ";\n"});
            const _kzString8_allSize<500> aside = dst.combined("_old");
            if (!fileMove(dst, aside, true)) {
                const _kzString8_allSize<250> reason = errorNow();
                appendTo(errorText, {"Unable to rename old file! ", dst.data, " ", reason.data});
            }
        }
    }
    if (!prepareParent(dst, errorText)) return false;
    if (!needed) return true;

    appendTo(infoText, {"Copy ", src.data, " => ", dst.data, " ... "});
    const _kzTimeMS started;
    if (!fileCopy(src, dst, true, &throttleMs, nullptr)) {
        const _kzString8_allSize<250> reason = errorNow();
        appendTo(errorText, {"Unable to copy file! ", src.data, " => ", dst.data, " ", reason.data});
        return false;
    }
    if (stats) stats->addCopyThrottled(static_cast<uint64_t>(srcSize), started.elapsed(), throttleMs, kzFileCopyChunk);
    if (setModeAll(dst.data)) return true;
    const _kzString8_allSize<250> reason = errorNow();
    appendTo(errorText, {"Unable to set execute rights on file! ", dst.data, " ", reason.data});
    return false;
}

bool copyFileLogged(const _kzString8_allSize<500>& srcRoot, const _kzString8_allSize<500>& dstRoot,
                    const _kzString8_allSize<500>& subFolder, const _kzString8_allSize<500>& fileName,
                    _kzString8_allSize<1000>* infoLog, _kzString8_allSize<1000>* errorLog, bool verbose,
                    const uint8_t& fastCopy, _kzCopyStats* stats) {
    const _kzString8_allSize<500> src = srcRoot.combined(subFolder).combined(fileName);
    const _kzString8_allSize<500> dst = dstRoot.combined(subFolder).combined(fileName);
    _kzString8_allSize<500> errorText, infoText;
    const bool copied = copyFileChecked(src, dst, &errorText, &infoText, fastCopy ? 5 : 200, stats);
    if (infoText.hasData()) {
        infoText.add(";\n");
        if (verbose) std::puts(infoText.data);
        appendTo(infoLog, {infoText.data});
    }
    if (errorText.hasData()) {
        errorText.add(";\n");
        if (verbose) std::printf("ERROR:  %s\n", errorText.data);
        appendTo(errorLog, {errorText.data});
    }
    // A copy that reported success and left nothing behind is worth a line of its own.
    if (!fileInfo(dst, nullptr, nullptr) && errorText.isEmpty())
        appendTo(errorLog, {dst.data, "ERROR:   DOES NOT exist, although copied without error;\n"});
    return copied;
}
