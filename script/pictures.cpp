// Drives the window for script/pictures: reads actions from standard input, one a line, and answers each by
// one line when the program has come to rest: "ok", or what went wrong.
//
//   start PROGRAM [FILE]  starts the program, perhaps with a data file; both without blanks
//   command N             a menu command
//   choose LIST INDEX     in the dialog in front, or in the graph window
//   type EDIT TEXT        without blanks
//   check BUTTON          clicks a button that leaves the dialog open
//   press BUTTON          clicks a button that closes it
//   page INDEX            of the property sheet in front
//   close                 the main window, and waits until the program is gone
//   quit
#include <windows.h>

#include <commctrl.h>
#include <iostream>
#include <sstream>
#include <string>

namespace {

constexpr DWORD timeLimit = 20'000; // ms
constexpr DWORD pause = 50;

PROCESS_INFORMATION program = {};

// A null window would mean our own thread.
bool post(HWND window, UINT message, WPARAM word, LPARAM data) {
    return window != nullptr && PostMessageA(window, message, word, data) != 0;
}

HWND mainWindow() {
    return FindWindowA("Ombrivantel", nullptr);
}

// The dialog or message box in front of the main window, or null.
HWND dialogInFront() {
    const HWND front = GetLastActivePopup(mainWindow());
    return front != mainWindow() && IsWindowVisible(front) && !IsWindowEnabled(mainWindow()) ? front
                                                                                             : nullptr;
}

// Until the program has handled what was sent to it: a dialog is open then, or it waits for the next command.
bool rest() {
    DWORD_PTR result = 0;
    for (DWORD waited = 0; waited < timeLimit; waited += pause) {
        Sleep(pause);
        const HWND window = dialogInFront() != nullptr ? dialogInFront() : mainWindow();
        if (window == nullptr) continue;
        if (window == mainWindow() && !IsWindowEnabled(window)) continue;
        if (SendMessageTimeoutA(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, pause, &result) != 0) return true;
    }
    return false;
}

bool start(const std::string& path, const std::string& file) {
    std::string line = path + " " + file;
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &program))
        return false;
    CloseHandle(program.hThread);
    return rest();
}

bool choose(int list, WPARAM index) {
    const HWND parent = dialogInFront() != nullptr ? dialogInFront() : FindWindowA("graph", nullptr);
    const HWND control = GetDlgItem(parent, list);
    char className[16] = "";
    GetClassNameA(control, className, sizeof className);
    const bool isListBox = lstrcmpiA(className, "ListBox") == 0;
    SendMessageA(control, isListBox ? LB_SETCURSEL : CB_SETCURSEL, index, 0);
    const int changed = isListBox ? LBN_SELCHANGE : CBN_SELCHANGE;
    return control != nullptr &&
           post(parent, WM_COMMAND, static_cast<WPARAM>(MAKELONG(list, changed)),
                reinterpret_cast<LPARAM>(control)) &&
           rest();
}

// A property sheet holds the buttons of its pages one level down.
HWND findButton(HWND dialog, int button) {
    const HWND direct = GetDlgItem(dialog, button);
    if (direct != nullptr) return direct;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        const HWND inside = IsWindowVisible(child) ? GetDlgItem(child, button) : nullptr;
        if (inside != nullptr) return inside;
    }
    return nullptr;
}

bool press(int button, bool closes) {
    const HWND dialog = dialogInFront();
    if (!post(findButton(dialog, button), BM_CLICK, 0, 0)) return false;
    for (DWORD waited = 0; closes && IsWindow(dialog) && waited < timeLimit; waited += pause) Sleep(pause);
    return !(closes && IsWindow(dialog)) && rest();
}

bool closeProgram() {
    const bool gone = post(mainWindow(), WM_CLOSE, 0, 0) &&
                      WaitForSingleObject(program.hProcess, timeLimit) == WAIT_OBJECT_0;
    CloseHandle(program.hProcess);
    return gone;
}

bool act(std::istream& words) {
    std::string action;
    std::string path;
    std::string file;
    int identifier = 0;
    unsigned index = 0;
    words >> action;
    if (action == "start") {
        words >> path >> file;
        return start(path, file);
    }
    if (action == "close") return closeProgram();
    words >> identifier;
    if (action == "command")
        return post(mainWindow(), WM_COMMAND, static_cast<WPARAM>(identifier), 0) && rest();
    if (action == "choose") return words >> index && choose(identifier, index);
    if (action == "type")
        return words >> file && SetWindowTextA(GetDlgItem(dialogInFront(), identifier), file.c_str()) &&
               rest();
    if (action == "check") return press(identifier, false);
    if (action == "press") return press(identifier, true);
    if (action == "page")
        return post(dialogInFront(), PSM_SETCURSEL, static_cast<WPARAM>(identifier), 0) && rest();
    return false;
}

} // namespace

int main() {
    for (std::string line; std::getline(std::cin, line) && line.rfind("quit", 0) != 0;) {
        std::istringstream words(line);
        std::cout << (act(words) ? "ok" : "failed: " + line) << std::endl;
    }
}
