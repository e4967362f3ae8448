// SPDX-License-Identifier: MIT
#include "foundation/system/ComputerNames.h"

#include <lmapibuf.h>

#include <gmock/gmock.h>

#include <cwchar>
#include <string>
#include <vector>

#include "support/ImportHook.h"

namespace {

using ::testing::ElementsAre;

using ::testing::StrEq;

class ComputerName : public ::testing::Test {
protected:
    ComputerName()
    {
        asked.clear();
        name = L"STORE7.example";
        firstError = ERROR_MORE_DATA;
        secondSucceeds = true;
    }

    static inline std::vector<COMPUTER_NAME_FORMAT> asked;
    static inline std::wstring name;
    static inline DWORD firstError;
    static inline bool secondSucceeds;

private:
    static WINBOOL WINAPI Answer(COMPUTER_NAME_FORMAT format, wchar_t* buffer, DWORD* size)
    {
        asked.push_back(format);
        if (!buffer) {
            *size = static_cast<DWORD>(name.size() + 1);
            ::SetLastError(firstError);
            return firstError == ERROR_SUCCESS;
        }
        EXPECT_EQ(*size, name.size() + 1);
        if (secondSucceeds) std::wmemcpy(buffer, name.c_str(), name.size() + 1);
        return secondSucceeds;
    }

    ImportHook<decltype(::GetComputerNameExW)> _hook{"GetComputerNameExW", Answer};
};

TEST_F(ComputerName, IsReadInTheSizeThatTheSystemTells)
{
    EXPECT_THAT(GetComputerName(ComputerNameDnsFullyQualified).wstring(), StrEq(L"STORE7.example"));
    EXPECT_THAT(asked, ElementsAre(ComputerNameDnsFullyQualified, ComputerNameDnsFullyQualified));
}

TEST_F(ComputerName, MayBeLong)
{
    name.assign(5000, L'x');
    EXPECT_EQ(GetComputerName(ComputerNameDnsDomain).Length(), 5000);
}

TEST_F(ComputerName, IsEmptyIfTheSystemHasNone)
{
    name.clear();
    EXPECT_TRUE(GetComputerName(ComputerNameDnsDomain).IsEmpty());
}

TEST_F(ComputerName, IsEmptyAfterAnyOtherFirstAnswer)
{
    for (const DWORD error : {DWORD{ERROR_SUCCESS}, DWORD{ERROR_ACCESS_DENIED}, DWORD{ERROR_INSUFFICIENT_BUFFER}}) {
        asked.clear();
        firstError = error;
        EXPECT_TRUE(GetComputerName(ComputerNameNetBIOS).IsEmpty()) << error;
        EXPECT_EQ(asked.size(), 1u) << error;
    }
}

TEST_F(ComputerName, IsEmptyIfTheSecondCallFails)
{
    secondSucceeds = false;
    EXPECT_TRUE(GetComputerName(ComputerNameNetBIOS).IsEmpty());
}

TEST(ComputerNameOfThePlatform, IsThatOfTheMachine)
{
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD size = std::size(name);
    ASSERT_TRUE(::GetComputerNameW(name, &size));
    EXPECT_THAT(GetComputerName(ComputerNameNetBIOS).wstring(), StrEq(name));
}

class JoinedName : public ::testing::Test {
protected:
    JoinedName()
    {
        freed = 0;
        result = 0;
        status = NetSetupDomainName;
        hasName = true;
    }

    static inline int freed;
    static inline DWORD result;
    static inline NETSETUP_JOIN_STATUS status;
    static inline bool hasName;

private:
    static DWORD WINAPI Join(const wchar_t* server, wchar_t** name, NETSETUP_JOIN_STATUS* joined)
    {
        static wchar_t text[] = L"STORES";
        EXPECT_EQ(server, nullptr);
        if (hasName) *name = text;
        *joined = status;
        return result;
    }

    ImportHook<decltype(::NetGetJoinInformation)> _join{"NetGetJoinInformation", Join};
    ImportHook<decltype(::NetApiBufferFree)> _free{"NetApiBufferFree", [](void*) -> DWORD {
                                                       ++freed;
                                                       return 0;
                                                   }};
};

TEST_F(JoinedName, OfADomainMemberIsItsDomain)
{
    EXPECT_THAT(GetJoinedName(NetSetupDomainName).wstring(), StrEq(L"STORES"));
    EXPECT_TRUE(GetJoinedName(NetSetupWorkgroupName).IsEmpty());
    EXPECT_EQ(freed, 2) << "also what is of no use";
}

TEST_F(JoinedName, OfAMachineInAWorkgroupIsTheWorkgroup)
{
    status = NetSetupWorkgroupName;
    EXPECT_TRUE(GetJoinedName(NetSetupDomainName).IsEmpty());
    EXPECT_THAT(GetJoinedName(NetSetupWorkgroupName).wstring(), StrEq(L"STORES"));
}

TEST_F(JoinedName, OfAMachineThatHasJoinedNothingIsEmpty)
{
    for (const NETSETUP_JOIN_STATUS none : {NetSetupUnknownStatus, NetSetupUnjoined}) {
        status = none;
        EXPECT_TRUE(GetJoinedName(NetSetupDomainName).IsEmpty());
        EXPECT_TRUE(GetJoinedName(NetSetupWorkgroupName).IsEmpty());
    }
}

TEST_F(JoinedName, GoesByTheStatusAndNotByTheResult)
{
    result = ERROR_ACCESS_DENIED;
    EXPECT_THAT(GetJoinedName(NetSetupDomainName).wstring(), StrEq(L"STORES"));
}

TEST_F(JoinedName, WithoutANameIsEmpty)
{
    hasName = false;
    EXPECT_TRUE(GetJoinedName(NetSetupDomainName).IsEmpty());
    EXPECT_EQ(freed, 0);
}

} // namespace
