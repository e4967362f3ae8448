// SPDX-License-Identifier: MIT
#include "vrl/spooler/PrinterInfoCache.h"

#include "support/AllocationFailure.h"
#include "support/AssertCatcher.h"
#include "support/KeyWithHash.h"
#include "support/MadeUpOSVersion.h"
#include "support/spooler/PrinterInfoTest.h"
#include "vrl/spooler/Spooler.h"

#include <string>
#include <thread>

namespace {

using PrinterInfoCacheTest = PrinterInfoTest;

std::wstring Widened(const std::string& text)
{
    return {text.begin(), text.end()};
}

// Age.

TEST_F(PrinterInfoCacheTest, SecondSnapshotWithinASecondAsksNothing)
{
    const PrinterInfo first = Snapshot();
    ::SpoolerClearLog();
    ::SpoolerSetPrinterAttributes(printerName, 0);
    tick = startTick + 1000;
    const PrinterInfo second = Snapshot();
    EXPECT_EQ(::SpoolerLogLength(), 0u);
    EXPECT_EQ(second.GetAttributes(), first.GetAttributes());
    EXPECT_EQ(second.GetReadTick(), startTick);
}

TEST_F(PrinterInfoCacheTest, EntryOlderThan1000TicksIsRenewed)
{
    static constexpr struct {
        DWORD readAt;
        DWORD now;
        DWORD reads;
    } rows[] = {
        {5000,       5000,       0},
        {5000,       6000,       0},
        {5000,       6001,       2},
        {5000,       0xFFFFFFFF, 2},
        {5000,       4000,       0}, // the ticks have wrapped
        {0xFFFFFC17, 0xFFFFFFFF, 0}, // the sum is the highest number there is
        {0xFFFFFC17, 5000,       0},
        {0xFFFFFC18, 0xFFFFFC18, 2}, // the sum wraps, and whatever lies before the wrap is above it
        {0xFFFFFC18, 0xFFFFFFFF, 2},
        {0xFFFFFC18, 0,          0},
        {0xFFFFFC18, 1,          2},
        {0xFFFFFFFF, 0xFFFFFFFF, 2},
        {0xFFFFFFFF, 999,        0},
        {0xFFFFFFFF, 1000,       2},
    };
    for (const auto& row : rows) {
        PrinterInfoCache::Instance().Clear();
        tick = row.readAt;
        Snapshot();
        ::SpoolerClearLog();
        tick = row.now;
        Snapshot();
        EXPECT_EQ(Reads(), row.reads) << std::hex << row.readAt << ' ' << row.now;
    }
}

TEST_F(PrinterInfoCacheTest, RenewedEntryIsYoungAgain)
{
    Snapshot();
    LetEntriesGrowOld();
    EXPECT_EQ(Snapshot().GetReadTick(), startTick + 1001);
    ::SpoolerClearLog();
    tick = startTick + 2001;
    Snapshot();
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(PrinterInfoCacheTest, TickIsTheOneAfterTheRead)
{
    SpoolerFailure failure;
    failure.call = SpoolerCall::GetPrinterW;
    failure.nth = 2;
    failure.effect = SpoolerEffect::Run;
    failure.action = [](void*) { tick = startTick + 77; };
    ::SpoolerInject(failure);
    EXPECT_EQ(Snapshot().GetReadTick(), startTick + 77);
}

// Renewal.

TEST_F(PrinterInfoCacheTest, RenewalBringsTheNewFieldsAndKeepsTheFirstDriver)
{
    Snapshot();
    ::SpoolerSetPrinterAttributes(printerName, 0x800);
    SpoolerDriver driver = LabelDriver();
    driver.version = 99;
    driver.dataFile = L"C:\\OTHER.DAT";
    driver.manufacturer = L"Someone Else";
    AddDriver(driver);
    LetEntriesGrowOld();
    ::SpoolerClearLog();
    const PrinterInfo info = Snapshot();
    EXPECT_EQ(info.GetAttributes(), 0x800u);
    EXPECT_EQ(info.GetDriverVersion(), 4u);
    EXPECT_EQ(info.GetDataFile(), "X7DA2001.DAT");
    EXPECT_EQ(info.GetDriverFamily(), "x7d");
    EXPECT_EQ(info.GetManufacturer(), "Label Works");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterDriverW), 0u);
    EXPECT_TRUE(info.IsValid());
}

