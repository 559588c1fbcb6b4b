#include <algorithm>
#include <cstdio>
#include <future>
#include <gtest/gtest.h>
#include <optional>
#include <thread>
#include <windows.h>

#include <commctrl.h>
#include <dde.h>

#include "analysis/run/commands.h"
#include "tests/gui/driver.h"
#include "tests/support/sheet_cell.h"

namespace {

// A spreadsheet program: a thread with a window that answers the raw messages of DDE. The library's own
// server side is of no use here, since under Wine it answers every second request only.
struct Spreadsheet {
    using Cells = std::function<std::optional<std::string>(const Spreadsheet&, int row, int col)>;
    Cells cells; // no text, no answer
    HWND window = nullptr, client = nullptr;
    std::string topic; // of the last conversation
    std::promise<DWORD> started;
    std::thread thread;
    DWORD threadId;

    explicit Spreadsheet(Cells answers)
        : cells(std::move(answers)), thread([this] { run(); }), threadId(started.get_future().get()) {}
    ~Spreadsheet() {
        PostThreadMessageA(threadId, WM_QUIT, 0, 0);
        thread.join();
    }
    void run() {
        window = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
        SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(onMessage));
        started.set_value(GetCurrentThreadId());
        for (MSG message; GetMessageA(&message, nullptr, 0, 0) > 0;) DispatchMessageA(&message);
        DestroyWindow(window);
    }
    static LRESULT CALLBACK onMessage(HWND target, UINT message, WPARAM word, LPARAM data) {
        auto& self = *reinterpret_cast<Spreadsheet*>(GetWindowLongPtrA(target, GWLP_USERDATA));
        if (message == WM_DDE_INITIATE) self.accept(reinterpret_cast<HWND>(word), LOWORD(data), HIWORD(data));
        if (message == WM_DDE_REQUEST) self.answer(HIWORD(data));
        if (message == WM_DDE_TERMINATE) self.hangUp();
        return DefWindowProcA(target, message, word, data);
    }
    static std::string nameOf(ATOM atom) {
        char name[256] = "";
        GlobalGetAtomNameA(atom, name, sizeof name);
        return name;
    }
    void accept(HWND caller, ATOM service, ATOM workbook) {
        if (nameOf(service) != "Excel") return;
        client = caller;
        topic = nameOf(workbook);
        const LPARAM names = MAKELPARAM(GlobalAddAtomA("Excel"), GlobalAddAtomA(topic.c_str()));
        SendMessageA(client, WM_DDE_ACK, reinterpret_cast<WPARAM>(window), names);
    }
    void answer(ATOM item) const {
        int row = 0, col = 0;
        std::sscanf(nameOf(item).c_str(), "R%dC%d", &row, &col);
        std::optional<std::string> text = cells(*this, row, col);
        if (!text) return;
        *text += "\r\n";
        const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DDEDATA) + text->size());
        auto* const reply = static_cast<DDEDATA*>(GlobalLock(block));
        reply->fResponse = reply->fRelease = 1;
        reply->cfFormat = CF_TEXT;
        std::copy(text->begin(), text->end(), reply->Value);
        GlobalUnlock(block);
        PostMessageA(client, WM_DDE_DATA, reinterpret_cast<WPARAM>(window),
                     PackDDElParam(WM_DDE_DATA, reinterpret_cast<UINT_PTR>(block), item));
    }
    void hangUp() const { PostMessageA(client, WM_DDE_TERMINATE, reinterpret_cast<WPARAM>(window), 0); }
};

const std::string sheet = "label,A,B\na,1,6\nb,2,4\nc,3,5\nd,4,1\ne,5,-2\nf,6,2.5\n";

struct SpreadsheetLink : testing::Test {
    App app;
    const std::string workbook = app.write("data.xls", ""), csv = app.write("data.csv", sheet);

