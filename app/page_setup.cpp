#include "app/page_setup.h"

#include <commdlg.h>
#include <cstdio>
#include <richedit.h>
#include <winspool.h>

#include "app/message_box.h"

namespace {

// Orientation, paper size, length and width, source, quality and colour.
constexpr DWORD takenFields = 0x1E0F;

void takeFields(const DEVMODEA& from, DEVMODEA& to) {
    to.dmFields = takenFields;
    to.dmOrientation = from.dmOrientation;
    to.dmPaperSize = from.dmPaperSize;
    to.dmPaperLength = from.dmPaperLength;
    to.dmPaperWidth = from.dmPaperWidth;
    to.dmDefaultSource = from.dmDefaultSource;
    to.dmPrintQuality = from.dmPrintQuality;
    to.dmColor = from.dmColor;
}

// The steps that change an open printer; null, or what failed.
const char* changePrinter(HWND owner, HANDLE printer, char* name, const DEVMODEA& chosen,
                          PRINTER_INFO_2A* info, DWORD size) {
    if (GetPrinterA(printer, 2, reinterpret_cast<LPBYTE>(info), size, &size) == 0 ||
        info->pDevMode == nullptr) {
        return "failed to GetPrinter";
    }
    takeFields(chosen, *info->pDevMode);
    if (DocumentPropertiesA(owner, printer, name, info->pDevMode, info->pDevMode,
                            DM_IN_BUFFER | DM_OUT_BUFFER) != IDOK) {
        return "failed to set DocumentProperties";
    }
    info->pSecurityDescriptor = nullptr; // left as it is
    return SetPrinterA(printer, 2, reinterpret_cast<LPBYTE>(info), 0) != 0 ? nullptr : "failed to SetPrinter";
}

// Writes the chosen paper into the printer's own settings; null, or what failed.
const char* storePaper(HWND owner, char* name, const DEVMODEA& chosen) {
    PRINTER_DEFAULTSA access = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    HANDLE printer = nullptr;
    if (OpenPrinterA(name, &printer, &access) == 0) return "failed to OpenPrinter";
    DWORD size = 0;
    GetPrinterA(printer, 2, nullptr, 0, &size);
    const char* failure = nullptr;
    const HGLOBAL memory = GlobalAlloc(GHND, size);
    if (memory == nullptr) {
        failure = "failed to GlobalAlloc";
    } else {
        auto* info = static_cast<PRINTER_INFO_2A*>(GlobalLock(memory));
        if (info == nullptr) {
            failure = "failed to GlobalLock";
        } else {
            failure = changePrinter(owner, printer, name, chosen, info, size);
            if (GlobalUnlock(memory) == 0 && GetLastError() != NO_ERROR && failure == nullptr) {
                failure = "failed to GlobalUnlock";
            }
        }
        if (GlobalFree(memory) != nullptr && failure == nullptr) failure = "failed to GlobalFree";
    }
    ClosePrinter(printer);
    return failure;
}

// The default printer's device context without a dialog, or null.
HDC defaultPrinter(HWND owner) {
    PRINTDLGA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.Flags = PD_RETURNDC | PD_RETURNDEFAULT;
    const bool found = PrintDlgA(&dialog) != 0;
    releaseDialogMemory(dialog.hDevMode, dialog.hDevNames);
    return found ? dialog.hDC : nullptr;
}

} // namespace

void releaseDialogMemory(HGLOBAL mode, HGLOBAL names) {
    if (mode != nullptr) GlobalFree(mode);
    if (names != nullptr) GlobalFree(names);
}

bool pageSetUp(Program& program) {
    PAGESETUPDLGA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = program.window;
    dialog.Flags = PSD_DISABLEMARGINS | PSD_NOWARNING;
    if (PageSetupDlgA(&dialog) == 0) {
        if (CommDlgExtendedError() != 0) showError(program.window, "failed to page setup of printer");
        return false;
    }
    const char* failure = "failed to GlobalLock";
    auto* mode = static_cast<DEVMODEA*>(GlobalLock(dialog.hDevMode));
    auto* names = static_cast<DEVNAMES*>(GlobalLock(dialog.hDevNames));
    if (mode != nullptr && names != nullptr) {
        failure = storePaper(program.window, reinterpret_cast<char*>(names) + names->wDeviceOffset, *mode);
    }
    if (mode != nullptr) GlobalUnlock(dialog.hDevMode);
    if (names != nullptr) GlobalUnlock(dialog.hDevNames);
    releaseDialogMemory(dialog.hDevMode, dialog.hDevNames);
    if (failure != nullptr) showError(program.window, failure);
    return failure == nullptr;
}

PrinterPage printerPage(HDC printer) {
    return {GetDeviceCaps(printer, PHYSICALWIDTH),   GetDeviceCaps(printer, PHYSICALHEIGHT),
            GetDeviceCaps(printer, LOGPIXELSX),      GetDeviceCaps(printer, LOGPIXELSY),
            GetDeviceCaps(printer, PHYSICALOFFSETX), GetDeviceCaps(printer, PHYSICALOFFSETY)};
}

void fitScreenToPrinter(Program& program, int screen) {
    // The screen keeps the context for as long as it wraps by it.
    HDC& device = program.targetDevices[screen];
    const HDC printer = defaultPrinter(program.window);
    bool fitted = false;
    if (printer != nullptr) {
        const PageArea print = printArea(printerPage(printer));
        fitted = SendMessageA(program.screens[screen], EM_SETTARGETDEVICE, reinterpret_cast<WPARAM>(printer),
                              print.right - print.left) != 0;
    }
    if (!fitted) {
        if (printer != nullptr) DeleteDC(printer);
        showError(program.window, "failed to set width for rich text format.");
        return;
    }
    if (device != nullptr) DeleteDC(device);
    device = printer;
}
