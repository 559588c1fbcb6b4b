#include "data/spreadsheet.h"
#include "tests/support/cases.h"
#include "tests/support/failing_allocations.h"
#include "tests/support/recording_frontend.h"
#include "tests/support/sheet_cell.h"

namespace {

struct OpenSheet : testing::Test, Workbook {
    std::string sheet, everywhere, lineEnd = "\r\n";
    LinkCode connecting = LinkCode::done, failure = LinkCode::done, ending = LinkCode::done;
    int failing = 0, asked = 0; // the request that fails, from 1
    RecordingFrontend frontend;
    AnalysisRun run;

    void SetUp() override {
        startRun(run);
        run.options.settings.fileType = 1;
        frontend.book = this;
    }
    LoadResult load(const std::string& text) {
        sheet = text;
        asked = 0;
        run.report.upper.append("of another file");
        frontend.takeLog();
        return loadDataFile(frontend, run);
    }
    std::string cells() const {
        std::string text;
        const CellTable& table = run.data.cells;
        for (int k = 0; k < table.rows * table.cols; ++k)
            text += (k == 0 ? "" : k % table.cols == 0 ? "\n" : ",") + std::string(table.cell(0, k));
        return text;
    }
    LinkCode connectWorkbook(const char*) override { return connecting; }
    LinkCode requestCell(const char* item, CellReply& reply) override {
        int row = 0, col = 0;
        EXPECT_EQ(std::sscanf(item, "R%dC%d", &row, &col), 2);
        const std::string bytes = (everywhere.empty() ? sheetCell(sheet, row, col) : everywhere) + lineEnd;
        putReply(reply, bytes.data(), bytes.size());
        return ++asked == failing ? failure : LinkCode::done;
    }
    LinkCode disconnectWorkbook() override { return ending; }
};

const std::string told = "unloaded status progress hidden upper lower status";

} // namespace

TEST_F(OpenSheet, GivesItsTable) {
    for (const Case& test : readCases("data/sheets.tsv")) {
        lineEnd = test[1];
        EXPECT_EQ(std::to_string(static_cast<int>(load(test[0]).link)), test[2]) << test[0];
        EXPECT_EQ(cells(), test[3]) << test[0];
        EXPECT_EQ(run.report.upper.text(), std::string()) << test[0];
    }
}

TEST_F(OpenSheet, LeavesNothingWhenItFails) {
    for (const LinkCode each : {LinkCode::notInitiated, LinkCode::noData}) {
        failure = each;
        for (failing = 1; load(";\nid,x\n;\na,1\nb,2").link == each && asked == failing; ++failing) {
            EXPECT_EQ(frontend.log + frontend.status,
                      told + (failure == LinkCode::noData ? "error : failed to get data of excel file."
                                                          : "error : not initiate dde."));
            EXPECT_EQ(cells(), "");
        }
        EXPECT_EQ(failing, 21); // after 1 + 6 + 4 + 9 requests
        EXPECT_EQ(frontend.percentages.back(), 100);
    }
    const std::string text = "id,x\na,1";
    const std::string boot = "please boot the excel file or select another file.\n";
    connecting = LinkCode::notLinked;
    EXPECT_EQ(load(text).link, LinkCode::notLinked);
    EXPECT_EQ(frontend.log + frontend.upper, told + "\n\tfailed to link server.\n" + boot);
    connecting = LinkCode::done;
    ending = LinkCode::topicKept;
    EXPECT_EQ(load(text).link, LinkCode::topicKept);
    EXPECT_EQ(frontend.log + frontend.upper, told + "\n\tfailed to terminate dde connection.\n");
    ending = LinkCode::done;
    EXPECT_GT(failEachAllocation([&] { return load(text).isLoaded() ? success : outOfMemory; }), 1);
    EXPECT_EQ(frontend.upper, "\n\tfailed to allocate memory for data.\n");
    EXPECT_TRUE(load(text).isLoaded());
    run.options.settings.linkMethod = 1;
    EXPECT_EQ(load(text).file, FileCode::notOpened);
    EXPECT_EQ(frontend.log + cells(), "unloaded upper status");
}

TEST_F(OpenSheet, IsCutAtTheSizeOfASpreadsheet) {
    SheetSize size;
    everywhere = "1";
    EXPECT_EQ(measureSheet(*this, size), LinkCode::done);
    EXPECT_EQ(size.rows, 1'048'576);
    EXPECT_EQ(size.cols, 16'384);
    everywhere = ";";
    EXPECT_EQ(measureSheet(*this, size), LinkCode::emptySheet);
    TextList none;
    EXPECT_EQ(fetchSheet(*this, {1, 1}, none, nullptr, nullptr), LinkCode::noData);
}
