// SPDX-License-Identifier: MIT
#include "NotificationTest.h"

#include "support/TemporaryDirectory.h"

#include <chrono>

namespace {

class PlayedRecordingsTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        printer = AddAndOpen(L"Label");
    }

    void TearDown() override
    {
        printer.Reset();
        SimulatorTest::TearDown();
    }

    /// Plays a recording of these lines.
    DWORD Play(const std::string& lines)
    {
        const std::wstring path = _folder.Make(L"recording.txt", "notification recording 1\n" + lines);
        return SpoolerPlayRecording(L"Label", path.c_str());
    }

    std::wstring Message()
    {
        std::wstring text(SpoolerConfigError(nullptr, 0) + 1, L'\0');
        SpoolerConfigError(text.data(), static_cast<DWORD>(text.size()));
        text.pop_back();
        return text;
    }

    TemporaryDirectory _folder;
    PrinterHandle printer;
};

using Lines = std::vector<std::string>;

constexpr char wholeJob[] = "batch 0.1\nchange 0x100\ninfo 2 0\n"
                            "job 7 DOCUMENT string \"Pallet\"\njob 7 STATUS number 8\nend\n"
                            "batch 0.2\nchange 0x800\nend\n"
                            "batch 0.3\nchange 0x600\ninfo 2 0\n"
                            "job 7 STATUS number 0x2090\njob 7 STATUS number 0x2184\nend\n";

TEST_F(PlayedRecordingsTest, EachBatchIsFetchedByItself)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS, JOB_NOTIFY_FIELD_DOCUMENT});
    EXPECT_FALSE(watch.IsSignalled());
    EXPECT_EQ(Play(wholeJob), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(watch.All(), (Lines{"0x100 J7.DOCUMENT='Pallet' J7.STATUS=0x8", "0x800 -",
                                  "0x600 J7.STATUS=0x2090 J7.STATUS=0x2184"}));
}

TEST_F(PlayedRecordingsTest, ANotificationThatIsOpenedLaterHearsItFromTheBeginning)
{
    Play(wholeJob);
    const Watch first(printer, PRINTER_CHANGE_ADD_JOB);
    EXPECT_EQ(first.All(), (Lines{"0x100 -"}));
    const Watch second(printer, PRINTER_CHANGE_ADD_JOB);
    EXPECT_EQ(second.All(), (Lines{"0x100 -"}));
}

TEST_F(PlayedRecordingsTest, ANullPathTakesItBack)
{
    Play(wholeJob);
    EXPECT_EQ(SpoolerPlayRecording(L"Label", nullptr), DWORD{ERROR_SUCCESS});
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    EXPECT_EQ(watch.All(), Lines{});
    EXPECT_EQ(SpoolerPlayRecording(L"Nobody", nullptr), DWORD{ERROR_INVALID_PRINTER_NAME});
}

TEST_F(PlayedRecordingsTest, AClientHearsWhatItAskedFor)
{
    const Watch words(printer, PRINTER_CHANGE_WRITE_JOB);
    const Watch documents(printer, PRINTER_CHANGE_ADD_JOB, {JOB_NOTIFY_FIELD_DOCUMENT});
    const Watch fields(printer, 0, {JOB_NOTIFY_FIELD_STATUS});
    Play(wholeJob);
    EXPECT_EQ(words.All(), (Lines{"0x800 -"}));
    EXPECT_EQ(documents.All(), (Lines{"0x100 J7.DOCUMENT='Pallet'"}));
    EXPECT_EQ(fields.All(), (Lines{"0x0 J7.STATUS=0x8", "0x0 J7.STATUS=0x2090 J7.STATUS=0x2184"}));
}

TEST_F(PlayedRecordingsTest, WhatCameWithoutBeingAskedForIsHeardByAll)
{
    const Watch watch(printer, PRINTER_CHANGE_ADD_JOB, {JOB_NOTIFY_FIELD_PRIORITY});
    Play("filter 0x100\nfields job STATUS\nfields printer STATUS\n"
         "batch 0\nchange 0x300\ninfo 2 0\njob 7 STATUS number 8\njob 7 DOCUMENT string \"a\"\n"
         "printer 0 STATUS number 1\nprinter 0 COMMENT string \"b\"\n9 1 2 number 3\nend\n");
    EXPECT_EQ(watch.All(), (Lines{"0x300 J7.DOCUMENT='a' P.COMMENT='b' ?9.2.1=3"}));
}

