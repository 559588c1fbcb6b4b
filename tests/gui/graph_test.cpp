#include "analysis/run/commands.h"
#include "tests/gui/analysis_dialogs.h"

namespace {

HWND graphWindow() {
    return FindWindowA("graph", "graph");
}

} // namespace

TEST(GraphWindow, ShowsTheLastPictureUntilTheNextAnalysis) {
    constexpr int horizontal = 1502, vertical = 1503, items = 1505, numbers = 1506;
    const std::string caption = "principal component analysis";
    App app;
    app.write("data.csv", readFile(projectFile("tests/reference/data/mtcars.csv")));
    Settings settings;
    setDefaultSettings(settings);
    settings.scatterNumbering = 1;
    app.writeSettings(settings);
    app.start("data.csv");
    app.runCommand(712, caption).press(IDOK);
    const Dialog graph = app.waitForDialog("graph");
    EXPECT_EQ(graph.entries(horizontal), (std::vector<std::string>{"factor 1", "factor 2"}));
    EXPECT_EQ(graph.chosen(horizontal), 0);
    EXPECT_EQ(graph.chosen(vertical), 1);
    graph.choose(items, 2);
    EXPECT_EQ(graph.chosen(numbers), 2); // both lists search the same item
    graph.choose(numbers, 5);
    EXPECT_EQ(graph.chosen(items), 5);
    RECT place = {};
    GetWindowRect(graphWindow(), &place);
    EXPECT_EQ(place.right - place.left, 480);
    EXPECT_EQ(place.bottom - place.top, 480);

    // The next analysis discards it, cancelled or not.
    app.runCommand(712, caption).press(IDCANCEL);
    EXPECT_EQ(graphWindow(), nullptr);
    const Dialog dialog = app.runCommand(712, caption);
    dialog.type(2201, "1");
    dialog.click(IDOK);
    const Dialog alert = app.waitForDialog("alert");
    EXPECT_EQ(alert.text(messageText), "failed to initialize and graph struct cause too few vector number");
    alert.press(IDOK);
    EXPECT_EQ(graphWindow(), nullptr);
    EXPECT_EQ(app.statusText(),
              "status : principal conponent analysis statistics-- based correlation matrix");

    // Esc closes one, and one that is open goes with the program.
    app.runCommand(711, "multiple regression analysis").press(IDOK);
    app.waitForDialog("graph");
    PostMessageA(GetDlgItem(graphWindow(), items), WM_KEYDOWN, VK_ESCAPE, 0);
    app.settle();
    EXPECT_EQ(graphWindow(), nullptr);
    app.runCommand(711, "multiple regression analysis").press(IDOK);
    app.waitForDialog("graph");
    EXPECT_TRUE(app.isItemEnabled(commandPrediction));
    EXPECT_EQ(app.close(), 0);
}
