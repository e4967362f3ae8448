// SPDX-License-Identifier: MIT
#include "vrl/server/Registrar.h"

#include "foundation/OHandle.h"

namespace {

using Key = RegistrationScript::Key;
using Removal = RegistrationScript::Removal;
using RegistryKey = OHandle<::RegCloseKey, HKEY>;

constexpr REGSAM keyAccess = KEY_READ | KEY_WRITE;

LSTATUS MissingIsFine(LSTATUS status)
{
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

LSTATUS RemoveTree(HKEY parent, const std::wstring& name)
{
    return MissingIsFine(::RegDeleteTreeW(parent, name.c_str()));
}

LSTATUS WriteData(HKEY key, const std::wstring& name, const std::wstring& text)
{
    const size_t size = (text.size() + 1) * sizeof(wchar_t);
    return ::RegSetValueExW(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                            static_cast<DWORD>(size));
}

LSTATUS WriteData(HKEY key, const std::wstring& name, DWORD number)
{
    return ::RegSetValueExW(key, name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof(number));
}

/// Runs `step` on each item up to the first failure, which is the result.
template <typename Items, typename Step>
LSTATUS ForEach(const Items& items, Step step)
{
    for (const auto& item : items) {
        const LSTATUS status = step(item);
        if (status != ERROR_SUCCESS) return status;
    }
    return ERROR_SUCCESS;
}

LSTATUS WriteValues(HKEY key, const std::vector<RegistrationScript::Value>& values)
{
    return ForEach(values, [key](const RegistrationScript::Value& value) {
        return std::visit([&](const auto& data) { return WriteData(key, value.name, data); }, value.data);
    });
}

LSTATUS RemoveValues(HKEY key, const std::vector<RegistrationScript::Value>& values)
{
    return ForEach(values, [key](const RegistrationScript::Value& value) {
        return MissingIsFine(::RegDeleteValueW(key, value.name.c_str()));
    });
}

LSTATUS WriteKey(HKEY parent, const Key& key)
{
    if (key.removal == Removal::AtOnce) return RemoveTree(parent, key.name);
    if (key.removal == Removal::Whole) {
        const LSTATUS status = RemoveTree(parent, key.name);
        if (status != ERROR_SUCCESS) return status;
    }

    RegistryKey opened;
    LSTATUS status = ::RegCreateKeyExW(parent, key.name.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, keyAccess,
                                       nullptr, opened.Receive(), nullptr);
    if (status == ERROR_SUCCESS) status = WriteValues(opened.Get(), key.values);
    if (status != ERROR_SUCCESS) return status;
    return ForEach(key.keys, [&](const Key& child) { return WriteKey(opened.Get(), child); });
}

LSTATUS RemoveIfNothingIsBelow(HKEY parent, const std::wstring& name, RegistryKey opened)
{
    DWORD subkeys = 0;
    DWORD values = 0;
    const LSTATUS status = ::RegQueryInfoKeyW(opened.Get(), nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr,
                                              &values, nullptr, nullptr, nullptr, nullptr);
    if (status != ERROR_SUCCESS || subkeys != 0 || values != 0) return status;
    opened.Reset();
    return ::RegDeleteKeyW(parent, name.c_str());
}

LSTATUS UndoKey(HKEY parent, const Key& key)
{
    if (key.removal == Removal::AtOnce) return ERROR_SUCCESS;
    if (key.removal == Removal::Whole) return RemoveTree(parent, key.name);

    RegistryKey opened;
    LSTATUS status = ::RegOpenKeyExW(parent, key.name.c_str(), 0, keyAccess, opened.Receive());
    if (status != ERROR_SUCCESS) return MissingIsFine(status);
    status = ForEach(key.keys, [&](const Key& child) { return UndoKey(opened.Get(), child); });
    if (status == ERROR_SUCCESS) status = RemoveValues(opened.Get(), key.values);
    if (status != ERROR_SUCCESS || key.removal == Removal::Never) return status;
    return RemoveIfNothingIsBelow(parent, key.name, std::move(opened));
}

HRESULT Run(std::wstring_view text, const RegistrationScript::Replacements& replacements,
            LSTATUS (*step)(HKEY, const Key&)) noexcept
try {
    const auto script = RegistrationScript::Parse(text, replacements);
    if (!script) return HRESULT_FROM_WIN32(ERROR_INVALID_DATA);

    const LSTATUS status = ForEach(script->Roots(), [step](const RegistrationScript::Root& root) {
        return ForEach(root.keys, [&](const Key& key) { return step(root.handle, key); });
    });
    return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

} // namespace

void Registrar::SetReplacement(std::wstring name, std::wstring value)
{
    _replacements.insert_or_assign(std::move(name), std::move(value));
}

HRESULT Registrar::Register(std::wstring_view script) const noexcept
{
    return Run(script, _replacements, WriteKey);
}

HRESULT Registrar::Unregister(std::wstring_view script) const noexcept
{
    return Run(script, _replacements, UndoKey);
}
