// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

#include <aclapi.h>
#include <sddl.h>

namespace {

constexpr DWORD levelMask = 0xFF;

constexpr const wchar_t* everyoneReads = L"(A;OICI;KR;;;WD)";
constexpr const wchar_t* everyoneMay = L"(A;OICI;KA;;;WD)";
constexpr const wchar_t* administratorsMay = L"(A;OICI;KA;;;BA)";
constexpr const wchar_t* systemMay = L"(A;OICI;KA;;;SY)";

OString AccessList(DWORD level)
{
    // Protected, so that a key made with it takes nothing from above either.
    OString list(L"D:P");
    if (level == ORegistry::securityInherit) return L"D:";
    if (level == ORegistry::securityReadOnly) list += everyoneReads;
    if (level == ORegistry::securityOpen) list += everyoneMay;
    list += administratorsMay;
    list += systemMay;
    return list;
}

/// The access list of one level in the platform's form.
class SecurityAttributes {
public:
    explicit SecurityAttributes(DWORD level)
    {
        ::ConvertStringSecurityDescriptorToSecurityDescriptorW(AccessList(level).wstring(), SDDL_REVISION_1,
                                                               _descriptor.Receive(), nullptr);
        _attributes.lpSecurityDescriptor = _descriptor.Get();
    }

    /// Whether the platform has taken the list.
    explicit operator bool() const noexcept { return static_cast<bool>(_descriptor); }

    SECURITY_ATTRIBUTES* Get() noexcept { return &_attributes; }

    ACL* List() const noexcept
    {
        BOOL present = FALSE;
        BOOL defaulted = FALSE;
        ACL* list = nullptr;
        ::GetSecurityDescriptorDacl(_descriptor.Get(), &present, &list, &defaulted);
        return list;
    }

private:
    OLocalMemory _descriptor;
    SECURITY_ATTRIBUTES _attributes{sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
};

} // namespace

bool ORegistry::SetSecurity(const OString& path, DWORD flags) const noexcept
{
    return Contained(false, [&] {
        OString key;
        return ParseKey(path, key) && SetKeySecurity(key, flags);
    });
}

bool ORegistry::SetKeySecurity(const OString& key, DWORD flags) const
{
    if (flags & securityDescend) {
        OStringArray names;
        ListKeys(key, names);
        for (int index = 0; index < names.GetSize(); ++index) {
            SetKeySecurity(SubKey(key, names[index]), securityInherit | securityDescend);
        }
    }

    HKEY root = nullptr;
    OString subkey;
    if (!Resolve(key, root, subkey)) return false;
    const DWORD level = flags & levelMask;
    SecurityAttributes attributes(level);
    // A key without any list would be open to everyone.
    if (!attributes) return false;

    ORegistryKey opened;
    if (::RegOpenKeyExW(root, subkey.wstring(), 0, KEY_ALL_ACCESS, opened.Receive()) == ERROR_SUCCESS) {
        const SECURITY_INFORMATION from =
            level == securityInherit ? UNPROTECTED_DACL_SECURITY_INFORMATION : PROTECTED_DACL_SECURITY_INFORMATION;
        // Deliberate: whether the platform takes the list isn't asked.
        ::SetSecurityInfo(opened.Get(), SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION | from, nullptr, nullptr,
                          attributes.List(), nullptr);
        return true;
    }
    if (!(flags & securityCreate)) return false;
    return ::RegCreateKeyExW(root, subkey.wstring(), 0, nullptr, 0, KEY_ALL_ACCESS,
                             level == securityInherit ? nullptr : attributes.Get(), opened.Receive(),
                             nullptr) == ERROR_SUCCESS;
}
