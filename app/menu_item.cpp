#include "app/menu_item.h"

void enableItem(HWND window, int command, bool enabled) {
    EnableMenuItem(GetMenu(window), static_cast<UINT>(command),
                   MF_BYCOMMAND | static_cast<UINT>(enabled ? MF_ENABLED : MF_GRAYED));
}

void checkItem(HWND window, int command, bool checked) {
    CheckMenuItem(GetMenu(window), static_cast<UINT>(command),
                  MF_BYCOMMAND | static_cast<UINT>(checked ? MF_CHECKED : MF_UNCHECKED));
}
