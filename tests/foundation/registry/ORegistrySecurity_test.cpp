// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

#include <aclapi.h>
#include <sddl.h>

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "ScratchKey.h"
#include "support/ImportHook.h"

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

constexpr DWORD protectedList = DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION;
constexpr DWORD inheritedList = DACL_SECURITY_INFORMATION | UNPROTECTED_DACL_SECURITY_INFORMATION;

std::wstring ListText(void* descriptor)
{
    OHandle<::LocalFree, wchar_t*> text;
    ::ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION,
                                                           text.Receive(), nullptr);
    return text ? text.Get() : L"none";
}

/// The list of a key as the platform tells it, such as "D:(A;OICI;KA;;;BA)".
std::wstring ListOf(HKEY key)
{
    OLocalMemory descriptor;
    ::GetSecurityInfo(key, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, nullptr, nullptr,
                      descriptor.Receive());
    return ListText(descriptor.Get());
}

/// A list that the platform was asked to set.
struct SetList {
    SECURITY_INFORMATION kind;
    std::wstring list; ///< as the key then has it
};

class ORegistrySecurity : public ::testing::Test {
protected:
    ORegistrySecurity()
    {
        set.clear();
        created.clear();
        setSecurity = _set.Original();
        createKey = _create.Original();
    }
    ~ORegistrySecurity() override { Reopen(L""); }

    std::wstring ListOf(const wchar_t* subkey) const { return ::ListOf(scratch.Open(subkey, READ_CONTROL).Get()); }

    /// Lets a key that a test closed, and all below it, be deleted.
    void Reopen(const std::wstring& subkey) const
    {
        OLocalMemory open;
        ::ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:(A;OICI;KA;;;WD)", SDDL_REVISION_1, open.Receive(),
                                                               nullptr);
        ::RegSetKeySecurity(scratch.Open(subkey.c_str(), WRITE_DAC).Get(), DACL_SECURITY_INFORMATION, open.Get());
        const auto key = scratch.Open(subkey.c_str());
        wchar_t name[256];
        for (DWORD index = 0; ::RegEnumKeyW(key.Get(), index, name, 256) == ERROR_SUCCESS; ++index) {
            Reopen(subkey + L'\\' + name);
        }
    }

    static inline std::vector<SetList> set;
    static inline std::vector<std::wstring> created; ///< lists of keys that were made; "" without one

    ScratchKey scratch;
    ORegistry registry{scratch.Path()};

private:
    static inline decltype(::SetSecurityInfo)* setSecurity;
    static inline decltype(::RegCreateKeyExW)* createKey;

    ImportHook<decltype(::SetSecurityInfo)> _set{"SetSecurityInfo",
                                                 [](HANDLE handle, SE_OBJECT_TYPE type, SECURITY_INFORMATION kind,
                                                    void* owner, void* group, ACL* list, ACL* audit) -> DWORD {
                                                     EXPECT_EQ(type, SE_REGISTRY_KEY);
                                                     EXPECT_TRUE(list) << "no list at all is all access";
                                                     EXPECT_TRUE(!owner && !group && !audit);
                                                     const DWORD status =
                                                         setSecurity(handle, type, kind, owner, group, list, audit);
                                                     set.push_back({kind, ::ListOf(static_cast<HKEY>(handle))});
                                                     return status;
                                                 }};
    ImportHook<decltype(::RegCreateKeyExW)> _create{
        "RegCreateKeyExW", [](HKEY root, const wchar_t* path, DWORD reserved, wchar_t* keyClass, DWORD options,
                              REGSAM access, SECURITY_ATTRIBUTES* security, HKEY* key, DWORD* disposition) {
            created.push_back(security ? ListText(security->lpSecurityDescriptor) : L"");
            return createKey(root, path, reserved, keyClass, options, access, security, key, disposition);
        }};
};

constexpr struct {
    DWORD level;
    const wchar_t* list;
} levels[] = {
    {1,    L"D:(A;OICI;KR;;;WD)(A;OICI;KA;;;BA)(A;OICI;KA;;;SY)"},
    {2,    L"D:(A;OICI;KA;;;WD)(A;OICI;KA;;;BA)(A;OICI;KA;;;SY)"},
    {3,    L"D:(A;OICI;KA;;;BA)(A;OICI;KA;;;SY)"                },
    {0xFF, L"D:(A;OICI;KA;;;BA)(A;OICI;KA;;;SY)"                },
};

TEST_F(ORegistrySecurity, ALevelIsAProtectedList)
{
    scratch.Create(L"A");
    for (const auto& row : levels) {
        EXPECT_TRUE(registry.SetSecurity("A", row.level));
        EXPECT_EQ(ListOf(L"A"), row.list);
        EXPECT_EQ(set.back().kind, protectedList) << row.level;
    }
}

TEST_F(ORegistrySecurity, LevelZeroLeavesWhatIsInherited)
{
    scratch.Create(L"A");
    EXPECT_TRUE(registry.SetSecurity("A", 0));
    ASSERT_THAT(set, SizeIs(1));
    EXPECT_EQ(set[0].kind, inheritedList);
    EXPECT_THAT(ListOf(L"A"), Not(::testing::HasSubstr(L";OICI;"))) << "an entry of its own";
}

