#include <cstdio>
#include <random>

#include "analysis/run/data_file.h"
#include "analysis/run/run_flow.h"
#include "batch/batch_frontend.h"
#include "bench/bench.h"

namespace {

enum class Values { normal, categories, grouped, events };

struct KindCase {
    const char* kind;
    int samples;
    int variables;
    Values values;
};

constexpr KindCase cases[] = {
    {"fundamental", 20000, 10, Values::normal},
    {"regression", 20000, 20, Values::normal},
    {"pca", 20000, 20, Values::normal},
    {"principal-factor", 20000, 20, Values::normal},
    {"discriminant", 20000, 20, Values::grouped},
    {"cluster", 2000, 20, Values::normal},
    {"association", 50000, 8, Values::categories},
    {"quant1", 20000, 8, Values::categories},
    {"quant3", 20000, 8, Values::categories},
    {"loglinear", 100000, 3, Values::categories},
    {"logistic", 100000, 7, Values::events},
    {"weibull", 100000, 7, Values::events},
    {"hazard", 100000, 7, Values::events},
};

// Column 0 of events is the state and column 1 the time; the last column of groups is the group.
double drawValue(const KindCase& one, int column, std::mt19937& random) {
    std::normal_distribution<double> normal;
    const double category = 1.0 + static_cast<double>(random() % 4U);
    switch (one.values) {
    case Values::categories:
        return category;
    case Values::grouped:
        return column + 1 == one.variables ? category : normal(random);
    case Values::events:
        if (column == 0) return static_cast<double>(random() % 2U);
        return column == 1 ? 0.01 + std::exponential_distribution<double>()(random) : normal(random);
    default:
        return normal(random);
    }
}

bool writeFile(const KindCase& one, const char* path) {
    std::FILE* file = std::fopen(path, "wb");
    if (file == nullptr) return false;
    std::mt19937 random(5);
    std::fputs("label", file);
    for (int j = 0; j < one.variables; ++j) std::fprintf(file, ",v%d", j + 1);
    for (int s = 0; s < one.samples; ++s) {
        std::fprintf(file, "\ns%d", s);
        for (int j = 0; j < one.variables; ++j) std::fprintf(file, ",%.6g", drawValue(one, j, random));
    }
    std::fputs("\n", file);
    return std::fclose(file) == 0;
}

void benchKind(const KindCase& one) {
    CommandLine line;
    line.kind = findKind(one.kind);
    AnalysisRun run;
    Settings settings;
    setDefaultSettings(settings);
    settings.expressGraph = 0;
    settings.logLinear.dataMode = 0;
    startOptions(run.options, settings);
    std::snprintf(run.data.path, sizeof run.data.path, "/tmp/ombrivantel-bench.csv");
    char group[16];
    std::snprintf(group, sizeof group, "v%d", one.variables);
    if (one.values == Values::grouped) line.values[0] = group;

    if (line.kind == nullptr || !writeFile(one, run.data.path)) return;
    if (allocateReport(run.report, TextBuffer::Growth::growing) != success) return;
    BatchFrontend frontend(line);
    const auto start = std::chrono::steady_clock::now();
    ErrorCode code = loadDataFile(frontend, run);
    const double loading = secondsSince(start);
    const auto runStart = std::chrono::steady_clock::now();
    if (code == success) {
        code = runAnalysisCommand(frontend, settings, run, firstAnalysisCommand + line.kind->number);
    }
    std::printf("%-17s %7d x %-3d reading %6.3f s  run %6.3f s  report %7.2f MB  code %d\n", one.kind,
                one.samples, one.variables, loading, secondsSince(runStart),
                static_cast<double>(run.report.lower.length()) / 1e6, code);
    std::remove(run.data.path);
}

} // namespace

void benchKinds() {
    for (const KindCase& one : cases) benchKind(one);
}
