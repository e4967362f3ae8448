// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"

#include <string>

/// Gives this process an empty HKEY_CLASSES_ROOT of its own, and takes it away at the end.
class ScratchClassesRoot {
public:
    /// With REG_OPTION_VOLATILE no lasting key can be made in it: registering fails with ERROR_CHILD_MUST_BE_VOLATILE.
    explicit ScratchClassesRoot(DWORD options = REG_OPTION_NON_VOLATILE);
    ~ScratchClassesRoot();
    ScratchClassesRoot(const ScratchClassesRoot&) = delete;
    ScratchClassesRoot& operator=(const ScratchClassesRoot&) = delete;

    /// Makes a key; in a volatile one nothing lasting can be made either.
    void Create(const wchar_t* path, DWORD options = REG_OPTION_NON_VOLATILE) const;
    void SetText(const wchar_t* path, const wchar_t* name, const wchar_t* text) const;

    /// The text of a value, the default value at first; "none" if there is none.
    std::string Text(const std::string& path, const std::string& name = "") const;

    /// Deletes the root under the product's feet: whatever touches it fails with ERROR_KEY_DELETED.
    void Doom() const;

private:
    OHandle<::RegCloseKey, HKEY> _key;
};
