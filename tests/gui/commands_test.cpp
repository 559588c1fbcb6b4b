#include <gtest/gtest.h>
#include <iomanip>
#include <sstream>
#include <windows.h>

#include <commctrl.h>

#include "analysis/run/commands.h"
#include "tests/gui/driver.h"

namespace {

constexpr int fundamental = 710;
const std::string fundamentalCaption = "fundamental statistics analysis";
const std::string smallFile = "label,A,B,C\na,1,6,2.5\nb,2,4,1\nc,3,5,-3\nd,4,1,0\ne,5,2,7\nf,6,3,9\n";

// The upper screen with some variables of smallFile: three decimals in columns of 11, labels in 15.
std::string summary(const std::string& path, const std::string& names) {
    const double values[6][3] = {{1, 6, 2.5}, {2, 4, 1}, {3, 5, -3}, {4, 1, 0}, {5, 2, 7}, {6, 3, 9}};
    std::ostringstream text;
    text << "\nopened data file named : '" << path.substr(path.rfind('\\') + 1) << "'\n\t'" << path
         << "'\n\t-- 6 samples, " << names.size() << " variables\n\tvariables : ";
    for (const char name : names) text << (name == names[0] ? "" : ", ") << name;
    text << "\n\n  n," << std::setw(15) << "";
    for (const char name : names) text << "," << std::setw(11) << name;
    text << std::fixed << std::setprecision(3);
    for (int row = 0; row < 6; ++row) {
        text << "\n  " << row + 1 << "," << std::setw(15) << "abcdef"[row];
        for (const char name : names) text << "," << std::setw(11) << values[row][name - 'A'];
    }
    text << "\n";
    return text.str();
}

void startWithSmallFile(App& app) {
    app.write("small.csv", smallFile);
    app.start("small.csv");
}

} // namespace

TEST(OpenFile, ByItsDialog) {
    const int fileName = 0x47c; // in the dialog of Windows
    App app;
    const std::string path = app.write("small.csv", smallFile);
    app.start();
    app.runCommand(commandOpenFile, "Open").press(IDCANCEL);
    EXPECT_EQ(app.upperText(), "");
    EXPECT_EQ(app.statusText(), " status :");
    const Dialog dialog = app.runCommand(commandOpenFile, "Open");
    dialog.type(fileName, path);
    dialog.press(IDOK);
    EXPECT_EQ(app.upperText(), summary(path, "ABC"));
    EXPECT_EQ(app.lowerText(), "");
    EXPECT_EQ(app.statusText(), "status : opened data file named : 'small.csv'");
}

// What follows the last "." becomes "csv"; a name without "." keeps its first character.
TEST(OpenFile, ByTheCommandLineWithItsExtensionForced) {
    const std::pair<const char*, const char*> cases[] = {{"\"two words.csv\"", "two words.csv"},
                                                         {"a.b.txt", "a.b.csv"},
                                                         {"table.", "table.csv"},
                                                         {"table", "tcsv"}};
    for (const auto& [argument, opened] : cases) {
        App app;
        app.write(opened, smallFile);
        app.start(argument);
        EXPECT_EQ(app.upperText(), summary(opened, "ABC")) << argument;
    }
}

TEST(OpenFile, TellsWhatIsWrong) {
    const std::pair<const char*, const char*> cases[] = {
        {"; nothing\n", "failed to open the file or no data."},
        {"label,A,B\na,1\n", "illegal data nor data structure."},
    };
    for (const auto& [contents, text] : cases) {
        App app;
        app.write("data.csv", contents);
        app.start("data.csv");
        EXPECT_EQ(app.upperText(), std::string("\n\t") + text + "\n");
        EXPECT_EQ(app.statusText(), std::string("error : ") + text);
        EXPECT_TRUE(app.isItemEnabled(commandOpenFile));
        EXPECT_FALSE(app.isItemEnabled(fundamental));
    }
}

TEST(DataCommands, ClearScreenEmptiesOneScreenAndCloseFileAllTexts) {
    App app;
    startWithSmallFile(app);
    app.runCommand(fundamental, fundamentalCaption).press(IDOK);
    const std::string report = app.lowerText();
    app.runCommand(commandUpperClear);
    EXPECT_EQ(app.upperText(), "");
    EXPECT_EQ(app.lowerText(), report);
    app.runCommand(commandLowerClear);
    EXPECT_EQ(app.lowerText(), "");
    EXPECT_EQ(app.statusText(), "status : fundamental analysis statistics");
    app.runCommand(fundamental, fundamentalCaption).press(IDOK);
    EXPECT_EQ(app.lowerText(), report);
    app.runCommand(commandCloseFile);
    EXPECT_EQ(app.upperText() + app.lowerText() + app.statusText(), "");
}

