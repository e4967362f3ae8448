// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

#include <array>
#include <cwchar>
#include <string>

#include "foundation/text/Hex.h"

namespace {

/// One of the places where keys hang, by its digit in a canonical path.
struct Root {
    HKEY key;
    const wchar_t* nativeName;
};

const std::array roots{
    Root{HKEY_CLASSES_ROOT,  L"HKEY_CLASSES_ROOT" },
    Root{HKEY_CURRENT_USER,  L"HKEY_CURRENT_USER" },
    Root{HKEY_LOCAL_MACHINE, L"HKEY_LOCAL_MACHINE"},
    Root{HKEY_USERS,         L"HKEY_USERS"        },
};

struct Alias {
    const wchar_t* name;
    const wchar_t* canonical;
};

constexpr std::array aliases{
    Alias{L"CLASSES_ROOT:",  L"0:"                                                 },
    Alias{L"CURRENT_USER:",  L"1:"                                                 },
    Alias{L"LOCAL_MACHINE:", L"2:"                                                 },
    Alias{L"USERS:",         L"3:"                                                 },
    Alias{L"USER:",          L"1:SOFTWARE/Marrowfield Labs/Drivers"                },
    Alias{L"LOCAL:",         L"2:SOFTWARE/Marrowfield Labs/Drivers"                },
    Alias{L"GLOBAL:",        L"2:SOFTWARE/Marrowfield Labs/Drivers/Global Settings"},
    Alias{L"PRINT:",         L"2:SYSTEM/CurrentControlSet/Control/Print"           },
};

struct Replacement {
    const wchar_t* written;
    const wchar_t* meant;
};

/// What stands for a character of a name in a path, and the native separator.
constexpr std::array escapes{
    Replacement{L"%%", L"%25"},
    Replacement{L"//", L"%2F"},
    Replacement{L"::", L"%3A"},
    Replacement{L"\\", L"/"  },
};

/// What `Escape` writes for a character of a name; the percent sign first, as the others bring some in.
constexpr std::array escapedCharacters{
    Replacement{L"%", L"%25"},
    Replacement{L"/", L"%2F"},
    Replacement{L":", L"%3A"},
};

template <size_t count>
OString Replaced(OString text, const std::array<Replacement, count>& replacements)
{
    for (const Replacement& row : replacements) text.Replace(row.written, row.meant);
    return text;
}

/// A path with every %XX turned into the character that it stands for.
OString Unescaped(const OString& path)
{
    constexpr size_t digits = 2;
    std::wstring plain;
    for (const wchar_t* position = path.wstring(); *position != 0; ++position) {
        if (*position == L'%' && Hex::IsHexPair(position + 1)) {
            plain += static_cast<wchar_t>(Hex::ReadPair(position + 1));
            position += digits;
        } else {
            plain += *position;
        }
    }
    return plain.c_str();
}

OString WithoutTrailing(const OString& text, wchar_t character)
{
    const wchar_t* const wide = text.wstring();
    int length = text.Length();
    while (length > 0 && wide[length - 1] == character) --length;
    return text.Left(length);
}

bool EndsWith(const OString& text, wchar_t character)
{
    const wchar_t* const wide = text.wstring();
    const int length = text.Length();
    return length > 0 && wide[length - 1] == character;
}

OString Joined(const OString& key, const OString& component)
{
    return key.IsEmpty() || EndsWith(key, L':') ? key + component : key + L'/' + component;
}

/// Splits a path without undoing escapes or aliases. False without a separator.
bool Split(const OString& base, const OString& path, OString& key, OString& name)
{
    const bool keyOnly = path.IsEmpty();
    const OString value = Replaced(path, escapes);
    OString full = value;
    // Deliberate: a colon at the very start makes no root.
    if (value.Find(L':', 1) < 0) {
        full = WithoutTrailing(Replaced(base, escapes), L'/');
        if (!keyOnly) full = Joined(full, value);
    }

    const int split = full.ReverseFindOneOf(L":/");
    if (split < 0) return false;
    const bool keepsSeparator = full.Mid(split, 1) == L":";
    key = keyOnly ? full : full.Left(split + (keepsSeparator ? 1 : 0));
    name = keyOnly ? OString() : full.Mid(split + 1);
    return true;
}

/// The root that a canonical path starts with, null if there is none; `rest` is what follows the colon.
const Root* RootOf(const OString& key, OString& rest)
{
    const wchar_t* const text = key.wstring();
    const int colon = key.Find(L':');
    if (colon <= 0) return nullptr;

    size_t number = 0;
    for (int index = 0; index < colon; ++index) {
        if (text[index] < L'0' || text[index] > L'9') return nullptr;
        number = number * 10 + static_cast<size_t>(text[index] - L'0');
        if (number >= roots.size()) return nullptr;
    }
    rest = key.Mid(colon + 1);
    return &roots[number];
}

/// What follows the root of a canonical path, in the platform's notation.
OString NativeSubkey(OString rest)
{
    rest.Replace(L"/", L"\\");
    return WithoutTrailing(Unescaped(rest), L'\\');
}

/// What follows the name of a root and a backslash in `path`, null if it doesn't start with them.
const wchar_t* AfterRoot(const OString& path, const wchar_t* rootName)
{
    const int length = static_cast<int>(std::wcslen(rootName));
    if (path.Left(length).CompareNoCase(rootName) != 0) return nullptr;
    const wchar_t* const rest = path.wstring() + length;
    if (*rest == 0) return rest;
    return *rest == L'\\' ? rest + 1 : nullptr;
}

} // namespace

