#include "analysis/multivariate/discriminant/discriminant.h"

#include <cstdio>

#include "analysis/multivariate/discriminant/discriminant_expressions.h"
#include "analysis/multivariate/discriminant/discriminant_report.h"
#include "analysis/run/run_report.h"
#include "analysis/run/score_charts.h"
#include "analysis/run/score_graph.h"
#include "analysis/run/textbook_deviation.h"
#include "data/categories.h"

namespace {

constexpr int fInControl = 2605;
constexpr int fInProbabilityControl = 2606;

const OptionField fields[] = {
    {.type = OptionType::variable,
     .name = "group",
     .help = "variable with the number of each sample's group",
     .offset = offsetof(AnalysisOptions, purposes),
     .control = 2601},
    {.type = OptionType::flag,
     .name = "box-m",
     .help = "test the equality of the groups' covariance matrices",
     .offset = offsetof(AnalysisOptions, settings.discriminant.testBoxM),
     .control = 2602},
    {.type = OptionType::flag,
     .name = "forward-selection",
     .help = "select variables step by step",
     .offset = offsetof(AnalysisOptions, settings.discriminant.forwardSelection),
     .control = 2603},
    {.type = OptionType::real,
     .name = "canon-alpha",
     .help = "significance level of a canonical function",
     .offset = offsetof(AnalysisOptions, settings.discriminant.canonAlpha),
     .control = 2604,
     .arrows = 2607,
     .step = 0.01,
     .least = 0.01,
     .most = 0.5,
     .range = OptionRange::level},
    {.type = OptionType::real,
     .name = "f-in",
     .help = "least F of a variable that enters",
     .offset = offsetof(AnalysisOptions, settings.discriminant.fIn),
     .control = fInControl,
     .arrows = 2608,
     .step = 0.1,
     .least = 0.01,
     .most = 99.0},
    {.type = OptionType::real,
     .name = "f-in-prob",
     .help = "greatest probability of that F",
     .offset = offsetof(AnalysisOptions, settings.discriminant.fInProbability),
     .control = fInProbabilityControl,
     .arrows = 2609,
     .step = 0.01,
     .least = 0.01,
     .most = 0.5},
};

bool isEnabled(const AnalysisOptions& options, const OptionField& field) {
    const bool ofSelection = field.control == fInControl || field.control == fInProbabilityControl;
    return !ofSelection || options.settings.discriminant.forwardSelection != 0;
}

const char* refuse(const AnalysisOptions& options, std::uint32_t) {
    return options.purposes[0] == 0 ? "please select at least one purpose variable" : nullptr;
}

unsigned momentNeeds(const AnalysisOptions&) {
    return needsGroups | needsCount | needsMeans | needsDeviations;
}

ErrorCode compute(Screens& screens, const Numerics& numerics, const DataMatrix& data,
                  const DiscriminantOptions& options, DiscriminantResult& result) {
    const GroupStatistics& statistics = result.statistics;
    const auto gather = numerics.textbook ? gatherGroupsInPasses : gatherGroups;
    (data.moments != nullptr ? takeGroupMoments : gather)(data, result.statistics);
    ErrorCode code = screens.setProgress(15);
    if (code == success && options.testBoxM != 0) code = testBoxM(numerics, statistics, result.box);
    if (code == success) code = screens.setProgress(30);
    if (code == success && options.forwardSelection != 0) {
        code = selectForward(numerics, statistics, options.fIn, options.fInProbability, result.selection,
                             {&screens, 30, 50});
    }
    if (code == success) code = screens.setProgress(50);
    if (code == success) code = result.functions.allocate(statistics, result.selection);
    if (code == success) {
        code = statistics.groups == 2 ? findFisher(numerics, statistics, result.selection, result.functions)
                                      : findCanonical(numerics, statistics, result.selection,
                                                      options.canonAlpha, result.functions);
    }
    if (code == success) code = screens.setProgress(80);
    if (code != success) return code;
    classifySamples(data, statistics, result.selection, result.functions);
    return screens.setProgress(100);
}

void noteDeviations(AnalysisRun& run, const DiscriminantResult& result) {
    if (run.numerics->textbook) return;
    const DiscriminantOptions& options = run.options.settings.discriminant;
    const BoxTest& box = result.box;
    const VariableSelection& selection = result.selection;
    const DiscriminantFunctions& functions = result.functions;
    if (options.testBoxM != 0 && chiSquareTailsDeviate(1, &box.chiSquare, &box.freedom, &box.probability)) {
        noteDeviation(run, "chi.prob of box M");
    }
    if (fTailsDeviate(selection.tested, selection.f.data(), selection.firstFreedom.data(),
                      selection.secondFreedom.data(), selection.probability.data())) {
        noteDeviation(run, "f.prob of stepwise");
    }
    if (result.statistics.groups == 2) {
        const double* freedom = functions.hotellingFreedom;
        if (fTailsDeviate(1, &functions.hotellingF, &freedom[0], &freedom[1],
                          &functions.hotellingProbability)) {
            noteDeviation(run, "f.prob of Hotelling T2");
        }
        return;
    }
    if (chiSquareTailsDeviate(functions.dimensions, functions.chiSquare.data(), functions.freedom.data(),
                              functions.probability.data())) {
        noteDeviation(run, "chi prob of Bartlett");
    }
    if (significantRoots(textbookNumerics, functions, options.canonAlpha) != functions.vectors) {
        noteDeviation(run, "vector number");
    }
    if (doAllClassifyElsewhere(functions)) noteDeviation(run, "d.group");
}

// Two groups have a single score, which is no graph.
ErrorCode buildDiscriminantGraph(Screens& screens, AnalysisRun& run, const DiscriminantResult& result) {
    if (result.statistics.groups < 3) return success;
    return buildScoreGraph(screens, run,
                           {.seriesPrefix = "vector",
                            .seriesCount = result.functions.vectors,
                            .scores = &result.functions.scores});
}

ErrorCode keepDiscriminantColumns(AnalysisRun& run, const DiscriminantResult& result) {
    const DiscriminantFunctions& functions = result.functions;
    const Index groups = result.statistics.groups;
    return keepColumns(
        run.columns, functions.scores.rows(), functions.vectors + groups + 1, [&](SampleColumns& columns) {
            columns.addNumbered("score ", functions.scores, functions.vectors);
            char name[32];
            for (Index g = 0; g < groups; ++g) {
                std::snprintf(name, sizeof name, "distance %td", g + 1);
                columns.add(name, [&](Index s) { return squaredGroupDistance(functions, s, g); });
            }
            columns.add("d.group", [&](Index s) { return functions.assigned[s] + 1.0; });
        });
}

// Two groups have one function and no eigenvalues.
ErrorCode buildDiscriminantPicture(AnalysisRun& run, const DiscriminantResult& result) {
    const DiscriminantFunctions& functions = result.functions;
    const bool isCanonical = result.statistics.groups > 2;
    Block<double> shares;
    if (shares.allocate(functions.dimensions) != success) return outOfMemory;
    double sum = 0.0;
    for (Index k = 0; isCanonical && k < shares.size(); ++k) sum += functions.eigenvalues[k];
    for (Index k = 0; isCanonical && k < shares.size(); ++k) shares[k] = functions.eigenvalues[k] / sum;
    return buildPicture<ScoreCharts>(run, {.title = "discriminant analysis",
                                           .axisName = "score",
                                           .scores = &functions.scores,
                                           .count = functions.dimensions,
                                           .shares = isCanonical ? shares.data() : nullptr,
                                           .weights = isCanonical ? functions.eigenvalues.data() : nullptr,
                                           .weightCount = functions.dimensions,
                                           .weightName = "eigenvalue",
                                           .groupColumn = run.data.working.variables - 1});
}

ErrorCode runDiscriminantAnalysis(Screens& screens, AnalysisRun& run) {
    if (reorderWorkingBySelection(run.data) != success) return outOfMemory;
    const DataMatrix& data = run.data.working;
    if (run.data.selectedCount == 0) return illegalGroupVariable;
    std::int32_t groups = 0;
    ErrorCode code = checkGroupVariable(data, data.variables - 1, groups);
    if (code != success) return code;
    if (run.data.otherCount == 0) return noEffectiveVariable;
    DiscriminantResult result;
    code = result.allocate(data, groups);
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) {
        code = compute(screens, *run.numerics, data, run.options.settings.discriminant, result);
    }
    screens.hideProgress();
    if (code != success) return code;

    noteDeviations(run, result);
    writeDiscriminantReport(run, result);
    code = keepDiscriminantColumns(run, result);
    if (code == success) code = keepDiscriminantExpressions(run, result);
    if (code == success) code = buildDiscriminantPicture(run, result);
    if (code != success) return code;
    closeReport(screens, run.report);
    return buildDiscriminantGraph(screens, run, result);
}

} // namespace

const Analysis discriminantAnalysis = {.fields = fields,
                                       .driver = runDiscriminantAnalysis,
                                       .isEnabled = isEnabled,
                                       .refuse = refuse,
                                       .momentNeeds = momentNeeds,
                                       .ownPurposes = &AnalysisRun::discriminantGroup,
                                       .hasExpressions = true,
                                       .pictures = scorePictures};
