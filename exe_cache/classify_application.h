// Which shared pieces an application of the suite takes along into a local cache, told from
// nothing but its executable's file name (no folder). A pure function: no table, no file
// access. All six answers are assigned on every call.
#pragma once

#include "strings/kz_string8.h"

void classifyApplication(bool& copyQtGui, bool& copyPython, bool& copyOpenExr, bool& copyVideoLibs,
                         bool& copyImagePlugins, bool& copyRenderConfig, const _kzString8_allSize<500>& exeName);
