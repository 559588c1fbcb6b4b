#include <windows.h>

#include "analysis/run/start_arguments.h"
#include "analysis/run/window_place.h"
#include "app/graph_window.h"
#include "app/main_window.h"
#include "app/message_box.h"
#include "app/program.h"
#include "app/resource_ids.h"
#include "app/screen_menu.h"
#include "app/settings_store.h"

namespace {

// One static context for the life of the process.
Program program;

ScreenArea allScreens() {
    const int left = GetSystemMetrics(SM_XVIRTUALSCREEN);
    const int top = GetSystemMetrics(SM_YVIRTUALSCREEN);
    return {left, top, left + GetSystemMetrics(SM_CXVIRTUALSCREEN),
            top + GetSystemMetrics(SM_CYVIRTUALSCREEN)};
}

// Null: another copy runs.
HANDLE claimSingleInstance() {
    SetLastError(ERROR_SUCCESS);
    const HANDLE mutex = CreateMutexA(nullptr, TRUE, "Ombrivantel");
    if (GetLastError() == ERROR_SUCCESS) return mutex;
    if (mutex != nullptr) CloseHandle(mutex);
    return nullptr;
}

int runMessageLoop() {
    const HACCEL keys = LoadAcceleratorsA(program.instance, MAKEINTRESOURCEA(ACCELERATORS_MAIN));
    MSG message = {};
    for (;;) {
        const BOOL read = GetMessageA(&message, nullptr, 0, 0);
        if (read == 0) break;
        if (read < 0) {
            showError(program.window, "GetMessage Error");
            break;
        }
        if (TranslateAcceleratorA(program.window, keys, &message) != 0) continue;
        if (translateGraphMessage(program, message)) continue;
        if (translateScreenMessage(program, message)) continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return static_cast<int>(message.wParam);
}

} // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): its declaration is not ours
int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int showCommand) {
    program.instance = instance;
    // A picture of the window in its place would take the keys of a long run.
    DisableProcessWindowsGhosting();
    readSettingsFile(program);
    settleWindowRectangle(program.defaults(), GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
                          allScreens());
    const HANDLE mutex = claimSingleInstance();
    if (mutex == nullptr) return 0;

    int result = 0;
    if (openMainWindow(program, showCommand)) {
        startWork(program, readStartArguments(__argc, __argv));
        result = runMessageLoop();
    }
    ReleaseMutex(mutex);
    CloseHandle(mutex);
    return result;
}
