#include "analysis/categorical/log_linear/log_linear.h"

#include <algorithm>
#include <cmath>

#include "analysis/categorical/log_linear/log_linear_report.h"
#include "analysis/run/run_report.h"
#include "data/categories.h"
#include "numeric/sort.h"
#include "report/table_formats.h"

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

bool isEnabled(const AnalysisOptions& options, const OptionField& field) {
    return field.type != OptionType::wholeNumber || options.settings.logLinear.dataMode == contingencyTable;
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

    ErrorCode allocate(const ThreeWaySizes& sizes) {
        const Index cells = sizes.cells();
        return result.allocate(sizes) | table.allocate(cells) | corrected.allocate(cells) |
               expected.allocate(cells) | observedMargins.allocate(sizes) | logarithms.allocate(sizes) |
               variances.allocate(sizes) | fitter.allocate(sizes);
    }
};

ErrorCode checkTableSizes(const DataMatrix& data, const LogLinearOptions& options, ThreeWaySizes& sizes) {
    for (int f = 0; f < 3; ++f) {
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

void countSamples(const DataMatrix& data, LogLinearWork& work) {
    for (std::int32_t s = 0; s < data.samples; ++s) {
        Index cell = 0;
        for (std::int32_t f = 0; f < 3; ++f) {
            cell = cell * work.result.sizes.levels[f] + (categoryOf(data, s, f));
        }
        ++work.result.observed[cell];
    }
    for (Index m = 0; m < work.result.observed.size(); ++m) work.corrected[m] = work.result.observed[m] + 0.5;
}

// Counts are cut to whole numbers, the corrected ones are not.
ErrorCode readCells(const DataMatrix& data, LogLinearWork& work) {
    for (Index m = 0; m < work.result.observed.size(); ++m) {
        const double value = data.values[m];
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

void estimateSaturated(Screens& screens, LogLinearWork& work) {
    takeLogarithms(work.corrected.data(), work);
    for (int term = 0; term < uTermCount; ++term) {
        estimateUTerm(work.logarithms, work.variances, uTerms[term], work.result.saturated);
        if (term == 2) screens.setProgress(30);
        if (term == 5) screens.setProgress(40);
    }
    screens.setProgress(55);
}

ErrorCode fitModels(LogLinearWork& work) {
    for (int model = 0; model < logLinearModelCount; ++model) {
        work.fitter.fit(work.observedMargins, model, work.expected.data());
        work.result.freedom[model] = degreesOfFreedom(work.result.sizes, model);
        work.result.chiSquares[model] =
            likelihoodRatio(work.result.observed.data(), work.expected.data(), work.expected.size());
        if (!std::isfinite(work.result.chiSquares[model])) return notFinite;
        work.result.aic[model] = work.result.chiSquares[model] - 2.0 * work.result.freedom[model];
        for (SelectedModel& each : work.result.selected) {
            if (each.model != model) continue;
            std::copy(work.expected.begin(), work.expected.end(), each.expected.begin());
        }
    }
    return success;
}

void estimateSelected(LogLinearWork& work) {
    for (SelectedModel& each : work.result.selected) {
        takeLogarithms(each.expected.data(), work);
        for (int term = 0; term < uTermCount - 1; ++term) {
            estimateUTerm(work.logarithms, work.variances, uTerms[term], each.terms);
        }
    }
}

void rankModels(LogLinearWork& work) {
    double keys[logLinearModelCount];
    for (int model = 0; model < logLinearModelCount; ++model) {
        keys[model] = work.result.aic[model];
        work.result.ranking[model] = model;
    }
    SortKeysWithCompanion(logLinearModelCount, keys, work.result.ranking);
}

ErrorCode compute(Screens& screens, const DataMatrix& data, DataMode mode, LogLinearWork& work) {
    screens.setProgress(5);
    if (mode == categoryVariables) {
        countSamples(data, work);
    } else if (readCells(data, work) != success) {
        return notFinite;
    }
    screens.setProgress(10);
    std::copy(work.result.observed.begin(), work.result.observed.end(), work.table.begin());
    work.observedMargins.sum(work.table.data());
    if (work.observedMargins.sums[0][0] == 0.0) return notFinite;
    screens.setProgress(20);
    estimateSaturated(screens, work);
    screens.setProgress(70);
    const ErrorCode code = fitModels(work);
    if (code != success) return code;
    estimateSelected(work);
    screens.setProgress(85);
    rankModels(work);
    screens.setProgress(100);
    return success;
}

void writeReport(Screens& screens, AnalysisRun& run, DataMode mode, const LogLinearResult& result) {
    const Settings& settings = run.options.settings;
    const char* source = mode == categoryVariables ? "categorical variable" : "contingency table";
    Report& report = run.report;
    report.lower.clear();
    report.lower.appendFormat("\nthree way log linear analysis statistics\n-- due to %s data\n\n", source);
    report.status.clear();
    report.status.appendFormat("status : three way log linear analysis statistics -- due to %s data", source);
    SetFormatsFromData(report, run.data, settings.variableStringLength, settings.sampleStringLength);

    writeLogLinearTables(report, result);
    closeReport(screens, report);
}

ErrorCode run(Screens& screens, AnalysisRun& run) {
    const DataMatrix& data = run.data.working;
    const LogLinearOptions& options = run.options.settings.logLinear;
    const DataMode mode = options.dataMode == contingencyTable ? contingencyTable : categoryVariables;
    ThreeWaySizes sizes = {};
    ErrorCode code =
        mode == contingencyTable ? checkTableSizes(data, options, sizes) : checkVariables(data, sizes);
    if (code != success) return code;
    LogLinearWork work;
    code = work.allocate(sizes);
    if (code != success) return code;
    const int first = std::clamp(options.firstModel, 0, logLinearModelCount - 1);
    const int second = std::clamp(options.secondModel, 0, logLinearModelCount - 1);
    work.result.selected[0].model = std::max(first, second);
    work.result.selected[1].model = std::min(first, second);

    startProgress(screens, run.report);
    code = compute(screens, data, mode, work);
    screens.hideProgress();
    if (code != success) return code;
    writeReport(screens, run, mode, work.result);
    return success;
}

} // namespace

const Analysis logLinearAnalysis = {
    .fields = fields, .driver = run, .isEnabled = isEnabled, .refuse = refuse};
