#include "app/option_dialog.h"

#include <commctrl.h>
#include <cstring>

#include "analysis/run/run_flow.h"
#include "analysis/run/saved_defaults.h"
#include "app/dialog_place.h"
#include "app/list_filler.h"
#include "app/message_box.h"

namespace {

struct OptionDialog {
    AnalysisRun& run;
    const AnalysisKind& kind;
    AnalysisOptions options; // a copy to work on
    bool isFirst;            // the dialog before that of the kind
    bool showing;            // the program itself writes the edits

    OptionFields fields() const { return isFirst ? kind.analysis->firstFields : kind.analysis->fields; }
};

bool isNumber(const OptionField& field) {
    return field.type == OptionType::wholeNumber || field.type == OptionType::real;
}

void fillVariables(HWND list, const DataMatrix& data, std::int32_t chosen) {
    ListFiller filler(list);
    filler.add("(none)");
    for (Index v = 0; v < data.variables; ++v) filler.add(data.name(v));
    filler.choose(chosen);
}

std::int32_t chosenInList(HWND list) {
    const LRESULT index = SendMessageA(list, isListBox(list) ? LB_GETCURSEL : CB_GETCURSEL, 0, 0);
    return index > 0 ? static_cast<std::int32_t>(index) : 0;
}

void fillTexts(HWND list, const OptionField& field, std::int32_t chosen) {
    ListFiller filler(list);
    for (const char* text : field.choices) filler.add(text);
    filler.choose(chosen);
}

void showField(HWND window, OptionDialog& dialog, const OptionField& field) {
    AnalysisOptions& options = dialog.options;
    switch (field.type) {
    case OptionType::flag:
        CheckDlgButton(window, field.control, wholeOption(options, field) != 0 ? BST_CHECKED : BST_UNCHECKED);
        return;
    case OptionType::choice:
        for (int k = 0; k < static_cast<int>(field.choices.size()); ++k) {
            CheckDlgButton(window, field.control + k,
                           k == wholeOption(options, field) ? BST_CHECKED : BST_UNCHECKED);
        }
        return;
    case OptionType::listedChoice:
        fillTexts(GetDlgItem(window, field.control), field, wholeOption(options, field));
        return;
    case OptionType::wholeNumber:
    case OptionType::real: {
        char text[optionTextSize];
        showOption(options, field, text);
        dialog.showing = true;
        SetDlgItemTextA(window, field.control, text);
        dialog.showing = false;
        return;
    }
    case OptionType::variable:
    case OptionType::variables:
        for (int k = 0; k < field.count; ++k) {
            // A kept column that these data do not have counts as none.
            std::int32_t& chosen = wholeOption(options, field, k);
            if (chosen < 0 || chosen > dialog.run.data.loaded.variables) chosen = 0;
            fillVariables(GetDlgItem(window, field.control + k), dialog.run.data.loaded, chosen);
        }
        return;
    }
}

int controlCount(const OptionField& field) {
    return field.type == OptionType::choice ? static_cast<int>(field.choices.size()) : field.count;
}

bool owns(const OptionField& field, int control) {
    return control >= field.control && control < field.control + controlCount(field);
}

void applyEnabling(HWND window, const OptionDialog& dialog) {
    const Analysis& analysis = *dialog.kind.analysis;
    if (dialog.isFirst || analysis.isEnabled == nullptr) return;
    for (const OptionField& field : analysis.fields) {
        const BOOL enabled = analysis.isEnabled(dialog.options, field);
        for (int k = 0; k < controlCount(field); ++k)
            EnableWindow(GetDlgItem(window, field.control + k), enabled);
        if (isNumber(field)) EnableWindow(GetDlgItem(window, field.arrows), enabled);
    }
}

void showOptions(HWND window, OptionDialog& dialog) {
    SetWindowTextA(window, dialog.isFirst ? dialog.kind.analysis->firstTitle : dialog.kind.dialogTitle);
    if (dialog.kind.heading != nullptr)
        SetDlgItemTextA(window, dialog.kind.headingControl, dialog.kind.heading);
    for (const OptionField& field : dialog.fields()) {
        showField(window, dialog, field);
        // Once: each time takes the width of the arrows from the edit.
        if (isNumber(field))
            SendDlgItemMessageA(window, field.arrows, UDM_SETBUDDY,
                                reinterpret_cast<WPARAM>(GetDlgItem(window, field.control)), 0);
    }
    const bool save = saveFlag(dialog.options.settings, dialog.kind.saveBox) != 0;
    CheckDlgButton(window, dialog.kind.saveBox, save ? BST_CHECKED : BST_UNCHECKED);
    applyEnabling(window, dialog);
}

void takeField(HWND window, OptionDialog& dialog, const OptionField& field, int control) {
    AnalysisOptions& options = dialog.options;
    switch (field.type) {
    case OptionType::flag:
        wholeOption(options, field) = IsDlgButtonChecked(window, control) == BST_CHECKED ? 1 : 0;
        return;
    case OptionType::choice:
        wholeOption(options, field) = control - field.control;
        return;
    case OptionType::listedChoice:
        wholeOption(options, field) =
            static_cast<std::int32_t>(SendDlgItemMessageA(window, control, CB_GETCURSEL, 0, 0));
        return;
    case OptionType::wholeNumber:
    case OptionType::real: {
        char text[optionTextSize] = "";
        GetDlgItemTextA(window, control, text, sizeof text);
        typeOption(options, field, text);
        return;
    }
    case OptionType::variable:
    case OptionType::variables:
        wholeOption(options, field, control - field.control) = chosenInList(GetDlgItem(window, control));
        return;
    }
}

// Buttons tell of a click, edits of a change, lists of a choice.
bool isChange(const OptionField& field, HWND control, int notice) {
    if (isNumber(field)) return notice == EN_CHANGE;
    if (field.type == OptionType::flag || field.type == OptionType::choice) return notice == BN_CLICKED;
    return notice == (isListBox(control) ? LBN_SELCHANGE : CBN_SELCHANGE);
}

void takeChange(HWND window, OptionDialog& dialog, int control, int notice) {
    if (dialog.showing) return;
    for (const OptionField& field : dialog.fields()) {
        if (!owns(field, control) || !isChange(field, GetDlgItem(window, control), notice)) continue;
        takeField(window, dialog, field, control);
        applyEnabling(window, dialog);
    }
    if (control == dialog.kind.saveBox && notice == BN_CLICKED) {
        const bool save = IsDlgButtonChecked(window, control) == BST_CHECKED;
        saveFlag(dialog.options.settings, control) = save ? 1 : 0;
    }
}

// A negative step of the arrows adds, a positive one subtracts.
void spin(HWND window, OptionDialog& dialog, const NMUPDOWN& arrows) {
    for (const OptionField& field : dialog.fields()) {
        if (!isNumber(field) || static_cast<UINT_PTR>(field.arrows) != arrows.hdr.idFrom) continue;
        takeField(window, dialog, field, field.control);
        spinOption(dialog.options, field, dialog.run.data, arrows.iDelta < 0);
        showField(window, dialog, field);
    }
}

bool hasWord(const char* text, const char* word) {
    for (const char* at = std::strstr(text, word); at != nullptr; at = std::strstr(at + 1, word)) {
        const char end = at[std::strlen(word)];
        if ((at == text || at[-1] == ' ') && (end == ' ' || end == '\0')) return true;
    }
    return false;
}

// The field that an alert speaks of: the first whose name it has, else the first list. Null: none.
const OptionField* refusedField(OptionFields fields, const char* refusal) {
    for (const OptionField& field : fields) {
        if (field.name != nullptr && hasWord(refusal, field.name)) return &field;
    }
    for (const OptionField& field : fields) {
        const bool isList = field.type == OptionType::variable || field.type == OptionType::variables ||
                            field.type == OptionType::listedChoice;
        if (isList) return &field;
    }
    return nullptr;
}

// True when the values are accepted. Else the user is where the refused one can be changed.
bool confirm(HWND window, const OptionDialog& dialog) {
    if (!dialog.isFirst && leavesTableRowsOut(dialog.run.data, *dialog.kind.analysis, dialog.options)) {
        showAlert(window,
                  "the rows of a table cannot be left out :\nswitch off \"Omit Missing\" and open the file "
                  "again");
        return false;
    }
    const auto refuse = dialog.kind.analysis->refuse;
    const char* refusal = refuse != nullptr && !dialog.isFirst ? refuse(dialog.options, 0) : nullptr;
    if (refusal == nullptr) return true;
    showAlert(window, refusal);
    const OptionField* const field = refusedField(dialog.fields(), refusal);
    if (field != nullptr) focusControl(window, field->control);
    return false;
}

INT_PTR CALLBACK onOptionDialog(HWND window, UINT message, WPARAM word, LPARAM data) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(window, DWLP_USER, data);
        showOptions(window, *reinterpret_cast<OptionDialog*>(data));
        centreOverOwner(window);
        return TRUE;
    }
    auto* dialog = reinterpret_cast<OptionDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (dialog == nullptr) return FALSE;
    if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(data)->code == UDN_DELTAPOS) {
        spin(window, *dialog, *reinterpret_cast<const NMUPDOWN*>(data));
        SetWindowLongPtrA(window, DWLP_MSGRESULT, TRUE); // the control's own position stays
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    switch (LOWORD(word)) {
    case IDOK:
        if (confirm(window, *dialog)) EndDialog(window, IDOK);
        return TRUE;
    case IDCANCEL:
        EndDialog(window, IDCANCEL);
        return TRUE;
    default:
        takeChange(window, *dialog, LOWORD(word), HIWORD(word));
        return TRUE;
    }
}

bool show(Program& program, OptionDialog& dialog) {
    const int resource = dialog.isFirst ? dialog.kind.analysis->firstDialog : dialog.kind.dialog;
    return DialogBoxParamA(program.instance, MAKEINTRESOURCEA(resource), program.window, onOptionDialog,
                           reinterpret_cast<LPARAM>(&dialog)) == IDOK;
}

} // namespace

bool showOptionDialog(Program& program, const AnalysisKind& kind) {
    AnalysisRun& run = program.run;
    OptionDialog dialog = {run, kind, run.options, kind.analysis->firstDialog != 0, false};
    if (dialog.isFirst && !show(program, dialog)) return false;
    dialog.isFirst = false;
    if (!show(program, dialog)) return false;
    run.options = dialog.options;
    return true;
}
