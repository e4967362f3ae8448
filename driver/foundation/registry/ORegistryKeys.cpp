// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

namespace {

constexpr DWORD nameSize = 261; // 260 characters and a terminator

/// Gives the name at an index in a buffer of `nameSize` characters; false at the end.
using NextName = bool(HKEY key, DWORD index, wchar_t* name);

// Deliberate: a name that is longer makes the call fail, and so ends the list.
bool NextKey(HKEY key, DWORD index, wchar_t* name)
{
    return ::RegEnumKeyW(key, index, name, nameSize) == ERROR_SUCCESS;
}

bool NextValue(HKEY key, DWORD index, wchar_t* name)
{
    DWORD length = nameSize;
    return ::RegEnumValueW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

int List(const ORegistryKey& key, NextName* next, OStringArray& names)
{
    names.RemoveAll();
    if (!key) return -1;
    wchar_t name[nameSize];
    for (DWORD index = 0; next(key.Get(), index, name); ++index) names.Add(name);
    names.Sort();
    return names.GetSize();
}

int KeepMatching(OStringArray& names, const OString& pattern)
{
    for (int index = names.GetSize() - 1; index >= 0; --index) {
        if (!names[index].Match(pattern)) names.RemoveAt(index);
    }
    return names.GetSize();
}

} // namespace

int ORegistry::ListKeys(const OString& key, OStringArray& names) const
{
    return List(OpenKey(key, false), NextKey, names);
}

int ORegistry::ListValues(const OString& key, OStringArray& names) const
{
    return List(OpenKey(key, false), NextValue, names);
}

int ORegistry::EnumNames(const OString& path, OStringArray& names, NameLister list) const noexcept
{
    return Contained(-1, [&] {
        names.RemoveAll();
        OString key;
        return ParseKey(path, key) ? (this->*list)(key, names) : -1;
    });
}

int ORegistry::FindNames(const OString& path, OStringArray& names, NameLister list) const noexcept
{
    return Contained(-1, [&] {
        if (!HasWildcard(path)) return EnumNames(path, names, list);
        OString key;
        OString pattern;
        const bool found = ParsePath(_basePath, path, key, pattern) && (this->*list)(key, names) >= 0;
        return found ? KeepMatching(names, pattern) : -1;
    });
}

int ORegistry::EnumKeys(const OString& path, OStringArray& names) const noexcept
{
    return EnumNames(path, names, &ORegistry::ListKeys);
}

int ORegistry::EnumValues(const OString& path, OStringArray& names) const noexcept
{
    return EnumNames(path, names, &ORegistry::ListValues);
}

int ORegistry::FindKeys(const OString& path, OStringArray& names) const noexcept
{
    return FindNames(path, names, &ORegistry::ListKeys);
}

int ORegistry::FindValues(const OString& path, OStringArray& names) const noexcept
{
    return FindNames(path, names, &ORegistry::ListValues);
}

bool ORegistry::DeleteKey(const OString& path, bool recursive) const noexcept
{
    return Contained(false, [&] {
        OString key;
        OString name;
        if (!ParsePath(_basePath, path, key, name)) return false;
        const OString full = name.IsEmpty() ? key : SubKey(key, name);
        return QueryKey(full, nullptr, nullptr) ? DeleteTree(full, recursive) : DeleteValue(key, name);
    });
}

bool ORegistry::Delete(const OString& path) const noexcept
{
    return Contained(false, [&] {
        if (!HasWildcard(path)) return DeleteKey(path, true);

        OString key;
        OString pattern;
        OStringArray keys;
        OStringArray values;
        if (!ParsePath(_basePath, path, key, pattern) || FindKeys(path, keys) < 0 || FindValues(path, values) < 0) {
            return false;
        }
        bool all = true;
        for (int index = 0; index < keys.GetSize(); ++index) all &= DeleteTree(SubKey(key, keys[index]), true);
        for (int index = 0; index < values.GetSize(); ++index) all &= DeleteValue(key, values[index]);
        return all;
    });
}

bool ORegistry::DeleteTree(const OString& key, bool recursive) const
{
    if (recursive) {
        OStringArray names;
        ListKeys(key, names);
        for (int index = 0; index < names.GetSize(); ++index) DeleteTree(SubKey(key, names[index]), true);
    }
    HKEY root = nullptr;
    OString subkey;
    return Resolve(key, root, subkey) && ::RegDeleteKeyW(root, subkey.wstring()) == ERROR_SUCCESS;
}

bool ORegistry::DeleteValue(const OString& key, const OString& name) const
{
    const ORegistryKey opened = OpenKey(key, false);
    return opened && ::RegDeleteValueW(opened.Get(), name.wstring()) == ERROR_SUCCESS;
}
