// SPDX-License-Identifier: MIT
#include "foundation/system/FileVersion.h"

#include "foundation/Platform.h"

#include <vector>

#include "foundation/system/ModuleInstance.h"
#include "foundation/OHandle.h"

namespace {

constexpr const wchar_t* stringTables[] = {
    L"\\StringFileInfo\\000004B0\\",
    L"\\StringFileInfo\\040904E4\\",
};

OString FullPath(const OString& file)
{
    if (file.Find(L':') >= 0) return file;
    const OModuleHandle module(::LoadLibraryW(file.wstring()));
    return module ? GetModuleName(module.Get()) : OString();
}

/// The whole version resource, or nothing.
std::vector<BYTE> ReadVersionInfo(const OString& path)
{
    DWORD ignored = 0;
    std::vector<BYTE> info(::GetFileVersionInfoSizeW(path.wstring(), &ignored));
    if (info.empty()) return info;
    if (!::GetFileVersionInfoW(path.wstring(), 0, static_cast<DWORD>(info.size()), info.data())) info.clear();
    return info;
}

} // namespace

OString GetFileVersionString(const OString& file, const OString& name)
{
    const std::vector<BYTE> info = ReadVersionInfo(FullPath(file));
    if (info.empty()) return OString();
    for (const wchar_t* table : stringTables) {
        const OString entry = OString(table) + name;
        void* text = nullptr;
        UINT length = 0;
        if (::VerQueryValueW(info.data(), entry.wstring(), &text, &length)) {
            return OString(static_cast<const wchar_t*>(text));
        }
    }
    return OString();
}
