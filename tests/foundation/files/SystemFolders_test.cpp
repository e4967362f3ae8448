// SPDX-License-Identifier: MIT
#include "foundation/files/SystemFolders.h"

#include "foundation/Platform.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/files/PathParts.h"

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

TEST(SystemFolders, TheSystemFolderLiesInTheWindowsFolderAndHoldsTheKernel)
{
    EXPECT_EQ(GetFolderPart(GetSystemFolder()).CompareNoCase(GetWindowsFolder()), 0);
    const OString kernel = GetSystemFolder() + "\\kernel32.dll";
    EXPECT_NE(::GetFileAttributesW(kernel.wstring()), INVALID_FILE_ATTRIBUTES);
}

} // namespace
