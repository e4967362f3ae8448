// SPDX-License-Identifier: MIT
#include "NotificationTest.h"

#include <array>

namespace {

class FindNextNotificationTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        printer = AddAndOpen(L"Label");
        jobId = QueueJob(L"Label");
        job = "J" + std::to_string(jobId);
    }

    void SetStatus(DWORD status) const { SpoolerSetJobStatus(L"Label", jobId, status); }
    void SetPages(DWORD total, DWORD printed) const { SpoolerSetJobPages(L"Label", jobId, total, printed); }

    Watch WatchPages() const
    {
        return Watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_TOTAL_PAGES, JOB_NOTIFY_FIELD_PAGES_PRINTED});
    }
    Watch WatchStatus() const { return Watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS}); }

    PrinterHandle printer;
    DWORD jobId = 0;
    std::string job; // as entries name it
};

TEST_F(FindNextNotificationTest, TheHandleIsSignalledUntilTheChangeIsFetched)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    SetStatus(JOB_STATUS_PAUSED);
    EXPECT_TRUE(watch.IsSignalled());
    EXPECT_TRUE(watch.IsSignalled());
    EXPECT_EQ(watch.Next(), "0x200 -");
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(FindNextNotificationTest, TheHandleCanBeWaitedForTogetherWithOthers)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    const OWaitHandle event(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    SetStatus(JOB_STATUS_PAUSED);
    const std::array<HANDLE, 2> handles{event.Get(), watch.Handle()};
    EXPECT_EQ(::WaitForMultipleObjects(2, handles.data(), FALSE, 0), DWORD{WAIT_OBJECT_0 + 1});
}

TEST_F(FindNextNotificationTest, AThreadThatWaitsIsWoken)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    const OWaitHandle thread(::CreateThread(
        nullptr, 0, [](void* handle) { return ::WaitForSingleObject(handle, 60000); }, watch.Handle(), 0, nullptr));
    SetStatus(JOB_STATUS_PAUSED);
    ASSERT_EQ(::WaitForSingleObject(thread.Get(), 60000), DWORD{WAIT_OBJECT_0});
    DWORD result = 0;
    ::GetExitCodeThread(thread.Get(), &result);
    EXPECT_EQ(result, DWORD{WAIT_OBJECT_0});
}

TEST_F(FindNextNotificationTest, ChangesSinceTheLastCallAreOredTogether)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    SetStatus(JOB_STATUS_PAUSED);
    QueueJob(L"Label");
    SpoolerRemoveJob(L"Label", jobId);
    EXPECT_EQ(watch.Next(), "0x700 -");
}

TEST_F(FindNextNotificationTest, OnlyBitsOfTheFilterAreReported)
{
    const Watch watch(printer, PRINTER_CHANGE_ADD_JOB);
    SetStatus(JOB_STATUS_PAUSED);
    EXPECT_FALSE(watch.IsSignalled());
    QueueJob(L"Label");
    EXPECT_EQ(watch.Next(), "0x100 -");
}

TEST_F(FindNextNotificationTest, FieldsOutsideTheFilterComeWithAnEmptyChangeWord)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB, {}, {PRINTER_NOTIFY_FIELD_STATUS});
    SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_BUSY);
    EXPECT_EQ(watch.Next(), "0x0 P.STATUS=0x200");
}

TEST_F(FindNextNotificationTest, FilterAndFieldsBothNotify)
{
    const Watch watch(printer, PRINTER_CHANGE_DELETE_JOB, {JOB_NOTIFY_FIELD_STATUS});
    SetStatus(JOB_STATUS_PAUSED);
    EXPECT_EQ(watch.Next(), "0x0 " + job + ".STATUS=0x1");
    SpoolerRemoveJob(L"Label", jobId);
    EXPECT_EQ(watch.Next(), "0x400 -");
}

TEST_F(FindNextNotificationTest, WhatNobodyAskedForDoesNotSignal)
{
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_STATUS});
    SetPages(3, 0);
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(FindNextNotificationTest, WithNothingToTellItSucceedsWithNothing)
{
    const Watch watch = WatchStatus();
    EXPECT_EQ(watch.Next(), "0x0 -");
}

