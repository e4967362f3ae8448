// SPDX-License-Identifier: MIT
#include "support/product/IntegrationTest.h"
#include "support/com/LateBound.h"

#include <winver.h>

#include <string>
#include <vector>

namespace {

class VRLObject : public IntegrationTest {};

/// A text of the version resource of the module that ships.
std::wstring ModuleText(const wchar_t* name)
{
    wchar_t path[MAX_PATH];
    ::GetModuleFileNameW(::GetModuleHandleW(L"Vorlane.dll"), path, MAX_PATH);
    std::vector<BYTE> version(::GetFileVersionInfoSizeW(path, nullptr));
    void* text = nullptr;
    UINT length = 0;
    if (version.empty() || !::GetFileVersionInfoW(path, 0, static_cast<DWORD>(version.size()), version.data()) ||
        !::VerQueryValueW(version.data(), (std::wstring(L"\\StringFileInfo\\000004B0\\") + name).c_str(), &text,
                          &length)) {
        return L"none";
    }
    return static_cast<const wchar_t*>(text);
}

TEST_F(VRLObject, TellsWhichBuildIsLoaded)
{
    const auto vrl = Create<IVRL>(__uuidof(VRL));
    EXPECT_EQ(Text(*vrl.Get(), &IVRL::get_Version), ModuleText(L"ProductVersion"));
    EXPECT_EQ(Text(*vrl.Get(), &IVRL::get_Platform), L"x64");
    EXPECT_EQ(ModuleText(L"Platform"), L"x64");
}

TEST_F(VRLObject, AnswersByName)
{
    const auto vrl = Create<IVRL>(__uuidof(VRL));
    EXPECT_EQ(_bstr_t(LateBound(vrl.Get()).Get("Version").value), _bstr_t(ModuleText(L"ProductVersion").c_str()));
    EXPECT_EQ(_bstr_t(LateBound(vrl.Get()).Get("Platform").value), _bstr_t(L"x64"));
}

} // namespace
