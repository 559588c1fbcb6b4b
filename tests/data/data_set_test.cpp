#include "tests/support/cases.h"
#include "tests/support/csv_text.h"

namespace {

// "name ..: label value ..; ..."
std::string describe(const DataMatrix& matrix) {
    std::ostringstream text;
    for (int v = 0; v < matrix.variables; ++v) text << (v > 0 ? " " : "") << matrix.name(v);
    text << ":";
    const double* value = matrix.values.data();
    for (int s = 0; s < matrix.samples; ++s) {
        text << " " << matrix.label(s);
        for (int v = 0; v < matrix.variables; ++v) text << " " << *value++;
        text << ";";
    }
    return text.str();
}

} // namespace

TEST(DataSet, ExcludesAndReordersColumns) {
    for (const Case& test : readCases("data/data_sets.tsv")) {
        SCOPED_TRACE(test[0] + " without " + test[1]);
        DataSet data;
        ASSERT_EQ(loadDataSet(test[0], data), success);
        EXPECT_STREQ(data.cells.cell(0, 0), "(none)");
        std::istringstream columns(test[1]);
        for (std::int32_t& slot : data.exclusion.slots) columns >> slot;
        buildDataSet(data);
        copyLoadedToWorking(data);
        EXPECT_EQ(describe(data.working), test[3]);

        Index v = 0;
        for (const char flag : test[2]) data.selectionFlags[++v] = flag - '0';
        ASSERT_EQ(reorderWorkingBySelection(data), success);
        EXPECT_EQ(describe(data.working), test[4]);
        std::ostringstream counts, bad;
        counts << data.exclusion.count << " " << data.otherCount << " " << data.selectedCount;
        EXPECT_EQ(counts.str(), test[5]);
        const BadCells cells = findBadCells(data, Doubt::noNumbers);
        bad << cells.count << " " << cells.row << (cells.count > 0 ? " " : "") << cells.variable;
        EXPECT_EQ(bad.str(), test[6]);

        data.exclusion = {};
        buildDataSet(data);
        EXPECT_EQ(data.loaded.variables, data.cells.cols - 1);
    }
}
