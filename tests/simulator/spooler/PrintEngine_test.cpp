// SPDX-License-Identifier: MIT
#include "PrintingTest.h"

namespace {

class PrintEngineTest : public PrintingTest {};

void Write(const PrinterHandle& printer, std::string bytes)
{
    DWORD written = 0;
    EXPECT_TRUE(::WritePrinter(printer.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written));
}

DWORD StartDoc(const PrinterHandle& printer, const wchar_t* name = L"Pallet")
{
    DOC_INFO_1W info = {const_cast<wchar_t*>(name), nullptr, nullptr};
    return ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
}

TEST_F(PrintEngineTest, NothingMovesWithoutAStep)
{
    const DWORD jobId = Print(printer, L"1", "x");
    EXPECT_EQ(StatusOf(jobId), 0u);
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 0u);
}

TEST_F(PrintEngineTest, EachPageIsSentAndCounted)
{
    StartDoc(printer);
    for (int page = 0; page < 3; ++page) {
        ::StartPagePrinter(printer.Get());
        Write(printer, "0123456789");
        ::EndPagePrinter(printer.Get());
    }
    ::EndDocPrinter(printer.Get());
    const Watch watch(printer, watched, {JOB_NOTIFY_FIELD_PAGES_PRINTED, JOB_NOTIFY_FIELD_BYTES_PRINTED});
    Step(7);
    EXPECT_EQ(watch.Next(), "0xA00 J1.BYTES_PRINTED=30 J1.PAGES_PRINTED=3");
    EXPECT_EQ(StatusOf(1), 0x2010u);
    Step();
    EXPECT_EQ(StatusOf(1), 0x2080u);
}

TEST_F(PrintEngineTest, ARawDocumentWithoutPagesStaysAt0Pages)
{
    StartDoc(printer);
    Write(printer, "0123456789");
    ::EndDocPrinter(printer.Get());
    const Watch watch(printer, watched, {JOB_NOTIFY_FIELD_TOTAL_PAGES, JOB_NOTIFY_FIELD_PAGES_PRINTED});
    EXPECT_EQ(Step(spoolerAllSteps), 5u);
    EXPECT_EQ(watch.Next(), "0xE00 -");
}

TEST_F(PrintEngineTest, AnEmptyDocumentIsPrintedToo)
{
    StartDoc(printer);
    ::EndDocPrinter(printer.Get());
    EXPECT_EQ(Step(spoolerAllSteps), 4u);
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
    EXPECT_EQ(JobCount(), 0u);
}

TEST_F(PrintEngineTest, PagesOfAnAddedJobShareItsBytes)
{
    const std::string bytes(100, 'x');
    QueueJob(L"Label", {.totalPages = 4, .bytes = bytes.data(), .byteCount = 100});
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_BYTES_PRINTED});
    Step(2);
    EXPECT_EQ(watch.Next(), "0x0 J1.BYTES_PRINTED=25");
}

TEST_F(PrintEngineTest, PagesThatWereCountedBeforePrintingAreCountedAgain)
{
    QueueJob(L"Label", {.totalPages = 2, .pagesPrinted = 1});
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_PAGES_PRINTED});
    Step();
    EXPECT_EQ(watch.Next(), "0x0 J1.PAGES_PRINTED=0");
    Step(spoolerAllSteps);
    EXPECT_EQ(watch.Next(), "0x0 J1.PAGES_PRINTED=2");
}

TEST_F(PrintEngineTest, PagesThatWereNeverStartedDoNotCount)
{
    StartDoc(printer);
    ::EndPagePrinter(printer.Get());
    ::EndDocPrinter(printer.Get());
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_PAGES_PRINTED});
    Step(spoolerAllSteps);
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(PrintEngineTest, TheDocumentReachesTheOutputWhenAllIsSent)
{
    Print(printer, L"Pallet", "bytes");
    Step(3);
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 0u);
    Step();
    ASSERT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
    EXPECT_EQ(AsText(SpoolerDeliveryBytes(L"Label", 0)), "bytes");
    EXPECT_EQ(JobCount(), 1u);
}

