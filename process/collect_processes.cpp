#include <cstdlib>

#include "platform/system_error_text.h"
#include "process/process_list.h"
#include "process/process_os.h"

bool _kzProcessList::CollectAllProcesses_OS() {
    kzRawProcess* records = nullptr;
    long n = 0;
    if (kzReadRawProcesses_OS(&records, &n)) {
        storeRawProcesses(records, n);
    } else {
        // The kernel table could not be read: the table stays empty and says why.
        errorText += " sysctl:";
        errorText += kzSystemErrorText(-1).asChar();
    }
    std::free(records);

    logText += "CollectAllProcesses_OS: ";
    logText += stepTimer.restartText().asChar();
    logText += "; procCount: ";
    logText.addNr(count);
    return true;
}
