#include "app/command_line_copy.h"

#include <cstring>
#include <cwchar>
#include <iterator>

#include "analysis/run/commands.h"
#include "app/menu_item.h"

namespace {

constexpr int mostCharacters = 8192; // of what a command prompt takes
constexpr const wchar_t* runnerName = L"ombrivantel-batch.exe";

// The path of the runner in quotes, or its bare name where it is not beside the program.
void writeRunner(wchar_t (&text)[mostCharacters]) {
    wchar_t path[MAX_PATH] = L"";
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    wchar_t* const slash = length < MAX_PATH ? std::wcsrchr(path, L'\\') : nullptr;
    const bool fits = slash != nullptr && slash + 1 - path + std::wcslen(runnerName) < MAX_PATH;
    if (fits) std::wcscpy(slash + 1, runnerName);
    const bool isThere = fits && GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
    std::swprintf(text, mostCharacters, L"\"%ls\" ", isThere ? path : L"ombrivantel-batch");
}

} // namespace

void copyCommandLine(Program& program) {
    wchar_t text[mostCharacters];
    writeRunner(text);
    const std::size_t used = std::wcslen(text);
    const int added = MultiByteToWideChar(CP_ACP, 0, program.run.repeating, -1, text + used,
                                          static_cast<int>(std::size(text) - used));
    if (added == 0 || OpenClipboard(program.window) == 0) return;
    EmptyClipboard();
    const std::size_t bytes = (used + static_cast<std::size_t>(added)) * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
    if (memory != nullptr) {
        std::memcpy(GlobalLock(memory), text, bytes);
        GlobalUnlock(memory);
        // cppcheck-suppress doubleFree ; what the clipboard does not take is ours
        if (SetClipboardData(CF_UNICODETEXT, memory) == nullptr) GlobalFree(memory);
    }
    CloseClipboard();
}

void showCommandLineItem(Program& program) {
    enableItem(program.window, commandCopyCommandLine, program.run.repeating[0] != '\0');
}
