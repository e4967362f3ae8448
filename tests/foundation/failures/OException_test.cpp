// SPDX-License-Identifier: MIT
#include "foundation/failures/OException.h"

#include <gmock/gmock.h>

#include <string>

#include "foundation/Assert.h"
#include "foundation/failures/DebugHelp.h"
#include "foundation/OLockGuard.h"
#include "foundation/failures/SehTranslator.h"
#include "support/AllocationFailure.h"
#include "support/ImportHook.h"
#include "support/TranslatorScope.h"

namespace {

using ::testing::HasSubstr;

std::string SystemText(DWORD code)
{
    char text[1024];
    const DWORD length = ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                                          MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), text, sizeof text, nullptr);
    return std::string(text, length);
}

/// What the platform would tell about an exception with one parameter.
struct Fault {
    explicit Fault(const void* parameter)
    {
        record.NumberParameters = 1;
        record.ExceptionInformation[0] = reinterpret_cast<ULONG_PTR>(parameter);
        ::RtlCaptureContext(&context);
    }

    EXCEPTION_RECORD record{};
    CONTEXT context{};
    EXCEPTION_POINTERS pointers{&record, &context};
};

const AssertRecord assertRecord{42, "OThing::Do", "thing.cpp", "ASSERT(this)"};
const AssertRecord recordWithoutCondition{42, "OThing::Do", "thing.cpp", ""};

TEST(OException, KeepsCodeAndText)
{
    const OException exception(5, "no way");
    EXPECT_EQ(exception.GetErrorCode(), 5);
    EXPECT_EQ(exception.GetErrorText(), "no way");
}

TEST(OException, CopiesItsText)
{
    char text[] = "mine";
    const OException exception(5, text);
    text[0] = 'f';
    EXPECT_STREQ(exception.GetErrorTextA(), "mine");
}

TEST(OException, AnEmptyTextIsAText)
{
    EXPECT_STREQ(OException(5, "").GetErrorTextA(), "");
}

TEST(OException, TakesTheSystemsTextWithoutAText)
{
    ASSERT_FALSE(SystemText(ERROR_ACCESS_DENIED).empty());
    EXPECT_EQ(OException(ERROR_ACCESS_DENIED).GetErrorTextA(), SystemText(ERROR_ACCESS_DENIED));
}

TEST(OException, HasNoTextIfTheSystemHasNone)
{
    const OException exception(0x0FFFFFFF);
    EXPECT_EQ(exception.GetErrorTextA(), nullptr);
    EXPECT_TRUE(exception.GetErrorText().IsEmpty());
}

TEST(OException, CodeBelowOneReadsAsInternalError)
{
    EXPECT_EQ(OException(0).GetErrorCode(), 1359);
    EXPECT_EQ(OException(-1).GetErrorCode(), 1359);
    EXPECT_EQ(OException(LONG_MIN).GetErrorCode(), 1359);
    EXPECT_EQ(OException(1).GetErrorCode(), 1);
}

TEST(OException, CodeBelowOneTakesTheSystemsTextForInternalError)
{
    ASSERT_FALSE(SystemText(ERROR_INTERNAL_ERROR).empty());
    EXPECT_EQ(OException(0).GetErrorTextA(), SystemText(ERROR_INTERNAL_ERROR));
}

TEST(OException, APlainErrorHasNoPlaceAndNoPointers)
{
    const OException exception(5);
    EXPECT_EQ(exception.GetFunction(), nullptr);
    EXPECT_EQ(exception.GetFile(), nullptr);
    EXPECT_EQ(exception.GetLine(), -1);
    EXPECT_EQ(exception.GetExceptionPointers(), nullptr);
}

TEST(OException, KeepsThePointers)
{
    Fault fault(nullptr);
    EXPECT_EQ(OException(5, nullptr, &fault.pointers).GetExceptionPointers(), &fault.pointers);
}

TEST(OException, TakesPlaceAndConditionFromAnAssertRecord)
{
    Fault fault(&assertRecord);
    const OException exception(-1, "given", &fault.pointers);
    EXPECT_EQ(exception.GetErrorCode(), 1359);
    EXPECT_STREQ(exception.GetErrorTextA(), "ASSERT(this)");
    EXPECT_STREQ(exception.GetFunction(), "OThing::Do");
    EXPECT_STREQ(exception.GetFile(), "thing.cpp");
    EXPECT_EQ(exception.GetLine(), 42);
}