TEST_F(FindNextNotificationTest, EveryPlaceForAResultMayBeNull)
{
    const Watch watch = WatchStatus();
    SetStatus(JOB_STATUS_PAUSED);
    EXPECT_TRUE(::FindNextPrinterChangeNotification(watch.Handle(), nullptr, nullptr, nullptr));
    EXPECT_FALSE(watch.IsSignalled());
    EXPECT_EQ(watch.Next(), "0x0 -");
    EXPECT_EQ(SpoolerUnfreedNotifyBlocks(), 0u);
}

TEST_F(FindNextNotificationTest, OptionsWithoutRefreshAreIgnored)
{
    const Watch watch = WatchStatus();
    SetStatus(JOB_STATUS_PAUSED);
    PRINTER_NOTIFY_OPTIONS options = {7, 0, 5, nullptr};
    DWORD change = 0;
    EXPECT_TRUE(::FindNextPrinterChangeNotification(watch.Handle(), &change, &options, nullptr));
    EXPECT_EQ(change, DWORD{PRINTER_CHANGE_SET_JOB});
}

TEST_F(FindNextNotificationTest, AnUnknownHandleFailsWithInvalidHandleAndGivesNothing)
{
    DWORD change = 0xFFFFFFFF;
    void* info = &change;
    EXPECT_FALSE(::FindNextPrinterChangeNotification(INVALID_HANDLE_VALUE, &change, nullptr, &info));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(change, 0u);
    EXPECT_EQ(info, nullptr);
}

TEST_F(FindNextNotificationTest, AWaitingFieldIsOverwrittenInItsPlace)
{
    const Watch watch = WatchPages();
    SetPages(1, 0);
    SetPages(2, 1);
    SetPages(3, 1);
    EXPECT_EQ(watch.Next(), "0x200 " + job + ".TOTAL_PAGES=3 " + job + ".PAGES_PRINTED=1");
}

TEST_F(FindNextNotificationTest, AFetchedFieldIsToldAgain)
{
    const Watch watch = WatchPages();
    SetPages(1, 0);
    EXPECT_EQ(watch.Next(), "0x200 " + job + ".TOTAL_PAGES=1");
    SetPages(2, 0);
    EXPECT_EQ(watch.Next(), "0x200 " + job + ".TOTAL_PAGES=2");
}

TEST_F(FindNextNotificationTest, ValuesOfAJobsStatusAreToldInTheirOrder)
{
    const Watch watch = WatchStatus();
    SetStatus(JOB_STATUS_SPOOLING);
    SetStatus(0);
    SetStatus(JOB_STATUS_SPOOLING);
    EXPECT_EQ(watch.Next(), "0x200 " + job + ".STATUS=0x8 " + job + ".STATUS=0x0 " + job + ".STATUS=0x8");
}

TEST_F(FindNextNotificationTest, EachJobHasItsOwnLineOfStatusValues)
{
    const DWORD otherId = QueueJob(L"Label");
    const std::string other = "J" + std::to_string(otherId);
    const Watch watch = WatchStatus();
    SetStatus(JOB_STATUS_PAUSED);
    SpoolerSetJobStatus(L"Label", otherId, JOB_STATUS_PAUSED);
    SetStatus(0);
    EXPECT_EQ(watch.Next(), "0x200 " + job + ".STATUS=0x1 " + other + ".STATUS=0x1 " + job + ".STATUS=0x0");
}

TEST_F(FindNextNotificationTest, EqualNeighboursAmongTheValuesOfAStatusAreToldOnce)
{
    SpoolerRemoveJob(L"Label", jobId);
    const Watch watch = WatchStatus();
    for (int round = 0; round < 2; ++round) {
        QueueJob(L"Label", {.jobId = 700});
        SpoolerRemoveJob(L"Label", 700);
    }
    EXPECT_EQ(watch.Next(), "0x500 J700.STATUS=0x0");
}

