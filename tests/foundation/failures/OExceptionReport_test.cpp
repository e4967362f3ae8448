// SPDX-License-Identifier: MIT
#include "foundation/failures/OExceptionReport.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/Assert.h"
#include "support/ImportHook.h"

namespace {

/// An exception that could not capture a context, and so has no call stack.
OException WithoutStack(LONG code, const char* text)
{
    const ImportHook<decltype(::GetProcAddress)> hook("GetProcAddress",
                                                      [](HMODULE, const char*) -> FARPROC { return nullptr; });
    return OException(code, text);
}

/// An exception as a broken ASSERT makes it, from a place that has no call stack.
OException FromAssert()
{
    static const AssertRecord assertRecord{42, "OThing::Do", "thing.cpp", "ASSERT(this)"};
    static EXCEPTION_RECORD record{};
    static CONTEXT context{};
    static EXCEPTION_POINTERS pointers{&record, &context};
    record.NumberParameters = 1;
    record.ExceptionInformation[0] = reinterpret_cast<ULONG_PTR>(&assertRecord);
    return OException(-1, nullptr, &pointers);
}

TEST(OExceptionReport, ConsoleTextOfAPlainError)
{
    const OExceptionReport report(WithoutStack(5, "no way"), "host.exe", "Main");
    EXPECT_EQ(report.ConsoleText(), "+++ host.exe exception: no way\r\nCaught in [Main]\r\n");
}

TEST(OExceptionReport, ConsoleTextOfABrokenAssertTellsItsPlace)
{
    const OExceptionReport report(FromAssert(), "host.exe", "Main");
    EXPECT_EQ(report.ConsoleText(), "+++ host.exe exception: ASSERT(this)\r\n"
                                    "Function: OThing::Do in thing.cpp (42)\r\n"
                                    "Caught in [Main]\r\n");
}

TEST(OExceptionReport, ConsoleTextEndsWithTheStack)
{
    const OException exception(5, "no way");
    const OExceptionReport report(exception, "host.exe", "Main");
    ASSERT_STRNE(exception.GetStackText(), "");
    EXPECT_EQ(report.ConsoleText(),
              std::string("+++ host.exe exception: no way\r\nCaught in [Main]\r\n") + exception.GetStackText());
}

TEST(OExceptionReport, EmptyCatcherLeavesTheBracketsEmpty)
{
    const OExceptionReport report(WithoutStack(5, "no way"), "host.exe", "");
    EXPECT_EQ(report.ConsoleText(), "+++ host.exe exception: no way\r\nCaught in []\r\n");
}

TEST(OExceptionReport, TrimsWhiteSpaceAroundTheErrorText)
{
    const OException exception = WithoutStack(5, " \t\r\n\v\fno  way \r\n");
    EXPECT_EQ(OExceptionReport(exception, "host.exe", "").ConsoleText(),
              "+++ host.exe exception: no  way\r\nCaught in []\r\n");
    EXPECT_STREQ(exception.GetErrorTextA(), " \t\r\n\v\fno  way \r\n") << "the exception keeps its text";
}

TEST(OExceptionReport, ErrorTextOfWhiteSpaceOnlyIsEmpty)
{
    EXPECT_EQ(OExceptionReport(WithoutStack(5, " \r\n"), "host.exe", "").ConsoleText(),
              "+++ host.exe exception: \r\nCaught in []\r\n");
}

TEST(OExceptionReport, ErrorWithoutATextIsEmpty)
{
    EXPECT_EQ(OExceptionReport(WithoutStack(0x0FFFFFFF, nullptr), "host.exe", "").ConsoleText(),
              "+++ host.exe exception: \r\nCaught in []\r\n");
}

TEST(OExceptionReport, DialogTitleNamesTheProgram)
{
    EXPECT_EQ(OExceptionReport(WithoutStack(5, "no way"), "host.exe", "Main").DialogTitle(), "host.exe Error");
}

TEST(OExceptionReport, DialogTextOfABrokenAssert)
{
    const OExceptionReport report(FromAssert(), "host.exe", "Main");
    EXPECT_FALSE(report.HasStack());
    EXPECT_EQ(report.DialogText(), "An unrecoverable error occurred, and execution cannot continue.\r\n\r\n"
                                   "Error: ASSERT(this)\r\n"
                                   "Function: OThing::Do in thing.cpp (42)\r\n"
                                   "Caught in [Main]\r\n");
}

TEST(OExceptionReport, DialogOffersTheStack)
{
    const OExceptionReport report(OException(5, "no way"), "host.exe", "Main");
    EXPECT_TRUE(report.HasStack());
    EXPECT_EQ(report.DialogQuestion(), "An unrecoverable error occurred, and execution cannot continue.\r\n\r\n"
                                       "Error: no way\r\n"
                                       "Caught in [Main]\r\n"
                                       "\r\nTrace call stack?");
}

TEST(OExceptionReport, DialogPutsTheStackInThePlaceOfTheOffer)
{
    const OException exception(5, "no way");
    const OExceptionReport report(exception, "host.exe", "Main");
    EXPECT_EQ(report.DialogTextWithStack(),
              std::string("An unrecoverable error occurred, and execution cannot continue.\r\n\r\n"
                          "Error: no way\r\n"
                          "Caught in [Main]\r\n"
                          "\r\n\r\n") +
                  exception.GetStackText());
}

TEST(OExceptionReport, LogTextTellsPlaceAndDump)
{
    const OExceptionReport report(FromAssert(), "host.exe", "Main");
    EXPECT_EQ(report.LogText("C:\\Temp\\kvcrash_0000.dmp"), "Error: ASSERT(this)\r\n"
                                                            "Function: OThing::Do in thing.cpp (42)\r\n"
                                                            "Caught in [Main]\r\n"
                                                            "MiniDump File: C:\\Temp\\kvcrash_0000.dmp\r\n");
}

TEST(OExceptionReport, LogTextWithoutADumpSaysNothingOfIt)
{
    const OExceptionReport report(WithoutStack(5, "no way"), "host.exe", "Main");
    EXPECT_EQ(report.LogText(""), "Error: no way\r\nCaught in [Main]\r\n");
}

TEST(OExceptionReport, DocumentErrorText)
{
    static constexpr struct {
        const char* document;
        const char* error;
        const char* catcher;
        const char* text;
    } rows[] = {
        {"a.lbl", "jam",   "Main", "Document name: a.lbl\r\nError: jam [Main]\r\n"                },
        {nullptr, "jam",   "Main", "Error: jam [Main]\r\n"                                        },
        {"",      "jam",   "Main", "Error: jam [Main]\r\n"                                        },
        {"a.lbl", nullptr, "Main", "Document name: a.lbl\r\nError: Unknown error event [Main]\r\n"},
        {nullptr, "jam",   "",     "Error: jam\r\n"                                               },
        {nullptr, nullptr, "",     "Error: Unknown error event\r\n"                               },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(OExceptionReport::DocumentErrorText(row.document, row.error, row.catcher), row.text) << row.text;
    }
}

} // namespace
