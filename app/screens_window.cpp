#include "app/screens_window.h"

#include <commctrl.h>
#include <cstdio>
#include <cstring>
#include <ole2.h>
#include <richedit.h>

#include "app/message_box.h"
#include "app/resource_ids.h"

namespace {

constexpr int upperHeight = 150;
constexpr int statusHeight = 18;
constexpr int progressTop = 3;
constexpr int progressHeight = 14;

constexpr DWORD lowerStyle = WS_CHILD | WS_VISIBLE | WS_DLGFRAME | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE |
                             ES_AUTOVSCROLL | ES_AUTOHSCROLL | ES_WANTRETURN;
constexpr DWORD upperStyle = lowerStyle | 0x200; // a bit without a name that the control ignores
constexpr DWORD statusStyle = WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP | CCS_BOTTOM;
static_assert(lowerStyle == 0x507010c4 && upperStyle == 0x507012c4 && statusStyle == 0x50000103);

HMODULE loadRichEdit() {
    char directory[MAX_PATH] = "";
    const UINT length = GetSystemDirectoryA(directory, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return nullptr;
    char path[MAX_PATH + 16];
    std::snprintf(path, sizeof path, "%s\\%s", directory, "RICHED20.DLL");
    return LoadLibraryA(path);
}

HWND createChild(const Program& program, const char* className, DWORD extended, DWORD style, int identifier,
                 const RECT& place) {
    return CreateWindowExA(extended, className, "", style, place.left, place.top, place.right - place.left,
                           place.bottom - place.top, program.window,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(identifier)), program.instance,
                           nullptr);
}

// Courier New of 10 points, without effects, for the whole screen.
void setStartFont(HWND screen) {
    CHARFORMATA format = {};
    format.cbSize = sizeof format;
    format.dwMask = screenFormatMask;
    format.dwEffects = CFE_AUTOCOLOR;
    format.yHeight = 200;
    format.bCharSet = DEFAULT_CHARSET;
    format.bPitchAndFamily = FIXED_PITCH | FF_MODERN;
    std::snprintf(format.szFaceName, sizeof format.szFaceName, "Courier New");
    // For the text that is there and for all that is put there later.
    SendMessageA(screen, EM_SETCHARFORMAT, SCF_ALL, reinterpret_cast<LPARAM>(&format));
    SendMessageA(screen, EM_SETCHARFORMAT, SCF_DEFAULT, reinterpret_cast<LPARAM>(&format));
}

void setUpScreen(HWND screen) {
    SendMessageA(screen, EM_LIMITTEXT, 0, 0); // the control's own maximum
    RevokeDragDrop(screen);                   // files that are dropped on a screen are for the main window
    setStartFont(screen);
    SendMessageA(screen, EM_SETMODIFY, FALSE, 0); // a font alone is nothing to be saved
}

RECT progressPlace(HWND status) {
    RECT client = {};
    GetClientRect(status, &client);
    const int left = client.right / 10;
    return {left, progressTop, left + client.right * 4 / 5, progressTop + progressHeight};
}

void createProgressBar(Program& program) {
    const HWND status = program.screens[statusBar];
    const RECT place = progressPlace(status);
    program.progressBar =
        CreateWindowExA(0, PROGRESS_CLASSA, "", WS_CHILD, place.left, place.top, place.right - place.left,
                        place.bottom - place.top, status, nullptr, program.instance, nullptr);
    if (program.progressBar == nullptr) {
        showAlert(program.window, "failed to create progress bar");
        return;
    }
    SendMessageA(program.progressBar, PBM_SETRANGE, 0, MAKELPARAM(0, 100));
    SendMessageA(program.progressBar, PBM_SETSTEP, 1, 0);
}

void placeProgressBar(const Program& program) {
    if (program.progressBar == nullptr) return;
    const RECT place = progressPlace(program.screens[statusBar]);
    MoveWindow(program.progressBar, place.left, place.top, place.right - place.left, place.bottom - place.top,
               TRUE);
}

RECT upperPlace(const RECT& client) {
    return {0, 0, client.right, upperHeight};
}

RECT lowerPlace(const RECT& client) {
    const LONG height = client.bottom - upperHeight - statusHeight;
    return {0, upperHeight, client.right, upperHeight + (height > 0 ? height : 0)};
}

void place(HWND child, const RECT& at) {
    MoveWindow(child, at.left, at.top, at.right - at.left, at.bottom - at.top, TRUE);
}

} // namespace

bool createScreens(Program& program) {
    program.richEdit = loadRichEdit();
    RECT client = {};
    GetClientRect(program.window, &client);
    HWND* const screens = program.screens;
    screens[upperScreen] = createChild(program, "RichEdit20A", WS_EX_CLIENTEDGE, upperStyle,
                                       CONTROL_UPPER_SCREEN, upperPlace(client));
    screens[lowerScreen] = createChild(program, "RichEdit20A", WS_EX_CLIENTEDGE, lowerStyle,
                                       CONTROL_LOWER_SCREEN, lowerPlace(client));
    screens[statusBar] = createChild(program, STATUSCLASSNAMEA, 0, statusStyle, CONTROL_STATUS_BAR, {});
    if (screens[upperScreen] == nullptr || screens[lowerScreen] == nullptr || screens[statusBar] == nullptr) {
        showAlert(program.window, "failed to create child windows");
        return false;
    }
    setUpScreen(screens[upperScreen]);
    setUpScreen(screens[lowerScreen]);
    SendMessageA(screens[statusBar], SB_SIMPLE, FALSE, 0);
    SendMessageA(screens[statusBar], SB_SETTEXTA, 0, reinterpret_cast<LPARAM>(" status :"));
    createProgressBar(program);
    return true;
}

void layOutScreens(Program& program) {
    if (program.screens[statusBar] == nullptr) return;
    RECT client = {};
    GetClientRect(program.window, &client);
    place(program.screens[upperScreen], upperPlace(client));
    place(program.screens[lowerScreen], lowerPlace(client));
    SendMessageA(program.screens[statusBar], WM_SIZE, 0, 0);
    placeProgressBar(program);
}

void destroyScreens(Program& program) {
    for (HWND& screen : program.screens) {
        if (screen != nullptr) DestroyWindow(screen);
        screen = nullptr;
    }
    program.progressBar = nullptr; // went with the status bar
    for (HDC& device : program.targetDevices) {
        if (device != nullptr) DeleteDC(device);
        device = nullptr;
    }
}

void showText(Program& program, int screen, const char* text) {
    const HWND window = program.screens[screen];
    if (screen != statusBar) {
        SetWindowTextA(window, text);
        UpdateWindow(window);
        return;
    }
    char line[512];
    std::snprintf(line, sizeof line, "%.*s", static_cast<int>(std::strcspn(text, "\n")), text);
    SendMessageA(window, SB_SETTEXTA, 0, reinterpret_cast<LPARAM>(line));
    UpdateWindow(window);
}
