// SPDX-License-Identifier: MIT
#include "support/product/ScratchClassesRoot.h"

#include <cwchar>
#include <stdexcept>

namespace {

/// Two test programs may run at once.
const std::wstring scratchPath = L"Software\\VorlaneScratch" + std::to_wstring(::GetCurrentProcessId());

void Require(LSTATUS status)
{
    if (status != ERROR_SUCCESS) throw std::runtime_error("the scratch registry fails with " + std::to_string(status));
}

} // namespace

ScratchClassesRoot::ScratchClassesRoot(DWORD options)
{
    ::RegDeleteTreeW(HKEY_CURRENT_USER, scratchPath.c_str());
    Require(::RegCreateKeyExW(HKEY_CURRENT_USER, scratchPath.c_str(), 0, nullptr, options, KEY_ALL_ACCESS, nullptr,
                              _key.Receive(), nullptr));
    Require(::RegOverridePredefKey(HKEY_CLASSES_ROOT, _key.Get()));
}

ScratchClassesRoot::~ScratchClassesRoot()
{
    ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    _key.Reset();
    ::RegDeleteTreeW(HKEY_CURRENT_USER, scratchPath.c_str());
}

void ScratchClassesRoot::Create(const wchar_t* path, DWORD options) const
{
    OHandle<::RegCloseKey, HKEY> created;
    Require(
        ::RegCreateKeyExW(_key.Get(), path, 0, nullptr, options, KEY_ALL_ACCESS, nullptr, created.Receive(), nullptr));
}

void ScratchClassesRoot::SetText(const wchar_t* path, const wchar_t* name, const wchar_t* text) const
{
    const DWORD size = static_cast<DWORD>((std::wcslen(text) + 1) * sizeof(wchar_t));
    Require(::RegSetKeyValueW(_key.Get(), path, name, REG_SZ, text, size));
}

std::string ScratchClassesRoot::Text(const std::string& path, const std::string& name) const
{
    char text[1024] = {};
    DWORD size = sizeof(text);
    const LSTATUS status = ::RegGetValueA(_key.Get(), path.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr, text, &size);
    return status == ERROR_SUCCESS ? text : "none";
}

void ScratchClassesRoot::Doom() const
{
    Require(::RegDeleteTreeW(HKEY_CURRENT_USER, scratchPath.c_str()));
}
