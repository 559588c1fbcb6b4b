#include <cmath>

#include "report/file_summary.h"
#include "report/table_formats.h"
#include "report/tables.h"
#include "tests/support/cases.h"
#include "tests/support/csv_text.h"
#include "tests/support/recording_frontend.h"

TEST(TableFormats, FollowFromTheLargestMagnitude) {
    for (const Case& test : readCases("report/formats.tsv")) {
        SCOPED_TRACE(test[0]);
        const double largest = std::strtod(test[0].c_str(), nullptr);
        const TableFormats formats = formatsForMagnitude(largest, std::stoi(test[1]), std::stoi(test[2]));
        EXPECT_EQ(std::to_string(formats.width), test[3]);
        EXPECT_EQ(std::to_string(formats.labelWidth), test[4]);
        std::istringstream decimals(test[5]);
        for (const int count : formats.decimals) EXPECT_EQ(count, *std::istream_iterator<int>(decimals));
    }
    const double values[] = {NAN, 2.0, -INFINITY, -3.0, 1.0, INFINITY};
    EXPECT_EQ(largestMagnitude(values, 6), 3.0);
    EXPECT_EQ(largestMagnitude(values, 1), 0.0);
}

TEST(Tables, LookAsExpected) {
    DataSet data;
    ASSERT_EQ(loadDataSet("id,alpha,b,much_too_long\ns1,1.5,-2,0.25\nlong_label,9.25,0,0\n", data), success);
    double* const values = data.loadedValues.data(); // which are the working ones
    values[4] = NAN, values[5] = -INFINITY;
    data.otherCount = 2;
    const TextView& labels = data.working.labels;
    const double two[] = {1, 9, 2, 3}, three[] = {1, 9, 9, 2, 3, 9, 4, 5, 6};
    const double d[] = {100, 2.5, 1}, zd[] = {10, 11, 12}, pd[] = {0.5, 0.25, 0.125}, rs[] = {1, NAN, 3};
    const char* const names[] = {"one", "three"};
    const std::int32_t whole = -42;

    Report report;
    ASSERT_EQ(allocateReport(report, TextBuffer::Growth::fixed), success);
    SetFormatsFromData(report, data, 9, 6);
    WriteNamedHeader(report, names, 4);
    WriteFactorHeader(report, 2, 12);
    WritePrefixedHeader(report, 2, "axis", "total", 8);
    WriteValueRow(report, values, 3, 6, "label_x", 12);
    WriteIntegerRow(report, &whole, 5, "n", 1000);
    WriteLowerTriangle(report, data, three, 6);
    WriteExplanatoryMatrix(report, data, two);
    WriteFactorTriangle(report, 2, three, 3);
    for (const bool wide : {false, true}) {
        if (wide) { // a value that needs more than the variable string length
            values[3] = 12345.6;
            SetFormatsFromValues(report, values, 6, 4, 6);
        }
        WriteDataTable(report, data, values);
        WriteFactorTable(report, 2, 2, three, 3, labels);
        WriteVectorTable(report, 2, 1, two, 1, labels);
        WritePairTable3(report, data, {{"tau", d}, {"z", zd}, {"prob", pd}});
        WritePairTable5(report, data, {{"D", values + 3}, {"zd", zd}, {"pd", pd}, {"rs", rs}, {"pr", pd}});
    }
    EXPECT_EQ(report.lower.text(), readTextFile("report/tables.txt"));
}

TEST(FileSummary, ShowsTheFileAndItsData) {
    RecordingFrontend frontend;
    DataSet data;
    Report report;
    ASSERT_EQ(allocateReport(report, TextBuffer::Growth::fixed), success);
    ASSERT_EQ(loadDataSet("id,x,y\na,1,2\nb,10.5,3\n", data), success);
    std::snprintf(data.path, sizeof data.path, "C:\\data\\my file.csv");
    writeFileSummary(frontend, report, data, 7, 4);
    EXPECT_EQ(frontend.upper, readTextFile("report/summary.txt"));
    EXPECT_EQ(frontend.status, "status : opened data file named : 'my file.csv'\n");
    EXPECT_EQ(frontend.log, "upper status");

    data.policy = MissingPolicy::omit;
    ASSERT_EQ(loadDataSet("id,x,x\na,1,2\nb,2,.\nc,3,4", data), success);
    writeFileSummary(frontend, report, data, 7, 4, true);
    EXPECT_EQ(frontend.status,
              "status : opened data file named : 'my file.csv'; 1 of 2 samples left out; 2 doubts, "
              "see Tools, Check Data\n");

    std::string text = "id,x\n";
    while (text.size() < 8000) text += "s,1\n";
    ASSERT_EQ(loadDataSet(text, data), success);
    writeFileSummary(frontend, report, data, 7, 4);
    EXPECT_TRUE(frontend.upper.ends_with(",   s,  1.000\n-- cut at 32768 characters\n"));
    EXPECT_LT(frontend.upper.size(), upperTextCapacity);
    EXPECT_GT(frontend.upper.size(), upperTextCapacity - 20); // a row has 18 characters
}
