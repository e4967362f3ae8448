// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

namespace {

class SpoolDocumentTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        SpoolerSetIdentity(L"jane", L"DEPOT");
        const DEVMODEW devMode = LabelDevMode();
        SpoolerAddPrinter({.printerName = L"Label",
                           .devMode = &devMode,
                           .parameters = L"p=1",
                           .defaultPriority = 7,
                           .startTime = 60,
                           .untilTime = 120});
        printer = Open(L"Label");
    }

    void TearDown() override
    {
        printer.Reset();
        SimulatorTest::TearDown();
    }

    DWORD Start(const wchar_t* name = L"Document", const wchar_t* datatype = nullptr)
    {
        DOC_INFO_1W info = {const_cast<wchar_t*>(name), nullptr, const_cast<wchar_t*>(datatype)};
        return ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    }

    DWORD Write(const std::string& bytes)
    {
        return ErrorOf(
            ::WritePrinter(printer.Get(), const_cast<char*>(bytes.data()), static_cast<DWORD>(bytes.size()), &written));
    }

    SizedRead<JOB_INFO_2W> Job(DWORD jobId) { return ReadJob<JOB_INFO_2W>(printer, jobId, 2); }

    PrinterHandle printer;
    DWORD written = 0xFFFFFFFF;
};

TEST_F(SpoolDocumentTest, StartMakesASpoolingJobOfTheUserWithThePrintersDefaults)
{
    const DWORD jobId = Start(L"Address label");
    ASSERT_NE(jobId, 0u);
    const auto job = Job(jobId);
    EXPECT_EQ(job->JobId, jobId);
    EXPECT_EQ(Text(job->pDocument), L"Address label");
    EXPECT_EQ(Text(job->pUserName), L"jane");
    EXPECT_EQ(Text(job->pNotifyName), L"jane");
    EXPECT_EQ(Text(job->pMachineName), L"\\\\DEPOT");
    EXPECT_EQ(Text(job->pPrinterName), L"Label");
    EXPECT_EQ(Text(job->pDatatype), L"RAW");
    EXPECT_EQ(Text(job->pPrintProcessor), L"winprint");
    EXPECT_EQ(Text(job->pParameters), L"p=1");
    EXPECT_EQ(job->pDevMode->dmCopies, 2);
    EXPECT_EQ(job->pStatus, nullptr);
    EXPECT_EQ(job->Status, DWORD{JOB_STATUS_SPOOLING});
    EXPECT_EQ(job->Priority, 7u);
    EXPECT_EQ(job->StartTime, 60u);
    EXPECT_EQ(job->UntilTime, 120u);
    EXPECT_EQ(job->Position, 1u);
    EXPECT_EQ(job->TotalPages, 0u);
    EXPECT_EQ(job->Size, 0u);
    EXPECT_GE(job->Submitted.wYear, 2020);
}

TEST_F(SpoolDocumentTest, WithoutADefaultPriorityAJobHasTheLowest)
{
    printer = AddAndOpen(L"Other");
    EXPECT_EQ(Job(Start())->Priority, DWORD{DEF_PRIORITY});
}

