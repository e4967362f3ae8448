// SPDX-License-Identifier: MIT
#include "ScratchKey.h"

#include <iomanip>
#include <stdexcept>
#include <vector>

namespace {

using RegistryKey = OHandle<::RegCloseKey, HKEY>;

void Require(LSTATUS status)
{
    if (status != ERROR_SUCCESS) throw std::runtime_error("the scratch key fails with " + std::to_string(status));
}

StoredValues ValuesOf(HKEY key)
{
    constexpr DWORD longestName = 16384;
    StoredValues values;
    std::vector<wchar_t> name(longestName);
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = longestName;
        DWORD size = 0;
        DWORD type = 0;
        if (::RegEnumValueW(key, index, name.data(), &nameLength, nullptr, &type, nullptr, &size) != 0) return values;
        std::string bytes(size, '\0');
        nameLength = longestName;
        Require(::RegEnumValueW(key, index, name.data(), &nameLength, nullptr, &type,
                                reinterpret_cast<BYTE*>(bytes.data()), &size));
        values[std::wstring(name.data(), nameLength)] = {type, bytes};
    }
}

void AddTree(HKEY key, const std::wstring& path, StoredTree& tree)
{
    tree[path] = ValuesOf(key);
    wchar_t name[256];
    for (DWORD index = 0; ::RegEnumKeyW(key, index, name, 256) == ERROR_SUCCESS; ++index) {
        RegistryKey child;
        Require(::RegOpenKeyExW(key, name, 0, KEY_READ, child.Receive()));
        AddTree(child.Get(), path.empty() ? name : path + L'\\' + name, tree);
    }
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const StoredValue& value)
{
    constexpr size_t shown = 40;
    stream << "type " << value.type << ", " << value.bytes.size() << " bytes:" << std::hex << std::setfill('0');
    for (const char byte : value.bytes.substr(0, shown)) {
        stream << ' ' << std::setw(2) << static_cast<int>(static_cast<BYTE>(byte));
    }
    return stream << std::dec;
}

std::string BytesOf(std::wstring_view text)
{
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

ScratchKey::ScratchKey() : _path(L"Software\\VorlaneScratchKey" + std::to_wstring(::GetCurrentProcessId()))
{
    ::RegDeleteTreeW(HKEY_CURRENT_USER, _path.c_str());
    Create(L"");
}

ScratchKey::~ScratchKey()
{
    ::RegDeleteTreeW(HKEY_CURRENT_USER, _path.c_str());
}

std::wstring ScratchKey::NativePath() const
{
    return L"HKEY_CURRENT_USER\\" + _path;
}

OString ScratchKey::Path() const
{
    OString path(_path.c_str());
    path.Replace("\\", "/");
    return L"1:" + path;
}

OHandle<::RegCloseKey, HKEY> ScratchKey::Open(const wchar_t* subkey, REGSAM access) const
{
    RegistryKey key;
    ::RegOpenKeyExW(HKEY_CURRENT_USER, (_path + L'\\' + subkey).c_str(), 0, access, key.Receive());
    return key;
}

void ScratchKey::Create(const wchar_t* subkey) const
{
    RegistryKey key;
    Require(::RegCreateKeyExW(HKEY_CURRENT_USER, (_path + L'\\' + subkey).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                              nullptr, key.Receive(), nullptr));
}

bool ScratchKey::Has(const wchar_t* subkey) const
{
    return static_cast<bool>(Open(subkey, KEY_READ));
}

void ScratchKey::Set(const wchar_t* subkey, const wchar_t* name, DWORD type, std::string_view bytes) const
{
    Create(subkey);
    Require(::RegSetValueExW(Open(subkey).Get(), name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                             static_cast<DWORD>(bytes.size())));
}

void ScratchKey::SetText(const wchar_t* subkey, const wchar_t* name, const wchar_t* text) const
{
    Set(subkey, name, REG_SZ, BytesOf({text, std::wcslen(text) + 1}));
}

void ScratchKey::SetNumber(const wchar_t* subkey, const wchar_t* name, DWORD number) const
{
    Set(subkey, name, REG_DWORD, {reinterpret_cast<const char*>(&number), sizeof number});
}

std::optional<StoredValue> ScratchKey::Get(const wchar_t* subkey, const wchar_t* name) const
{
    const RegistryKey key = Open(subkey, KEY_READ);
    if (!key) return std::nullopt;
    const StoredValues values = ValuesOf(key.Get());
    const auto found = values.find(name);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

StoredTree ScratchKey::Tree(const wchar_t* subkey) const
{
    StoredTree tree;
    if (const RegistryKey key = Open(subkey, KEY_READ)) AddTree(key.Get(), L"", tree);
    return tree;
}
