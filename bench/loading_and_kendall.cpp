#include <cstdio>
#include <random>

#include "analysis/basic/descriptive/kendall_counts.h"
#include "bench/bench.h"
#include "data/csv_reader.h"

namespace {

// The least that any reading takes: the bytes with nothing done.
double readBytes(std::FILE* file) {
    static char bytes[1 << 18];
    const auto start = std::chrono::steady_clock::now();
    while (std::fread(bytes, 1, sizeof bytes, file) == sizeof bytes) {
    }
    std::rewind(file);
    return secondsSince(start);
}

} // namespace

void benchLoading() {
    constexpr int samples = 200000, variables = 20;
    std::FILE* file = std::tmpfile();
    if (file == nullptr) return;
    std::mt19937 random(1);
    std::normal_distribution<double> normal;
    std::fputs("label", file);
    for (int j = 0; j < variables; ++j) std::fprintf(file, ",v%d", j);
    std::fputs("\n", file);
    for (int s = 0; s < samples; ++s) {
        std::fprintf(file, "s%d", s);
        for (int j = 0; j < variables; ++j) std::fprintf(file, ",%.12f", normal(random));
        std::fputs("\n", file);
    }
    const double megabytes = static_cast<double>(std::ftell(file)) / 1e6;
    if (std::fflush(file) != 0 || std::fseek(file, 0, SEEK_SET) != 0) {
        std::fclose(file);
        return;
    }

    const double floor = readBytes(file);
    const double before = peakMegabytes();
    DataSet data;
    const auto start = std::chrono::steady_clock::now();
    bool loaded = readCsvStream(file, data.cells, data.notes) == FileCode::done;
    const double reading = secondsSince(start);
    const double cells = peakMegabytes() - before;
    loaded = loaded && allocateDataSet(data) == success;
    if (loaded) {
        buildDataSet(data);
        copyLoadedToWorking(data);
    }
    const double all = secondsSince(start);
    std::fclose(file);
    std::printf("loading %d x %d, %.1f MB of text%s\n", samples, variables, megabytes,
                loaded ? "" : " FAILED");
    std::printf("  bytes alone    %6.3f s %8.0f MB/s\n", floor, megabytes / floor);
    std::printf("  cells          %6.3f s %8.0f MB/s, %.0f MB of memory, %.2f times the text\n", reading,
                megabytes / reading, cells, cells * 1.048576 / megabytes);
    std::printf("  whole data set %6.3f s %8.0f MB/s, peak %.0f MB\n", all, megabytes / all, peakMegabytes());
}

void benchKendall() {
    DataMatrix data;
    data.samples = 20000;
    data.variables = 10;
    Block<double> values;
    if (values.allocate(data.count()) != success) return;
    data.values = {values.data(), static_cast<std::size_t>(values.size())};
    std::mt19937 random(2);
    for (Index k = 0; k < values.size(); ++k) {
        values[k] = static_cast<double>(random() % (k % 2 == 0 ? 1000000U : 100U));
    }
    const auto start = std::chrono::steady_clock::now();
    RankedColumns ranked;
    Block<std::uint32_t> scratch;
    Block<KendallCounts> counts;
    if ((ranked.allocate(data) | scratch.allocate(60000) | counts.allocate(45)) != success) return;
    for (Index j = 0; j < 10; ++j) ranked.rank(data, j);
    Index pair = 0;
    for (std::int32_t i = 0; i < 10; ++i) {
        for (std::int32_t j = i + 1; j < 10; ++j) {
            counts[pair++] = countPairs(data, i, j, ranked.columns[i], ranked.columns[j], scratch.data());
        }
    }
    const double fast = secondsSince(start);
    const auto plainStart = std::chrono::steady_clock::now();
    int different = 0;
    pair = 0;
    for (std::int32_t i = 0; i < 10; ++i) {
        for (std::int32_t j = i + 1; j < 10; ++j, ++pair) {
            const KendallCounts plain = countAllPairs(data, i, j);
            different += plain.s != counts[pair].s || plain.first != counts[pair].first ||
                         plain.second != counts[pair].second;
        }
    }
    const double plain = secondsSince(plainStart);
    std::printf("Kendall, 20000 x 10: %.3f s, all pairs %.1f s, %.0f times as long; %d of 45 pairs differ\n",
                fast, plain, plain / fast, different);
}
