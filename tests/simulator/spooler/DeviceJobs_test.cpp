// SPDX-License-Identifier: MIT
#include "DeviceTest.h"

#include "support/Eventually.h"

#include <chrono>

namespace {

using Verdict = SpoolerDeviceVerdict;
using namespace std::string_literals;

constexpr DWORD generousMs = 60000;

class DeviceJobsTest : public DeviceTest {
protected:
    /// A job whose first bytes are at the device.
    DWORD PrintHalf(SpoolerDeviceProgress first = Took(4))
    {
        device.Answer({first});
        const DWORD jobId = Print(printer, L"1", "0123456789");
        Step(2);
        device.TakeCalls();
        return jobId;
    }
};

TEST_F(DeviceJobsTest, BytesGoToTheDeviceAndItsEndIsAwaited)
{
    const Watch watch = WatchStatus();
    const DWORD jobId = Print(printer, L"Pallet", "0123456789");
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(device.TakeCalls(), Calls{});
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(device.TakeCalls(), (Calls{"begin Label NET1 job 1 Pallet", "write 10"}));
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(StatusOf(jobId), 0x3010u); // all is sent
    EXPECT_EQ(device.TakeCalls(), Calls{});
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(device.TakeCalls(), (Calls{"end"}));
    EXPECT_EQ(Step(spoolerAllSteps), 2u);
    EXPECT_EQ(StatusValues(watch), "0x8 0x0 0x2010 0x3010 0x2080 0x2084 0x2184");
    EXPECT_EQ(device.Taken(), "0123456789");
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
    EXPECT_EQ(device.TakeCalls(), Calls{}) << "nothing is cancelled";
}

TEST_F(DeviceJobsTest, TheDeviceTakesAsManyBytesAsItLikes)
{
    device.Answer({Took(4), Took(1), Took(100)});
    Print(printer, L"1", "0123456789");
    const Watch watch(printer, watched, {JOB_NOTIFY_FIELD_BYTES_PRINTED});
    Step(4);
    EXPECT_EQ(device.TakeCalls(), (Calls{"begin Label NET1 job 1 1", "write 10", "write 6", "write 5"}));
    EXPECT_EQ(watch.All(), (Calls{"0xA00 J1.BYTES_PRINTED=10"}));
    EXPECT_EQ(device.Taken(), "0123456789");
}

TEST_F(DeviceJobsTest, PagesAreTheDevicesOwn)
{
    device.Answer({Took(10), Printed(1, 3), Printed(2, 3), Printed(3, 3)});
    const DWORD jobId = Print(printer, L"1", "0123456789");
    const Watch watch(printer, watched, {JOB_NOTIFY_FIELD_PAGES_PRINTED, JOB_NOTIFY_FIELD_TOTAL_PAGES});
    Step(4);
    EXPECT_EQ((ReadJob<JOB_INFO_1W>(printer, jobId, 1)->TotalPages), 3u);
    EXPECT_EQ((ReadJob<JOB_INFO_1W>(printer, jobId, 1)->PagesPrinted), 1u);
    Step(2);
    EXPECT_EQ((ReadJob<JOB_INFO_1W>(printer, jobId, 1)->PagesPrinted), 3u);
    EXPECT_EQ(Step(spoolerAllSteps), 3u);
}

TEST_F(DeviceJobsTest, PagesThatTheDocumentToldStay)
{
    device.Answer({Took(10), Printed(1, 1)});
    const DWORD jobId = QueueJob(L"Label", {.totalPages = 5, .bytes = "0123456789", .byteCount = 10});
    Step(4);
    EXPECT_EQ((ReadJob<JOB_INFO_1W>(printer, jobId, 1)->TotalPages), 5u);
}

TEST_F(DeviceJobsTest, TheTimeOfTheJobIsTheDevices)
{
    device.Answer({Took(10, 1500), Printed(1, 1, 700)});
    const DWORD jobId = Print(printer, L"1", "0123456789");
    Step(4);
    EXPECT_EQ((ReadJob<JOB_INFO_2W>(printer, jobId, 2)->Time), 2200u);
}

TEST_F(DeviceJobsTest, AnEmptyDocumentGoesThroughTheDeviceToo)
{
    QueueJob(L"Label");
    EXPECT_EQ(Step(spoolerAllSteps), 6u);
    EXPECT_EQ(device.TakeCalls(), (Calls{"begin Label NET1 job 1 ", "write 0", "end"}));
    EXPECT_EQ(JobCount(), 0u);
}

TEST_F(DeviceJobsTest, AStalledDeviceShowsInTheJobAndIsAskedAtEachStep)
{
    const DWORD jobId = PrintHalf();
    device.Answer({Stalled(JOB_STATUS_ERROR | JOB_STATUS_PAPEROUT, L"Paper Out")});
    const Watch watch(printer, watched, {JOB_NOTIFY_FIELD_STATUS, JOB_NOTIFY_FIELD_STATUS_STRING});
    EXPECT_EQ(Step(), 1u) << "the stall is news";
    EXPECT_EQ(StatusOf(jobId), 0x2052u);
    EXPECT_EQ(JobText(jobId), L"Paper Out");
    EXPECT_EQ(watch.All(), (Calls{"0x200 J1.STATUS=0x2052 J1.STATUS_STRING='Paper Out'"}));
    device.TakeCalls();
    EXPECT_EQ(Step(spoolerAllSteps), 0u);
    EXPECT_EQ(Step(), 0u);
    EXPECT_EQ(device.TakeCalls(), (Calls{"write 6", "write 6"}));
    EXPECT_FALSE(watch.IsSignalled()) << "nothing has changed";

    device.Answer({Stalled(JOB_STATUS_ERROR, L"Head Open")});
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(StatusOf(jobId), 0x2012u);
    EXPECT_EQ(JobText(jobId), L"Head Open");

    device.Answer({});
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(StatusOf(jobId), 0x2010u);
    EXPECT_EQ(JobText(jobId), L"(null)");
    EXPECT_EQ(Step(spoolerAllSteps), 4u);
    EXPECT_EQ(device.Taken(), "0123456789");
}

TEST_F(DeviceJobsTest, ADeviceThatStallsAtTheEndIsAskedAgain)
{
    device.Answer({Took(10), Stalled(JOB_STATUS_OFFLINE, L"Offline")});
    const DWORD jobId = Print(printer, L"1", "0123456789");
    EXPECT_EQ(Step(spoolerAllSteps), 4u);
    EXPECT_EQ(StatusOf(jobId), 0x3030u);
    device.Answer({Printed(1, 1)});
    EXPECT_EQ(Step(spoolerAllSteps), 4u);
    EXPECT_EQ(JobCount(), 0u);
}

TEST_F(DeviceJobsTest, ADeviceThatDoesNothingAtAllCountsAsStalled)
{
    device.Answer({Took(10), Took(0), Took(0), Took(0), Stalled(0, L"")});
    Print(printer, L"1", "0123456789");
    EXPECT_EQ(Step(3), 3u);
    EXPECT_EQ(Step(2), 1u);
    EXPECT_EQ(Step(spoolerAllSteps), 0u);
}

TEST_F(DeviceJobsTest, AStatusTextOfSomebodyElseIsLeftAlone)
{
    const DWORD jobId = PrintHalf();
    SpoolerSetJobText(L"Label", jobId, L"Look here");
    Step();
    EXPECT_EQ(JobText(jobId), L"Look here");
}

TEST_F(DeviceJobsTest, APausedJobOrPrinterIsNotSentOn)
{
    const DWORD jobId = PrintHalf();
    Command(jobId, JOB_CONTROL_PAUSE);
    EXPECT_EQ(Step(spoolerAllSteps), 0u);
    Command(jobId, JOB_CONTROL_RESUME);
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE);
    EXPECT_EQ(Step(spoolerAllSteps), 0u);
    EXPECT_EQ(device.TakeCalls(), Calls{});
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_RESUME);
    EXPECT_EQ(Step(spoolerAllSteps), 5u);
}

