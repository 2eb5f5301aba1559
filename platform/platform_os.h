// The seam between the platform glue and the operating system. Each function here has one
// definition per platform, in the platform's own folder; nothing above this seam includes
// an operating-system header beyond POSIX.
#pragma once

#include <cstdint>

// Writes the system's text of error `code` into `buffer` (at most `size` bytes with the
// terminator). False if the system does not know the number or the text does not fit.
bool kzErrorText_OS(int code, char* buffer, int size);

// Writes the full path of the running executable into `buffer` (NUL-terminated, at most
// `size` bytes with the terminator). False if the system can't tell or it doesn't fit.
bool kzExecutablePath_OS(char* buffer, int size);

// Blocks of at least `bytes` are taken from the system for themselves and returned to it
// when freed, whatever sizes were freed before.
void kzFixLargeBlockThreshold_OS(int bytes);

// Whether closing a file written through `fd` is known to leave its modification time as it
// was set while the file was open: true for the local disks and for sshfs. False where the
// close may stamp the time of the last write over it, as SMB shares do (the server sets it
// when the handle closes), and wherever that is not known (other network and FUSE file
// systems). Asked right after the open, before anything is written: it must not cost a round
// trip to a server.
bool kzCloseKeepsFileTime_OS(int fd);

// The present time of the clock that the file system stamps modification times from when a
// file is written: a time that a write made after this call can't fall below.
void kzFileClockNow_OS(int64_t* seconds, int64_t* nanoseconds);
