#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

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
    const LONG left = (GetSystemMetrics(SM_CXSCREEN) - 800) / 2;
    const LONG top = (GetSystemMetrics(SM_CYSCREEN) - 480) / 2;
    return {left, top, left + 800, top + 480};
}

// Window managers take their time to place a window.
void expectPlace(const App& app, const Place& expected) {
    waitUntil("the window to be in its place", [&] { return placeOf(app.window()) == expected; });
}

// The commands of the items that cannot be chosen, in the order of the menus.
std::string greyedItems(const App& app) {
    std::string commands;
    for (const MenuItem& item : app.menuItems()) {
        if (item.command != 0 && !app.isItemEnabled(static_cast<int>(item.command))) {
            commands += std::to_string(item.command) + " ";
        }
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
    EXPECT_EQ(app.startFont(CONTROL_UPPER_SCREEN), "Courier New 200 0");
    EXPECT_EQ(app.startFont(CONTROL_LOWER_SCREEN), "Courier New 200 0");
    waitUntil("the focus", [&] { return app.focus() == app.child(CONTROL_LOWER_SCREEN); });
    EXPECT_EQ(app.close(), 0);
}

TEST(MainWindow, KeptRectangleIsTakenAndKeptAgain) {
    Settings settings;
    setDefaultSettings(settings);
    settings.windowLeft = 100;
    settings.windowTop = 50;
    settings.windowRight = 900;
    settings.windowBottom = 650;
    settings.windowWidth = 800;
    settings.windowHeight = 600;
    App app;
    app.writeSettings(settings);
    app.start();
    expectPlace(app, {100, 50, 900, 650});
    MoveWindow(app.window(), 120, 80, 700, 400, TRUE);
    const Place moved = {120, 80, 820, 480};
    expectPlace(app, moved);
    EXPECT_EQ(app.close(), 0);
    app.start();
    expectPlace(app, moved);
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
        app.runCommand(710, "fundamental statistics analysis").press(IDOK);
        EXPECT_EQ(app.statusText(), "status : fundamental analysis statistics");
        EXPECT_EQ(app.close(), 0);
        EXPECT_EQ(app.read("Ombrivantel.par").size(), 1412U);
    }
}

TEST(MainWindow, SecondCopyEndsAtOnce) {
    App first;
    App second;
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
        EXPECT_EQ(alert.text(0xffff), "failed to open .par file");
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
    std::string text;
    std::string menu;
    for (const MenuItem& item : app.menuItems()) {
        if (item.menu != menu) text += "\n" + item.menu;
        menu = item.menu;
        text += "|";
        if (item.command != 0) text += std::to_string(item.command) + " ";
        text += item.text;
    }
    EXPECT_EQ(
        text,
        "|File(&F)|Data(&D)|Analysis(&A)|Option(&O)|Help(&H)\n"
        "File(&F)|upperScreen|lowerScreen||516 Page SetUp\tCtrl + U||501 Exit\tCtrl + X\n"
        "upperScreen|502 Font Selected\tCtrl + Shift + N|503 Font All\tCtrl + Shift + F|"
        "|506 Clear Screen\tCtrl + Shift + L|508 Print\tCtrl + Shift + P|"
        "|510 Save\tCtrl + Shift + S|512 Save As\tCtrl + Shift + A\n"
        "lowerScreen|504 Font Selected\tCtrl + N|505 Font All\tCtrl + F||507 Clear Screen\tCtrl + L"
        "|509 Print\tCtrl + P||511 Save\tCtrl + S|513 Save As\tCtrl + A\n"
        "Data(&D)|701 Open File\tCtrl + O|702 Close File||703 Exclude Variable\n"
        "Analysis(&A)|&Common Analysis|&Quantification Analysis|&Similarity Data|&Non-Linear Analysis"
        "|Non-Linear &Regression||799 Prediction\n"
        "&Common Analysis|710 Fundamental Statistics||711 Multiple Regression Analysis"
        "|712 Principal Component Analysis|713 Canonical Correlation Analysis"
        "|714 Principal Factor Analysis|715 Maximum Likelihood Analysis|716 Discriminant Analysis"
        "|717 Cluster Analysis\n"
        "&Quantification Analysis|720 Association Measures Analysis|721 Quantification-1 Analysis"
        "|722 Quantification-2 Analysis|723 Quantification-3 Analysis|724 Three-Way Log-Linear Analysis\n"
        "&Similarity Data|730 Multidimentional Scaling Analysis|731 Quantification-4 Analysis"
        "|732 Principal Co-ordinates Analysis\n"
        "&Non-Linear Analysis|740 Multiple Logistic Analysis|741 Exponential Weibull Analysis"
        "|742 Propotional Hazard Analysis\n"
        "Non-Linear &Regression|751 Convertiong Degrees Regression|752 Involution Curve Regression"
        "|753 Exponential Curve Regression|754 Inverse Curve Regression|755 Logistic Curve 1 Regression"
        "|756 Logistic Curve 2 Regression|757 Gompertz Curve Regression\n"
        "Option(&O)|801 Parameter\tCtrl + M|802 Preference\tCtrl + K\n"
        "Help(&H)|401 About\tCtrl + T");

    const std::string withoutData =
        "702 703 799 710 711 712 713 714 715 716 717 720 721 722 723 724 730 731 732 740 "
        "741 742 751 752 753 754 755 756 757 801 ";
    EXPECT_EQ(greyedItems(app), withoutData);
    EXPECT_EQ(app.close(), 0);
    app.start("data.csv");
    EXPECT_EQ(greyedItems(app), "701 799 730 757 801 ");
    app.runCommand(commandCloseFile);
    EXPECT_EQ(greyedItems(app), withoutData);
}

