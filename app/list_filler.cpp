#include "app/list_filler.h"

#include <cstring>

bool isListBox(HWND list) {
    char name[16] = "";
    GetClassNameA(list, name, sizeof name);
    return lstrcmpiA(name, "ListBox") == 0;
}

ListFiller::ListFiller(HWND list)
    : list_(list), isBox_(isListBox(list)), device_(GetDC(list)),
      formerFont_(SelectObject(device_, reinterpret_cast<HGDIOBJ>(SendMessageA(list, WM_GETFONT, 0, 0)))) {}

ListFiller::~ListFiller() {
    SelectObject(device_, formerFont_);
    ReleaseDC(list_, device_);
    const LONG margins = 4 * GetSystemMetrics(SM_CXEDGE);
    const LONG width = widest_ + margins + (isBox_ ? 0 : GetSystemMetrics(SM_CXVSCROLL));
    SendMessageA(list_, isBox_ ? LB_SETHORIZONTALEXTENT : CB_SETDROPPEDWIDTH, static_cast<WPARAM>(width), 0);
}

void ListFiller::add(const char* text) {
    SendMessageA(list_, isBox_ ? LB_ADDSTRING : CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    SIZE size = {};
    GetTextExtentPoint32A(device_, text, static_cast<int>(std::strlen(text)), &size);
    if (size.cx > widest_) widest_ = size.cx;
}

void ListFiller::choose(int index) {
    SendMessageA(list_, isBox_ ? LB_SETCURSEL : CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}
