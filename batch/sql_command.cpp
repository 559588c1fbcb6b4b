#include "batch/sql_command.h"

#include <cstdio>

#include "batch/exit_status.h"
#include "batch/output_file.h"
#include "batch/sql/count_statement.h"
#include "batch/sql/moment_statement.h"
#include "batch/sql/sql_arguments.h"
#include "batch/sql/sql_kind.h"
#include "batch/terminal.h"

namespace {

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

int runSql(int count, char* const* arguments) {
    SqlCommand command;
    Complaint complaint;
    if (!parseSql(count, arguments, command, complaint)) return refuse(complaint, "sql");
    useBinaryOutput();
    if (command.help) {
        printSqlHelp(stdout);
        return endPrinting();
    }
    TextBuffer text;
    const bool hasMemory = text.allocate(4000, TextBuffer::Growth::growing) == success;
    SqlText sql(text, command.line.dialect);
    if (hasMemory && !writeStatement(command, sql, complaint)) return refuse(complaint, "sql");
    if (!hasMemory || text.ranOutOfMemory()) return failWithoutMemory();
    const char* const path = command.line.output;
    return write(text, path) ? exitSuccess : fail("cannot write", path);
}
