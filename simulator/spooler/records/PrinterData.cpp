// SPDX-License-Identifier: MIT
#include "spooler/records/PrinterData.h"

const PrinterData::Value* PrinterData::Find(std::wstring_view key, std::wstring_view name) const
{
    const auto values = _keys.find(key);
    if (values == _keys.end()) return nullptr;
    const auto value = values->second.find(name);
    return value == values->second.end() ? nullptr : &value->second;
}

void PrinterData::Set(std::wstring_view key, std::wstring_view name, Value value)
{
    _keys[std::wstring(key)].insert_or_assign(std::wstring(name), std::move(value));
}

bool PrinterData::Remove(std::wstring_view key, std::wstring_view name)
{
    const auto values = _keys.find(key);
    return values != _keys.end() && values->second.erase(std::wstring(name)) > 0;
}

PrinterData::Value TextValue(std::wstring_view text)
{
    const std::wstring terminated(text);
    return {REG_SZ, CopyBytes(terminated.c_str(), (terminated.size() + 1) * sizeof(wchar_t))};
}

PrinterData::Value NumberValue(DWORD number)
{
    return {REG_DWORD, CopyBytes(&number, sizeof number)};
}

DWORD CopyValue(const PrinterData::Value& value, DWORD* type, void* data, DWORD size, DWORD* needed) noexcept
{
    if (!needed || (!data && size > 0)) return RPC_X_NULL_REF_POINTER;
    if (type) *type = value.type;
    *needed = static_cast<DWORD>(value.bytes.size());
    if (size < *needed) return ERROR_MORE_DATA;
    CopyOut(value.bytes, data, size);
    return ERROR_SUCCESS;
}
