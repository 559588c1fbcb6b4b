#include "app/graph_window.h"

#include "app/gdi_canvas.h"
#include "app/list_filler.h"
#include "app/message_box.h"
#include "app/resource_ids.h"
#include "report/graph_painter.h"

namespace {

constexpr const char* className = "graph";
constexpr int leastSize = 200;
constexpr int fontHeight = 14;
constexpr int dropHeight = 200;
constexpr int firstRow = 1;
constexpr int rowGap = 2;
constexpr int edgeGap = 2;

// The places of a text and its one or two lists in a row.
struct GroupPlace {
    int text;
    int lists[2];
    int width; // of a list
};
constexpr GroupPlace leftGroup = {10, {60, 150}, 80};
constexpr int textWidth = 46;
constexpr int rightText = 242;
constexpr int rightList = 288;
constexpr int rightGap = 6;
constexpr int leastListWidth = 40;

Program& programOf(HWND window) {
    return *reinterpret_cast<Program*>(GetWindowLongPtrA(window, GWLP_USERDATA));
}

HWND createControl(const Program& program, const char* controlClass, const char* text, DWORD style,
                   int identifier) {
    const HWND control =
        CreateWindowExA(0, controlClass, text, style | WS_CHILD | WS_VISIBLE, 0, 0, leftGroup.width,
                        dropHeight, program.graph.window,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(identifier)), program.instance, nullptr);
    if (control != nullptr)
        SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(program.graph.font), FALSE);
    return control;
}

bool createText(const Program& program, const char* text, int identifier) {
    return createControl(program, "STATIC", text, SS_LEFT, identifier) != nullptr;
}

bool createList(const Program& program, const TextView& texts, int identifier, int chosen) {
    const HWND list =
        createControl(program, "COMBOBOX", "", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, identifier);
    if (list == nullptr) return false;
    SendMessageA(list, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), fontHeight);
    SendMessageA(list, CB_INITSTORAGE, static_cast<WPARAM>(texts.size()),
                 static_cast<LPARAM>(texts.size()) * static_cast<LPARAM>(textSlotSize));
    ListFiller filler(list);
    for (Index i = 0; i < texts.size(); ++i) filler.add(texts[i]);
    filler.choose(chosen);
    return true;
}

// In tab order. The font stays until the window is gone.
bool createControls(Program& program) {
    const GraphSpec& spec = program.run.graph.spec;
    program.graph.font = createArial({fontHeight});
    if (choosesAxes(spec.kind)) {
        if (!createText(program, "Select", CONTROL_GRAPH_SELECT)) return false;
        if (!createList(program, spec.seriesNames, CONTROL_GRAPH_SERIES, 0)) return false;
        if (!createList(program, spec.seriesNames, CONTROL_GRAPH_SERIES + 1, 1)) return false;
    }
    if (!createText(program, "Search", CONTROL_GRAPH_SEARCH)) return false;
    if (!createList(program, spec.itemLabels, CONTROL_GRAPH_ITEM, -1)) return false;
    return spec.numbering == 0 || createList(program, spec.numberLabels, CONTROL_GRAPH_ITEM + 1, -1);
}

void place(HWND control, int left, int top, int width, int height, bool shown) {
    MoveWindow(control, left, top, width, height, TRUE);
    ShowWindow(control, shown ? SW_SHOWNA : SW_HIDE);
}

int heightOf(HWND window) {
    RECT place = {};
    GetWindowRect(window, &place);
    return place.bottom - place.top;
}

// To the right of the left group, as wide as there is room.
GroupPlace rightGroup(int windowWidth, int lists) {
    const int width = (windowWidth - edgeGap - rightList) / lists - rightGap;
    const int taken = width < leftGroup.width ? width : leftGroup.width;
    return {rightText, {rightList, rightList + taken + rightGap}, taken};
}

