// Owners and rights as the suite writes them beside a file: the account name of a user id,
// and the letters of a mode's rights.
#pragma once

#include "strings/kz_string8.h"

// The account name of a user id from the system's user database: false if the id has no
// account; true with `name` null for an account without a name, else with its name.
bool kzUserName(unsigned id, const char** name);
// The name (cut to 100 characters), empty for an account without one, or "ID <number>" for
// an id without an account.
_kzString8_allSize<100> kzUserNameOrId(unsigned id);
// "rwx rx rx " for 0755: for owner, group and others the letters of the bits that are set,
// and a blank after each group.
_kzString8_allSize<100> kzRightsText(unsigned mode);
