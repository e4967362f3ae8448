// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"
#include "foundation/text/OString.h"
#include "foundation/text/OStringArray.h"

/// An open registry key.
using ORegistryKey = OHandle<::RegCloseKey, HKEY>;

/// The registry by paths: one text names a root, a key and a value, as in "LOCAL:Labels/Width".
///
/// A value path ends in the name of the value, and with a '/' at its end means the key's default value; a key path
/// names keys only and has no '/' at its end. Both are appended to the base path, unless they have a root of their own.
/// docs/registry-text.md tells the language: roots, aliases, escapes, wildcards.
///
/// Ownership: a value that holds the base path. Each operation opens what it needs and closes it again.
/// Errors:    what can't be done gives -1, false, an empty text or the default; nothing is thrown, and the thread's
/// last
///            error says nothing.
/// Threading: none, as `OString`. Objects are cheap: each user makes its own.
class ORegistry {
public:
    ORegistry() noexcept = default;
    explicit ORegistry(const OString& basePath) : _basePath(basePath) {}
    ORegistry(const ORegistry&) = default;
    ORegistry& operator=(const ORegistry&) = default;
    virtual ~ORegistry();

    /// Replaces an alias at the head of `path`, in any case, by its canonical form.
    virtual void ExpandAliases(OString& path) const noexcept;

    /// Opens a key given as a canonical path for reading and writing, or only for reading where writing isn't allowed;
    /// makes a missing one if `create`. Null if that fails.
    virtual ORegistryKey OpenKey(const OString& key, bool create) const noexcept;

    const OString& GetBasePath() const noexcept { return _basePath; }
    void SetBasePath(const OString& basePath) { _basePath = basePath; }

public: // The path language.
    /// `name` with '%', '/' and ':' escaped, as a component of a path.
    static OString Escape(const OString& name);

    /// Splits a value path, appended to `key` if it has no root, into the canonical key and the plain name of the
    /// value. An empty `value` makes all of `key` the key, with an empty name. False if there is neither '/' nor ':'.
    bool ParsePath(const OString& key, const OString& value, OString& retKey, OString& retName) const noexcept;

    /// Root and native path of a canonical key. False without a root, and for a root alone.
    static bool Resolve(const OString& key, HKEY& retRoot, OString& retSubkey) noexcept;

    /// A key path in the platform's notation, such as "HKEY_LOCAL_MACHINE\SOFTWARE"; empty if it has no root.
    OString GetNativePath(const OString& path) const noexcept;
    /// The canonical path of a key in the platform's notation; empty if it doesn't start with one of the four roots.
    static OString FromNativePath(const OString& nativePath) noexcept;

public: // Values. A write makes the key if need be.
    /// Writes `count` bytes and gives their number, or -1.
    int SetBinary(const OString& path, const void* data, int count, DWORD type = REG_BINARY) const noexcept;
    /// Copies as much of a value as fits into `size` bytes and gives the length of the whole, or -1. The stored type
    /// isn't compared with `type`.
    int GetBinary(const OString& path, void* buffer, int size, DWORD type = REG_BINARY) const noexcept;

    /// A REG_SZ with its terminator.
    bool SetString(const OString& path, const OString& text) const noexcept;
    /// The text in the first 8192 bytes of a value of any type; the default if it is missing or empty.
    OString GetString(const OString& path, const OString& defaultText = OString()) const noexcept;

    /// Numbers are a REG_DWORD. A read counts if the value has exactly four bytes, whatever its type.
    bool SetDWORD(const OString& path, DWORD number) const noexcept;
    DWORD GetDWORD(const OString& path, DWORD defaultNumber) const noexcept;
    /// False leaves `*retNumber` as it is.
    bool GetDWORD(const OString& path, DWORD* retNumber) const noexcept;
    bool SetLONG(const OString& path, LONG number) const noexcept;
    LONG GetLONG(const OString& path, LONG defaultNumber) const noexcept;
    /// The low 16 bits are read.
    bool SetWORD(const OString& path, WORD number) const noexcept;
    WORD GetWORD(const OString& path, WORD defaultNumber) const noexcept;

    /// A REG_MULTI_SZ; empty texts are left out.
    bool SetStringArray(const OString& path, const OStringArray& texts) const noexcept;
    /// Sets the array to the texts in the first 8192 bytes of a value; false if it is missing or has no byte.
    bool GetStringArray(const OString& path, OStringArray& texts) const noexcept;

