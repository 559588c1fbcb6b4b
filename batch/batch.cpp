#include "batch/batch.h"

#include <cstdio>
#include <cstring>

#include "analysis/basic/regression/prediction.h"
#include "analysis/run/data_file.h"
#include "analysis/run/run_flow.h"
#include "batch/applied_options.h"
#include "batch/argument_list.h"
#include "batch/arguments.h"
#include "batch/assignments.h"
#include "batch/batch_frontend.h"
#include "batch/completion.h"
#include "batch/exit_status.h"
#include "batch/given_moments.h"
#include "batch/help.h"
#include "batch/import_command.h"
#include "batch/output_file.h"
#include "batch/report_document.h"
#include "batch/run_file.h"
#include "batch/saved_columns.h"
#include "batch/score_sql.h"
#include "batch/sql_command.h"
#include "batch/terminal.h"
#include "report/cells.h"
#include "report/doubt_messages.h"
#include "report/messages.h"
#include "report/moments_messages.h"
#include "report/structure.h"
#include "version.h"

namespace {

int refuse(const Complaint& complaint, const AnalysisKind* kind) {
    return refuse(complaint, kind != nullptr ? kind->batchName : nullptr);
}

void setUp(const CommandLine& line, AnalysisRun& run) {
    Settings settings;
    setDefaultSettings(settings);
    settings.expressGraph = line.picture.file != nullptr && line.picture.chart == nullptr;
    settings.scatterNumbering = line.picture.numbering;
    settings.vectorSizing = line.picture.sizedVectors;
    run.everyGraphTakesPreferences = true;
    run.data.policy = line.missing;
    run.takesMoments = line.isMoments;
    if (line.numerics != nullptr) run.numerics = line.numerics;
    if (line.variableWidth > 0) settings.variableStringLength = line.variableWidth;
    if (line.labelWidth > 0) settings.sampleStringLength = line.labelWidth;
    startOptions(run.options, settings);
    run.options.clusterCount = line.clusters;
    run.columns.areWanted = line.saved != nullptr;
    run.expressions.areWanted = line.scoresBySql;
    run.expressions.dialect = line.dialect;
    std::snprintf(run.data.path, sizeof run.data.path, "%s", line.file);
}

// Whether the options of the analysis fit the data; told before any work.
bool checkOptions(const CommandLine& line, AnalysisRun& run, Complaint& complaint) {
    takePurposes(run, line.kind->analysis->ownPurposes);
    AnalysisOptions trial = run.options;
    if (!applyFields(line, run.data, trial, complaint)) return false;
    if (!checkPredictions(line, run.data, trial, complaint)) return false;
    if (!checkSaving(line, run.data, trial, complaint)) return false;
    if (!checkMomentFields(line, run.data, trial, complaint)) return false;
    if (!wishForPicture(line.picture, run, complaint)) return false;
    const Analysis& analysis = *line.kind->analysis;
    if (leavesTableRowsOut(run.data, analysis, trial)) {
        complaint.say("--missing omit: the rows of a table cannot be left out");
    }
    if (line.picture.view.highlighted > static_cast<std::uint32_t>(run.data.loaded.samples)) {
        complaint.say("--highlight: there are %d samples", run.data.loaded.samples);
    }
    return !complaint.any();
}

// The command that leads to a kind: its own, or that of another kind whose dialog chooses it.
int menuCommand(const AnalysisKind& kind) {
    for (const AnalysisKind& each : analysisKinds()) {
        if (each.onMenu && (each.number == kind.number || (!kind.onMenu && each.analysis == kind.analysis)))
            return firstAnalysisCommand + each.number;
    }
    return 0;
}

void printRefusal(const AnalysisRun& run) {
    TextBuffer text;
    if (text.allocate(500, TextBuffer::Growth::growing) != success) return;
    writeRefusal(text, run.data.notes.refusal, commandLineDoubts);
    writeMomentsRefusal(text, run.data.notes.moments);
    if (text.length() > 0) std::fputs("note : ", stderr);
    writeText(stderr, text);
}

// Whether moments hold what the analysis needs; how many samples they leave out is told.
bool checkMoments(BatchFrontend& frontend, const CommandLine& line, AnalysisRun& run) {
    AnalysisOptions options = run.options;
    Complaint complaint; // the values were applied before
    static_cast<void>(applyFields(line, run.data, options, complaint));
    const char* const lacking = lackingMoments(line, run.data, options);
    if (lacking == nullptr) {
        if (run.data.leftOut > 0) std::fprintf(stderr, "note : %d samples left out\n", run.data.leftOut);
        return true;
    }
    std::fprintf(stderr, "note : '%s' needs %s\n", kindWord(line), lacking);
    reportFileCode(frontend, run.report, FileCode::malformed);
    return false;
}

// What may be meant otherwise than it is read spoils a result without a sign of it, so it is told. False when
// the command line wants the run to fail with it.
bool checkData(BatchFrontend& frontend, const CommandLine& line, AnalysisRun& run) {
    if (line.isMoments) return checkMoments(frontend, line, run);
    const DataSet& data = run.data;
    TextBuffer text;
    if (text.allocate(1000, TextBuffer::Growth::growing) != success) {
        reportFileCode(frontend, run.report, FileCode::noMemory);
        return false;
    }
    if (data.policy == MissingPolicy::omit) {
        text.append("note : ");
        writeLeftOut(text, data);
    }
    writeDoubts(text, data, commandLineDoubts);
    writeText(stderr, text);
    const bool isMissing =
        findDoubt(data, Doubt::noNumbers).count + findDoubt(data, Doubt::infinite).count > 0;
    const bool fails =
        (line.strict && countDoubts(data) > 0) || (data.policy == MissingPolicy::fail && isMissing);
    if (fails) reportFileCode(frontend, run.report, FileCode::malformed);
    return !fails;
}

// Appends a report for each prediction asked for; the failure of one takes the place of all that is written.
bool runPredictions(BatchFrontend& frontend, const CommandLine& line, AnalysisRun& run) {
    for (const char* text : line.predictions) {
        PredictionEntry entry;
        ErrorCode code = startPrediction(run, entry);
        if (code == success) {
            enterValues(text, run.data, entry);
            code = writePrediction(run, entry, PredictionReport::appended);
        }
        if (code == success && !isComplete(run.report)) code = outOfMemory;
        if (code != success) {
            reportResult(frontend, run, code);
            return false;
        }
    }
    return true;
}

// Whether what is written is made of more of the cells than names and labels.
bool readsCells(const CommandLine& line) {
    return line.saved != nullptr || line.picture.colourBy != nullptr;
}

// The analysis or the summary of what was loaded. A report without its graph is whole.
bool runLoaded(BatchFrontend& frontend, const CommandLine& line, AnalysisRun& run) {
    if (line.kind != nullptr) {
        Settings defaults = run.options.settings;
        const ErrorCode code = runAnalysisCommand(frontend, defaults, run, menuCommand(*line.kind));
        if (code != success && code != graphNotBuilt) return false;
        return runPredictions(frontend, line, run);
    }
    if (line.shownPath != nullptr) std::snprintf(run.data.path, sizeof run.data.path, "%s", line.shownPath);
    showLoadedData(frontend, run);
    const bool isWhole = !run.report.upper.ranOutOfMemory() && isComplete(run.report);
    if (!isWhole) reportFileCode(frontend, run.report, FileCode::noMemory);
    return isWhole;
}

// What a run writes.
struct Outputs {
    OutputFile report;
    OutputFile picture;
    OutputFile saved;
};

bool checkFiles(const CommandLine& line, Complaint& complaint) {
    const NamedFile files[] = {{"the data file", isStandardStream(line.file) ? nullptr : line.file},
                               {"--output", line.output},
                               {"--save", line.saved},
                               {"--graph", line.picture.file}};
    return checkDifferent(files, complaint);
}

bool openOutputs(BatchFrontend& frontend, const CommandLine& line, AnalysisRun& run, Outputs& outputs) {
    const bool opened = (line.output == nullptr || outputs.report.open(line.output)) &&
                        (line.picture.file == nullptr || outputs.picture.open(line.picture.file)) &&
                        (line.saved == nullptr || outputs.saved.open(line.saved));
    if (!opened) reportFileCode(frontend, run.report, FileCode::notCreated);
    return opened;
}

// Under the numerics that nobody has asked for, what differs from a textbook is told.
void printDeviations(const CommandLine& line, const AnalysisRun& run) {
    if (line.numerics != nullptr || run.deviations[0] == '\0') return;
    std::fprintf(stderr, "note : not as in textbooks: %s; --numerics textbook prints them so\n",
                 run.deviations);
}

void printStatus(const TextBuffer& status) {
    const std::size_t length = std::strcspn(status.text(), "\n");
    std::fprintf(stderr, "%.*s\n", static_cast<int>(length), status.text());
}

void clearTexts(Report& report) {
    report.upper.clear();
    report.lower.clear();
}

// A failure leaves the output file alone: its text goes to standard output. False when the run has failed or
// its report cannot be written.
bool print(BatchFrontend& frontend, const CommandLine& line, AnalysisRun& run, OutputFile& output,
           bool succeeded) {
    const auto check = [&](bool written) {
        if (!written) reportFileCode(frontend, run.report, FileCode::notCreated);
        succeeded = succeeded && written;
    };
    // A document is made of the structure of the report.
    if (succeeded && line.format != ReportFormat::text) clearTexts(run.report);
    TextBuffer document;
    const TextBuffer* text = makeDocument(line, run, frontend, succeeded, document);
    if (text == nullptr) {
        reportFileCode(frontend, run.report, FileCode::noMemory);
        succeeded = false;
    } else if (succeeded && line.output != nullptr) {
        check(output.write(*text));
    }
    if (!succeeded || line.output == nullptr) {
        if (!succeeded) text = makeDocument(line, run, frontend, false, document);
        if (text == nullptr) text = frontend.shown();
        check(writeText(stdout, *text) && std::fflush(stdout) == 0);
    }
    clearTexts(run.report);
    if (succeeded) printDeviations(line, run);
    printStatus(run.report.status);
    return succeeded;
}

// The picture of a run that succeeded; false when there is none, which one line tells.
bool writePicture(const BatchFrontend& frontend, const CommandLine& line, const AnalysisRun& run,
                  OutputFile& output) {
    const char* refusal = refusePicture(line.picture, *line.kind, run);
    if (refusal != nullptr) {
        if (run.graph.present || !frontend.hasAlerted())
            std::fprintf(stderr, "%s: %s\n", programName, refusal);
        return false;
    }
    TextBuffer document;
    if (drawPicture(line.picture, run, document) == success && output.write(document)) return true;
    std::fprintf(stderr, "%s: cannot write '%s'\n", programName, line.picture.file);
    return false;
}

// The table with the columns of a run that succeeded, not yet written.
bool makeSavedTable(BatchFrontend& frontend, const CommandLine& line, AnalysisRun& run, TextBuffer& table,
                    Complaint& complaint) {
    const ErrorCode code = composeSavedTable(line, run, table, complaint);
    if (code != success) reportResult(frontend, run, code);
    return code == success;
}

// False when there is nothing to save, or it cannot be written, which one line tells.
bool writeSaved(const CommandLine& line, const AnalysisRun& run, TextBuffer& table, OutputFile& output) {
    const bool written = run.columns.count > 0 && output.write(table);
    table.clear();
    if (written) return true;
    if (run.columns.count == 0) {
        std::fprintf(stderr, "%s: this run has no columns to save\n", programName);
    } else {
        std::fprintf(stderr, "%s: cannot write '%s'\n", programName, line.saved);
    }
    return false;
}

} // namespace