TEST(DataCommands, ExcludeVariableRebuildsTheData) {
    App app;
    startWithSmallFile(app);
    Dialog dialog = app.runCommand(commandExcludeVariable, "exclude");
    for (int list = 1101; list <= 1110; ++list) {
        EXPECT_EQ(dialog.entries(list), (std::vector<std::string>{"(none)", "A", "B", "C"}));
        EXPECT_EQ(dialog.chosen(list), 0);
    }
    dialog.choose(1101, 2);
    dialog.press(IDCANCEL);
    EXPECT_EQ(app.upperText(), summary("small.csv", "ABC"));

    dialog = app.runCommand(commandExcludeVariable, "exclude");
    EXPECT_EQ(dialog.chosen(1101), 0);
    dialog.choose(1104, 2);
    dialog.choose(1110, 2);
    dialog.press(IDOK);
    EXPECT_EQ(app.upperText(), summary("small.csv", "AC"));

    dialog = app.runCommand(commandExcludeVariable, "exclude");
    EXPECT_EQ(dialog.chosen(1104), 2);
    EXPECT_EQ(dialog.chosen(1110), 2);
    for (int list = 1101; list <= 1103; ++list) dialog.choose(list, list - 1100);
    dialog.press(IDOK);
    EXPECT_NE(app.upperText().find("\t-- 6 samples, 0 variables\n\tvariables : \n\n"), std::string::npos);
    app.runCommand(fundamental);
    EXPECT_EQ(app.lowerText(), "\n\tno effective variable.\n");
    EXPECT_EQ(app.statusText(), "error : no effective variable.");

    dialog = app.runCommand(commandExcludeVariable, "exclude");
    for (int list = 1101; list <= 1110; ++list) dialog.choose(list, 0);
    dialog.press(IDOK);
    EXPECT_EQ(app.upperText(), summary("small.csv", "ABC"));
}

TEST(FundamentalStatistics, ReportsWhatAnIndependentComputationGives) {
    App app;
    app.start(projectFile("tests\\reference\\data\\iris.csv"));
    app.runCommand(fundamental, fundamentalCaption).press(IDOK);
    EXPECT_EQ(app.lowerText(), readFile(projectFile("tests\\reference\\expected\\fundamental-iris.txt")));
    EXPECT_EQ(app.statusText(), "status : fundamental analysis statistics");
    waitUntil("the focus", [&] { return app.focus() == app.child(CONTROL_LOWER_SCREEN); });
    EXPECT_FALSE(
        IsWindowVisible(FindWindowExA(app.child(CONTROL_STATUS_BAR), nullptr, PROGRESS_CLASSA, nullptr)));
}

TEST(FundamentalStatistics, EachOptionRemovesItsTable) {
    const std::pair<int, const char*> options[] = {{2001, "\tcovariance matrix\n"},
                                                   {2002, "\tcorrelation matrix\n"},
                                                   {2003, "\tspeaman's ranking correlation coefficients\n"},
                                                   {2004, "\tkendall's ranking correlation coefficients\n"}};
    App app;
    startWithSmallFile(app);
    for (const auto& off : options) {
        const Dialog dialog = app.runCommand(fundamental, fundamentalCaption);
        for (const auto& option : options) dialog.check(option.first, option != off);
        dialog.press(IDOK);
        for (const auto& option : options) {
            EXPECT_EQ(app.lowerText().find(option.second) != std::string::npos, option != off)
                << option.second;
        }
    }
    const std::string before = app.lowerText();
    const Dialog dialog = app.runCommand(fundamental, fundamentalCaption);
    EXPECT_FALSE(dialog.isChecked(2004));
    dialog.check(2001, false);
    dialog.press(IDCANCEL);
    EXPECT_EQ(app.lowerText(), before);
    EXPECT_TRUE(app.runCommand(fundamental, fundamentalCaption).isChecked(2001));
}

TEST(FundamentalStatistics, OnlySavedDefaultsOutliveTheProgram) {
    const int save = 950;
    App app;
    startWithSmallFile(app);
    Dialog dialog = app.runCommand(fundamental, fundamentalCaption);
    dialog.check(2002, false);
    dialog.check(save, true);
    dialog.press(IDOK);
    dialog = app.runCommand(fundamental, fundamentalCaption);
    EXPECT_FALSE(dialog.isChecked(save));
    dialog.check(2003, false);
    dialog.press(IDOK);
    EXPECT_EQ(app.close(), 0);

    app.start("small.csv");
    dialog = app.runCommand(fundamental, fundamentalCaption);
    EXPECT_FALSE(dialog.isChecked(2002));
    EXPECT_TRUE(dialog.isChecked(2003));
    EXPECT_FALSE(dialog.isChecked(save));
}

TEST(FundamentalStatistics, RefusesTooFewSamples) {
    App app;
    app.write("five.csv", "label,A,B,C\na,1,6,2.5\nb,2,4,1\nc,3,5,-3\nd,4,1,0\ne,5,2,7\n");
    app.start("five.csv");
    app.runCommand(fundamental);
    EXPECT_EQ(app.lowerText(), "\n\ttoo few samples or too much variables.\n"
                               "\tneed to exclude 1 variables, or add as many samples.");
    EXPECT_EQ(app.statusText(), "error : too few samples or too much variables.");
    EXPECT_FALSE(app.hasDialog());
}
