#include <algorithm>

#include "analysis/run/commands.h"
#include "analysis/run/data_check.h"
#include "analysis/run/run_flow.h"
#include "analysis/run/saved_defaults.h"
#include "analysis/run/start_arguments.h"
#include "analysis/run/window_place.h"
#include "tests/support/cases.h"
#include "tests/support/failing_allocations.h"
#include "tests/support/recording_frontend.h"

namespace {

constexpr int fundamental = 710;
constexpr const char* fourSamples = "id,x\na,1\nb,2\nc,4\nd,3\n";

// The first byte that is not as expected, or the size of all.
std::ptrdiff_t firstDifference(const Settings& settings, const std::string& expected) {
    const char* const bytes = reinterpret_cast<const char*>(&settings);
    return std::mismatch(expected.begin(), expected.end(), bytes).first - expected.begin();
}

struct RunFlowOnData : testing::Test {
    RecordingFrontend frontend;
    AnalysisRun run;
    Settings defaults = {};
    void SetUp() override { startRun(run); }

    ErrorCode analyse(int command) { return runAnalysisCommand(frontend, defaults, run, command); }
};

} // namespace

TEST(Settings, HaveTheirFirstValuesAtFixedOffsets) {
    std::string expected(1400, '\0');
    for (const Case& test : readCases("analysis/run/defaults.tsv")) {
        std::string bytes = test[1] == "text" ? test[2] : "";
        std::istringstream values(test[1] == "text" ? "" : test[2]);
        for (double value = 0.0; values >> value;) {
            const auto whole = static_cast<std::int32_t>(value);
            bytes += test[1] == "int" ? std::string(reinterpret_cast<const char*>(&whole), sizeof whole)
                                      : std::string(reinterpret_cast<const char*>(&value), sizeof value);
        }
        expected.replace(std::stoul(test[0]), bytes.size(), bytes);
    }
    Settings settings;
    std::fill_n(reinterpret_cast<char*>(&settings), sizeof settings, '\x55');
    setDefaultSettings(settings);
    EXPECT_EQ(firstDifference(settings, expected), 1400);
}

TEST(Settings, SettleTheWindowWhereItCanBeSeen) {
    for (const Case& test : readCases("analysis/run/windows.tsv")) {
        Settings s = {};
        std::istringstream kept(test[0]), area(test[1]);
        kept >> s.windowLeft >> s.windowTop >> s.windowRight >> s.windowBottom >> s.windowWidth >>
            s.windowHeight;
        ScreenArea screens = {};
        area >> screens.left >> screens.top >> screens.right >> screens.bottom;
        settleWindowRectangle(s, 1920, 1080, screens);
        std::ostringstream settled;
        settled << s.windowLeft << ' ' << s.windowTop << ' ' << s.windowRight << ' ' << s.windowBottom << ' '
                << s.windowWidth << ' ' << s.windowHeight << '\t' << s.screenWidth;
        EXPECT_EQ(settled.str(), test[2] + "\t" + test[3]) << test[0];
    }
}

TEST(DialogPlace, IsTheMiddleOfItsOwnerOnTheScreen) {
    const struct {
        ScreenArea owner;
        std::int32_t left, top;
    } cases[] = {{{100, 50, 900, 650}, 350, 250},
                 {{-700, 50, 100, 650}, 0, 250},
                 {{1800, 900, 2600, 1500}, 1620, 880},
                 {{300, -2000, 300, -2000}, 150, 40}};
    for (const auto& [owner, left, top] : cases) {
        const ScreenArea place = placeOver(owner, 300, 200, {0, 40, 1920, 1080});
        EXPECT_EQ(std::vector({place.left, place.top, place.right, place.bottom}),
                  std::vector({left, top, left + 300, top + 200}));
    }
    EXPECT_EQ(placeOver({0, 0, 800, 600}, 3000, 200, {0, 0, 1920, 1080}).left, 0);
}

TEST(StartArguments, AreTheSwitchAndTheFile) {
    using Start = std::tuple<std::vector<const char*>, const Numerics*, const char*>;
    for (auto [arguments, numerics, file] :
         {Start{{"x", "data.csv", "--numerics", "textbook"}, &classicNumerics, "data.csv"},
          Start{{"x", "--numerics", "textbook", "data.csv"}, &textbookNumerics, "data.csv"},
          Start{{"x", "--numerics=textbook"}, &textbookNumerics, nullptr},
          Start{{"x", "--numerics=", "data.csv"}, nullptr, "data.csv"},
          Start{{"x", "--numerics"}, nullptr, nullptr},
          Start{{"x", "--numericsx"}, &classicNumerics, "--numericsx"}}) {
        const StartArguments start = readStartArguments(static_cast<int>(arguments.size()), arguments.data());
        EXPECT_EQ(start.numerics, numerics);
        EXPECT_STREQ(start.file, file);
    }
}