int runBatch(int count, char* const* arguments) {
    const char* const word = count > 1 ? arguments[1] : "";
    if (std::strcmp(word, "import") == 0) return runImport(count, arguments);
    if (std::strcmp(word, "sql") == 0) return runSql(count, arguments);
    if (std::strcmp(word, "run") == 0) return runFile(count, arguments, runBatch);
    if (std::strcmp(word, "completion") == 0) return runCompletion(count, arguments);
    if (std::strcmp(word, "help") == 0 && count > 2) { // as the help of the word behind it
        char help[] = "--help";
        char* asked[] = {arguments[0], arguments[2], help, nullptr};
        return runBatch(3, asked);
    }
    CommandLine line;
    Complaint complaint;
    if (!parseCommandLine(count, arguments, line, complaint)) return refuse(complaint, line.kind);
    useBinaryOutput();
    if (line.task == CommandLine::Task::help) printHelp(stdout, line.kind);
    if (line.task == CommandLine::Task::version) std::printf("%s %s\n", programName, OMBRIVANTEL_VERSION);
    if (line.task != CommandLine::Task::run) return endPrinting();

    if (!checkFiles(line, complaint)) return refuse(complaint, line.kind);

    AnalysisRun run;
    BatchFrontend frontend(line);
    setUp(line, run);
    ReportStructure structure;
    if (line.format != ReportFormat::text) run.report.structure = &structure;
    if (allocateReport(run.report, TextBuffer::Growth::growing) != success ||
        structure.allocate() != success) {
        return failWithoutMemory();
    }
    Outputs outputs;
    bool succeeded = openOutputs(frontend, line, run, outputs);
    if (succeeded && !loadDataFile(frontend, run).isLoaded()) {
        printRefusal(run);
        succeeded = false;
    }
    if (succeeded && line.excludes.size() > 0) {
        if (!applyExcludes(line, run.data, complaint)) return refuse(complaint, line.kind);
        buildDataSet(run.data);
    }
    if (succeeded && line.kind != nullptr && !checkOptions(line, run, complaint)) {
        return refuse(complaint, line.kind);
    }
    succeeded = succeeded && checkData(frontend, line, run);
    // Where there is no memory to do so, the texts stay.
    if (succeeded && !readsCells(line)) static_cast<void>(keepNumbersAlone(run.data));
    succeeded = succeeded && runLoaded(frontend, line, run);
    TextBuffer table;
    if (succeeded && line.saved != nullptr) {
        succeeded = makeSavedTable(frontend, line, run, table, complaint);
        if (complaint.any()) return refuse(complaint, line.kind);
    }
    succeeded = print(frontend, line, run, outputs.report, succeeded);
    succeeded = succeeded && checkExpressions(line, run.expressions.text);
    if (succeeded && line.saved != nullptr) succeeded = writeSaved(line, run, table, outputs.saved);
    if (succeeded && line.picture.file != nullptr) {
        succeeded = writePicture(frontend, line, run, outputs.picture);
    }
    return succeeded ? exitSuccess : exitFailure;
}
