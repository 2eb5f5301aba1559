#include "tool/job_db_pass.h"

#include "files/file_probes.h"
#include "tool/mirror_file.h"

namespace {

bool isJobDbName(const _kzString<500>& name) { return name.indexOf("jobs.db") >= 0; }

// Removes from the job folder every file of a job database name for which the local folder
// (the snapshot in `local`) has no entry of exactly that name. The side files that a
// database engine deletes when it closes (a write-ahead log, its index, a rollback journal)
// must not outlive their source in the mirror, where a reader would lay them over the newer
// database. Folders stay.
void removeVanished(const _kzString<500>& folder, const _kzDirScan& local) {
    _kzDirScan mirror;
    mirror.start(folder, false, true, false, false);
    while (mirror.next()) {
        const _kzString<500> name = mirror.currentName();
        if (isJobDbName(name) && local.findEntry(name, true) < 0) fileDelete(mirror.currentPath().to_kzString8_500());
    }
}

} // namespace

_kzString<500> jobDbFolder(const _kzString<500>& networkRoot) {
    return networkRoot.combined("sub/cfg_global/__copyFromLocal/");
}

void jobDbPass(const _kzString<500>& localFolder, const _kzString<500>& networkRoot, _kzDirScan& jobScan) {
    const _kzString<500> folder = jobDbFolder(networkRoot);
    // Made on every pass, so a folder that vanished comes back.
    if (!folderCreate(folder.to_kzString8_500(), true)) return;
    // Folders are listed too, so that a mirror file stays while the local folder holds
    // anything of its name; the copies pass them over.
    jobScan.start(localFolder, true, true, false, false);
    // What is gone goes first, before anything new arrives beside it; only a folder that was
    // read tells what is gone.
    if (jobScan.folderRead()) removeVanished(folder, jobScan);
    while (jobScan.next()) {
        const _kzString<500> name = jobScan.currentName();
        if (isJobDbName(name)) mirrorFile(jobScan.currentPath(), folder.combined(name));
    }
    jobScan.releaseSnapshot();
}
