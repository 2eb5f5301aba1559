// Path texts: file name, folder, base name, relative or not, slashes, tidying. Nothing here
// touches the file system. The separator is "/"; drive roots ("C:/") and network roots
// ("//server/share/") are known, and so are the stored-path placeholders "<Database>",
// "[cfgPath]" and "[temp]", which are recognised but never expanded. Every result stops
// silently at its capacity.
#pragma once

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

// What stands behind the last "/", or the whole text up to its first NUL if there is none;
// at most 100 characters.
_kzString<100> pathFileName(const _kzString<500>& path);
_kzString<100> pathFileName(const _kzString<250>& path);
_kzString8_allSize<100> pathFileName(const _kzString8_allSize<1000>& path);
_kzString8_allSize<100> pathFileName(const _kzString8_allSize<500>& path);
_kzString8_allSize<100> pathFileName(const _kzString8_allSize<250>& path);

// The folder with a trailing "/": "/a/b/c.txt" gives "/a/b/", "c.txt" the empty text. A
// path below 3 characters is its own folder, and a root ("C:/", "//server/share") can't
// be climbed out of.
_kzString<500> pathFolder(_kzString<500> path);
_kzString<250> pathFolder(_kzString<250> path);
_kzString<1000> pathFolder(_kzString<1000> path);
_kzString8_allSize<500> pathFolder(_kzString8_allSize<500> path);
_kzString8_allSize<250> pathFolder(_kzString8_allSize<250> path);
_kzString8_allSize<200> pathFolder(_kzString8_allSize<200> path);

// The name without folder and extension; a separator or dot within the first two
// characters doesn't count.
_kzString8_allSize<500> pathBaseName(_kzString8_allSize<500> path, char separator);

// False for absolute paths ("/x", "C:/x") and paths that start with a placeholder, true
// for everything else, including every path below 3 characters.
bool pathIsRelative(const _kzString8_allSize<500>& path);
bool pathIsRelative(const _kzString<250>& path);
bool pathIsRelative(const _kzString<1000>& path);

// A copy with every backslash turned into a slash.
_kzString<500> pathForwardSlashes(const _kzString<500>& path);
_kzString<250> pathForwardSlashes(const _kzString<250>& path);
_kzString8_allSize<500> pathForwardSlashes(const _kzString8_allSize<500>& path);
_kzString8_allSize<200> pathForwardSlashes(const _kzString8_allSize<200>& path);
_kzString8_allSize<150> pathForwardSlashes(const _kzString8_allSize<150>& path);
_kzString8_allSize<50> pathForwardSlashes(const _kzString8_allSize<50>& path);

// Slashes only, doubled separators made single (a leading "//" stays), and the first run
// of "../" resolved against what stands before it. The argument is changed too.
_kzString8_allSize<500> pathNormalize(_kzString8_allSize<500>& path);
_kzString<500> pathNormalize(_kzString<500>& path);

// Length of a NUL-ended 16-bit text, counting at most 1024 units.
int wideLength(const unsigned short* text);
