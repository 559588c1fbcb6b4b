#include "app/prediction_dialog.h"

#include <cstdio>

#include "analysis/run/option_field.h"
#include "app/dialog_place.h"
#include "app/message_box.h"
#include "app/resource_ids.h"
#include "data/number.h"

namespace {

struct PredictionDialog {
    const AnalysisRun& run;
    PredictionEntry& entry;
    int page;
    bool showing; // the program itself writes the edits

    PredictionPlace place(int number) const { return predictionPlace(run, entry, page, number); }
};

// What the program proposes is rounded; what the user has entered comes back as it is.
void showValue(HWND edit, double value, double proposed) {
    char text[optionTextSize];
    if (value == proposed) {
        showReal(value, text);
    } else {
        std::snprintf(text, sizeof text, "%.15g", value);
    }
    SetWindowTextA(edit, text);
}

void showPage(HWND window, PredictionDialog& dialog) {
    char text[64];
    std::snprintf(text, sizeof text, "page %d of %d", dialog.page + 1, predictionPageCount(dialog.run));
    SetDlgItemTextA(window, CONTROL_PREDICTION_PAGE, text);
    EnableWindow(GetDlgItem(window, IDRETRY), dialog.page > 0);
    dialog.showing = true;
    for (int k = 0; k < predictionPlaces; ++k) {
        const PredictionPlace place = dialog.place(k);
        const HWND edit = GetDlgItem(window, CONTROL_PREDICTION_FIRST + k);
        SetDlgItemTextA(window, CONTROL_PREDICTION_NAME_FIRST + k, place.name);
        EnableWindow(GetDlgItem(window, CONTROL_PREDICTION_NAME_FIRST + k), place.isEnabled);
        EnableWindow(edit, place.isEnabled);
        ShowWindow(edit, place.value != nullptr ? SW_SHOW : SW_HIDE);
        if (place.value != nullptr) showValue(edit, *place.value, place.proposed);
    }
    dialog.showing = false;
}

void takeChange(HWND window, const PredictionDialog& dialog, int number) {
    if (dialog.showing || number < 0 || number >= predictionPlaces) return;
    double* const value = dialog.place(number).value;
    char text[optionTextSize] = "";
    GetDlgItemTextA(window, CONTROL_PREDICTION_FIRST + number, text, sizeof text);
    if (value != nullptr) *value = parseNumber(text);
}

// True when every text is a number. Else the user is where the first that is none can be changed.
bool confirm(HWND window, const PredictionDialog& dialog) {
    for (int k = 0; k < predictionPlaces; ++k) {
        char text[optionTextSize] = "";
        GetDlgItemTextA(window, CONTROL_PREDICTION_FIRST + k, text, sizeof text);
        if (!dialog.place(k).isEnabled || isNumber(text)) continue;
        showAlert(window, "please enter a number");
        focusControl(window, CONTROL_PREDICTION_FIRST + k);
        return false;
    }
    return true;
}

INT_PTR CALLBACK onPredictionDialog(HWND window, UINT message, WPARAM word, LPARAM data) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(window, DWLP_USER, data);
        showPage(window, *reinterpret_cast<PredictionDialog*>(data));
        centreOverOwner(window);
        return TRUE;
    }
    auto* dialog = reinterpret_cast<PredictionDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (message != WM_COMMAND || dialog == nullptr) return FALSE;
    const int control = LOWORD(word);
    if (control == IDCANCEL) {
        EndDialog(window, control);
    } else if (control == IDOK || control == IDRETRY) {
        if (confirm(window, *dialog)) EndDialog(window, control);
    } else if (HIWORD(word) == EN_CHANGE) {
        takeChange(window, *dialog, control - CONTROL_PREDICTION_FIRST);
    }
    return TRUE;
}

} // namespace

PredictionStep showPredictionDialog(const Program& program, PredictionEntry& entry, int page) {
    PredictionDialog dialog = {program.run, entry, page, false};
    switch (DialogBoxParamA(program.instance, MAKEINTRESOURCEA(DIALOG_PREDICTION), program.window,
                            onPredictionDialog, reinterpret_cast<LPARAM>(&dialog))) {
    case IDOK:
        return PredictionStep::next;
    case IDRETRY:
        return PredictionStep::back;
    default:
        return PredictionStep::cancelled;
    }
}
