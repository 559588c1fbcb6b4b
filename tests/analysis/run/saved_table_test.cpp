#include "analysis/run/saved_table.h"

#include "data/number.h"
#include "tests/support/analysis_session.h"
#include "tests/support/csv_text.h"

// Labels like comments, cells that begin with a tab or are empty, names that are taken and numbers of any
// size.
constexpr const char* odd = "x,prediction, y ,prediction.2,excluded\n ;c,1,2,1e-310,1\n\"//d\",4,\"-7.5 "
                            "\",3,1\n,2,5,1,1\n\"\tz\",NA,1,\"\t9\",1\nq,3,4,-1e9,NA\n"
                            "r,9,8,7,1\ns,7,1,2,1\nt,0.1,6,5,1\nlast,2,,2,1\n";

TEST(SavedTable, IsReadAgainAsItIs) {
    AnalysisSession session(odd);
    AnalysisRun& run = session.run;
    run.data.policy = MissingPolicy::omit;
    run.data.exclusion.slots[0] = 4;
    buildDataSet(run.data);
    ASSERT_EQ(session.analyse(711, [](AnalysisOptions& options) { options.settings.regression.method = 0; }),
              success);
    TextBuffer text;
    EXPECT_GT(failEachAllocation([&] { return writeSavedTable(run, text); }), 0);
    CellTable again;
    ASSERT_EQ(readText(text.text(), again), FileCode::done);
    const CellTable& cells = run.data.cells;
    ASSERT_EQ(again.rows, cells.rows);
    ASSERT_EQ(again.cols, 4 + 5);
    for (std::int32_t row = 0; row < cells.rows; ++row)
        for (std::int32_t col = row == 0 ? 1 : 0; col < 4; ++col)
            EXPECT_STREQ(again.cell(row, col), cells.cell(row, col)) << row << ' ' << col;
    EXPECT_STREQ(again.cell(0, 4), "prediction.3");
    EXPECT_STREQ(again.cell(0, 8), "supremum");
    Index sample = 0;
    for (std::int32_t row = 1; row < cells.rows; ++row) {
        const bool isOmitted = row == 4 || row == 9;
        for (std::int32_t k = 0; k < 5; ++k) {
            const std::string cell = again.cell(row, 4 + k);
            if (isOmitted) {
                EXPECT_EQ(cell, "NA") << row;
            } else {
                EXPECT_EQ(parseNumber(cell.c_str()), run.columns.values(sample, k)) << row;
            }
        }
        sample += isOmitted ? 0 : 1;
    }
}
