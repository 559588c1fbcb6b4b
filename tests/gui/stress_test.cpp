#include <gtest/gtest.h>
#include <random>
#include <winternl.h>

#include <psapi.h>

#include "analysis/run/commands.h"
#include "tests/gui/driver.h"

namespace {

std::mt19937 chance(20260101);

const auto& anyOf(const auto& items) {
    return items[chance() % std::size(items)];
}

DWORD processOf(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process;
}

bool isOfClass(HWND window, const char* name) {
    char found[64] = "";
    GetClassNameA(window, found, sizeof found);
    return lstrcmpA(found, name) == 0;
}

// The program's windows below another one, hidden ones and controls among them.
std::vector<HWND> windowsOf(const App& app, HWND parent = GetDesktopWindow()) {
    std::vector<HWND> windows;
    const auto keep = [](HWND window, LPARAM found) -> BOOL {
        reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
        return TRUE;
    };
    EnumChildWindows(parent, keep, reinterpret_cast<LPARAM>(&windows));
    std::erase_if(windows, [&](HWND window) { return processOf(window) != processOf(app.window()); });
    return windows;
}

// What a hand does to a control without a look at it: a text, or a click and an arrow key.
void touch(HWND control) {
    static const std::string texts[] = {"1", "2", "0.5", "0", "-1", "1e300", "99999999999", "nan", "x", ""};
    RECT place = {};
    if (!IsWindowVisible(control) || !IsWindowEnabled(control) || !GetClientRect(control, &place)) return;
    if (isOfClass(control, "Edit")) {
        const auto text = reinterpret_cast<LPARAM>(anyOf(texts).c_str());
        SendMessageTimeoutA(control, WM_SETTEXT, 0, text, SMTO_NORMAL, 1000, nullptr);
        return;
    }
    const auto within = [](LONG length) { return chance() % static_cast<DWORD>(length + 1); };
    const LPARAM point = MAKELPARAM(within(place.right), within(place.bottom));
    PostMessageA(control, WM_LBUTTONDOWN, MK_LBUTTON, point);
    PostMessageA(control, WM_LBUTTONUP, 0, point);
    PostMessageA(control, WM_KEYDOWN, chance() % 3 == 0 ? VK_UP : VK_DOWN, 0);
}

// Answers what a command asks until it asks no more, most often by "Okay" and after 20 rounds by "Cancel"
// alone. The dialogs of Windows, whose commands lie below the file's, are cancelled.
void answer(const App& app, UINT command) {
    const bool isOwn = command > commandOpenFile || command == commandAbout;
    for (int round = 0; IsWindowEnabled(app.window()) == 0; ++round) {
        ASSERT_LT(round, 60) << "no end of dialogs";
        for (const HWND dialog : windowsOf(app)) {
            if (!isOfClass(dialog, "#32770") || GetAncestor(dialog, GA_ROOT) != dialog) continue;
            if (IsWindowVisible(dialog) == 0 || IsWindowEnabled(dialog) == 0) continue;
            if (GetDlgItem(dialog, fileName) != nullptr) PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
            // No hand reaches a dialog below an alert.
            for (int k = 0; isOwn && k < 6 && IsWindowEnabled(dialog); ++k) {
                const std::vector<HWND> controls = windowsOf(app, dialog);
                if (!controls.empty()) touch(anyOf(controls));
                app.settle();
            }
            if (IsWindowEnabled(dialog) == 0) continue;
            PostMessageA(dialog, WM_COMMAND, isOwn && round < 20 && chance() % 4 != 0 ? IDOK : IDCANCEL, 0);
            app.settle();
        }
    }
}

struct Resources {
    std::size_t windows, handles, drawing, megabytes;
};

// Wine does not count handles and GDI objects, but it has the list of all handles, 24 bytes each behind their
// number, and each process has its table of GDI objects, 24 bytes each, whose type is 0 where there is none.
Resources resourcesOf(const App& app) {
    const DWORD identifier = processOf(app.window());
    const HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, identifier);
    std::vector<DWORD> list(1 << 18);
    EXPECT_EQ(NtQuerySystemInformation(static_cast<SYSTEM_INFORMATION_CLASS>(16), list.data(),
                                       static_cast<ULONG>(list.size() * sizeof(DWORD)), nullptr),
              0);
    std::size_t handles = 0, drawing = 0;
    for (std::size_t k = 0; k < list[0]; ++k) handles += list[2 + 6 * k] == identifier;

