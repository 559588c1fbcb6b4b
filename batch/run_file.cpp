#include "batch/run_file.h"

#include <cstdio>
#include <cstring>

#include "batch/argument_list.h"
#include "batch/command_words.h"
#include "batch/exit_status.h"
#include "batch/file_system.h"
#include "batch/terminal.h"
#include "data/byte_source.h"

namespace {

struct RunOptions {
    const char* file = nullptr;
    bool keepsGoing = false;
    bool help = false;
};

void printRunHelp() {
    std::printf(
        "usage: %s run [--keep-going] COMMANDS.txt\n\n"
        "Runs the commands of a file (-: standard input) one after the other, one a line as it would be\n"
        "typed behind %s, and prints their reports one below the other. Paths are\n"
        "relative to the file. # begins a comment; 'a b' and \"a b\" are one word.\n\n"
        "example of a file:\n"
        "  # arrests by state\n"
        "  fundamental USArrests.csv\n"
        "  pca --components 2 --graph arrests.svg USArrests.csv\n\n"
        "options of this command:\n",
        programName, programName);
    printOption(stdout, keepGoingOption);
    std::printf(
        "\nExit status: that of the first command that fails, else 0; 2 for a file with a line that is no\n"
        "command, of which nothing is run.\n");
}

bool parseRun(int count, char* const* texts, RunOptions& options, Complaint& complaint) {
    Arguments arguments(count, texts, 2);
    bool optionsEnded = false;
    while (const char* argument = arguments.next()) {
        if (optionsEnded || (std::strncmp(argument, "--", 2) != 0 && !isHelp(argument))) {
            if (!takeFile(argument, options.file, complaint)) return false;
        } else if (std::strcmp(argument, "--") == 0) {
            optionsEnded = true;
        } else if (isHelp(argument)) {
            return options.help = true;
        } else if (std::strcmp(argument, keepGoingOption.name) == 0) {
            options.keepsGoing = true;
        } else {
            const Option option = splitOption(argument);
            NearestWord nearest(option.name);
            nearest.offer(keepGoingOption.name);
            complainOfOption(option, nearest, complaint);
            return false;
        }
    }
    if (options.file != nullptr) return true;
    complaint.say("which file of commands?");
    return false;
}

ErrorCode readCommands(const char* path, Block<char>& text, Index& length) {
    if (isStandardStream(path)) {
        useBinaryInput();
        return readToEnd(stdin, text, length);
    }
    std::FILE* const file = openToRead(path);
    if (file == nullptr) return illegalData;
    const ErrorCode code = readToEnd(file, text, length);
    std::fclose(file);
    return code;
}

int runAll(const RunOptions& options, const CommandWords& split, RunCommand* runCommand) {
    int status = exitSuccess;
    for (const CommandWords::Command& command : split.commands.all()) {
        const int ended = runCommand(command.count, split.wordsOf(command));
        if (ended == exitSuccess) continue;
        std::fprintf(stderr, "%s: line %lld of '%s' ended with status %d\n", programName,
                     static_cast<long long>(command.line), options.file, ended);
        if (status == exitSuccess) status = ended;
        if (!options.keepsGoing) break;
    }
    return status;
}

} // namespace

int runFile(int count, char* const* arguments, RunCommand* runCommand) {
    RunOptions options;
    Complaint complaint;
    if (!parseRun(count, arguments, options, complaint)) return refuse(complaint, "run");
    useBinaryOutput();
    if (options.help) {
        printRunHelp();
        return endPrinting();
    }
    Block<char> text;
    Index length = 0;
    CommandWords split;
    ErrorCode code = readCommands(options.file, text, length);
    if (code == success) code = text.grow(length + 1); // the last word ends behind the text
    if (code == success) code = splitCommands(arguments[0], text.data(), length, split);
    if (code == success && split.fault == nullptr && !isStandardStream(options.file) &&
        !enterFolderOf(options.file)) {
        code = illegalData;
    }
    if (code != success) return fail(code == outOfMemory ? "no memory for" : "cannot read", options.file);
    if (split.fault != nullptr) {
        complaint.say("line %td of '%s': %s", split.faultLine, options.file, split.fault);
        return refuse(complaint, "run");
    }
    return runAll(options, split, runCommand);
}