TEST_F(FindNextNotificationTest, APrinterFieldWithTheNumberOfAJobsStatusIsOverwritten)
{
    const Watch watch(printer, 0, {}, {PRINTER_NOTIFY_FIELD_PARAMETERS});
    static_assert(PRINTER_NOTIFY_FIELD_PARAMETERS == JOB_NOTIFY_FIELD_STATUS);
    auto info = ReadPrinter<PRINTER_INFO_2W>(printer, 2);
    for (const wchar_t* const parameters : {L"a", L"b"}) {
        info.Get()->pParameters = const_cast<wchar_t*>(parameters);
        ::SetPrinterW(printer.Get(), 2, info.Data(), 0);
    }
    EXPECT_EQ(watch.Next(), "0x0 P.PARAMETERS='b'");
}

TEST_F(FindNextNotificationTest, AStatusOfThePrinterIsOverwritten)
{
    const Watch watch(printer, 0, {}, {PRINTER_NOTIFY_FIELD_STATUS});
    SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_BUSY);
    SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_PAUSED);
    EXPECT_EQ(watch.Next(), "0x0 P.STATUS=0x1");
}

TEST_F(FindNextNotificationTest, OneCallIsOneBatch)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB, usualJobFields);
    auto info = ReadJob<JOB_INFO_2W>(printer, jobId, 2);
    info.Get()->Priority = 9;
    info.Get()->StartTime = 60;
    info.Get()->UntilTime = 120;
    info.Get()->PagesPrinted = 4;
    info.Get()->Status = JOB_STATUS_PAUSED;
    ASSERT_TRUE(::SetJobW(printer.Get(), jobId, 2, info.Data(), 0));
    EXPECT_EQ(watch.Next(), "0x200 " + job + ".STATUS=0x1 " + job + ".PAGES_PRINTED=4 " + job + ".PRIORITY=9 " + job +
                                ".START_TIME=60 " + job + ".UNTIL_TIME=120");
}

TEST_F(FindNextNotificationTest, EntriesStandInTheOrderInWhichTheirFieldsWereAskedFor)
{
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_PAGES_PRINTED, JOB_NOTIFY_FIELD_TOTAL_PAGES});
    SetPages(3, 2);
    EXPECT_EQ(watch.Next(), "0x0 " + job + ".PAGES_PRINTED=2 " + job + ".TOTAL_PAGES=3");
}

TEST_F(FindNextNotificationTest, TheOrderIsThatOfTheFirstChange)
{
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_STATUS, JOB_NOTIFY_FIELD_TOTAL_PAGES});
    SetPages(3, 0);
    SetStatus(JOB_STATUS_PAUSED);
    SetPages(4, 0);
    EXPECT_EQ(watch.Next(), "0x0 " + job + ".TOTAL_PAGES=4 " + job + ".STATUS=0x1");
}

TEST_F(FindNextNotificationTest, ValuesAreThoseOfTheTimeOfTheEntry)
{
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_DOCUMENT, JOB_NOTIFY_FIELD_STATUS});
    const DWORD gone = QueueJob(L"Label", {.document = L"Pallet"});
    SpoolerRemoveJob(L"Label", gone);
    const std::string name = "J" + std::to_string(gone);
    EXPECT_EQ(watch.Next(), "0x0 " + name + ".DOCUMENT='Pallet' " + name + ".STATUS=0x0");
}

TEST_F(FindNextNotificationTest, NotificationsOnOnePrinterAreIndependent)
{
    const Watch first = WatchStatus();
    SetStatus(JOB_STATUS_PAUSED);
    const Watch second = WatchPages();
    SetPages(2, 0);
    EXPECT_EQ(first.Next(), "0x200 " + job + ".STATUS=0x1");
    EXPECT_TRUE(second.IsSignalled());
    EXPECT_EQ(second.Next(), "0x200 " + job + ".TOTAL_PAGES=2");
}

