#include "app/picture_dialog.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "analysis/run/analysis_kind.h"
#include "analysis/run/sample_groups.h"
#include "app/dialog_place.h"
#include "app/list_filler.h"
#include "app/message_box.h"
#include "app/resource_ids.h"

namespace {

constexpr int mostDigits = 5;
constexpr const char* sizeRefusal = "please type a width and a height of 200 to 10000 pixels, or neither";
constexpr const char* fontRefusal = "please type a font size of 8 to 100 pixels, or none";

struct PictureDialog {
    const AnalysisRun& run;
    PictureChoice choice;
};

const Picture* chartOf(const AnalysisRun& run, int picture) {
    return picture == PictureChoice::ofWindow ? nullptr
                                              : &run.pictureWish.pictures[static_cast<std::size_t>(picture)];
}

bool takes(const AnalysisRun& run, int picture, unsigned wish) {
    const Picture* const chart = chartOf(run, picture);
    return chart != nullptr && (chart->takes & wish) != 0;
}

// Groups that make the curves of a chart had to be known when it was described.
bool takesColumn(const AnalysisRun& run, int picture) {
    return takes(run, picture, Picture::groups) && !takes(run, picture, Picture::curves);
}

void enable(HWND window, int control, bool enabled) {
    EnableWindow(GetDlgItem(window, control), static_cast<BOOL>(enabled));
}

// What the picture has, for the list of variables as it is chosen now.
void enableChoices(HWND window, const PictureDialog& dialog) {
    const AnalysisRun& run = dialog.run;
    const int picture = dialog.choice.picture;
    const bool isChart = picture != PictureChoice::ofWindow;
    const bool hasGroups = dialog.choice.column > 0 || (isChart && run.charts[picture].groups.count > 0);
    enable(window, CONTROL_PICTURE_COLUMN, takesColumn(run, picture));
    enable(window, CONTROL_PICTURE_LABELS, takes(run, picture, Picture::labels));
    enable(window, CONTROL_PICTURE_ELLIPSES, hasGroups && takes(run, picture, Picture::ellipses));
    enable(window, CONTROL_PICTURE_FONT, isChart);
    SetDlgItemTextA(window, CONTROL_PICTURE_HELP,
                    isChart ? chartOf(run, picture)->help : "as the graph window shows it");
}

void fillPictures(HWND window, const PictureDialog& dialog) {
    ListFiller filler(GetDlgItem(window, CONTROL_PICTURE_NAME));
    int entry = 0;
    for (int k = 0; k <= PictureChoice::ofWindow; ++k) {
        if (!hasPicture(dialog.run, k)) continue;
        filler.add(k == PictureChoice::ofWindow ? "window" : chartOf(dialog.run, k)->name);
        if (k == dialog.choice.picture) filler.choose(entry);
        ++entry;
    }
}

// Every variable of the file; without one, samples are told apart as the analysis does.
void fillColumns(HWND window, const PictureDialog& dialog) {
    const CellTable& cells = dialog.run.data.cells;
    const char* first = "(none)";
    for (const Chart& chart : dialog.run.charts) {
        if (chart.groups.count > 0) first = chart.groups.title.text;
    }
    ListFiller filler(GetDlgItem(window, CONTROL_PICTURE_COLUMN));
    filler.add(first);
    for (std::int32_t col = 1; col < cells.cols; ++col) filler.add(cells.cell(0, col));
    filler.choose(dialog.choice.column);
}

void showNumber(HWND window, int control, int number) {
    char text[16] = "";
    if (number > 0) std::snprintf(text, sizeof text, "%d", number);
    SetDlgItemTextA(window, control, text);
    SendDlgItemMessageA(window, control, EM_SETLIMITTEXT, mostDigits, 0);
}

void start(HWND window, const PictureDialog& dialog) {
    const ChartChoices& chart = dialog.choice.chart;
    fillPictures(window, dialog);
    fillColumns(window, dialog);
    CheckDlgButton(window, CONTROL_PICTURE_LABELS, chart.labels ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(window, CONTROL_PICTURE_ELLIPSES, chart.ellipses ? BST_CHECKED : BST_UNCHECKED);
    showNumber(window, CONTROL_PICTURE_WIDTH, chart.size.width);
    showNumber(window, CONTROL_PICTURE_HEIGHT, chart.size.height);
    showNumber(window, CONTROL_PICTURE_FONT, chart.fontHeight);
    enableChoices(window, dialog);
    centreOverOwner(window);
}

int chosenIn(HWND window, int list) {
    return static_cast<int>(SendDlgItemMessageA(window, list, CB_GETCURSEL, 0, 0));
}

void takeLists(HWND window, PictureDialog& dialog) {
    int entry = chosenIn(window, CONTROL_PICTURE_NAME);
    for (int k = 0; k <= PictureChoice::ofWindow; ++k) {
        if (hasPicture(dialog.run, k) && entry-- == 0) dialog.choice.picture = k;
    }
    dialog.choice.column =
        takesColumn(dialog.run, dialog.choice.picture) ? chosenIn(window, CONTROL_PICTURE_COLUMN) : 0;
    enableChoices(window, dialog);
}

// 0 for an empty edit; false for what is no number of this range.
bool takeNumber(HWND window, int control, int least, int most, int& number) {
    char text[mostDigits + 1] = "";
    GetDlgItemTextA(window, control, text, sizeof text);
    number = std::atoi(text);
    const bool isNumber = std::strspn(text, "0123456789") == std::strlen(text);
    return text[0] == '\0' || (isNumber && number >= least && number <= most);
}

bool isChecked(HWND window, int box) {
    return IsWindowEnabled(GetDlgItem(window, box)) != 0 && IsDlgButtonChecked(window, box) == BST_CHECKED;
}

bool refuse(HWND window, const char* text, int control) {
    showAlert(window, text);
    focusControl(window, control);
    return false;
}

bool checkColumn(HWND window, const PictureDialog& dialog) {
    if (dialog.choice.column <= 0) return true;
    SampleGroups groups;
    switch (findGroups(dialog.run.data, dialog.choice.column, groups)) {
    case GroupSearch::found:
        return true;
    case GroupSearch::tooMany:
        return refuse(window, "please select a variable of at most 10 values", CONTROL_PICTURE_COLUMN);
    case GroupSearch::none:
        return refuse(window, "please select a variable that has values", CONTROL_PICTURE_COLUMN);
    case GroupSearch::noMemory:
        return refuse(window, "failed to allocate memory for data", CONTROL_PICTURE_COLUMN);
    }
    return false;
}

bool takeAll(HWND window, PictureDialog& dialog) {
    takeLists(window, dialog);
    ChartChoices& chart = dialog.choice.chart;
    chart.labels = isChecked(window, CONTROL_PICTURE_LABELS);
    chart.ellipses = isChecked(window, CONTROL_PICTURE_ELLIPSES);
    const auto takeSize = [&](int control, int& number) {
        return takeNumber(window, control, ChartChoices::leastSize, ChartChoices::mostSize, number);
    };
    if (!takeSize(CONTROL_PICTURE_WIDTH, chart.size.width))
        return refuse(window, sizeRefusal, CONTROL_PICTURE_WIDTH);
    if (!takeSize(CONTROL_PICTURE_HEIGHT, chart.size.height) ||
        (chart.size.width > 0) != (chart.size.height > 0))
        return refuse(window, sizeRefusal, CONTROL_PICTURE_HEIGHT);
    if (!takeNumber(window, CONTROL_PICTURE_FONT, ChartChoices::leastFont, ChartChoices::mostFont,
                    chart.fontHeight))
        return refuse(window, fontRefusal, CONTROL_PICTURE_FONT);
    return checkColumn(window, dialog);
}

INT_PTR CALLBACK onPictureDialog(HWND window, UINT message, WPARAM word, LPARAM data) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(window, DWLP_USER, data);
        start(window, *reinterpret_cast<const PictureDialog*>(data));
        return TRUE;
    }
    auto* dialog = reinterpret_cast<PictureDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (message != WM_COMMAND || dialog == nullptr) return FALSE;
    const int control = LOWORD(word);
    if (control == IDOK) {
        if (takeAll(window, *dialog)) EndDialog(window, IDOK);
    } else if (control == IDCANCEL) {
        EndDialog(window, IDCANCEL);
    } else if (HIWORD(word) == CBN_SELCHANGE) {
        takeLists(window, *dialog);
    }
    return TRUE;
}

} // namespace

bool hasPicture(const AnalysisRun& run, int picture) {
    return picture == PictureChoice::ofWindow ? run.graph.present != 0 : run.charts[picture].isDescribed;
}

bool showPictureDialog(Program& program) {
    PictureDialog dialog = {program.run, program.picture};
    const bool isDone = DialogBoxParamA(program.instance, MAKEINTRESOURCEA(DIALOG_PICTURE), program.window,
                                        onPictureDialog, reinterpret_cast<LPARAM>(&dialog)) == IDOK;
    if (isDone) program.picture = dialog.choice;
    return isDone;
}
