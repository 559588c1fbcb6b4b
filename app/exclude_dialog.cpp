#include "app/exclude_dialog.h"

#include <algorithm>
#include <iterator>

#include "app/dialog_place.h"
#include "app/list_filler.h"
#include "app/resource_ids.h"

namespace {

struct ExcludeDialog {
    const CellTable& cells;
    std::int32_t slots[ExclusionList::slotCount]; // a copy to work on
};

// Every list holds the header; its first cell reads "(none)".
void fillLists(HWND window, const ExcludeDialog& dialog) {
    for (int slot = 0; slot < ExclusionList::slotCount; ++slot) {
        ListFiller filler(GetDlgItem(window, CONTROL_EXCLUDE_FIRST + slot));
        for (std::int32_t col = 0; col < dialog.cells.cols; ++col) filler.add(dialog.cells.cell(0, col));
        filler.choose(dialog.slots[slot]);
    }
}

INT_PTR CALLBACK onExcludeDialog(HWND window, UINT message, WPARAM word, LPARAM data) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(window, DWLP_USER, data);
        fillLists(window, *reinterpret_cast<ExcludeDialog*>(data));
        centreOverOwner(window);
        return TRUE;
    }
    auto* dialog = reinterpret_cast<ExcludeDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (message != WM_COMMAND || dialog == nullptr) return FALSE;
    const int control = LOWORD(word);
    const int slot = control - CONTROL_EXCLUDE_FIRST;
    if (control == IDOK || control == IDCANCEL) {
        EndDialog(window, control);
    } else if (slot >= 0 && slot < ExclusionList::slotCount && HIWORD(word) == CBN_SELCHANGE) {
        const LRESULT chosen = SendDlgItemMessageA(window, control, CB_GETCURSEL, 0, 0);
        dialog->slots[slot] = chosen > 0 ? static_cast<std::int32_t>(chosen) : 0;
    }
    return TRUE;
}

} // namespace

bool showExcludeDialog(const Program& program, std::int32_t (&slots)[ExclusionList::slotCount]) {
    ExcludeDialog dialog = {program.run.data.cells, {}};
    std::copy(std::begin(slots), std::end(slots), dialog.slots);
    const INT_PTR answer = DialogBoxParamA(program.instance, MAKEINTRESOURCEA(DIALOG_EXCLUDE), program.window,
                                           onExcludeDialog, reinterpret_cast<LPARAM>(&dialog));
    if (answer != IDOK) return false;
    std::copy(std::begin(dialog.slots), std::end(dialog.slots), slots);
    return true;
}
