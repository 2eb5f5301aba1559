#include "exe_cache/classify_application.h"

#include <initializer_list>

namespace {

bool startsWithAny(const _kzString8_allSize<500>& name, std::initializer_list<const char*> prefixes) {
    for (const char* prefix : prefixes)
        if (name.startsWith(prefix)) return true;
    return false;
}

bool contains(const _kzString8_allSize<500>& name, const char* text) { return name.indexOf(text, 0) >= 0; }

} // namespace

// Every test ignores case. Each answer has its own rule; none depends on another's result.
void classifyApplication(bool& copyQtGui, bool& copyPython, bool& copyOpenExr, bool& copyVideoLibs,
                         bool& copyImagePlugins, bool& copyRenderConfig, const _kzString8_allSize<500>& exeName) {
    const bool watcher = contains(exeName, "watch");
    copyOpenExr = !(startsWithAny(exeName, {"kzControl", "kzSubmitter", "kzWorkstation_installer"}) || watcher);
    copyPython = !startsWithAny(exeName, {"kzClient", "kzViewer", "kzSequenceCheck", "kzWorkstation_installer"});
    copyQtGui = !(contains(exeName, "console") || exeName.startsWith("kzSequenceCheck"));
    copyImagePlugins = !watcher && startsWithAny(exeName, {"kzClient", "kzViewer", "kzSequenceCheck", "kzAssembleTiles",
                                                           "kzCreateVideo", "kzServer"});
    copyRenderConfig = startsWithAny(exeName, {"kzControl", "kzSubmitter"});
    copyVideoLibs = exeName.startsWith("kzCreateVideo");
}
