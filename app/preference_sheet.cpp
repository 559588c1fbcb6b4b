#include "app/preference_sheet.h"

#include <commctrl.h>
#include <cstdio>
#include <cstdlib>

#include "analysis/run/saved_defaults.h"
#include "app/dialog_place.h"
#include "app/message_box.h"
#include "app/resource_ids.h"

namespace {

// A page and the settings that it edits; every page has this at DWLP_USER.
struct PreferencePage {
    Program& program;
    int saveBox;
    GraphPreferences graph; // of the page "graph"
};

// The boxes of the pages have the flags of 946 to 948 in the settings.
constexpr int boxToFlag = 946 - CONTROL_SAVE_SOURCE;

PreferencePage* pageOf(HWND window) {
    return reinterpret_cast<PreferencePage*>(GetWindowLongPtrA(window, DWLP_USER));
}

bool isChecked(HWND window, int control) {
    return IsDlgButtonChecked(window, control) == BST_CHECKED;
}

void check(HWND window, int control, bool checked) {
    CheckDlgButton(window, control, checked ? BST_CHECKED : BST_UNCHECKED);
}

std::int32_t& saveFlagOf(const PreferencePage& page) {
    return saveFlag(page.program.run.options.settings, page.saveBox + boxToFlag);
}

// A page that is being filled is not to be seen yet, and has not been changed.
void onChanged(HWND window) {
    if (IsWindowVisible(window)) PropSheet_Changed(GetParent(window), window);
}

// What all pages share: their record, their "save as default" box. False: the page has no record yet.
bool onAnyPage(HWND window, UINT message, LPARAM data) {
    if (message != WM_INITDIALOG) return pageOf(window) != nullptr;
    auto* page = reinterpret_cast<PreferencePage*>(reinterpret_cast<PROPSHEETPAGEA*>(data)->lParam);
    SetWindowLongPtrA(window, DWLP_USER, reinterpret_cast<LONG_PTR>(page));
    check(window, page->saveBox, saveFlagOf(*page) != 0);
    return true;
}

bool isApply(UINT message, LPARAM data) {
    return message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(data)->code == PSN_APPLY;
}

void confirmApply(HWND window) {
    saveFlagOf(*pageOf(window)) = isChecked(window, pageOf(window)->saveBox) ? 1 : 0;
    SetWindowLongPtrA(window, DWLP_MSGRESULT, PSNRET_NOERROR);
}

INT_PTR CALLBACK onSourcePage(HWND window, UINT message, WPARAM word, LPARAM data) {
    if (!onAnyPage(window, message, data)) return FALSE;
    Settings& settings = pageOf(window)->program.run.options.settings;
    if (message == WM_INITDIALOG) {
        check(window, settings.fileType == 1 ? CONTROL_FILE_EXCEL : CONTROL_FILE_CSV, true);
        check(window, settings.linkMethod == 1 ? CONTROL_LINK_ODBC : CONTROL_LINK_DDE, true);
        SendDlgItemMessageA(window, CONTROL_SHEET_NAME, EM_LIMITTEXT, sizeof settings.sheetName - 1, 0);
        SetDlgItemTextA(window, CONTROL_SHEET_NAME, settings.sheetName);
        return TRUE;
    }
    if (isApply(message, data)) {
        settings.fileType = isChecked(window, CONTROL_FILE_EXCEL) ? 1 : 0;
        settings.linkMethod = isChecked(window, CONTROL_LINK_ODBC) ? 1 : 0;
        GetDlgItemTextA(window, CONTROL_SHEET_NAME, settings.sheetName, sizeof settings.sheetName);
        confirmApply(window);
        return TRUE;
    }
    if (message == WM_COMMAND && (HIWORD(word) == BN_CLICKED || HIWORD(word) == EN_CHANGE)) onChanged(window);
    return FALSE;
}

struct LengthControls {
    int edit;
    int arrows;
    std::int32_t most;
    std::int32_t Settings::*length;
};

constexpr LengthControls lengths[] = {
    {CONTROL_VARIABLE_STRING, CONTROL_VARIABLE_ARROWS, mostVariableString, &Settings::variableStringLength},
    {CONTROL_SAMPLE_STRING, CONTROL_SAMPLE_ARROWS, mostSampleString, &Settings::sampleStringLength},
};

std::int32_t typedLength(HWND window, int edit) {
    char text[32] = "";
    GetDlgItemTextA(window, edit, text, sizeof text);
    return std::atoi(text);
}

void showLength(HWND window, int edit, std::int32_t length) {
    char text[32];
    std::snprintf(text, sizeof text, "%d", length);
    SetDlgItemTextA(window, edit, text);
}

INT_PTR CALLBACK onLengthPage(HWND window, UINT message, WPARAM word, LPARAM data) {
    if (!onAnyPage(window, message, data)) return FALSE;
    Program& program = pageOf(window)->program;
    Settings& settings = program.run.options.settings;
    if (message == WM_INITDIALOG) {
        for (const LengthControls& each : lengths) {
            showLength(window, each.edit, settings.*each.length);
            SendDlgItemMessageA(window, each.edit, EM_SETMODIFY, FALSE, 0);
            SendDlgItemMessageA(window, each.arrows, UDM_SETBUDDY,
                                reinterpret_cast<WPARAM>(GetDlgItem(window, each.edit)), 0);
        }
        return TRUE;
    }
    if (isApply(message, data)) {
        for (const LengthControls& each : lengths) {
            settings.*each.length = typedLength(window, each.edit);
            SendDlgItemMessageA(window, each.edit, EM_SETMODIFY, FALSE, 0);
        }
        InvalidateRect(program.window, nullptr, TRUE);
        confirmApply(window);
        return TRUE;
    }
    if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(data)->code == UDN_DELTAPOS) {
        const auto& step = *reinterpret_cast<const NMUPDOWN*>(data);
        for (const LengthControls& each : lengths) {
            if (step.hdr.idFrom != static_cast<UINT_PTR>(each.arrows)) continue;
            showLength(window, each.edit,
                       spinStringLength(typedLength(window, each.edit), each.most, step.iDelta < 0));
        }
        SetWindowLongPtrA(window, DWLP_MSGRESULT, TRUE);
        return TRUE;
    }
    if (message == WM_COMMAND && (HIWORD(word) == BN_CLICKED || HIWORD(word) == EN_CHANGE)) onChanged(window);
    return FALSE;
}

