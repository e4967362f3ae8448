// SPDX-License-Identifier: MIT
#include "foundation/Trace.h"

#include "foundation/Platform.h"

#include <cstdarg>
#include <cstdio>

void TraceLine(const char* file, int line, const char* format, ...) noexcept
{
    char text[1024];
    const int head = std::snprintf(text, sizeof text, "%s(%d): ", file, line);
    if (head < 0 || head >= static_cast<int>(sizeof text)) return;

    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text + head, sizeof text - static_cast<size_t>(head), format, arguments);
    va_end(arguments);
    ::OutputDebugStringA(text);
}
