// SPDX-License-Identifier: MIT
#include "foundation/files/SystemFolders.h"

#include "foundation/Platform.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/files/PathParts.h"
#include "support/ImportHook.h"

namespace {

std::wstring Variable(const wchar_t* name)
{
    wchar_t value[MAX_PATH] = {};
    ::GetEnvironmentVariableW(name, value, MAX_PATH);
    return value;
}

TEST(SystemFolders, TheWindowsFolderIsTheSystemRoot)
{
    EXPECT_EQ(GetWindowsFolder().CompareNoCase(Variable(L"SystemRoot").c_str()), 0);
}

TEST(SystemFolders, TheSystemFolderLiesInTheWindowsFolderAndContainsTheKernel)
{
    EXPECT_EQ(GetFolderPart(GetSystemFolder()).CompareNoCase(GetWindowsFolder()), 0);
    const OString kernel = GetSystemFolder() + "\\kernel32.dll";
    EXPECT_NE(::GetFileAttributesW(kernel.wstring()), INVALID_FILE_ATTRIBUTES);
}

TEST(SystemFolders, TheTemporaryFolderIsThatOfThePlatformWithASeparatorAtItsEnd)
{
    wchar_t path[MAX_PATH];
    ::GetTempPathW(MAX_PATH, path);
    EXPECT_EQ(GetTemporaryFolder(), path);
    EXPECT_EQ(GetTemporaryFolder().Right(1), "\\");
}

TEST(SystemFolders, AFolderWhosePathIsTooLongIsEmpty)
{
    const ImportHook<UINT(wchar_t*, UINT)> system("GetSystemDirectoryW", [](wchar_t*, UINT) { return UINT{260}; });
    const ImportHook<UINT(wchar_t*, UINT)> windows("GetWindowsDirectoryW", [](wchar_t*, UINT) { return UINT{260}; });
    const ImportHook<DWORD(DWORD, wchar_t*)> temporary("GetTempPathW", [](DWORD, wchar_t*) { return DWORD{260}; });
    EXPECT_EQ(GetSystemFolder(), "");
    EXPECT_EQ(GetWindowsFolder(), "");
    EXPECT_EQ(GetTemporaryFolder(), "");
}

} // namespace
