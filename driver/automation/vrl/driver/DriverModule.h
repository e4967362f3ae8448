// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/ImportedFunction.h"
#include "foundation/OHandle.h"

/// A module of the printer driver, loaded for the life of this object.
///
/// It is held twice, so that a module that releases itself once too often is still there when its call comes back.
class DriverModule {
public:
    explicit DriverModule(const wchar_t* path) noexcept;

    /// False if it could not be loaded; then nothing is found in it.
    explicit operator bool() const noexcept { return static_cast<bool>(_module); }

    /// A function that it exports; null if it doesn't.
    template <typename Function>
    Function* Find(const char* name) const noexcept
    {
        return _module ? ImportedFunction<Function>(_module.Get(), name) : nullptr;
    }

private:
    OModuleHandle _module;
    OModuleHandle _secondHold;
};