    // Returns the kind that the dialog begins with.
    int open(int kind, const std::string& path) const {
        const Dialog dialog = app.runCommand(commandOpenFile, "Open");
        const int kept = dialog.chosen(fileType);
        dialog.choose(fileType, kind);
        dialog.type(fileName, path);
        dialog.press(IDOK);
        waitUntil("the file", [&] {
            return IsWindowEnabled(app.window()) != 0 && app.statusText().find(" : ") != std::string::npos;
        });
        return kept;
    }
};

} // namespace

TEST_F(SpreadsheetLink, LoadsWhatACsvFileWouldGive) {
    Settings settings;
    setDefaultSettings(settings);
    settings.fileType = 1;
    app.writeSettings(settings);
    const Spreadsheet spreadsheet([](auto&, int row, int col) { return sheetCell(";\n" + sheet, row, col); });
    app.start();
    std::string texts[2];
    for (const int kind : {1, 0}) {
        EXPECT_EQ(open(kind, kind == 1 ? workbook : csv), 1);
        texts[kind] = app.upperText() + app.statusText();
        app.runCommand(710, "fundamental statistics analysis").press(IDOK);
        texts[kind] += app.lowerText();
        app.runCommand(commandCloseFile);
    }
    EXPECT_EQ(spreadsheet.topic, workbook);
    for (std::size_t at = 0; (at = texts[1].find(".xls")) != std::string::npos;)
        texts[1].replace(at, 4, ".csv");
    EXPECT_EQ(texts[1], texts[0]);
}

TEST_F(SpreadsheetLink, TellsAFailureAndGoesOn) {
    const std::pair<const char*, Spreadsheet::Cells> cases[] = {
        {"failed to link server.", nullptr},
        {"not initiate dde.", [](auto& book, int, int) { return book.hangUp(), std::nullopt; }},
        {"not initiate dde.", [](auto& book, int, int) { return DestroyWindow(book.window), std::nullopt; }},
        {"failed to get data of excel file.", [](auto&, int, int) { return Sleep(1500), "6"; }},
        {"failed to disconnect dde connection.", nullptr}};
    SetEnvironmentVariableA("OMBRIVANTEL_DDE_TIMEOUT", "1000");
    app.start();
    SetEnvironmentVariableA("OMBRIVANTEL_DDE_TIMEOUT", nullptr);
    for (const auto& [words, last] : cases) {
        std::optional<Spreadsheet> spreadsheet;
        const auto answer = [&, &last = last](auto& book, int row, int col) -> std::optional<std::string> {
            if (!last) return "";
            return row == 4 && col == 2 ? last(book, row, col) : sheetCell(sheet, row, col);
        };
        if (words != cases[0].first) spreadsheet.emplace(answer);
        open(1, workbook);
        EXPECT_EQ(app.upperText().find(words), last || !spreadsheet ? 2 : std::string::npos)
            << app.upperText();
        EXPECT_EQ(app.statusText(), std::string("error : ") + words);
        EXPECT_FALSE(app.isItemEnabled(710));
        open(0, csv);
        EXPECT_EQ(app.statusText(), "status : opened data file named : 'data.csv'");
        app.runCommand(commandCloseFile);
    }
}

TEST_F(SpreadsheetLink, ShowsTheRowsOfALargeSheetAsTheyCome) {
    std::future<LRESULT> position; // the program handles no message before it has an answer
    const Spreadsheet spreadsheet([&](auto&, int row, int col) {
        if (row == 201 && col == 20) {
            position = std::async([&] {
                const HWND bar =
                    FindWindowExA(app.child(CONTROL_STATUS_BAR), nullptr, PROGRESS_CLASSA, nullptr);
                return IsWindowVisible(bar) != 0 ? SendMessageA(bar, PBM_GETPOS, 0, 0) : 0;
            });
        }
        return row > 400 || col > 20 ? "" : std::to_string(row * col);
    });
    app.start();
    const ULONGLONG start = GetTickCount64();
    open(1, workbook);
    EXPECT_LT(GetTickCount64() - start, 20'000U);
    EXPECT_NE(app.upperText().find("\t-- 399 samples, 19 variables\n"), std::string::npos);
    EXPECT_EQ(position.get() / 25, 2);
}
