// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"
#include "foundation/text/OString.h"

#include <cstring>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

/// A value as the registry stores it.
struct StoredValue {
    DWORD type;
    std::string bytes;

    friend bool operator==(const StoredValue&, const StoredValue&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const StoredValue& value);
};

/// The bytes of a text, the terminator left out unless it is in the view.
std::string BytesOf(std::wstring_view text);

/// Values by name.
using StoredValues = std::map<std::wstring, StoredValue>;
/// The values of a key and of all keys below it, by the native path from there; the key itself is "".
using StoredTree = std::map<std::wstring, StoredValues>;

/// A key of a test's own, empty at first and gone at the end. Everything here is done by the platform's calls alone, so
/// it also tells what `ORegistry` has done. Subkeys are native paths.
class ScratchKey {
public:
    ScratchKey();
    ScratchKey(const ScratchKey&) = delete;
    ScratchKey& operator=(const ScratchKey&) = delete;
    ~ScratchKey();

    /// "HKEY_CURRENT_USER\" and the key.
    std::wstring NativePath() const;
    /// The same as a canonical path, and with a slash and `rest`.
    OString Path() const;
    OString Path(const wchar_t* rest) const { return Path() + L"/" + rest; }

    OHandle<::RegCloseKey, HKEY> Open(const wchar_t* subkey, REGSAM access = KEY_ALL_ACCESS) const;
    void Create(const wchar_t* subkey) const;
    bool Has(const wchar_t* subkey) const;

    void Set(const wchar_t* subkey, const wchar_t* name, DWORD type, std::string_view bytes) const;
    void SetText(const wchar_t* subkey, const wchar_t* name, const wchar_t* text) const;
    void SetNumber(const wchar_t* subkey, const wchar_t* name, DWORD number) const;
    std::optional<StoredValue> Get(const wchar_t* subkey, const wchar_t* name) const;

    /// All that is below a subkey.
    StoredTree Tree(const wchar_t* subkey = L"") const;

private:
    std::wstring _path;
};
