// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

namespace {

class EnumPrintersTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        SpoolerSetIdentity(nullptr, L"DEPOT");
        SpoolerAddPrinter({.printerName = L"Local"});
        SpoolerAddPrinter({.printerName = L"Shared",
                           .shareName = L"S",
                           .attributes = PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_SHARED});
        SpoolerAddPrinter({.printerName = L"\\\\HOST\\Net", .attributes = PRINTER_ATTRIBUTE_NETWORK});
        SpoolerAddPrinter({.printerName = L"\\\\HOST\\NetShared",
                           .attributes = PRINTER_ATTRIBUTE_NETWORK | PRINTER_ATTRIBUTE_SHARED});
        SpoolerAddPrinter({.printerName = L"Both", .attributes = PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_NETWORK});
        SpoolerAddPrinter({.printerName = L"Plain", .attributes = 0});
    }

    static std::vector<std::wstring> Names(DWORD flags, const wchar_t* name = nullptr)
    {
        const auto printers = ReadPrinters<PRINTER_INFO_2W>(flags, 2, name);
        std::vector<std::wstring> names;
        for (DWORD index = 0; index < printers.count; ++index) names.emplace_back(printers[index].pPrinterName);
        return names;
    }

    static DWORD Error(DWORD flags, DWORD level, const wchar_t* name = nullptr)
    {
        DWORD needed = 0;
        DWORD returned = 0;
        return ErrorOf(::EnumPrintersW(flags, const_cast<wchar_t*>(name), level, nullptr, 0, &needed, &returned));
    }
};

using Names = std::vector<std::wstring>;

TEST_F(EnumPrintersTest, LocalListsWhatThisMachineServes)
{
    EXPECT_EQ(Names(PRINTER_ENUM_LOCAL), (::Names{L"Local", L"Shared", L"Both", L"Plain"}));
}

TEST_F(EnumPrintersTest, ConnectionsListsWhatOtherMachinesServe)
{
    EXPECT_EQ(Names(PRINTER_ENUM_CONNECTIONS), (::Names{L"\\\\HOST\\Net", L"\\\\HOST\\NetShared", L"Both"}));
}

TEST_F(EnumPrintersTest, BothFlagsListEachPrinterOnce)
{
    EXPECT_EQ(Names(PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS),
              (::Names{L"Local", L"Shared", L"\\\\HOST\\Net", L"\\\\HOST\\NetShared", L"Both", L"Plain"}));
}

TEST_F(EnumPrintersTest, SharedNarrowsTheOtherFlags)
{
    EXPECT_EQ(Names(PRINTER_ENUM_LOCAL | PRINTER_ENUM_SHARED), (::Names{L"Shared"}));
    EXPECT_EQ(Names(PRINTER_ENUM_CONNECTIONS | PRINTER_ENUM_SHARED), (::Names{L"\\\\HOST\\NetShared"}));
}

