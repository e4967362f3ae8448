// SPDX-License-Identifier: MIT
#include "support/product/RegistryDump.h"

#include "foundation/OHandle.h"

#include <array>
#include <string_view>

namespace {

using RegistryKey = OHandle<::RegCloseKey, HKEY>;

std::string Narrow(std::wstring_view text)
{
    std::string narrow;
    for (const wchar_t character : text) narrow += static_cast<char>(character);
    return narrow;
}

std::string DataText(DWORD type, const std::array<BYTE, 4096>& data)
{
    switch (type) {
    case REG_SZ:
        return Narrow(reinterpret_cast<const wchar_t*>(data.data()));
    case REG_DWORD:
        return "d " + std::to_string(*reinterpret_cast<const DWORD*>(data.data()));
    default:
        return "type " + std::to_string(type);
    }
}

void DumpValues(HKEY key, const std::string& path, std::vector<std::string>& lines)
{
    std::array<wchar_t, 260> name{};
    std::array<BYTE, 4096> data{};
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = name.size();
        DWORD size = data.size() - sizeof(wchar_t);
        DWORD type = 0;
        data.fill(0);
        if (::RegEnumValueW(key, index, name.data(), &nameLength, nullptr, &type, data.data(), &size) != 0) return;
        lines.push_back(path + " [" + Narrow(name.data()) + "] = " + DataText(type, data));
    }
}

void DumpKeys(HKEY key, const std::string& path, std::vector<std::string>& lines)
{
    std::array<wchar_t, 260> name{};
    for (DWORD index = 0; ::RegEnumKeyW(key, index, name.data(), name.size()) == ERROR_SUCCESS; ++index) {
        RegistryKey child;
        if (::RegOpenKeyExW(key, name.data(), 0, KEY_READ, child.Receive()) != ERROR_SUCCESS) continue;
        const std::string childPath = path + (path.empty() ? "" : "\\") + Narrow(name.data());
        lines.push_back(childPath);
        DumpValues(child.Get(), childPath, lines);
        DumpKeys(child.Get(), childPath, lines);
    }
}

} // namespace

std::vector<std::string> RegistryDump(HKEY key)
{
    std::vector<std::string> lines;
    DumpKeys(key, "", lines);
    return lines;
}
