#pragma once

// Makes large heap blocks go back to the system as soon as they are freed, so that a
// process that runs for weeks holds no memory for the lists it has let go between its
// rounds of work. Call once at start.
void kzReturnLargeBlocksToSystem();
