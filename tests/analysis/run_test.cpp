#include <algorithm>
#include <cstring>

#include "analysis/run/run_flow.h"
#include "analysis/run/saved_defaults.h"
#include "tests/support/cases.h"
#include "tests/support/failing_allocations.h"
#include "tests/support/recording_frontend.h"

TEST(Settings, HaveTheirFirstValuesAtFixedOffsets) {
    char expected[1400] = {};
    for (const Case& test : readCases("analysis/run/defaults.tsv")) {
        char* target = expected + std::stoi(test[0]);
        if (test[1] == "text") std::memcpy(target, test[2].data(), test[2].size());
        std::istringstream values(test[1] == "text" ? "" : test[2]);
        for (double value = 0.0; values >> value;) {
            const auto whole = static_cast<std::int32_t>(value);
            const std::size_t size = test[1] == "int" ? sizeof whole : sizeof value;
            std::memcpy(target, test[1] == "int" ? static_cast<const void*>(&whole) : &value, size);
            target += size;
        }
    }
    Settings settings;
    std::fill_n(reinterpret_cast<char*>(&settings), sizeof settings, '\x55');
    setDefaultSettings(settings);
    const char* bytes = reinterpret_cast<const char*>(&settings);
    EXPECT_EQ(std::mismatch(expected, expected + 1400, bytes).first - expected, 1400);
}

TEST(Settings, SettleTheWindowWhereItCanBeSeen) {
    for (const Case& test : readCases("analysis/run/windows.tsv")) {
        Settings settings = {};
        std::int32_t* const fields[] = {&settings.windowLeft,  &settings.windowTop,
                                        &settings.windowRight, &settings.windowBottom,
                                        &settings.windowWidth, &settings.windowHeight};
        std::istringstream kept(test[0]), area(test[1]);
        for (std::int32_t* field : fields) kept >> *field;
        ScreenArea screens = {};
        area >> screens.left >> screens.top >> screens.right >> screens.bottom;
        settleWindowRectangle(settings, 1920, 1080, screens);
        std::string settled;
        for (const std::int32_t* field : fields)
            settled += (settled.empty() ? "" : " ") + std::to_string(*field);
        EXPECT_EQ(settled, test[2]) << test[0];
        EXPECT_EQ(std::to_string(settings.screenWidth), test[3]) << test[0];
    }
}

TEST(SavedDefaults, AreTheOptionsOfTheBoxThatWasChecked) {
    for (const Case& test : readCases("analysis/run/saved.tsv")) {
        AnalysisRun run;
        Settings defaults = {}, &settings = run.options.settings;
        std::fill_n(reinterpret_cast<char*>(&settings), sizeof settings, '\x55');
        for (int box = 940; box <= 990; ++box) saveFlag(settings, box) = std::to_string(box) == test[0];
        commitSavedDefaults(defaults, run);
        char expected[1400] = {};
        std::fill(expected + std::stoi(test[1]), expected + std::stoi(test[2]), 0x55);
        const char* bytes = reinterpret_cast<const char*>(&defaults);
        EXPECT_EQ(std::mismatch(expected, expected + 1400, bytes).first - expected, 1400) << test[0];
        for (int box = 940; box <= 990; ++box) EXPECT_EQ(saveFlag(settings, box), 0);
    }
}

TEST(DataFile, HasTheExtensionOfItsKind) {
    for (const Case& test : readCases("analysis/run/extensions.tsv")) {
        char path[260];
        std::snprintf(path, sizeof path, "%s", test[0].c_str());
        forceExtension(path, std::stoi(test[1]));
        EXPECT_EQ(path, test[2]);
    }
}

TEST(RunFlow, EnablesCommandsByTheData) {
    std::string loaded, unloaded;
    for (int command = 700; command < 810; ++command) {
        if (isCommandEnabled(command, true)) loaded += " " + std::to_string(command);
        if (isCommandEnabled(command, false)) unloaded += " " + std::to_string(command);
    }
    EXPECT_EQ(loaded, " 702 703 710 711 712 713 714 715 716 717 720 721 722 723 724 731 732 740 741 742"
                      " 751 752 753 754 755 756");
    EXPECT_EQ(unloaded, " 701");
}

namespace {

constexpr int fundamental = 710;
constexpr const char* fourSamples = "id,x\na,1\nb,2\nc,4\nd,3\n";

struct RunFlowOnData : testing::Test {
    RecordingFrontend frontend;
    AnalysisRun run;
    Settings defaults = {};
    void SetUp() override { startRun(run); }
};

} // namespace

