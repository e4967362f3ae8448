// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

namespace {

using EnumPortsTest = SimulatorTest;

TEST_F(EnumPortsTest, Level2TellsAllFields)
{
    SpoolerAddPort(
        {.name = L"NET1", .monitorName = L"Net Monitor", .description = L"a net port", .type = PORT_TYPE_WRITE});
    SpoolerAddPort({.name = L"LPT1:"});
    const auto ports = ReadPorts<PORT_INFO_2W>(2);
    ASSERT_EQ(ports.count, 2u);
    EXPECT_EQ(Text(ports[0].pPortName), L"NET1");
    EXPECT_EQ(Text(ports[0].pMonitorName), L"Net Monitor");
    EXPECT_EQ(Text(ports[0].pDescription), L"a net port");
    EXPECT_EQ(ports[0].fPortType, DWORD{PORT_TYPE_WRITE});
    EXPECT_EQ(Text(ports[1].pPortName), L"LPT1:");
    EXPECT_EQ(Text(ports[1].pMonitorName), L"Local Port");
}

TEST_F(EnumPortsTest, Level1TellsNames)
{
    SpoolerAddPort({.name = L"NET1"});
    EXPECT_EQ(Text(ReadPorts<PORT_INFO_1W>(1)->pName), L"NET1");
}

TEST_F(EnumPortsTest, SucceedsWithoutPorts)
{
    const auto ports = ReadPorts<PORT_INFO_2W>(2);
    EXPECT_TRUE(ports.sized);
    EXPECT_EQ(ports.count, 0u);
}

TEST_F(EnumPortsTest, WithoutABufferFailsWithInsufficientBuffer)
{
    SpoolerAddPort({.name = L"NET1"});
    const auto ports = ReadPorts<PORT_INFO_2W>(2);
    EXPECT_FALSE(ports.sized);
    EXPECT_EQ(ports.error, DWORD{ERROR_INSUFFICIENT_BUFFER});
}

TEST_F(EnumPortsTest, OtherLevelsAndServersFail)
{
    DWORD needed = 0;
    DWORD returned = 0;
    for (const DWORD level : {0, 3}) {
        EXPECT_FALSE(::EnumPortsW(nullptr, level, nullptr, 0, &needed, &returned));
        EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_LEVEL});
    }
    EXPECT_FALSE(::EnumPortsW(const_cast<wchar_t*>(L"\\\\ELSEWHERE"), 2, nullptr, 0, &needed, &returned));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_NAME});
}

TEST_F(EnumPortsTest, TheServersOwnNameIsTaken)
{
    SpoolerSetIdentity(nullptr, L"DEPOT");
    DWORD needed = 0;
    DWORD returned = 0;
    EXPECT_TRUE(::EnumPortsW(const_cast<wchar_t*>(L"\\\\DEPOT"), 2, nullptr, 0, &needed, &returned));
}

TEST_F(EnumPortsTest, APrinterBringsItsPorts)
{
    SpoolerAddPrinter({.printerName = L"Pool", .portName = L"NET1, NET2"});
    const auto ports = ReadPorts<PORT_INFO_1W>(1);
    ASSERT_EQ(ports.count, 2u);
    EXPECT_EQ(Text(ports[0].pName), L"NET1");
    EXPECT_EQ(Text(ports[1].pName), L"NET2");
}

TEST_F(EnumPortsTest, ARemovedPortIsGone)
{
    SpoolerAddPrinter({.printerName = L"Label", .portName = L"NET1"});
    EXPECT_EQ(SpoolerRemovePort(L"net1"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ReadPorts<PORT_INFO_1W>(1).count, 0u);
    EXPECT_EQ(SpoolerRemovePort(L"net1"), DWORD{ERROR_UNKNOWN_PORT});
}

TEST_F(EnumPortsTest, APortOfAKnownNameReplacesTheOldInItsPlace)
{
    SpoolerAddPort({.name = L"NET1"});
    SpoolerAddPort({.name = L"NET2"});
    SpoolerAddPort({.name = L"net1", .monitorName = L"New"});
    const auto ports = ReadPorts<PORT_INFO_2W>(2);
    ASSERT_EQ(ports.count, 2u);
    EXPECT_EQ(Text(ports[0].pPortName), L"net1");
    EXPECT_EQ(Text(ports[0].pMonitorName), L"New");
}

} // namespace