// A text and the one or two lists whose identifiers begin at firstList.
void placeGroup(const Program& program, const GroupPlace& group, int text, int firstList, int top,
                bool shown) {
    const HWND window = program.graph.window;
    place(GetDlgItem(window, text), group.text, top + 3, textWidth, fontHeight + 2, shown);
    for (int k = 0; k < 2; ++k) {
        const HWND list = GetDlgItem(window, firstList + k);
        if (list == nullptr) continue;
        // A narrow window still shows the arrow of the second list.
        const int room = program.graph.view.width - group.lists[k] - edgeGap;
        place(list, group.lists[k], top, room < group.width ? room : group.width, dropHeight, shown);
    }
}

// Above the picture, in one row or two; a row without room there is hidden.
void placeControls(const Program& program) {
    const Graph& graph = program.run.graph;
    const GraphLayout layout = layOutGraph(graph, program.graph.view);
    const int height = heightOf(GetDlgItem(program.graph.window, CONTROL_GRAPH_ITEM));
    const int room = layout.plot.top - layout.fontHeight - 1;
    const auto placeSearch = [&](const GroupPlace& group, int top) {
        placeGroup(program, group, CONTROL_GRAPH_SEARCH, CONTROL_GRAPH_ITEM, top, top + height <= room);
    };
    if (!choosesAxes(graph.spec.kind)) return placeSearch(leftGroup, firstRow);
    placeGroup(program, leftGroup, CONTROL_GRAPH_SELECT, CONTROL_GRAPH_SERIES, firstRow,
               firstRow + height <= room);
    const GroupPlace right = rightGroup(layout.size.width, graph.spec.numbering != 0 ? 2 : 1);
    if (right.width >= leastListWidth) return placeSearch(right, firstRow);
    placeSearch(leftGroup, firstRow + height + rowGap);
}

void resize(Program& program, int width, int height) {
    program.graph.view.width = width;
    program.graph.view.height = height;
    if (program.run.graph.present) placeControls(program);
}

// Into memory first, so that the window never shows a half of it.
void paint(const Program& program) {
    PAINTSTRUCT painting;
    const HDC device = BeginPaint(program.graph.window, &painting);
    if (device == nullptr) return;
    const GraphView& view = program.graph.view;
    const HDC memory = CreateCompatibleDC(device);
    const HBITMAP picture = CreateCompatibleBitmap(device, view.width, view.height);
    const bool buffered = memory != nullptr && picture != nullptr;
    const HGDIOBJ before = buffered ? SelectObject(memory, picture) : nullptr;
    {
        GdiCanvas canvas(buffered ? memory : device);
        canvas.fillBox({0, 0, view.width, view.height}, {255, 255, 255});
        drawGraph(canvas, program.run.graph, view);
    }
    if (buffered) {
        BitBlt(device, 0, 0, view.width, view.height, memory, 0, 0, SRCCOPY);
        SelectObject(memory, before);
    }
    if (picture != nullptr) DeleteObject(picture);
    if (memory != nullptr) DeleteDC(memory);
    EndPaint(program.graph.window, &painting);
}

void onChoice(Program& program, int list) {
    const HWND window = program.graph.window;
    GraphView& view = program.graph.view;
    const int chosen = static_cast<int>(SendDlgItemMessageA(window, list, CB_GETCURSEL, 0, 0));
    if (chosen < 0) return;
    if (list == CONTROL_GRAPH_SERIES || list == CONTROL_GRAPH_SERIES + 1) {
        view.series[list - CONTROL_GRAPH_SERIES] = chosen;
    } else {
        view.highlighted = static_cast<std::uint32_t>(chosen) + 1;
        const int other = list == CONTROL_GRAPH_ITEM ? CONTROL_GRAPH_ITEM + 1 : CONTROL_GRAPH_ITEM;
        if (GetDlgItem(window, other) != nullptr) {
            SendDlgItemMessageA(window, other, CB_SETCURSEL, static_cast<WPARAM>(chosen), 0);
        }
    }
    InvalidateRect(window, nullptr, TRUE);
}

