#include "tests/gui/driver.h"

#include <commctrl.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <richedit.h>
#include <shlobj.h>
#include <stdexcept>

namespace {

constexpr DWORD timeLimit = 20'000; // ms

void require(bool done, const std::string& what) {
    if (!done) throw std::runtime_error(what + ", error " + std::to_string(GetLastError()));
}

LRESULT send(HWND window, UINT message, WPARAM word = 0, LPARAM data = 0) {
    DWORD_PTR result = 0;
    require(SendMessageTimeoutW(window, message, word, data, SMTO_NORMAL, timeLimit, &result) != 0,
            "no answer to message " + std::to_string(message));
    return static_cast<LRESULT>(result);
}

void post(HWND window, UINT message, WPARAM word = 0, LPARAM data = 0) {
    require(PostMessageA(window, message, word, data) != 0, "cannot post message " + std::to_string(message));
}

// The text of a window, or of an entry of a list by its messages, with "\n" line ends. In wide characters,
// since Wine does not translate entries between processes.
std::string textOf(HWND window, UINT length = WM_GETTEXTLENGTH, UINT get = WM_GETTEXT, int entry = -1) {
    const LRESULT most = send(window, length, static_cast<WPARAM>(entry < 0 ? 0 : entry));
    std::wstring wide(static_cast<std::size_t>(most) + 1, L'\0');
    const WPARAM word = entry < 0 ? wide.size() : static_cast<WPARAM>(entry);
    wide.resize(static_cast<std::size_t>(send(window, get, word, reinterpret_cast<LPARAM>(wide.data()))));
    std::erase(wide, L'\r');
    std::string text(wide.size(), '\0');
    const auto count = static_cast<int>(wide.size());
    WideCharToMultiByte(CP_ACP, 0, wide.data(), count, text.data(), count, nullptr, nullptr);
    return text;
}

bool isListBox(HWND list) {
    char name[16] = "";
    GetClassNameA(list, name, sizeof name);
    return lstrcmpiA(name, "ListBox") == 0;
}

// A menu's own items first, then those of its menus.
void listMenu(HMENU menu, const std::string& caption, std::vector<MenuItem>& items) {
    std::vector<std::pair<HMENU, std::string>> menus;
    for (int k = 0; k < GetMenuItemCount(menu); ++k) {
        char text[256] = "";
        GetMenuStringA(menu, static_cast<UINT>(k), text, sizeof text, MF_BYPOSITION);
        const HMENU popup = GetSubMenu(menu, k);
        items.push_back({caption, popup != nullptr ? 0 : GetMenuItemID(menu, k), text});
        if (popup != nullptr) menus.emplace_back(popup, text);
    }
    for (const auto& [popup, text] : menus) listMenu(popup, text, items);
}

} // namespace

