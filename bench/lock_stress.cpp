// Many processes take turns on one _kzLockedFile as hard as they can, and the journal they
// keep shows whether two of them ever held it at once.
//
// A holder appends "begin PID" to a journal, holds for a random short time (0 to 300 µs),
// appends "end PID" and unlocks. Afterwards the journal is read back: a turn is a begin
// followed by its own end; an overlap is a begin or an end that comes while another
// process's turn is open.
//
//   turns PROCESSES IMPATIENT SECONDS [MIN_TURNS]
//     IMPATIENT of the processes ask with a time-out of 0 (one poll, so they reach the
//     abandoned-lock rule again and again); the others wait up to 2 s. Runs for SECONDS,
//     or until MIN_TURNS turns have been taken if that is later.
//   stale PROCESSES ROUNDS
//     Each round starts with an abandoned lock file (four hours old), and all processes ask
//     for the lock with a time-out of 0 at the same moment, so that they all find it
//     abandoned together. At most one may hold the lock at a time.
//
// The lock and the journal live in a temporary folder of their own, removed at the end.
// Prints "turns T overlaps O failures F seconds S turns_per_second R"; exit status 0 when
// there was no overlap, no failure other than a time-out, at least one turn, and no lock
// file (nor a claim on an abandoned one) left behind; else 1.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utime.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "files/locked_file.h"

namespace {

using Clock = std::chrono::steady_clock;

// What the children share with the parent: turns taken, failures that the lock must never
// give, and a start signal for the stale rounds.
struct Shared {
    std::atomic<long> turns{0};
    std::atomic<long> badFailures{0};
    std::atomic<int> round{0};
    std::atomic<int> ready{0};
};

void appendLine(int journal, const char* what) {
    char line[40];
    const int length = std::snprintf(line, sizeof line, "%s %d\n", what, static_cast<int>(getpid()));
    if (write(journal, line, static_cast<size_t>(length)) != length) std::abort();
}

// One try: lock, write the turn, unlock. A failure must be the time-out of a lock held by
// someone else, never an error.
void takeTurn(_kzLockedFileWide& lock, int32_t timeoutMs, int journal, std::minstd_rand& random, Shared& shared) {
    int32_t waited = 0;
    if (!lock.lock(timeoutMs, _kzString<250>("stress"), &waited, false)) {
        const bool timedOut = lock.timedOut && (lock.lastError == 0 || lock.lastError == EEXIST);
        if (!timedOut || waited < 0) {
            shared.badFailures.fetch_add(1);
            std::fprintf(stderr, "lock failed: error %d, timed out %d, waited %d ms\n", lock.lastError, lock.timedOut, waited);
        }
        return;
    }
    appendLine(journal, "begin");
    const auto until = Clock::now() + std::chrono::microseconds(random() % 300);
    while (Clock::now() < until) {
    }
    appendLine(journal, "end");
    lock.unlock();
    shared.turns.fetch_add(1);
}

void makeAbandoned(const std::string& lockFile) {
    std::ofstream(lockFile) << "left behind";
    const time_t old = time(nullptr) - 4 * 3600;
    const utimbuf times{old, old};
    utime(lockFile.c_str(), &times);
}

// Reads the journal back; returns the overlaps and counts the turns.
long countOverlaps(const std::string& journal, long& turns) {
    std::ifstream in(journal);
    std::string what, open;
    int pid = 0;
    long overlaps = 0;
    turns = 0;
    while (in >> what >> pid) {
        const std::string who = std::to_string(pid);
        if (what == "begin") {
            if (!open.empty()) ++overlaps;
            open = who;
        } else if (open == who) {
            ++turns;
            open.clear();
        } else {
            ++overlaps;
        }
    }
    return overlaps;
}

int usage() {
    std::fprintf(stderr, "usage: lock_stress turns PROCESSES IMPATIENT SECONDS [MIN_TURNS]\n"
                         "       lock_stress stale PROCESSES ROUNDS\n");
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 4) return usage();
    const std::string mode = argv[1];
    const bool stale = mode == "stale";
    if (!stale && (mode != "turns" || argc < 5)) return usage();
    const int processes = std::atoi(argv[2]);
    const int impatient = stale ? processes : std::atoi(argv[3]);
    const int rounds = stale ? std::atoi(argv[3]) : 0;
    const double seconds = stale ? 0 : std::atof(argv[4]);
    const long minTurns = !stale && argc > 5 ? std::atol(argv[5]) : 0;
    const char* tmp = std::getenv("TMPDIR");
    std::string folder = std::string(tmp && *tmp ? tmp : "/tmp") + "/kz_lock_stress.XXXXXX";
    if (!mkdtemp(&folder[0])) return 1;
    const std::string guarded = folder + "/guarded", journalPath = folder + "/journal";
    const int journal = open(journalPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0644);
    void* memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (journal < 0 || memory == MAP_FAILED) return 1;
    Shared& shared = *new (memory) Shared;
    if (stale) makeAbandoned(guarded + "_lock.txt");

    const auto start = Clock::now();
    const auto deadline = start + std::chrono::duration<double>(seconds);
    std::vector<pid_t> children;
    for (int child = 0; child < processes; ++child) {
        const pid_t pid = fork();
        if (pid < 0) return 1;
        if (pid > 0) {
            children.push_back(pid);
            continue;
        }
        std::minstd_rand random(static_cast<unsigned>(getpid()));
        _kzLockedFileWide lock(_kzString<500>(guarded.c_str()));
        if (stale) {
            // Each round: say ready, wait for the parent's go, then all ask at once.
            for (int round = 1; round <= rounds; ++round) {
                shared.ready.fetch_add(1);
                while (shared.round.load() < round) usleep(100);
                takeTurn(lock, 0, journal, random, shared);
            }
        } else {
            const int32_t timeoutMs = child < impatient ? 0 : 2000;
            while (Clock::now() < deadline || shared.turns.load() < minTurns) takeTurn(lock, timeoutMs, journal, random, shared);
        }
        _exit(0);
    }
    for (int round = 1; round <= rounds; ++round) {
        while (shared.ready.load() < processes * round) usleep(100);
        if (round > 1) makeAbandoned(guarded + "_lock.txt");
        shared.round.store(round);
    }
    bool childrenOk = true;
    for (const pid_t pid : children) {
        int status = 0;
        waitpid(pid, &status, 0);
        childrenOk = childrenOk && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }
    const double elapsed = std::chrono::duration<double>(Clock::now() - start).count();
    long turns = 0;
    const long overlaps = countOverlaps(journalPath, turns);
    std::printf("turns %ld overlaps %ld failures %ld seconds %.1f turns_per_second %.0f\n", turns, overlaps,
                shared.badFailures.load(), elapsed, turns / elapsed);
    bool leftBehind = false;
    for (const char* name : {"guarded_lock.txt", "guarded_lock.txt.stale", "guarded_lock.txt.none"}) {
        if (unlink((folder + "/" + name).c_str()) != 0) continue;
        std::printf("left behind: %s\n", name);
        leftBehind = true;
    }
    unlink(journalPath.c_str());
    rmdir(folder.c_str());
    const bool ok = childrenOk && overlaps == 0 && shared.badFailures.load() == 0 && turns == shared.turns.load() && turns > 0 && !leftBehind;
    return ok ? 0 : 1;
}
