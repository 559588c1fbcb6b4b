#include "app/screen_font.h"

#include <commdlg.h>
#include <cstdio>

#include "app/screens_window.h"
#include "report/print_pages.h"

namespace {

constexpr int boldWeight = 700;

CHARFORMATA formatOf(const CHOOSEFONTA& dialog) {
    const LOGFONTA& font = *dialog.lpLogFont;
    CHARFORMATA format = {};
    format.cbSize = sizeof format;
    format.dwMask = screenFormatMask;
    format.yHeight = dialog.iPointSize * 2; // tenths of a point in twips
    if (font.lfWeight >= boldWeight) format.dwEffects |= CFE_BOLD;
    if (font.lfItalic != 0) format.dwEffects |= CFE_ITALIC;
    if (font.lfUnderline != 0) format.dwEffects |= CFE_UNDERLINE;
    if (font.lfStrikeOut != 0) format.dwEffects |= CFE_STRIKEOUT;
    format.crTextColor = dialog.rgbColors;
    format.bCharSet = font.lfCharSet;
    format.bPitchAndFamily = font.lfPitchAndFamily;
    std::snprintf(format.szFaceName, sizeof format.szFaceName, "%s", font.lfFaceName);
    return format;
}

} // namespace

LOGFONTA logicalFont(const CHARFORMATA& format, int perInch) {
    LOGFONTA font = {};
    font.lfHeight = -MulDiv(format.yHeight, perInch, twipsPerInch);
    font.lfWeight = (format.dwEffects & CFE_BOLD) != 0 ? boldWeight : FW_NORMAL;
    font.lfItalic = (format.dwEffects & CFE_ITALIC) != 0;
    font.lfUnderline = (format.dwEffects & CFE_UNDERLINE) != 0;
    font.lfStrikeOut = (format.dwEffects & CFE_STRIKEOUT) != 0;
    font.lfCharSet = format.bCharSet;
    font.lfPitchAndFamily = format.bPitchAndFamily;
    std::snprintf(font.lfFaceName, sizeof font.lfFaceName, "%s", format.szFaceName);
    return font;
}

void chooseScreenFont(Program& program, int screen, bool selectionOnly) {
    const HWND window = program.screens[screen];
    CHARFORMATA format = {};
    format.cbSize = sizeof format;
    SendMessageA(window, EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
    const HDC device = GetDC(window);
    LOGFONTA font = logicalFont(format, GetDeviceCaps(device, LOGPIXELSY));
    ReleaseDC(window, device);
    CHOOSEFONTA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = program.window;
    dialog.lpLogFont = &font;
    dialog.rgbColors =
        (format.dwEffects & CFE_AUTOCOLOR) != 0 ? GetSysColor(COLOR_WINDOWTEXT) : format.crTextColor;
    dialog.Flags = CF_SCREENFONTS | CF_EFFECTS | CF_INITTOLOGFONTSTRUCT;
    if (ChooseFontA(&dialog) == 0) return;
    format = formatOf(dialog);
    const WPARAM scope = selectionOnly ? SCF_SELECTION : SCF_ALL;
    SendMessageA(window, EM_SETCHARFORMAT, scope, reinterpret_cast<LPARAM>(&format));
    // What is shown later has the font of the whole screen, too.
    if (!selectionOnly)
        SendMessageA(window, EM_SETCHARFORMAT, SCF_DEFAULT, reinterpret_cast<LPARAM>(&format));
    SetFocus(window);
}