TEST_F(DeviceJobsTest, APausedJobOfAStalledDeviceIsNotSentOn)
{
    const DWORD jobId = PrintHalf(Stalled(JOB_STATUS_ERROR, L"Head Open"));
    Command(jobId, JOB_CONTROL_PAUSE);
    device.Answer({});
    EXPECT_EQ(Step(spoolerAllSteps), 0u);
    EXPECT_EQ(device.TakeCalls(), Calls{});
}

TEST_F(DeviceJobsTest, ADeletedJobIsCancelledAtTheDevice)
{
    const DWORD jobId = PrintHalf();
    const Watch watch = WatchStatus();
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_DELETE));
    EXPECT_EQ(device.TakeCalls(), (Calls{"cancel"}));
    EXPECT_EQ(Step(spoolerAllSteps), 1u);
    EXPECT_EQ(StatusValues(watch), "0x2014 0x2114");
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 0u);
    EXPECT_EQ(device.TakeCalls(), Calls{});
}

TEST_F(DeviceJobsTest, ADeletedJobOfAStalledDeviceKeepsItsErrorAndLeaves)
{
    const DWORD jobId = PrintHalf(Stalled(JOB_STATUS_ERROR, L"Head Open"));
    const Watch watch = WatchStatus();
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_DELETE));
    Step(spoolerAllSteps);
    EXPECT_EQ(device.TakeCalls(), (Calls{"cancel"}));
    EXPECT_EQ(StatusValues(watch), "0x2016 0x2116");
}

