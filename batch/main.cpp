#include "batch/batch.h"

#ifdef _WIN32

#include <cstdlib>
#include <windows.h>

namespace {

// The text in UTF-8, kept until the program ends; null without memory.
char* toUtf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    char* const bytes = static_cast<char*>(std::calloc(static_cast<std::size_t>(size) + 1, 1));
    if (bytes != nullptr) WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes, size, nullptr, nullptr);
    return bytes;
}

} // namespace

// File names of any script, whatever the system's code page.
int wmain(int count, wchar_t** wide) {
    char** const arguments =
        static_cast<char**>(std::calloc(static_cast<std::size_t>(count) + 1, sizeof(char*)));
    if (arguments == nullptr) return EXIT_FAILURE;
    for (int k = 0; k < count; ++k) {
        arguments[k] = toUtf8(wide[k]);
        if (arguments[k] == nullptr) return EXIT_FAILURE;
    }
    return runBatch(count, arguments);
}

#else

int main(int count, char** arguments) {
    return runBatch(count, arguments);
}

#endif
