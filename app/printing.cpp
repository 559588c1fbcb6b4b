#include "app/printing.h"

#include <commdlg.h>
#include <cstdio>
#include <winspool.h>

#include "app/message_box.h"
#include "app/page_setup.h"
#include "app/page_source.h"

namespace {

constexpr const char* documentName = "Kolvintrap documents";

// Asked first, since what the dialog does without a printer differs from system to system.
bool isAnyPrinter() {
    DWORD size = 0, count = 0;
    EnumPrintersA(PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS, nullptr, 4, nullptr, 0, &size, &count);
    return size > 0;
}

// The device context that the user chooses; null when cancelled or failed.
HDC choosePrinter(HWND owner) {
    if (!isAnyPrinter()) {
        showSystemError(owner, ERROR_INVALID_PRINTER_NAME);
        return nullptr;
    }
    PRINTDLGA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.Flags = PD_RETURNDC | PD_USEDEVMODECOPIESANDCOLLATE | PD_NOSELECTION | PD_HIDEPRINTTOFILE;
    dialog.nFromPage = dialog.nToPage = 1;
    dialog.nMinPage = 1;
    dialog.nMaxPage = 65535;
    dialog.nCopies = 1;
    const bool chosen = PrintDlgA(&dialog) != 0;
    releaseDialogMemory(dialog.hDevMode, dialog.hDevNames);
    if (!chosen && CommDlgExtendedError() != 0) showSystemError(owner, ERROR_INVALID_PRINTER_NAME);
    return chosen ? dialog.hDC : nullptr;
}

void writeFooter(HDC printer, const PrinterPage& page, int number) {
    char footer[32];
    const int length = std::snprintf(footer, sizeof footer, "-- %d --", number);
    TEXTMETRICA metric = {};
    GetTextMetricsA(printer, &metric);
    TextOutA(printer, footerLeft(page, length, metric.tmAveCharWidth), footerTop, footer, length);
}

// The error of a printer function that failed; some drivers tell none.
DWORD printerError() {
    const DWORD error = GetLastError();
    return error != ERROR_SUCCESS ? error : ERROR_WRITE_FAULT;
}

// All pages of a source; the error of the printer, or 0.
DWORD printPages(HDC printer, const PrinterPage& page, PageSource& source) {
    const LONG end = source.end();
    int number = 0;
    for (LONG start = 0; start < end;) {
        const LONG next = source.formatPage(start);
        if (next <= start) break;
        if (StartPage(printer) <= 0) return printerError();
        source.drawPage();
        writeFooter(printer, page, ++number);
        if (EndPage(printer) <= 0) return printerError();
        start = next;
    }
    return ERROR_SUCCESS;
}

// A control that formats nothing at all gives way to plain lines.
DWORD printText(HWND screen, HDC printer) {
    const PrinterPage page = printerPage(printer);
    const PageArea print = printArea(page);
    RichEditPages rich(screen, printer, pageArea(page), print);
    if (rich.end() > 0 && rich.formatPage(0) > 0) return printPages(printer, page, rich);
    TextPages plain(screen, printer, page, print);
    return printPages(printer, page, plain);
}

DWORD printDocument(HWND screen, HDC printer) {
    DOCINFOA document = {};
    document.cbSize = sizeof document;
    document.lpszDocName = documentName;
    SetLastError(ERROR_SUCCESS);
    if (StartDocA(printer, &document) <= 0) return printerError();
    const DWORD error = printText(screen, printer);
    if (error != ERROR_SUCCESS) {
        AbortDoc(printer);
        return error;
    }
    return EndDoc(printer) > 0 ? ERROR_SUCCESS : printerError();
}

} // namespace

void printScreen(Program& program, int screen) {
    const HDC printer = choosePrinter(program.window);
    if (printer == nullptr) return;
    fitScreenToPrinter(program, screen);
    const DWORD error = printDocument(program.screens[screen], printer);
    DeleteDC(printer);
    // A printer that asks for a file may be answered by "Cancel", too.
    const bool cancelled = error == ERROR_CANCELLED || error == ERROR_PRINT_CANCELLED;
    if (error != ERROR_SUCCESS && !cancelled) showSystemError(program.window, error);
}
