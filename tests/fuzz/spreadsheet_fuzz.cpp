#include <vector>

#include "report/doubt_messages.h"
#include "tests/fuzz/choices.h"
#include "tests/fuzz/require.h"
#include "tests/support/recording_frontend.h"

namespace {

// A sheet written like a csv file. Somebody changes it to the rest of the sheet while it is read, and at last
// the conversation is lost.
struct Sheet : Workbook {
    std::vector<std::vector<std::string>> rows;
    std::string lineEnd;
    int asked = 0, change = 0, loss = 0;
    std::size_t changedFrom = 0;

    LinkCode connectWorkbook(const char*) override { return LinkCode::done; }
    LinkCode requestCell(const char* item, CellReply& reply) override {
        std::size_t row = 0, col = 0;
        require(std::sscanf(item, "R%zuC%zu", &row, &col) == 2 && row > 0 && col > 0);
        if (++asked > loss) return loss % 2 == 0 ? LinkCode::notInitiated : LinkCode::noData;
        if (asked > change) row += changedFrom;
        const bool isThere = row <= rows.size() && col <= rows[row - 1].size();
        const std::string answer = (isThere ? rows[row - 1][col - 1] : "") + lineEnd;
        putReply(reply, answer.data(), answer.size());
        return LinkCode::done;
    }
    LinkCode disconnectWorkbook() override { return LinkCode::done; }
};

} // namespace

// Whatever a workbook answers is a table, or is refused and nothing is loaded.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static constexpr const char* ends[] = {"\r\n", "", "\n", "\r"};
    Choices choices = {bytes, size};
    Sheet sheet;
    sheet.lineEnd = ends[choices.below(4)];
    sheet.change = 8 * choices.next();
    sheet.changedFrom = choices.next();
    const int loss = choices.next();
    sheet.loss = loss < 128 ? 20000 : loss - 128;
    while (choices.left > 0) {
        auto& row = sheet.rows.emplace_back(1);
        for (const char each : choices.line())
            each == ',' ? void(row.emplace_back()) : row.back().push_back(each);
    }
    RecordingFrontend frontend;
    frontend.book = &sheet;
    AnalysisRun run;
    Settings settings;
    setDefaultSettings(settings);
    startOptions(run.options, settings);
    run.options.settings.fileType = 1;
    require(allocateReport(run.report, TextBuffer::Growth::growing) == success);
    const bool isLoaded = loadDataFile(frontend, run).isLoaded();
    const CellTable& cells = run.data.cells;
    require(isLoaded == (cells.rows > 0) && (frontend.status.empty() || !isLoaded));
    if (!isLoaded) return 0;
    for (std::int32_t k = 0; k < cells.rows * cells.cols; ++k) {
        const std::string_view text = cells.cell(0, k);
        require(text.size() <= 62 && text.find_first_of("\r\n") == std::string_view::npos);
    }
    showLoadedData(frontend, run);
    writeDoubts(run.report.lower, run.data, windowDoubts);
    require(!frontend.upper.empty() && !run.report.upper.ranOutOfMemory());
    return 0;
}
