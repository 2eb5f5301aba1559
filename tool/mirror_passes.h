// The two mirror passes of the watch loop. Each is silent: a failure is tried again at the
// next pass, seven seconds later.
#pragma once

#include "tool/run_state.h"

// Text files of the local folder to the network root's log folder.
void logPass(const kzStartLocalRun& run);

// The job database files of the local folder to the network root's job database folder.
void jobDbPass(const kzStartLocalRun& run);