void showGraph(HWND window, const GraphPreferences& graph) {
    check(window, CONTROL_EXPRESS_GRAPH, graph.expressGraph);
    check(window, CONTROL_NUMBERING, graph.scatterNumbering);
    check(window, CONTROL_SIZING, graph.vectorSizing);
    EnableWindow(GetDlgItem(window, CONTROL_NUMBERING), graph.expressGraph);
    EnableWindow(GetDlgItem(window, CONTROL_SIZING), graph.expressGraph);
}

INT_PTR CALLBACK onGraphPage(HWND window, UINT message, WPARAM word, LPARAM data) {
    if (!onAnyPage(window, message, data)) return FALSE;
    PreferencePage& page = *pageOf(window);
    Program& program = page.program;
    if (message == WM_INITDIALOG) {
        page.graph = openGraphPreferences(program.run.options.settings, program.rememberedGraph);
        showGraph(window, page.graph);
        return TRUE;
    }
    if (isApply(message, data)) {
        applyGraphPreferences(page.graph, program.rememberedGraph, program.run.options.settings);
        InvalidateRect(program.window, nullptr, TRUE);
        confirmApply(window);
        return TRUE;
    }
    if (message != WM_COMMAND || HIWORD(word) != BN_CLICKED) return FALSE;
    const bool checked = isChecked(window, LOWORD(word));
    switch (LOWORD(word)) {
    case CONTROL_EXPRESS_GRAPH:
        switchGraph(page.graph, program.rememberedGraph, checked);
        showGraph(window, page.graph);
        break;
    case CONTROL_NUMBERING:
        page.graph.scatterNumbering = checked;
        break;
    case CONTROL_SIZING:
        page.graph.vectorSizing = checked;
        break;
    default:
        break;
    }
    onChanged(window);
    return TRUE;
}

// A page that holds nothing but its "save as default" box.
INT_PTR CALLBACK onEmptyPage(HWND, UINT message, WPARAM, LPARAM) {
    return message == WM_INITDIALOG;
}

PROPSHEETPAGEA describePage(const Program& program, int dialog, DLGPROC procedure, PreferencePage* page) {
    PROPSHEETPAGEA description = {};
    description.dwSize = sizeof description;
    description.hInstance = program.instance;
    description.pszTemplate = MAKEINTRESOURCEA(dialog);
    description.pfnDlgProc = procedure;
    description.lParam = reinterpret_cast<LPARAM>(page);
    return description;
}

// The system would place the sheet at the corner of the main window.
int CALLBACK onSheet(HWND window, UINT message, LPARAM) {
    if (message == PSCB_INITIALIZED) centreOverOwner(window);
    return 0;
}

void showSheet(const Program& program, const char* caption, const PROPSHEETPAGEA* pages, int count) {
    PROPSHEETHEADERA sheet = {};
    sheet.dwSize = sizeof sheet;
    sheet.dwFlags = PSH_PROPSHEETPAGE | PSH_USECALLBACK;
    sheet.hwndParent = program.window;
    sheet.hInstance = program.instance;
    sheet.pszCaption = caption;
    sheet.nPages = static_cast<UINT>(count);
    sheet.ppsp = pages;
    sheet.pfnCallback = onSheet;
    if (PropertySheetA(&sheet) == -1) {
        showAlert(program.window, "failed to create child windows");
    }
}

} // namespace

void showPreferencePages(Program& program) {
    PreferencePage source = {program, CONTROL_SAVE_SOURCE, {}};
    PreferencePage length = {program, CONTROL_SAVE_LENGTH, {}};
    PreferencePage graph = {program, CONTROL_SAVE_GRAPH, {}};
    const PROPSHEETPAGEA pages[] = {
        describePage(program, DIALOG_PREFERENCE_FIRST, onSourcePage, &source),
        describePage(program, DIALOG_PREFERENCE_FIRST + 1, onLengthPage, &length),
        describePage(program, DIALOG_PREFERENCE_FIRST + 2, onGraphPage, &graph),
        describePage(program, DIALOG_PREFERENCE_FIRST + 3, onEmptyPage, nullptr),
    };
    showSheet(program, "preference", pages, 4);
    commitPreferenceDefaults(program.defaults(), program.run.options.settings);
}

void showParameterPages(Program& program) {
    PROPSHEETPAGEA pages[6];
    for (int k = 0; k < 6; ++k) {
        pages[k] = describePage(program, DIALOG_PARAMETER_FIRST + k, onEmptyPage, nullptr);
    }
    showSheet(program, "parameter", pages, 6);
}