TEST_F(PrinterInfoCacheTest, EarlierSnapshotIsNotRenewed)
{
    const PrinterInfo earlier = Snapshot();
    ::SpoolerSetPrinterAttributes(printerName, 0x800);
    LetEntriesGrowOld();
    Snapshot();
    EXPECT_EQ(earlier.GetAttributes(), DWORD{PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_SHARED});
}

TEST_F(PrinterInfoCacheTest, RenewalFollowsTheDevMode)
{
    DEVMODEW devMode{};
    devMode.dmSize = sizeof devMode;
    devMode.dmCopies = 3;
    EXPECT_EQ(Snapshot().GetDevMode(), nullptr);
    ::SpoolerSetPrinterDevMode(printerName, &devMode);
    LetEntriesGrowOld();
    const PrinterInfo withDevMode = Snapshot();
    ::SpoolerSetPrinterDevMode(printerName, nullptr);
    LetEntriesGrowOld();
    EXPECT_EQ(Snapshot().GetDevMode(), nullptr);
    ASSERT_NE(withDevMode.GetDevMode(), nullptr);
    EXPECT_EQ(withDevMode.GetDevMode()->dmCopies, 3);
}

TEST_F(PrinterInfoCacheTest, FailedOpenLeavesTheEntryForTheNextSnapshotToTryAgain)
{
    const PrinterInfo before = Snapshot();
    LetEntriesGrowOld();
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED);
    const PrinterInfo info = Snapshot();
    EXPECT_EQ(info.GetComment(), "Shipping labels");
    EXPECT_EQ(info.GetReadTick(), startTick);
    EXPECT_FALSE(info.IsRemote());
    EXPECT_EQ(Snapshot().GetReadTick(), startTick + 1001);
}

TEST_F(PrinterInfoCacheTest, FailedReadLeavesTheEntryForTheNextSnapshotToTryAgain)
{
    Snapshot();
    LetEntriesGrowOld();
    Inject(SpoolerCall::GetPrinterW, 2, SpoolerEffect::Fail);
    const PrinterInfo info = Snapshot();
    EXPECT_EQ(info.GetComment(), "Shipping labels");
    EXPECT_EQ(info.GetReadTick(), startTick);
    EXPECT_EQ(Snapshot().GetReadTick(), startTick + 1001);
}

TEST_F(PrinterInfoCacheTest, LocalPrinterCountsAsRemoteAfterAFailedRead)
{
    EXPECT_FALSE(Snapshot().IsRemote());
    LetEntriesGrowOld();
    Inject(SpoolerCall::GetPrinterW, 2, SpoolerEffect::Fail);
    const PrinterInfo info = Snapshot();
    EXPECT_TRUE(info.IsRemote());
    EXPECT_EQ(info.GetServerName(), ComputerName());
    EXPECT_FALSE(Snapshot().IsRemote());
}

TEST_F(PrinterInfoCacheTest, EntryThatWasNeverReadIsTriedByEverySnapshot)
{
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED);
    EXPECT_EQ(Snapshot().GetReadTick(), 0u);
    EXPECT_EQ(Snapshot().GetComment(), "Shipping labels");
}

TEST_F(PrinterInfoCacheTest, PrinterThatComesAfterItsFirstSnapshotNeverGetsItsDriver)
{
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED);
    Snapshot();
    const PrinterInfo info = Snapshot();
    EXPECT_EQ(info.GetDriverName(), "Label Driver");
    EXPECT_EQ(info.GetDriverVersion(), 0u);
    EXPECT_TRUE(info.GetDataFile().IsEmpty());
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterDriverW), 0u);
}