TEST_F(PrintEngineTest, WithATrueEndOfJobTheJobIsPrintedOnlyWhenItIsOut)
{
    SpoolerAddPrinter(
        {.printerName = L"True", .attributes = attributes, .pace = SpoolerPace::Stepped, .trueEndOfJob = true});
    const PrinterHandle other = Open(L"True");
    const Watch watch(other, watched, {JOB_NOTIFY_FIELD_STATUS});
    Print(other, L"1", "x");
    SpoolerStep(L"True", spoolerAllSteps, nullptr);
    EXPECT_EQ(StatusValues(watch), "0x8 0x0 0x2010 0x3010 0x2080 0x2084 0x2184");
}

TEST_F(PrintEngineTest, AMonitorCanTellTheEndOfAJob)
{
    const DWORD jobId = QueueJob(L"Label", {.status = JOB_STATUS_PRINTING});
    const Watch watch = WatchStatus();
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_SENT_TO_PRINTER));
    EXPECT_EQ(Step(), 0u);
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_LAST_PAGE_EJECTED));
    EXPECT_EQ(Step(spoolerAllSteps), 2u);
    EXPECT_EQ(StatusValues(watch), "0x1010 0x80 0x84 0x184");
}

TEST_F(PrintEngineTest, APrinterThatKeepsPrintedJobsEndsWithPrinted)
{
    SpoolerSetPrinterAttributes(L"Label", attributes | PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS);
    const Watch watch = WatchStatus();
    const DWORD jobId = Print(printer, L"1", "x");
    Step(spoolerAllSteps);
    EXPECT_EQ(StatusValues(watch), "0x8 0x0 0x2010 0x2090 0x80");
    EXPECT_EQ(StatusOf(jobId), DWORD{JOB_STATUS_PRINTED});
}

TEST_F(PrintEngineTest, ARetainedJobStaysAsRetained)
{
    const DWORD jobId = Print(printer, L"1", "x");
    Command(jobId, 8);
    Step(spoolerAllSteps);
    EXPECT_EQ(StatusOf(jobId), 0x2080u);
}

TEST_F(PrintEngineTest, AKeptJobCanBeDeleted)
{
    SpoolerSetPrinterAttributes(L"Label", attributes | PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS);
    const DWORD jobId = Print(printer, L"1", "x");
    Step(spoolerAllSteps);
    const Watch watch = WatchStatus();
    Command(jobId, JOB_CONTROL_DELETE);
    Step();
    EXPECT_EQ(watch.All(), (std::vector<std::string>{"0x600 J1.STATUS=0x84 J1.STATUS=0x184"}));
}

TEST_F(PrintEngineTest, AKeptJobCanBeRestarted)
{
    SpoolerSetPrinterAttributes(L"Label", attributes | PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS);
    const DWORD jobId = Print(printer, L"1", "x");
    Step(spoolerAllSteps);
    const Watch watch(printer, watched, {JOB_NOTIFY_FIELD_STATUS, JOB_NOTIFY_FIELD_PAGES_PRINTED});
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_RESTART));
    EXPECT_EQ(watch.Next(), "0x200 J1.STATUS=0x800 J1.PAGES_PRINTED=0");
    Step();
    EXPECT_EQ(watch.Next(), "0x200 J1.STATUS=0x2010");
    Step(spoolerAllSteps);
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 2u);
}

TEST_F(PrintEngineTest, ARestartedJobBeginsFromItsStart)
{
    const DWORD jobId = Print(printer, L"1", "0123456789");
    Step(2);
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_RESTART));
    EXPECT_EQ(StatusOf(jobId), DWORD{JOB_STATUS_RESTART});
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_BYTES_PRINTED});
    EXPECT_EQ(Step(spoolerAllSteps), 6u);
    EXPECT_EQ(watch.Next(), "0x0 J1.BYTES_PRINTED=10");
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
}

