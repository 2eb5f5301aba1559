#include "tool/log_pass.h"

#include "tool/mirror_file.h"

_kzString<500> logDestination(const _kzString<500>& networkRoot, const _kzString<500>& name) {
    static const _kzString<500> localMark("__local.txt"), textMark(".txt"), copyMark("__copyFromLocal.txt");
    _kzString<500> destination(networkRoot);
    destination += "sub/log/";
    destination.add(name);
    destination.replace(destination.endsWith(localMark) ? localMark : textMark, copyMark);
    return destination;
}

void logPass(const _kzString<500>& localFolder, const _kzString<500>& networkRoot, _kzDirScan& logScan) {
    // The whole folder is read before the first copy, so the pass walks a fixed list in
    // the directory's own order, even while the server adds and removes files.
    logScan.start(localFolder, false, true, false, false);
    while (logScan.next())
        mirrorFile(logScan.currentPath(), logDestination(networkRoot, logScan.currentName()));
    // The next pass reads the folder anew: between passes the tool holds no list of names.
    logScan.releaseSnapshot();
}
