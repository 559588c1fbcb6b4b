#include "app/main_window.h"

#include <commctrl.h>
#include <cstring>
#include <shellapi.h>

#include "analysis/basic/regression/prediction.h"
#include "analysis/run/commands.h"
#include "analysis/run/data_check.h"
#include "analysis/run/data_file.h"
#include "analysis/run/preferences.h"
#include "analysis/run/run_flow.h"
#include "app/command_line_copy.h"
#include "app/dde_client.h"
#include "app/exclude_dialog.h"
#include "app/graph_window.h"
#include "app/menu_item.h"
#include "app/open_file_dialog.h"
#include "app/page_setup.h"
#include "app/preference_sheet.h"
#include "app/printing.h"
#include "app/resource_ids.h"
#include "app/result_picture.h"
#include "app/save_columns.h"
#include "app/screen_file.h"
#include "app/screen_font.h"
#include "app/screens_window.h"
#include "app/settings_store.h"
#include "app/simple_dialogs.h"
#include "app/table_import.h"
#include "app/window_frontend.h"

namespace {

constexpr const char* className = "Ombrivantel";

// The upper screen, a few lines of the lower one and every menu.
constexpr POINT leastSize = {400, 320};

Program& programOf(HWND window) {
    return *reinterpret_cast<Program*>(GetWindowLongPtrA(window, GWLP_USERDATA));
}

void loadFile(Program& program) {
    WindowFrontend frontend(program);
    AnalysisRun& run = program.run;
    if (loadDataFile(frontend, run).isLoaded()) {
        showLoadedData(frontend, run);
    } else {
        frontend.setDataLoaded(false); // why the file was refused is known by now
    }
}

// The file at the data set's path, of the kept source kind.
void openFile(Program& program) {
    loadFile(program); // its conversation with a spreadsheet is over before the window can have the focus
    SetFocus(program.screens[upperScreen]);
}

// The import's notes stay in the lower screen: what its categories mean, for one.
void importTable(Program& program) {
    Block<char> notes;
    if (!showTableImport(program, program.run.data.path, notes)) return;
    program.run.options.settings.fileType = 0;
    openFile(program);
    TextBuffer& text = program.run.report.lower;
    text.clear();
    text.append("\nimport of a table\n\n");
    text.append(notes.data());
    showText(program, lowerScreen, text.text());
}

void excludeVariables(Program& program) {
    WindowFrontend frontend(program);
    std::int32_t slots[ExclusionList::slotCount];
    std::memcpy(slots, program.run.data.exclusion.slots, sizeof slots);
    if (!showExcludeDialog(program, slots)) return;
    applyExclusion(frontend, program.run, slots);
    SetFocus(program.screens[upperScreen]);
}

void runAnalysis(Program& program, int command) {
    WindowFrontend frontend(program);
    runAnalysisCommand(frontend, program.defaults(), program.run, command);
    SetFocus(program.screens[lowerScreen]);
}

void predict(Program& program) {
    WindowFrontend frontend(program);
    runPrediction(frontend, program.run);
    SetFocus(program.screens[lowerScreen]);
}

void switchNumerics(Program& program, const Numerics& numerics) {
    WindowFrontend frontend(program);
    chooseNumerics(frontend, program.run, numerics);
    checkItem(program.window, commandTextbookNumerics, numerics.textbook);
}

// What is loaded stays as it is.
void switchMissing(Program& program) {
    MissingPolicy& policy = program.run.data.policy;
    policy = policy == MissingPolicy::omit ? MissingPolicy::zero : MissingPolicy::omit;
    checkItem(program.window, commandOmitMissing, policy == MissingPolicy::omit);
}

void checkLoadedData(Program& program) {
    WindowFrontend frontend(program);
    checkData(frontend, program.run);
    SetFocus(program.screens[lowerScreen]);
}

void clearScreen(Program& program, int screen) {
    TextBuffer& text = screen == upperScreen ? program.run.report.upper : program.run.report.lower;
    text.clear();
    showText(program, screen, text.text());
}

bool runCommand(Program& program, int command) {
    switch (command) {
    case commandAbout:
        showAboutDialog(program);
        return true;
    case commandExit:
        if (confirmExit(program)) PostMessageA(program.window, WM_CLOSE, 0, 0);
        return true;
    case commandUpperFontSelected:
        chooseScreenFont(program, upperScreen, true);
        return true;
    case commandUpperFontAll:
        chooseScreenFont(program, upperScreen, false);
        return true;
    // Both change the whole lower screen.
    case commandLowerFontSelected:
    case commandLowerFontAll:
        chooseScreenFont(program, lowerScreen, false);
        return true;
    case commandUpperClear:
        clearScreen(program, upperScreen);
        return true;
    case commandLowerClear:
        clearScreen(program, lowerScreen);
        return true;
    case commandUpperPrint:
        printScreen(program, upperScreen);
        return true;
    case commandLowerPrint:
        printScreen(program, lowerScreen);
        return true;
    case commandUpperSave:
        saveScreen(program, upperScreen);
        return true;
    case commandLowerSave:
        saveScreen(program, lowerScreen);
        return true;
    case commandUpperSaveAs:
        saveScreenAs(program, upperScreen);
        return true;
    case commandLowerSaveAs:
        saveScreenAs(program, lowerScreen);
        return true;
    case commandUpperOpen:
        openRichText(program, upperScreen);
        return true;
    case commandLowerOpen:
        openRichText(program, lowerScreen);
        return true;
    case commandPageSetUp:
        if (pageSetUp(program)) {
            fitScreenToPrinter(program, upperScreen);
            fitScreenToPrinter(program, lowerScreen);
        }
        return true;
    case commandParameter:
        showParameterPages(program);
        return true;
    case commandPreference:
        showPreferencePages(program);
        return true;
    case commandTextbookNumerics:
        switchNumerics(program, program.run.numerics->textbook ? classicNumerics : textbookNumerics);
        return true;
    case commandOmitMissing:
        switchMissing(program);
        return true;
    case commandImportTable:
        importTable(program);
        return true;
    case commandCheckData:
        checkLoadedData(program);
        return true;
    case commandSaveColumns:
        saveColumns(program);
        return true;
    case commandSavePicture:
        savePicture(program);
        return true;
    case commandCopyPicture:
        copyPicture(program);
        return true;
    case commandCopyCommandLine:
        copyCommandLine(program);
        return true;
    case commandOpenFile:
        if (showOpenFileDialog(program)) {
            openFile(program);
        } else {
            SetFocus(program.screens[upperScreen]);
        }
        return true;
    case commandCloseFile: {
        WindowFrontend frontend(program);
        closeDataFile(frontend, program.run);
        return true;
    }
    case commandPrediction:
        predict(program);
        return true;
    case commandExcludeVariable:
        excludeVariables(program);
        return true;
    default:
        if (findKind(command - firstAnalysisCommand) == nullptr) return false;
        runAnalysis(program, command);
        return true;
    }
}

bool isThere(const char* path) {
    return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
}

// A data file that was named when the program started or was dropped on the window.
void openNamedFile(Program& program, const char* name) {
    char named[pathSize], path[sizeof named];
    const bool fits = namedDataFile(name, isThere(name), named);
    const DWORD length = fits ? GetFullPathNameA(named, sizeof path, path, nullptr) : 0;
    if (!fits || length >= sizeof path) {
        tellPathTooLong(program);
        return;
    }
    // A folder whose name is outside the code page has no full path in it.
    if (length == 0 || (isThere(named) && !isThere(path))) std::memcpy(path, named, sizeof path);
    const char* extension = std::strrchr(path, '.');
    const bool isWorkbook = extension != nullptr && lstrcmpiA(extension, ".xls") == 0;
    program.run.options.settings.fileType = isWorkbook ? 1 : 0;
    std::memcpy(program.run.data.path, path, sizeof path);
    openFile(program);
}

// The first of the files. While data is loaded the window takes none, but one may be on its way.
void openDroppedFile(Program& program, HDROP drop) {
    char name[pathSize] = "";
    const bool fits = DragQueryFileA(drop, 0, nullptr, 0) < sizeof name;
    DragQueryFileA(drop, 0, name, sizeof name);
    DragFinish(drop);
    const UINT state = GetMenuState(GetMenu(program.window), commandOpenFile, MF_BYCOMMAND);
    if (IsWindowEnabled(program.window) == 0 || (state & MF_GRAYED) != 0) return;
    if (fits) {
        openNamedFile(program, name);
    } else {
        tellPathTooLong(program);
    }
}

bool createContents(Program& program) {
    if (!writeSettingsFile(program)) return false;
    startOptions(program.run.options, program.defaults());
    program.run.statusTellsDoubts = true;
    program.run.columns.areWanted = true;
    program.run.pictureWish.isOfAll = true;
    program.rememberedGraph = startGraphPreferences(program.defaults());
    SetWindowTextA(program.window, className);
    InitCommonControls();
    startDdeClient(program);
    if (!createScreens(program)) return false;
    if (allocateReport(program.run.report, TextBuffer::Growth::fixed) != success) return false;
    if (!registerGraphClass(program)) return false;
    WindowFrontend(program).setDataLoaded(false);
    enableItem(program.window, commandParameter, false);
    return true;
}

// A minimized or maximized window keeps the rectangle that it returns to.
void keepWindowRectangle(Program& program) {
    RECT place = {};
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    GetWindowRect(program.window, &place);
    if ((IsIconic(program.window) || IsZoomed(program.window)) &&
        GetWindowPlacement(program.window, &placement)) {
        place = placement.rcNormalPosition;
    }
    Settings& kept = program.defaults();
    kept.windowLeft = place.left;
    kept.windowTop = place.top;
    kept.windowRight = place.right;
    kept.windowBottom = place.bottom;
    kept.windowWidth = place.right - place.left;
    kept.windowHeight = place.bottom - place.top;
}

void closeWindow(Program& program) {
    keepWindowRectangle(program);
    writeSettingsFile(program);
    closeGraph(program);
    releaseDataSet(program.run.data);
    program.run.report = {};
    destroyScreens(program);
    DestroyWindow(program.window);
}

LRESULT CALLBACK onMainWindow(HWND window, UINT message, WPARAM word, LPARAM data) {
    switch (message) {
    case WM_NCCREATE: {
        const auto* creation = reinterpret_cast<const CREATESTRUCTA*>(data);
        auto* program = static_cast<Program*>(creation->lpCreateParams);
        program->window = window;
        SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(program));
        break;
    }
    case WM_CREATE:
        return createContents(programOf(window)) ? 0 : -1;
    case WM_GETMINMAXINFO: // comes before the window has its program
        reinterpret_cast<MINMAXINFO*>(data)->ptMinTrackSize = leastSize;
        return 0;
    case WM_SIZE:
        layOutScreens(programOf(window));
        return 0;
    case WM_SETFOCUS:
        SetFocus(programOf(window).screens[lowerScreen]);
        return 0;
    // A command that was posted, while a dialog or a transfer keeps the user out, is dropped.
    case WM_COMMAND:
        if (IsWindowEnabled(window) == 0) return 0;
        if (!runCommand(programOf(window), LOWORD(word))) break;
        showCommandLineItem(programOf(window));
        return 0;
    case WM_DROPFILES:
        openDroppedFile(programOf(window), reinterpret_cast<HDROP>(word));
        return 0;
    case WM_CLOSE:
        if (IsWindowEnabled(window) != 0) closeWindow(programOf(window));
        return 0;
    case WM_DESTROY: {
        Program& program = programOf(window);
        endDdeClient(program);
        destroyScreens(program); // of a creation that failed: before their library goes
        if (program.richEdit != nullptr) FreeLibrary(program.richEdit);
        program.richEdit = nullptr;
        PostQuitMessage(0);
        return 0;
    }
    default:
        break;
    }
    return DefWindowProcA(window, message, word, data);
}

