// SPDX-License-Identifier: MIT
#include "NotificationTest.h"

namespace {

class QueuedBatchesTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        printer = AddAndOpen(L"Label");
    }

    PrinterHandle printer;
};

/// The block that waits in the notification; to be freed.
const PRINTER_NOTIFY_INFO* Fetch(const Watch& watch)
{
    DWORD change = 0;
    void* info = nullptr;
    ::FindNextPrinterChangeNotification(watch.Handle(), &change, nullptr, &info);
    return static_cast<const PRINTER_NOTIFY_INFO*>(info);
}

TEST_F(QueuedBatchesTest, ABatchIsGivenAsItStands)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS});
    const SpoolerNotifyEntry status = {.id = 4711, .number = 8};
    const SpoolerNotifyEntry document = {.field = JOB_NOTIFY_FIELD_DOCUMENT, .text = L"Pallet"};
    const SpoolerNotifyEntry paused = {.type = PRINTER_NOTIFY_TYPE, .field = PRINTER_NOTIFY_FIELD_STATUS, .number = 1};
    const SpoolerNotifyEntry strange = {.type = 7, .field = 300, .id = 5, .number = 6};
    EXPECT_EQ(SpoolerQueueBatch(L"Label", 0x12345678, {status, status, document, paused, strange}),
              DWORD{ERROR_SUCCESS});
    EXPECT_TRUE(watch.IsSignalled());
    EXPECT_EQ(watch.Next(), "0x12345678 J4711.STATUS=0x8 J4711.STATUS=0x8 J0.DOCUMENT='Pallet' P.STATUS=0x1 "
                            "?7.300.5=6");
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(QueuedBatchesTest, EachBatchIsFetchedByItselfBeforeWhatCameAbout)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS});
    QueueJob(L"Label");
    SpoolerQueueBatch(L"Label", 0x200,
                      {
                          {.id = 1, .number = 1}
    });
    SpoolerQueueBatch(L"Label", 0x400,
                      {
                          {.id = 1, .number = 2}
    });
    EXPECT_EQ(watch.All(),
              (std::vector<std::string>{"0x200 J1.STATUS=0x1", "0x400 J1.STATUS=0x2", "0x100 J1.STATUS=0x0"}));
}

TEST_F(QueuedBatchesTest, ABatchMayHaveNoBlock)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS});
    SpoolerQueueBatch(L"Label", {.change = PRINTER_CHANGE_ADD_JOB, .withBlock = false});
    EXPECT_EQ(watch.Next(), "0x100 -");
}

TEST_F(QueuedBatchesTest, ABlockMayHaveNoEntries)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS});
    SpoolerQueueBatch(L"Label", {.change = PRINTER_CHANGE_ADD_JOB});
    EXPECT_EQ(watch.Next(), "0x100");
}

TEST_F(QueuedBatchesTest, ABlockMayBeFlaggedAndHaveEntries)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS});
    const SpoolerNotifyEntry entry = {.id = 3, .number = 4};
    SpoolerQueueBatch(L"Label", {.flags = PRINTER_NOTIFY_INFO_DISCARDED, .entries = &entry, .count = 1});
    EXPECT_EQ(watch.Next(), "0x0 DISCARDED J3.STATUS=0x4");
}

TEST_F(QueuedBatchesTest, ATextMayBeNull)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    SpoolerQueueBatch(L"Label", 0,
                      {
                          {.type = PRINTER_NOTIFY_TYPE, .field = PRINTER_NOTIFY_FIELD_PRINTER_NAME}
    });
    const PRINTER_NOTIFY_INFO* const info = Fetch(watch);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->aData[0].NotifyData.Data.pBuf, nullptr);
    EXPECT_EQ(info->aData[0].NotifyData.Data.cbBuf, 0u);
    ::FreePrinterNotifyInfo(const_cast<PRINTER_NOTIFY_INFO*>(info));
}

TEST_F(QueuedBatchesTest, AnyBytesMayBeTold)
{
    const DEVMODEW devMode = LabelDevMode();
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    SpoolerQueueBatch(L"Label", 0,
                      {
                          {.field = JOB_NOTIFY_FIELD_DEVMODE, .id = 1, .data = &devMode, .dataBytes = sizeof devMode}
    });
    const PRINTER_NOTIFY_INFO* const info = Fetch(watch);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->aData[0].NotifyData.Data.cbBuf, sizeof devMode);
    EXPECT_EQ(static_cast<const DEVMODEW*>(info->aData[0].NotifyData.Data.pBuf)->dmPaperLength, 1500);
    ::FreePrinterNotifyInfo(const_cast<PRINTER_NOTIFY_INFO*>(info));
}

TEST_F(QueuedBatchesTest, EveryNotificationOfThePrinterGetsTheBatch)
{
    const Watch first(printer, PRINTER_CHANGE_JOB);
    const Watch second(printer, PRINTER_CHANGE_PRINTER);
    SpoolerQueueBatch(L"Label", {.change = 0x200, .withBlock = false});
    EXPECT_EQ(first.Next(), "0x200 -");
    EXPECT_EQ(second.Next(), "0x200 -");
}

TEST_F(QueuedBatchesTest, WithoutANotificationThereIsNobodyToTell)
{
    EXPECT_EQ(SpoolerQueueBatch(L"Label", {}), DWORD{ERROR_NOT_FOUND});
    EXPECT_EQ(SpoolerQueueBatch(L"Nobody", {}), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(SpoolerLoseNotifications(L"Nobody"), DWORD{ERROR_INVALID_PRINTER_NAME});
}

TEST_F(QueuedBatchesTest, MissingEntriesFailWithInvalidParameter)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    EXPECT_EQ(SpoolerQueueBatch(L"Label", {.count = 1}), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(QueuedBatchesTest, ATestCanWaitUntilAClientHasFetchedAll)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    EXPECT_EQ(SpoolerWaitUntilFetched(L"Label", 0), DWORD{ERROR_SUCCESS});
    SpoolerQueueBatch(L"Label", {.change = 0x200, .withBlock = false});
    SpoolerQueueBatch(L"Label", {.change = 0x200, .withBlock = false});
    EXPECT_EQ(SpoolerWaitUntilFetched(L"Label", 1), DWORD{ERROR_TIMEOUT});
    const OWaitHandle thread(::CreateThread(
        nullptr, 0,
        [](void* handle) {
            DWORD change = 0;
            ::FindNextPrinterChangeNotification(handle, &change, nullptr, nullptr);
            ::FindNextPrinterChangeNotification(handle, &change, nullptr, nullptr);
            return change;
        },
        watch.Handle(), 0, nullptr));
    EXPECT_EQ(SpoolerWaitUntilFetched(L"Label", 60000), DWORD{ERROR_SUCCESS});
    ::WaitForSingleObject(thread.Get(), 60000);
    EXPECT_EQ(SpoolerWaitUntilFetched(L"Nobody", 0), DWORD{ERROR_INVALID_PRINTER_NAME});
}

TEST_F(QueuedBatchesTest, AnInjectedSuccessGivesAChangeWordOfItsOwn)
{
    const Watch watch(printer, PRINTER_CHANGE_JOB);
    SpoolerInject({.call = SpoolerCall::FindNextPrinterChangeNotification,
                   .effect = SpoolerEffect::SucceedEmpty,
                   .bytes = PRINTER_CHANGE_ADD_JOB});
    EXPECT_EQ(watch.Next(), "0x100 -");
}

} // namespace
