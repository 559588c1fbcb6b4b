#include "app/window_frontend.h"

#include <commctrl.h>
#include <shellapi.h>

#include "analysis/run/commands.h"
#include "analysis/run/run_flow.h"
#include "app/graph_window.h"
#include "app/menu_item.h"
#include "app/option_dialog.h"
#include "app/prediction_dialog.h"
#include "app/screens_window.h"

namespace {

// Of what GetAsyncKeyState tells: now, and since it was asked last.
constexpr int keyIsDown = 0x8000;
constexpr int keyWasPressed = 1;

} // namespace

void WindowFrontend::showUpper(const Report& report) {
    showText(program_, upperScreen, report.upper.text());
}

void WindowFrontend::showLower(const Report& report) {
    showText(program_, lowerScreen, report.lower.text());
}

void WindowFrontend::showStatus(const Report& report) {
    showText(program_, statusBar, report.status.text());
}

void WindowFrontend::showProgress() {
    SetCursor(LoadCursorA(nullptr, IDC_WAIT));
    isHeldBefore_ = (GetAsyncKeyState(VK_ESCAPE) & keyIsDown) != 0; // and forgets that it was pressed
    ShowWindow(program_.progressBar, SW_SHOW);
}

ErrorCode WindowFrontend::setProgress(int percent) {
    SendMessageA(program_.progressBar, PBM_SETPOS, static_cast<WPARAM>(percent), 0);
    UpdateWindow(program_.progressBar);
    isStopped_ = isEscapePressed();
    return isStopped_ ? stopped : success;
}

// By the state of the key: a run reads no messages. A press while another window is in front is not for us.
bool WindowFrontend::isEscapePressed() {
    const int state = GetAsyncKeyState(VK_ESCAPE);
    const bool isDown = (state & keyIsDown) != 0;
    if (isHeldBefore_) {
        isHeldBefore_ = isDown;
        return false;
    }
    return (isDown || (state & keyWasPressed) != 0) && GetForegroundWindow() == program_.window;
}

// The key that stopped a run has done its work: a dialog that opens next must not take it.
void WindowFrontend::hideProgress() {
    MSG key;
    while (isStopped_ && PeekMessageA(&key, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE) != 0) continue;
    isStopped_ = false;
    ShowWindow(program_.progressBar, SW_HIDE);
    UpdateWindow(program_.screens[statusBar]); // its picture would stay until the report is written
    SetCursor(LoadCursorA(nullptr, IDC_ARROW));
}

void WindowFrontend::alert(const char* text, const char* caption) {
    MessageBoxA(program_.window, text, caption, MB_OK | MB_ICONEXCLAMATION);
}

bool WindowFrontend::chooseOptions(AnalysisRun&, const AnalysisKind& kind) {
    return showOptionDialog(program_, kind);
}

PredictionStep WindowFrontend::enterPrediction(const AnalysisRun&, PredictionEntry& entry, int page) {
    return showPredictionDialog(program_, entry, page);
}

void WindowFrontend::setDataLoaded(bool loaded) {
    const DataState state = dataState(program_.run.data, loaded);
    for (const int command :
         {commandOpenFile, commandCloseFile, commandExcludeVariable, commandImportTable, commandCheckData}) {
        enableItem(program_.window, command, isCommandEnabled(command, state));
    }
    for (const AnalysisKind& kind : analysisKinds()) {
        const int command = firstAnalysisCommand + kind.number;
        enableItem(program_.window, command, isCommandEnabled(command, state));
    }
    DragAcceptFiles(program_.window, isCommandEnabled(commandOpenFile, state));
    enablePrediction(false);
    enableResults(false, false);
}

void WindowFrontend::enablePrediction(bool enabled) {
    enableItem(program_.window, commandPrediction, enabled);
}

// What was chosen of the pictures before is of another analysis.
void WindowFrontend::enableResults(bool columns, bool picture) {
    enableItem(program_.window, commandSaveColumns, columns);
    enableItem(program_.window, commandSavePicture, picture);
    enableItem(program_.window, commandCopyPicture, picture);
    program_.picture = {};
}

void WindowFrontend::openGraphWindow(const Graph&) {
    ::openGraphWindow(program_);
}

void WindowFrontend::closeGraph() {
    ::closeGraph(program_);
}