TEST_F(DeviceJobsTest, WhateverTakesAJobAwayCancelsItAtTheDevice)
{
    const DWORD jobId = PrintHalf();
    SpoolerRemoveJob(L"Label", jobId);
    EXPECT_EQ(device.TakeCalls(), (Calls{"cancel"}));
    PrintHalf();
    SpoolerRemovePrinter(L"Label");
    EXPECT_THAT(device.TakeCalls(), ::testing::UnorderedElementsAre("cancel", "detach Label"));
    UsePrinter(SpoolerPace::Stepped);
    PrintHalf();
    SpoolerReset();
    EXPECT_THAT(device.TakeCalls(), ::testing::UnorderedElementsAre("cancel", "detach Label"));
}

TEST_F(DeviceJobsTest, ARestartedJobBeginsAtTheDeviceFromItsStart)
{
    const DWORD jobId = PrintHalf(Stalled(JOB_STATUS_ERROR, L"Head Open"));
    device.Answer({});
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_RESTART));
    EXPECT_EQ(device.TakeCalls(), (Calls{"cancel"}));
    EXPECT_EQ(JobText(jobId), L"(null)");
    Step(2);
    EXPECT_EQ(device.TakeCalls(), (Calls{"begin Label NET1 job 1 1", "write 10"}));
    EXPECT_EQ(Step(spoolerAllSteps), 4u);
}

TEST_F(DeviceJobsTest, AJobThatTheDeviceThrowsAwayShowsWhyAndLeaves)
{
    SpoolerDeviceProgress away = Stalled(JOB_STATUS_ERROR | JOB_STATUS_USER_INTERVENTION, L"Ribbon Out");
    away.verdict = Verdict::Failed;
    const DWORD jobId = PrintHalf();
    const Watch watch = WatchStatus();
    device.Answer({away});
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(JobText(jobId), L"Ribbon Out");
    EXPECT_EQ(Step(spoolerAllSteps), 1u);
    EXPECT_EQ(StatusValues(watch), "0x2412 0x2416 0x2516");
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 0u);
    EXPECT_EQ(device.TakeCalls(), (Calls{"write 6"})) << "there is nothing left to cancel";
}

TEST_F(DeviceJobsTest, AnEarlyGoodWordEndsTheJobToo)
{
    for (const Verdict verdict : {Verdict::Completed, Verdict::Verified}) {
        PrintHalf();
        device.Answer({Over(verdict)});
        EXPECT_EQ(Step(spoolerAllSteps), 3u);
        EXPECT_EQ(JobCount(), 0u);
        EXPECT_EQ(device.TakeCalls(), (Calls{"write 6"}));
    }
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 2u);
}

