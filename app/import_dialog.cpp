#include "app/import_dialog.h"

#include <cstring>
#include <limits>

#include "app/code_page.h"
#include "app/dialog_place.h"
#include "app/list_filler.h"
#include "app/message_box.h"
#include "app/resource_ids.h"
#include "data/import/import_preview.h"
#include "report/import_text.h"

namespace {

constexpr int textChoiceCount = importChoiceCount - wordChoiceCount;
constexpr int longestText = 400; // characters

struct ImportDialog {
    ByteSource& source;
    const ImportSaver& saver;
    Block<char>& notes;
    PreviewLimits limits = {};
    ImportOptions options = {};
    int entries[wordChoiceCount] = {}; // chosen in the lists
    char labelName[24] = "";
    char texts[textChoiceCount][4 * longestText + 4] = {};
    ImportPreview preview = {};
    ImportMessages messages = ImportMessages(ImportMessages::Wording::labels);
};

int controlOf(ImportChoice choice) {
    return CONTROL_IMPORT_FIRST + static_cast<int>(choice);
}

// Rows of another length have no entry for what is found.
int firstEntry(ImportChoice choice) {
    return choice == ImportChoice::oddRows ? 1 : 0;
}

// The lines of a text in a read-only edit.
void showLines(HWND window, int control, const char* text) {
    Block<char> lines;
    if (lines.allocate(2 * static_cast<Index>(std::strlen(text)) + 1) != success) return;
    char* at = lines.data();
    for (; *text != '\0'; ++text) {
        if (*text == '\n') *at++ = '\r';
        *at++ = *text;
    }
    SetDlgItemTextA(window, control, lines.data());
}

// Entries hold names in UTF-8.
void fillList(HWND window, const ImportDialog& dialog, ImportChoice choice) {
    const HWND list = GetDlgItem(window, controlOf(choice));
    SendMessageA(list, CB_RESETCONTENT, 0, 0);
    ListFiller filler(list);
    TextBuffer text;
    if (text.allocate(200, TextBuffer::Growth::fixed) != success) return; // twice the longest
    for (int entry = firstEntry(choice);; ++entry, text.clear()) {
        if (!writeChoiceEntry(text, choice, entry, dialog.options, dialog.preview, dialog.messages)) break;
        Block<char> shown;
        filler.add(convertToCodePage(text.text(), shown) == success ? shown.data() : "");
    }
    filler.choose(dialog.entries[static_cast<int>(choice)] - firstEntry(choice));
}

void showNotes(HWND window, ImportDialog& dialog) {
    TextBuffer text;
    Block<char> shown;
    if (text.allocate(2000, TextBuffer::Growth::growing) != success) return;
    text.append(dialog.messages.text());
    if (dialog.preview.isDecided && !dialog.preview.isWhole) {
        text.appendFormat("note : found out from the first %lld rows; all of them are read when the table is "
                          "saved\n",
                          static_cast<long long>(dialog.limits.surveyedRows));
    }
    if (text.join() && convertToCodePage(text.text(), shown) == success)
        showLines(window, CONTROL_IMPORT_NOTES, shown.data());
}

void showFound(HWND window, ImportDialog& dialog) {
    for (int k = 0; k < wordChoiceCount; ++k) fillList(window, dialog, static_cast<ImportChoice>(k));
    TextBuffer rows;
    if (rows.allocate(5000, TextBuffer::Growth::growing) == success) writePreview(rows, dialog.preview.cells);
    showLines(window, CONTROL_IMPORT_PREVIEW, rows.join() ? rows.text() : "");
    SetDlgItemTextA(window, CONTROL_IMPORT_PREVIEW_NAME,
                    dialog.preview.isDecided ? "&first rows, as the program will read them"
                                             : "&first rows, as they stand in the file: a choice is open");
    showNotes(window, dialog);
    EnableWindow(GetDlgItem(window, IDOK), dialog.preview.isDecided);
}

void readAgain(HWND window, ImportDialog& dialog) {
    const HCURSOR former = SetCursor(LoadCursorA(nullptr, IDC_WAIT));
    dialog.messages.clear();
    const ErrorCode code =
        previewImport(dialog.source, dialog.options, dialog.limits, dialog.preview, dialog.messages);
    SetCursor(former);
    if (code == outOfMemory) showOutOfMemory(window);
    showFound(window, dialog);
}

void takeEntry(HWND window, ImportDialog& dialog, ImportChoice choice) {
    const LRESULT chosen = SendDlgItemMessageA(window, controlOf(choice), CB_GETCURSEL, 0, 0);
    const int entry = static_cast<int>(chosen) + firstEntry(choice);
    if (chosen < 0 || entry == dialog.entries[static_cast<int>(choice)]) return;
    dialog.entries[static_cast<int>(choice)] = entry;
    if (choice == ImportChoice::labels && entry >= static_cast<int>(LabelColumn::named)) {
        chooseLabelColumn(dialog.options, entry - static_cast<int>(LabelColumn::named), dialog.labelName);
    } else {
        chooseWord(dialog.options, choice, entry);
    }
    readAgain(window, dialog);
}

void takeEdit(HWND window, ImportDialog& dialog, ImportChoice choice) {
    char(&text)[sizeof dialog.texts[0]] = dialog.texts[static_cast<int>(choice) - wordChoiceCount];
    takeText(GetDlgItem(window, controlOf(choice)), text, sizeof text);
    if (chooseText(dialog.options, choice, text) != success) showOutOfMemory(window);
    readAgain(window, dialog);
}

void start(HWND window, ImportDialog& dialog) {
    for (int k = wordChoiceCount; k < importChoiceCount; ++k) {
        const int control = controlOf(static_cast<ImportChoice>(k));
        SendDlgItemMessageA(window, control, EM_SETLIMITTEXT, longestText, 0);
    }
    for (int k = 0; k < wordChoiceCount; ++k) {
        dialog.entries[k] = chosenWord(dialog.options, static_cast<ImportChoice>(k));
    }
    SendDlgItemMessageA(window, CONTROL_IMPORT_PREVIEW, WM_SETFONT,
                        reinterpret_cast<WPARAM>(GetStockObject(ANSI_FIXED_FONT)), FALSE);
    readAgain(window, dialog);
    centreOverOwner(window);
}

// The user is where the choice can be made that the refusal asks for.
void tellRefusal(HWND window, ImportDialog& dialog) {
    dialog.preview.isDecided = false;
    showFound(window, dialog);
    Block<char> shown;
    if (convertToCodePage(dialog.messages.text(), shown) == success) {
        const char* line = std::strstr(shown.data(), "error : ");
        showAlert(window, line != nullptr ? line : shown.data());
    }
    for (int k = 0; k < importChoiceCount; ++k) {
        const ImportChoice choice = static_cast<ImportChoice>(k);
        if (!dialog.messages.asks(choice)) continue;
        focusControl(window, controlOf(choice));
        return;
    }
}

void save(HWND window, ImportDialog& dialog) {
    if (!dialog.preview.isDecided) return;
    const ImportSaver& saver = dialog.saver;
    if (saver.save(window, saver.context, dialog.source, dialog.options, dialog.messages)) {
        if (convertToCodePage(dialog.messages.text(), dialog.notes) != success) showOutOfMemory(window);
        EndDialog(window, IDOK);
    } else if (dialog.messages.refused()) {
        tellRefusal(window, dialog);
    }
}

INT_PTR CALLBACK onImportDialog(HWND window, UINT message, WPARAM word, LPARAM data) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(window, DWLP_USER, data);
        start(window, *reinterpret_cast<ImportDialog*>(data));
        return TRUE;
    }
    auto* dialog = reinterpret_cast<ImportDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (message != WM_COMMAND || dialog == nullptr) return FALSE;
    const int control = LOWORD(word), notice = HIWORD(word), choice = control - CONTROL_IMPORT_FIRST;
    if (control == IDOK) {
        save(window, *dialog);
    } else if (control == IDCANCEL) {
        EndDialog(window, IDCANCEL);
    } else if (choice >= 0 && choice < wordChoiceCount && notice == CBN_SELCHANGE) {
        takeEntry(window, *dialog, static_cast<ImportChoice>(choice));
    } else if (choice >= wordChoiceCount && choice < importChoiceCount && notice == EN_CHANGE) {
        takeEdit(window, *dialog, static_cast<ImportChoice>(choice));
    }
    return TRUE;
}

} // namespace

bool showImportDialog(const Program& program, ByteSource& source, bool isSmall, const ImportSaver& saver,
                      Block<char>& notes) {
    ImportDialog dialog = {source, saver, notes};
    dialog.options.written = WrittenText::ansi;
    dialog.options.codePage = writeInCodePage;
    if (isSmall) dialog.limits.surveyedRows = std::numeric_limits<Index>::max();
    return DialogBoxParamA(program.instance, MAKEINTRESOURCEA(DIALOG_IMPORT), program.window, onImportDialog,
                           reinterpret_cast<LPARAM>(&dialog)) == IDOK;
}
