// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

#include <cstring>

namespace {

using GetPrinterTest = SimulatorTest;

TEST_F(GetPrinterTest, Level2TellsAllFields)
{
    const DEVMODEW devMode = LabelDevMode();
    SpoolerAddPrinter({.printerName = L"Label",
                       .serverName = L"\\\\HOST",
                       .shareName = L"LBL",
                       .portName = L"NET1",
                       .driverName = L"Driver",
                       .comment = L"of the depot",
                       .location = L"gate 3",
                       .devMode = &devMode,
                       .sepFile = L"sep.txt",
                       .printProcessor = L"proc",
                       .datatype = L"TEXT",
                       .parameters = L"p=1",
                       .attributes = PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_ENABLE_BIDI,
                       .priority = 9,
                       .defaultPriority = 7,
                       .startTime = 60,
                       .untilTime = 120,
                       .status = PRINTER_STATUS_PAPER_OUT,
                       .averagePpm = 30});
    QueueJob(L"Label");
    const auto info = ReadPrinter<PRINTER_INFO_2W>(Open(L"Label"), 2);
    EXPECT_EQ(Text(info->pServerName), L"\\\\HOST");
    EXPECT_EQ(Text(info->pPrinterName), L"Label");
    EXPECT_EQ(Text(info->pShareName), L"LBL");
    EXPECT_EQ(Text(info->pPortName), L"NET1");
    EXPECT_EQ(Text(info->pDriverName), L"Driver");
    EXPECT_EQ(Text(info->pComment), L"of the depot");
    EXPECT_EQ(Text(info->pLocation), L"gate 3");
    EXPECT_EQ(Text(info->pSepFile), L"sep.txt");
    EXPECT_EQ(Text(info->pPrintProcessor), L"proc");
    EXPECT_EQ(Text(info->pDatatype), L"TEXT");
    EXPECT_EQ(Text(info->pParameters), L"p=1");
    EXPECT_EQ(info->Attributes, DWORD{PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_ENABLE_BIDI});
    EXPECT_EQ(info->Priority, 9u);
    EXPECT_EQ(info->DefaultPriority, 7u);
    EXPECT_EQ(info->StartTime, 60u);
    EXPECT_EQ(info->UntilTime, 120u);
    EXPECT_EQ(info->Status, DWORD{PRINTER_STATUS_PAPER_OUT});
    EXPECT_EQ(info->cJobs, 1u);
    EXPECT_EQ(info->AveragePPM, 30u);
    EXPECT_EQ(std::memcmp(info->pDevMode, &devMode, sizeof devMode), 0);
}

TEST_F(GetPrinterTest, TheDriversPrivatePartComesWithTheDeviceMode)
{
    struct {
        DEVMODEW common;
        char priv[4];
    } devMode = {
        LabelDevMode(), {'w', 'x', 'y', 'z'}
    };
    devMode.common.dmDriverExtra = sizeof devMode.priv;
    SpoolerAddPrinter({.printerName = L"Label", .devMode = &devMode.common});
    const auto info = ReadPrinter<PRINTER_INFO_2W>(Open(L"Label"), 2);
    EXPECT_EQ(std::memcmp(info->pDevMode, &devMode, devMode.common.dmSize + sizeof devMode.priv), 0);
}

TEST_F(GetPrinterTest, NullAndEmptyTextsStayApart)
{
    SpoolerAddPrinter({.printerName = L"Label", .comment = L"", .location = nullptr});
    const auto info = ReadPrinter<PRINTER_INFO_2W>(Open(L"Label"), 2);
    EXPECT_EQ(Text(info->pComment), L"");
    EXPECT_EQ(info->pLocation, nullptr);
    EXPECT_EQ(info->pServerName, nullptr);
    EXPECT_EQ(info->pDevMode, nullptr);
}

TEST_F(GetPrinterTest, Level1DescribesThePrinter)
{
    SpoolerAddPrinter(
        {.printerName = L"Label", .driverName = L"Driver", .comment = L"of the depot", .location = L"gate 3"});
    const auto info = ReadPrinter<PRINTER_INFO_1W>(Open(L"Label"), 1);
    EXPECT_EQ(info->Flags, DWORD{PRINTER_ENUM_ICON8});
    EXPECT_EQ(Text(info->pDescription), L"Label,Driver,gate 3");
    EXPECT_EQ(Text(info->pName), L"Label");
    EXPECT_EQ(Text(info->pComment), L"of the depot");
}

TEST_F(GetPrinterTest, Level4TellsNameServerAndAttributes)
{
    SpoolerAddPrinter({.printerName = L"\\\\HOST\\LABEL",
                       .serverName = L"\\\\HOST",
                       .attributes = PRINTER_ATTRIBUTE_NETWORK | PRINTER_ATTRIBUTE_ENABLE_BIDI});
    const auto info = ReadPrinter<PRINTER_INFO_4W>(Open(L"\\\\HOST\\LABEL"), 4);
    EXPECT_EQ(Text(info->pPrinterName), L"\\\\HOST\\LABEL");
    EXPECT_EQ(Text(info->pServerName), L"\\\\HOST");
    EXPECT_EQ(info->Attributes, DWORD{PRINTER_ATTRIBUTE_NETWORK | PRINTER_ATTRIBUTE_ENABLE_BIDI});
}

TEST_F(GetPrinterTest, Level5TellsPortAndTimeouts)
{
    SpoolerAddPrinter({.printerName = L"Label",
                       .portName = L"NET1",
                       .deviceNotSelectedTimeout = 1000,
                       .transmissionRetryTimeout = 2000});
    const auto info = ReadPrinter<PRINTER_INFO_5W>(Open(L"Label"), 5);
    EXPECT_EQ(Text(info->pPrinterName), L"Label");
    EXPECT_EQ(Text(info->pPortName), L"NET1");
    EXPECT_EQ(info->DeviceNotSelectedTimeout, 1000u);
    EXPECT_EQ(info->TransmissionRetryTimeout, 2000u);
}

TEST_F(GetPrinterTest, Level6TellsTheStatusWord)
{
    SpoolerAddPrinter({.printerName = L"Label", .status = PRINTER_STATUS_DOOR_OPEN});
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_6>(Open(L"Label"), 6)->dwStatus, DWORD{PRINTER_STATUS_DOOR_OPEN});
}