void waitUntil(const std::string& what, const std::function<bool()>& condition) {
    const ULONGLONG end = GetTickCount64() + timeLimit;
    while (!condition()) {
        require(GetTickCount64() < end, "waited in vain for " + what);
        Sleep(5);
    }
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    require(file.good(), "cannot read " + path);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string projectFile(const std::string& path) {
    const char* const folder = std::getenv("OMBRIVANTEL_SOURCE");
    require(folder != nullptr, "OMBRIVANTEL_SOURCE is not set");
    return std::string(folder) + "\\" + path;
}

HWND Dialog::control(int identifier) const {
    const HWND found = GetDlgItem(window_, identifier);
    require(found != nullptr, "no control " + std::to_string(identifier));
    return found;
}

bool Dialog::isChecked(int button) const {
    return send(control(button), BM_GETCHECK) == BST_CHECKED;
}

std::string Dialog::text(int identifier) const {
    return textOf(control(identifier));
}

std::vector<std::string> Dialog::entries(int list) const {
    const HWND window = control(list);
    const bool isBox = isListBox(window);
    std::vector<std::string> texts(static_cast<std::size_t>(send(window, isBox ? LB_GETCOUNT : CB_GETCOUNT)));
    int k = 0;
    for (std::string& text : texts) {
        text =
            textOf(window, isBox ? LB_GETTEXTLEN : CB_GETLBTEXTLEN, isBox ? LB_GETTEXT : CB_GETLBTEXT, k++);
    }
    return texts;
}

int Dialog::chosen(int list) const {
    const HWND window = control(list);
    return static_cast<int>(send(window, isListBox(window) ? LB_GETCURSEL : CB_GETCURSEL));
}

void Dialog::click(int button) const {
    require(IsWindowEnabled(window_) != 0, "a box waits over the dialog");
    require(isEnabled(button), "disabled is " + std::to_string(button));
    post(control(button), BM_CLICK);
    app_->settle();
}

void Dialog::press(int button) const {
    click(button);
    waitUntil("the end of a dialog", [&] { return !IsWindow(window_); });
    app_->settle();
}

void Dialog::check(int box, bool checked) const {
    if (isChecked(box) != checked) click(box);
}

void Dialog::choose(int list, int index) const {
    const HWND window = control(list);
    const bool isBox = isListBox(window);
    require(send(window, isBox ? LB_SETCURSEL : CB_SETCURSEL, static_cast<WPARAM>(index)) == index,
            "no such entry");
    const auto notify = [&](int code) {
        send(window_, WM_COMMAND, MAKEWPARAM(list, code), reinterpret_cast<LPARAM>(window));
    };
    if (!isBox) notify(CBN_SELENDOK);
    notify(isBox ? LBN_SELCHANGE : CBN_SELCHANGE);
}

void Dialog::type(int edit, const std::string& text) const {
    send(control(edit), WM_SETTEXT, 0,
         reinterpret_cast<LPARAM>(std::wstring(text.begin(), text.end()).c_str()));
}

// The upper half of vertical arrows counts up.
void Dialog::spin(int arrows, bool up) const {
    const HWND window = control(arrows);
    RECT place = {};
    GetClientRect(window, &place);
    const LPARAM point = MAKELPARAM(place.right / 2, up ? place.bottom / 4 : place.bottom * 3 / 4);
    post(window, WM_LBUTTONDOWN, MK_LBUTTON, point);
    post(window, WM_LBUTTONUP, 0, point);
    app_->settle();
}

App::App() {
    static int count = 0;
    std::string name = "ombrivantel-" + std::to_string(GetCurrentProcessId()) + "-";
    folder_ = (std::filesystem::temp_directory_path() / name.append(std::to_string(++count))).string();
    std::filesystem::remove_all(folder_); // of a run that was killed; process numbers come again
    require(CreateDirectoryA(folder_.c_str(), nullptr) != 0, "cannot make " + folder_);
    const char* const programs = std::getenv("OMBRIVANTEL_BIN");
    require(programs != nullptr, "OMBRIVANTEL_BIN is not set");
    program_ = path("Ombrivantel.exe");
    std::filesystem::copy(std::string(programs) + "\\Ombrivantel.exe", program_);
}

App::~App() {
    kill();
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

std::string App::write(const std::string& name, const std::string& contents) const {
    std::ofstream file(path(name), std::ios::binary);
    file << contents << std::flush;
    require(file.good(), "cannot write " + name);
    return path(name);
}

void App::writeSettings(const Settings& settings) const {
    unsigned char bytes[settingsFileSize];
    encodeSettings({{}, settings}, bytes);
    write("Ombrivantel.par", std::string(std::begin(bytes), std::end(bytes)));
}

std::filesystem::path App::moveProgram(const std::wstring& name) {
    std::filesystem::path folder = std::filesystem::path(folder_) / name;
    std::filesystem::create_directory(folder);
    std::filesystem::rename(program_, folder / program_.filename());
    program_ = folder / program_.filename();
    return folder;
}

void App::launch(const std::string& arguments) {
    STARTUPINFOW startUp = {};
    startUp.cb = sizeof startUp;
    std::wstring line = L"Ombrivantel.exe ";
    line.append(arguments.begin(), arguments.end());
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
    process_ = {};
    window_ = nullptr;
    // Under load Wine refuses now and then.
    waitUntil("the start of the program", [&] {
        return CreateProcessW(program_.c_str(), line.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED,
                              nullptr, std::filesystem::path(folder_).c_str(), &startUp, &process_) != 0;
    });
    inside_ = std::make_unique<Inside>(process_.hProcess);
    ResumeThread(process_.hThread);
}

void App::start(const std::string& arguments) {
    launch(arguments);
    waitUntil("the main window", [&] { return (window_ = findWindow("Ombrivantel", nullptr)) != nullptr; });
    settle();
}

bool App::isRunning() const {
    return process_.hProcess != nullptr && WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT;
}

int App::waitForEnd() {
    DWORD code = 0;
    waitUntil("the end of the program", [&] { return !isRunning(); });
    require(GetExitCodeProcess(process_.hProcess, &code) != 0, "no exit code");
    return static_cast<int>(code);
}

int App::close() {
    post(window_, WM_SYSCOMMAND, SC_CLOSE);
    return waitForEnd();
}

void App::kill() {
    if (!isRunning()) return;
    TerminateProcess(process_.hProcess, 99);
    WaitForSingleObject(process_.hProcess, timeLimit);
}

HWND App::focus() const {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    require(GetGUIThreadInfo(process_.dwThreadId, &info) != 0, "no focus known");
    return info.hwndFocus;
}

std::string App::startFont(int screen, WPARAM scope) const {
    CHARFORMATA format = {};
    format.cbSize = sizeof format;
    inside_->put(format);
    send(child(screen), EM_GETCHARFORMAT, scope, static_cast<LPARAM>(inside_->address()));
    format = inside_->get<CHARFORMATA>();
    const DWORD effects = format.dwEffects & ~static_cast<DWORD>(CFE_AUTOCOLOR);
    return std::string(format.szFaceName) + " " + std::to_string(format.yHeight) + " " +
           std::to_string(effects);
}

std::vector<MenuItem> App::menuItems() const {
    std::vector<MenuItem> items;
    const HMODULE program =
        LoadLibraryExA(path("Ombrivantel.exe").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    const HMENU menu = LoadMenuA(program, MAKEINTRESOURCEA(MENU_MAIN));
    listMenu(menu, "", items);
    DestroyMenu(menu);
    FreeLibrary(program);
    return items;
}

UINT App::itemState(int command) const {
    const auto state = static_cast<UINT>(
        inside_->call(GetMenuState, inside_->call(GetMenu, window_), command, MF_BYCOMMAND));
    require(state != UINT_MAX, "no menu item " + std::to_string(command));
    return state;
}

void App::runCommand(int command) const {
    require(IsWindowEnabled(window_) != 0, "a dialog waits over the main window");
    post(window_, WM_COMMAND, static_cast<WPARAM>(command));
    settle();
}

Dialog App::runCommand(int command, const std::string& caption) const {
    runCommand(command);
    return waitForDialog(caption);
}

void App::pressKeys(const std::vector<WORD>& keys) const {
    SetForegroundWindow(window_);
    waitUntil("the foreground", [&] { return GetForegroundWindow() == window_; });
    std::vector<INPUT> inputs(keys.size() * 2);
    for (std::size_t k = 0; k < keys.size(); ++k) {
        INPUT& down = inputs[k];
        INPUT& up = inputs[inputs.size() - 1 - k];
        down.type = up.type = INPUT_KEYBOARD;
        down.ki.wVk = up.ki.wVk = keys[k];
        up.ki.dwFlags = KEYEVENTF_KEYUP;
    }
    const auto count = static_cast<UINT>(inputs.size());
    require(SendInput(count, inputs.data(), sizeof(INPUT)) == count, "cannot press keys");
}

// The list of files lies in the program's memory, and the program gives it back.
void App::drop(const std::string& file) const {
    struct {
        DROPFILES head;
        char names[512];
    } list = {};
    list.head.pFiles = sizeof list.head;
    file.copy(list.names, sizeof list.names - 2);
    const std::uint64_t memory = inside_->call(GlobalAlloc, GMEM_FIXED, sizeof list);
    require(WriteProcessMemory(process_.hProcess, reinterpret_cast<void*>(memory), &list, sizeof list,
                               nullptr) != 0,
            "cannot drop " + file);
    inside_->call(PostMessageA, window_, WM_DROPFILES, memory, 0);
    settle();
}

HWND App::findWindow(const char* className, const char* caption) const {
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, className, caption)) != nullptr) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process == process_.dwProcessId && window != window_ && IsWindowVisible(window)) break;
    }
    return window;
}

Dialog App::waitForDialog(const std::string& caption) const {
    HWND found = nullptr;
    waitUntil("the dialog " + caption,
              [&] { return (found = findWindow(nullptr, caption.c_str())) != nullptr; });
    settle();
    return {*this, found};
}

// What is posted is handled in order. The mark is the step of the progress bar, which the program never uses.
void App::settle() const {
    static WPARAM mark = 1000;
    const HWND status = GetDlgItem(window_, CONTROL_STATUS_BAR);
    const HWND bar = status != nullptr ? FindWindowExA(status, nullptr, PROGRESS_CLASSA, nullptr) : nullptr;
    if (bar == nullptr || PostMessageA(bar, PBM_SETSTEP, ++mark, 0) == 0) return; // not there yet, or gone
    waitUntil("the program to be idle", [&] {
        DWORD_PTR step = 0;
        SendMessageTimeoutA(bar, PBM_GETSTEP, 0, 0, SMTO_NORMAL, 100, &step);
        return step == mark || !IsWindow(bar);
    });
}
