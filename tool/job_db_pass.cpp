#include "tool/job_db_pass.h"

#include "files/file_probes.h"
#include "tool/mirror_file.h"

_kzString<500> jobDbFolder(const _kzString<500>& networkRoot) {
    return networkRoot.combined("sub/cfg_global/__copyFromLocal/");
}

void jobDbPass(const _kzString<500>& localFolder, const _kzString<500>& networkRoot, _kzDirScan& jobScan) {
    const _kzString<500> folder = jobDbFolder(networkRoot);
    // Made on every pass, so a folder that vanished comes back.
    if (!folderCreate(folder.to_kzString8_500(), true)) return;
    jobScan.start(localFolder, false, true, false, false);
    while (jobScan.next()) {
        const _kzString<500> name = jobScan.currentName();
        if (name.indexOf("jobs.db") < 0) continue;
        mirrorFile(jobScan.currentPath(), folder.combined(name));
    }
    jobScan.releaseSnapshot();
}