TEST_F(PrintEngineTest, AJobOnItsWayOutCannotBeRestarted)
{
    const DWORD jobId = Print(printer, L"1", "x");
    Step(5);
    EXPECT_EQ(StatusOf(jobId), 0x2084u);
    EXPECT_FALSE(Command(jobId, JOB_CONTROL_RESTART));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

// Print while spooling.

TEST_F(PrintEngineTest, APrinterThatIsNotQueuedPrintsWhileSpooling)
{
    SpoolerSetPrinterAttributes(L"Label", PRINTER_ATTRIBUTE_LOCAL);
    const Watch watch(printer, watched, {JOB_NOTIFY_FIELD_STATUS, JOB_NOTIFY_FIELD_BYTES_PRINTED});
    StartDoc(printer);
    EXPECT_EQ(Step(), 0u);
    Write(printer, "0123456789");
    watch.Next();
    EXPECT_EQ(Step(2), 2u);
    EXPECT_EQ(watch.Next(), "0xA00 J1.STATUS=0x18 J1.BYTES_PRINTED=10");
    EXPECT_EQ(Step(), 0u);
    Write(printer, "01234");
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(watch.Next(), "0x800 J1.BYTES_PRINTED=15");
    ::EndDocPrinter(printer.Get());
    EXPECT_EQ(watch.Next(), "0x200 J1.STATUS=0x2010");
    Step(spoolerAllSteps);
    EXPECT_EQ(StatusValues(watch), "0x2090 0x2080 0x2084 0x2184");
    EXPECT_EQ(SpoolerDeliveryBytes(L"Label", 0).size(), 15u);
}

TEST_F(PrintEngineTest, PagesThatWereNotEndedCountWhenTheDocumentIsComplete)
{
    SpoolerSetPrinterAttributes(L"Label", PRINTER_ATTRIBUTE_LOCAL);
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_PAGES_PRINTED});
    StartDoc(printer);
    ::StartPagePrinter(printer.Get());
    Write(printer, "x");
    Step(spoolerAllSteps);
    EXPECT_EQ(watch.Next(), "0x0 J1.PAGES_PRINTED=0");
    ::EndDocPrinter(printer.Get());
    Step(spoolerAllSteps);
    EXPECT_EQ(watch.Next(), "0x0 J1.PAGES_PRINTED=1");
}

// What holds printing up.

TEST_F(PrintEngineTest, APausedJobStandsStill)
{
    const DWORD jobId = Print(printer, L"1", "x");
    const Watch watch = WatchStatus();
    Command(jobId, JOB_CONTROL_PAUSE);
    EXPECT_EQ(Step(), 0u);
    Command(jobId, JOB_CONTROL_RESUME);
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(StatusValues(watch), "0x1 0x0 0x2010");
}

TEST_F(PrintEngineTest, AJobThatIsPausedWhilePrintingKeepsThePort)
{
    const DWORD jobId = Print(printer, L"1", "x");
    Print(printer, L"2", "x");
    Step();
    Command(jobId, JOB_CONTROL_PAUSE);
    EXPECT_EQ(StatusOf(jobId), 0x2011u);
    EXPECT_EQ(Step(), 0u);
    Command(jobId, JOB_CONTROL_RESUME);
    EXPECT_EQ(Step(), 1u);
}

TEST_F(PrintEngineTest, APausedPrinterStartsAndSendsNothing)
{
    const DWORD first = Print(printer, L"1", "x");
    Step();
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE);
    EXPECT_EQ(Step(), 0u);
    EXPECT_EQ(StatusOf(first), 0x2010u);
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_RESUME);
    EXPECT_EQ(Step(), 1u);
}

TEST_F(PrintEngineTest, APrinterThatWorksOfflineStartsNothing)
{
    Print(printer, L"1", "x");
    SpoolerSetPrinterAttributes(L"Label", attributes | PRINTER_ATTRIBUTE_WORK_OFFLINE);
    EXPECT_EQ(Step(), 0u);
}

