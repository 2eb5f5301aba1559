// The mirror on a real network share while the share misbehaves: one fault on one share, with
// kzStartLocal -log -jobdb running beside a stand-in server and a log that grows every second.
//
//   share_faults KIND FAULT [--rsync] [--seconds N]
//     KIND   smb or sftp: a share served on 127.0.0.1 and mounted through FUSE
//            (tests/support/network_share.sh)
//     FAULT  kill     the share's server is killed in the middle of a pass, and started
//                     again 10 s later
//            pause    the share's server stops answering (SIGSTOP) for 20 s, then goes on
//            full     the served folder's file system (a small one of its own) fills up for
//                     15 s, then the space comes back
//            rights   the mirror folders (and rsync's) lose their write permission for 15 s
//            unmount  the FUSE mount goes away for 15 s, and comes back
//            none     no fault: the mirror settles. The pass after the first brings a changed
//                     log and writes nothing else; a whole pass later nothing is written.
//     --rsync        `rsync -a` runs every seven seconds beside the tool, into a folder of its
//                    own on the same share, and what it does is told as well (without
//                    owners and groups, which the share maps to the user it serves as)
//     --seconds N    the fault lasts N seconds instead (at least 8 lets a pass meet it)
//
// Once the mirror is complete the fault happens; a line written to the log during the fault
// must arrive. The log grows every second and the job database changes every three seconds
// from the first complete mirror until the fault ends; before and after, they stand still. The run passes
// when the tool stayed alive and silent between its start lines and QUIT, and every mirror was complete again
// (equal contents, the source's whole-second times) by the end of the second pass after the fault ended. It
// prints one line: how long the pass that met the fault took, how long after the fault's end the mirror was
// complete, and what rsync did. Exit status 0 when the run passed, 1 when not, 77 when the share can't be had
// here (with the reason). Must run as root, in a mount namespace of its own (tests/support/own_processes.sh),
// which takes every mount with it.
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/platform_os.h"
#include "tests/support/file_checks.h"

