#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>
#include <cstdlib>
#include <sstream>

#include "analysis/run/commands.h"
#include "tests/gui/analysis_dialogs.h"
#include "tests/gui/driver.h"

namespace {

constexpr int fundamental = 710;
const std::string fundamentalCaption = "fundamental statistics analysis";
const std::string smallFile = "label,A,B,C\na,1,6,2.5\nb,2,4,1\nc,3,5,-3\nd,4,1,0\ne,5,2,7\nf,6,3,9\n";

// The upper screen with variables of smallFile: its head, and as its last row that of sample f.
void expectSummary(const App& app, const std::string& path, const std::string& variables,
                   const std::string& row) {
    const std::string shown = app.upperText(), name = path.substr(path.rfind('\\') + 1);
    EXPECT_TRUE(shown.starts_with("\nopened data file named : '" + name + "'\n\t'" + app.path(name) +
                                  "'\n\t-- 6 samples, " + variables + "\n\n  n,"))
        << shown;
    EXPECT_TRUE(shown.ends_with("\n  6,              f" + row + "\n")) << shown;
}
void expectAllVariables(const App& app, const std::string& path = "small.csv") {
    expectSummary(app, path, "3 variables\n\tvariables : A, B, C", ",      6.000,      3.000,      9.000");
}

void startWithSmallFile(App& app) {
    app.write("small.csv", smallFile);
    app.start("small.csv");
}

} // namespace

TEST(OpenFile, ByItsDialog) {
    App app;
    const std::string path = app.write("small.csv", smallFile);
    app.start();
    app.runCommand(commandOpenFile, "Open").press(IDCANCEL);
    EXPECT_EQ(app.upperText(), "");
    EXPECT_EQ(app.statusText(), " status :");
    const Dialog dialog = app.runCommand(commandOpenFile, "Open");
    dialog.type(fileName, path);
    dialog.press(IDOK);
    expectAllVariables(app, path);
    EXPECT_EQ(app.lowerText(), "");
    EXPECT_EQ(app.statusText(), "status : opened data file named : 'small.csv'");
}

TEST(OpenFile, ByTheCommandLineOrDropped) {
    App app;
    app.write("two words.csv", smallFile);
    app.write("a.b.txt", smallFile);
    app.start("\"two words\"");
    expectAllVariables(app, "two words.csv");
    app.drop(app.path("a.b.txt")); // none is taken while data is loaded
    expectAllVariables(app, "two words.csv");
    app.runCommand(commandCloseFile);
    app.drop(app.path("a.b.txt"));
    expectAllVariables(app, "a.b.txt");
    app.runCommand(commandCloseFile);
    app.drop(app.path(std::string(250, 'x')));
    const Dialog alert = app.waitForDialog("alert");
    EXPECT_EQ(alert.text(messageText), "the path of the file is too long");
    alert.press(IDOK);
    EXPECT_EQ(app.upperText(), "");
}

TEST(OpenFile, TellsWhatIsWrong) {
    App app;
    app.write("data.csv", "label,A,B\na,1\n");
    app.start("data.csv");
    EXPECT_EQ(app.upperText(), "\n\tillegal data nor data structure.\n");
    EXPECT_EQ(app.statusText(), "error : illegal data nor data structure.");
    EXPECT_TRUE(app.isItemEnabled(commandOpenFile));
    EXPECT_FALSE(app.isItemEnabled(fundamental));
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
    app.runCommand(fundamental, fundamentalCaption).press(IDOK);
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
    expectAllVariables(app);

    dialog = app.runCommand(commandExcludeVariable, "exclude");
    EXPECT_EQ(dialog.chosen(1101), 0);
    dialog.choose(1104, 2);
    dialog.choose(1110, 2);
    dialog.press(IDOK);
    expectSummary(app, "small.csv", "2 variables\n\tvariables : A, C", ",      6.000,      9.000");

    dialog = app.runCommand(commandExcludeVariable, "exclude");
    EXPECT_TRUE(dialog.chosen(1104) == 2 && dialog.chosen(1110) == 2);
    for (int list = 1101; list <= 1103; ++list) dialog.choose(list, list - 1100);
    dialog.press(IDOK);
    EXPECT_NE(app.upperText().find("\t-- 6 samples, 0 variables\n\tvariables : \n\n"), std::string::npos);
    app.runCommand(fundamental);
    EXPECT_EQ(app.statusText(), "error : no effective variable.");

    dialog = app.runCommand(commandExcludeVariable, "exclude");
    for (int list = 1101; list <= 1110; ++list) dialog.choose(list, 0);
    dialog.press(IDOK);
    expectAllVariables(app);
}

