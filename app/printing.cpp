#include "app/printing.h"

#include <commdlg.h>
#include <cstdio>

#include "app/page_setup.h"
#include "app/page_source.h"
#include "app/system_error.h"

namespace {

constexpr const char* documentName = "Kolvintrap documents";

// The device context that the user chooses; null when cancelled or failed.
HDC choosePrinter(HWND owner) {
    PRINTDLGA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.Flags = PD_RETURNDC | PD_USEDEVMODECOPIESANDCOLLATE | PD_NOSELECTION;
    dialog.nFromPage = dialog.nToPage = 1;
    dialog.nMinPage = 1;
    dialog.nMaxPage = 65535;
    dialog.nCopies = 1;
    const bool chosen = PrintDlgA(&dialog) != 0;
    if (dialog.hDevMode != nullptr) GlobalFree(dialog.hDevMode);
    if (dialog.hDevNames != nullptr) GlobalFree(dialog.hDevNames);
    if (!chosen && CommDlgExtendedError() != 0) showSystemError(owner, ERROR_INVALID_PRINTER_NAME);
    return chosen ? dialog.hDC : nullptr;
}

PrinterPage pageOf(HDC printer) {
    return {GetDeviceCaps(printer, PHYSICALWIDTH), GetDeviceCaps(printer, PHYSICALHEIGHT),
            GetDeviceCaps(printer, LOGPIXELSX), GetDeviceCaps(printer, LOGPIXELSY)};
}

void writeFooter(HDC printer, const PrinterPage& page, int number) {
    char footer[32];
    const int length = std::snprintf(footer, sizeof footer, "-- %d --", number);
    TEXTMETRICA metric = {};
    GetTextMetricsA(printer, &metric);
    TextOutA(printer, footerLeft(page, length, metric.tmAveCharWidth), footerTop, footer, length);
}

// All pages of a source. False when the printer fails.
bool printPages(HDC printer, const PrinterPage& page, PageSource& source) {
    const LONG end = source.end();
    int number = 0;
    for (LONG start = 0; start < end;) {
        const LONG next = source.formatPage(start);
        if (next <= start) break;
        if (StartPage(printer) <= 0) return false;
        source.drawPage();
        writeFooter(printer, page, ++number);
        if (EndPage(printer) <= 0) return false;
        start = next;
    }
    return true;
}

// A control that formats nothing at all gives way to plain lines.
bool printText(HWND screen, HDC printer) {
    const PrinterPage page = pageOf(printer);
    const PageArea print = printArea(page);
    RichEditPages rich(screen, printer, pageArea(page), print);
    if (rich.end() > 0 && rich.formatPage(0) > 0) return printPages(printer, page, rich);
    TextPages plain(screen, printer, page, print);
    return printPages(printer, page, plain);
}

} // namespace

void printScreen(Program& program, int screen) {
    const HDC printer = choosePrinter(program.window);
    if (printer == nullptr) return;
    fitScreenToPrinter(program, screen);
    DOCINFOA document = {};
    document.cbSize = sizeof document;
    document.lpszDocName = documentName;
    DWORD error = ERROR_SUCCESS;
    if (StartDocA(printer, &document) <= 0) {
        error = GetLastError();
    } else if (!printText(program.screens[screen], printer)) {
        error = GetLastError();
        AbortDoc(printer);
    } else if (EndDoc(printer) <= 0) {
        error = GetLastError();
    }
    DeleteDC(printer);
    if (error != ERROR_SUCCESS) showSystemError(program.window, error);
}