void ORegistry::ExpandAliases(OString& path) const noexcept
{
    Contained(false, [&] {
        const int colon = path.Find(L':');
        if (colon < 0) return false;

        const OString head = path.Left(colon + 1);
        const OString rest = path.Mid(colon + 1);
        for (const Alias& alias : aliases) {
            if (head.CompareNoCase(alias.name) != 0) continue;
            path = rest.IsEmpty() ? OString(alias.canonical) : Joined(alias.canonical, rest);
            return true;
        }
        return false;
    });
}

OString ORegistry::Escape(const OString& name)
{
    return Replaced(name, escapedCharacters);
}

bool ORegistry::ParsePath(const OString& key, const OString& value, OString& retKey, OString& retName) const noexcept
{
    return Contained(false, [&] {
        OString name;
        if (!Split(key, value, retKey, name)) return false;
        retName = Unescaped(name);
        ExpandAliases(retKey);
        return true;
    });
}

bool ORegistry::ParseKey(const OString& path, OString& retKey) const
{
    // With a last component appended, all of the path is the key.
    OString name;
    return ParsePath(_basePath, path + L"/*", retKey, name);
}

bool ORegistry::HasWildcard(const OString& path) const
{
    // Before escapes are undone: "%2A" and "%3F" are no wildcards.
    OString key;
    OString name;
    return Split(_basePath, path, key, name) && name.FindOneOf(L"*?") >= 0;
}

OString ORegistry::SubKey(const OString& key, const OString& name)
{
    return Joined(key, Escape(name));
}

bool ORegistry::Resolve(const OString& key, HKEY& retRoot, OString& retSubkey) noexcept
{
    return Contained(false, [&] {
        OString rest;
        const Root* const root = RootOf(key, rest);
        if (!root) return false;
        retRoot = root->key;
        retSubkey = NativeSubkey(rest);
        return !retSubkey.IsEmpty();
    });
}

OString ORegistry::GetNativePath(const OString& path) const noexcept
{
    return Contained(OString(), [&] {
        OString key;
        return ParseKey(path, key) ? NativePathOf(key) : OString();
    });
}

OString ORegistry::NativePathOf(const OString& key)
{
    OString rest;
    const Root* const root = RootOf(key, rest);
    return root ? OString(root->nativeName) + L"\\" + NativeSubkey(rest) : OString();
}

OString ORegistry::FromNativePath(const OString& nativePath) noexcept
{
    return Contained(OString(), [&] {
        for (size_t number = 0; number < roots.size(); ++number) {
            const wchar_t* const rest = AfterRoot(nativePath, roots[number].nativeName);
            if (!rest) continue;
            OString path = Escape(rest);
            path.Replace(L"\\", L"/");
            return OString(static_cast<int>(number)) + L":" + path;
        }
        return OString();
    });
}
