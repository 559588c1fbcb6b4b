#include "app/dialog_place.h"

#include "analysis/run/window_place.h"

namespace {

ScreenArea areaOf(const RECT& place) {
    return {place.left, place.top, place.right, place.bottom};
}

} // namespace

void centreOverOwner(HWND dialog) {
    const HWND owner = GetWindow(dialog, GW_OWNER);
    RECT ownerPlace = {}, place = {};
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (GetWindowRect(owner, &ownerPlace) == 0 || GetWindowRect(dialog, &place) == 0 ||
        GetMonitorInfoA(MonitorFromWindow(owner, MONITOR_DEFAULTTONEAREST), &monitor) == 0) {
        return;
    }
    const ScreenArea to = placeOver(areaOf(ownerPlace), place.right - place.left, place.bottom - place.top,
                                    areaOf(monitor.rcWork));
    SetWindowPos(dialog, nullptr, to.left, to.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void focusControl(HWND dialog, int identifier) {
    const HWND control = GetDlgItem(dialog, identifier);
    if (IsWindowEnabled(control) == 0) return;
    SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
}
