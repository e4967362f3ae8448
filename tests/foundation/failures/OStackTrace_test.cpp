// SPDX-License-Identifier: MIT
#include "foundation/failures/OStackTrace.h"

#include <gmock/gmock.h>

#include "foundation/failures/SehTranslator.h"
#include "support/TranslatorScope.h"

namespace {

using ::testing::HasSubstr;

void ThrowCode(unsigned code, EXCEPTION_POINTERS*)
{
    throw code;
}

TEST(OStackTrace, CollectsTheLinesOfTheWalk)
{
    CONTEXT context;
    ::RtlCaptureContext(&context);
    const OStackTrace trace(context);
    EXPECT_THAT(trace.GetText().nstring(), HasSubstr("foundation_failures_tests"));
}

TEST(OStackTrace, AWalkThatFaultsLeavesAnEmptyText)
{
    CONTEXT context;
    ::RtlCaptureContext(&context);
    context.Rip = 0x10;
    context.Rsp = 0x18; // no stack there
    const OStackTrace trace(context);
    EXPECT_TRUE(trace.GetText().IsEmpty());
}

TEST(OStackTrace, LeavesTheTranslatorInPlace)
{
    const TranslatorScope scope(ThrowCode);
    CONTEXT context;
    ::RtlCaptureContext(&context);
    const OStackTrace trace(context);
    EXPECT_EQ(SetSehTranslator(ThrowCode), &ThrowCode);
}

} // namespace
