// SPDX-License-Identifier: MIT
#include "recorder/DevModeText.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <cwchar>

namespace {

std::vector<BYTE> BytesOf(const DEVMODEW& devMode)
{
    const auto* const first = reinterpret_cast<const BYTE*>(&devMode);
    return std::vector<BYTE>(first, first + sizeof devMode);
}

DEVMODEW Label()
{
    DEVMODEW devMode = {};
    std::wcscpy(devMode.dmDeviceName, L"Label");
    devMode.dmFields = DM_PAPERLENGTH | DM_COPIES;
    devMode.dmPaperLength = 1500;
    devMode.dmPaperWidth = 1000;
    devMode.dmCopies = 2;
    devMode.dmDriverVersion = 7;
    devMode.dmDriverExtra = 12;
    return devMode;
}

TEST(DevModeText, TellsTheFieldsThatAreSet)
{
    EXPECT_EQ(DevModeText(BytesOf(Label())),
              L"device mode \"Label\", paper length 1500, copies 2, driver version 7, private bytes 12");
}

TEST(DevModeText, TellsTheForm)
{
    DEVMODEW devMode = Label();
    devMode.dmFields = DM_FORMNAME;
    std::wcscpy(devMode.dmFormName, L"4 x 6");
    EXPECT_EQ(DevModeText(BytesOf(devMode)),
              L"device mode \"Label\", form \"4 x 6\", driver version 7, private bytes 12");
}

TEST(DevModeText, ReadsNoNameBeyondItsField)
{
    DEVMODEW devMode = {};
    std::ranges::fill(devMode.dmDeviceName, L'x');
    EXPECT_THAT(DevModeText(BytesOf(devMode)),
                ::testing::StartsWith(L"device mode \"" + std::wstring(CCHDEVICENAME, L'x') + L"\","));
}

TEST(DevModeText, MakesDoWithTheOldestDeviceMode)
{
    std::vector<BYTE> bytes = BytesOf(Label());
    bytes.resize(offsetof(DEVMODEW, dmLogPixels));
    EXPECT_THAT(DevModeText(bytes), ::testing::HasSubstr(L"copies 2"));
    bytes.pop_back();
    EXPECT_EQ(DevModeText(bytes), L"too few bytes for a device mode");
    EXPECT_EQ(DevModeText({}), L"too few bytes for a device mode");
}

} // namespace