TEST_F(PrinterInfoCacheTest, InTheFirstSecondOfTheSystemAFailedEntryCountsAsYoung)
{
    tick = 10;
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED);
    Snapshot();
    tick = 1000;
    EXPECT_EQ(Snapshot().GetReadTick(), 0u);
    tick = 1001;
    EXPECT_EQ(Snapshot().GetReadTick(), 1001u);
}

// Names.

TEST_F(PrinterInfoCacheTest, EntryBelongsToTheNameThatWasAskedFor)
{
    const PrinterInfo byShare = Snapshot(L"LABELS");
    EXPECT_EQ(byShare.GetPrinterName(), "Label");
    ::SpoolerClearLog();
    EXPECT_EQ(Snapshot(L"LABELS").GetPrinterName(), "Label");
    EXPECT_EQ(::SpoolerLogLength(), 0u);
    Snapshot(L"Label");
    EXPECT_EQ(Reads(), 2u);
}

TEST_F(PrinterInfoCacheTest, RenewalOpensThePrinterByTheNameThatTheSpoolerGave)
{
    Snapshot(L"LABELS");
    LetEntriesGrowOld();
    ::SpoolerClearLog();
    Snapshot(L"LABELS");
    EXPECT_STREQ(SpoolerLog().front().printer, L"Label");
}

TEST_F(PrinterInfoCacheTest, NamesInOtherLettersHaveEntriesOfTheirOwn)
{
    Snapshot(L"Label");
    Snapshot(L"LABEL");
    EXPECT_EQ(Reads(), 4u);
}

TEST_F(PrinterInfoCacheTest, PrintersHaveEntriesOfTheirOwn)
{
    SpoolerPrinter second = LocalPrinter(L"Second");
    second.comment = L"The second";
    AddPrinter(second);
    EXPECT_EQ(Snapshot().GetComment(), "Shipping labels");
    EXPECT_EQ(Snapshot(L"Second").GetComment(), "The second");
    EXPECT_EQ(Snapshot().GetComment(), "Shipping labels");
    EXPECT_EQ(Reads(), 4u);
}

TEST_F(PrinterInfoCacheTest, NamesOfOneHashShareTheEntryOfTheFirst)
{
    const std::wstring first = Widened(KeyWithHash(0x12345678, 'k'));
    const std::wstring second = Widened(KeyWithHash(0x12345678, 'j'));
    AddPrinter(LocalPrinter(first.c_str()));
    AddPrinter(LocalPrinter(second.c_str()));
    Snapshot(first.c_str());
    EXPECT_EQ(Snapshot(second.c_str()).GetPrinterName(), first.c_str());
    EXPECT_EQ(Reads(), 2u);
}

TEST_F(PrinterInfoCacheTest, NameThatTheMapNeverFindsIsReadEachTime)
{
    const std::wstring name = Widened(KeyWithHash(0xFFFFFFFF));
    AddPrinter(LocalPrinter(name.c_str()));
    for (DWORD reads = 2; reads <= 6; reads += 2) {
        EXPECT_EQ(Snapshot(name.c_str()).GetComment(), "Shipping labels");
        EXPECT_EQ(Reads(), reads);
    }
}

// The entries.

TEST_F(PrinterInfoCacheTest, EndsWithAllItsEntries)
{
    const std::wstring first = Widened(KeyWithHash(0x12345678, 'k'));
    const std::wstring second = Widened(KeyWithHash(0x12345678, 'j'));
    AddPrinter(LocalPrinter(first.c_str()));
    AddPrinter(LocalPrinter(second.c_str()));
    PrinterInfo infos[] = {Snapshot(), Snapshot(first.c_str()), Snapshot(second.c_str()), Snapshot(L"None")};
    const long before = LiveAllocations();
    {
        PrinterInfoCache cache;
        for (PrinterInfo& info : infos) cache.Fill(info);
        EXPECT_GT(LiveAllocations(), before);
    }
    EXPECT_EQ(LiveAllocations(), before);
}

