#include "analysis/categorical/log_linear/log_linear.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "analysis/categorical/log_linear/log_linear_report.h"
#include "analysis/categorical/log_linear/u_term_errors.h"
#include "analysis/run/run_report.h"
#include "data/categories.h"
#include "numeric/sort.h"

namespace {

enum DataMode { categoryVariables, contingencyTable };

constexpr const char* dataWords[] = {"variable", "table"};
constexpr std::int32_t leastCategories = 2;
constexpr std::int32_t leastSamples = 6;

constexpr OptionField sizeField(const char* name, const char* help, std::size_t offset, int control,
                                int arrows) {
    return {.type = OptionType::wholeNumber,
            .name = name,
            .help = help,
            .offset = offset,
            .control = control,
            .arrows = arrows,
            .least = leastCategories,
            .most = mostCategories};
}

const OptionField fields[] = {
    {.type = OptionType::choice,
     .name = "data",
     .help = "three categorical variables, or the cells of a table in row order",
     .offset = offsetof(AnalysisOptions, settings.logLinear.dataMode),
     .control = 3401,
     .choices = dataWords},
    {.type = OptionType::listedChoice,
     .name = "model1",
     .help = "one of the two models to compare",
     .offset = offsetof(AnalysisOptions, settings.logLinear.firstModel),
     .control = 3403,
     .choices = logLinearModelTexts()},
    {.type = OptionType::listedChoice,
     .name = "model2",
     .help = "the other one; one of the two has all effects of the other",
     .offset = offsetof(AnalysisOptions, settings.logLinear.secondModel),
     .control = 3404,
     .choices = logLinearModelTexts()},
    sizeField("a", "categories of A in a table, 2 to 64; A varies slowest",
              offsetof(AnalysisOptions, settings.logLinear.categories[0]), 3405, 3408),
    sizeField("b", "categories of B", offsetof(AnalysisOptions, settings.logLinear.categories[1]), 3406,
              3409),
    sizeField("c", "categories of C; C varies fastest",
              offsetof(AnalysisOptions, settings.logLinear.categories[2]), 3407, 3410),
};

bool isTable(const LogLinearOptions& options) {
    return options.dataMode == contingencyTable;
}

bool isEnabled(const AnalysisOptions& options, const OptionField& field) {
    return field.type != OptionType::wholeNumber || isTable(options.settings.logLinear);
}

const char* refuse(const AnalysisOptions& options, std::uint32_t) {
    const LogLinearOptions& chosen = options.settings.logLinear;
    if (chosen.firstModel == chosen.secondModel) return "first model and second one must be different";
    if (!areNested(chosen.firstModel, chosen.secondModel)) {
        return "first model and second one must be implicated relation";
    }
    return nullptr;
}

struct LogLinearWork {
    LogLinearResult result;
    Block<double> table;     // cells: the counts, then logarithms
    Block<double> corrected; // cells: counts + 0.5, then variances
    Block<double> expected;  // cells, of the model being fitted
    Margins observedMargins, logarithms, variances;
    ModelFitter fitter;
    UTermErrors errors; // for textbook numerics