TEST_F(DeviceJobsTest, AKeptJobStaysAsPrinted)
{
    UsePrinter(SpoolerPace::Stepped, PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS);
    const DWORD jobId = Print(printer, L"1", "x");
    Step(spoolerAllSteps);
    EXPECT_EQ(StatusOf(jobId), DWORD{JOB_STATUS_PRINTED});
}

TEST_F(DeviceJobsTest, ADeviceThatIsNotThereIsWaitedFor)
{
    device.SetResults(ERROR_NOT_CONNECTED);
    const DWORD jobId = Print(printer, L"1", "x");
    EXPECT_EQ(Step(spoolerAllSteps), 2u);
    EXPECT_EQ(StatusOf(jobId), 0x2030u);
    EXPECT_EQ(JobText(jobId), L"Offline");
    device.SetResults(ERROR_SUCCESS);
    EXPECT_EQ(Step(), 1u);
    EXPECT_EQ(StatusOf(jobId), 0x2010u);
    EXPECT_EQ(Step(spoolerAllSteps), 4u);
}

TEST_F(DeviceJobsTest, ABusyDeviceIsWaitedForWithoutAWord)
{
    device.SetResults(ERROR_BUSY);
    const DWORD jobId = Print(printer, L"1", "x");
    Step(spoolerAllSteps);
    EXPECT_EQ(StatusOf(jobId), 0x2010u);
    EXPECT_EQ(JobText(jobId), L"(null)");
    device.SetResults(ERROR_SUCCESS);
    EXPECT_EQ(Step(spoolerAllSteps), 5u);
}

TEST_F(DeviceJobsTest, AJobThatTheDeviceRefusesOrLosesStandsStillUntilItIsRestarted)
{
    static constexpr struct {
        DWORD begin;
        DWORD write;
        const wchar_t* text;
    } rows[] = {
        {ERROR_INVALID_PRINTER_NAME, ERROR_SUCCESS,        L"The device has refused or lost the job, error 1801"},
        {ERROR_SUCCESS,              ERROR_INVALID_HANDLE, L"The device has refused or lost the job, error 6"   },
        {ERROR_SUCCESS,              ERROR_NOT_CONNECTED,  L"The device has refused or lost the job, error 2250"},
    };
    for (const auto& row : rows) {
        device.SetResults(row.begin, row.write);
        const DWORD jobId = Print(printer, L"1", "0123456789");
        EXPECT_EQ(Step(spoolerAllSteps), 2u);
        EXPECT_EQ(StatusOf(jobId), 0x2012u);
        EXPECT_EQ(JobText(jobId), row.text);
        device.SetResults(ERROR_SUCCESS);
        EXPECT_EQ(Step(spoolerAllSteps), 0u);
        EXPECT_TRUE(Command(jobId, JOB_CONTROL_RESTART));
        device.TakeCalls();
        EXPECT_EQ(Step(spoolerAllSteps), 6u);
        EXPECT_EQ(device.TakeCalls()[1], "write 10");
    }
}

TEST_F(DeviceJobsTest, AJobThatWasLostBeginsFromItsStartWhenItsErrorIsTakenAway)
{
    const DWORD jobId = PrintHalf();
    device.SetResults(ERROR_SUCCESS, ERROR_INVALID_HANDLE);
    EXPECT_EQ(Step(spoolerAllSteps), 1u);
    device.SetResults(ERROR_SUCCESS);
    device.TakeCalls();
    SpoolerSetJobStatus(L"Label", jobId, JOB_STATUS_PRINTING);
    Step();
    EXPECT_EQ(device.TakeCalls(), (Calls{"begin Label NET1 job 1 1", "write 10"}));
}

TEST_F(DeviceJobsTest, AJobThatIsLostAtTheEndIsNotSentAnyMore)
{
    device.Answer({Took(10)});
    const DWORD jobId = Print(printer, L"1", "0123456789");
    Step(3);
    device.SetResults(ERROR_SUCCESS, ERROR_INVALID_HANDLE);
    EXPECT_EQ(Step(spoolerAllSteps), 1u);
    EXPECT_EQ(StatusOf(jobId), 0x2012u);
    EXPECT_TRUE(Command(jobId, JOB_CONTROL_DELETE));
    EXPECT_EQ(Step(spoolerAllSteps), 1u);
}

