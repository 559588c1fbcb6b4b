#include <gtest/gtest.h>

#include "analysis/run/commands.h"
#include "tests/gui/driver.h"

namespace {

constexpr int decimalSign = CONTROL_IMPORT_FIRST + 2, thousands = CONTROL_IMPORT_FIRST + 3,
              missing = CONTROL_IMPORT_FIRST + 7;

Dialog openImport(const App& app, const std::string& path) {
    const Dialog files = app.runCommand(commandImportTable, "Import Table");
    files.type(fileName, path);
    files.press(IDOK);
    return app.waitForDialog("import table");
}

} // namespace

TEST(CheckData, TellsDoubtsRefusalsAndWhatIsLeftOut) {
    App app;
    const std::string path = app.write("gap.csv", "label,x\na,1\nb,NA\nc,3\nd,4\n");
    app.write("short.csv", "label,x\na\n");
    app.start("gap.csv");
    const std::string opened = "status : opened data file named : 'gap.csv'";
    EXPECT_EQ(app.statusText(), opened + "; 1 doubt, see Tools, Check Data");
    app.runCommand(commandCheckData);
    EXPECT_NE(app.lowerText().find("line 3; "), std::string::npos) << app.lowerText();
    app.runCommand(commandOmitMissing);
    EXPECT_NE(app.itemState(commandOmitMissing) & MF_CHECKED, 0U);
    app.runCommand(commandExcludeVariable, "exclude").press(IDOK);
    EXPECT_EQ(app.statusText(), opened + "; 1 of 4 samples left out");
    EXPECT_NE(app.upperText().find("\t-- 3 samples, 1 variables"), std::string::npos);

    const Dialog dialog = app.runCommand(731, "similarity data analysis");
    dialog.click(IDOK);
    const Dialog alert = app.waitForDialog("alert");
    EXPECT_TRUE(alert.text(messageText).starts_with("the rows of a table cannot be left out"));
    alert.press(IDOK);
    dialog.press(IDCANCEL);

    app.runCommand(commandCloseFile);
    EXPECT_FALSE(app.isItemEnabled(commandCheckData));
    app.drop(app.path("short.csv"));
    EXPECT_TRUE(app.isItemEnabled(commandCheckData));
    app.runCommand(commandCheckData);
    EXPECT_TRUE(app.lowerText().ends_with("line 2: it has 1 of 2 cells; use \"Import Table\"\n"));
}

TEST(ImportTable, SavesAndOpensWhatItsDialogShows) {
    App app;
    const std::string path = app.write("trees.txt", ";size;mass\nElm;1,5;2\nOak;998;3,25\n");
    app.start();
    openImport(app, path).press(IDCANCEL);
    const Dialog dialog = openImport(app, path);
    waitUntil("the focus", [&] { return app.focus() == dialog.control(CONTROL_IMPORT_FIRST); });
    EXPECT_EQ(dialog.entries(decimalSign), (std::vector<std::string>{"found: comma", "point", "comma"}));
    dialog.type(missing, "998");
    app.settle();
    EXPECT_EQ(dialog.text(CONTROL_IMPORT_PREVIEW),
              "label  size  mass \nElm     1.5     2 \nOak      NA  3.25 \n");
    dialog.click(IDOK);
    Dialog files = app.waitForDialog("Save As");
    EXPECT_EQ(files.text(fileName), "trees-import.csv");
    files.type(fileName, path); // the file itself
    files.click(IDOK);
    HWND question = nullptr; // whether to replace it
    waitUntil("the question",
              [&] { return (question = GetLastActivePopup(files.window())) != files.window(); });
    PostMessageA(question, WM_COMMAND, IDYES, 0);
    app.waitForDialog("alert").press(IDOK);
    EXPECT_TRUE(app.read("trees.txt").starts_with(";size"));
    dialog.click(IDOK);
    files = app.waitForDialog("Save As");
    files.type(fileName, app.path("trees-import.csv"));
    files.press(IDOK);
    EXPECT_EQ(app.read("trees-import.csv"), "label,size,mass\nElm,1.5,2\nOak,NA,3.25\n");
    EXPECT_NE(app.upperText().find("\t-- 2 samples, 2 variables\n\tvariables : size, mass\n"),
              std::string::npos);
    EXPECT_NE(app.lowerText().find("note : samples: 2, variables: 2\n"), std::string::npos);
    EXPECT_FALSE(app.isItemEnabled(commandImportTable));
}

TEST(ImportTable, AsksForWhatTheFileLeavesOpen) {
    App app;
    const std::string path = app.write("open.csv", "n,x,sex\nA,\"1,171\",f\nB,\"2,200\",m\n");
    app.start();
    const Dialog dialog = openImport(app, path);
    EXPECT_FALSE(dialog.isEnabled(IDOK));
    EXPECT_EQ(dialog.entries(thousands)[0], "please choose");
    EXPECT_NE(dialog.text(CONTROL_IMPORT_NOTES).find("\"decimal sign\" comma or \"thousands\" comma"),
              std::string::npos);
    dialog.choose(thousands, 2); // comma
    EXPECT_TRUE(dialog.isEnabled(IDOK));
    EXPECT_EQ(dialog.text(CONTROL_IMPORT_PREVIEW),
              "label     x  sex \nA      1171    1 \nB      2200    2 \n");
    EXPECT_NE(dialog.text(CONTROL_IMPORT_NOTES).find("'sex': 1 = f, 2 = m"), std::string::npos);
    dialog.press(IDCANCEL);
    EXPECT_EQ(app.upperText(), "");
}