TEST_F(SpoolDocumentTest, EndedDocumentsRestInTheQueueWithTheirBytes)
{
    const DWORD jobId = Start();
    EXPECT_TRUE(::StartPagePrinter(printer.Get()));
    EXPECT_EQ(Write("one "), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(written, 4u);
    EXPECT_EQ(Write("two"), DWORD{ERROR_SUCCESS});
    EXPECT_TRUE(::EndPagePrinter(printer.Get()));
    EXPECT_TRUE(::EndDocPrinter(printer.Get()));
    const auto job = Job(jobId);
    EXPECT_EQ(job->Status, 0u);
    EXPECT_EQ(job->Size, 7u);
    EXPECT_EQ(AsText(SpoolerJobBytes(L"Label", jobId)), "one two");
}

TEST_F(SpoolDocumentTest, EachStartedPageCounts)
{
    const DWORD jobId = Start();
    ::StartPagePrinter(printer.Get());
    ::EndPagePrinter(printer.Get());
    ::StartPagePrinter(printer.Get());
    EXPECT_EQ(Job(jobId)->TotalPages, 2u);
    EXPECT_EQ(Job(jobId)->PagesPrinted, 0u);
}

TEST_F(SpoolDocumentTest, PagesAreNotRequired)
{
    const DWORD jobId = Start();
    EXPECT_EQ(Write("bytes"), DWORD{ERROR_SUCCESS});
    EXPECT_TRUE(::EndDocPrinter(printer.Get()));
    EXPECT_EQ(Job(jobId)->TotalPages, 0u);
}

TEST_F(SpoolDocumentTest, WritingNothingSucceeds)
{
    Start();
    EXPECT_TRUE(::WritePrinter(printer.Get(), nullptr, 0, &written));
    EXPECT_EQ(written, 0u);
}

TEST_F(SpoolDocumentTest, WritingFromNowhereFails)
{
    Start();
    EXPECT_EQ(ErrorOf(::WritePrinter(printer.Get(), nullptr, 1, &written)), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(written, 0u);
    char byte = 0;
    EXPECT_EQ(ErrorOf(::WritePrinter(printer.Get(), &byte, 1, nullptr)), DWORD{RPC_X_NULL_REF_POINTER});
}

TEST_F(SpoolDocumentTest, OutsideADocumentEverythingFailsWithNoStartDoc)
{
    EXPECT_EQ(ErrorOf(::StartPagePrinter(printer.Get())), DWORD{ERROR_SPL_NO_STARTDOC});
    EXPECT_EQ(Write("x"), DWORD{ERROR_SPL_NO_STARTDOC});
    EXPECT_EQ(ErrorOf(::EndPagePrinter(printer.Get())), DWORD{ERROR_SPL_NO_STARTDOC});
    EXPECT_EQ(ErrorOf(::EndDocPrinter(printer.Get())), DWORD{ERROR_SPL_NO_STARTDOC});
}

TEST_F(SpoolDocumentTest, ADocumentEndsOnce)
{
    Start();
    EXPECT_TRUE(::EndDocPrinter(printer.Get()));
    EXPECT_EQ(ErrorOf(::EndDocPrinter(printer.Get())), DWORD{ERROR_SPL_NO_STARTDOC});
}

TEST_F(SpoolDocumentTest, ASecondStartOnTheHandleFails)
{
    Start();
    EXPECT_EQ(Start(), 0u);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(SpoolDocumentTest, TwoHandlesSpoolAtTheSameTime)
{
    const PrinterHandle other = Open(L"Label");
    const DWORD first = Start(L"first");
    const DWORD second = Print(other, L"second", "2");
    Write("1");
    ::EndDocPrinter(printer.Get());
    EXPECT_NE(first, second);
    EXPECT_EQ(AsText(SpoolerJobBytes(L"Label", first)), "1");
    EXPECT_EQ(AsText(SpoolerJobBytes(L"Label", second)), "2");
}

TEST_F(SpoolDocumentTest, AnyOpenHandleMayPrint)
{
    for (const DWORD access : {DWORD{PRINTER_ACCESS_USE}, DWORD{PRINTER_ACCESS_ADMINISTER}, DWORD{READ_CONTROL}}) {
        printer = Open(L"Label", access);
        EXPECT_NE(Start(), 0u) << access;
    }
}

TEST_F(SpoolDocumentTest, OnlyLevel1IsTaken)
{
    DOC_INFO_1W info = {};
    for (const DWORD level : {0, 2, 3}) {
        EXPECT_EQ(::StartDocPrinterW(printer.Get(), level, reinterpret_cast<BYTE*>(&info)), 0u);
        EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_LEVEL});
    }
    EXPECT_EQ(::StartDocPrinterW(printer.Get(), 1, nullptr), 0u);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(SpoolDocumentTest, DatatypesAreChecked)
{
    EXPECT_EQ(Start(L"Document", L"SCROLL"), 0u);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_DATATYPE});
    EXPECT_EQ(Text(Job(Start(L"Document", L"TEXT"))->pDatatype), L"TEXT");
}

TEST_F(SpoolDocumentTest, ARawOnlyPrinterTakesNothingElse)
{
    SpoolerSetPrinterAttributes(L"Label", PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_RAW_ONLY);
    EXPECT_EQ(Start(L"Document", L"TEXT"), 0u);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_DATATYPE});
    EXPECT_NE(Start(L"Document", L"RAW"), 0u);
}

TEST_F(SpoolDocumentTest, DefaultsOfTheHandleComeBeforeThePrinters)
{
    DEVMODEW devMode = LabelDevMode();
    devMode.dmCopies = 5;
    PRINTER_DEFAULTSW defaults = {const_cast<wchar_t*>(L"TEXT"), &devMode, PRINTER_ACCESS_USE};
    HANDLE handle = nullptr;
    ASSERT_TRUE(::OpenPrinterW(const_cast<wchar_t*>(L"Label"), &handle, &defaults));
    printer.Reset(handle);
    const DWORD jobId = Start();
    EXPECT_EQ(Text(Job(jobId)->pDatatype), L"TEXT");
    EXPECT_EQ(Job(jobId)->pDevMode->dmCopies, 5);
}

TEST_F(SpoolDocumentTest, WithoutANameTheDocumentIsEmptyNamed)
{
    EXPECT_EQ(Text(Job(Start(nullptr))->pDocument), L"");
}

TEST_F(SpoolDocumentTest, ADeletedJobFailsWithPrintCancelled)
{
    const DWORD jobId = Start();
    ::SetJobW(printer.Get(), jobId, 0, nullptr, JOB_CONTROL_DELETE);
    EXPECT_EQ(ErrorOf(::StartPagePrinter(printer.Get())), DWORD{ERROR_PRINT_CANCELLED});
    EXPECT_EQ(Write("x"), DWORD{ERROR_PRINT_CANCELLED});
    EXPECT_EQ(written, 0u);
    EXPECT_EQ(ErrorOf(::EndPagePrinter(printer.Get())), DWORD{ERROR_PRINT_CANCELLED});
    EXPECT_TRUE(::EndDocPrinter(printer.Get()));
    EXPECT_NE(Start(), 0u);
}

TEST_F(SpoolDocumentTest, JobNumbersAreNotReused)
{
    const DWORD first = Print(printer, L"1", "1");
    ::SetJobW(printer.Get(), first, 0, nullptr, JOB_CONTROL_DELETE);
    EXPECT_GT(Print(printer, L"2", "2"), first);
}

TEST_F(SpoolDocumentTest, TheServerPrintsNothing)
{
    printer = OpenServer();
    EXPECT_EQ(Start(), 0u);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

} // namespace
