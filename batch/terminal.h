#pragma once

// Makes line ends on standard output "\n" on every system.
void useBinaryOutput();

// Whether a person watches standard error.
bool isErrorTerminal();

// Puts `from` in the place of `to`, which may exist; false when it cannot.
bool replaceFile(const char* from, const char* to);
