// The six copy flags for every family of the suite's names, and the names in between.
#include <gtest/gtest.h>

#include "exe_cache/classify_application.h"
#include "tests/support/text_of.h"

namespace {

// The flags as letters: QtGui, Python, openExr, Video, Image plug-ins, render Config.
std::string flagsOf(const std::string& name) {
    bool f[6] = {false, false, false, true, true, true}; // the opposite of the start values
    classifyApplication(f[0], f[1], f[2], f[3], f[4], f[5], narrow(name));
    std::string letters;
    for (int i = 0; i < 6; ++i) letters += f[i] ? "QPEVIC"[i] : '-';
    return letters;
}

TEST(ClassifyApplication, EveryFamilyOfNames) {
    const std::pair<const char*, const char*> rows[] = {
        {"kzControl", "QP---C"}, {"kzSubmitter", "QP---C"}, {"kzClient", "Q-E-I-"}, {"kzClientwatch", "Q-----"},
        {"kzViewer", "Q-E-I-"}, {"kzSequenceCheck", "--E-I-"}, {"kzAssembleTiles", "QPE-I-"}, {"kzServer", "QPE-I-"},
        {"kzCreateVideo", "QPEVI-"}, {"kzServerconsole", "-PE-I-"}, {"kzWorkstation_installer", "Q-----"},
        {"kzOther", "QPE---"}, {"", "QPE---"}, {"KZCLIENT", "Q-E-I-"}, {"kzClientcommander", "Q-E-I-"},
        {"my_watch_console", "-P----"}, {"kzCreateVideowatch", "QP-V--"}, {"xkzControl", "QPE---"}, {"kzServ", "QPE---"},
    };
    for (const auto& [name, flags] : rows) EXPECT_EQ(flagsOf(name), flags) << name;
}

} // namespace