    PROCESS_BASIC_INFORMATION basic = {};
    EXPECT_EQ(NtQueryInformationProcess(process, ProcessBasicInformation, &basic, sizeof basic, nullptr), 0);
    std::vector<char> table(24 << 14);
    const char* at = reinterpret_cast<const char*>(basic.PebBaseAddress) + 0xf8;
    EXPECT_TRUE(ReadProcessMemory(process, at, &at, sizeof at, nullptr) &&
                ReadProcessMemory(process, at, table.data(), table.size(), nullptr));
    for (std::size_t type = 14; type < table.size(); type += 24) drawing += table[type] != 0;

    PROCESS_MEMORY_COUNTERS memory = {};
    EXPECT_TRUE(GetProcessMemoryInfo(process, &memory, sizeof memory));
    CloseHandle(process);
    return {windowsOf(app).size(), handles, drawing, memory.PagefileUsage >> 20};
}

} // namespace

// Each command once, then at random. Wine's file dialog keeps a key of its own open for each file that is
// chosen.
TEST(Stress, RandomCommandsLeaveNothingBehind) {
    App app;
    const std::string files[] = {"birthwt",  "cars",   "cities",  "iris",
                                 "menarche", "mtcars", "ovarian", "swiss"};
    app.start();
    std::vector<MenuItem> items = app.menuItems();
    std::erase_if(items, [](const MenuItem& item) { return item.command == 0; });
    Resources first = {};
    std::size_t opened = 0, next = 0;
    for (int k = 1; k <= 200; ++k) {
        UINT command = commandOpenFile;
        if (app.isItemEnabled(commandImportTable) && chance() % 4 == 0) {
            const Dialog dialog = app.runCommand(commandImportTable, "Import Table");
            dialog.type(fileName, projectFile("samples\\import\\garden.csv"));
            dialog.press(IDOK);
            answer(app, commandImportTable);
            ++opened;
        } else if (app.isItemEnabled(commandOpenFile)) {
            const Dialog dialog = app.runCommand(commandOpenFile, "Open");
            dialog.choose(fileType, 0);
            dialog.type(fileName, projectFile("samples\\" + anyOf(files) + ".csv"));
            dialog.press(IDOK);
            ++opened;
        } else {
            do command = next < items.size() ? items[next++].command : anyOf(items).command;
            while (!app.isItemEnabled(static_cast<int>(command)));
            if (k % 10 == 0) command = commandCloseFile;
            app.runCommand(static_cast<int>(command));
            answer(app, command);
        }
        ASSERT_TRUE(app.isRunning()) << command;
        if (k % 50 != 0) continue;
        PostMessageA(FindWindowA("graph", "graph"), WM_CLOSE, 0, 0);
        for (const int clear : {commandUpperClear, commandLowerClear}) app.runCommand(clear);
        const Resources now = resourcesOf(app);
        if (k == 50) first = now, opened = 0;
        EXPECT_LE(now.windows, first.windows);
        EXPECT_LE(now.handles, first.handles + opened);
        EXPECT_LE(now.drawing, first.drawing + 40);     // fonts in use
        EXPECT_LE(now.megabytes, first.megabytes + 40); // the heap of the longest report yet
    }
    EXPECT_EQ(app.close(), 0);
}

// The file of before, which another name keeps, is not touched: a new one comes into its place.
TEST(Stress, AKilledProgramLeavesAWholeSettingsFile) {
    App app;
    app.start();
    app.close();
    ASSERT_TRUE(CreateHardLinkA(app.path("before").c_str(), app.path("Ombrivantel.par").c_str(), nullptr));
    for (DWORD time = 0; time < 8; ++time) {
        app.write("Ombrivantel.par.new", "of a program that was killed");
        app.start();
        SetWindowPos(app.window(), nullptr, 0, 0, 700, 400, SWP_NOMOVE | SWP_NOZORDER);
        app.settle();
        PostMessageA(app.window(), WM_CLOSE, 0, 0);
        Sleep(time);
        app.kill();
        EXPECT_EQ(app.read("Ombrivantel.par").size(), 1412U);
    }
    app.start();
    app.close();
    EXPECT_FALSE(app.read("Ombrivantel.par") == app.read("before"));
}
