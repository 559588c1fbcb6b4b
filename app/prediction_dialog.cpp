#include "app/prediction_dialog.h"

#include "analysis/run/option_field.h"
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

void showPlaces(HWND window, PredictionDialog& dialog) {
    dialog.showing = true;
    for (int k = 0; k < predictionPlaces; ++k) {
        const PredictionPlace place = dialog.place(k);
        const HWND edit = GetDlgItem(window, CONTROL_PREDICTION_FIRST + k);
        SetDlgItemTextA(window, CONTROL_PREDICTION_NAME_FIRST + k, place.name);
        EnableWindow(GetDlgItem(window, CONTROL_PREDICTION_NAME_FIRST + k), place.isEnabled);
        EnableWindow(edit, place.isEnabled);
        ShowWindow(edit, place.value != nullptr ? SW_SHOW : SW_HIDE);
        if (place.value == nullptr) continue;
        char text[optionTextSize];
        showReal(*place.value, text);
        SetWindowTextA(edit, text);
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

INT_PTR CALLBACK onPredictionDialog(HWND window, UINT message, WPARAM word, LPARAM data) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(window, DWLP_USER, data);
        showPlaces(window, *reinterpret_cast<PredictionDialog*>(data));
        return TRUE;
    }
    auto* dialog = reinterpret_cast<PredictionDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (message != WM_COMMAND || dialog == nullptr) return FALSE;
    const int control = LOWORD(word);
    if (control == IDOK || control == IDCANCEL) {
        EndDialog(window, control);
    } else if (HIWORD(word) == EN_CHANGE) {
        takeChange(window, *dialog, control - CONTROL_PREDICTION_FIRST);
    }
    return TRUE;
}

} // namespace

bool showPredictionDialog(const Program& program, PredictionEntry& entry, int page) {
    PredictionDialog dialog = {program.run, entry, page, false};
    return DialogBoxParamA(program.instance, MAKEINTRESOURCEA(DIALOG_PREDICTION), program.window,
                           onPredictionDialog, reinterpret_cast<LPARAM>(&dialog)) == IDOK;
}