TEST_F(PlayedRecordingsTest, ABatchOfNothingIsHeardToo)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS});
    Play("batch 0\nchange 0\nend\nbatch 0\nchange 0\ninfo 2 0\nend\n");
    EXPECT_EQ(watch.All(), (Lines{"0x0 -", "0x0"}));
}

TEST_F(PlayedRecordingsTest, NothingElseIsHeard)
{
    const Watch watch(printer, PRINTER_CHANGE_ALL, usualJobFields, usualPrinterFields);
    Play("batch 0\nchange 0x800\nend\n");
    QueueJob(L"Label");
    SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_PAUSED);
    EXPECT_EQ(watch.All(), (Lines{"0x800 -"}));
    QueueJob(L"Label");
    EXPECT_EQ(watch.All(), Lines{});
}

/// The block that waits, with its odd parts.
TEST_F(PlayedRecordingsTest, OddEntriesAreGivenAsTheyCame)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS, JOB_NOTIFY_FIELD_DOCUMENT});
    Play("batch 0\nchange 0\ninfo 3 4\njob 7 STATUS number 1 2 reserved 9\njob 7 DOCUMENT null\n"
         "job 7 DOCUMENT string \"ab\" unterminated\nend\n");
    void* block = nullptr;
    DWORD change = 0;
    ASSERT_TRUE(::FindNextPrinterChangeNotification(watch.Handle(), &change, nullptr, &block));
    auto* const info = static_cast<PRINTER_NOTIFY_INFO*>(block);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->Version, 3u);
    EXPECT_EQ(info->Flags, 4u);
    ASSERT_EQ(info->Count, 3u);
    EXPECT_EQ(info->aData[0].Reserved, 9u);
    EXPECT_EQ(info->aData[0].NotifyData.adwData[0], 1u);
    EXPECT_EQ(info->aData[0].NotifyData.adwData[1], 2u);
    EXPECT_EQ(info->aData[1].NotifyData.Data.pBuf, nullptr);
    EXPECT_EQ(info->aData[2].NotifyData.Data.cbBuf, 2 * sizeof(wchar_t));
    ::FreePrinterNotifyInfo(info);
}

constexpr char lostAndRefreshed[] = "batch 0\nchange 0\ninfo 2 1\nend\n"
                                    "batch 0.1 refresh\nchange 0x100\ninfo 2 0\njob 7 STATUS number 0x10\nend\n"
                                    "batch 0.2\nchange 0x200\ninfo 2 0\njob 7 STATUS number 0x80\nend\n";

TEST_F(PlayedRecordingsTest, AfterLostChangesAClientStaysDeafUntilItAsksForAllValues)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS});
    Play(lostAndRefreshed);
    EXPECT_EQ(watch.All(), (Lines{"0x0 DISCARDED"}));
    EXPECT_EQ(watch.Next(), "0x0 -");
    EXPECT_EQ(SpoolerWaitUntilFetched(L"Label", 0), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(watch.Next(PRINTER_NOTIFY_OPTIONS_REFRESH), "0x100 J7.STATUS=0x10");
    EXPECT_EQ(watch.All(), (Lines{"0x200 J7.STATUS=0x80"}));
}

TEST_F(PlayedRecordingsTest, ARefreshWithNothingForTheClientIsAnsweredToo)
{
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_PRIORITY});
    Play(std::string(lostAndRefreshed) + "batch 1\nchange 0x200\ninfo 2 0\njob 7 PRIORITY number 5\nend\n");
    EXPECT_EQ(watch.All(), (Lines{"0x0 DISCARDED"}));
    EXPECT_EQ(watch.Next(PRINTER_NOTIFY_OPTIONS_REFRESH), "0x0 -");
    EXPECT_EQ(watch.All(), (Lines{"0x0 J7.PRIORITY=5"}));
}

TEST_F(PlayedRecordingsTest, AClientThatAsksForNoFieldsLosesNothing)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    Play(lostAndRefreshed);
    EXPECT_EQ(watch.All(), (Lines{"0x100 -", "0x200 -"}));
}

TEST_F(PlayedRecordingsTest, ARefreshThatWasNotRecordedDropsNothingOfTheRecording)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS});
    QueueJob(L"Label", {.jobId = 3});
    Play(wholeJob);
    EXPECT_EQ(watch.Next(PRINTER_NOTIFY_OPTIONS_REFRESH), "0x100 J3.STATUS=0x0");
    EXPECT_EQ(watch.All().size(), 3u);
}

