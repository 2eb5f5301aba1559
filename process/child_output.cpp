// Collecting a child's output: reads from both pipes, unfinished lines held back, the
// replacement table, standard error marked, and the capture buffer handed over.
#include <sys/select.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/retry_io.h"
#include "process/child_process.h"

namespace {

constexpr int kMaxHeldBack = 999;
const char kStdErrMark[] = "StdErr: ";

bool readable(int fd) {
    if (fd <= 0 || fd >= FD_SETSIZE) return false;
    fd_set set;
    FD_ZERO(&set);
    FD_SET(fd, &set);
    timeval wait{0, 50000};
    return ::select(fd + 1, &set, nullptr, nullptr, &wait) > 0;
}

// Reads behind a carried-over partial line; the new bytes (0 on an error or the end).
int readBehind(int fd, char* buffer, int carried) {
    const ssize_t n = kzReadRetrying(fd, buffer + carried, static_cast<size_t>(_kzChildProcess::kReadSize - 1 - carried));
    return n > 0 ? static_cast<int>(n) : 0;
}

// A CR at the end becomes LF. Otherwise a tail of at most 999 bytes behind the last line end
// among the new bytes is held back in `partial`; the length to pass on now is returned.
int holdBackTail(char* text, int length, int carried, int scanFrom, _kzString8_allSize<1000>& partial) {
    if (text[length - 1] == '\r') text[length - 1] = '\n';
    if (text[length - 1] == '\n') return length;
    for (int i = scanFrom; i >= carried; --i) {
        if (text[i] != '\r' && text[i] != '\n') continue;
        if (length - 1 - i > kMaxHeldBack) return length;
        partial = _kzString8_allSize<1000>(text + i + 1, length - 1 - i);
        return i + 1;
    }
    return length;
}

int takePartial(char* buffer, _kzString8_allSize<1000>& partial) {
    const int carried = partial.length;
    std::memcpy(buffer, partial.data, static_cast<size_t>(carried));
    partial.clear();
    return carried;
}

} // namespace

_kzChildProcess::_kzChildProcess()
    : output(static_cast<char*>(std::malloc(kOutputSize + 20))), readBuffer(static_cast<char*>(std::malloc(kReadSize + 20))) {
    if (output) output[0] = 0;
    // A NUL in a child's output becomes a blank, so that it never ends the text early.
    replacements[0][0] = _kzString8_allSize<50>("", 1);
    replacements[0][1] = " ";
    replacementCount = 1;
    // Empty lines before lines that start with ', > or [, after one that ends in %, and
    // doubled CRs, squeezed to blanks of the same length.
    static const char* const kPairs[][2] = {
        {"\r\n\r\n\r\n'", "    \r\n'"}, {"\n\n\n'", "  \n'"},     {"%\r\n\r\n", "  %\r\n"},
        {"\r\n\r\n>", "  \r\n>"},       {"\n\n>", " \n>"},         {"\r\n\r\n\r\n[", "    \r\n["},
        {"\r\n\r\n[", "  \r\n["},       {"\n\n\n[", "  \n["},      {"\n\n[", " \n["},
        {"\r\r\r\n[", "   \n["},        {"\r\r\n", " \r\n"}};
    for (const auto& pair : kPairs) {
        _kzString8_allSize<50> from(pair[0]), to(pair[1]);
        addReplacement(from, to);
    }
}

_kzChildProcess::~_kzChildProcess() {
    closePipes();
    std::free(output);
    std::free(readBuffer);
    output = readBuffer = nullptr;
}

void _kzChildProcess::closePipes() {
    running = 0;
    for (int32_t* fd : {&outRead, &outWrite, &errRead, &errWrite})
        if (*fd != 0) {
            ::close(*fd);
            *fd = 0;
        }
}

int _kzChildProcess::readOutput() {
    const int fromOut = readable(outRead) ? readStream(outRead, outPartial, false) : 0;
    if (errRead == 0 || !readable(errRead)) return fromOut;
    return fromOut + readStream(errRead, errPartial, true);
}

// One read behind the stream's held-back line; a tail behind the last line end among the new
// bytes is held back again (for standard error the scan starts at the second-last byte).
int _kzChildProcess::readStream(int fd, _kzString8_allSize<1000>& partial, bool isStdErr) {
    const int carried = takePartial(readBuffer, partial);
    const int got = readBehind(fd, readBuffer, carried);
    int length = carried + got;
    if (got > 0) {
        readBuffer[length] = 0;
        length = holdBackTail(readBuffer, length, carried, length - (isStdErr ? 2 : 1), partial);
    }
    readBuffer[length] = readBuffer[length + 1] = 0;
    appendText(readBuffer, static_cast<unsigned>(length), isStdErr, false);
    return got;
}

