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
        const int code = std::stoi(test[1]);
        const bool analysis = test[0] == "analysis";
        if (analysis) {
            EXPECT_EQ(reportAnalysisCode(frontend, report, code, 7), code);
        } else if (test[0] == "file") {
            EXPECT_EQ(reportFileCode(frontend, report, FileCode{code}), FileCode{code});
        } else {
            EXPECT_EQ(reportDdeCode(frontend, report, LinkCode{code}), LinkCode{code});
        }
        EXPECT_EQ((analysis ? report.lower : report.upper).text(), test[2]);
        EXPECT_STREQ((analysis ? report.upper : report.lower).text(), "-");
        EXPECT_EQ(report.status.text(), test[3]);
        EXPECT_EQ(frontend.log, test[4]);
    }
}
