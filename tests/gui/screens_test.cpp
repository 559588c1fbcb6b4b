#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>
#include <system_error>
#include <windows.h>

#include <commctrl.h>
#include <richedit.h>

#include "analysis/run/commands.h"
#include "tests/gui/driver.h"

namespace {

constexpr int fontFace = 0x470, fontStyle = 0x471, fontSize = 0x472, fontUnderline = 0x411;

// Data that gives the upper screen so many lines, with a report below it.
void startWithLines(App& app, int lines, int variables) {
    std::string file = "label";
    for (int k = 0; k < variables; ++k) file.append(",v").append(std::to_string(k));
    for (int row = 0; row < lines - 7; ++row) {
        file += "\nsample " + std::to_string(row);
        for (int k = 0; k < variables; ++k) file.append(",").append(std::to_string(row * 31 + k * k % 7));
    }
    app.write("data.csv", file + "\n");
    app.start("data.csv");
    app.runCommand(710, "fundamental statistics analysis").press(IDOK);
}

void chooseText(const Dialog& dialog, int list, const std::string& text) {
    const std::vector<std::string> entries = dialog.entries(list);
    dialog.choose(list, static_cast<int>(std::find(entries.begin(), entries.end(), text) - entries.begin()));
}

std::string fontAt(const App& app, int screen, int from, int to) {
    SendMessageA(app.child(screen), EM_SETSEL, static_cast<WPARAM>(from), to);
    return app.startFont(screen, SCF_SELECTION);
}

void chooseFile(const Dialog& dialog, int type, const std::string& path) {
    dialog.choose(fileType, type);
    dialog.type(fileName, path);
    dialog.press(IDOK);
}

void answerBox(const App& app, const std::string& caption, const std::string& text, int button) {
    const Dialog box = app.waitForDialog(caption);
    EXPECT_EQ(box.text(messageText).find(text), 0U) << box.text(messageText);
    box.press(button);
}

std::string without(const char* characters, std::string text) {
    std::erase_if(text, [&](char c) { return std::string(characters).find(c) != std::string::npos; });
    return text;
}

// Turns a property sheet to a page, which it makes when it is turned to first.
Dialog pageOf(const App& app, const Dialog& sheet, int number, const std::string& caption) {
    SendMessageA(sheet.window(), PSM_SETCURSEL, static_cast<WPARAM>(number), 0);
    return {app, FindWindowExA(sheet.window(), nullptr, nullptr, caption.c_str())};
}

} // namespace

// Only the upper screen's "Font Selected" means the selection.
TEST(Screens, FontIsChosenForASelectionOrAll) {
    App app;
    startWithLines(app, 20, 2);
    int points = 10;
    for (const int command :
         {commandUpperFontSelected, commandUpperFontAll, commandLowerFontSelected, commandLowerFontAll}) {
        const int screen = command < commandLowerFontSelected ? CONTROL_UPPER_SCREEN : CONTROL_LOWER_SCREEN;
        fontAt(app, screen, 4, 9);
        const Dialog dialog = app.runCommand(command, "Font");
        chooseText(dialog, fontFace, "Liberation Mono");
        chooseText(dialog, fontStyle, "Bold");
        chooseText(dialog, fontSize, std::to_string(points += 2));
        dialog.check(fontUnderline, true);
        dialog.press(IDOK);
        EXPECT_EQ(app.focus(), app.child(screen));
        const std::string chosen = "Liberation Mono " + std::to_string(points * 20) + " 5";
        EXPECT_EQ(fontAt(app, screen, 4, 9), chosen);
        EXPECT_EQ(fontAt(app, screen, 20, 30), points == 12 ? "Courier New 200 0" : chosen);
    }
}

TEST(Screens, ShareOneFileAndItsType) {
    App app;
    startWithLines(app, 20, 2);
    const std::string upper = app.upperText(), lower = app.lowerText(), changed = "x" + lower;
    app.runCommand(commandUpperSave, "Save As").press(IDCANCEL);
    EXPECT_FALSE(app.hasDialog());
    chooseFile(app.runCommand(commandUpperSave, "Save As"), 0, app.path("report"));
    app.pressKeys({VK_CONTROL, VK_SHIFT, '2'});
    chooseFile(app.waitForDialog("Open"), 0, app.path("report.rtf"));
    EXPECT_EQ(app.lowerText(), upper);
    app.runCommand(710, "fundamental statistics analysis").press(IDOK);
    app.runCommand(commandLowerSave);
    app.pressKeys({VK_CONTROL, VK_SHIFT, '1'});
    chooseFile(app.waitForDialog("Open"), 0, app.path("report.rtf"));
    EXPECT_EQ(app.upperText(), lower);
    chooseFile(app.runCommand(commandLowerSaveAs, "Save As"), 1, app.path("report.txt"));
    EXPECT_EQ(without("\r", app.read("report.txt")), lower);

    app.write("false.rtf", "no rich text");
    PostMessageA(app.child(CONTROL_LOWER_SCREEN), WM_CHAR, 'x', 0);
    app.pressKeys({VK_CONTROL, VK_SHIFT, '2'});
    answerBox(app, "attention", "contents has been exchanged.\nsave it?", IDCANCEL);
    chooseFile(app.waitForDialog("Open"), 0, app.path("false.rtf"));
    answerBox(app, "error", std::system_category().message(ERROR_INVALID_DATA), IDOK);
    EXPECT_EQ(app.lowerText(), changed);
    app.pressKeys({VK_CONTROL, VK_SHIFT, '2'});
    answerBox(app, "attention", "", IDOK);
    chooseFile(app.waitForDialog("Open"), 1, app.path("missing.txt"));
    answerBox(app, "error", "invalid file handle for open rich text", IDOK);
    app.pressKeys({VK_CONTROL, VK_SHIFT, '1'});
    chooseFile(app.waitForDialog("Open"), 0, app.path("false.rtf"));
    EXPECT_EQ(app.upperText() + app.lowerText(), changed + changed);
}