TEST(FundamentalStatistics, ReportsWhatAnIndependentComputationGives) {
    App app;
    app.start(projectFile("tests\\reference\\data\\iris.csv"));
    app.runCommand(fundamental, fundamentalCaption).press(IDOK);
    EXPECT_EQ(app.lowerText(), readFile(projectFile("tests\\reference\\expected\\fundamental-iris.txt")));
    waitUntil("the focus", [&] { return app.focus() == app.child(CONTROL_LOWER_SCREEN); });
    EXPECT_FALSE(
        IsWindowVisible(FindWindowExA(app.child(CONTROL_STATUS_BAR), nullptr, PROGRESS_CLASSA, nullptr)));
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

TEST(TextbookNumerics, HoldUntilTheProgramEnds) {
    App app;
    app.write("small.csv", smallFile);
    const auto expectReport = [&](bool textbook) {
        EXPECT_EQ((app.itemState(commandTextbookNumerics) & MF_CHECKED) != 0, textbook);
        app.runCommand(fundamental, fundamentalCaption).press(IDOK);
        const std::string title = "\nfundamental analysis statistics\n-- textbook numerics\n";
        EXPECT_EQ(app.lowerText().starts_with(title), textbook) << app.lowerText();
        EXPECT_EQ(app.statusText().ends_with(" statistics, textbook numerics"), textbook) << app.statusText();
    };
    app.start("--numerics textbook small.csv");
    expectReport(true);
    app.runCommand(commandTextbookNumerics);
    expectReport(false);
    app.runCommand(commandTextbookNumerics);
    expectReport(true);
    app.close();
    app.start("--numerics others small.csv");
    const Dialog alert = app.waitForDialog("alert");
    EXPECT_EQ(alert.text(messageText), "--numerics takes classic or textbook");
    alert.press(IDOK);
    expectReport(false);
}

TEST(SaveResultsAsColumns, WritesTheTableOfTheLastAnalysis) {
    App app;
    app.write("line.csv", "label,x,y\na,1,1\nb,2,3\nc,3,5\nd,4,8\ne,5,8\nf,6,11\n");
    app.start("line.csv");
    app.runCommand(fundamental, fundamentalCaption).press(IDOK);
    EXPECT_FALSE(app.isItemEnabled(commandSaveColumns));
    app.runCommand(711, "multiple regression analysis").press(IDOK);
    const Dialog files = app.runCommand(commandSaveColumns, "Save As");
    EXPECT_EQ(files.text(fileName), "line-results.csv");
    files.press(IDOK);
    const std::string table = app.read("line-results.csv");
    EXPECT_TRUE(table.starts_with("label,x,y,prediction,residual,s.residual")) << table;
    // x by y: the means are 3.5 and 6, the slope 34 / 68.
    const std::string row = "\nc,3,5,";
    EXPECT_NEAR(std::stod(table.substr(table.find(row) + row.size())), 3.0, 1e-12);
    app.runCommand(commandExcludeVariable, "exclude").press(IDOK);
    EXPECT_FALSE(app.isItemEnabled(commandSaveColumns));
}

TEST(Pictures, AreSavedAndCopied) {
    App app;
    app.write("line.csv", "label,x,y,g\na,1,1,p\nb,2,3,q\nc,3,5,q\nd,4,8,p\ne,5,8,q\nf,6,11,q\n");
    app.start("line.csv");
    const Dialog excluded = app.runCommand(commandExcludeVariable, "exclude");
    excluded.choose(1101, 3);
    excluded.press(IDOK);
    app.runCommand(711, "multiple regression analysis").press(IDOK);
    app.runCommand(commandCopyPicture);
    EXPECT_TRUE(IsClipboardFormatAvailable(CF_ENHMETAFILE) && IsClipboardFormatAvailable(CF_BITMAP));
    const Dialog dialog = app.runCommand(commandSavePicture, "save picture");
    dialog.choose(CONTROL_PICTURE_NAME, 1);
    EXPECT_FALSE(dialog.isEnabled(CONTROL_PICTURE_ELLIPSES));
    dialog.choose(CONTROL_PICTURE_COLUMN, 3);
    EXPECT_TRUE(dialog.isEnabled(CONTROL_PICTURE_ELLIPSES));
    dialog.type(CONTROL_PICTURE_WIDTH, "100");
    expectRefused(app, dialog, "please type a width and a height of 200 to 10000 pixels, or neither",
                  CONTROL_PICTURE_WIDTH);
    dialog.type(CONTROL_PICTURE_WIDTH, "");
    dialog.press(IDOK);
    const Dialog files = app.waitForDialog("Save As");
    EXPECT_EQ(files.text(fileName), "line-picture.svg");
    files.press(IDOK);
    const std::string picture = app.read("line-picture.svg");
    EXPECT_NE(picture.find("\n<svg "), std::string::npos);
    // Two samples of p as discs, four of q as squares, and one of each in the legend.
    const auto expectMarks = [&](const std::string& mark, int count) {
        for (std::size_t at = 0; (at = picture.find(mark, at)) != std::string::npos; ++at) --count;
        EXPECT_EQ(count, 0) << picture;
    };
    expectMarks("<circle", 2 + 1);
    expectMarks("<polygon", 4 + 1);
    app.runCommand(commandCloseFile);
    EXPECT_FALSE(app.isItemEnabled(commandCopyPicture));
}

namespace {

// Noise of so many samples and variables.
std::string noise(int samples, int variables) {
    std::ostringstream text;
    text << "label";
    for (int v = 1; v <= variables; ++v) text << ",v" << v;
    unsigned state = 1;
    for (int s = 1; s <= samples; ++s) {
        text << "\ns" << s;
        for (int v = 0; v < variables; ++v) text << ',' << ((state = state * 1664525U + 1013904223U) >> 20);
    }
    text << '\n';
    return text.str();
}

void pressEscape() {
    INPUT keys[2] = {};
    for (INPUT& key : keys) key.type = INPUT_KEYBOARD, key.ki.wVk = VK_ESCAPE;
    keys[1].ki.dwFlags = KEYEVENTF_KEYUP;
    ASSERT_EQ(SendInput(2, keys, sizeof(INPUT)), 2U);
}

} // namespace

TEST(LongAnalysis, EndsByEsc) {
    App app;
    app.write("noise.csv", noise(450, 400));
    app.start("noise.csv");
    const std::string upper = app.upperText();
    SendMessageA(app.child(CONTROL_LOWER_SCREEN), WM_SETTEXT, 0, reinterpret_cast<LPARAM>("typed"));
    const auto run = [&](const Dialog& dialog, DWORD pause) {
        const ULONGLONG start = GetTickCount64();
        PostMessageA(dialog.control(IDOK), BM_CLICK, 0, 0);
        const HWND bar = FindWindowExA(app.child(CONTROL_STATUS_BAR), nullptr, nullptr, nullptr);
        waitUntil("the run",
                  [&] { return IsWindowVisible(bar) != 0 && GetForegroundWindow() == app.window(); });
        Sleep(pause);
        pressEscape();
        waitUntil("its end", [&] { return IsWindowVisible(bar) == 0; });
        EXPECT_EQ(app.statusText(), "error : stopped.");
        EXPECT_EQ(app.lowerText(), "typed");
        EXPECT_EQ(app.upperText(), upper);
        std::printf("stopped after %d ms\n", static_cast<int>(GetTickCount64() - start));
    };
    const Dialog rotation = app.runCommand(714, "factor analysis");
    rotation.type(2401, "200");
    rotation.click(2406 + 1); // orthogonal
    run(rotation, 700);       // of many seconds
    const Dialog selection = app.runCommand(711, "multiple regression analysis");
    selection.choose(2101, 1);
    selection.click(2102 + 4); // out of all
    run(selection, 50);        // of half a second
}

namespace {

// The command on the clipboard, which the window may still hold open.
std::wstring copiedText() {
    waitUntil("the clipboard", [] { return OpenClipboard(nullptr) != 0; });
    const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
    std::wstring text = memory != nullptr ? static_cast<const wchar_t*>(GlobalLock(memory)) : L"";
    CloseClipboard();
    return text;
}

// What the command prompt prints for a line.
std::string printed(const std::wstring& line) {
    std::string text;
    std::FILE* const pipe = _wpopen((L"\"" + line + L"\"").c_str(), L"rb");
    for (int c = 0; pipe != nullptr && (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
    if (pipe != nullptr) _pclose(pipe);
    return text;
}

} // namespace

TEST(CopyCommandLine, RepeatsTheLastAnalysis) {
    App app;
    app.write("two & words.csv",
              "label,A b,50 %,A b,y,\xe4,out\na,1,6,2,9,3,1\nb,2,4,1,7,7,1\nc,3,5,-3,8,1,0\nd,4,1,0,2,"
              "8,0\ne,5,2,7,4,6,1\nf,6,3,9,1,2,4\ng,7,9,3,5,5,5\nh,8,0,4,3,9,5\ni,5,5,1,1,1,2\n");
    app.start("\"two & words.csv\"");
    const char* const bin = std::getenv("OMBRIVANTEL_BIN");
    ASSERT_TRUE(bin != nullptr && CopyFileA((std::string(bin) + "\\ombrivantel-batch.exe").c_str(),
                                            app.path("ombrivantel-batch.exe").c_str(), TRUE) != 0);
    EXPECT_FALSE(app.isItemEnabled(commandCopyCommandLine));
    const Dialog excluded = app.runCommand(commandExcludeVariable, "exclude");
    excluded.choose(1101, 6);
    excluded.press(IDOK);
    const auto expectRepeated = [&] {
        app.runCommand(commandCopyCommandLine);
        std::string shown = app.lowerText();
        std::erase(shown, '\r');
        EXPECT_EQ(printed(copiedText()), shown);
    };
    const Dialog regression = app.runCommand(711, "multiple regression analysis");
    regression.choose(2101, 4);
    regression.click(2102 + 3); // forward selection
    regression.type(2111, "0.1");
    regression.press(IDOK);
    expectRepeated();
    app.runCommand(commandTextbookNumerics);
    const Dialog powers = app.runCommand(751, "convert degrees of polynomial terms");
    powers.choose(2202, 1);
    powers.type(2212, "2.5");
    powers.press(IDOK);
    const Dialog curve = app.waitForDialog("non-linear multiple regression analysis");
    curve.choose(2101, 4);
    curve.press(IDOK);
    expectRepeated();
    app.runCommand(commandCloseFile);
    EXPECT_FALSE(app.isItemEnabled(commandCopyCommandLine));
}