TEST_F(DeviceJobsTest, PrintingGoesOnWhileTheDocumentIsSpooled)
{
    SpoolerSetPrinterAttributes(L"Label", PRINTER_ATTRIBUTE_LOCAL);
    DOC_INFO_1W info = {};
    ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    DWORD written = 0;
    ::WritePrinter(printer.Get(), const_cast<char*>("abc"), 3, &written);
    SpoolerDeviceProgress onePageOfTwo = Printed(1, 2);
    onePageOfTwo.taken = 3;
    device.Answer({onePageOfTwo, Printed(2, 2)});
    EXPECT_EQ(Step(spoolerAllSteps), 3u);
    EXPECT_EQ(device.TakeCalls(), (Calls{"begin Label NET1 job 1 ", "write 3", "write 0"}));
    ::WritePrinter(printer.Get(), const_cast<char*>("de"), 2, &written);
    EXPECT_EQ(Step(spoolerAllSteps), 1u);
    EXPECT_EQ(device.TakeCalls(), (Calls{"write 2"}));
    ::EndDocPrinter(printer.Get());
    EXPECT_EQ(Step(spoolerAllSteps), 4u);
    EXPECT_EQ(device.TakeCalls(), (Calls{"end"}));
}

TEST_F(DeviceJobsTest, AStalledJobLetsThoseOnOtherPortsGoOn)
{
    UsePrinter(SpoolerPace::Stepped, 0, L"NET1,LPT1:");
    PrintHalf(Stalled(JOB_STATUS_ERROR, L"Head Open"));
    Print(printer, L"2", "x");
    Step(spoolerAllSteps);
    EXPECT_EQ(JobCount(), 1u);
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
}

TEST_F(DeviceJobsTest, AtOnceAJobPrintsAsFarAsTheDeviceGoes)
{
    UsePrinter(SpoolerPace::AtOnce);
    device.Answer({Took(4, 1000), Stalled(JOB_STATUS_ERROR, L"Head Open")});
    const DWORD jobId = Print(printer, L"1", "0123456789");
    EXPECT_EQ(StatusOf(jobId), 0x2012u);
    device.Answer({});
    SpoolerSetPrinterStatus(L"Label", 0); // any change of the printer
    EXPECT_EQ(JobCount(), 0u);
    EXPECT_EQ(device.Taken(), "0123456789");
}

