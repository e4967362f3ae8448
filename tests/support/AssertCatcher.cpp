// SPDX-License-Identifier: MIT
#include "support/AssertCatcher.h"

#include "foundation/Platform.h"

#include "foundation/Assert.h"
#include "foundation/OHandle.h"

namespace {

struct AssertBroken {};

thread_local bool catching = false;

[[noreturn]] void Throw()
{
    throw AssertBroken();
}

/// Goes on as if the raising code had called `Throw`: a C++ exception then leaves the body in the ordinary way.
LONG CALLBACK DivertAssert(EXCEPTION_POINTERS* exception)
{
    if (!catching || exception->ExceptionRecord->ExceptionCode != assertExceptionCode) return EXCEPTION_CONTINUE_SEARCH;
    CONTEXT& context = *exception->ContextRecord;
    context.Rsp -= sizeof(DWORD64);
    *reinterpret_cast<DWORD64*>(context.Rsp) = context.Rip;
    context.Rip = reinterpret_cast<DWORD64>(&Throw);
    return EXCEPTION_CONTINUE_EXECUTION;
}

void RemoveHandler(void* handler) noexcept
{
    catching = false;
    ::RemoveVectoredExceptionHandler(handler);
}

} // namespace

std::string BrokenAssert(const std::function<void()>& body)
{
    const OHandle<RemoveHandler, void*> handler(::AddVectoredExceptionHandler(1, DivertAssert));
    catching = true;
    try {
        body();
        return "";
    } catch (const AssertBroken&) {
        return std::string(LastAssert().function) + " " + LastAssert().condition;
    }
}
