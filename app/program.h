#pragma once

#include <windows.h>

#include "analysis/run/analysis_run.h"
#include "analysis/run/preferences.h"
#include "analysis/run/settings_file.h"
#include "app/picture_choice.h"
#include "report/graph_layout.h"

// Positions of the three texts among the window's children.
constexpr int upperScreen = 0;
constexpr int lowerScreen = 1;
constexpr int statusBar = 2;
constexpr int screenCount = 3;

// The window that shows the run's graph; its own code fills and empties it.
struct GraphWindow {
    HWND window = nullptr; // null: not open
    HFONT font = nullptr;
    HWND lastFocus = nullptr; // the list that had the focus last
    GraphView view;
};

// All that the one window keeps while the program runs. main_window ends what screens_window, page_setup and
// dde_client have opened; graph_window ends its own.
struct Program {
    HINSTANCE instance = nullptr;
    wchar_t settingsPath[MAX_PATH] = L""; // whatever the name of its folder
    SettingsFile settingsFile = {};       // its block holds the defaults that outlive the program
    HWND window = nullptr;
    HWND screens[screenCount] = {};
    HWND progressBar = nullptr;
    HMODULE richEdit = nullptr;
    DWORD dde = 0;
    GraphPreferences rememberedGraph = {}; // options of the preference page while the graph was on
    char screenPath[pathSize] = "";        // shared by both screens for saving and opening
    DWORD screenFilter = 1;                // 1 rich text, 2 plain text; last chosen
    HDC targetDevices[2] = {};             // printers that the screens wrap by, or null
    GraphWindow graph;
    AnalysisRun run;
    PictureChoice picture; // of the last analysis

    Settings& defaults() { return settingsFile.settings; }
};