TEST_F(DeviceJobsTest, AJobThatIsDeliveredByHandGoesAsFarAsTheDeviceGoes)
{
    UsePrinter(SpoolerPace::Resting);
    device.Answer({Took(4, 1000), Stalled(JOB_STATUS_ERROR, L"Head Open")});
    const DWORD jobId = Print(printer, L"1", "0123456789");
    EXPECT_EQ(SpoolerDeliverJob(L"Label", jobId), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(StatusOf(jobId), 0x2012u);
    device.Answer({});
    EXPECT_EQ(Step(spoolerAllSteps), 5u);
}

TEST_F(DeviceJobsTest, AStoppedSpoolerDoesNotAsk)
{
    PrintHalf();
    SpoolerStop();
    device.SetStatus(PRINTER_STATUS_DOOR_OPEN);
    EXPECT_EQ(Step(spoolerAllSteps), 0u);
    SpoolerStart();
    EXPECT_EQ(device.TakeCalls(), Calls{});
    EXPECT_EQ(PrinterStatus(), 0u);
}

TEST_F(DeviceJobsTest, ThePrintersStatusFollowsTheDeviceAtEachStep)
{
    const Watch watch(printer, 0, {}, {PRINTER_NOTIFY_FIELD_STATUS});
    SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_MANUAL_FEED);
    watch.All();
    device.SetStatus(PRINTER_STATUS_DOOR_OPEN | PRINTER_STATUS_TONER_LOW);
    EXPECT_EQ(Step(), 0u) << "it is no step of printing";
    EXPECT_EQ(PrinterStatus(), DWORD{PRINTER_STATUS_MANUAL_FEED | PRINTER_STATUS_DOOR_OPEN | PRINTER_STATUS_TONER_LOW});
    device.SetStatus(PRINTER_STATUS_TONER_LOW);
    Step();
    EXPECT_EQ(PrinterStatus(), DWORD{PRINTER_STATUS_MANUAL_FEED | PRINTER_STATUS_TONER_LOW});
    EXPECT_EQ(watch.All(), (Calls{"0x0 P.STATUS=0x20020"}));
    Step();
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(DeviceJobsTest, ADeviceThatIsNotThereMakesThePrinterOffline)
{
    device.SetStatus(PRINTER_STATUS_DOOR_OPEN, ERROR_NOT_CONNECTED);
    Step();
    EXPECT_EQ(PrinterStatus(), DWORD{PRINTER_STATUS_OFFLINE | PRINTER_STATUS_DOOR_OPEN});
    device.SetStatus(PRINTER_STATUS_DOOR_OPEN, ERROR_INVALID_PRINTER_NAME);
    Step();
    EXPECT_EQ(PrinterStatus(), 0u);
}

TEST_F(DeviceJobsTest, APrinterThatLosesItsDeviceLosesWhatThatTold)
{
    device.SetStatus(PRINTER_STATUS_DOOR_OPEN);
    Step();
    SpoolerRemovePort(L"NET1");
    Step();
    EXPECT_EQ(PrinterStatus(), 0u);
}

class DeviceInRealTimeTest : public DeviceJobsTest {
protected:
    void SetUp() override
    {
        DeviceJobsTest::SetUp();
        UsePrinter(SpoolerPace::RealTime);
    }
};

TEST_F(DeviceInRealTimeTest, TheDeviceIsAskedAgainWhenItsTimeHasPassed)
{
    device.Answer({Took(4, 300), Took(6, 200)});
    const auto start = std::chrono::steady_clock::now();
    Print(printer, L"1", "0123456789");
    ASSERT_EQ(SpoolerWaitUntilIdle(L"Label", generousMs), DWORD{ERROR_SUCCESS});
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
    EXPECT_EQ(device.TakeCalls(), (Calls{"begin Label NET1 job 1 1", "write 10", "write 6", "end"}));
}

TEST_F(DeviceInRealTimeTest, ThePrintersSpeedCountsBesideTheDevice)
{
    SpoolerSetPace(L"Label", SpoolerPace::RealTime, 100);
    Print(printer, L"1", "0123456789");
    ASSERT_EQ(SpoolerWaitUntilIdle(L"Label", generousMs), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(device.TakeCalls(),
              (Calls{"begin Label NET1 job 1 1", "write 2", "write 2", "write 2", "write 2", "write 2", "end"}));
}

TEST_F(DeviceInRealTimeTest, AStalledDeviceIsAskedAgainByItself)
{
    device.Answer({Took(4), Stalled(JOB_STATUS_ERROR, L"Head Open")});
    const Watch watch = WatchStatus();
    const DWORD jobId = Print(printer, L"1", "0123456789");
    EXPECT_TRUE(Eventually([&] { return StatusOf(jobId) == 0x2012; }));
    EXPECT_EQ(SpoolerWaitUntilIdle(L"Label", generousMs), DWORD{ERROR_SUCCESS}) << "there is nothing to do";
    device.Answer({});
    EXPECT_TRUE(Eventually([&] { return JobCount() == 0; }));
    EXPECT_EQ(device.Taken(), "0123456789");
}

TEST_F(DeviceInRealTimeTest, ThePrintersStatusFollowsTheDeviceByItself)
{
    const Watch watch(printer, 0, {}, {PRINTER_NOTIFY_FIELD_STATUS});
    device.SetStatus(PRINTER_STATUS_DOOR_OPEN);
    ASSERT_EQ(::WaitForSingleObject(watch.Handle(), generousMs), DWORD{WAIT_OBJECT_0});
    EXPECT_EQ(watch.Next(), "0x0 P.STATUS=0x400000");
}

} // namespace