    /// Size in bytes and type of a value. Either place may be null.
    bool QueryValueInfo(const OString& path, DWORD* retSize, DWORD* retType) const noexcept;
    /// Bytes, or -1.
    int GetValueLength(const OString& path) const noexcept;

public: // Keys.
    bool KeyExists(const OString& path) const noexcept;
    bool KeyIsWritable(const OString& path) const noexcept;
    /// How many subkeys and values a key has. Either place may be null.
    bool QueryKeyInfo(const OString& path, DWORD* retSubkeys, DWORD* retValues) const noexcept;

    /// Set `names` to those of the subkeys or values of a key, in ascending order, and give their number; -1 if the key
    /// can't be opened. Names of more than 260 characters end the list.
    int EnumKeys(const OString& path, OStringArray& names) const noexcept;
    int EnumValues(const OString& path, OStringArray& names) const noexcept;
    /// The same for the names that match the last component, if that has '*' or '?', in the key before it.
    int FindKeys(const OString& path, OStringArray& names) const noexcept;
    int FindValues(const OString& path, OStringArray& names) const noexcept;

    /// Deletes the key, or, if there is none, the value that `path` names. A key with subkeys goes only if `recursive`.
    bool DeleteKey(const OString& path, bool recursive) const noexcept;
    /// The same with all that is below; a last component with '*' or '?' deletes the subkeys and values that match.
    /// False if one of them stays.
    bool Delete(const OString& path) const noexcept;

    static constexpr DWORD securityInherit = 0;      ///< what the key above gives
    static constexpr DWORD securityReadOnly = 1;     ///< everyone reads; administrators and the system may do all
    static constexpr DWORD securityOpen = 2;         ///< everyone may do all
    static constexpr DWORD securityPrivate = 3;      ///< administrators and the system only, as any other number
    static constexpr DWORD securityCreate = 0x1000;  ///< makes a missing key
    static constexpr DWORD securityDescend = 0x2000; ///< all keys below inherit, so that the new list reaches them
    /// Gives a key one of the access lists above.
    bool SetSecurity(const OString& path, DWORD flags) const noexcept;

public: // Keys as text, in the grammar of the platform's registry files: see docs/registry-text.md.
    static constexpr DWORD exportDelete = 1;   ///< the text first deletes the key
    static constexpr DWORD exportChecksum = 2; ///< stores the lines' CRC-32 in the key, as the value "(CRC32)"
    /// Appends a key, its values and all below it. False only if the path doesn't parse. The base path becomes the last
    /// key written.
    bool ExportKey(const OString& path, OStringArray& lines, DWORD flags) noexcept;

    static constexpr DWORD importReplace = 1; ///< empties each key before it is filled
    /// Does what the lines say; one that doesn't fit is skipped. Always true. The base path becomes the last key
    /// filled.
    bool ImportLines(const OStringArray& lines, DWORD flags) noexcept;

private:
    static constexpr int readLimit = 8192; ///< bytes of a value that count as text

    /// Runs `body`; if it throws, which is for want of memory, gives `failure`.
    template <typename Result, typename Body>
    static Result Contained(Result failure, Body&& body) noexcept
    {
        try {
            return body();
        } catch (...) {
            return failure;
        }
    }

    static OString SubKey(const OString& key, const OString& name);
    bool ParseKey(const OString& path, OString& retKey) const;
    bool HasWildcard(const OString& path) const;

    // Keys given as canonical paths.
    static OString NativePathOf(const OString& key);
    bool QueryKey(const OString& key, DWORD* retSubkeys, DWORD* retValues) const;
    int ListKeys(const OString& key, OStringArray& names) const;
    int ListValues(const OString& key, OStringArray& names) const;
    using NameLister = int (ORegistry::*)(const OString& key, OStringArray& names) const;
    int EnumNames(const OString& path, OStringArray& names, NameLister list) const noexcept;
    int FindNames(const OString& path, OStringArray& names, NameLister list) const noexcept;
    bool DeleteTree(const OString& key, bool recursive) const;
    bool DeleteValue(const OString& key, const OString& name) const;
    bool SetKeySecurity(const OString& key, DWORD flags) const;
    void AppendKey(const OString& key, OStringArray& lines);

    OString _basePath; ///< what paths without a root are appended to
};
