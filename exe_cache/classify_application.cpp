#include "exe_cache/classify_application.h"

#include "exe_cache/name_tests.h"

// Every test ignores case. Each answer has its own rule; none depends on another's result.
void classifyApplication(bool& copyQtGui, bool& copyPython, bool& copyOpenExr, bool& copyVideoLibs,
                         bool& copyImagePlugins, bool& copyRenderConfig, const _kzString8_allSize<500>& exeName) {
    const bool watcher = containsAny(exeName, {"watch"});
    copyOpenExr = !(startsWithAny(exeName, {"kzControl", "kzSubmitter", "kzWorkstation_installer"}) || watcher);
    copyPython = !startsWithAny(exeName, {"kzClient", "kzViewer", "kzSequenceCheck", "kzWorkstation_installer"});
    copyQtGui = !(containsAny(exeName, {"console"}) || exeName.startsWith("kzSequenceCheck"));
    copyImagePlugins = !watcher && startsWithAny(exeName, {"kzClient", "kzViewer", "kzSequenceCheck", "kzAssembleTiles",
                                                           "kzCreateVideo", "kzServer"});
    copyRenderConfig = startsWithAny(exeName, {"kzControl", "kzSubmitter"});
    copyVideoLibs = exeName.startsWith("kzCreateVideo");
}
