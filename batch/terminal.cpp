#include "batch/terminal.h"

#include <cstdio>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

#ifdef _WIN32

void useBinaryOutput() {
    _setmode(_fileno(stdout), _O_BINARY);
}

bool isErrorTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

// A device such as NUL cannot be replaced anyway.
bool isSpecialFile(const char*) {
    return false;
}

unsigned long processNumber() {
    return GetCurrentProcessId();
}

bool replaceFile(const char* from, const char* to) {
    return MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

#else

void useBinaryOutput() {}

bool isErrorTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

bool isSpecialFile(const char* path) {
    struct stat found = {};
    return lstat(path, &found) == 0 && !S_ISREG(found.st_mode);
}

unsigned long processNumber() {
    return static_cast<unsigned long>(getpid());
}

bool replaceFile(const char* from, const char* to) {
    return std::rename(from, to) == 0;
}

#endif
