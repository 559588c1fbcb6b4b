#pragma once

#include "numeric/growing_list.h"

// The commands of a file, one a line, split into words: by blanks, except between quotes. '...' is taken as
// it stands; in "..." and outside of quotes a backslash is one, unless it stands before a double quote, which
// is then a character, or doubled before one, as on a Windows command line. # at the start of a word begins a
// comment. A line may begin with the program's own name.
struct CommandWords {
    // One command: its words, from the program on, with a null behind them.
    struct Command {
        Index line = 0; // from 1
        Index first = 0;
        int count = 0;
    };

    GrowingList<Command> commands;
    GrowingList<char*> words; // of all commands
    // Why the commands of a file cannot be run, and in which line; null when they can.
    const char* fault = nullptr;
    Index faultLine = 0;

    char* const* wordsOf(const Command& command) const {
        return words.part(command.first, command.count).data();
    }
};

// Splits a text of `length` characters, of which words point into; room for one more is used behind it.
// Returns success, with or without a fault, or outOfMemory.
[[nodiscard]] ErrorCode splitCommands(char* program, char* text, Index length, CommandWords& result);