TEST_F(FindNextNotificationTest, OtherPrintersAreNotHeard)
{
    const Watch watch = WatchStatus();
    AddAndOpen(L"Other");
    QueueJob(L"Other");
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(FindNextNotificationTest, BlocksAreCountedUntilTheyAreFreed)
{
    const Watch watch = WatchStatus();
    SetStatus(JOB_STATUS_PAUSED);
    DWORD change = 0;
    void* info = nullptr;
    ASSERT_TRUE(::FindNextPrinterChangeNotification(watch.Handle(), &change, nullptr, &info));
    EXPECT_EQ(SpoolerUnfreedNotifyBlocks(), 1u);
    EXPECT_TRUE(::FreePrinterNotifyInfo(static_cast<PRINTER_NOTIFY_INFO*>(info)));
    EXPECT_EQ(SpoolerUnfreedNotifyBlocks(), 0u);
    EXPECT_FALSE(::FreePrinterNotifyInfo(static_cast<PRINTER_NOTIFY_INFO*>(info)));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(FindNextNotificationTest, ABlockOutlivesItsNotificationAndAReset)
{
    Watch watch = WatchStatus();
    SetStatus(JOB_STATUS_PAUSED);
    DWORD change = 0;
    void* info = nullptr;
    ASSERT_TRUE(::FindNextPrinterChangeNotification(watch.Handle(), &change, nullptr, &info));
    watch.Close();
    SpoolerReset();
    EXPECT_EQ(SpoolerUnfreedNotifyBlocks(), 0u);
    const auto* const block = static_cast<const PRINTER_NOTIFY_INFO*>(info);
    EXPECT_EQ(EntriesText(*block), " " + job + ".STATUS=0x1");
    EXPECT_TRUE(::FreePrinterNotifyInfo(static_cast<PRINTER_NOTIFY_INFO*>(info)));
}

TEST_F(FindNextNotificationTest, ABlockThatWasNotGivenOutCannotBeFreed)
{
    PRINTER_NOTIFY_INFO info = {};
    EXPECT_FALSE(::FreePrinterNotifyInfo(&info));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_FALSE(::FreePrinterNotifyInfo(nullptr));
}

TEST_F(FindNextNotificationTest, ANotificationOfADeletedPrinterCanStillBeFetchedAndClosed)
{
    Watch watch(printer, PRINTER_CHANGE_PRINTER);
    SpoolerRemovePrinter(L"Label");
    EXPECT_EQ(watch.Next(), "0x4 -");
    EXPECT_EQ(watch.Next(PRINTER_NOTIFY_OPTIONS_REFRESH), "0x0 -");
    EXPECT_TRUE(watch.Close());
}

TEST_F(FindNextNotificationTest, WhoOpenedThePrinterByItsServerReadsNamesWithIt)
{
    SpoolerSetIdentity(nullptr, L"DEPOT");
    const PrinterHandle remote = Open(L"\\\\DEPOT\\Label");
    const Watch watch(remote, 0, {JOB_NOTIFY_FIELD_PRINTER_NAME}, {PRINTER_NOTIFY_FIELD_PRINTER_NAME});
    SpoolerRenamePrinter(L"Label", L"New");
    EXPECT_EQ(watch.Next(), "0x0 P.PRINTER_NAME='\\\\DEPOT\\New'");
    const DWORD added = QueueJob(L"New");
    EXPECT_EQ(watch.Next(), "0x0 J" + std::to_string(added) + ".PRINTER_NAME='\\\\DEPOT\\New'");
}

// A refresh.

TEST_F(FindNextNotificationTest, ARefreshGivesEveryFieldOfThePrinterAndOfEachJob)
{
    const DWORD otherId = QueueJob(L"Label", {.status = JOB_STATUS_PAUSED});
    const Watch watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS, JOB_NOTIFY_FIELD_POSITION},
                      {PRINTER_NOTIFY_FIELD_STATUS, PRINTER_NOTIFY_FIELD_CJOBS});
    const std::string other = "J" + std::to_string(otherId);
    EXPECT_EQ(watch.Next(PRINTER_NOTIFY_OPTIONS_REFRESH), "0x0 P.STATUS=0x0 P.CJOBS=2 " + job + ".STATUS=0x0 " + job +
                                                              ".POSITION=1 " + other + ".STATUS=0x1 " + other +
                                                              ".POSITION=2");
}

TEST_F(FindNextNotificationTest, ARefreshTakesThePlaceOfWhatWaits)
{
    const Watch watch = WatchStatus();
    SetStatus(JOB_STATUS_PAUSED);
    SetStatus(0);
    EXPECT_EQ(watch.Next(PRINTER_NOTIFY_OPTIONS_REFRESH), "0x200 " + job + ".STATUS=0x0");
    EXPECT_FALSE(watch.IsSignalled());
    EXPECT_EQ(watch.Next(), "0x0 -");
}

