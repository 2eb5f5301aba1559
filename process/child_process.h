// _kzChildProcess: a started child's two output pipes, and what it says collected into one
// buffer: whole lines where possible, standard error marked line by line, and runs of empty
// lines squeezed out by a table of same-length replacements. The caller polls; nothing
// blocks for longer than two select time-outs of 50 ms. The buffer holds at most 153,600
// bytes between two takeOutput calls; what does not fit is cut without a word.
#pragma once

#include <cstdint>

#include "buffers/file_list.h"
#include "strings/kz_string.h"
#include "strings/kz_string8.h"

struct _kzChildProcess {
    int32_t outRead = 0; // read end of the standard output pipe; 0 means closed
    int32_t outWrite = 0;
    int32_t errRead = 0; // read end of the standard error pipe; 0 means closed
    int32_t errWrite = 0;
    _kzString<250> titleA, titleB; // for the caller; nothing here uses them
    int32_t spare = 0;
    int32_t markStdErr = 1; // lines of standard error get "StdErr: " in front
    char* output = nullptr;     // the capture buffer
    char* readBuffer = nullptr; // one read's worth
    int32_t outputLength = 0;
    _kzString8_allSize<1000> errPartial; // the unfinished last line of each stream
    _kzString8_allSize<1000> outPartial;
    uint8_t running = 0;
    _kzString8_allSize<50> replacements[30][2]; // (from, to), of equal lengths
    int32_t replacementCount = 0;

    static constexpr int32_t kOutputSize = 153600;
    static constexpr int32_t kReadSize = 76800;

    _kzChildProcess();
    ~_kzChildProcess();
    _kzChildProcess(const _kzChildProcess&) = delete;
    _kzChildProcess& operator=(const _kzChildProcess&) = delete;

    // Starts the program with its standard output and error in two pipes, and reads what it
    // says in its first 250 ms. The pid; 0 if the path is missing or a folder; -1 if fork failed.
    int start(const _kzString<250>& path, _kzFileList& args);

    static int32_t bufferSize() { return kOutputSize; }
    bool isRunning() const { return running && outRead != 0; }
    void closePipes();
    // Reads what each stream has now; the number of bytes the two reads delivered.
    int readOutput();
    bool poll(uint32_t* readCount);
    bool pollIfRunning();
    // Hands over at most `capacity` bytes of the buffer and empties it; the rest is dropped.
    bool takeOutput(const bool& readFirst, char* target, const int& capacity, int& taken);
    // A pair for the table: `to` is brought to the length of `from` by blanks in front or by
    // dropping its first characters.
    void addReplacement(_kzString8_allSize<50>& from, _kzString8_allSize<50>& to);
    void addDebugLine(const _kzString8_allSize<100>& text);
    void appendText(char* data, unsigned length, bool isStdErr, bool marker);
    // The replacement walk of one pair, on a foreign buffer.
    static void replaceInPlace(char* data, const unsigned& length, const _kzString8_allSize<50>& from,
                               const _kzString8_allSize<50>& to);

private:
    int readStream(int fd, _kzString8_allSize<1000>& partial, bool isStdErr);
    void terminateOutput();
    void appendPiece(const char* piece, int length, bool isStdErr, bool marker);
};
