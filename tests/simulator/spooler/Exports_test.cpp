// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

#include <filesystem>

namespace {

using ExportsTest = SimulatorTest;

TEST_F(ExportsTest, TheModuleGoesByTheNameOfTheSystemsOwn)
{
    wchar_t path[MAX_PATH] = {};
    wchar_t program[MAX_PATH] = {};
    ::GetModuleFileNameW(::GetModuleHandleW(L"winspool.drv"), path, MAX_PATH);
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    EXPECT_EQ(std::filesystem::path(path).filename(), L"winspool.drv");
    EXPECT_EQ(std::filesystem::path(path).parent_path(), std::filesystem::path(program).parent_path());
}

TEST_F(ExportsTest, EveryFunctionOfTheSpoolerIsExportedByItsPlainName)
{
    const HMODULE module = ::GetModuleHandleW(L"winspool.drv");
    for (DWORD number = 0; number < spoolerCallCount; ++number) {
        const std::wstring name = SpoolerCallName(static_cast<SpoolerCall>(number));
        EXPECT_NE(::GetProcAddress(module, std::string(name.begin(), name.end()).c_str()), nullptr) << name;
    }
}

} // namespace
