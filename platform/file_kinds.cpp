#include "platform/file_kinds.h"

#include <sys/stat.h>

bool kzHasFolderBit(unsigned mode) { return (mode & 0x4000) != 0; }

bool kzIsFolderKind(unsigned mode) { return S_ISDIR(mode); }