// The keys that an item shows choose it; two commands have keys alone.
TEST(MainWindow, KeysAreThoseOfTheMenus) {
    App app;
    app.start();
    std::vector<std::string> shown = {"514 Ctrl + Shift + 1", "515 Ctrl + Shift + 2"};
    for (const MenuItem& item : app.menuItems()) {
        const std::size_t tab = item.text.find('\t');
        if (tab != std::string::npos)
            shown.push_back(std::to_string(item.command) + " " + item.text.substr(tab + 1));
    }
    std::vector<std::string> working;
    const HMODULE program =
        LoadLibraryExA(app.path("Ombrivantel.exe").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ACCEL keys[64];
    const int count =
        CopyAcceleratorTableA(LoadAcceleratorsA(program, MAKEINTRESOURCEA(ACCELERATORS_MAIN)), keys, 64);
    FreeLibrary(program);
    for (int k = 0; k < count; ++k) {
        std::ostringstream line;
        line << keys[k].cmd << (keys[k].fVirt & FCONTROL ? " Ctrl + " : " ");
        line << (keys[k].fVirt & FSHIFT ? "Shift + " : "") << static_cast<char>(keys[k].key);
        working.push_back(line.str());
    }
    std::sort(shown.begin(), shown.end());
    std::sort(working.begin(), working.end());
    EXPECT_EQ(working, shown);
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
    EXPECT_EQ(about.text(IDOK), "continue");
    about.press(IDOK);
    EXPECT_FALSE(app.hasDialog());

    app.pressKeys({VK_CONTROL, 'X'});
    const Dialog question = app.waitForDialog("confirmation");
    EXPECT_EQ(question.text(CONTROL_STATIC), "are you sure to exit the program?");
    EXPECT_EQ(question.text(IDOK) + " " + question.text(IDCANCEL), "okay cancel");
    question.press(IDCANCEL);
    EXPECT_TRUE(app.isRunning());
    ASSERT_TRUE(DeleteFileA(app.path("Ombrivantel.par").c_str()));
    app.pressKeys({VK_CONTROL, 'X'});
    app.waitForDialog("confirmation").press(IDOK);
    EXPECT_EQ(app.waitForEnd(), 0);
    EXPECT_EQ(app.read("Ombrivantel.par").size(), 1412U);
}

TEST(MainWindow, ScreensFollowTheSizeOfTheWindow) {
    App app;
    app.start();
    for (const SIZE size : {SIZE{800, 480}, SIZE{900, 700}, SIZE{400, 300}}) {
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