// The list that had the focus when the window was left, or the first one.
void focusList(Program& program) {
    HWND list = program.graph.lastFocus;
    if (list == nullptr) list = GetNextDlgTabItem(program.graph.window, nullptr, FALSE);
    if (list != nullptr) SetFocus(list);
}

void onGone(Program& program) {
    if (program.graph.font != nullptr) DeleteObject(program.graph.font);
    program.graph = {};
}

LRESULT CALLBACK onGraphWindow(HWND window, UINT message, WPARAM word, LPARAM data) {
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTA*>(data);
        auto* program = static_cast<Program*>(creation->lpCreateParams);
        program->graph = {};
        program->graph.window = window;
        SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(program));
    }
    if (GetWindowLongPtrA(window, GWLP_USERDATA) == 0) return DefWindowProcA(window, message, word, data);
    Program& program = programOf(window);
    switch (message) {
    case WM_CREATE:
        return createControls(program) ? 0 : -1;
    case WM_SIZE:
        resize(program, LOWORD(data), HIWORD(data));
        return 0;
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO*>(data)->ptMinTrackSize = {leastSize, leastSize};
        return 0;
    case WM_ERASEBKGND:
        return TRUE; // the picture covers all
    case WM_PAINT:
        paint(program);
        return 0;
    case WM_CTLCOLORSTATIC:
        return reinterpret_cast<LRESULT>(GetStockObject(WHITE_BRUSH));
    case WM_COMMAND:
        if (LOWORD(word) == IDCANCEL) { // the key Esc
            DestroyWindow(window);
            return 0;
        }
        if (HIWORD(word) == CBN_SELCHANGE) onChoice(program, LOWORD(word));
        if (HIWORD(word) == CBN_SETFOCUS) program.graph.lastFocus = reinterpret_cast<HWND>(data);
        return 0;
    case WM_SETFOCUS:
        focusList(program);
        return 0;
    case WM_CLOSE:
        DestroyWindow(window);
        return 0;
    case WM_NCDESTROY:
        onGone(program);
        break;
    default:
        break;
    }
    return DefWindowProcA(window, message, word, data);
}

} // namespace

bool registerGraphClass(const Program& program) {
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = onGraphWindow;
    windowClass.hInstance = program.instance;
    windowClass.hIcon = LoadIconA(nullptr, IDI_APPLICATION);
    windowClass.hIconSm = LoadIconA(nullptr, IDI_APPLICATION);
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    windowClass.lpszClassName = className;
    if (RegisterClassExA(&windowClass) != 0) return true;
    showAlert(program.window, "failed to registre graph window class");
    return false;
}

// Owned by the main window, which would hide it otherwise: the focus goes back there.
void openGraphWindow(Program& program) {
    const int width = static_cast<int>(program.run.graph.spec.width);
    const int height = static_cast<int>(program.run.graph.spec.height);
    const int left = (GetSystemMetrics(SM_CXSCREEN) - width) / 2;
    const int top = (GetSystemMetrics(SM_CYSCREEN) - height) / 2;
    const HWND window =
        CreateWindowExA(WS_EX_CLIENTEDGE, className, className, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, left,
                        top, width, height, program.window, nullptr, program.instance, &program);
    if (window == nullptr) {
        showAlert(program.window, "failed to create graph windows");
        return;
    }
    ShowWindow(window, SW_SHOW);
    UpdateWindow(window);
}

void closeGraph(Program& program) {
    if (program.graph.window == nullptr) return;
    releaseGraph(program.run.graph);
    SendMessageA(program.graph.window, WM_CLOSE, 0, 0);
}

bool translateGraphMessage(const Program& program, MSG& message) {
    return program.graph.window != nullptr && IsDialogMessageA(program.graph.window, &message) != 0;
}
