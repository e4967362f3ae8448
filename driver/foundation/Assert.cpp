// SPDX-License-Identifier: MIT
#include "foundation/Assert.h"

#include "foundation/Trace.h"

#include <algorithm>
#include <string_view>

namespace {

AssertRecord lastAssert;

/// "int OFile::Seek(int) const" becomes "OFile::Seek"; a plain name stays.
std::string_view QualifiedName(std::string_view signature)
{
    const std::string_view name = signature.substr(0, signature.find('('));
    const size_t blank = name.rfind(' ');
    return blank == std::string_view::npos ? name : name.substr(blank + 1);
}

template <size_t size>
void Store(char (&field)[size], std::string_view text)
{
    const size_t length = std::min(text.size(), size - 1);
    std::copy_n(text.data(), length, field);
    field[length] = '\0';
}

} // namespace

const AssertRecord& LastAssert() noexcept
{
    return lastAssert;
}

void AssertFailed(int line, const char* function, const char* file, const char* condition)
{
    if (::IsDebuggerPresent()) ::DebugBreak();

    lastAssert.line = line;
    Store(lastAssert.function, std::string_view(function).find('(') == std::string_view::npos
                                   ? std::string_view(function)
                                   : QualifiedName(function));
    Store(lastAssert.file, file);
    Store(lastAssert.condition, condition);

    const ULONG_PTR parameter = reinterpret_cast<ULONG_PTR>(&lastAssert);
    ::RaiseException(assertExceptionCode, EXCEPTION_NONCONTINUABLE, 1, &parameter);
    __builtin_unreachable();
}

void DebugAssertFailed(int line, const char* file, const char* condition) noexcept
{
    TraceLine(file, line, "Debug assertion failed: %s\n", condition);
}
