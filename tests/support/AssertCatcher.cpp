// SPDX-License-Identifier: MIT
#include "support/AssertCatcher.h"

#include "foundation/Assert.h"
#include "support/TranslatorScope.h"

namespace {

struct AssertBroken {};

void ThrowAssertBroken(unsigned code, EXCEPTION_POINTERS* pointers)
{
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (code != assertExceptionCode || record.NumberParameters == 0) return;
    if (record.ExceptionInformation[0] == reinterpret_cast<ULONG_PTR>(&LastAssert())) throw AssertBroken();
}

} // namespace

std::string BrokenAssert(const std::function<void()>& body)
{
    const TranslatorScope scope(ThrowAssertBroken);
    try {
        RunTranslated(body);
        return "";
    } catch (const AssertBroken&) {
        return std::string(LastAssert().function) + " " + LastAssert().condition;
    }
}
