#pragma once

// Makes line ends on standard output "\n" on every system.
void useBinaryOutput();

// Whether a person watches standard error.
bool isErrorTerminal();

// Whether something stands at `path` that is no ordinary file: a device, a pipe or a link is written to, not
// replaced.
bool isSpecialFile(const char* path);

// The number of this process, which no other running one has.
unsigned long processNumber();

// Puts `from` in the place of `to`, which may exist; false when it cannot.
bool replaceFile(const char* from, const char* to);
