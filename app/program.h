#pragma once

#include <windows.h>

#include "analysis/run/analysis_run.h"
#include "analysis/run/settings_file.h"

// Positions of the three texts among the window's children.
constexpr int upperScreen = 0;
constexpr int lowerScreen = 1;
constexpr int statusBar = 2;
constexpr int screenCount = 3;

// All that the one window keeps while the program runs. Each handle is closed where it was opened:
// single_instance, main_window, dde_client.
struct Program {
    HINSTANCE instance = nullptr;
    char settingsPath[MAX_PATH] = "";
    SettingsFile settingsFile = {}; // its block holds the defaults that outlive the program
    HWND window = nullptr;
    HWND screens[screenCount] = {};
    HWND progressBar = nullptr;
    HMODULE richEdit = nullptr;
    DWORD dde = 0;
    AnalysisRun run;

    Settings& defaults() { return settingsFile.settings; }
};
