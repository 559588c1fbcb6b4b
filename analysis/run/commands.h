#pragma once

// The commands of the menus and keys; analyses have 710 + their kind.
constexpr int commandAbout = 401;
constexpr int commandExit = 501;
constexpr int commandUpperFontSelected = 502;
constexpr int commandUpperFontAll = 503;
constexpr int commandLowerFontSelected = 504;
constexpr int commandLowerFontAll = 505;
constexpr int commandUpperClear = 506;
constexpr int commandLowerClear = 507;
constexpr int commandUpperPrint = 508;
constexpr int commandLowerPrint = 509;
constexpr int commandUpperSave = 510;
constexpr int commandLowerSave = 511;
constexpr int commandUpperSaveAs = 512;
constexpr int commandLowerSaveAs = 513;
constexpr int commandUpperOpen = 514;
constexpr int commandLowerOpen = 515;
constexpr int commandPageSetUp = 516;
constexpr int commandOpenFile = 701;
constexpr int commandCloseFile = 702;
constexpr int commandExcludeVariable = 703;
constexpr int commandPrediction = 799;
constexpr int commandParameter = 801;
constexpr int commandPreference = 802;
constexpr int commandTextbookNumerics = 850;
constexpr int commandOmitMissing = 851;
constexpr int commandImportTable = 852;
constexpr int commandCheckData = 853;
constexpr int commandSaveColumns = 854;
constexpr int commandSavePicture = 855;
constexpr int commandCopyPicture = 856;
constexpr int commandCopyCommandLine = 857;
