#include "platform/memory.h"

#include "platform/platform_os.h"

void kzReturnLargeBlocksToSystem() { kzFixLargeBlockThreshold_OS(128 * 1024); }
