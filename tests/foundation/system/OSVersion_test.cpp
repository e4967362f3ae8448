// SPDX-License-Identifier: MIT
#include "foundation/system/OSVersion.h"

#include <gtest/gtest.h>

#include "support/MadeUpOSVersion.h"

namespace {

template <typename Version>
Version Sized()
{
    Version version{};
    version.dwOSVersionInfoSize = sizeof version;
    return version;
}

TEST(OSVersion, IsThePlatformsOwnWithoutASource)
{
    auto expected = Sized<OSVERSIONINFOW>();
    ::GetVersionExW(&expected);
    auto version = Sized<OSVERSIONINFOW>();
    ASSERT_TRUE(GetOSVersion(version));
    EXPECT_EQ(version.dwMajorVersion, expected.dwMajorVersion);
    EXPECT_EQ(version.dwBuildNumber, expected.dwBuildNumber);
    EXPECT_EQ(GetOSMetric(SM_CXSCREEN), ::GetSystemMetrics(SM_CXSCREEN));
}

TEST(OSVersion, TheShortRecordHas276Bytes)
{
    EXPECT_EQ(sizeof(OSVERSIONINFOW), 276u);
}

TEST(OSVersion, IsThatOfTheSourceInBothRecords)
{
    MadeUpOSVersion madeUp(5, 0, VER_NT_SERVER);
    madeUp.SetMetric(SM_STARTER, 3);

    auto version = Sized<OSVERSIONINFOW>();
    ASSERT_TRUE(GetOSVersion(version));
    EXPECT_EQ(version.dwMajorVersion, 5u);
    EXPECT_EQ(version.dwPlatformId, DWORD{VER_PLATFORM_WIN32_NT});

    auto extended = Sized<OSVERSIONINFOEXW>();
    ASSERT_TRUE(GetOSVersion(reinterpret_cast<OSVERSIONINFOW&>(extended)));
    EXPECT_EQ(extended.wProductType, VER_NT_SERVER);

    EXPECT_EQ(GetOSMetric(SM_STARTER), 3);
    EXPECT_EQ(GetOSMetric(SM_TABLETPC), 0);
}

TEST(OSVersion, IsFalseIfTheSourceHasNone)
{
    MadeUpOSVersion madeUp(5, 0);
    madeUp.Fail();
    auto version = Sized<OSVERSIONINFOW>();
    EXPECT_FALSE(GetOSVersion(version));
}

TEST(OSVersion, ReplacingTheSourceGivesTheOneBefore)
{
    static const OSVersionSource source{::GetVersionExW, ::GetSystemMetrics};
    EXPECT_EQ(SetOSVersionSource(&source), nullptr);
    EXPECT_EQ(SetOSVersionSource(nullptr), &source);
}

} // namespace
