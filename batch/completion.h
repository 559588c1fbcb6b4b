#pragma once

// Prints what completes command lines of this program in a shell, "bash" or "zsh", made from the same tables
// as the help; packages install it. Returns the exit status: 0, or 2 for another word.
int runCompletion(int count, char* const* arguments);
