// The two rules by which the system tells a folder from the mode bits that stat gives.
#pragma once

// The folder bit, 0x4000: the file layer's rule. Anything that stat reaches without it is a
// file; a block device and a socket carry the bit too, and so count as folders.
bool kzHasFolderBit(unsigned mode);

// A folder and nothing else: where what matters is whether a file can be written over the
// path, as in a copy.
bool kzIsFolderKind(unsigned mode);
