#include "batch/saved_columns.h"

#include <cstdlib>
#include <cstring>

#include "analysis/run/saved_table.h"
#include "batch/assignments.h"
#include "batch/field_values.h"
#include "data/csv_reader.h"

namespace {

// Whether the rows of its table are its columns again, so that no variable can be excluded alone.
bool isSquare(const AnalysisKind& kind) {
    return kind.number == quantification4Kind || kind.number == principalCoordinatesKind;
}

// Flags the columns that the command line names.
void keepNamed(const CommandLine& line, const AnalysisRun& run, Block<std::int32_t>& isKept) {
    const DataSet& data = run.data;
    const auto keep = [&](std::int32_t variable) {
        const std::int32_t column = cellColumnOf(data, variable);
        if (column > 0 && column < data.cells.cols) isKept[column] = 1;
    };
    AnalysisOptions options = run.options;
    for (const OptionField& field : line.kind->analysis->fields) {
        if (field.type != OptionType::variable && field.type != OptionType::variables) continue;
        for (int k = 0; k < field.count; ++k) keep(wholeOption(options, field, k));
    }
    for (const std::int32_t variable : options.slotColumns) keep(variable);
    flagPredicted(line, data, isKept);
}

// By its name, or by its number where a shell or the option would take the name otherwise.
void addColumn(const CellTable& cells, std::int32_t column, Complaint& complaint) {
    const char* const name = cells.cell(0, column);
    const bool isPlain = name[0] != '\0' && std::strpbrk(name, " #\t\"'`$&|;<>()*?[]{}~!\\") == nullptr;
    if (isPlain && findColumn(cells, name) == column) {
        complaint.add("%s", name);
    } else {
        complaint.add("#%d", column);
    }
}

void complainOfLines(const CommandLine& line, const AnalysisRun& run, const Remedy& remedy,
                     Complaint& complaint) {
    complaint.say("--save: a line would pass the %d characters that can be read again; ",
                  static_cast<int>(longestCsvLine));
    if (!remedy.helps || isSquare(*line.kind)) return complaint.add("no --exclude would do");
    for (int k = 0; k < remedy.count; ++k) {
        complaint.add("%s", k == 0 ? "this would do: --exclude=" : ",");
        addColumn(run.data.cells, remedy.columns[k], complaint);
    }
}

} // namespace

bool numbersClusters(const AnalysisKind* kind) {
    return kind != nullptr && kind->number == clusterKind;
}

bool parseClusters(const char* text, int& clusters, Complaint& complaint) {
    char* end = nullptr;
    const long value = std::strtol(text, &end, 10);
    if (text[0] >= '0' && text[0] <= '9' && *end == '\0' && value >= 2 && value <= INT32_MAX) {
        clusters = static_cast<int>(value);
        return true;
    }
    complaint.say("--clusters takes a whole number from 2 to that of the samples, not '%.200s'", text);
    return false;
}

bool checkSaveOptions(const CommandLine& line, Complaint& complaint) {
    if (line.saved == nullptr) {
        if (line.clusters > 0 && line.picture.file == nullptr)
            complaint.say("--clusters needs --save FILE.csv or --graph FILE.svg");
    } else if (line.kind == nullptr || !line.kind->hasSampleColumns) {
        complaint.say("--save: '%s' has no columns for samples", kindWord(line));
    }
    return !complaint.any();
}

bool checkSaving(const CommandLine& line, const DataSet& data, const AnalysisOptions& options,
                 Complaint& complaint) {
    if (!numbersClusters(line.kind)) return true;
    const bool isOfVariables = options.settings.cluster.division != 0;
    const std::int32_t items = isOfVariables ? data.loaded.variables : data.loaded.samples;
    if (line.saved != nullptr && isOfVariables) {
        complaint.say("--save: clusters of variables have no columns for samples");
    } else if (line.saved != nullptr && line.clusters == 0) {
        complaint.say("--save needs --clusters N here: how many clusters to number the samples by");
    } else if (line.clusters > items) {
        complaint.say("--clusters: there are %d %s", items, isOfVariables ? "variables" : "samples");
    }
    return !complaint.any();
}

ErrorCode composeSavedTable(const CommandLine& line, const AnalysisRun& run, TextBuffer& text,
                            Complaint& complaint) {
    ErrorCode code = writeSavedTable(run, text);
    if (code != success || canBeReadAgain(text)) return code;
    Block<std::int32_t> isKept;
    Remedy remedy;
    code = isKept.allocate(run.data.cells.cols);
    if (code != success) return code;
    keepNamed(line, run, isKept);
    code = findRemedy(run, isKept, remedy);
    if (code == success) complainOfLines(line, run, remedy, complaint);
    return code;
}
