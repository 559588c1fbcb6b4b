#pragma once

// Makes line ends on standard output "\n" on every system.
void useBinaryOutput();

// Whether a person watches standard error.
bool isErrorTerminal();
