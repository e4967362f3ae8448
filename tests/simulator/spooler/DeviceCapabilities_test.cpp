// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

namespace {

using DeviceCapabilitiesTest = SimulatorTest;

int Ask(WORD capability, void* output = nullptr, const DEVMODEW* devMode = nullptr)
{
    return ::DeviceCapabilitiesW(L"Label", L"LPT1:", capability, static_cast<wchar_t*>(output), devMode);
}

TEST_F(DeviceCapabilitiesTest, AnswersWhatWasSet)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    SpoolerSetCapability(L"Label", DC_COPIES, 999, nullptr, 0);
    SpoolerSetCapability(L"Label", DC_COLLATE, 0, nullptr, 0);
    EXPECT_EQ(Ask(DC_COPIES), 999);
    EXPECT_EQ(Ask(DC_COLLATE), 0);
}

TEST_F(DeviceCapabilitiesTest, WhatWasNotSetIsMinusOne)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    EXPECT_EQ(Ask(DC_STAPLE), -1);
    SpoolerSetCapability(L"Label", DC_STAPLE, 1, nullptr, 0);
    SpoolerClearCapability(L"Label", DC_STAPLE);
    EXPECT_EQ(Ask(DC_STAPLE), -1);
}

TEST_F(DeviceCapabilitiesTest, AnUnknownDeviceIsMinusOne)
{
    EXPECT_EQ(Ask(DC_COPIES), -1);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(::DeviceCapabilitiesW(nullptr, nullptr, DC_COPIES, nullptr, nullptr), -1);
}

TEST_F(DeviceCapabilitiesTest, CopiesOutAnArrayIfThereIsABuffer)
{
    const WORD bins[] = {1, 7};
    SpoolerAddPrinter({.printerName = L"Label"});
    SpoolerSetCapability(L"Label", DC_BINS, 2, bins, sizeof bins);
    WORD read[3] = {0, 0, 0xA5A5};
    EXPECT_EQ(Ask(DC_BINS), 2);
    EXPECT_EQ(Ask(DC_BINS, read), 2);
    EXPECT_EQ(read[0], 1);
    EXPECT_EQ(read[1], 7);
    EXPECT_EQ(read[2], 0xA5A5);
}

TEST_F(DeviceCapabilitiesTest, DeviceModeFieldsComeFromTheGivenOrThePrintersOwn)
{
    DEVMODEW devMode = LabelDevMode();
    devMode.dmDriverVersion = 5;
    SpoolerAddPrinter({.printerName = L"Label", .devMode = &devMode});
    EXPECT_EQ(Ask(DC_FIELDS), static_cast<int>(devMode.dmFields));
    EXPECT_EQ(Ask(DC_SIZE), static_cast<int>(sizeof devMode));
    EXPECT_EQ(Ask(DC_EXTRA), 0);
    EXPECT_EQ(Ask(DC_VERSION), DM_SPECVERSION);
    EXPECT_EQ(Ask(DC_DRIVER), 5);
    devMode.dmDriverVersion = 6;
    EXPECT_EQ(Ask(DC_DRIVER, nullptr, &devMode), 6);
}

TEST_F(DeviceCapabilitiesTest, WithoutADeviceModeItsFieldsAreMinusOne)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    EXPECT_EQ(Ask(DC_FIELDS), -1);
}

} // namespace
