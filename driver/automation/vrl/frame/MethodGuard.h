// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <type_traits>

/// Sets the calling thread's error information: source class `clsid`, description `text`.
void ReportError(const CLSID& clsid, const char* text) noexcept;

/// Runs `body(context)` with structured exceptions translated. What it throws becomes a result and the thread's error
/// information with the class `clsid`; nothing thrown gets out. `function` is the text "Class::Member".
HRESULT RunGuarded(const char* function, const CLSID& clsid, HRESULT (*body)(void*), void* context) noexcept;

/// Runs `body(context)` with structured exceptions translated. What it throws becomes E_OUTOFMEMORY or E_FAIL; nobody
/// is told.
HRESULT ContainBody(HRESULT (*body)(void*), void* context) noexcept;

/// `body`, which gives nothing (S_OK) or an HRESULT, as the two above take it.
template <class Body>
HRESULT RunBody(void* context)
{
    auto& body = *static_cast<std::remove_reference_t<Body>*>(context);
    if constexpr (std::is_void_v<decltype(body())>) {
        body();
        return S_OK;
    } else {
        return body();
    }
}

/// The wrapper of a method: `body` does the checks and the work, and gives nothing (S_OK) or an HRESULT.
template <class Body>
HRESULT MethodGuard(const char* function, const CLSID& clsid, Body&& body) noexcept
{
    return RunGuarded(function, clsid, RunBody<Body>, const_cast<void*>(static_cast<const void*>(&body)));
}

/// Runs code that must not let anything out and has no caller to tell: above all calls into foreign code, such as a
/// client's sink. What `body` throws, and what is raised in it, ends here as E_OUTOFMEMORY or E_FAIL.
template <class Body>
HRESULT Contain(Body&& body) noexcept
{
    return ContainBody(RunBody<Body>, const_cast<void*>(static_cast<const void*>(&body)));
}
