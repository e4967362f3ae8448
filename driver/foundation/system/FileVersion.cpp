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

/// The whole version resource with a zero after it, where a text ends at the latest; empty if there is none.
std::vector<BYTE> ReadVersionInfo(const OString& path)
{
    DWORD ignored = 0;
    const DWORD size = ::GetFileVersionInfoSizeW(path.wstring(), &ignored);
    std::vector<BYTE> info(size == 0 ? 0 : size + sizeof(wchar_t));
    if (size != 0 && !::GetFileVersionInfoW(path.wstring(), 0, size, info.data())) info.clear();
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
            OString value;
            value.AssignN(static_cast<const wchar_t*>(text), static_cast<int>(length));
            return value;
        }
    }
    return OString();
}
