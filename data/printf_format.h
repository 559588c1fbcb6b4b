#pragma once

// The kind of the formats that [[gnu::format]] holds calls to: that of std::printf. MinGW brings its own,
// which knows more than that of Windows.
#if defined(__MINGW32__) && !defined(__clang__)
#define PRINTF_KIND gnu_printf
#else
#define PRINTF_KIND printf
#endif