TEST_F(PrinterInfoCacheTest, ClearedCacheReadsAnew)
{
    Snapshot();
    PrinterInfoCache::Instance().Clear();
    SpoolerDriver driver = LabelDriver();
    driver.version = 99;
    AddDriver(driver);
    EXPECT_EQ(Snapshot().GetDriverVersion(), 99u);
    EXPECT_EQ(Snapshot().GetDriverVersion(), 99u);
    EXPECT_EQ(Reads(), 4u);
}

// The lock.

TEST_F(PrinterInfoCacheTest, FailureBelowASnapshotLeavesTheLockAndTheHandleFree)
{
    const MadeUpOSVersion version(5, 0);
    SpoolerSetNumberData(printerName, L"PrinterDriverData", L"TSSessionID", 3);
    Inject(SpoolerCall::GetPrinterW, 1, SpoolerEffect::SucceedEmpty, 2);
    EXPECT_NE(BrokenAssert([] { Snapshot(); }), "");
    EXPECT_EQ(::SpoolerOpenHandles(nullptr), 0u);
    OString comment;
    std::thread([&] { comment = Snapshot().GetComment().wstring(); }).join();
    EXPECT_EQ(comment, "Shipping labels");
}

TEST_F(PrinterInfoCacheTest, SlowPrinterHoldsUpTheSnapshotsOfOthers)
{
    AddPrinter(LocalPrinter(L"Second"));
    const OWaitHandle entered(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const OWaitHandle release(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    SpoolerFailure hold;
    hold.call = SpoolerCall::GetPrinterW;
    hold.effect = SpoolerEffect::Hold;
    hold.printer = printerName;
    hold.entered = entered.Get();
    hold.release = release.Get();
    ::SpoolerInject(hold);
    std::thread slow([] { Snapshot(); });
    EXPECT_EQ(::WaitForSingleObject(entered.Get(), 30000), WAIT_OBJECT_0);

    const OWaitHandle finished(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    std::thread other([&] {
        Snapshot(L"Second");
        ::SetEvent(finished.Get());
    });
    EXPECT_EQ(::WaitForSingleObject(finished.Get(), 300), DWORD{WAIT_TIMEOUT});
    ::SetEvent(release.Get());
    EXPECT_EQ(::WaitForSingleObject(finished.Get(), 30000), WAIT_OBJECT_0);
    slow.join();
    other.join();
}

/// One thread's share of snapshots of three printers; counts those that tell something else than they should.
int WrongSnapshots(int rounds)
{
    static constexpr struct {
        const wchar_t* name;
        const char* comment;
    } printers[] = {
        {L"Label",  "Shipping labels"},
        {L"Second", "The second"     },
        {L"None",   ""               },
    };
    int wrong = 0;
    for (int round = 0; round < rounds; ++round) {
        for (const auto& printer : printers) {
            PrinterInfo info{OString(printer.name)};
            PrinterInfo copy(info);
            wrong += info.GetPrinterName() != printer.name;
            wrong += copy.GetComment() != printer.comment;
            wrong += !(copy.GetDataFile() + L'.').Match(OString("*."));
            copy = info;
            wrong += copy.GetDriverFamily() != info.GetDriverFamily();
        }
    }
    return wrong;
}

TEST_F(PrinterInfoCacheTest, ManyThreadsTakeSnapshotsAtOnce)
{
    constexpr int threadCount = 8;
    constexpr int rounds = 100;
    SpoolerPrinter second = LocalPrinter(L"Second");
    second.comment = L"The second";
    AddPrinter(second);
    SetTickCountSource([] { return tick.fetch_add(100); }); // entries grow old all the time

    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) threads.emplace_back([&] { wrong += WrongSnapshots(rounds); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(Reads(), 4u);
    EXPECT_LT(Reads(), 2u * 2 * threadCount * rounds);
}

} // namespace
