// SPDX-License-Identifier: MIT
#include "foundation/Platform.h"

#include <cstdio>

#include "support/AssertCatcher.h"

#include <gmock/gmock.h>

namespace {

/// Ends the program as failed. Left to itself, a crash under Wine's debugger may end with 0, which looks like success.
LONG WINAPI EndAsFailed(EXCEPTION_POINTERS* pointers)
{
    constexpr UINT crashed = 3;
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    std::printf("Crashed: exception %08lX at %p\n", record.ExceptionCode, record.ExceptionAddress);
    std::fflush(stdout);
    ::TerminateProcess(::GetCurrentProcess(), crashed);
    return EXCEPTION_EXECUTE_HANDLER;
}

} // namespace

int main(int argc, char** argv)
{
    ::SetUnhandledExceptionFilter(EndAsFailed);
    ::testing::InitGoogleMock(&argc, argv);
    BrokenAssert([] {}); // what it needs is made now, before a test lets memory run out
    return RUN_ALL_TESTS();
}
