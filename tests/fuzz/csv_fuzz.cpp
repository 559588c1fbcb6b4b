#include <cstdio>
#include <cstring>

#include "data/csv_reader.h"
#include "report/doubt_messages.h"
#include "report/file_summary.h"
#include "tests/fuzz/require.h"
#include "tests/support/recording_frontend.h"

// Any bytes are a data file, or are refused; what was read can be excluded, reordered and shown.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static Report report;
    static const ErrorCode allocated = allocateReport(report, TextBuffer::Growth::fixed);
    require(allocated == success);
    RecordingFrontend frontend;
    DataSet data;
    std::FILE* file = fmemopen(const_cast<std::uint8_t*>(bytes), size, "r");
    require(file != nullptr);
    const FileCode code = readCsvStream(file, data.cells, data.notes);
    std::fclose(file);
    require(code == FileCode::done || code == FileCode::notOpened || code == FileCode::malformed);
    require((data.cells.texts.size() > 0) == (code == FileCode::done));
    if (code != FileCode::done) return 0;

    require(allocateDataSet(data) == success);
    for (const std::int32_t excluded : {0, 2}) {
        data.exclusion.slots[3] = excluded;
        data.policy = excluded == 0 ? MissingPolicy::zero : MissingPolicy::omit;
        buildDataSet(data);
        copyLoadedToWorking(data);
        require(reorderWorkingBySelection(data) == success);
        require(data.selectedCount + data.otherCount == data.loaded.variables);
        require(findBadCells(data, Doubt::noNumbers).count <= data.loaded.count());
        require(data.loaded.samples + data.leftOut == data.cells.rows - 1);
        writeDoubts(report.lower, data, windowDoubts);
        writeFileSummary(frontend, report, data, 11, 15);
        require(report.upper.length() == std::strlen(report.upper.text()));
    }
    return 0;
}
