#include "tool/mirror_file.h"

#include <cstdint>

#include "files/file_copy.h"
#include "files/file_probes.h"

void mirrorFile(const _kzString<500>& source, const _kzString<500>& destination) {
    _kzTime sourceTime, destinationTime;
    int64_t sourceSize = 0, destinationSize = 0;
    fileInfo(source, &sourceTime, &sourceSize);
    const bool mirrored = fileInfo(destination, &destinationTime, &destinationSize);
    // Exactly equal, no tolerance and no order: a newer mirror or a source that shrank is
    // a difference like any other.
    if (mirrored && sourceTime.value == destinationTime.value && sourceSize == destinationSize) return;
    const int32_t noPause = 0;
    fileCopy(source.to_kzString8_500(), destination.to_kzString8_500(), true, &noPause, nullptr);
}
