#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <tuple>

#include "analysis/run/commands.h"
#include "tests/gui/driver.h"
#include "version.h"

namespace {

// Left, top, right and bottom, on the screen or in the client area of `parent`.
using Place = std::vector<LONG>;

Place placeOf(HWND window, HWND parent = nullptr) {
    RECT place = {};
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
    return {place.left, place.top, place.right, place.bottom};
}

Place centred() {
    const LONG left = (GetSystemMetrics(SM_CXSCREEN) - 800) / 2,
               top = (GetSystemMetrics(SM_CYSCREEN) - 480) / 2;
    return {left, top, left + 800, top + 480};
}

// Window managers take their time to place a window.
void expectPlace(const App& app, const Place& expected) {
    waitUntil("the window to be in its place", [&] { return placeOf(app.window()) == expected; });
}

// With "\n" line ends.
std::string clipboardText() {
    std::string text;
    if (!OpenClipboard(nullptr)) return "the clipboard is in use";
    if (const HANDLE data = GetClipboardData(CF_TEXT)) text = static_cast<const char*>(GlobalLock(data));
    CloseClipboard();
    std::erase(text, '\r');
    return text;
}

// The commands of the items that cannot be chosen, in the order of the menus.
std::string greyedItems(const App& app) {
    std::string commands;
    for (const MenuItem& item : app.menuItems()) {
        if (item.command != 0 && !app.isItemEnabled(static_cast<int>(item.command)))
            commands += std::to_string(item.command) + " ";
    }
    return commands;
}

} // namespace

TEST(MainWindow, FirstStartCentresTheWindowAndWritesTheSettings) {
    App app;
    app.start();
    expectPlace(app, centred());
    EXPECT_EQ(app.read("Ombrivantel.par").size(), 1412U);
    EXPECT_EQ(app.statusText(), " status :");
    EXPECT_EQ(app.upperText() + app.lowerText(), "");
    for (const int screen : {CONTROL_UPPER_SCREEN, CONTROL_LOWER_SCREEN})
        EXPECT_EQ(app.startFont(screen), "Courier New 200 0");
    waitUntil("the focus", [&] { return app.focus() == app.child(CONTROL_LOWER_SCREEN); });
    EXPECT_EQ(app.close(), 0);
}

TEST(MainWindow, KeptRectangleIsTakenAndKeptAgain) {
    Settings settings;
    setDefaultSettings(settings);
    std::tie(settings.windowLeft, settings.windowTop, settings.windowRight, settings.windowBottom) =
        std::tuple{100, 50, 900, 650};
    std::tie(settings.windowWidth, settings.windowHeight) = std::tuple{800, 600};
    App app;
    app.writeSettings(settings);
    app.start();
    expectPlace(app, {100, 50, 900, 650});
    MoveWindow(app.window(), 120, 80, 700, 400, TRUE);
    const Place moved = {120, 80, 820, 480};
    expectPlace(app, moved);
    const Dialog about = app.runCommand(commandAbout, "about");
    const Place place = placeOf(about.window());
    EXPECT_NEAR(place[0] + place[2], 120 + 820, 1); // the middles, doubled
    EXPECT_NEAR(place[1] + place[3], 80 + 480, 1);
    about.press(IDOK);
    EXPECT_EQ(app.close(), 0);
    app.start();
    expectPlace(app, moved);
    EXPECT_EQ(app.close(), 0);

    std::tie(settings.windowRight, settings.windowBottom) = std::tuple{110, 60};
    app.writeSettings(settings);
    app.start();
    expectPlace(app, {100, 50, 500, 370}); // the least size
}

TEST(MainWindow, StartsFromAFolderOutsideTheCodePage) {
    App app;
    const std::filesystem::path folder = app.moveProgram(L"\u65e5\u672c");
    app.start();
    EXPECT_EQ(std::filesystem::file_size(folder / "Ombrivantel.par"), 1412U);
    EXPECT_EQ(app.close(), 0);
}

// Whatever the file holds, the program starts on a screen, works and ends. A short file counts as missing.
TEST(MainWindow, AnySettingsFileIsTaken) {
    std::mt19937 random(7);
    std::string wild(1412, '\0');
    for (char& each : wild) each = static_cast<char>(random());
    for (const std::string& bytes : {std::string(), std::string(1411, 'x'), std::string(1412, '\xff'),
                                     std::string(1412, '\x7f'), std::string(1412, '\0'), wild, wild + wild}) {
        App app;
        app.write("data.csv", "label,A,B\na,1,6\nb,2,4\nc,3,5\nd,4,1\ne,5,2\n");
        app.write("Ombrivantel.par", bytes);
        app.start("data.csv");
        if (bytes.size() < 1412) expectPlace(app, centred());
        EXPECT_NE(MonitorFromWindow(app.window(), MONITOR_DEFAULTTONULL), nullptr);
        const Dialog dialog = app.runCommand(710, "fundamental statistics analysis");
        EXPECT_FALSE(dialog.isChecked(950)); // whatever stood in the file
        dialog.press(IDOK);
        EXPECT_EQ(app.statusText(), "status : fundamental analysis statistics");
        EXPECT_EQ(app.close(), 0);
        EXPECT_EQ(app.read("Ombrivantel.par").size(), 1412U);
    }
}

TEST(MainWindow, SecondCopyEndsAtOnce) {
    App first, second;
    first.start();
    second.launch();
    EXPECT_EQ(second.waitForEnd(), 0);
    EXPECT_THROW(second.read("Ombrivantel.par"), std::runtime_error);
    EXPECT_TRUE(first.isRunning());
    EXPECT_EQ(first.close(), 0);
    second.start();
}

