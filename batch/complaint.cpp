#include "batch/complaint.h"

#include <cstdarg>
#include <cstdio>

void Complaint::say(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
}
