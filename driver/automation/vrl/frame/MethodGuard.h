// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <type_traits>

/// Sets the calling thread's error information: source class `clsid`, description `text`.
void ReportError(const CLSID& clsid, const char* text) noexcept;

/// Runs `body(context)` with structured exceptions translated. What it throws becomes a result and the thread's error
/// information with the class `clsid`; nothing thrown gets out. `function` is the text "Class::Member".
HRESULT RunGuarded(const char* function, const CLSID& clsid, HRESULT (*body)(void*), void* context) noexcept;

/// The wrapper of a method: `body` does the checks and the work, and gives nothing (S_OK) or an HRESULT.
template <class Body>
HRESULT MethodGuard(const char* function, const CLSID& clsid, Body&& body) noexcept
{
    const auto run = [](void* context) -> HRESULT {
        auto& work = *static_cast<std::remove_reference_t<Body>*>(context);
        if constexpr (std::is_void_v<decltype(work())>) {
            work();
            return S_OK;
        } else {
            return work();
        }
    };
    return RunGuarded(function, clsid, run, const_cast<void*>(static_cast<const void*>(&body)));
}
