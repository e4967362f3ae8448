// SPDX-License-Identifier: MIT
#include "PrintingTest.h"

namespace {

/// How a job that is deleted leaves, from each point of its way.
class CancellingTest : public PrintingTest {
protected:
    /// What is told from the command on, when all steps are done after it.
    std::string StatusFrom(DWORD jobId, DWORD command = JOB_CONTROL_DELETE) const
    {
        const Watch watch = WatchStatus();
        EXPECT_TRUE(Command(jobId, command));
        Step(spoolerAllSteps);
        EXPECT_EQ(StatusOf(jobId), 0xFFFFFFFF);
        return StatusValues(watch);
    }
};

TEST_F(CancellingTest, AWaitingJobIsToldAsDeletingAndThenAsDeleted)
{
    const DWORD jobId = Print(printer, L"1", "x");
    const Watch watch = WatchStatus();
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_DELETE));
    EXPECT_EQ(watch.Next(), "0x200 J1.STATUS=0x4");
    EXPECT_EQ(StatusOf(jobId), DWORD{JOB_STATUS_DELETING});
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(watch.Next(), "0x400 J1.STATUS=0x104");
    EXPECT_EQ(StatusOf(jobId), 0xFFFFFFFF);
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 0u);
}

TEST_F(CancellingTest, CancelDoesTheSameAsDelete)
{
    EXPECT_EQ(StatusFrom(Print(printer, L"1", "x"), JOB_CONTROL_CANCEL), "0x4 0x104");
}

TEST_F(CancellingTest, APrintingJobStopsAndLeaves)
{
    const DWORD jobId = Print(printer, L"1", "x");
    Step(2);
    EXPECT_EQ(StatusFrom(jobId), "0x2014 0x2114");
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 0u);
}

TEST_F(CancellingTest, APausedJobLeaves)
{
    const DWORD jobId = Print(printer, L"1", "x");
    Command(jobId, JOB_CONTROL_PAUSE);
    EXPECT_EQ(StatusFrom(jobId), "0x5 0x105");
}

TEST_F(CancellingTest, AJobInErrorLeaves)
{
    const DWORD jobId = Print(printer, L"1", "x");
    Step();
    SpoolerSetTrouble(L"Label", {});
    EXPECT_EQ(StatusFrom(jobId), "0x2016 0x2116");
}

TEST_F(CancellingTest, AJobOfAPausedPrinterLeaves)
{
    const DWORD jobId = Print(printer, L"1", "x");
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE);
    EXPECT_EQ(StatusFrom(jobId), "0x4 0x104");
}

TEST_F(CancellingTest, AJobThatIsBeingSpooledLeavesWhenItsDocumentIsEnded)
{
    const Watch watch = WatchStatus();
    DOC_INFO_1W info = {};
    const DWORD jobId = ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_DELETE));
    DWORD written = 0;
    EXPECT_FALSE(::WritePrinter(printer.Get(), &info, 1, &written));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_PRINT_CANCELLED});
    EXPECT_FALSE(::StartPagePrinter(printer.Get()));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_PRINT_CANCELLED});
    EXPECT_EQ(Step(), 0u);
    EXPECT_EQ(StatusValues(watch), "0x8 0xC");
    EXPECT_TRUE(::EndDocPrinter(printer.Get()));
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(watch.All(), (std::vector<std::string>{"0x600 J1.STATUS=0x10C"}));
}

TEST_F(CancellingTest, AJobThatIsBeingSpooledLeavesWhenItsHandleIsClosed)
{
    PrinterHandle writer = Open(L"Label");
    DOC_INFO_1W info = {};
    const DWORD jobId = ::StartDocPrinterW(writer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_DELETE));
    writer.Reset();
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(JobCount(), 0u);
}

TEST_F(CancellingTest, OnARestingPrinterADeletedJobIsGoneWhenTheCallReturns)
{
    AddPrinterOfPace(SpoolerPace::Resting);
    const DWORD jobId = Print(printer, L"1", "x");
    const Watch watch = WatchStatus();
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_DELETE));
    EXPECT_EQ(watch.All(), (std::vector<std::string>{"0x600 J1.STATUS=0x4 J1.STATUS=0x104"}));
    EXPECT_EQ(StatusOf(jobId), 0xFFFFFFFF);
}

TEST_F(CancellingTest, DeletingTwiceTellsOnce)
{
    const DWORD jobId = Print(printer, L"1", "x");
    const Watch watch = WatchStatus();
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_DELETE));
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_DELETE));
    Step(spoolerAllSteps);
    EXPECT_EQ(StatusValues(watch), "0x4 0x104");
}

TEST_F(CancellingTest, AReleasedJobIsToldAsPrinted)
{
    const DWORD jobId = Print(printer, L"1", "x");
    EXPECT_EQ(StatusFrom(jobId, 9), "0x4 0x84 0x184");
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 0u);
}

TEST_F(CancellingTest, PurgingDeletesAllButTheJobThatPrints)
{
    const DWORD printing = Print(printer, L"1", "x");
    Print(printer, L"2", "x");
    Print(printer, L"3", "x");
    Step();
    const Watch watch = WatchStatus();
    EXPECT_TRUE(::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PURGE));
    EXPECT_EQ(watch.Next(), "0x200 J2.STATUS=0x4 J3.STATUS=0x4");
    Step(spoolerAllSteps);
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
    SpoolerDelivery delivery = {};
    SpoolerDeliveryAt(L"Label", 0, &delivery);
    EXPECT_EQ(delivery.jobId, printing);
}

} // namespace