TEST_F(PrintEngineTest, TroubleMeetsTheJobAtTheDevice)
{
    const DWORD jobId = Print(printer, L"1", "x");
    const DWORD waiting = Print(printer, L"2", "x");
    Step();
    const Watch watch(printer, PRINTER_CHANGE_ALL, {JOB_NOTIFY_FIELD_STATUS, JOB_NOTIFY_FIELD_STATUS_STRING},
                      {PRINTER_NOTIFY_FIELD_STATUS});
    SpoolerSetTrouble(L"Label", {.jobStatus = JOB_STATUS_ERROR | JOB_STATUS_PAPEROUT,
                                 .printerStatus = PRINTER_STATUS_PAPER_OUT,
                                 .text = L"Paper out"});
    EXPECT_EQ(watch.Next(), "0x202 J1.STATUS=0x2052 J1.STATUS_STRING='Paper out' P.STATUS=0x10");
    EXPECT_EQ(StatusOf(waiting), 0u);
    EXPECT_EQ(Step(), 0u);
    SpoolerClearTrouble(L"Label");
    EXPECT_EQ(watch.Next(), "0x202 J1.STATUS=0x2010 J1.STATUS_STRING='' P.STATUS=0x0");
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(StatusOf(jobId), 0x2010u);
}

TEST_F(PrintEngineTest, TroubleMeetsEachJobThatComesToTheDevice)
{
    SpoolerSetTrouble(L"Label", {.jobStatus = JOB_STATUS_USER_INTERVENTION});
    const Watch watch = WatchStatus();
    Print(printer, L"1", "x");
    EXPECT_EQ(Step(spoolerAllSteps), 1u);
    EXPECT_EQ(StatusValues(watch), "0x8 0x0 0x2010 0x2410");
    SpoolerClearTrouble(L"Label");
    Step(spoolerAllSteps);
    EXPECT_EQ(StatusValues(watch), "0x2010 0x2090 0x2080 0x2084 0x2184");
}

TEST_F(PrintEngineTest, ALaterTroubleTakesThePlaceOfAnEarlierOne)
{
    const DWORD jobId = Print(printer, L"1", "x");
    Step();
    SpoolerSetTrouble(L"Label", {.jobStatus = JOB_STATUS_PAPEROUT, .printerStatus = PRINTER_STATUS_PAPER_OUT});
    SpoolerSetTrouble(L"Label", {.jobStatus = JOB_STATUS_OFFLINE, .printerStatus = PRINTER_STATUS_OFFLINE});
    EXPECT_EQ(StatusOf(jobId), 0x2030u);
    EXPECT_EQ((ReadPrinter<PRINTER_INFO_6>(printer, 6)->dwStatus), DWORD{PRINTER_STATUS_OFFLINE});
}

TEST_F(PrintEngineTest, WhatATestSetsAsAnErrorStopsAJobToo)
{
    const DWORD jobId = Print(printer, L"1", "x");
    Step();
    for (const DWORD bit : {JOB_STATUS_ERROR, JOB_STATUS_OFFLINE, JOB_STATUS_PAPEROUT, JOB_STATUS_BLOCKED_DEVQ,
                            JOB_STATUS_USER_INTERVENTION, JOB_STATUS_PAUSED}) {
        SpoolerSetJobStatus(L"Label", jobId, 0x2010 | bit);
        EXPECT_EQ(Step(), 0u) << bit;
    }
}

// Names that come late.

TEST_F(PrintEngineTest, ALateNameComesWhenTheDocumentHasBeenSpooled)
{
    SpoolerAddPrinter(
        {.printerName = L"Late", .attributes = attributes, .pace = SpoolerPace::Stepped, .lateNames = true});
    const PrinterHandle late = Open(L"Late");
    const Watch watch(late, watched, {JOB_NOTIFY_FIELD_DOCUMENT});
    StartDoc(late, L"Pallet 12");
    EXPECT_EQ(watch.Next(), "0x100 J1.DOCUMENT='Local Downlevel Document'");
    Write(late, "x");
    EXPECT_EQ(watch.Next(), "0x800 -");
    ::EndDocPrinter(late.Get());
    EXPECT_EQ(watch.Next(), "0x200 J1.DOCUMENT='Pallet 12'");
}

