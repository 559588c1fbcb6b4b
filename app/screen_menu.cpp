#include "app/screen_menu.h"

#include <richedit.h>

#include "app/resource_ids.h"

namespace {

void showMenu(const Program& program, HWND screen, POINT at) {
    const HMENU menu = LoadMenuA(program.instance, MAKEINTRESOURCEA(MENU_SCREEN));
    const HMENU popup = GetSubMenu(menu, 0);
    CHARRANGE selection = {};
    SendMessageA(screen, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selection));
    EnableMenuItem(popup, SCREEN_COPY, selection.cpMin == selection.cpMax ? MF_GRAYED : MF_ENABLED);
    SetFocus(screen);
    switch (TrackPopupMenu(popup, TPM_RETURNCMD | TPM_RIGHTBUTTON, at.x, at.y, 0, program.window, nullptr)) {
    case SCREEN_COPY:
        SendMessageA(screen, WM_COPY, 0, 0);
        break;
    case SCREEN_SELECT_ALL:
        SendMessageA(screen, EM_SETSEL, 0, -1);
        break;
    default:
        break;
    }
    DestroyMenu(menu);
}

// Where a menu opens that a key asks for: at the caret when that is in sight.
POINT caretOf(HWND screen) {
    POINT at = {};
    RECT client = {};
    GetCaretPos(&at);
    GetClientRect(screen, &client);
    if (PtInRect(&client, at) == 0) at = {};
    ClientToScreen(screen, &at);
    return at;
}

bool asksForMenu(const MSG& message) {
    const bool isShifted = GetKeyState(VK_SHIFT) < 0;
    return (message.message == WM_SYSKEYDOWN && message.wParam == VK_F10 && isShifted) ||
           (message.message == WM_KEYUP && message.wParam == VK_APPS);
}

} // namespace

bool translateScreenMessage(const Program& program, const MSG& message) {
    const HWND screen = message.hwnd, upper = program.screens[upperScreen],
               lower = program.screens[lowerScreen];
    if (screen == nullptr || (screen != upper && screen != lower)) return false;
    if (message.message == WM_KEYDOWN && message.wParam == VK_F6) {
        SetFocus(screen == upper ? lower : upper);
        return true;
    }
    if (asksForMenu(message)) {
        showMenu(program, screen, caretOf(screen));
        return true;
    }
    if (message.message != WM_RBUTTONUP) return false;
    DispatchMessageA(&message); // the control has had the button's way down
    showMenu(program, screen, message.pt);
    return true;
}
