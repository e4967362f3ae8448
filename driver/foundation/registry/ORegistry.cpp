// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

namespace {

constexpr REGSAM readWrite = KEY_READ | KEY_WRITE;
constexpr REGSAM accessTried[] = {readWrite, KEY_READ};

/// Whether a key given as a canonical path can be opened with `access`.
bool CanOpen(const OString& key, REGSAM access)
{
    HKEY root = nullptr;
    OString subkey;
    ORegistryKey opened;
    return ORegistry::Resolve(key, root, subkey) &&
           ::RegOpenKeyExW(root, subkey.wstring(), 0, access, opened.Receive()) == ERROR_SUCCESS;
}

} // namespace

ORegistry::~ORegistry() = default;

ORegistryKey ORegistry::OpenKey(const OString& key, bool create) const noexcept
{
    return Contained(ORegistryKey(), [&] {
        HKEY root = nullptr;
        OString subkey;
        ORegistryKey opened;
        if (!Resolve(key, root, subkey)) return opened;

        for (const REGSAM access : accessTried) {
            if (::RegOpenKeyExW(root, subkey.wstring(), 0, access, opened.Receive()) == ERROR_SUCCESS) {
                return opened;
            }
        }
        if (create) {
            ::RegCreateKeyExW(root, subkey.wstring(), 0, nullptr, 0, readWrite, nullptr, opened.Receive(), nullptr);
        }
        return opened;
    });
}

bool ORegistry::KeyExists(const OString& path) const noexcept
{
    return Contained(false, [&] {
        OString key;
        return ParseKey(path, key) && CanOpen(key, KEY_READ);
    });
}

bool ORegistry::KeyIsWritable(const OString& path) const noexcept
{
    return Contained(false, [&] {
        OString key;
        return ParseKey(path, key) && CanOpen(key, KEY_WRITE);
    });
}

bool ORegistry::QueryKeyInfo(const OString& path, DWORD* retSubkeys, DWORD* retValues) const noexcept
{
    return Contained(false, [&] {
        OString key;
        return ParseKey(path, key) && QueryKey(key, retSubkeys, retValues);
    });
}

bool ORegistry::QueryKey(const OString& key, DWORD* retSubkeys, DWORD* retValues) const
{
    const ORegistryKey opened = OpenKey(key, false);
    return opened && ::RegQueryInfoKeyW(opened.Get(), nullptr, nullptr, nullptr, retSubkeys, nullptr, nullptr,
                                        retValues, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}
