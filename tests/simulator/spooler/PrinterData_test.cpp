// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

namespace {

class PrinterDataTest : public SimulatorTest {
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

    DWORD Get(const wchar_t* key, const wchar_t* name, DWORD size = 100)
    {
        return ::GetPrinterDataExW(printer.Get(), key, name, &type, size ? data : nullptr, size, &needed);
    }

    DWORD GetPlain(const wchar_t* name)
    {
        return ::GetPrinterDataW(printer.Get(), const_cast<wchar_t*>(name), &type, data, sizeof data, &needed);
    }

    DWORD Set(const wchar_t* key, const wchar_t* name, DWORD valueType, std::vector<BYTE> bytes)
    {
        return ::SetPrinterDataExW(printer.Get(), key, name, valueType, bytes.data(), static_cast<DWORD>(bytes.size()));
    }

    DWORD ChangeId()
    {
        DWORD id = 0;
        EXPECT_EQ(::GetPrinterDataW(printer.Get(), const_cast<wchar_t*>(L"ChangeID"), nullptr,
                                    reinterpret_cast<BYTE*>(&id), sizeof id, &needed),
                  DWORD{ERROR_SUCCESS});
        return id;
    }

    PrinterHandle printer;
    DWORD type = 0;
    DWORD needed = 0;
    BYTE data[100] = {};
};

TEST_F(PrinterDataTest, AStoredValueIsReadBackWithItsType)
{
    EXPECT_EQ(Set(L"Gantry", L"Odometer Pages", REG_DWORD, {1, 2, 3, 4}), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"Gantry", L"Odometer Pages"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(type, DWORD{REG_DWORD});
    EXPECT_EQ(needed, 4u);
    EXPECT_EQ(std::vector<BYTE>(data, data + 4), (std::vector<BYTE>{1, 2, 3, 4}));
}

TEST_F(PrinterDataTest, KeysAndNamesIgnoreCase)
{
    Set(L"Gantry", L"Odometer Pages", REG_DWORD, {1, 2, 3, 4});
    EXPECT_EQ(Get(L"GANTRY", L"odometer pages"), DWORD{ERROR_SUCCESS});
}

TEST_F(PrinterDataTest, AKeyMayBeAPath)
{
    Set(L"Gantry\\Counters", L"Pages", REG_DWORD, {1, 2, 3, 4});
    EXPECT_EQ(Get(L"Gantry\\Counters", L"Pages"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"Gantry", L"Pages"), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_F(PrinterDataTest, ASecondStoreReplacesTypeAndBytes)
{
    Set(L"Gantry", L"Value", REG_DWORD, {1, 2, 3, 4});
    Set(L"Gantry", L"Value", REG_BINARY, {9});
    EXPECT_EQ(Get(L"Gantry", L"Value"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(type, DWORD{REG_BINARY});
    EXPECT_EQ(needed, 1u);
}

TEST_F(PrinterDataTest, ThePlainCallsReadAndWriteTheDriversKey)
{
    EXPECT_EQ(::SetPrinterDataW(printer.Get(), const_cast<wchar_t*>(L"Plain"), REG_BINARY, data, 3),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Get(L"PrinterDriverData", L"Plain"), DWORD{ERROR_SUCCESS});
    Set(L"PrinterDriverData", L"Ex", REG_BINARY, {1});
    EXPECT_EQ(GetPlain(L"Ex"), DWORD{ERROR_SUCCESS});
}

TEST_F(PrinterDataTest, UnknownValuesFailWithFileNotFound)
{
    EXPECT_EQ(Get(L"Gantry", L"Nothing"), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(GetPlain(L"Nothing"), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_F(PrinterDataTest, ASmallBufferFailsWithMoreDataAndTellsTheSize)
{
    Set(L"Gantry", L"Value", REG_BINARY, {1, 2, 3, 4, 5});
    for (const DWORD size : {0, 4}) {
        needed = 0;
        EXPECT_EQ(Get(L"Gantry", L"Value", size), DWORD{ERROR_MORE_DATA});
        EXPECT_EQ(needed, 5u);
        EXPECT_EQ(data[0], 0);
    }
    EXPECT_EQ(Get(L"Gantry", L"Value", 5), DWORD{ERROR_SUCCESS});
}

TEST_F(PrinterDataTest, AnEmptyValueNeedsNoBuffer)
{
    Set(L"Gantry", L"Empty", REG_BINARY, {});
    EXPECT_EQ(Get(L"Gantry", L"Empty", 0), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(needed, 0u);
}

TEST_F(PrinterDataTest, TheTypeNeedNotBeAsked)
{
    Set(L"Gantry", L"Value", REG_BINARY, {1});
    EXPECT_EQ(::GetPrinterDataExW(printer.Get(), L"Gantry", L"Value", nullptr, data, sizeof data, &needed),
              DWORD{ERROR_SUCCESS});
}

TEST_F(PrinterDataTest, WithoutKeyOrNameFailsWithInvalidParameter)
{
    for (const wchar_t* key : {static_cast<const wchar_t*>(nullptr), L""}) {
        EXPECT_EQ(Get(key, L"Value"), DWORD{ERROR_INVALID_PARAMETER});
        EXPECT_EQ(Set(key, L"Value", REG_BINARY, {1}), DWORD{ERROR_INVALID_PARAMETER});
    }
    EXPECT_EQ(Get(L"Gantry", nullptr), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(Set(L"Gantry", nullptr, REG_BINARY, {1}), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(PrinterDataTest, MissingPlacesForTheResultFail)
{
    Set(L"Gantry", L"Value", REG_BINARY, {1});
    EXPECT_EQ(::GetPrinterDataExW(printer.Get(), L"Gantry", L"Value", &type, nullptr, 10, &needed),
              DWORD{RPC_X_NULL_REF_POINTER});
    EXPECT_EQ(::GetPrinterDataExW(printer.Get(), L"Gantry", L"Value", &type, data, 10, nullptr),
              DWORD{RPC_X_NULL_REF_POINTER});
    EXPECT_EQ(::SetPrinterDataExW(printer.Get(), L"Gantry", L"Value", REG_BINARY, nullptr, 1),
              DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(PrinterDataTest, AHandleForUseReadsButDoesNotWrite)
{
    Set(L"Gantry", L"Value", REG_BINARY, {1});
    printer = Open(L"Label", PRINTER_ACCESS_USE);
    EXPECT_EQ(Get(L"Gantry", L"Value"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Set(L"Gantry", L"Value", REG_BINARY, {2}), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(::SetPrinterDataW(printer.Get(), const_cast<wchar_t*>(L"Plain"), REG_BINARY, data, 1),
              DWORD{ERROR_ACCESS_DENIED});
}

TEST_F(PrinterDataTest, TheDirectorysKeysTakeFewTypes)
{
    static const struct {
        DWORD type;
        std::vector<BYTE> bytes;
        DWORD result;
    } rows[] = {
        {REG_SZ,       {0, 0},       ERROR_SUCCESS          },
        {REG_MULTI_SZ, {0, 0, 0, 0}, ERROR_SUCCESS          },
        {REG_DWORD,    {1, 0, 0, 0}, ERROR_SUCCESS          },
        {REG_BINARY,   {1},          ERROR_SUCCESS          },
        {REG_BINARY,   {1, 2},       ERROR_INVALID_PARAMETER},
        {REG_QWORD,    {1},          ERROR_INVALID_PARAMETER},
    };
    for (const wchar_t* key : {L"DsDriver", L"DsSpooler", L"dsuser"}) {
        for (const auto& row : rows) EXPECT_EQ(Set(key, L"Value", row.type, row.bytes), row.result) << key << row.type;
    }
}

TEST_F(PrinterDataTest, TheChangeIdChangesWithThePrinter)
{
    const DWORD before = ChangeId();
    EXPECT_EQ(ChangeId(), before);
    Set(L"Gantry", L"Value", REG_BINARY, {1});
    const DWORD afterData = ChangeId();
    EXPECT_NE(afterData, before);
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE);
    EXPECT_NE(ChangeId(), afterData);
}

TEST_F(PrinterDataTest, TheChangeIdIsReadOnly)
{
    EXPECT_EQ(Set(L"PrinterDriverData", L"ChangeID", REG_DWORD, {1, 0, 0, 0}), DWORD{ERROR_INVALID_PARAMETER});
}

class DirectoryKeyTest : public PrinterDataTest {
protected:
    /// The text of that name under the directory's key; the error if there is none.
    std::wstring Mirrored(const wchar_t* name)
    {
        const DWORD error = Get(L"DsSpooler", name);
        if (error) return std::to_wstring(error);
        EXPECT_EQ(type, DWORD{REG_SZ});
        return reinterpret_cast<const wchar_t*>(data);
    }

    /// Reads level 2, lets `change` work on it, and writes it back.
    template <typename Change>
    void SetPrinter2(Change change)
    {
        auto info = ReadPrinter<PRINTER_INFO_2W>(printer, 2);
        change(*info.Get());
        EXPECT_EQ(ErrorOf(::SetPrinterW(printer.Get(), 2, info.Data(), 0)), DWORD{ERROR_SUCCESS});
    }
};

TEST_F(DirectoryKeyTest, MirrorsThePrinter)
{
    SpoolerAddPrinter({.printerName = L"Gate", .driverName = L"Driver", .comment = L"Comment", .location = L"Hall"});
    printer = Open(L"Gate");
    EXPECT_EQ(Mirrored(L"printerName"), L"Gate");
    EXPECT_EQ(Mirrored(L"driverName"), L"Driver");
    EXPECT_EQ(Mirrored(L"description"), L"Comment");
    EXPECT_EQ(Mirrored(L"location"), L"Hall");
    EXPECT_EQ(Mirrored(L"printLanguage"), L"2");
}

TEST_F(DirectoryKeyTest, FollowsSetPrinter)
{
    SpoolerAddDriver({.name = L"Other"});
    SetPrinter2([](PRINTER_INFO_2W& info) {
        info.pPrinterName = const_cast<wchar_t*>(L"Renamed");
        info.pDriverName = const_cast<wchar_t*>(L"Other");
        info.pComment = const_cast<wchar_t*>(L"New comment");
        info.pLocation = nullptr;
    });
    EXPECT_EQ(Mirrored(L"printerName"), L"Renamed");
    EXPECT_EQ(Mirrored(L"driverName"), L"Other");
    EXPECT_EQ(Mirrored(L"description"), L"New comment");
    EXPECT_EQ(Mirrored(L"location"), L"");
}

TEST_F(DirectoryKeyTest, FollowsARenameFromOutside)
{
    SpoolerRenamePrinter(L"Label", L"Renamed");
    EXPECT_EQ(Mirrored(L"printerName"), L"Renamed");
}

TEST_F(DirectoryKeyTest, TellsAConnectionWithoutItsServer)
{
    SpoolerAddPrinter({.printerName = L"\\\\HOST\\LABEL", .attributes = PRINTER_ATTRIBUTE_NETWORK});
    printer = Open(L"\\\\HOST\\LABEL");
    EXPECT_EQ(Mirrored(L"printerName"), L"LABEL");
}

TEST_F(DirectoryKeyTest, KeepsWhatWasPutThereUntilTheFieldChanges)
{
    Set(L"DsSpooler", L"description", REG_SZ, {'x', 0, 0, 0});
    SetPrinter2([](PRINTER_INFO_2W& info) { info.pLocation = const_cast<wchar_t*>(L"Hall"); });
    EXPECT_EQ(Mirrored(L"description"), L"x");
    EXPECT_EQ(Mirrored(L"location"), L"Hall");
    SetPrinter2([](PRINTER_INFO_2W& info) { info.pComment = const_cast<wchar_t*>(L"y"); });
    EXPECT_EQ(Mirrored(L"description"), L"y");
}

TEST_F(PrinterDataTest, TheServerTellsPredefinedValuesUnderAnyKey)
{
    SpoolerSetIdentity(nullptr, L"DEPOT");
    printer = OpenServer();
    EXPECT_EQ(GetPlain(SPLREG_ARCHITECTURE), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(type, DWORD{REG_SZ});
    EXPECT_EQ(Text(reinterpret_cast<const wchar_t*>(data)), L"Windows x64");
    EXPECT_EQ(Get(nullptr, SPLREG_MAJOR_VERSION), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(data[0], 3);
    EXPECT_EQ(GetPlain(SPLREG_DNS_MACHINE_NAME), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Text(reinterpret_cast<const wchar_t*>(data)), L"DEPOT");
    EXPECT_EQ(GetPlain(L"Anything"), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(PrinterDataTest, TheServerTellsTheSystemsVersion)
{
    printer = OpenServer();
    OSVERSIONINFOW version = {};
    EXPECT_EQ(::GetPrinterDataW(printer.Get(), const_cast<wchar_t*>(L"OSVersion"), &type,
                                reinterpret_cast<BYTE*>(&version), sizeof version, &needed),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(type, DWORD{REG_BINARY});
    EXPECT_EQ(needed, sizeof version);
    EXPECT_EQ(version.dwOSVersionInfoSize, sizeof version);
    EXPECT_EQ(version.dwMajorVersion, 10u);
    EXPECT_EQ(version.dwPlatformId, DWORD{VER_PLATFORM_WIN32_NT});

    OSVERSIONINFOEXW extended = {};
    EXPECT_EQ(::GetPrinterDataW(printer.Get(), const_cast<wchar_t*>(L"OSVersionEx"), &type,
                                reinterpret_cast<BYTE*>(&extended), sizeof extended, &needed),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(type, DWORD{REG_BINARY});
    EXPECT_EQ(extended.dwOSVersionInfoSize, sizeof extended);
    EXPECT_EQ(extended.dwBuildNumber, version.dwBuildNumber);
    EXPECT_EQ(extended.wProductType, VER_NT_WORKSTATION);
}

TEST_F(PrinterDataTest, TheServerTellsItsNumbers)
{
    printer = OpenServer();
    for (const wchar_t* name :
         {L"W3SvcInstalled", L"PortThreadPriority", L"BeepEnabled", L"EventLog", L"MinorVersion", L"DsPresent"}) {
        EXPECT_EQ(Get(L"any key", name), DWORD{ERROR_SUCCESS}) << ::testing::PrintToString(name);
        EXPECT_EQ(type, DWORD{REG_DWORD});
        EXPECT_EQ(needed, sizeof(DWORD));
    }
}

TEST_F(PrinterDataTest, TheServersValuesCannotBeSet)
{
    printer = OpenServer();
    EXPECT_EQ(Set(nullptr, SPLREG_BEEP_ENABLED, REG_DWORD, {1, 0, 0, 0}), DWORD{ERROR_NOT_SUPPORTED});
}

TEST_F(PrinterDataTest, LeavesTheLastErrorAlone)
{
    ::SetLastError(ERROR_ARENA_TRASHED);
    Get(L"Gantry", L"Nothing");
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_ARENA_TRASHED});
}

TEST_F(PrinterDataTest, AnInvalidHandleIsTheResult)
{
    EXPECT_EQ(::GetPrinterDataExW(nullptr, L"Gantry", L"Value", &type, data, sizeof data, &needed),
              DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(::SetPrinterDataExW(nullptr, L"Gantry", L"Value", REG_BINARY, data, 1), DWORD{ERROR_INVALID_HANDLE});
}

} // namespace