// A folder of the settings file's name stands in its way, at the start and at the end.
TEST(MainWindow, TellsThatTheSettingsCannotBeWritten) {
    App app;
    const std::string settings = app.path("Ombrivantel.par");
    const auto expectAlert = [&] {
        const Dialog alert = app.waitForDialog("alert");
        EXPECT_EQ(alert.text(messageText), "failed to open .par file");
        alert.press(IDOK);
        EXPECT_EQ(app.waitForEnd(), 0);
    };
    ASSERT_TRUE(CreateDirectoryA(settings.c_str(), nullptr));
    app.launch();
    expectAlert();

    ASSERT_TRUE(RemoveDirectoryA(settings.c_str()));
    app.start();
    ASSERT_TRUE(DeleteFileA(settings.c_str()) && CreateDirectoryA(settings.c_str(), nullptr));
    PostMessageA(app.window(), WM_CLOSE, 0, 0);
    expectAlert();
}

TEST(MainWindow, MenusHoldEveryItem) {
    App app;
    app.write("data.csv", "label,A\na,1\n");
    app.start();
    std::string text, menu;
    for (const MenuItem& item : app.menuItems()) {
        if (item.menu != menu) text += "\n" + item.menu;
        menu = item.menu;
        text += "|";
        text += (item.command != 0 ? std::to_string(item.command) + " " : "") + item.text;
    }
    EXPECT_EQ(text + "\n", readFile(projectFile("tests/gui/menus.txt")));

    const std::string withoutData =
        "702 703 799 710 711 712 713 714 715 716 717 720 721 722 723 724 730 731 732 740 "
        "741 742 751 752 753 754 755 756 757 801 853 854 855 856 857 ";
    EXPECT_EQ(greyedItems(app), withoutData);
    EXPECT_EQ(app.close(), 0);
    app.start("data.csv");
    EXPECT_EQ(greyedItems(app), "701 799 730 757 801 852 854 855 856 857 ");
    app.runCommand(commandCloseFile);
    EXPECT_EQ(greyedItems(app), withoutData);
}

TEST(MainWindow, KeysReachTheirCommands) {
    App app;
    app.write("data.csv", "label,A\na,1\n");
    app.start("data.csv");
    EXPECT_NE(app.upperText(), "");
    app.pressKeys({VK_CONTROL, VK_SHIFT, 'L'});
    waitUntil("the upper screen to be empty", [&] { return app.upperText().empty(); });

    // "Open File" is greyed while data is loaded, for its key too.
    app.pressKeys({VK_CONTROL, 'O'});
    app.pressKeys({VK_CONTROL, 'T'});
    const Dialog about = app.waitForDialog("about");
    EXPECT_EQ(about.text(CONTROL_ABOUT_TEXT), "Ombrivantel\nversion " OMBRIVANTEL_VERSION);
    about.press(IDOK);
    EXPECT_FALSE(app.hasDialog());

    const auto expectFocus = [&](int screen) {
        waitUntil("the focus", [&] { return app.focus() == app.child(screen); });
    };
    app.pressKeys({VK_F6});
    expectFocus(CONTROL_UPPER_SCREEN);
    app.pressKeys({VK_F6});
    expectFocus(CONTROL_LOWER_SCREEN);
    app.runCommand(710); // too few samples
    for (const WORD choice : {WORD{'A'}, WORD{'C'}}) {
        app.pressKeys({VK_SHIFT, VK_F10});
        HWND menu = nullptr;
        const auto isOpen = [&] {
            return (menu = FindWindowA("#32768", nullptr)) != nullptr && IsWindowVisible(menu);
        };
        waitUntil("the menu", isOpen);
        app.pressKeys({choice});
        waitUntil("the end of the menu", [&] { return !isOpen(); });
        app.settle();
    }
    EXPECT_EQ(clipboardText(), app.lowerText());

    app.pressKeys({VK_CONTROL, 'X'});
    const Dialog question = app.waitForDialog("confirmation");
    EXPECT_EQ(question.text(CONTROL_STATIC), "are you sure to exit the program?");
    EXPECT_EQ(question.text(IDOK) + " " + question.text(IDCANCEL), "okay cancel");
    question.press(IDCANCEL);
    ASSERT_TRUE(DeleteFileA(app.path("Ombrivantel.par").c_str()));
    app.pressKeys({VK_CONTROL, 'X'});
    app.waitForDialog("confirmation").press(IDOK);
    EXPECT_EQ(app.waitForEnd(), 0);
    EXPECT_EQ(app.read("Ombrivantel.par").size(), 1412U);
}

TEST(MainWindow, ScreensFollowTheSizeOfTheWindow) {
    App app;
    app.start();
    for (const SIZE size : {SIZE{800, 480}, SIZE{900, 700}, SIZE{400, 320}}) {
        SetWindowPos(app.window(), nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER);
        app.settle();
        RECT client = {};
        GetClientRect(app.window(), &client);
        const auto [left, top, right, bottom] = client;
        EXPECT_EQ(placeOf(app.child(CONTROL_UPPER_SCREEN), app.window()), (Place{0, 0, right, 150}));
        EXPECT_EQ(placeOf(app.child(CONTROL_LOWER_SCREEN), app.window()),
                  (Place{0, 150, right, bottom - 18}));
        const Place status = placeOf(app.child(CONTROL_STATUS_BAR), app.window());
        EXPECT_EQ(status, (Place{0, status[1], right, bottom}));
    }
}
