#include "app/simple_dialogs.h"

#include "app/dialog_place.h"
#include "app/resource_ids.h"
#include "version.h"

namespace {

INT_PTR CALLBACK onSimpleDialog(HWND window, UINT message, WPARAM word, LPARAM) {
    if (message == WM_INITDIALOG) {
        // The exit confirmation has no such control, and the call nothing to do.
        SetDlgItemTextA(window, CONTROL_ABOUT_TEXT, "Ombrivantel\r\nversion " OMBRIVANTEL_VERSION);
        centreOverOwner(window);
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    if (LOWORD(word) == IDOK || LOWORD(word) == IDCANCEL) EndDialog(window, LOWORD(word));
    return TRUE;
}

INT_PTR show(const Program& program, int dialog) {
    return DialogBoxParamA(program.instance, MAKEINTRESOURCEA(dialog), program.window, onSimpleDialog, 0);
}

} // namespace

void showAboutDialog(const Program& program) {
    show(program, DIALOG_ABOUT);
}

bool confirmExit(const Program& program) {
    return show(program, DIALOG_EXIT) == IDOK;
}
