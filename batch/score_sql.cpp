#include "batch/score_sql.h"

bool hasExpressions(const AnalysisKind* kind) {
    return kind != nullptr && kind->analysis != nullptr && kind->analysis->hasExpressions;
}

bool checkScoreOptions(const CommandLine& line, Complaint& complaint) {
    if (!line.scoresBySql) {
        if (line.hasDialect) complaint.say("--dialect needs --score-sql");
    } else if (!hasExpressions(line.kind)) {
        complaint.say("--score-sql: '%s' has no expressions for samples", kindWord(line));
    } else if (line.format != ReportFormat::text) {
        complaint.say("--format: --score-sql prints expressions in the place of the report");
    } else if (line.predictions.size() > 0) {
        complaint.say("--predict: --score-sql prints expressions in the place of the report");
    }
    return !complaint.any();
}

bool checkExpressions(const CommandLine& line, const TextBuffer& expressions) {
    if (!line.scoresBySql || expressions.length() > 0) return true;
    std::fprintf(stderr, "%s: this run has no expressions\n", programName);
    return false;
}