TEST_F(FindNextNotificationTest, ARefreshDropsTheBatchesOfATestToo)
{
    const Watch watch = WatchStatus();
    SpoolerQueueBatch(L"Label", PRINTER_CHANGE_SET_JOB, {{.id = 99}});
    EXPECT_EQ(watch.Next(PRINTER_NOTIFY_OPTIONS_REFRESH), "0x0 " + job + ".STATUS=0x0");
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(FindNextNotificationTest, ARefreshTellsNothingOfOtherPrinters)
{
    AddAndOpen(L"Other");
    QueueJob(L"Other");
    const Watch watch = WatchStatus();
    EXPECT_EQ(watch.Next(PRINTER_NOTIFY_OPTIONS_REFRESH), "0x0 " + job + ".STATUS=0x0");
}

TEST_F(FindNextNotificationTest, ARefreshWithoutFieldsGivesNoBlock)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    EXPECT_EQ(watch.Next(PRINTER_NOTIFY_OPTIONS_REFRESH), "0x0 -");
}

// What was lost.

TEST_F(FindNextNotificationTest, TooManyEntriesAreLostAndSaidToBe)
{
    SpoolerSetNotificationLimit(2);
    const Watch watch = WatchStatus();
    SetStatus(1);
    SetStatus(2);
    SetStatus(3);
    EXPECT_EQ(watch.Next(), "0x200 DISCARDED");
}

TEST_F(FindNextNotificationTest, AsManyEntriesAsTheLimitAreKept)
{
    SpoolerSetNotificationLimit(2);
    const Watch watch = WatchStatus();
    SetStatus(1);
    SetStatus(2);
    EXPECT_EQ(watch.Next(), "0x200 " + job + ".STATUS=0x1 " + job + ".STATUS=0x2");
}

TEST_F(FindNextNotificationTest, AfterALossNothingIsToldUntilARefresh)
{
    const Watch watch = WatchStatus();
    SpoolerLoseNotifications(L"Label");
    EXPECT_EQ(watch.Next(), "0x0 DISCARDED");
    SetStatus(JOB_STATUS_PAUSED);
    EXPECT_FALSE(watch.IsSignalled());
    EXPECT_EQ(watch.Next(), "0x0 -");
    EXPECT_EQ(watch.Next(PRINTER_NOTIFY_OPTIONS_REFRESH), "0x0 " + job + ".STATUS=0x1");
    SetStatus(0);
    EXPECT_EQ(watch.Next(), "0x200 " + job + ".STATUS=0x0");
}

TEST_F(FindNextNotificationTest, AnUnfetchedLossIsToldOnce)
{
    const Watch watch = WatchStatus();
    SpoolerLoseNotifications(L"Label");
    SpoolerLoseNotifications(L"Label");
    EXPECT_TRUE(watch.IsSignalled());
    EXPECT_EQ(watch.All(), (std::vector<std::string>{"0x0 DISCARDED"}));
}

TEST_F(FindNextNotificationTest, ALossMeetsOneNotificationAndNotTheOthers)
{
    SpoolerSetNotificationLimit(2);
    const Watch status = WatchStatus();
    const Watch pages = WatchPages();
    SetStatus(1);
    SetStatus(2);
    SetStatus(3);
    SetPages(1, 0);
    EXPECT_EQ(status.Next(), "0x200 DISCARDED");
    EXPECT_EQ(pages.Next(), "0x200 " + job + ".TOTAL_PAGES=1");
}

TEST_F(FindNextNotificationTest, WithoutFieldsThereIsNothingToLose)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    SpoolerLoseNotifications(L"Label");
    EXPECT_FALSE(watch.IsSignalled());
    SetStatus(JOB_STATUS_PAUSED);
    EXPECT_EQ(watch.Next(), "0x200 -");
}

TEST_F(FindNextNotificationTest, AResetTakesTheLimitAway)
{
    SpoolerSetNotificationLimit(1);
    SpoolerReset();
    printer = AddAndOpen(L"Label");
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_STATUS, JOB_NOTIFY_FIELD_POSITION});
    QueueJob(L"Label");
    EXPECT_EQ(watch.Next(), "0x0 J1.STATUS=0x0 J1.POSITION=1");
}

} // namespace
