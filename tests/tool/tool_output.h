// What kzStartLocal prints (its banner, its settings lines and its last lines), and the tool
// started as a process of the test's.
#pragma once

#include <string>
#include <vector>

#include "tests/support/child_process.h"

inline const std::string kBanner = "________________________________________________________________\n"
                                   "|                                                              |\n"
                                   "|            Syncing local files to KZ network folder          |\n"
                                   "|            (v 8.4.02)                                       |\n"
                                   "|______________________________________________________________|\n";
inline const std::string kUsage = "Usage: kzStartLocal [localfolder] [KZ_NETWORK_ROOT]  [-log]  [-jobdb] \n";
inline const std::string kQuit = "\nQUIT\n\n";

inline std::string settings(const std::string& local, const std::string& root, bool logs, bool jobs) {
    return "Local Folder: " + local + "\nKZ ROOT: " + root + "\ncopyLogs: " + (logs ? "true" : "false") +
           "\ncopyJobsDB: " + (jobs ? "true" : "false") + "\n";
}

// The tool (`program`, by default the one built) with `argv`, argv[0] as given, its output
// into the file `output`; as the user `uid` if that is 0 or more.
inline Child startTool(const std::vector<std::string>& argv, const std::string& output, int uid = -1,
                       const std::string& program = KZ_TOOL_PATH) {
    std::vector<std::string> command = {"/bin/bash", "-c", "exec -a \"$0\" \"$@\"", argv[0], program};
    command.insert(command.end(), argv.begin() + 1, argv.end());
    return Child::start(uid < 0 ? command : asUser(uid, command), output, "kzStartLocal");
}
