#include <cstring>
#include <vector>

#include "batch/applied_options.h"
#include "batch/arguments.h"
#include "batch/assignments.h"
#include "batch/command_words.h"
#include "batch/import_arguments.h"
#include "batch/sql/count_statement.h"
#include "batch/sql/moment_statement.h"
#include "batch/sql/sql_kind.h"
#include "tests/fuzz/require.h"
#include "tests/support/csv_text.h"

namespace {

void tryAnalysis(int count, char* const* words) {
    CommandLine line;
    Complaint complaint;
    require(parseCommandLine(count, words, line, complaint) != complaint.any());
    if (complaint.any() || line.task != CommandLine::Task::run) return;
    AnalysisRun run;
    require(loadDataSet("label,v1,a b,c d,v4,#5\nx,1,2,3,4,5\ny,2,2,1,5,9\n", run.data) == success);
    require(applyExcludes(line, run.data, complaint) != complaint.any());
    if (complaint.any() || line.kind == nullptr) return;
    buildDataSet(run.data);
    copyLoadedToWorking(run.data);
    Settings settings;
    setDefaultSettings(settings);
    startOptions(run.options, settings);
    takePurposes(run, line.kind->analysis->ownPurposes);
    require(applyFields(line, run.data, run.options, complaint) != complaint.any());
    if (complaint.any()) return;
    require(checkPredictions(line, run.data, run.options, complaint) != complaint.any());
    if (!complaint.any()) require(wishForPicture(line.picture, run, complaint) != complaint.any());
}

void trySql(int count, char* const* words) {
    SqlCommand command;
    Complaint complaint;
    require(parseSql(count, words, command, complaint) != complaint.any());
    if (complaint.any() || command.help) return;
    TextBuffer text;
    require(text.allocate(4000, TextBuffer::Growth::growing) == success);
    SqlText sql(text, command.line.dialect);
    Block<SqlColumn> columns;
    std::string_view group;
    if (!listColumns(command, columns, group, complaint)) return require(complaint.any());
    const Reduction reduction = reductionOf(*command.line.kind);
    const bool counts = reduction == Reduction::threeWayCounts || reduction == Reduction::crossCounts;
    if (counts && !writeCountStatement(command, columns, sql, complaint)) return require(complaint.any());
    if (!counts) writeMomentStatement(command, columns, group, sql);
    require(text.length() > 0);
}

} // namespace

// Any lines of words are taken, or each refused with a complaint; nothing is run.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(bytes), size);
    char program[] = "ombrivantel-batch";
    CommandWords commands;
    require(splitCommands(program, text.data(), static_cast<Index>(size), commands) == success);
    if (commands.fault != nullptr) return 0;
    for (const CommandWords::Command& command : commands.commands.all()) {
        char* const* const words = commands.wordsOf(command);
        const char* const first = command.count > 1 ? words[1] : "";
        if (std::strcmp(first, "sql") == 0) {
            trySql(command.count, words);
        } else if (std::strcmp(first, "import") == 0) {
            ImportCommand import;
            Complaint complaint;
            require(parseImport(command.count, words, import, complaint) != complaint.any());
        } else {
            tryAnalysis(command.count, words);
        }
    }
    return 0;
}
