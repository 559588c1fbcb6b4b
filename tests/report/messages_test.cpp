#include "report/messages.h"
#include "tests/support/cases.h"
#include "tests/support/recording_frontend.h"

TEST(Messages, ShowTheTextsOfEachCode) {
    for (const Case& test : readCases("report/messages.tsv")) {
        SCOPED_TRACE(test[0] + " " + test[1]);
        RecordingFrontend frontend;
        Report report;
        ASSERT_EQ(allocateReport(report, TextBuffer::Growth::fixed), success);
        for (TextBuffer* buffer : {&report.upper, &report.lower, &report.status}) buffer->append("-");
        const ErrorCode code = std::stoi(test[1]);
        const bool analysis = test[0] == "analysis";
        const ErrorCode given = analysis            ? reportAnalysisCode(frontend, report, code, 7)
                                : test[0] == "file" ? reportFileCode(frontend, report, code)
                                                    : reportDdeCode(frontend, report, code);
        EXPECT_EQ(given, code);
        EXPECT_EQ((analysis ? report.lower : report.upper).text(), test[2]);
        EXPECT_STREQ((analysis ? report.upper : report.lower).text(), "-");
        EXPECT_EQ(report.status.text(), test[3]);
        EXPECT_EQ(frontend.log, test[4]);
    }
}
