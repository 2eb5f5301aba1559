// Starting programs: with the output captured (_kzChildProcess::start), as a free child whose
// output goes to a file or stays where it is, or in place of the calling process. The
// program's path is narrowed to at most 249 characters; the arguments are one list entry
// each, and nothing splits a command line here. A child whose execvp fails prints why on its
// standard output (the path, the system's text, the file's owner and rights) and exits 0.
#pragma once

#include "buffers/file_list.h"
#include "strings/kz_string.h"

// The child's pid; 0 if the path is missing or a folder; -1 if fork failed. With an
// `outputFile`, both output streams go to it (appended, or the file truncated first).
int kzStartFree(_kzString<250> path, _kzFileList& args, const _kzString<250>& outputFile, const bool& append);
// Becomes the program, keeping only descriptors 0, 1 and 2; returns only if execvp failed.
void kzExecReplace(const _kzString<250>& path, _kzFileList& args);
// Collects one ended (or stopped, or continued) child if there is one, never waiting.
int kzReapChildren();

// Shared by the three ways of starting: the path check before a fork, the argument vector,
// and what a child does when execvp fails.
bool kzLaunchablePath(const _kzString8_allSize<250>& path);
char** kzArgumentVector(const _kzString8_allSize<250>& path, _kzFileList& args);
[[noreturn]] void kzExecOrDiagnose(char** argv);