TEST_F(PlayedRecordingsTest, TheQueueBecomesAsTheBatchesTellIt)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    Play("batch 0\nchange 0x100\ninfo 2 0\njob 7 DOCUMENT string \"Pallet\"\njob 7 USER_NAME string \"joe\"\n"
         "job 7 STATUS number 8\njob 7 TOTAL_PAGES number 3\njob 7 TOTAL_BYTES number 1500\njob 7 TIME number 2\n"
         "job 7 SUBMITTED systemtime 2024-02-29 23:05:59.007\nend\n"
         "batch 1\nchange 0x100\ninfo 2 0\njob 8 PRIORITY number 5\njob 8 POSITION number 1\nend\n"
         "batch 2\nchange 0x400\ninfo 2 0\njob 7 STATUS number 0x104\nend\n");
    EXPECT_EQ(ReadJobs<JOB_INFO_2W>(printer, 2).count, 0u);

    watch.Next();
    const auto first = ReadJobs<JOB_INFO_2W>(printer, 2);
    ASSERT_EQ(first.count, 1u);
    EXPECT_EQ(first->JobId, 7u);
    EXPECT_EQ(Text(first->pDocument), L"Pallet");
    EXPECT_EQ(Text(first->pUserName), L"joe");
    EXPECT_EQ(Text(first->pDatatype), L"RAW") << "what isn't told comes from the printer";
    EXPECT_EQ(first->Status, DWORD{JOB_STATUS_SPOOLING});
    EXPECT_EQ(first->TotalPages, 3u);
    EXPECT_EQ(first->Size, 1500u);
    EXPECT_EQ(first->Time, 2000u);
    EXPECT_EQ(first->Submitted.wMilliseconds, 7);

    watch.Next();
    const auto second = ReadJobs<JOB_INFO_2W>(printer, 2);
    ASSERT_EQ(second.count, 2u);
    EXPECT_EQ(second[0].JobId, 8u);
    EXPECT_EQ(second[0].Priority, 5u);

    watch.Next();
    const auto third = ReadJobs<JOB_INFO_2W>(printer, 2);
    ASSERT_EQ(third.count, 1u);
    EXPECT_EQ(third->JobId, 8u);
}

TEST_F(PlayedRecordingsTest, WhatAClientDidNotAskForBecomesTrueWithItsNextBatch)
{
    const Watch watch(printer, PRINTER_CHANGE_WRITE_JOB);
    Play("batch 0\nchange 0x100\ninfo 2 0\njob 7 DOCUMENT string \"Pallet\"\nend\nbatch 1\nchange 0x800\nend\n");
    EXPECT_EQ(watch.Next(), "0x800 -");
    EXPECT_EQ(ReadJobs<JOB_INFO_2W>(printer, 2).count, 1u);
}

TEST_F(PlayedRecordingsTest, WhatABatchTellsBecomesTrueOnce)
{
    const Watch watch(printer, PRINTER_CHANGE_ALL);
    Play("batch 0\nchange 2\ninfo 2 0\nprinter 0 STATUS number 1\nend\nbatch 1\nchange 0x800\nend\n");
    watch.Next();
    SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_BUSY);
    watch.Next();
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_6>(printer, 6)->dwStatus, DWORD{PRINTER_STATUS_BUSY});
}

TEST_F(PlayedRecordingsTest, OnlyDeletedJobsGo)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    Play("batch 0\nchange 0x400\ninfo 2 0\njob 6 STATUS number 4\njob 7 STATUS number 0x100\n"
         "job 8 STATUS number 0x80\njob 0 STATUS number 8\nend\n");
    watch.Next();
    const auto jobs = ReadJobs<JOB_INFO_1W>(printer, 1);
    ASSERT_EQ(jobs.count, 2u);
    EXPECT_EQ(jobs[0].JobId, 6u);
    EXPECT_EQ(jobs[1].JobId, 8u);
}

