// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/server/Registrar.h"

/// Enters the application identifier, all classes and the type library of this module into the registry, in this order,
/// or takes them out again. Any thread.
///
/// Errors: that of the first step that fails, with what the steps before have done left standing. Unregistering what is
/// not registered is no error.
class ModuleRegistration {
public:
    static HRESULT Register() noexcept;
    static HRESULT Unregister() noexcept;
};