TEST_F(RunFlowOnData, ChecksTheDataAndRuns) {
    for (const Case& test : readCases("analysis/run/runs.tsv")) {
        SCOPED_TRACE(test[0] + test[1]);
        ASSERT_EQ(loadText(frontend, run, test[0]), success);
        frontend.takeLog();
        EXPECT_EQ(std::to_string(runAnalysisCommand(frontend, defaults, run, std::stoi(test[1]))), test[2]);
        EXPECT_EQ(frontend.log, test[3]);
        EXPECT_NE(frontend.lower.find(test[4]), std::string::npos) << frontend.lower;
    }
}

TEST_F(RunFlowOnData, LeavesTheOptionsToTheUser) {
    ASSERT_EQ(loadText(frontend, run, fourSamples), success);
    EXPECT_EQ(frontend.takeLog(), "unloaded loaded upper status");
    frontend.choose = [](AnalysisRun&) { return false; };
    EXPECT_EQ(runAnalysisCommand(frontend, defaults, run, fundamental), success);
    EXPECT_EQ(frontend.takeLog(), "graph-closed no-prediction dialog");
    run.data.working.values[0] = 9.0; // every run starts from what is loaded
    frontend.choose = [](AnalysisRun& chosen) {
        chosen.options.settings.fundamental = {1, 0, 0, 0};
        saveFlag(chosen.options.settings, 950) = 1;
        return true;
    };
    EXPECT_EQ(runAnalysisCommand(frontend, defaults, run, fundamental), success);
    EXPECT_EQ(defaults.fundamental.covarianceMatrix, 1);
    EXPECT_EQ(run.data.working.values[0], 1.0);
    EXPECT_NE(frontend.lower.find("covariance matrix"), std::string::npos);
    EXPECT_EQ(frontend.lower.find("correlation"), std::string::npos);
}

TEST_F(RunFlowOnData, ExcludesVariablesAndClosesTheFile) {
    ASSERT_EQ(loadText(frontend, run, "id,x,y,z\na,1,2,3\n"), success);
    frontend.takeLog();
    applyExclusion(frontend, run, {0, 2, 2, 3, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(frontend.takeLog(), "upper status no-prediction");
    EXPECT_NE(frontend.upper.find("1 samples, 1 variables\n\tvariables : x\n"), std::string::npos);
    closeDataFile(frontend, run);
    EXPECT_EQ(frontend.takeLog(), "upper lower status unloaded");
    EXPECT_EQ(frontend.upper + frontend.lower + frontend.status, "");
}

TEST_F(RunFlowOnData, LoadsNothingWhenMemoryRunsOutOrTheFileIsBad) {
    run.options.slotDegrees[9] = 7.0;
    ErrorCode code = success;
    std::string shown = "unloaded alert(/alert) upper status"; // when it is the cells that get no memory
    const auto load = [&] { code = loadText(frontend, run, fourSamples); };
    const long long failures = failEachAllocation(load, [&] {
        EXPECT_EQ(code, outOfMemory);
        EXPECT_EQ(frontend.takeLog(), shown);
        shown = "unloaded lower alert(/alert) upper status";
        EXPECT_EQ(frontend.upper, "\n\tfailed to allocate memory for data.\n");
        EXPECT_EQ(run.data.cells.rows + run.data.loaded.samples + run.data.working.samples, 0);
        EXPECT_EQ(run.data.cells.cells.size() + run.data.loaded.values.size() +
                      run.data.working.labels.size() + run.data.selectionFlags.size() +
                      run.data.useFlags.size() + run.data.model.inverse.size(),
                  0u);
    });
    EXPECT_GT(failures, 2);
    EXPECT_EQ(code, success);
    EXPECT_EQ(run.options.slotDegrees[9], 1.0);
    EXPECT_EQ(runAnalysisCommand(frontend, defaults, run, fundamental), success);

    EXPECT_EQ(loadText(frontend, run, "id,x\na\n"), fileMalformed);
    EXPECT_EQ(frontend.status, "error : illegal data nor data structure.");
    EXPECT_EQ(run.data.working.count(), 0u);
    run.options.settings.fileType = 1;
    EXPECT_EQ(loadText(frontend, run, fourSamples), fileNotOpened);
}
