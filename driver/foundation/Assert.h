// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <cstddef>

/// Place and text of the last broken ASSERT. One static object for the process, overwritten by each and not locked.
/// Texts are cut to 259 characters.
struct AssertRecord {
    static constexpr size_t textSize = 260; ///< bytes, terminator included

    int line;
    char function[textSize];
    char file[textSize];
    char condition[textSize];
};

/// The structured exception that a broken ASSERT raises; its one parameter is the address of the static record.
inline constexpr DWORD assertExceptionCode = 1359; // ERROR_INTERNAL_ERROR

/// The static record; empty until an ASSERT has been broken.
const AssertRecord& LastAssert() noexcept;

/// Stops at a debugger if there is one, fills the static record and raises `assertExceptionCode`.
/// `function` is a plain name or what __PRETTY_FUNCTION__ gives; the record keeps the qualified name only.
[[noreturn]] void AssertFailed(int line, const char* function, const char* file, const char* condition);

/// Reports a broken debug assertion to the debug trace.
void DebugAssertFailed(int line, const char* file, const char* condition) noexcept;

/// A broken assumption in any build is an internal failure: see `AssertFailed`.
#define ASSERT(condition) ASSERT_IN(__PRETTY_FUNCTION__, condition)

/// ASSERT with an explicit function name, for templates: the names of their instances are settled.
#define ASSERT_IN(function, condition)                                                                                 \
    do {                                                                                                               \
        if (!(condition)) ::AssertFailed(__LINE__, function, __FILE__, "ASSERT(" #condition ")");                      \
    } while (false)

/// In a debug build a broken condition is reported to the trace and the code goes on; a release build doesn't
/// evaluate it.
#ifdef _DEBUG
#define DEBUG_ASSERT(condition)                                                                                        \
    do {                                                                                                               \
        if (!(condition)) ::DebugAssertFailed(__LINE__, __FILE__, #condition);                                         \
    } while (false)
#else
#define DEBUG_ASSERT(condition)                                                                                        \
    do {                                                                                                               \
        (void)sizeof((condition) ? 1 : 0);                                                                             \
    } while (false)
#endif
