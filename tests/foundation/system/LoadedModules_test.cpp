// SPDX-License-Identifier: MIT
#include "foundation/system/LoadedModules.h"

#include <gmock/gmock.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/ImportHook.h"

namespace {

/// Names of functions that the platform seems to lack.
std::vector<std::string> missing;
decltype(::GetProcAddress)* realGetProcAddress;

FARPROC WINAPI GetProcAddressUnlessMissing(HMODULE module, const char* name)
{
    for (const std::string& missingName : missing) {
        if (missingName == name) return nullptr;
    }
    return realGetProcAddress(module, name);
}

class LoadedModulesTest : public ::testing::Test {
protected:
    LoadedModulesTest()
    {
        missing.clear();
        realGetProcAddress = _hook.Original();
    }

    /// The module with the base of the test program, or an empty one.
    static LoadedModule Program()
    {
        const auto base = reinterpret_cast<DWORD64>(::GetModuleHandleW(nullptr));
        for (const LoadedModule& module : ListLoadedModules()) {
            if (module.base == base) return module;
        }
        return {};
    }

    static std::wstring ProgramPath()
    {
        wchar_t path[MAX_PATH];
        return std::wstring(path, ::GetModuleFileNameW(nullptr, path, MAX_PATH));
    }

private:
    ImportHook<decltype(::GetProcAddress)> _hook{"GetProcAddress", GetProcAddressUnlessMissing};
};

TEST_F(LoadedModulesTest, ContainTheProgramItself)
{
    const LoadedModule program = Program();
    EXPECT_EQ(program.path, ProgramPath());
    EXPECT_GT(program.size, 4096u);
}

TEST_F(LoadedModulesTest, ContainTheLibrariesOfThePlatform)
{
    const auto kernel = reinterpret_cast<DWORD64>(::GetModuleHandleW(L"kernel32.dll"));
    EXPECT_THAT(ListLoadedModules(), ::testing::Contains(::testing::Field(&LoadedModule::base, kernel)));
}

TEST_F(LoadedModulesTest, AreListedByProcessStatusWithoutSnapshots)
{
    missing = {"CreateToolhelp32Snapshot"};
    const LoadedModule program = Program();
    EXPECT_EQ(program.path, ProgramPath());
    EXPECT_GT(program.size, 4096u);
}

TEST_F(LoadedModulesTest, AreNoneWhenThePlatformHasNoListing)
{
    missing = {"CreateToolhelp32Snapshot", "EnumProcessModules"};
    EXPECT_TRUE(ListLoadedModules().empty());
}

} // namespace