namespace {

const std::string kShare = std::string(KZ_SOURCE_DIR) + "/tests/support/network_share.sh";

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void writeFile(const std::string& path, const std::string& text, bool append = false) {
    std::ofstream(path, append ? std::ios::app | std::ios::binary : std::ios::binary) << text;
}

int shell(const std::string& command) {
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

pid_t spawn(const std::vector<std::string>& argv, const std::string& output) {
    const pid_t pid = fork();
    if (pid != 0) return pid;
    setpgid(0, 0); // its own group, so that a shell loop goes with its children
    const int out = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(out, 1);
    dup2(out, 2);
    std::vector<char*> args;
    for (const std::string& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
    args.push_back(nullptr);
    execv(args[0], args.data());
    _exit(127);
}

// Whether the tool is anywhere but in its second's sleep: in a pass (a look takes
// microseconds). Read from its /proc entry, as often as the loop below asks.
bool inPass(pid_t tool) {
    const std::string call = readFile("/proc/" + std::to_string(tool) + "/syscall");
    const long number = std::strtol(call.c_str(), nullptr, 10);
    return call.rfind("running", 0) == 0 || (number != SYS_clock_nanosleep && number != SYS_nanosleep);
}

struct Mirror {
    std::string source, copy;
};

bool complete(const std::vector<Mirror>& mirrors) {
    for (const Mirror& m : mirrors)
        if (readFile(m.copy) != readFile(m.source) || modifiedAt(m.copy) != modifiedAt(m.source))
            return false;
    return true;
}

// What the server's side holds of each mirror, so that any write shows: inode, change time
// and size.
std::map<std::string, std::tuple<ino_t, long long, long long>> written(const std::vector<Mirror>& mirrors) {
    std::map<std::string, std::tuple<ino_t, long long, long long>> found;
    for (const Mirror& m : mirrors) {
        struct stat st {};
        ::stat(m.copy.c_str(), &st);
        found[m.copy] = {st.st_ino, st.st_ctim.tv_sec * 1000000000LL + st.st_ctim.tv_nsec, st.st_size};
    }
    return found;
}

bool waitUntil(const std::function<bool()>& condition, double seconds) {
    for (const double end = now() + seconds; !condition(); usleep(100000))
        if (now() > end) return false;
    return true;
}

// No fault: after the first pass the mirror is complete; the next pass brings a changed log
// and writes nothing else; a whole pass later nothing is written at all. A FUSE file system
// may finish a close after close() has returned, so the server's side is read once it has
// settled. What went wrong, or nothing.
std::string settles(const std::vector<Mirror>& mirrors) {
    if (!waitUntil([&] { return complete(mirrors); }, 30)) return "the first mirror never completed";
    usleep(1500000);
    auto first = written(mirrors);
    const Mirror& changed = mirrors[3];
    writeFile(changed.source, readFile(changed.source) + "one more line\n");
    if (!waitUntil([&] { return complete(mirrors); }, 15)) return "the changed log did not arrive";
    usleep(1500000);
    const auto second = written(mirrors);
    if (second.at(changed.copy) == first.at(changed.copy)) return "the changed log was not written";
    first[changed.copy] = second.at(changed.copy);
    if (second != first) return "the pass that brought the changed log wrote unchanged files again";
    usleep(7500000);
    return written(mirrors) == second ? "" : "an up-to-date pass wrote files";
}

struct Pass {
    double start, end;
};

// What rsync's runs did, from the loop's record: "START END STATUS" a run.
std::string rsyncStory(const std::string& runsFile, const std::string& errors, double faultStart,
                       double faultEnd, double recovery) {
    std::ifstream in(runsFile);
    double start = 0, end = 0;
    int status = 0;
    std::string during, after;
    while (in >> start >> end >> status) {
        char run[64];
        std::snprintf(run, sizeof run, "%.1f s exit %d", end - start, status);
        if (end >= faultStart && start <= faultEnd) during += (during.empty() ? "" : ", ") + std::string(run);
        if (start > faultEnd && status == 0 && after.empty()) {
            char ok[64];
            std::snprintf(ok, sizeof ok, "first clean run %.1f s after the fault's end", end - faultEnd);
            after = ok;
        }
    }
    std::string said = readFile(errors);
    const size_t cut = said.find('\n');
    if (cut != std::string::npos) said.resize(cut);
    std::string story = "rsync runs meeting the fault: " + (during.empty() ? std::string("none") : during);
    if (!said.empty() && said != "<missing>") story += " (\"" + said + "\")";
    story += "; " + (after.empty() ? std::string("no clean run after the fault") : after);
    char complete[80];
    std::snprintf(complete, sizeof complete, "; its mirror complete %.1f s after the fault's end", recovery);
    return story + (recovery >= 0 ? complete : "; its mirror NOT complete again");
}

// A port on 127.0.0.1 that is free now.
int freePort() {
    const int s = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    ::bind(s, reinterpret_cast<sockaddr*>(&address), sizeof address);
    ::getsockname(s, reinterpret_cast<sockaddr*>(&address), &length);
    ::close(s);
    return ntohs(address.sin_port);
}

volatile sig_atomic_t interrupted = 0;
void interrupt(int) { interrupted = 1; }

int usage() {
    std::fprintf(
        stderr, "usage: share_faults smb|sftp kill|pause|full|rights|unmount|none [--rsync] [--seconds N]\n");
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) return usage();
    const std::string kind = argv[1], fault = argv[2];
    bool withRsync = false;
    double faultSeconds = fault == "kill" ? 10 : fault == "pause" ? 20 : 15;
    for (int i = 3; i < argc; ++i) {
        if (std::strcmp(argv[i], "--rsync") == 0)
            withRsync = true;
        else if (std::strcmp(argv[i], "--seconds") == 0 && i + 1 < argc)
            faultSeconds = std::atof(argv[++i]);
        else
            return usage();
    }
    if ((kind != "smb" && kind != "sftp") || (fault != "kill" && fault != "pause" && fault != "full" &&
                                              fault != "rights" && fault != "unmount" && fault != "none"))
        return usage();

    // Interrupted, the run still stops its servers and removes its folder.
    signal(SIGINT, interrupt);
    signal(SIGTERM, interrupt);
    const char* tmp = std::getenv("TMPDIR");
    std::string state = std::string(tmp && *tmp ? tmp : "/tmp") + "/kz_share_faults.XXXXXX";
    if (!mkdtemp(&state[0])) return 1;
    const std::string served = state + "/served", local = state + "/local";
    ::mkdir(served.c_str(), 0755);
    ::mkdir(local.c_str(), 0755);
    // A file system of its own for the served folder, small enough to fill at once.
    if (fault == "full" && ::mount("tmpfs", served.c_str(), "tmpfs", 0, "size=40m") != 0) {
        std::perror("mount tmpfs");
        return 1;
    }
    const auto cleanUp = [&] {
        shell(kShare + " stop " + state + " >/dev/null 2>&1");
        if (fault == "full") ::umount2(served.c_str(), MNT_DETACH);
        shell("rm -rf " + state);
    };
    const int port = freePort();
    const int started = shell(kShare + " start " + kind + " " + state + " " + std::to_string(port) + " >" +
                              state + "/mounted 2>" + state + "/why");
    if (started != 0) {
        std::fprintf(stderr, "%s", readFile(state + "/why").c_str());
        cleanUp();
        return started == 77 ? 77 : 1;
    }
    std::string mounted = readFile(state + "/mounted");
    mounted.pop_back();
    const std::string root = mounted + "/farm/";
    for (const std::string& folder : {root, root + "sub", root + "sub/log", mounted + "/rsync"})
        ::mkdir(folder.c_str(), 0755);
    // A copy onto sshfs sets its time before the close, as on a local disk; on SMB after it,
    // since there the close stamps the time of the last write.
    const int probe = ::open((root + "probe").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    const bool keepsTime = kzCloseKeepsFileTime_OS(probe);
    ::close(probe);
    ::unlink((root + "probe").c_str());
    if (probe < 0 || keepsTime != (kind == "sftp")) {
        std::fprintf(stderr, "a close on this %s share %s the time set before it\n", kind.c_str(),
                     keepsTime ? "is said to keep" : "is not said to keep");
        cleanUp();
        return 1;
    }

    // Twelve logs of 1 to 56 KiB, a log that grows every second, a job database that
    // changes every three seconds, and its journal.
    std::vector<Mirror> mirrors, rsyncMirrors;
    const std::string farm = served + "/farm/sub/";
    for (int i = 0; i < 12; ++i) {
        const std::string name = "render" + std::to_string(i);
        writeFile(local + "/" + name + ".txt", std::string(1024 + i * 5000, static_cast<char>('a' + i)));
        mirrors.push_back({local + "/" + name + ".txt", farm + "log/" + name + "__copyFromLocal.txt"});
    }
    const std::string growing = local + "/server__local.txt", database = local + "/jobs.db";
    writeFile(growing, "server started\n");
    mirrors.push_back({growing, farm + "log/server__copyFromLocal.txt"});
    writeFile(database, std::string(4 << 20, 'd'));
    writeFile(local + "/jobs.db-journal", std::string(65536, 'j'));
    for (const char* db : {"jobs.db", "jobs.db-journal"})
        mirrors.push_back({local + "/" + db, farm + "cfg_global/__copyFromLocal/" + db});
    for (const Mirror& m : mirrors)
        rsyncMirrors.push_back({m.source, served + "/rsync/" + m.source.substr(local.size() + 1)});

    const std::string server = state + "/kzServerconsole";
    shell(std::string("cp ") + KZ_STAND_IN_PATH + " " + server);
    const pid_t serverPid = spawn({server}, "/dev/null");
    // The tool looks for the server at once: it must carry its name by then.
    for (int i = 0;
         i < 200 && readFile("/proc/" + std::to_string(serverPid) + "/comm") != "kzServerconsole\n"; ++i)
        usleep(10000);
    const pid_t tool = spawn({KZ_TOOL_PATH, local + "/", root, "-log", "-jobdb"}, state + "/tool.out");
    pid_t rsyncLoop = -1;
    if (withRsync)
        rsyncLoop = spawn({"/bin/bash", "-c",
                           "while :; do s=$(date +%s.%N); rsync -a --no-owner --no-group '" + local + "/' '" +
                               mounted + "/rsync/' 2>>'" + state +
                               "/rsync.err'; r=$?; echo \"$s $(date +%s.%N) $r\" >>'" + state +
                               "/rsync.runs'; sleep 7; done"},
                          "/dev/null");
    // rsync.runs holds wall-clock seconds; the loop below keeps monotonic ones beside them.
    const auto wall = [] {
        return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    };

    const double begin = now();
    std::vector<Pass> passes;
    bool passing = false, alive = true, marked = false;
    double faultStart = 0, faultEnd = 0, recovered = 0, wallFaultStart = 0, wallFaultEnd = 0,
           lastLine = begin, lastChange = begin, firstComplete = 0, lastCheck = begin, rsyncRecovered = 0;
    std::string belowMount, problem;
    int line = 0;
    // The fault waits for a pass to start where it must meet one in its middle.
    const bool atPassStart = fault == "kill" || fault == "pause";
    if (fault == "none") problem = settles(mirrors);
    for (double t = begin; fault != "none"; t = now()) {
        const bool passNow = inPass(tool);
        // A look takes microseconds and passes come seven seconds apart: a stretch out of the
        // sleep soon after a pass's start belongs to the looks, not to a pass of its own.
        if (passNow && !passing && (passes.empty() || t - passes.back().start > 3)) passes.push_back({t, 0});
        if (!passNow && passing && !passes.empty() && !passes.back().end) passes.back().end = t;
        passing = passNow;
        if (interrupted) {
            problem = "interrupted";
            break;
        }
        if (waitpid(tool, nullptr, WNOHANG) != 0) {
            alive = false;
            problem = "the tool ended";
            break;
        }
        // The sources change from the first complete mirror until the fault ends; before and
        // after, the mirror has a fixed aim.
        const bool changing = firstComplete && !faultEnd;
        if (changing && t - lastLine >= 1) {
            writeFile(growing, "line " + std::to_string(++line) + "\n", true);
            lastLine = t;
        }
        if (changing && t - lastChange >= 3) {
            writeFile(database, std::string(4 << 20, static_cast<char>('d' + line % 20)));
            lastChange = t;
        }
        const bool check = t - lastCheck >= 0.25;
        if (check) lastCheck = t;
        if (!firstComplete && check && complete(mirrors)) firstComplete = t;
        if (firstComplete && !faultStart && t - firstComplete > 1 &&
            (!atPassStart || (passNow && passes.back().start == t))) {
            faultStart = t;
            wallFaultStart = wall();
            if (fault == "kill") shell(kShare + " kill " + state);
            if (fault == "pause") shell(kShare + " pause " + state);
            if (fault == "full") shell("dd if=/dev/zero of=" + served + "/filler bs=1M 2>/dev/null");
            if (fault == "rights")
                shell("chmod 555 " + farm + "log " + farm + "cfg_global/__copyFromLocal " + served +
                      "/rsync");
            if (fault == "unmount") shell(kShare + " unmount " + state);
        }
        if (faultStart && !marked && t - faultStart > 1) {
            writeFile(growing, "written during the fault\n", true);
            marked = true;
        }
        if (faultStart && !faultEnd && t - faultStart >= faultSeconds) {
            // With the mount gone, the network root is a folder of the local disk.
            if (fault == "unmount")
                belowMount = modifiedAt(root + "sub/cfg_global/__copyFromLocal/jobs.db") > 0
                                 ? "the job database"
                                 : "nothing";
            if (fault == "kill") shell(kShare + " serve " + state);
            if (fault == "pause") shell(kShare + " resume " + state);
            if (fault == "full") ::unlink((served + "/filler").c_str());
            if (fault == "rights")
                shell("chmod 755 " + farm + "log " + farm + "cfg_global/__copyFromLocal " + served +
                      "/rsync");
            if (fault == "unmount") shell(kShare + " mount " + state);
            faultEnd = t;
            wallFaultEnd = wall();
        }
        if (faultEnd && !recovered && check && complete(mirrors)) recovered = t;
        if (withRsync && faultEnd && !rsyncRecovered && check && complete(rsyncMirrors)) rsyncRecovered = t;
        // Done once the mirror is complete again (and rsync's too, or two of its runs later).
        if (recovered && t - recovered > 1 && (!withRsync || rsyncRecovered || t - faultEnd > 16)) break;
        if (t - begin > (firstComplete ? 120 : 40)) {
            problem = firstComplete ? "the mirror was not complete again within 2 minutes"
                                    : "the first mirror never completed";
            break;
        }
        usleep(20000);
    }

    // Passes after the fault's end, up to the one that completed the mirror.
    int passesToRecover = 0;
    double metFault = 0, longest = 0;
    for (const Pass& p : passes) {
        const double end = p.end ? p.end : now();
        if (faultStart && end >= faultStart && p.start <= faultEnd && !metFault) metFault = end - p.start;
        if (faultStart && end >= faultStart && end - p.start > longest) longest = end - p.start;
        if (recovered && p.start > faultEnd && p.start < recovered) ++passesToRecover;
    }
    if (recovered && passesToRecover > 2 && problem.empty())
        problem = "the mirror took more than two passes after the fault";

    // The server ends: QUIT, and nothing but the start lines before it.
    kill(serverPid, SIGKILL);
    waitpid(serverPid, nullptr, 0);
    int status = -1;
    const double stop = now();
    while (alive && !interrupted && waitpid(tool, &status, WNOHANG) == 0 && now() - stop < 60) usleep(20000);
    if (alive && !WIFEXITED(status)) {
        kill(tool, SIGKILL);
        waitpid(tool, nullptr, 0);
        if (problem.empty()) problem = "the tool did not end after the server";
    }
    const std::string out = readFile(state + "/tool.out");
    int lines = 0;
    for (char c : out) lines += c == '\n';
    const bool silent = out.size() > 7 && out.compare(out.size() - 7, 7, "\nQUIT\n\n") == 0 && lines == 9 + 3;
    if (!silent && problem.empty()) problem = "the tool printed more than its start lines and QUIT";
    std::string rsync;
    if (withRsync) {
        kill(-rsyncLoop, SIGKILL);
        waitpid(rsyncLoop, nullptr, 0);
        rsync = "; " + rsyncStory(state + "/rsync.runs", state + "/rsync.err", wallFaultStart, wallFaultEnd,
                                  rsyncRecovered ? rsyncRecovered - faultEnd : -1);
    }

    if (fault == "none")
        std::printf("%s: the mirror settled, and an up-to-date pass wrote nothing%s\n", kind.c_str(),
                    problem.empty() ? "" : ("; FAILED: " + problem).c_str());
    else
        std::printf("%s %s: pass that met the fault %.1f s (longest since %.1f s); mirror complete %.1f s "
                    "after the fault's end (%d pass%s)%s%s%s\n",
                    kind.c_str(), fault.c_str(), metFault, longest, recovered ? recovered - faultEnd : -1.0,
                    passesToRecover, passesToRecover == 1 ? "" : "es",
                    belowMount.empty() ? "" : ("; below the mount point meanwhile: " + belowMount).c_str(),
                    rsync.c_str(), problem.empty() ? "" : ("; FAILED: " + problem).c_str());
    cleanUp();
    return problem.empty() ? 0 : 1;
}
