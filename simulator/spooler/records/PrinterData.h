// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Text.h"

#include <map>

/// The typed values of one printer under their keys; keys and names ignore case.
class PrinterData {
public:
    struct Value {
        DWORD type = REG_NONE;
        Bytes bytes;
    };

    /// Null if there is none.
    const Value* Find(std::wstring_view key, std::wstring_view name) const;
    void Set(std::wstring_view key, std::wstring_view name, Value value);
    /// False if there was none.
    bool Remove(std::wstring_view key, std::wstring_view name);

    using Key = std::map<std::wstring, Value, NameLess>;

    const std::map<std::wstring, Key, NameLess>& Keys() const noexcept { return _keys; }

private:
    std::map<std::wstring, Key, NameLess> _keys;
};

/// The key that GetPrinterDataW and SetPrinterDataW use.
constexpr std::wstring_view printerDriverDataKey = L"PrinterDriverData";

/// A text as it is stored: with its terminator.
PrinterData::Value TextValue(std::wstring_view text);
PrinterData::Value NumberValue(DWORD number);

/// Ends a read of a value: type and size are told, the bytes copied if they fit. `type` may be null.
/// ERROR_MORE_DATA for a small buffer, RPC_X_NULL_REF_POINTER without `needed` or a buffer that `size` speaks of.
DWORD CopyValue(const PrinterData::Value& value, DWORD* type, void* data, DWORD size, DWORD* needed) noexcept;