TEST_F(EnumPrintersTest, SharedAloneFails)
{
    EXPECT_EQ(Error(PRINTER_ENUM_SHARED, 2), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(EnumPrintersTest, NoFlagsListNothing)
{
    const auto printers = ReadPrinters<PRINTER_INFO_2W>(0, 2);
    EXPECT_TRUE(printers.sized);
    EXPECT_EQ(printers.bytes.size(), 0u);
    EXPECT_EQ(printers.count, 0u);
}

TEST_F(EnumPrintersTest, TheNameOfThisServerListsItsPrintersWithIt)
{
    const ::Names prefixed{L"\\\\DEPOT\\Local", L"\\\\DEPOT\\Shared", L"\\\\DEPOT\\Both", L"\\\\DEPOT\\Plain"};
    EXPECT_EQ(Names(PRINTER_ENUM_NAME, L"\\\\DEPOT"), prefixed);
    EXPECT_EQ(Names(PRINTER_ENUM_NAME | PRINTER_ENUM_LOCAL, L"\\\\depot"), prefixed);
    EXPECT_EQ(Text(ReadPrinters<PRINTER_INFO_2W>(PRINTER_ENUM_NAME, 2, L"\\\\DEPOT")->pServerName), L"\\\\DEPOT");
}

TEST_F(EnumPrintersTest, AnEmptyNameIsThisServer)
{
    EXPECT_EQ(Names(PRINTER_ENUM_NAME, L""), (::Names{L"Local", L"Shared", L"Both", L"Plain"}));
}

TEST_F(EnumPrintersTest, NoNameAtLevel2IsThisServer)
{
    EXPECT_EQ(Names(PRINTER_ENUM_NAME), (::Names{L"Local", L"Shared", L"Both", L"Plain"}));
}

TEST_F(EnumPrintersTest, AnotherServersNameFails)
{
    EXPECT_EQ(Error(PRINTER_ENUM_NAME, 2, L"\\\\ELSEWHERE"), DWORD{ERROR_INVALID_NAME});
}

TEST_F(EnumPrintersTest, WithoutTheNameFlagTheNameIsIgnored)
{
    EXPECT_EQ(Names(PRINTER_ENUM_LOCAL, L"\\\\ELSEWHERE"), (::Names{L"Local", L"Shared", L"Both", L"Plain"}));
}

TEST_F(EnumPrintersTest, NoNameAtLevel1ListsThePrintProviders)
{
    const auto providers = ReadPrinters<PRINTER_INFO_1W>(PRINTER_ENUM_NAME, 1);
    ASSERT_EQ(providers.count, 1u);
    EXPECT_TRUE(providers->Flags & PRINTER_ENUM_CONTAINER);
    const auto local = ReadPrinters<PRINTER_INFO_1W>(PRINTER_ENUM_NAME, 1, providers->pName);
    ASSERT_EQ(local.count, 4u);
    EXPECT_EQ(Text(local->pName), L"Local");
}

TEST_F(EnumPrintersTest, DomainFlagsAreForLevel1AndFindNothing)
{
    for (const DWORD flag : {PRINTER_ENUM_REMOTE, PRINTER_ENUM_NETWORK}) {
        EXPECT_EQ(Error(flag, 2), DWORD{ERROR_INVALID_LEVEL});
        EXPECT_EQ(ReadPrinters<PRINTER_INFO_1W>(flag, 1).count, 0u);
    }
}

TEST_F(EnumPrintersTest, Level4TakesOnlyLocalAndConnections)
{
    EXPECT_EQ(ReadPrinters<PRINTER_INFO_4W>(PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS, 4).count, 6u);
    EXPECT_EQ(Error(PRINTER_ENUM_NAME, 4), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(Error(PRINTER_ENUM_LOCAL | PRINTER_ENUM_SHARED, 4), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(EnumPrintersTest, Level5ListsNamesAndPorts)
{
    const auto printers = ReadPrinters<PRINTER_INFO_5W>(PRINTER_ENUM_LOCAL, 5);
    ASSERT_EQ(printers.count, 4u);
    EXPECT_EQ(Text(printers[1].pPrinterName), L"Shared");
    EXPECT_EQ(Text(printers[1].pPortName), L"LPT1:");
}

TEST_F(EnumPrintersTest, OtherLevelsFail)
{
    for (const DWORD level : {0, 3, 6, 7, 8, 9, 10})
        EXPECT_EQ(Error(PRINTER_ENUM_LOCAL, level), DWORD{ERROR_INVALID_LEVEL}) << level;
}

TEST_F(EnumPrintersTest, GivesNoSecurityDescriptors)
{
    const BYTE descriptor[] = {1, 0, 0, 0};
    SpoolerReset();
    SpoolerAddPrinter({.printerName = L"Label", .securityDescriptor = descriptor, .securityDescriptorBytes = 4});
    EXPECT_EQ(ReadPrinters<PRINTER_INFO_2W>(PRINTER_ENUM_LOCAL, 2)->pSecurityDescriptor, nullptr);
}

TEST_F(EnumPrintersTest, ASmallBufferTellsTheSizeAndNoPrinters)
{
    const auto printers = ReadPrinters<PRINTER_INFO_2W>(PRINTER_ENUM_LOCAL, 2);
    std::vector<BYTE> buffer(printers.bytes.size() - 1);
    DWORD needed = 0;
    DWORD returned = 9;
    EXPECT_FALSE(::EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, buffer.data(), static_cast<DWORD>(buffer.size()),
                                 &needed, &returned));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(needed, printers.bytes.size());
    EXPECT_EQ(returned, 0u);
}

TEST_F(EnumPrintersTest, FindingNothingClearsTheLastError)
{
    SpoolerReset();
    DWORD needed = 9;
    DWORD returned = 9;
    ::SetLastError(ERROR_GEN_FAILURE);
    EXPECT_TRUE(::EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, nullptr, 0, &needed, &returned));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(needed, 0u);
    EXPECT_EQ(returned, 0u);
}

TEST_F(EnumPrintersTest, FindingPrintersLeavesTheLastErrorAsItWas)
{
    std::vector<BYTE> buffer(ReadPrinters<PRINTER_INFO_2W>(PRINTER_ENUM_LOCAL, 2).bytes.size());
    DWORD needed = 0;
    DWORD returned = 0;
    ::SetLastError(ERROR_GEN_FAILURE);
    EXPECT_TRUE(::EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, buffer.data(), static_cast<DWORD>(buffer.size()),
                                &needed, &returned));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_GEN_FAILURE});
}

} // namespace
