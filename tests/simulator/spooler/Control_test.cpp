// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

namespace {

using ControlTest = SimulatorTest;

TEST_F(ControlTest, ResetEmptiesTheWorld)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    SpoolerSetIdentity(L"jane", L"DEPOT");
    SpoolerReset();
    EXPECT_EQ(ReadPrinters<PRINTER_INFO_1W>(PRINTER_ENUM_LOCAL, 1).count, 0u);
    EXPECT_EQ(ReadPorts<PORT_INFO_1W>(1).count, 0u);
    EXPECT_EQ(SpoolerOpenHandles(nullptr), 0u);
    EXPECT_FALSE(Open(L"\\\\DEPOT"));
}

TEST_F(ControlTest, ResetClearsTheLog)
{
    Open(L"Label");
    SpoolerReset();
    EXPECT_EQ(SpoolerLogLength(), 0u);
}

TEST_F(ControlTest, HandlesFromBeforeAResetStayInvalid)
{
    const HANDLE stale = AddAndOpen(L"Label").Detach();
    SpoolerReset();
    const PrinterHandle printer = AddAndOpen(L"Label");
    EXPECT_NE(printer.Get(), stale);
    EXPECT_FALSE(::ClosePrinter(stale));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(ControlTest, CountsOpenHandlesByPrinter)
{
    const PrinterHandle first = AddAndOpen(L"Label");
    const PrinterHandle second = Open(L"Label");
    const PrinterHandle other = AddAndOpen(L"Other");
    EXPECT_EQ(SpoolerOpenHandles(nullptr), 3u);
    EXPECT_EQ(SpoolerOpenHandles(L"label"), 2u);
    EXPECT_EQ(SpoolerOpenHandles(L"Nobody"), 0u);
}

TEST_F(ControlTest, APrinterNameIsTakenOnce)
{
    EXPECT_EQ(SpoolerAddPrinter({.printerName = L"Label"}), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(SpoolerAddPrinter({.printerName = L"LABEL"}), DWORD{ERROR_PRINTER_ALREADY_EXISTS});
    EXPECT_EQ(SpoolerAddPrinter({}), DWORD{ERROR_INVALID_PRINTER_NAME});
}

TEST_F(ControlTest, UnknownPrintersAndJobsAreTold)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    DWORD needed = 0;
    EXPECT_EQ(SpoolerRemovePrinter(L"Nobody"), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(SpoolerSetPrinterStatus(nullptr, 0), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(SpoolerAddJob(L"Nobody", {}, nullptr), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(SpoolerSetJobStatus(L"Label", 5, 0), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(SpoolerRemoveJob(L"Label", 5), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(SpoolerPeekJob(L"Label", 5, nullptr, 0, &needed), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(SpoolerAddDriver({}), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(SpoolerAddPort({}), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(SpoolerJobBytes(L"Label", 5, nullptr, 0), 0u);
}

TEST_F(ControlTest, StatusAndAttributesAreSeenThroughTheSpooler)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_DOOR_OPEN);
    SpoolerSetPrinterAttributes(L"Label", PRINTER_ATTRIBUTE_NETWORK);
    const auto info = ReadPrinter<PRINTER_INFO_2W>(printer, 2);
    EXPECT_EQ(info->Status, DWORD{PRINTER_STATUS_DOOR_OPEN});
    EXPECT_EQ(info->Attributes, DWORD{PRINTER_ATTRIBUTE_NETWORK});
}

TEST_F(ControlTest, ADeviceModeCanBeGivenAndTakenAway)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    const DWORD jobId = QueueJob(L"Label");
    const DEVMODEW devMode = LabelDevMode();
    SpoolerSetPrinterDevMode(L"Label", &devMode);
    SpoolerSetJobDevMode(L"Label", jobId, &devMode);
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_2W>(printer, 2)->pDevMode->dmCopies, 2);
    EXPECT_EQ(ReadJob<JOB_INFO_2W>(printer, jobId, 2)->pDevMode->dmCopies, 2);
    SpoolerSetPrinterDevMode(L"Label", nullptr);
    SpoolerSetJobDevMode(L"Label", jobId, nullptr);
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_2W>(printer, 2)->pDevMode, nullptr);
    EXPECT_EQ((ReadJob<JOB_INFO_2W>(printer, jobId, 2)->pDevMode), nullptr);
}

TEST_F(ControlTest, ARenamedPrinterKeepsItsHandles)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    SpoolerAddPrinter({.printerName = L"Other"});
    EXPECT_EQ(SpoolerRenamePrinter(L"Label", L"New"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Text(ReadPrinter<PRINTER_INFO_2W>(printer, 2)->pPrinterName), L"New");
    EXPECT_EQ(SpoolerRenamePrinter(L"New", L"other"), DWORD{ERROR_PRINTER_ALREADY_EXISTS});
}

TEST_F(ControlTest, GrantedAccessHoldsForHandlesOpenedFromThenOn)
{
    const PrinterHandle before = AddAndOpen(L"Label");
    SpoolerSetGrantedAccess(L"Label", PRINTER_ACCESS_USE);
    EXPECT_TRUE(::SetPrinterW(before.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE));
    EXPECT_FALSE(Open(L"Label"));
}

TEST_F(ControlTest, AJobTakesWhatIsLeftOpenFromPrinterAndWorld)
{
    SpoolerSetIdentity(L"jane", L"DEPOT");
    const DEVMODEW devMode = LabelDevMode();
    SpoolerAddPrinter({.printerName = L"Label", .devMode = &devMode, .datatype = L"TEXT", .defaultPriority = 9});
    const DWORD jobId = QueueJob(L"Label");
    const auto job = ReadJob<JOB_INFO_2W>(Open(L"Label"), jobId, 2);
    EXPECT_EQ(Text(job->pUserName), L"jane");
    EXPECT_EQ(Text(job->pNotifyName), L"jane");
    EXPECT_EQ(Text(job->pMachineName), L"\\\\DEPOT");
    EXPECT_EQ(Text(job->pDatatype), L"TEXT");
    EXPECT_EQ(Text(job->pPrintProcessor), L"winprint");
    EXPECT_EQ(Text(job->pDocument), L"");
    EXPECT_EQ(job->Priority, 9u);
    EXPECT_EQ(job->pDevMode->dmCopies, 2);
    EXPECT_GE(job->Submitted.wYear, 2020);
}

TEST_F(ControlTest, AJobNumberIsTakenOnceAndLaterOnesGoOnBehindIt)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    EXPECT_EQ(QueueJob(L"Label", {.jobId = 500}), 500u);
    EXPECT_EQ(SpoolerAddJob(L"Label", {.jobId = 500}, nullptr), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(QueueJob(L"Label"), 501u);
}

TEST_F(ControlTest, AJobsStatusTextAndPagesAreSeenThroughTheSpooler)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    const DWORD jobId = QueueJob(L"Label");
    SpoolerSetJobStatus(L"Label", jobId, JOB_STATUS_PRINTING);
    SpoolerSetJobText(L"Label", jobId, L"Busy");
    SpoolerSetJobPages(L"Label", jobId, 10, 4);
    const auto job = ReadJob<JOB_INFO_2W>(printer, jobId, 2);
    EXPECT_EQ(job->Status, DWORD{JOB_STATUS_PRINTING});
    EXPECT_EQ(Text(job->pStatus), L"Busy");
    EXPECT_EQ(job->TotalPages, 10u);
    EXPECT_EQ(job->PagesPrinted, 4u);
    SpoolerSetJobText(L"Label", jobId, nullptr);
    EXPECT_EQ((ReadJob<JOB_INFO_2W>(printer, jobId, 2)->pStatus), nullptr);
}

TEST_F(ControlTest, ARemovedJobIsGone)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    const DWORD jobId = QueueJob(L"Label");
    EXPECT_EQ(SpoolerRemoveJob(L"Label", jobId), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ReadJobs<JOB_INFO_1W>(printer, 1).count, 0u);
}

TEST_F(ControlTest, PeekingGivesWhatTheSpoolerGives)
{
    SpoolerAddPrinter({.printerName = L"Label", .comment = L"comment"});
    const DWORD jobId = QueueJob(L"Label", {.document = L"Pallet"});
    DWORD needed = 0;
    EXPECT_EQ(SpoolerPeekPrinter(L"Label", nullptr, 0, &needed), DWORD{ERROR_INSUFFICIENT_BUFFER});
    std::vector<BYTE> buffer(needed);
    EXPECT_EQ(SpoolerPeekPrinter(L"Label", buffer.data(), needed, &needed), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Text(reinterpret_cast<PRINTER_INFO_2W*>(buffer.data())->pComment), L"comment");
    EXPECT_EQ(SpoolerPeekJob(L"Label", jobId, nullptr, 0, &needed), DWORD{ERROR_INSUFFICIENT_BUFFER});
    buffer.resize(needed);
    EXPECT_EQ(SpoolerPeekJob(L"Label", jobId, buffer.data(), needed, &needed), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Text(reinterpret_cast<JOB_INFO_2W*>(buffer.data())->pDocument), L"Pallet");
}

TEST_F(ControlTest, PrinterDataIsSharedWithTheSpooler)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    SpoolerSetTextData(L"Label", L"PrinterDriverData", L"VRL Interface", L"label.dll");
    SpoolerSetNumberData(L"Label", L"Gantry", L"Odometer Pages", 12);
    wchar_t text[32] = {};
    DWORD needed = 0;
    EXPECT_EQ(::GetPrinterDataW(printer.Get(), const_cast<wchar_t*>(L"VRL Interface"), nullptr,
                                reinterpret_cast<BYTE*>(text), sizeof text, &needed),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Text(text), L"label.dll");
    EXPECT_EQ(needed, 20u);

    DWORD number = 0;
    DWORD type = 0;
    EXPECT_EQ(SpoolerPeekData(L"Label", L"Gantry", L"Odometer Pages", &type, &number, 4, &needed),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(number, 12u);
    EXPECT_EQ(type, DWORD{REG_DWORD});
    EXPECT_EQ(SpoolerPeekData(L"Label", L"Gantry", L"Odometer Pages", &type, nullptr, 0, &needed),
              DWORD{ERROR_MORE_DATA});
    EXPECT_EQ(SpoolerRemoveData(L"Label", L"Gantry", L"Odometer Pages"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(SpoolerPeekData(L"Label", L"Gantry", L"Odometer Pages", &type, nullptr, 0, &needed),
              DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(SpoolerRemoveData(L"Label", L"Gantry", L"Odometer Pages"), DWORD{ERROR_FILE_NOT_FOUND});
}

} // namespace
