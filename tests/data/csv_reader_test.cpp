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

TEST(CsvReader, OpensNoFolderAndNothingThatIsMissing) {
    CellTable table;
    EXPECT_EQ(readCsv(OMBRIVANTEL_SOURCE_DIR "/samples", table), FileCode::notOpened);
    EXPECT_EQ(readCsv(OMBRIVANTEL_SOURCE_DIR "/samples/missing.csv", table), FileCode::notOpened);
    EXPECT_EQ(readCsv(OMBRIVANTEL_SOURCE_DIR "/samples/iris.csv", table), FileCode::done);
}