TEST_F(ORegistrySecurity, OnlyTheLowByteIsTheLevel)
{
    scratch.Create(L"A");
    EXPECT_TRUE(registry.SetSecurity("A", 0xFFFF0F01 & ~ORegistry::securityDescend));
    EXPECT_EQ(ListOf(L"A"), levels[0].list);
}

TEST_F(ORegistrySecurity, AMissingKeyFails)
{
    EXPECT_FALSE(registry.SetSecurity("A", 1));
    EXPECT_FALSE(scratch.Has(L"A"));
}

TEST_F(ORegistrySecurity, AMissingKeyIsMadeOnRequestWithTheProtectedList)
{
    for (const auto& row : levels) {
        created.clear();
        const std::wstring name = std::to_wstring(row.level);
        EXPECT_TRUE(registry.SetSecurity(name.c_str(), ORegistry::securityCreate | row.level));
        EXPECT_TRUE(scratch.Has(name.c_str()));
        EXPECT_THAT(created, ElementsAre(L"D:P" + std::wstring(row.list).substr(2)));
    }
    EXPECT_THAT(set, IsEmpty()) << "the list came with the key";
}

TEST_F(ORegistrySecurity, AMissingKeyIsMadeWithoutAListForLevelZero)
{
    EXPECT_TRUE(registry.SetSecurity("A/B", ORegistry::securityCreate));
    EXPECT_TRUE(scratch.Has(L"A\\B"));
    EXPECT_THAT(created, ElementsAre(L""));
}

TEST_F(ORegistrySecurity, AnExistingKeyIsNotMade)
{
    EXPECT_TRUE(registry.SetSecurity("", ORegistry::securityCreate | 2));
    EXPECT_THAT(created, IsEmpty());
    EXPECT_EQ(ListOf(L""), levels[1].list);
}

TEST_F(ORegistrySecurity, AKeyThatCannotBeMadeFails)
{
    const ImportHook<decltype(::RegCreateKeyExW)> hook("RegCreateKeyExW",
                                                       [](HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM,
                                                          SECURITY_ATTRIBUTES*, HKEY*,
                                                          DWORD*) -> LSTATUS { return ERROR_ACCESS_DENIED; });
    EXPECT_FALSE(registry.SetSecurity("A", ORegistry::securityCreate | 1));
}

TEST_F(ORegistrySecurity, DescendingFirstLetsAllKeysBelowInherit)
{
    scratch.Create(L"A\\B/C\\D");
    scratch.Create(L"A\\E");
    EXPECT_TRUE(registry.SetSecurity("A", ORegistry::securityDescend | 1));
    ASSERT_THAT(set, SizeIs(4));
    EXPECT_EQ(set.back().list, levels[0].list) << "the top comes last";
    EXPECT_EQ(set.back().kind, protectedList);
    set.pop_back();
    EXPECT_THAT(set, Each(Field(&SetList::kind, inheritedList)));
    for (const wchar_t* const below : {L"A\\B/C", L"A\\B/C\\D", L"A\\E"}) {
        EXPECT_THAT(ListOf(below), Not(::testing::HasSubstr(L";OICI;"))) << "an entry of its own";
    }
}

TEST_F(ORegistrySecurity, WithoutDescendingTheKeysBelowStayAsTheyAre)
{
    scratch.Create(L"A\\B");
    EXPECT_TRUE(registry.SetSecurity("A", 1));
    EXPECT_THAT(set, SizeIs(1));
}

TEST_F(ORegistrySecurity, WhatThePlatformSaysToTheListIsNotAsked)
{
    const ImportHook<decltype(::SetSecurityInfo)> hook("SetSecurityInfo",
                                                       [](HANDLE, SE_OBJECT_TYPE, SECURITY_INFORMATION, void*, void*,
                                                          ACL*, ACL*) -> DWORD { return ERROR_ACCESS_DENIED; });
    EXPECT_TRUE(registry.SetSecurity("", 1));
}

TEST_F(ORegistrySecurity, ABadPathOrARootAloneFails)
{
    EXPECT_FALSE(ORegistry().SetSecurity("A", ORegistry::securityCreate));
    EXPECT_FALSE(ORegistry().SetSecurity("LOCAL_MACHINE:", ORegistry::securityCreate | 1));
    EXPECT_THAT(set, IsEmpty());
    EXPECT_THAT(created, IsEmpty());
}

TEST_F(ORegistrySecurity, WithoutTheListNothingIsSet)
{
    const ImportHook<decltype(::ConvertStringSecurityDescriptorToSecurityDescriptorW)> hook(
        "ConvertStringSecurityDescriptorToSecurityDescriptorW",
        [](const wchar_t*, DWORD, void**, ULONG*) -> WINBOOL { return FALSE; });
    EXPECT_FALSE(registry.SetSecurity("", 1));
    EXPECT_FALSE(registry.SetSecurity("A", ORegistry::securityCreate | 1));
    EXPECT_THAT(set, IsEmpty());
    EXPECT_FALSE(scratch.Has(L"A"));
}

} // namespace
