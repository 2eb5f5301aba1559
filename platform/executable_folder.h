// Where the running executable lies, and the parent of a folder.
#pragma once

#include "strings/kz_string8.h"

// The folder of the running executable, with a trailing "/". The system is asked first;
// without an answer it is worked out from argv[0] and the working folder. False, with
// `folder` empty, if neither gives anything.
bool kzFindExecutableFolder(_kzString8_allSize<250>& folder, const char* argv0);

// The second half of kzFindExecutableFolder: takes `folder` as the system gave it, or, if
// it is empty, works it out from argv0, and then keeps only its folder part.
bool kzResolveExecutableFolder(_kzString8_allSize<250>& folder, const char* argv0);

// kzFindExecutableFolder's folder, empty if not found.
_kzString8_allSize<250> kzExecutableFolder(const char* argv0);

// The path without its last element, with a trailing "/": "/a/b/c" gives "/a/b/". Paths
// below 3 characters stay, an element right behind the root isn't cut ("/ab" gives
// "/ab/"), and a server's share isn't left ("//server/share" gives "//server/share/").
_kzString8_allSize<250> kzParentFolder(_kzString8_allSize<250> path);