void _kzChildProcess::terminateOutput() {
    if (outputLength < kOutputSize) output[outputLength] = 0;
}

bool _kzChildProcess::poll(uint32_t* readCount) {
    const int got = readOutput();
    if (readCount) *readCount = static_cast<uint32_t>(got);
    terminateOutput();
    return got > 0;
}

bool _kzChildProcess::pollIfRunning() {
    if (!running || outRead == 0) return true;
    const int got = readOutput();
    terminateOutput();
    return got > 0;
}

bool _kzChildProcess::takeOutput(const bool& readFirst, char* target, const int& capacity, int& taken) {
    if (readFirst) {
        readOutput();
        terminateOutput();
    }
    if (outputLength < 1) {
        taken = 0;
        if (capacity > 0) target[0] = 0;
        return false;
    }
    taken = capacity < outputLength ? capacity : outputLength;
    std::memcpy(target, output, static_cast<size_t>(taken));
    if (taken < capacity) target[taken] = 0;
    outputLength = 0;
    return true;
}

void _kzChildProcess::addReplacement(_kzString8_allSize<50>& from, _kzString8_allSize<50>& to) {
    if (replacementCount >= 29) return;
    while (to.length < from.length) to.insert(0, _kzString8_allSize<50>(" "));
    while (to.length > from.length) to.remove(0, 1);
    if (from.isEmpty()) return;
    replacements[replacementCount][0] = from;
    replacements[replacementCount][1] = to;
    ++replacementCount;
}

void _kzChildProcess::addDebugLine(const _kzString8_allSize<100>& text) {
    _kzString8_allSize<100> line(kStdErrMark);
    line.add("DGB ").add(text.data, text.length);
    const int room = kOutputSize - 1 - outputLength;
    const int n = line.length < room ? line.length : room;
    if (n <= 0) return;
    std::memcpy(output + outputLength, line.data, static_cast<size_t>(n));
    outputLength += n;
}

void _kzChildProcess::replaceInPlace(char* data, const unsigned& length, const _kzString8_allSize<50>& from,
                                     const _kzString8_allSize<50>& to) {
    const int n = from.length;
    if (static_cast<int>(length) <= 0 || n >= static_cast<int>(length) || to.length != n || n <= 0) return;
    // A naive walk: a mismatch goes back behind the start of the attempt; the walk stops where
    // a match would end in the last `n` bytes.
    int matched = 0;
    for (int pos = 0; pos < static_cast<int>(length) - n;) {
        if (data[pos] == from.data[matched]) {
            ++pos;
            if (++matched == n) {
                std::memcpy(data + pos - n, to.data, static_cast<size_t>(n));
                matched = 0;
            }
        } else {
            pos = pos - matched + 1;
            matched = 0;
        }
    }
}

void _kzChildProcess::appendText(char* data, unsigned length, bool isStdErr, bool marker) {
    if (length == 0) return;
    if (outputLength + static_cast<long long>(length) >= kOutputSize) length = static_cast<unsigned>(kOutputSize - 1 - outputLength);
    for (int i = 0; i < replacementCount; ++i) replaceInPlace(data, length, replacements[i][0], replacements[i][1]);
    // Each line, with its LF, goes in on its own, so that each gets its marks.
    unsigned start = 0;
    for (unsigned i = 0; i < length; ++i)
        if (data[i] == '\n') {
            appendPiece(data + start, static_cast<int>(i + 1 - start), isStdErr, marker);
            start = i + 1;
        }
    appendPiece(data + start, static_cast<int>(length - start), isStdErr, marker);
}

void _kzChildProcess::appendPiece(const char* piece, int length, bool isStdErr, bool marker) {
    if (length <= 0) return;
    const int base = outputLength;
    int marks = 0;
    if (marker && base + length + 1 < kOutputSize) output[base + marks++] = '|';
    if (markStdErr && isStdErr && base + length + marks + 8 < kOutputSize) {
        std::memcpy(output + base + marks, kStdErrMark, 8);
        marks += 8;
    }
    const int room = kOutputSize - 1 - base - marks;
    const int n = length < room ? length : room;
    if (n > 0) std::memcpy(output + base + marks, piece, static_cast<size_t>(n));
    outputLength = base + marks + (n > 0 ? n : 0);
}
