// SPDX-License-Identifier: MIT
#include "foundation/system/ModuleInstance.h"

#include <gtest/gtest.h>

#include "foundation/files/PathParts.h"
#include "foundation/files/SystemFolders.h"

namespace {

class ModuleInstanceTest : public ::testing::Test {
protected:
    ~ModuleInstanceTest() override { SetModuleInstance(before); }

    HINSTANCE before = GetModuleInstance();
    HINSTANCE kernel = ::GetModuleHandleW(L"kernel32.dll");
};

TEST_F(ModuleInstanceTest, IsWhatWasSet)
{
    SetModuleInstance(kernel);
    EXPECT_EQ(GetModuleInstance(), kernel);
    SetModuleInstance(nullptr);
    EXPECT_EQ(GetModuleInstance(), nullptr);
}

TEST_F(ModuleInstanceTest, TheNameOfAModuleIsItsFullPath)
{
    const OString name = GetModuleName(kernel);
    EXPECT_EQ(GetFilePart(name).CompareNoCase("kernel32.dll"), 0);
    EXPECT_EQ(GetFolderPart(name).CompareNoCase(GetSystemFolder()), 0);
}

TEST_F(ModuleInstanceTest, TheNameOfNullIsTheProgram)
{
    EXPECT_EQ(GetFilePart(GetModuleName(nullptr)), "foundation_tests.exe");
}

TEST_F(ModuleInstanceTest, TheNameOfNoModuleIsEmpty)
{
    EXPECT_EQ(GetModuleName(reinterpret_cast<HMODULE>(1)), "");
}

TEST_F(ModuleInstanceTest, TheCurrentModuleIsTheOneThatWasSet)
{
    SetModuleInstance(kernel);
    EXPECT_EQ(GetCurrentModuleName(), GetModuleName(kernel));
    EXPECT_EQ(GetCurrentModuleFolder(), GetFolderPart(GetModuleName(kernel)));
}

TEST_F(ModuleInstanceTest, TheCurrentModuleIsTheProgramIfNoneWasSet)
{
    SetModuleInstance(nullptr);
    EXPECT_EQ(GetCurrentModuleName(), GetModuleName(nullptr));
}

} // namespace