TEST_F(PlayedRecordingsTest, ANotificationWhosePrinterHandleWasClosedHearsNothing)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    printer.Reset();
    Play(wholeJob);
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(PlayedRecordingsTest, ThePrinterBecomesAsTheBatchesTellIt)
{
    const Watch watch(printer, PRINTER_CHANGE_PRINTER);
    Play("batch 0\nchange 2\ninfo 2 0\nprinter 0 STATUS number 1\nprinter 0 COMMENT string \"Gate\"\n"
         "printer 0 PRINTER_NAME string \"Renamed\"\nprinter 0 CJOBS number 9\nend\n");
    watch.Next();
    const auto info = ReadPrinter<PRINTER_INFO_2W>(Open(L"Renamed"), 2);
    EXPECT_EQ(info->Status, DWORD{PRINTER_STATUS_PAUSED});
    EXPECT_EQ(Text(info->pComment), L"Gate");
    EXPECT_EQ(info->cJobs, 0u);
}

TEST_F(PlayedRecordingsTest, ThePrinterPrintsNothingByItself)
{
    SpoolerAddPrinter({.printerName = L"Gate", .pace = SpoolerPace::AtOnce});
    const std::wstring path =
        _folder.Make(L"gate.txt", "notification recording 1\n"
                                  "batch 0\nchange 0x100\ninfo 2 0\njob 7 STATUS number 0\nend\n");
    SpoolerPlayRecording(L"Gate", path.c_str());
    printer = Open(L"Gate");
    Watch(printer, PRINTER_CHANGE_JOB).Next();
    const auto jobs = ReadJobs<JOB_INFO_1W>(printer, 1);
    ASSERT_EQ(jobs.count, 1u);
    EXPECT_EQ(jobs->Status, 0u);
    EXPECT_EQ(SpoolerDeliveryCount(L"Gate"), 0u);

    EXPECT_TRUE(::SetJobW(printer.Get(), 7, 0, nullptr, JOB_CONTROL_DELETE)) << "what a client does still works";
    EXPECT_EQ(ReadJobs<JOB_INFO_1W>(printer, 1).count, 0u);
}

/// A recording on a printer of real time.
class PlayedInTimeTest : public PlayedRecordingsTest {
protected:
    void SetUp() override
    {
        PlayedRecordingsTest::SetUp();
        printer.Reset();
        SpoolerReset();
        SpoolerAddPrinter({.printerName = L"Label", .pace = SpoolerPace::RealTime});
        printer = Open(L"Label");
    }

    static bool Wait(const Watch& watch) { return ::WaitForSingleObject(watch.Handle(), 60000) == WAIT_OBJECT_0; }
};

TEST_F(PlayedInTimeTest, BatchesComeAtTheirTimes)
{
    Play("batch 0\nchange 0x100\nend\nbatch 0.02\nchange 0x800\nend\nbatch 0.05\nchange 0x400\nend\n");
    const auto begin = std::chrono::steady_clock::now();
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    ASSERT_TRUE(Wait(watch));
    EXPECT_EQ(watch.Next(), "0x100 -");
    EXPECT_EQ(SpoolerWaitUntilFetched(L"Label", 0), DWORD{ERROR_TIMEOUT}) << "more is to come";
    ASSERT_TRUE(Wait(watch));
    EXPECT_EQ(watch.Next(), "0x800 -");
    ASSERT_TRUE(Wait(watch));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(50));
    EXPECT_EQ(watch.Next(), "0x400 -");
    EXPECT_EQ(SpoolerWaitUntilFetched(L"Label", 0), DWORD{ERROR_SUCCESS});
}

TEST_F(PlayedInTimeTest, AnOpenNotificationHearsItFromNowOn)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    Play("batch 0.01\nchange 0x100\nend\n");
    ASSERT_TRUE(Wait(watch));
    EXPECT_EQ(watch.Next(), "0x100 -");
}

TEST_F(PlayedInTimeTest, AJobCanBeGoneBeforeItsFirstNoticeIsRead)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS});
    const Watch end(printer, PRINTER_CHANGE_DELETE_JOB);
    Play("batch 0\nchange 0x100\ninfo 2 0\njob 7 STATUS number 8\nend\n"
         "batch 0.01\nchange 0x400\ninfo 2 0\njob 7 STATUS number 0x104\nend\n");
    ASSERT_TRUE(Wait(end));
    EXPECT_EQ(ReadJobs<JOB_INFO_1W>(printer, 1).count, 0u);
    EXPECT_EQ(watch.Next(), "0x100 J7.STATUS=0x8");
    EXPECT_EQ(ReadJobs<JOB_INFO_1W>(printer, 1).count, 0u) << "what is fetched late doesn't come true again";
}

