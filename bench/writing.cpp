#include <charconv>
#include <cstdio>
#include <cstring>
#include <random>

#include "bench/bench.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

// The rows of WriteDataTable with every number by std::to_chars, into memory that has room for all of them.
Index writePlainly(const TableFormats& formats, const DataMatrix& data, Block<char>& text) {
    char* end = text.data();
    for (Index s = 0; s < data.samples; ++s) {
        end += std::sprintf(end, "%3td,%*s", s + 1, formats.labelWidth, data.label(s));
        for (Index v = 0; v < data.variables; ++v) {
            char digits[numberSize];
            const char* const last =
                std::to_chars(digits, digits + sizeof digits, data.values[s * data.variables + v],
                              std::chars_format::fixed, formats.decimals[3])
                    .ptr;
            *end++ = ',';
            for (Index blanks = formats.width - (last - digits); blanks > 0; --blanks) *end++ = ' ';
            end = std::copy(static_cast<const char*>(digits), last, end);
        }
        *end++ = '\n';
    }
    return end - text.data();
}

// Whether a text ends with so many characters.
bool endsWith(const TextBuffer& text, const char* expected, Index count) {
    Index skipped = static_cast<Index>(text.length()) - count;
    for (std::string_view piece : text) {
        const Index before = std::min(std::max<Index>(skipped, 0), std::ssize(piece));
        skipped -= before;
        piece.remove_prefix(static_cast<std::size_t>(before));
        if (std::memcmp(piece.data(), expected, piece.size()) != 0) return false;
        expected += piece.size();
    }
    return true;
}

} // namespace

void benchWriting(int samples, int variables) {
    DataSet data;
    DataMatrix& working = data.working;
    working.samples = samples;
    working.variables = variables;
    TextList names, labels;
    Report report;
    if ((data.loadedValues.allocate(working.count()) | names.allocate(variables) | labels.allocate(samples) |
         allocateReport(report, TextBuffer::Growth::growing)) != success)
        return;
    std::mt19937 random(3);
    std::normal_distribution<double> normal(0.0, 100.0);
    for (double& value : data.loadedValues) value = normal(random);
    for (int v = 0; v < variables; ++v) names.setFormat(v, "v%d", v);
    for (int s = 0; s < samples; ++s) labels.setFormat(s, "s%d", s);
    working.values = {data.loadedValues.data(), static_cast<std::size_t>(data.loadedValues.size())};
    working.names = names;
    working.labels = labels;

    const auto start = std::chrono::steady_clock::now();
    SetFormatsFromData(report, data, 10, 15);
    WriteDataTable(report, data, working.values.data());
    const double fast = secondsSince(start);
    const double megabytes = static_cast<double>(report.lower.length()) / 1e6;

    Block<char> text;
    if (text.allocate(static_cast<Index>(report.lower.length()) + numberSize) != success) return;
    const auto plainStart = std::chrono::steady_clock::now();
    const Index length = writePlainly(report.formats, working, text);
    const double plain = secondsSince(plainStart);
    std::printf("writing %d x %d: %.3f s, %.0f MB/s; by to_chars %.3f s, %.1f times as long; %s\n", samples,
                variables, fast, megabytes / fast, plain, plain / fast,
                endsWith(report.lower, text.data(), length) ? "the same" : "DIFFERENT");
}
