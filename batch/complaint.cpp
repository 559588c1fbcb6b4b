#include "batch/complaint.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

void Complaint::say(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
}

void Complaint::add(const char* format, ...) {
    const std::size_t used = std::strlen(text);
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text + used, sizeof text - used, format, arguments);
    va_end(arguments);
}
