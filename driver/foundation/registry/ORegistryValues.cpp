// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace {

/// Copies the first `size` bytes of a value that is longer, and gives its length or -1. The platform gives no part of
/// it, so all of it is read; it may grow in the meantime.
int ReadHead(const ORegistryKey& key, const OString& name, void* buffer, DWORD size, DWORD length)
{
    std::vector<BYTE> whole;
    LSTATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) {
        whole.resize(length);
        status = ::RegQueryValueExW(key.Get(), name.wstring(), nullptr, nullptr, whole.data(), &length);
    }
    if (status != ERROR_SUCCESS) return -1;
    std::memcpy(buffer, whole.data(), std::min(size, length));
    return static_cast<int>(length);
}

} // namespace

int ORegistry::SetBinary(const OString& path, const void* data, int count, DWORD type) const noexcept
{
    return Contained(-1, [&] {
        OString key;
        OString name;
        if (count < 0 || (!data && count > 0) || !ParsePath(_basePath, path, key, name)) return -1;
        const ORegistryKey opened = OpenKey(key, true);
        if (!opened) return -1;
        const LSTATUS status = ::RegSetValueExW(opened.Get(), name.wstring(), 0, type, static_cast<const BYTE*>(data),
                                                static_cast<DWORD>(count));
        return status == ERROR_SUCCESS ? count : -1;
    });
}

int ORegistry::GetBinary(const OString& path, void* buffer, int size, DWORD /* type */) const noexcept
{
    return Contained(-1, [&] {
        OString key;
        OString name;
        if (!ParsePath(_basePath, path, key, name)) return -1;
        const ORegistryKey opened = OpenKey(key, false);
        if (!opened) return -1;

        const DWORD room = static_cast<DWORD>(std::max(size, 0));
        DWORD length = room;
        const LSTATUS status =
            ::RegQueryValueExW(opened.Get(), name.wstring(), nullptr, nullptr, static_cast<BYTE*>(buffer), &length);
        if (status == ERROR_MORE_DATA) return ReadHead(opened, name, buffer, room, length);
        return status == ERROR_SUCCESS ? static_cast<int>(length) : -1;
    });
}

bool ORegistry::SetString(const OString& path, const OString& text) const noexcept
{
    return Contained(false, [&] {
        const wchar_t* const wide = text.wstring();
        const int bytes = (text.Length() + 1) * static_cast<int>(sizeof(wchar_t));
        return SetBinary(path, wide, bytes, REG_SZ) == bytes;
    });
}

OString ORegistry::GetString(const OString& path, const OString& defaultText) const noexcept
{
    return Contained(defaultText, [&] {
        // Deliberate: a longer text is cut, without a terminator of its own.
        std::array<wchar_t, readLimit / sizeof(wchar_t)> buffer;
        const int length = GetBinary(path, buffer.data(), readLimit, REG_SZ);
        if (length < 1) return defaultText;
        OString text;
        text.AssignN(buffer.data(), std::min(length, readLimit) / static_cast<int>(sizeof(wchar_t)));
        return text;
    });
}

bool ORegistry::SetDWORD(const OString& path, DWORD number) const noexcept
{
    return SetBinary(path, &number, sizeof number, REG_DWORD) == sizeof number;
}

bool ORegistry::GetDWORD(const OString& path, DWORD* retNumber) const noexcept
{
    DWORD number = 0;
    if (GetBinary(path, &number, sizeof number, REG_DWORD) != sizeof number) return false;
    *retNumber = number;
    return true;
}

DWORD ORegistry::GetDWORD(const OString& path, DWORD defaultNumber) const noexcept
{
    DWORD number = defaultNumber;
    GetDWORD(path, &number);
    return number;
}

bool ORegistry::SetLONG(const OString& path, LONG number) const noexcept
{
    return SetDWORD(path, static_cast<DWORD>(number));
}

LONG ORegistry::GetLONG(const OString& path, LONG defaultNumber) const noexcept
{
    return static_cast<LONG>(GetDWORD(path, static_cast<DWORD>(defaultNumber)));
}

bool ORegistry::SetWORD(const OString& path, WORD number) const noexcept
{
    return SetDWORD(path, number);
}

WORD ORegistry::GetWORD(const OString& path, WORD defaultNumber) const noexcept
{
    return static_cast<WORD>(GetDWORD(path, DWORD{defaultNumber}));
}

bool ORegistry::SetStringArray(const OString& path, const OStringArray& texts) const noexcept
{
    return Contained(false, [&] {
        OBuffer<wchar_t> packed;
        const int bytes = texts.Pack(packed, OStringArray::packTerminated) * static_cast<int>(sizeof(wchar_t));
        return SetBinary(path, packed.GetData(), bytes, REG_MULTI_SZ) == bytes;
    });
}

bool ORegistry::GetStringArray(const OString& path, OStringArray& texts) const noexcept
{
    return Contained(false, [&] {
        texts.RemoveAll();
        OBuffer<wchar_t> packed(readLimit / static_cast<int>(sizeof(wchar_t)));
        const int length = GetBinary(path, packed.GetData(), readLimit, REG_MULTI_SZ);
        if (length < 1) return false;
        packed.SetSize(std::min(length, readLimit) / static_cast<int>(sizeof(wchar_t)));
        texts.Unpack(packed, OStringArray::packTerminated);
        return true;
    });
}

bool ORegistry::QueryValueInfo(const OString& path, DWORD* retSize, DWORD* retType) const noexcept
{
    return Contained(false, [&] {
        OString key;
        OString name;
        if (!ParsePath(_basePath, path, key, name)) return false;
        const ORegistryKey opened = OpenKey(key, false);
        return opened &&
               ::RegQueryValueExW(opened.Get(), name.wstring(), nullptr, retType, nullptr, retSize) == ERROR_SUCCESS;
    });
}

int ORegistry::GetValueLength(const OString& path) const noexcept
{
    DWORD size = 0;
    return QueryValueInfo(path, &size, nullptr) ? static_cast<int>(size) : -1;
}
