// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/threads/TickCount.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/spooler/PrinterInfoCache.h"

#include <atomic>

/// A simulated world with one local printer, "Label", whose driver knows level 6, an empty snapshot cache, and ticks
/// that stand still until a test sets them.
class PrinterInfoTest : public SpoolerTest {
protected:
    static constexpr DWORD startTick = 50000;
    static inline std::atomic<DWORD> tick{startTick};

    void SetUp() override
    {
        PrinterInfoCache::Instance().Clear();
        tick = startTick;
        SetTickCountSource([] { return tick.load(); });
        SpoolerTest::SetUp();
    }

    void Furnish() override
    {
        AddDriver(LabelDriver());
        AddPrinter(LocalPrinter());
    }

    void TearDown() override
    {
        SetTickCountSource(nullptr);
        EXPECT_EQ(::SpoolerOpenHandles(nullptr), 0u) << "a snapshot left a handle open";
        PrinterInfoCache::Instance().Clear();
        SpoolerTest::TearDown();
    }

    static SpoolerPrinter LocalPrinter(const wchar_t* name = printerName)
    {
        SpoolerPrinter printer = LabelPrinter();
        printer.printerName = name;
        printer.serverName = nullptr;
        return printer;
    }

    static SpoolerDriver LabelDriver()
    {
        SpoolerDriver driver;
        driver.name = L"Label Driver";
        driver.version = 4;
        driver.environment = L"Windows x64";
        driver.driverPath = L"C:\\spool\\drivers\\LABELDRV.DLL";
        driver.dataFile = L"C:\\spool\\drivers\\X7DA2001.DAT";
        driver.configFile = L"C:\\spool\\drivers\\LABELUI.DLL";
        driver.helpFile = L"C:\\spool\\help\\LABEL.HLP";
        driver.dependentFiles = L"C:\\spool\\A.DLL\0B.DLL\0C:\\C.DAT\0";
        driver.monitorName = L"Label Monitor";
        driver.defaultDataType = L"TEXT";
        driver.manufacturer = L"Label Works";
        driver.hardwareId = L"LABEL7";
        driver.provider = L"Label Group";
        return driver;
    }

    static void AddDriver(const SpoolerDriver& driver) { ASSERT_EQ(::SpoolerAddDriver(driver), 0u); }

    /// A later snapshot renews the entry.
    static void LetEntriesGrowOld() { tick = tick + PrinterInfoCache::maximumAgeMs + 1; }

    static PrinterInfo Snapshot(const wchar_t* name = printerName) { return PrinterInfo(OString(name)); }

    /// The `nth` matching call at that level meets the effect.
    static void Inject(SpoolerCall call, DWORD level, SpoolerEffect effect, DWORD nth = 1)
    {
        SpoolerFailure failure;
        failure.call = call;
        failure.level = level;
        failure.effect = effect;
        failure.error = ERROR_ACCESS_DENIED;
        failure.nth = nth;
        ::SpoolerInject(failure);
    }

    static DWORD Reads() { return ::SpoolerCalls(SpoolerCall::GetPrinterW, 2, nullptr); }

    static OString ComputerName()
    {
        wchar_t name[MAX_COMPUTERNAME_LENGTH + 1];
        DWORD size = std::size(name);
        EXPECT_TRUE(::GetComputerNameW(name, &size));
        return OString(name);
    }
};