TEST(Screens, StayWhenTheyCannotBeSaved) {
    App app;
    startWithLines(app, 20, 2);
    const std::string text = app.upperText(), folder = app.path("folder"), file = folder + "\\report.txt";
    std::filesystem::create_directory(folder);
    chooseFile(app.runCommand(commandUpperSaveAs, "Save As"), 1, file);
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
    PostMessageA(app.child(CONTROL_UPPER_SCREEN), WM_CHAR, 'x', 0);
    app.pressKeys({VK_CONTROL, VK_SHIFT, '1'});
    answerBox(app, "attention", "", IDOK);
    answerBox(app, "error", std::system_category().message(ERROR_ACCESS_DENIED), IDOK);
    EXPECT_FALSE(app.hasDialog());
    EXPECT_EQ(app.upperText(), "x" + text);
    EXPECT_EQ(without("\r", readFile(file)), text);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL);
}

// The default printer turns its pages into the text that OMBRIVANTEL_PRINTED names. Lines of 12 variables
// take three on paper.
TEST(Screens, ArePrintedOnNumberedPages) {
    const char* const printed = std::getenv("OMBRIVANTEL_PRINTED");
    ASSERT_NE(printed, nullptr);
    for (const auto& [variables, pageCount] : {std::pair(4, 3), std::pair(12, 7)}) {
        App app;
        startWithLines(app, 130, variables);
        std::filesystem::remove(printed);
        app.runCommand(commandUpperPrint, "Print").press(IDOK);
        EXPECT_FALSE(app.hasDialog());
        waitUntil("the printed pages", [&] { return std::filesystem::exists(printed); });
        std::istringstream pages(without(" \r\n\t", readFile(printed)));
        std::string text;
        int count = 0;
        for (std::string page; std::getline(pages, page, '\f'); text += page) {
            const std::string footer = std::string("--").append(std::to_string(++count)).append("--");
            EXPECT_EQ(page.find(footer), 0U);
            page.erase(0, footer.size());
        }
        EXPECT_EQ(count, pageCount);
        EXPECT_EQ(text, without(" \n\t", app.upperText()));
    }
}

// What is typed is taken as it is; without "save as default" it ends with the program.
TEST(Preferences, AreKeptAsTold) {
    App app;
    app.start();
    Dialog sheet = app.runCommand(commandPreference, "preference");
    Dialog page = pageOf(app, sheet, 0, "data file");
    EXPECT_TRUE(page.isChecked(CONTROL_FILE_CSV) && page.isChecked(CONTROL_LINK_DDE));
    page.click(CONTROL_FILE_EXCEL);
    page.click(CONTROL_LINK_ODBC);
    page.type(CONTROL_SHEET_NAME, page.text(CONTROL_SHEET_NAME) + " 2");
    page.click(CONTROL_SAVE_SOURCE);
    page = pageOf(app, sheet, 1, "string length");
    page.spin(CONTROL_VARIABLE_ARROWS, false);
    page.type(CONTROL_SAMPLE_STRING, "63");
    page.spin(CONTROL_SAMPLE_ARROWS, true);
    EXPECT_EQ(page.text(CONTROL_VARIABLE_STRING) + " " + page.text(CONTROL_SAMPLE_STRING), "10 63");
    page.type(CONTROL_SAMPLE_STRING, "99");
    page.click(CONTROL_SAVE_LENGTH);
    page = pageOf(app, sheet, 2, "graph");
    page.click(CONTROL_SIZING);
    page.click(CONTROL_EXPRESS_GRAPH);
    EXPECT_FALSE(page.isChecked(CONTROL_SIZING) || page.isEnabled(CONTROL_SIZING));
    pageOf(app, sheet, 3, "sheet 4").check(924, true);
    sheet.press(IDOK);
    EXPECT_EQ(app.close(), 0);

    app.start();
    sheet = app.runCommand(commandPreference, "preference");
    page = pageOf(app, sheet, 0, "data file");
    EXPECT_TRUE(page.isChecked(CONTROL_FILE_EXCEL) && page.isChecked(CONTROL_LINK_ODBC));
    EXPECT_EQ(page.text(CONTROL_SHEET_NAME), "data 2");
    page = pageOf(app, sheet, 1, "string length");
    EXPECT_EQ(page.text(CONTROL_VARIABLE_STRING) + " " + page.text(CONTROL_SAMPLE_STRING), "10 99");
    page = pageOf(app, sheet, 2, "graph");
    EXPECT_TRUE(page.isChecked(CONTROL_EXPRESS_GRAPH) && !page.isChecked(CONTROL_SIZING));
    sheet.press(IDCANCEL);
    sheet = app.runCommand(commandParameter, "parameter");
    for (int k = 0; k < 6; ++k) pageOf(app, sheet, k, "sheet " + std::to_string(k + 1)).check(911 + k, true);
}