TEST_F(PrintEngineTest, ATestCanGiveADocumentItsName)
{
    const DWORD jobId = QueueJob(L"Label", {.document = L"Local Downlevel Document"});
    const Watch watch(printer, watched, {JOB_NOTIFY_FIELD_DOCUMENT});
    EXPECT_EQ(SpoolerSetJobDocument(L"Label", jobId, L"Pallet"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(watch.Next(), "0x200 J1.DOCUMENT='Pallet'");
    EXPECT_EQ(SpoolerSetJobDocument(L"Label", 99, L"Pallet"), DWORD{ERROR_INVALID_PARAMETER});
}

// Paces and control.

TEST_F(PrintEngineTest, AtOnceEverythingHasHappenedWhenTheCallReturns)
{
    AddPrinterOfPace(SpoolerPace::AtOnce);
    const Watch watch = WatchStatus();
    Print(printer, L"1", "x");
    EXPECT_EQ(JobCount(), 0u);
    EXPECT_EQ(watch.All(), (std::vector<std::string>{"0xF00 J1.STATUS=0x8 J1.STATUS=0x0 J1.STATUS=0x2010 "
                                                     "J1.STATUS=0x2090 J1.STATUS=0x2080 J1.STATUS=0x2084 "
                                                     "J1.STATUS=0x2184"}));
}

TEST_F(PrintEngineTest, ARestingPrinterCanBeSteppedToo)
{
    AddPrinterOfPace(SpoolerPace::Resting);
    const DWORD jobId = Print(printer, L"1", "x");
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(StatusOf(jobId), 0x2010u);
}

TEST_F(PrintEngineTest, OnARestingPrinterAPrintedJobLeavesInTheSameCall)
{
    AddPrinterOfPace(SpoolerPace::Resting);
    const DWORD jobId = Print(printer, L"1", "x");
    Step(4);
    EXPECT_EQ(StatusOf(jobId), 0xFFFFFFFF);
}

TEST_F(PrintEngineTest, AChangedPaceCountsAtOnce)
{
    Print(printer, L"1", "x");
    EXPECT_EQ(SpoolerSetPace(L"Label", SpoolerPace::AtOnce, 0), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(JobCount(), 0u);
}

TEST_F(PrintEngineTest, AJobCanBeDeliveredWhateverHoldsItBack)
{
    const DWORD jobId = QueueJob(L"Label", {.status = JOB_STATUS_PAUSED | JOB_STATUS_SPOOLING, .totalPages = 2});
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE);
    EXPECT_EQ(SpoolerDeliverJob(L"Label", jobId), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(JobCount(), 0u);
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
}

TEST_F(PrintEngineTest, ControlsOfAnUnknownPrinterSaySo)
{
    DWORD done = 7;
    EXPECT_EQ(SpoolerStep(L"Nobody", 1, &done), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(done, 0u);
    EXPECT_EQ(SpoolerSetPace(L"Nobody", SpoolerPace::AtOnce, 0), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(SpoolerSetTrouble(L"Nobody", {}), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(SpoolerClearTrouble(L"Nobody"), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(SpoolerWaitUntilIdle(L"Nobody", 0), DWORD{ERROR_INVALID_PRINTER_NAME});
}

TEST_F(PrintEngineTest, IdleMeansThatThereIsNoStepToDo)
{
    EXPECT_EQ(SpoolerWaitUntilIdle(L"Label", 0), DWORD{ERROR_SUCCESS});
    Print(printer, L"1", "x");
    EXPECT_EQ(SpoolerWaitUntilIdle(L"Label", 1), DWORD{ERROR_TIMEOUT});
    Step(spoolerAllSteps);
    EXPECT_EQ(SpoolerWaitUntilIdle(L"Label", 0), DWORD{ERROR_SUCCESS});
}

} // namespace
