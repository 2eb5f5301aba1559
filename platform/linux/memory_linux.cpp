#include <malloc.h>

#include "platform/platform_os.h"

// glibc raises its mmap threshold after a large block is freed, so that the next blocks of
// that size stay in the heap, which keeps their pages; setting it turns that off.
void kzFixLargeBlockThreshold_OS(int bytes) { mallopt(M_MMAP_THRESHOLD, bytes); }