TEST_F(GetPrinterTest, Level7TellsThatNothingIsPublished)
{
    const auto info = ReadPrinter<PRINTER_INFO_7W>(AddAndOpen(L"Label"), 7);
    EXPECT_EQ(info->dwAction, DWORD{DSPRINT_UNPUBLISH});
    EXPECT_EQ(info->pszObjectGUID, nullptr);
}

TEST_F(GetPrinterTest, Levels8And9TellTheDeviceMode)
{
    const DEVMODEW devMode = LabelDevMode();
    SpoolerAddPrinter({.printerName = L"Label", .devMode = &devMode});
    const PrinterHandle printer = Open(L"Label");
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_8W>(printer, 8)->pDevMode->dmCopies, 2);
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_9W>(printer, 9)->pDevMode->dmCopies, 2);
}

TEST_F(GetPrinterTest, ASmallBufferFailsAndTellsTheSizeThatSuffices)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    for (const DWORD level : {1, 2, 3, 4, 5, 6, 7, 8, 9}) {
        DWORD needed = 0;
        EXPECT_FALSE(::GetPrinterW(printer.Get(), level, nullptr, 0, &needed)) << level;
        EXPECT_EQ(::GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER}) << level;
        ASSERT_GT(needed, 0u) << level;
        std::vector<BYTE> buffer(needed);
        EXPECT_FALSE(::GetPrinterW(printer.Get(), level, buffer.data(), needed - 1, &needed)) << level;
        EXPECT_EQ(::GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER}) << level;
        EXPECT_TRUE(::GetPrinterW(printer.Get(), level, buffer.data(), needed, &needed)) << level;
        EXPECT_EQ(needed, buffer.size()) << level;
    }
}