    // The models are selected before.
    [[nodiscard]] ErrorCode allocate(const Numerics& numerics, const ThreeWaySizes& sizes) {
        const Index cells = sizes.cells();
        const SelectedLogLinearModel* const selected = result.selected;
        const bool noInteraction = !hasClosedForm(selected[0].model) || !hasClosedForm(selected[1].model);
        const ErrorCode code = numerics.textbook ? errors.allocate(sizes, noInteraction) : success;
        return code | result.allocate(sizes) | table.allocate(cells) | corrected.allocate(cells) |
               expected.allocate(cells) | observedMargins.allocate(sizes) | logarithms.allocate(sizes) |
               variances.allocate(sizes) | fitter.allocate(sizes);
    }
};

ErrorCode checkTableSizes(const DataMatrix& data, const LogLinearOptions& options, ThreeWaySizes& sizes) {
    for (Index f = 0; f < 3; ++f) {
        const std::int32_t count = options.categories[f];
        if (count < leastCategories || count > mostCategories) return illegalCategoryNumber;
        sizes.levels[f] = count;
    }
    return sizes.cells() == data.count() ? success : illegalCategoryNumber;
}

ErrorCode checkVariables(const DataMatrix& data, ThreeWaySizes& sizes) {
    if (data.variables != 3) return illegalVariableNumber;
    if (data.samples < leastSamples) return tooFewSamples;
    CategoryLayout layout;
    const ErrorCode code = CategoricalCheck(data, 3, layout);
    if (code != success) return code;
    for (Index f = 0; f < 3; ++f) sizes.levels[f] = layout.categoryCount[f];
    return success;
}

ErrorCode checkData(const DataMatrix& data, const LogLinearOptions& options, ThreeWaySizes& sizes) {
    return isTable(options) ? checkTableSizes(data, options, sizes) : checkVariables(data, sizes);
}

void selectModels(const LogLinearOptions& options, LogLinearResult& result) {
    const Index first = std::clamp<Index>(options.firstModel, 0, logLinearModelCount - 1);
    const Index second = std::clamp<Index>(options.secondModel, 0, logLinearModelCount - 1);
    result.selected[0].model = std::max(first, second);
    result.selected[1].model = std::min(first, second);
}

void countSamples(const DataMatrix& data, LogLinearWork& work) {
    LogLinearResult& result = work.result;
    for (Index s = 0; s < data.samples; ++s) {
        Index cell = 0;
        for (Index f = 0; f < 3; ++f) cell = cell * result.sizes.levels[f] + categoryOf(data, s, f);
        ++result.observed[cell];
    }
    for (Index m = 0; m < result.observed.size(); ++m) work.corrected[m] = result.observed[m] + 0.5;
}

// Counts are cut to whole numbers, the corrected ones are not.
ErrorCode readCells(const DataMatrix& data, LogLinearWork& work) {
    for (Index m = 0; m < work.result.observed.size(); ++m) {
        const double value = data.values[static_cast<std::size_t>(m)];
        if (!(value >= 0.0 && value < 2147483648.0)) return notFinite;
        work.result.observed[m] = static_cast<std::int32_t>(value);
        work.corrected[m] = value + 0.5;
    }
    return success;
}

// The logarithms of the cells' counts, and their variances into work.corrected, where the counts may stand.
void takeLogarithms(const double* counts, LogLinearWork& work) {
    for (Index m = 0; m < work.table.size(); ++m) {
        work.table[m] = std::log(counts[m]);
        work.corrected[m] = 1.0 / counts[m];
    }
    work.logarithms.sum(work.table.data());
    work.variances.sum(work.corrected.data());
}

ErrorCode estimateSaturated(Screens& screens, LogLinearWork& work) {
    takeLogarithms(work.corrected.data(), work);
    ErrorCode code = success;
    for (Index term = 0; code == success && term < uTermCount; ++term) {
        estimateUTerm(work.logarithms, work.variances, uTerms[term], work.result.saturated);
        if (term == 2) code = screens.setProgress(30);
        if (term == 5) code = screens.setProgress(40);
    }
    return code == success ? screens.setProgress(55) : code;
}

// That of the numerics, with a limit, or the kept one without.
FittingGoal fittingGoal(const Numerics& numerics) {
    if (!numerics.textbook) return {};
    return {.change = numerics.iterationTolerance, .share = numerics.iterationTolerance, .mostCycles = 10000};
}

ErrorCode fitModels(Screens& screens, const FittingGoal& goal, LogLinearWork& work) {
    // The models that follow the first one have their tables at once.
    const Stage stage = {&screens, modelsBegun, modelsEstimated};
    LogLinearResult& result = work.result;
    for (Index model = 0; model < logLinearModelCount; ++model) {
        const ErrorCode code =
            work.fitter.fit(work.observedMargins, model, goal, work.expected.data(), stage);
        if (code != success) return code;
        result.freedom[model] = degreesOfFreedom(result.sizes, model);
        result.chiSquares[model] =
            likelihoodRatio(result.observed.data(), work.expected.data(), work.expected.size());
        if (!std::isfinite(result.chiSquares[model])) return notFinite;
        result.aic[model] = result.chiSquares[model] - 2.0 * static_cast<double>(result.freedom[model]);
        for (SelectedLogLinearModel& each : result.selected) {
            if (each.model != model) continue;
            std::copy(work.expected.begin(), work.expected.end(), each.expected.begin());
        }
    }
    return success;
}

ErrorCode estimateSelected(Screens& screens, const Numerics& numerics, LogLinearWork& work) {
    ErrorCode code = success;
    for (SelectedLogLinearModel& each : work.result.selected) {
        takeLogarithms(each.expected.data(), work);
        for (Index term = 0; term < uTermCount - 1; ++term) {
            estimateUTerm(work.logarithms, work.variances, uTerms[term], each.terms);
        }
        if (numerics.textbook) {
            code = work.errors.estimate(screens, work.observedMargins, each.model, each.expected.data(),
                                        each.terms);
        }
        if (code != success) break;
    }
    return code;
}

void rankModels(LogLinearResult& result) {
    double keys[logLinearModelCount];
    for (Index model = 0; model < logLinearModelCount; ++model) {
        keys[model] = result.aic[model];
        result.ranking[model] = static_cast<double>(model);
    }
    SortKeysWithCompanion(logLinearModelCount, keys, result.ranking);
}

ErrorCode readCounts(const DataMatrix& data, const LogLinearOptions& options, LogLinearWork& work) {
    if (isTable(options)) return readCells(data, work);
    countSamples(data, work);
    return success;
}

// notFinite for a table of nothing.
ErrorCode sumCounts(LogLinearWork& work) {
    std::copy(work.result.observed.begin(), work.result.observed.end(), work.table.begin());
    work.observedMargins.sum(work.table.data());
    return work.observedMargins.sums[0][0] == 0.0 ? notFinite : success;
}

ErrorCode compute(Screens& screens, const Numerics& numerics, const DataMatrix& data,
                  const LogLinearOptions& options, LogLinearWork& work) {
    ErrorCode code = screens.setProgress(5);
    if (code == success) code = readCounts(data, options, work);
    if (code == success) code = screens.setProgress(10);
    if (code == success) code = sumCounts(work);
    if (code == success) code = screens.setProgress(20);
    if (code == success) code = estimateSaturated(screens, work);
    if (code == success) code = screens.setProgress(modelsBegun);
    if (code == success) code = fitModels(screens, fittingGoal(numerics), work);
    if (code == success) code = estimateSelected(screens, numerics, work);
    if (code == success) code = screens.setProgress(modelsEstimated);
    if (code != success) return code;
    rankModels(work.result);
    return screens.setProgress(100);
}

// The classic fitting ends early, and the classic errors are those of a table as if it were observed.
void noteDeviations(AnalysisRun& run, const LogLinearResult& result) {
    if (!hasClosedForm(result.selected[1].model)) noteDeviation(run, "exp and res of LLM( 1)");
    noteDeviation(run, "std.e. of selected models");
}

void writeReport(AnalysisRun& run, const LogLinearWork& work) {
    constexpr const char* title = "three way log linear analysis statistics";
    const bool table = isTable(run.options.settings.logLinear);
    char option[48], status[96];
    std::snprintf(option, sizeof option, "-- due to %s data",
                  table ? "contingency table" : "categorical variable");
    std::snprintf(status, sizeof status, "%s %s", title, option);
    openReport(run, {.title = title, .option = option, .status = status});
    writeLogLinearTables(run.report, work.result);
}

ErrorCode runLogLinearAnalysis(Screens& screens, AnalysisRun& run) {
    const DataMatrix& data = run.data.working;
    const LogLinearOptions& options = run.options.settings.logLinear;
    ThreeWaySizes sizes = {};
    ErrorCode code = checkData(data, options, sizes);
    if (code != success) return code;
    LogLinearWork work;
    selectModels(options, work.result);
    code = work.allocate(*run.numerics, sizes);
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) code = compute(screens, *run.numerics, data, options, work);
    screens.hideProgress();
    if (code != success) return code;

    noteDeviations(run, work.result);
    writeReport(run, work);
    closeReport(screens, run.report);
    return success;
}

} // namespace

const Analysis logLinearAnalysis = {
    .fields = fields,
    .driver = runLogLinearAnalysis,
    .isEnabled = isEnabled,
    .refuse = refuse,
    .isTable = [](const AnalysisOptions& options) { return isTable(options.settings.logLinear); }};
