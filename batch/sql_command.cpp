#include "batch/sql_command.h"

#include <cstdio>

#include "batch/output_file.h"
#include "batch/sql/count_statement.h"
#include "batch/sql/moment_statement.h"
#include "batch/sql/sql_arguments.h"
#include "batch/sql/sql_kind.h"
#include "batch/terminal.h"

namespace {

enum ExitStatus { exitSuccess = 0, exitFailure = 1, exitWrongCommandLine = 2 };

int refuse(const Complaint& complaint) {
    std::fprintf(stderr, "%s: %s\ntry: %s sql --help\n", programName, complaint.text, programName);
    return exitWrongCommandLine;
}

bool writeStatement(const SqlCommand& command, SqlText& sql, Complaint& complaint) {
    Block<SqlColumn> columns;
    std::string_view group;
    if (!listColumns(command, columns, group, complaint)) return false;
    switch (reductionOf(*command.line.kind)) {
    case Reduction::threeWayCounts:
    case Reduction::crossCounts:
        return writeCountStatement(command, columns, sql, complaint);
    default:
        writeMomentStatement(command, columns, group, sql);
        return true;
    }
}

// Onto standard output or into the file.
bool write(const TextBuffer& text, const char* path) {
    if (path == nullptr) return writeText(stdout, text) && std::fflush(stdout) == 0;
    OutputFile file;
    return file.open(path) && file.write(text);
}

} // namespace

int runSql(int count, char** arguments) {
    SqlCommand command;
    Complaint complaint;
    if (!parseSql(count, arguments, command, complaint)) return refuse(complaint);
    useBinaryOutput();
    if (command.help) {
        printSqlHelp(stdout);
        return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? exitSuccess : exitFailure;
    }
    TextBuffer text;
    const bool hasMemory = text.allocate(4000, TextBuffer::Growth::growing) == success;
    SqlText sql(text, command.line.dialect);
    if (hasMemory && !writeStatement(command, sql, complaint)) return refuse(complaint);
    if (!hasMemory || text.ranOutOfMemory()) {
        std::fprintf(stderr, "error : failed to allocate memory for data.\n");
        return exitFailure;
    }
    if (write(text, command.line.output)) return exitSuccess;
    std::fprintf(stderr, "error : cannot write '%s'\n",
                 command.line.output != nullptr ? command.line.output : "standard output");
    return exitFailure;
}