TEST_F(GetPrinterTest, WritesNothingBehindTheNeededSize)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    DWORD needed = 0;
    ::GetPrinterW(printer.Get(), 2, nullptr, 0, &needed);
    std::vector<BYTE> buffer(needed + 16, 0xA5);
    EXPECT_TRUE(::GetPrinterW(printer.Get(), 2, buffer.data(), needed + 16, &needed));
    EXPECT_THAT(std::vector<BYTE>(buffer.end() - 16, buffer.end()), ::testing::Each(0xA5));
}

TEST_F(GetPrinterTest, AllTextsLieInTheCallersBuffer)
{
    const auto info = ReadPrinter<PRINTER_INFO_2W>(AddAndOpen(L"Label"), 2);
    const auto* const begin = reinterpret_cast<const wchar_t*>(info.bytes.data());
    const auto* const end = reinterpret_cast<const wchar_t*>(info.bytes.data() + info.bytes.size());
    for (const wchar_t* text : {info->pPrinterName, info->pShareName, info->pPortName, info->pDriverName,
                                info->pComment, info->pLocation, info->pDatatype}) {
        EXPECT_GE(text, begin);
        EXPECT_LT(text, end);
    }
}

TEST_F(GetPrinterTest, UnknownLevelsFailWithInvalidLevel)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    for (const DWORD level : {0, 10, 100}) {
        DWORD needed = 0;
        EXPECT_FALSE(::GetPrinterW(printer.Get(), level, nullptr, 0, &needed)) << level;
        EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_LEVEL}) << level;
    }
}

TEST_F(GetPrinterTest, WrongPlacesForTheResultFail)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    DWORD needed = 0;
    EXPECT_FALSE(::GetPrinterW(printer.Get(), 2, nullptr, 10000, &needed));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_USER_BUFFER});
    EXPECT_FALSE(::GetPrinterW(printer.Get(), 2, nullptr, 0, nullptr));
    EXPECT_EQ(::GetLastError(), DWORD{RPC_X_NULL_REF_POINTER});
}

TEST_F(GetPrinterTest, HandlesThatAreNoPrintersFail)
{
    DWORD needed = 0;
    const PrinterHandle server = OpenServer();
    for (HANDLE handle : {HANDLE{nullptr}, INVALID_HANDLE_VALUE, reinterpret_cast<HANDLE>(0x1234), server.Get()}) {
        EXPECT_FALSE(::GetPrinterW(handle, 2, nullptr, 0, &needed));
        EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    }
}

TEST_F(GetPrinterTest, ARemovedPrinterFailsWithPrinterDeleted)
{
    const PrinterHandle printer = AddAndOpen(L"Label");
    SpoolerRemovePrinter(L"Label");
    DWORD needed = 0;
    EXPECT_FALSE(::GetPrinterW(printer.Get(), 2, nullptr, 0, &needed));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_PRINTER_DELETED});
}

TEST_F(GetPrinterTest, TheSecurityDescriptorIsForThoseWhoMayReadIt)
{
    SECURITY_DESCRIPTOR absolute = {};
    ::InitializeSecurityDescriptor(&absolute, SECURITY_DESCRIPTOR_REVISION);
    BYTE descriptor[64] = {};
    DWORD size = sizeof descriptor;
    ASSERT_TRUE(::MakeSelfRelativeSD(&absolute, descriptor, &size));
    SpoolerAddPrinter({.printerName = L"Label", .securityDescriptor = descriptor, .securityDescriptorBytes = size});

    const auto forReader = ReadPrinter<PRINTER_INFO_2W>(Open(L"Label", PRINTER_READ), 2);
    EXPECT_TRUE(::IsValidSecurityDescriptor(forReader->pSecurityDescriptor));
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_2W>(Open(L"Label", PRINTER_ACCESS_USE), 2)->pSecurityDescriptor, nullptr);
    EXPECT_NE(ReadPrinter<PRINTER_INFO_3>(Open(L"Label", PRINTER_READ), 3)->pSecurityDescriptor, nullptr);
}

} // namespace
