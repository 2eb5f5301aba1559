#include "process/name_queries.h"
#include "process/process_list.h"

bool _kzProcessList::CollectAllProcesses_OS() {
    // A kernel table that can't be read leaves the table empty, saying why.
    kzproc::collectInto(*this, kMaxProcesses, true);

    logText += "CollectAllProcesses_OS: ";
    logText += stepTimer.restartText().asChar();
    logText += "; procCount: ";
    logText.addNr(count);
    return true;
}
