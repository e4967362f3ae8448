// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/server/RegistrationScript.h"

/// Carries registration scripts into the registry and takes them out again. Any thread; the registry is the only state.
///
/// Errors: 0x8007000D for a malformed script or an unknown replacement, before anything is written; else the result of
/// the first registry call that failed, with what was written so far left standing. Unregistering something that isn't
/// there is no error.
class Registrar {
public:
    /// What %`name`% stands for in scripts from now on.
    void SetReplacement(std::wstring name, std::wstring value);

    HRESULT Register(std::wstring_view script) const noexcept;
    HRESULT Unregister(std::wstring_view script) const noexcept;

private:
    RegistrationScript::Replacements _replacements;
};
