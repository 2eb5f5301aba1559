#include "files/text_log.h"

#include <fstream>

#include "time/kz_time.h"

bool kzWriteTextLine(const char* path, const char* text, int length, bool overwrite, bool withTime) {
    _kzString8_allSize<5000> line;
    if (withTime) line.add(_kzTime(true).textLogStamp().asChar()).add(": ");
    line.add(text, static_cast<unsigned>(length));
    line += '\n';
    std::ofstream out(path, overwrite ? std::ios::out : std::ios::out | std::ios::app);
    if (!out.is_open()) return false;
    out.write(line.data, line.length);
    return true;
}

_kzString8_allSize<250> tempFolder() { return _kzString8_allSize<250>("/tmp/"); }
