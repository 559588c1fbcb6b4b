#pragma once

// Shared by the resource script and the code; commands stand in analysis/run/commands.h.
#define MENU_MAIN 101
#define ACCELERATORS_MAIN 102
#define DIALOG_EXCLUDE 113
#define DIALOG_ABOUT 114
#define DIALOG_EXIT 115

#define CONTROL_STATIC (-1)
#define CONTROL_ABOUT_TEXT 151
#define CONTROL_LOWER_SCREEN 301
#define CONTROL_UPPER_SCREEN 302
#define CONTROL_STATUS_BAR 303
#define CONTROL_EXCLUDE_FIRST 1101 // to 1110
