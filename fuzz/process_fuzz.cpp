// Fuzz target for the process table's own logic, on synthetic process records: storing them
// (in order, names upper-cased, at most 3999), the questions by name and by pid with their
// pid outputs, both sorts, and the load table's rounds. Each is compared with a plain model
// of its rules; no real process is involved.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "process/process_list.h"
#include "process/process_load_table.h"

const char* const kzFuzzRules[] = {"findByName",  "countByName", "indexOfPid", "a sort",
                                   "a full table", "isBehind",    "a CPU share above 0"};
const int kzFuzzRuleCount = 7;

namespace {

using Input = FuzzInput;

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "process fuzz: %s differs from the model\n", what);
    std::abort();
}

std::string upper(std::string s) {
    for (char& c : s)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
    return s;
}

struct Process {
    uint32_t pid;
    std::string name; // as the table keeps it: upper case
};

const char* const kNames[] = {"kzServerconsole", "KZSERVERconsole", "kzServer", "a", "A", "ab", "kzServerconsoleL", ""};

void table(Input& in) {
    // Mostly a few processes; now and then as many as the table's cap.
    const int n = in.small(16) < 14 ? in.small(9) : 3995 + in.small(8);
    std::vector<kzRawProcess> raw(static_cast<size_t>(n));
    std::vector<Process> model;
    for (int i = 0; i < n; ++i) {
        kzRawProcess& r = raw[static_cast<size_t>(i)];
        r.pid = static_cast<uint32_t>(in.small(2) ? 100000 + i : 1 + in.small(50)); // some pids repeat
        r.parentPid = 1;
        r.uid = 0;
        std::snprintf(r.name, sizeof r.name, "%s", kNames[in.small(8)]);
        if (i < 3999) model.push_back({r.pid, upper(r.name)});
    }
    auto list = std::make_unique<_kzProcessList>(false);
    list->collected = 1;
    list->storeRawProcesses(raw.data(), n);
    if (n > 3999) reach(4);
    const auto same = [&] {
        if (list->count != static_cast<int>(model.size())) fail("the stored count");
        for (size_t i = 0; i < model.size(); ++i) {
            if (list->entries[i].pid != model[i].pid) fail("a stored entry's pid");
            if (list->entries[i].name.asChar() != model[i].name) fail("a stored entry's name");
        }
    };
    same();
    for (int step = 0; in.more() && step < 12; ++step) {
        const std::string asked = kNames[in.small(8)];
        _kzString8_allSize<25> name(asked.c_str());
        int count = 0;
        uint64_t first = 0, last = 0;
        for (const Process& p : model)
            if (p.name == upper(asked)) { // an empty name too counts the entries without one
                if (count++ == 0) first = p.pid;
                last = p.pid;
            }
        uint64_t pid = 4711;
        const int question = in.small(5);
        reach(question < 3 ? question : 3);
        switch (question) {
        case 0: // the first match; an empty name answers false and leaves the pid alone
            if (list->findByName(name, false, &pid) != (count > 0 && !asked.empty())) fail("findByName");
            if (pid != (asked.empty() ? 4711 : first)) fail("findByName's pid");
            if (!asked.empty() && name.asChar() != upper(asked)) fail("findByName's upper-cased name");
            break;
        case 1: // how many, and the last of them
            if (list->countByName(name, &pid) != count) fail("countByName");
            if (pid != last) fail("countByName's pid");
            if (list->isRunningTwice(_kzString8_allSize<25>(asked.c_str()), &pid) != (count > 1)) fail("isRunningTwice");
            break;
        case 2: {
            const uint32_t wanted = model.empty() || in.small(4) == 0 ? 99 : model[static_cast<size_t>(in.small(static_cast<int>(model.size())))].pid;
            int index = -1;
            for (size_t i = 0; i < model.size() && index < 0; ++i)
                if (model[i].pid == wanted) index = static_cast<int>(i);
            if (list->indexOfPid(static_cast<int>(wanted), false) != index) fail("indexOfPid");
            break;
        }
        case 3: // by name (as stored bytes, the shorter first), then by pid; or by pid alone
        case 4: {
            const bool byName = in.small(2);
            byName ? list->sortByName() : list->sortByPid();
            std::stable_sort(model.begin(), model.end(), [byName](const Process& a, const Process& b) {
                if (!byName || a.name == b.name) return a.pid < b.pid;
                return a.name < b.name;
            });
            // Entries of one pid may stand in any order after a sort by pid: compare what is ordered.
            for (size_t i = 0; i < model.size(); ++i) {
                const _kzProcessEntry& e = list->entries[i];
                if (e.pid != model[i].pid) fail("sort: pid");
                if (byName && e.name.asChar() != model[i].name) fail("sort: name");
                model[i] = {e.pid, e.name.asChar()};
            }
            same();
            break;
        }
        }
    }
}

// The load table over rounds: the first round only stores, later ones give the percentage of
// one core since the last, held to 0 .. 102400; isBehind compares the snapshot times.
void loadTable(Input& in) {
    auto list = std::make_unique<_kzProcessList>(false);
    list->collected = 1;
    list->count = 1;
    _kzProcessLoadTable table(2);
    table.count = 1;
    double previous = 0, last = 0, interval = 0, seconds = 0;
    int64_t stampS = 0, stampMS = 0;
    for (int step = 0; in.more() && step < 16; ++step) {
        list->measureTime = in.small(4) == 0 ? 0 : last + in.small(5) - 1;
        list->entries[0].cpuSeconds = in.small(8) == 0 ? 0 : seconds + (in.small(50) - 5) * 0.1;
        list->snapshotTime.value = stampS + in.small(3) - 1;
        list->snapshotTimeMS.value = list->snapshotTime.value * 1000 + in.small(1000);
        // isBehind, before the round takes the list over.
        bool behind = false;
        if (stampS >= 1) {
            if (stampS != list->snapshotTime.value) behind = stampS < list->snapshotTime.value;
            else if (stampMS != 0 && stampMS / 100 < list->snapshotTimeMS.value / 100) behind = true;
            else behind = last != 0 && list->measureTime > last;
        }
        if (behind) reach(5);
        if (table.isBehind(*list) != behind) fail("isBehind");
        table.takeTimes(*list);
        previous = last;
        last = list->measureTime;
        interval = previous > 0 && previous < last ? last - previous : 0;
        stampS = list->snapshotTime.value;
        stampMS = list->snapshotTimeMS.value;
        table.updateCpu(0, *list, 0);
        float percent = 0;
        if (list->measureTime != 0 && previous != 0 && interval > 0 && seconds > 0)
            percent = static_cast<float>((static_cast<float>(list->entries[0].cpuSeconds - seconds) * 100.0f) / interval);
        percent = std::min(std::max(percent, 0.0f), 102400.0f);
        if (percent > 0) reach(6);
        seconds = list->entries[0].cpuSeconds;
        if (table.at(0)->cpuPercent != percent) fail("updateCpu: percent");
        if (table.at(0)->cpuSeconds != seconds) fail("updateCpu: seconds");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input in{data, size};
    if (in.small(2)) table(in);
    else loadTable(in);
    return 0;
}