TEST(OException, KeepsItsTextIfTheRecordHasNoCondition)
{
    Fault fault(&recordWithoutCondition);
    const OException exception(-1, "given", &fault.pointers);
    EXPECT_STREQ(exception.GetErrorTextA(), "given");
    EXPECT_STREQ(exception.GetFunction(), "OThing::Do");
}

TEST(OException, LooksForNoRecordWithoutAParameter)
{
    Fault fault(&assertRecord);
    fault.record.NumberParameters = 0;
    const OException exception(-1, "given", &fault.pointers);
    EXPECT_STREQ(exception.GetErrorTextA(), "given");
    EXPECT_EQ(exception.GetFunction(), nullptr);
    EXPECT_EQ(exception.GetLine(), -1);
}

TEST(OException, LooksForNoRecordUnderAnyOtherCode)
{
    Fault fault(&assertRecord);
    const OException exception(1359, "given", &fault.pointers);
    EXPECT_STREQ(exception.GetErrorTextA(), "given");
    EXPECT_EQ(exception.GetFunction(), nullptr);
}

TEST(OException, ACopyHasTextsOfItsOwn)
{
    Fault fault(&assertRecord);
    auto original = std::make_unique<OException>(-1, nullptr, &fault.pointers);
    const OException copy(*original);
    const std::string stack = original->GetStackText();
    EXPECT_NE(copy.GetErrorTextA(), original->GetErrorTextA());
    EXPECT_NE(copy.GetStackText(), original->GetStackText());
    EXPECT_NE(copy.GetFunction(), original->GetFunction());
    EXPECT_NE(copy.GetFile(), original->GetFile());
    original.reset();
    EXPECT_STREQ(copy.GetErrorTextA(), "ASSERT(this)");
    EXPECT_EQ(copy.GetStackText(), stack);
    EXPECT_STREQ(copy.GetFunction(), "OThing::Do");
    EXPECT_STREQ(copy.GetFile(), "thing.cpp");
    EXPECT_EQ(copy.GetLine(), 42);
    EXPECT_EQ(copy.GetErrorCode(), 1359);
    EXPECT_EQ(copy.GetExceptionPointers(), &fault.pointers);
}

TEST(OException, WithoutMemoryCodeAndLineAreToldAndTextsLeftOut)
{
    Fault fault(&assertRecord);
    bool failed = true;
    for (int allowed = 0; failed; ++allowed) {
        const AllocationFailure failure(allowed);
        const OException exception(-1, nullptr, &fault.pointers);
        failed = AllocationFailure::Happened();
        EXPECT_EQ(exception.GetErrorCode(), 1359) << allowed;
        EXPECT_EQ(exception.GetLine(), 42) << allowed;
        EXPECT_EQ(exception.GetExceptionPointers(), &fault.pointers) << allowed;
    }
}

// The module's name stands in the stack text in every configuration; function names only where there are symbols.

TEST(OException, APlainErrorCarriesTheStackOfItsPlace)
{
    EXPECT_THAT(OException(5).GetStackText(), HasSubstr("foundation_failures_tests"));
}

TEST(OException, AFaultCarriesTheStackOfTheFaultingPlace)
{
    std::string stack;
    const TranslatorScope scope([](unsigned, EXCEPTION_POINTERS* pointers) { throw OException(5, nullptr, pointers); });
    DWORD64 address = 0;
    try {
        RunTranslated([] { ::RaiseException(0xE0001234, 0, 0, nullptr); });
    } catch (const OException& exception) {
        stack = exception.GetStackText();
        address = exception.GetExceptionPointers()->ContextRecord->Rip;
    }
    char firstFrame[32];
    std::snprintf(firstFrame, sizeof firstFrame, "%016llX ", address);
    EXPECT_EQ(stack.substr(0, 17), firstFrame);
    EXPECT_THAT(stack, HasSubstr("foundation_failures_tests"));
}

TEST(OException, WithoutDebugHelpTheStackTextIsEmpty)
{
    {
        const OLockGuard guard(DebugHelpLock());
        DebugHelp::EndKept();
    }
    const ImportHook<decltype(::LoadLibraryW)> hook("LoadLibraryW", [](const wchar_t*) -> HMODULE { return nullptr; });
    EXPECT_STREQ(OException(5).GetStackText(), "");
}

TEST(OException, WithoutACallThatCapturesTheContextThereIsNoStackText)
{
    const ImportHook<decltype(::GetProcAddress)> hook("GetProcAddress",
                                                      [](HMODULE, const char*) -> FARPROC { return nullptr; });
    EXPECT_EQ(OException(5).GetStackText(), nullptr);
}

} // namespace
