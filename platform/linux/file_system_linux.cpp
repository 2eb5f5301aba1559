// Which file systems keep a modification time that was set while a file was open for
// writing, on Linux: those on a block device of this machine, told by the device number of
// the descriptor's file system. Network file systems, FUSE and tmpfs have anonymous device
// numbers (major 0); they get the time after the close, which holds on all of them. Only
// fstat is asked, right after the open, while the file's attributes are still cached: a
// statfs would be a round trip to the server on a FUSE share.
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include "platform/platform_os.h"

bool kzCloseKeepsFileTime_OS(int fd) {
    struct stat st;
    return ::fstat(fd, &st) == 0 && major(st.st_dev) != 0;
}
