// SPDX-License-Identifier: MIT
#pragma once

/// Writes one line to the debug trace: source file, line, and the text. It has no effect on behaviour.
/// `format` is a printf format whose text ends in "\n"; a line is cut at 1023 characters.
void TraceLine(const char* file, int line, const char* format, ...) noexcept
#ifndef __clang__ // which does not know this library's form of printf
    __attribute__((format(gnu_printf, 3, 4)))
#endif
    ;

#define TRACE(...) ::TraceLine(__FILE__, __LINE__, __VA_ARGS__)