TEST(SavedDefaults, AreTheOptionsOfTheBoxThatWasChecked) {
    for (const Case& test : readCases("analysis/run/saved.tsv")) {
        AnalysisRun run;
        Settings defaults = {}, &settings = run.options.settings;
        std::fill_n(reinterpret_cast<char*>(&settings), sizeof settings, '\x55');
        for (int box = 940; box <= 990; ++box) saveFlag(settings, box) = std::to_string(box) == test[0];
        commitSavedDefaults(defaults, run);
        std::string expected(1400, '\0');
        std::fill(expected.begin() + std::stoi(test[1]), expected.begin() + std::stoi(test[2]), '\x55');
        EXPECT_EQ(firstDifference(defaults, expected), 1400) << test[0];
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

TEST(DataFile, ProposesANameForAnImportedTable) {
    for (const auto& [path, proposed] :
         {std::pair<std::string, std::string>("C:\\a.b\\garden.txt", "C:\\a.b\\garden-import.csv"),
          {"C:\\a.b\\garden", "C:\\a.b\\garden-import.csv"},
          {"C:\\.x", "C:\\.x-import.csv"},
          {std::string(248, 'w') + ".tsv", std::string(248, 'w') + "-import.csv"},
          {std::string(249, 'w'), ""}}) {
        char found[260];
        EXPECT_EQ(proposeTablePath(path.c_str(), "-import.csv", found), !proposed.empty());
        EXPECT_EQ(found, proposed);
    }
}

// By the names of the case: there, and not there.
TEST(DataFile, IsThatOfItsNameOrOfTheNameWithAnExtension) {
    for (const Case& test : readCases("analysis/run/names.tsv")) {
        for (const bool isThere : {true, false}) {
            const std::string& expected = test[isThere ? 1 : 2];
            char path[260] = "too long";
            EXPECT_EQ(namedDataFile(test[0].c_str(), isThere, path), expected != "too long") << test[0];
            EXPECT_EQ(path, expected);
        }
    }
}

TEST_F(RunFlowOnData, ChecksTheDataAndRuns) {
    for (const Case& test : readCases("analysis/run/runs.tsv")) {
        SCOPED_TRACE(test[0] + test[1]);
        ASSERT_EQ(loadText(frontend, run, test[0]), FileCode::done);
        frontend.takeLog();
        EXPECT_EQ(std::to_string(analyse(std::stoi(test[1]))), test[2]);
        EXPECT_EQ(frontend.log, test[3]);
        EXPECT_NE(frontend.lower.find(test[4]), std::string::npos) << frontend.lower;
    }
}

TEST_F(RunFlowOnData, LeavesTheOptionsToTheUser) {
    ASSERT_EQ(loadText(frontend, run, fourSamples), FileCode::done);
    EXPECT_EQ(frontend.takeLog(), "unloaded loaded upper status");
    frontend.choose = [](AnalysisRun&) { return false; };
    EXPECT_EQ(analyse(fundamental), success);
    EXPECT_EQ(frontend.takeLog(), "graph-closed no-prediction dialog");
    run.data.working = {}; // every run starts from what is loaded
    frontend.choose = [](AnalysisRun& chosen) {
        chosen.options.settings.fundamental = {1, 0, 0, 0};
        return saveFlag(chosen.options.settings, 950) = 1, true;
    };
    EXPECT_EQ(analyse(fundamental), success);
    EXPECT_EQ(defaults.fundamental.covarianceMatrix, 1);
    EXPECT_EQ(run.data.working.values[0], 1.0);
    EXPECT_NE(frontend.lower.find("covariance matrix"), std::string::npos);
    EXPECT_EQ(frontend.lower.find("correlation"), std::string::npos);
}

TEST_F(RunFlowOnData, ExcludesVariablesAndClosesTheFile) {
    ASSERT_EQ(loadText(frontend, run, "id,x,y,z\na,1,2,3\n"), FileCode::done);
    frontend.takeLog();
    applyExclusion(frontend, run, {0, 2, 2, 3, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(frontend.takeLog(), "upper status no-prediction");
    EXPECT_NE(frontend.upper.find("1 samples, 1 variables\n\tvariables : x\n"), std::string::npos);
    for (int k = 0; k < 2; ++k) chooseNumerics(frontend, run, textbookNumerics);
    EXPECT_EQ(frontend.takeLog(), "no-prediction"); // once
    closeDataFile(frontend, run);
    EXPECT_EQ(frontend.takeLog(), "upper lower status unloaded");
    EXPECT_EQ(frontend.upper + frontend.lower + frontend.status, "");
}

TEST_F(RunFlowOnData, ChecksWhatWasLoadedOrRefused) {
    const auto check = [&](const std::string& text, DataState state) {
        const bool loaded = loadText(frontend, run, text) == FileCode::done;
        EXPECT_EQ(dataState(run.data, loaded), state);
        checkData(frontend, run);
        EXPECT_EQ(frontend.status, "status : data check");
        return frontend.lower.substr(frontend.lower.find("\n\n") + 2);
    };
    EXPECT_EQ(dataState(run.data, false), DataState::none);
    EXPECT_EQ(check(fourSamples, DataState::loaded), "nothing to doubt\n");
    EXPECT_EQ(check("id,x,y\na,1,2\nb,3\n", DataState::refused),
              "line 3: it has 2 of 3 cells; use \"Import Table\"\n");
    run.statusTellsDoubts = true;
    const std::string gap = "id,x\na,1\nb,NA\nc,4\nd,3\n";
    EXPECT_NE(check(gap, DataState::loaded).find("or use \"Import Table\"\n"), std::string::npos);
    loadText(frontend, run, gap);
    EXPECT_TRUE(frontend.status.ends_with("; 1 doubt, see Tools, Check Data\n")) << frontend.status;
    run.data.policy = MissingPolicy::omit;
    EXPECT_EQ(check(gap, DataState::loaded),
              "1 of 4 samples left out; missing cells: x 1\nnothing to doubt\n");
    loadText(frontend, run, gap);
    EXPECT_TRUE(frontend.status.ends_with("'; 1 of 4 samples left out\n")) << frontend.status;

    const Analysis& similarity = *findKind("quant4")->analysis;
    EXPECT_TRUE(leavesTableRowsOut(run.data, similarity, run.options));
    EXPECT_FALSE(leavesTableRowsOut(run.data, *findKind("fundamental")->analysis, run.options));
    run.data.policy = MissingPolicy::zero; // a row is left out all the same
    EXPECT_TRUE(leavesTableRowsOut(run.data, similarity, run.options));
    loadText(frontend, run, fourSamples);
    EXPECT_FALSE(leavesTableRowsOut(run.data, similarity, run.options));
}

TEST(Commands, CanBeChosenWhereTheyMakeSense) {
    const struct {
        int command;
        bool none, refused, loaded;
    } cases[] = {{commandOpenFile, true, true, false},         {commandImportTable, true, true, false},
                 {commandCheckData, false, true, true},        {commandCloseFile, false, false, true},
                 {commandExcludeVariable, false, false, true}, {fundamental, false, false, true}};
    for (const auto& [command, none, refused, loaded] : cases) {
        EXPECT_EQ(isCommandEnabled(command, DataState::none), none) << command;
        EXPECT_EQ(isCommandEnabled(command, DataState::refused), refused) << command;
        EXPECT_EQ(isCommandEnabled(command, DataState::loaded), loaded) << command;
    }
}

TEST_F(RunFlowOnData, LoadsNothingWhenMemoryRunsOutOrTheFileIsBad) {
    run.options.slotDegrees[9] = 7.0;
    FileCode code = FileCode::done;
    int failure = 0;
    const auto load = [&] { code = loadText(frontend, run, fourSamples); };
    const long long failures = failEachAllocation(load, [&] {
        EXPECT_EQ(code, FileCode::noMemory);
        // The three blocks of the cells are the first that get no memory, alone and with all after them.
        EXPECT_EQ(frontend.takeLog(), ++failure <= 6 ? "unloaded alert(/alert) upper status"
                                                     : "unloaded lower alert(/alert) upper status");
        EXPECT_EQ(frontend.upper, "\n\tfailed to allocate memory for data.\n");
        const auto& data = run.data;
        EXPECT_EQ(data.cells.rows + data.loaded.samples + data.working.samples, 0);
        EXPECT_EQ(data.cells.texts.size() + data.loadedValues.size() + data.working.labels.size() +
                      data.selectionFlags.size() + data.useFlags.size() + data.model.inverse.size(),
                  0);
    });
    EXPECT_GT(failures, 6);
    EXPECT_EQ(code, FileCode::done);
    EXPECT_EQ(run.options.slotDegrees[9], 1.0);
    EXPECT_EQ(analyse(fundamental), success);

    EXPECT_EQ(loadText(frontend, run, "id,x\na\n"), FileCode::malformed);
    EXPECT_EQ(frontend.status, "error : illegal data nor data structure.");
    EXPECT_EQ(run.data.working.count(), 0u);
    run.options.settings.fileType = 1;
    EXPECT_EQ(loadText(frontend, run, fourSamples), FileCode::notOpened);
}
