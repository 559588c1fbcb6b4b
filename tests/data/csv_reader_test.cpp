#include <algorithm>
#include <cstring>
#include <filesystem>

#include "tests/support/cases.h"
#include "tests/support/csv_text.h"

TEST(CsvReader, ReadsAnyText) {
    for (const Case& test : readCases("data/csv.tsv")) {
        SCOPED_TRACE(test[0].substr(0, 200));
        CellTable table;
        EXPECT_EQ(readText("before,x\na,1\n", table), FileCode::done);
        EXPECT_EQ(std::to_string(static_cast<int>(readText(test[0], table))), test[1]);
        std::string cells;
        for (int row = 0; row < table.rows; ++row) {
            for (int col = 0; col < table.cols; ++col) {
                cells.append(col > 0 ? "|" : row > 0 ? "/" : "").append(table.cell(row, col));
            }
        }
        EXPECT_EQ(cells, test[2]);
    }
}

namespace {

// A text whose reading fails once so many bytes have been read.
struct FailingText {
    std::string text;
    long long bytesLeft;
    std::size_t at = 0;
};

ssize_t readSome(void* cookie, char* bytes, std::size_t size) {
    auto& source = *static_cast<FailingText*>(cookie);
    if (source.bytesLeft <= 0) return -1;
    const std::size_t count = std::min({size, source.text.size() - source.at, std::size_t{1000}});
    std::memcpy(bytes, source.text.data() + source.at, count);
    source.at += count;
    source.bytesLeft -= static_cast<long long>(count);
    return static_cast<ssize_t>(count);
}

int rewindText(void* cookie, off64_t* offset, int) {
    *offset = 0;
    static_cast<FailingText*>(cookie)->at = 0;
    return 0;
}

} // namespace

TEST(CsvReader, AReadThatFailsIsNotTheEndOfTheFile) {
    std::string text = "id,x\n";
    while (text.size() < 20000) text += "s,1\n";
    const auto size = static_cast<long long>(text.size());
    // In either of its two passes, and not at all.
    for (const long long bytes : {1LL, size / 2, size - 1, size + 1, size + size / 2, 3 * size}) {
        FailingText source = {text, bytes};
        std::FILE* file = fopencookie(&source, "r", {readSome, nullptr, rewindText, nullptr});
        CellTable table;
        ReadingNotes notes;
        const FileCode code = readCsvStream(file, table, notes);
        std::fclose(file);
        EXPECT_EQ(code, bytes > 2 * size ? FileCode::done : FileCode::notOpened) << bytes;
        EXPECT_EQ(table.texts.size() > 0, code == FileCode::done);
    }
}

TEST(CsvReader, LeavesNoFileOpen) {
    CellTable table;
    ReadingNotes notes;
    const auto openFiles = [] {
        using Folder = std::filesystem::directory_iterator;
        return std::distance(Folder("/proc/self/fd"), Folder());
    };
    const auto before = openFiles();
    EXPECT_EQ(readCsv(OMBRIVANTEL_SOURCE_DIR "/samples", table, notes), FileCode::notOpened);
    EXPECT_EQ(readCsv(OMBRIVANTEL_SOURCE_DIR "/samples/missing.csv", table, notes), FileCode::notOpened);
    EXPECT_EQ(readCsv(OMBRIVANTEL_SOURCE_DIR "/tests/reference/cases.tsv", table, notes),
              FileCode::malformed);
    EXPECT_EQ(readCsv(OMBRIVANTEL_SOURCE_DIR "/samples/iris.csv", table, notes), FileCode::done);
    EXPECT_EQ(openFiles(), before);
}
