// A real network share for tests: a temporary folder served on 127.0.0.1 (SMB by Samba, or
// SFTP by sshd) and mounted through FUSE. The share is torn down when the object goes, on
// every path a test can take; where root, /dev/fuse or a server program is missing, the
// share is not there and `skipReason` says why.
#pragma once

#include <string>

#include "tests/support/temp_dir.h"

class NetworkShare {
public:
    explicit NetworkShare(const std::string& kind); // "smb" or "sftp"
    ~NetworkShare();
    NetworkShare(const NetworkShare&) = delete;
    NetworkShare& operator=(const NetworkShare&) = delete;

    bool up() const { return !mounted_.empty(); }
    const std::string& skipReason() const { return skipReason_; }
    // The share as the server keeps it, and as a client sees it through the mount.
    std::string served() const { return dir_.file("served"); }
    const std::string& mounted() const { return mounted_; }

private:
    TempDir dir_;
    std::string mounted_;
    std::string skipReason_;
};
