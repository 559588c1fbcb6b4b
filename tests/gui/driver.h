#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>
#include <windows.h>

#include "analysis/run/settings_file.h"
#include "app/resource_ids.h"
#include "tests/gui/inside.h"

// Drives the real program from outside, as its user does. Every wait has a time limit; what does not come in
// time or cannot be done throws std::runtime_error, which fails the test that runs, and App cleans up behind
// it.

// Controls of the boxes and file dialogs of Windows.
constexpr int messageText = 0xffff, fileName = 0x47c, fileType = 0x470;

std::string readFile(const std::string& path);

// The path of a file below the project's folder.
std::string projectFile(const std::string& path);

class App;

// A modal dialog or message box of the program; controls go by their identifiers.
class Dialog {
public:
    Dialog(const App& app, HWND window) : app_(&app), window_(window) {}

    HWND window() const { return window_; }
    HWND control(int identifier) const;
    bool isEnabled(int identifier) const { return IsWindowEnabled(control(identifier)) != 0; }
    bool isChecked(int button) const;
    std::string text(int identifier) const;
    // The entries of a list box or drop-down list, and the index of the chosen one or -1.
    std::vector<std::string> entries(int list) const;
    int chosen(int list) const;

    // Each returns when the program has handled it. `press` is for the buttons that close the dialog, and
    // returns when the command behind it has come to its end too.
    void click(int button) const;
    void press(int button) const;
    void check(int box, bool checked) const;
    void choose(int list, int index) const;
    void type(int edit, const std::string& text) const;
    void spin(int arrows, bool up) const;

private:
    const App* app_;
    HWND window_;
};

struct MenuItem {
    std::string menu; // the caption of the menu that the item is in
    UINT command;     // 0 for a separator or a menu
    std::string text;
};

// One copy of the program in a new folder of its own, which goes with it. It can be started again and again.
class App {
public:
    App();
    ~App();
    App(const App&) = delete;
    App& operator=(const App&) = delete;

    // Files of the program's folder, by their bare names.
    std::string path(const std::string& name) const { return folder_ + "\\" + name; }
    std::string write(const std::string& name, const std::string& contents) const; // returns the path
    std::string read(const std::string& name) const { return readFile(path(name)); }
    void writeSettings(const Settings& settings) const;
    // Puts the program into a folder of this name below its own, and returns the path of that folder.
    std::filesystem::path moveProgram(const std::wstring& name);

    // `launch` only starts the process; `start` waits for the window and until what the arguments ask for is
    // done.
    void launch(const std::string& arguments = "");
    void start(const std::string& arguments = "");
    bool isRunning() const;
    int waitForEnd(); // returns the exit code
    int close();      // by the close box, then waits for the end
    void kill();

    HWND window() const { return window_; }
    HWND child(int identifier) const { return Dialog(*this, window_).control(identifier); }
    HWND focus() const;
    std::string text(int child) const { return Dialog(*this, window_).text(child); }
    std::string upperText() const { return text(CONTROL_UPPER_SCREEN); }
    std::string lowerText() const { return text(CONTROL_LOWER_SCREEN); }
    std::string statusText() const { return text(CONTROL_STATUS_BAR); }
    // Face, twips and effects of what is typed next, or of another SCF_ scope.
    std::string startFont(int screen, WPARAM scope = 0) const;
    std::vector<MenuItem> menuItems() const; // menu by menu
    UINT itemState(int command) const;
    bool isItemEnabled(int command) const { return (itemState(command) & (MF_GRAYED | MF_DISABLED)) == 0; }

    // A menu command that opens no dialog, or one that opens the dialog with this caption.
    void runCommand(int command) const;
    Dialog runCommand(int command, const std::string& caption) const;
    // Keys pressed together in the main window. Returns at once.
    void pressKeys(const std::vector<WORD>& keys) const;
    // As if a file were dropped on the main window.
    void drop(const std::string& file) const;
    Dialog waitForDialog(const std::string& caption) const;
    bool hasDialog() const { return findWindow(nullptr, nullptr) != nullptr; }

    // Waits until the program has handled all that was posted to it, or shows a dialog meanwhile.
    void settle() const;

private:
    HWND findWindow(const char* className, const char* caption) const; // beside window_

    std::string folder_;
    std::filesystem::path program_;
    PROCESS_INFORMATION process_ = {};
    HWND window_ = nullptr;
    std::unique_ptr<Inside> inside_;
};

// Waits until condition() holds; throws when the time is over.
void waitUntil(const std::string& what, const std::function<bool()>& condition);