TEST_F(PlayedInTimeTest, TheEarliestBatchOfAllNotificationsComesFirst)
{
    const Watch first(printer, PRINTER_CHANGE_ADD_JOB);
    const Watch second(printer, PRINTER_CHANGE_WRITE_JOB);
    Play("batch 0\nchange 0x100\nend\nbatch 0\nchange 0x800\nend\nbatch 3600\nchange 0x900\nend\n");
    ASSERT_TRUE(Wait(first));
    ASSERT_TRUE(Wait(second)) << "what comes in an hour holds nothing up";
}

TEST_F(PlayedInTimeTest, AClosedPrinterHandleTakesWhatIsToComeWithIt)
{
    Play("batch 0.02\nchange 0x100\ninfo 2 0\njob 7 STATUS number 8\nend\n");
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    printer.Reset();
    printer = Open(L"Label");
    const Watch other(printer, PRINTER_CHANGE_JOB);
    ASSERT_TRUE(Wait(other));
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(PlayedInTimeTest, AClosedNotificationTakesWhatIsToComeWithIt)
{
    Play("batch 3600\nchange 0x100\nend\n");
    Watch watch(printer, PRINTER_CHANGE_JOB);
    EXPECT_TRUE(watch.Close());
    EXPECT_EQ(SpoolerWaitUntilFetched(L"Label", 0), DWORD{ERROR_SUCCESS});
}

TEST_F(PlayedRecordingsTest, ADeletedPrinterGoes)
{
    const Watch watch(printer, PRINTER_CHANGE_PRINTER);
    Play("batch 0\nchange 4\nend\nbatch 1\nchange 2\ninfo 2 0\nprinter 0 STATUS number 1\nend\n");
    EXPECT_EQ(watch.All(), (Lines{"0x4 -", "0x2 -"}));
    EXPECT_FALSE(Open(L"Label"));
}

TEST_F(PlayedRecordingsTest, AMalformedRecordingIsToldWithItsLineAndPlaysNothing)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    EXPECT_EQ(Play("batch 0\nchange 0x100\nend\nbatch 1\nchange all\nend\n"), DWORD{ERROR_BAD_CONFIGURATION});
    EXPECT_EQ(Message(), _folder.Path(L"recording.txt") + L"(6): not a number: all");
    EXPECT_EQ(watch.All(), Lines{});
}

TEST_F(PlayedRecordingsTest, AMissingFileOrPrinterGivesItsError)
{
    const std::wstring path = _folder.Path(L"none.txt");
    EXPECT_EQ(SpoolerPlayRecording(L"Label", path.c_str()), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(Message(), path + L": the file can't be read, error 2");
    EXPECT_EQ(SpoolerPlayRecording(L"Nobody", path.c_str()), DWORD{ERROR_INVALID_PRINTER_NAME});
}

TEST_F(PlayedRecordingsTest, AConfigurationFileNamesARecording)
{
    _folder.Make(L"gate.txt", std::string("notification recording 1\n") + wholeJob);
    const std::wstring config = _folder.Make(L"world.ini", "[printer Gate]\nrecording = gate.txt\n");
    ASSERT_EQ(SpoolerLoadConfig(config.c_str()), DWORD{ERROR_SUCCESS});
    const Watch watch(Open(L"Gate"), PRINTER_CHANGE_ADD_JOB);
    EXPECT_FALSE(watch.IsSignalled()) << "its printer handle was closed at once";
    printer = Open(L"Gate");
    EXPECT_EQ(Watch(printer, PRINTER_CHANGE_ADD_JOB).All(), (Lines{"0x100 -"}));
}

TEST_F(PlayedRecordingsTest, AConfigurationFileTellsWhatIsWrongWithItsRecording)
{
    _folder.Make(L"gate.txt", "notification recording 1\nbatch soon\n");
    const std::wstring config = _folder.Make(L"world.ini", "[printer Gate]\nrecording = gate.txt\n");
    EXPECT_EQ(SpoolerLoadConfig(config.c_str()), DWORD{ERROR_BAD_CONFIGURATION});
    EXPECT_EQ(Message(), config + L"(2): line 2 of gate.txt: not a time in seconds: soon");
    const std::wstring missing = _folder.Make(L"world.ini", "[printer Gate]\nrecording = none.txt\n");
    EXPECT_EQ(SpoolerLoadConfig(missing.c_str()), DWORD{ERROR_BAD_CONFIGURATION});
    EXPECT_EQ(Message(), missing + L"(2): none.txt can't be read, error 2");
}

} // namespace