bool registerClass(const Program& program) {
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = onMainWindow;
    windowClass.hInstance = program.instance;
    windowClass.hIcon = LoadIconA(nullptr, IDI_APPLICATION);
    windowClass.hIconSm = LoadIconA(nullptr, IDI_APPLICATION);
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_INACTIVEBORDER + 1));
    windowClass.lpszMenuName = MAKEINTRESOURCEA(MENU_MAIN);
    windowClass.lpszClassName = className;
    return RegisterClassExA(&windowClass) != 0;
}

} // namespace

bool openMainWindow(Program& program, int showCommand) {
    if (!registerClass(program)) return false;
    const Settings& kept = program.defaults();
    const HWND window =
        CreateWindowExA(0, className, className, WS_OVERLAPPEDWINDOW, kept.windowLeft, kept.windowTop,
                        kept.windowRight - kept.windowLeft, kept.windowBottom - kept.windowTop, nullptr,
                        nullptr, program.instance, &program);
    if (window == nullptr) return false;
    ShowWindow(window, showCommand);
    UpdateWindow(window);
    return true;
}

void startWork(Program& program, const StartArguments& start) {
    if (start.numerics != nullptr) {
        switchNumerics(program, *start.numerics);
    } else {
        WindowFrontend(program).alert("--numerics takes classic or textbook", "alert");
    }
    if (start.file != nullptr) openNamedFile(program, start.file);
}
