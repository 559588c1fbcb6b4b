#include "app/code_page.h"

bool writeInCodePage(const char* text, char* converted, int size) {
    wchar_t wide[64];
    BOOL lacks = FALSE;
    return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text, -1, wide, 64) > 0 &&
           WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide, -1, converted, size, nullptr, &lacks) >
               0 &&
           lacks == FALSE;
}

ErrorCode convertToCodePage(const char* text, Block<char>& converted) {
    Block<wchar_t> wide;
    const int count = MultiByteToWideChar(CP_UTF8, 0, text, -1, nullptr, 0);
    if (wide.allocate(count + 1) != success) return outOfMemory;
    MultiByteToWideChar(CP_UTF8, 0, text, -1, wide.data(), count);
    const int size = WideCharToMultiByte(CP_ACP, 0, wide.data(), -1, nullptr, 0, nullptr, nullptr);
    if (converted.allocate(size + 1) != success) return outOfMemory;
    WideCharToMultiByte(CP_ACP, 0, wide.data(), -1, converted.data(), size, nullptr, nullptr);
    return success;
}

void takeText(HWND control, char* text, int size) {
    wchar_t wide[512] = L"";
    GetWindowTextW(control, wide, 512);
    if (WideCharToMultiByte(CP_UTF8, 0, wide, -1, text, size, nullptr, nullptr) == 0) text[0] = '\0';
}
