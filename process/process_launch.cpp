#include "process/process_launch.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/file_kinds.h"
#include "platform/owners.h"
#include "platform/sleep.h"
#include "platform/system_error_text.h"
#include "process/child_process.h"

namespace {

// A pipe for a child's stream, both ends close-on-exec (so the pipe reaches no other child;
// dup2 gives the child its own copies on 1 and 2 without the flag), or both ends 0 if it
// can't be made, as when the descriptors are used up. 0 means "no pipe" to the capture, so
// an end is never left on one of the caller's standard streams either.
void makePipe(int ends[2]) {
    ends[0] = ends[1] = 0;
    int made[2];
    if (::pipe2(made, O_CLOEXEC) != 0) return;
    for (int& end : made)
        if (end <= 2) {
            const int moved = ::fcntl(end, F_DUPFD_CLOEXEC, 3);
            ::close(end);
            end = moved;
        }
    if (made[0] > 2 && made[1] > 2) {
        ends[0] = made[0], ends[1] = made[1];
        return;
    }
    for (const int end : made)
        if (end > 2) ::close(end);
}

} // namespace

bool kzLaunchablePath(const _kzString8_allSize<250>& path) {
    struct stat st;
    return ::stat(path.data, &st) == 0 && !kzHasFolderBit(st.st_mode);
}

char** kzArgumentVector(const _kzString8_allSize<250>& path, _kzFileList& args) {
    // Never freed: the process is about to become another one.
    char** argv = static_cast<char**>(std::calloc(static_cast<size_t>(args.count) + 2, sizeof(char*)));
    argv[0] = ::strdup(path.data);
    for (int i = 0; i < args.count; ++i) argv[i + 1] = ::strdup(args.entryAsChar(i));
    return argv;
}

void kzExecOrDiagnose(char** argv) {
    ::execvp(argv[0], argv);
    std::printf("Failed to start new process (execvp) \n%s\n%s\n", argv[0], kzSystemErrorText(-1).asChar());
    struct stat st;
    if (::stat(argv[0], &st) != 0) std::exit(0);
    _kzString8_allSize<100> owner(kzUserNameOrId(st.st_uid));
    owner.add("   ").add(kzUserNameOrId(st.st_gid).asChar()).add("   "); // the group id goes through the user lookup too
    std::printf("Executable access rights: %s %s\n", owner.asChar(), kzRightsText(st.st_mode).asChar());
    std::exit(0);
}

int _kzChildProcess::start(const _kzString<250>& path, _kzFileList& args) {
    const _kzString8_allSize<250> program = path.to_kzString8_250();
    if (!kzLaunchablePath(program)) return 0;
    int out[2], err[2];
    makePipe(out);
    makePipe(err);
    outRead = out[0], outWrite = out[1], errRead = err[0], errWrite = err[1];
    std::fflush(nullptr); // the child must not print the parent's unwritten output again
    const pid_t pid = ::fork();
    if (pid == 0) {
        // A stream whose pipe could not be made stays the parent's.
        if (outWrite) ::dup2(outWrite, 1);
        if (errWrite) ::dup2(errWrite, 2);
        kzExecOrDiagnose(kzArgumentVector(program, args));
    }
    if (pid < 0) {
        closePipes();
        return -1;
    }
    for (int32_t* end : {&outWrite, &errWrite}) {
        if (*end) ::close(*end);
        *end = 0;
    }
    // What the program says while it starts: five reads 50 ms apart.
    for (int i = 0; i < 5; ++i) {
        if (i > 0) kzSleepMS(50);
        readOutput();
        terminateOutput();
    }
    kzSleepMS(50);
    running = 1;
    return pid;
}

int kzStartFree(_kzString<250> path, _kzFileList& args, const _kzString<250>& outputFile, const bool& append) {
    const _kzString8_allSize<250> program = path.to_kzString8_250();
    if (!kzLaunchablePath(program)) return 0;
    std::fflush(nullptr);
    const pid_t pid = ::fork();
    if (pid != 0) return pid > 0 ? pid : -1;
    if (outputFile.hasData()) {
        if (FILE* file = std::fopen(outputFile.to_kzString8_250().data, append ? "a" : "w")) {
            ::dup2(fileno(file), 2);
            ::dup2(fileno(file), 1);
        }
    }
    kzExecOrDiagnose(kzArgumentVector(program, args));
}

void kzExecReplace(const _kzString<250>& path, _kzFileList& args) {
    const long limit = ::sysconf(_SC_OPEN_MAX);
    for (long fd = 3; limit >= 4 && fd < limit; ++fd) ::fcntl(static_cast<int>(fd), F_SETFD, FD_CLOEXEC);
    char** argv = kzArgumentVector(path.to_kzString8_250(), args);
    ::execvp(argv[0], argv);
    std::printf("%s\n", kzSystemErrorText(-1).asChar());
}

int kzReapChildren() { return ::waitpid(-1, nullptr, WNOHANG | WUNTRACED | WCONTINUED); }
