#pragma once

// Makes line ends on standard output "\n" on every system.
void useBinaryOutput();
// Hands on standard input byte by byte.
void useBinaryInput();

// Whether a person watches standard error.
bool isErrorTerminal();
