#include "batch/terminal.h"

#ifdef _WIN32
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

#ifdef _WIN32

void useBinaryOutput() {
    _setmode(_fileno(stdout), _O_BINARY);
}

void useBinaryInput() {
    _setmode(_fileno(stdin), _O_BINARY);
}

bool isErrorTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

#else

void useBinaryOutput() {}

void useBinaryInput() {}

bool isErrorTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

#endif
