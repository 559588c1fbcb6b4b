#include "batch/given_moments.h"

#include <cstring>

bool checkMomentOptions(const CommandLine& line, Complaint& complaint) {
    if (!line.isMoments) {
        if (line.hasDivisor) complaint.say("--divisor needs --moments FILE.csv");
        return !complaint.any();
    }
    if (line.kind == nullptr || line.kind->analysis->momentNeeds == nullptr) {
        complaint.say("--moments: '%s' needs the samples themselves", kindWord(line));
    } else if (line.saved != nullptr) {
        complaint.say("--save: there are no samples beside which columns could stand; --score-sql scores "
                      "them where they are");
    } else if (line.missing != MissingPolicy::zero) {
        complaint.say("--missing: moments have no cells that could be missing");
    } else if (line.picture.file != nullptr &&
               (line.picture.chart == nullptr || std::strcmp(line.picture.chart->name, "scree") != 0)) {
        complaint.say("--graph: there are no samples that could be drawn; only --picture scree needs none");
    }
    return !complaint.any();
}

bool checkMomentFields(const CommandLine& line, const DataSet& data, const AnalysisOptions& options,
                       Complaint& complaint) {
    if (!line.isMoments || !data.moments.isGrouped) return true;
    const bool isOfGroups = (line.kind->analysis->momentNeeds(options) & needsGroups) != 0;
    if (isOfGroups && cellColumnOf(data, options.purposes[0]) != data.moments.variables + 1) {
        complaint.say("--group: these are the moments of the groups of '%s'", data.moments.groupName);
    }
    return !complaint.any();
}

const char* lackingMoments(const CommandLine& line, const DataSet& data, const AnalysisOptions& options) {
    const MomentTable& moments = data.moments;
    unsigned needs = line.kind->analysis->momentNeeds(options);
    if (line.scoresBySql) needs |= needsMeans | needsDeviations; // for variables as they are
    if ((needs & needsGroups) != 0 && !moments.isGrouped) {
        return "the moments of each group, with the group's variable in front";
    }
    if ((needs & needsGroups) == 0 && moments.isGrouped) return "the moments of all samples, not of groups";
    if ((needs & needsCount) != 0 && !moments.hasCounts) return "n, the number of samples";
    if ((needs & needsDeviations) != 0 && !moments.hasDeviations) {
        return "the deviations (a row sd), or covariances instead of correlations";
    }
    if ((needs & needsMeans) != 0 && !moments.hasMeans) return "the means (a row mean)";
    return nullptr;
}
