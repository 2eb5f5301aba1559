// What kzStartLocal prints: its banner, its settings lines and its last lines.
#pragma once

#include <string>

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
