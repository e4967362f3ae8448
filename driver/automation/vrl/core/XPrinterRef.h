// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/core/XPrinterPool.h"

#include <utility>

/// One count on an `XPrinter`, given back to the pool at the end.
class XPrinterRef {
public:
    XPrinterRef() noexcept = default;
    XPrinterRef(XPrinterRef&& other) noexcept : _xPrinter(std::exchange(other._xPrinter, nullptr)) {}
    XPrinterRef& operator=(XPrinterRef&& other) noexcept
    {
        if (this != &other) {
            Release();
            _xPrinter = std::exchange(other._xPrinter, nullptr);
        }
        return *this;
    }
    ~XPrinterRef() { Release(); }

    /// Counts the printer of that name. Throws as `XPrinterPool::Acquire` does.
    static XPrinterRef Acquire(const OString& name)
    {
        XPrinterRef reference;
        reference._xPrinter = XPrinterPool::Acquire(name);
        return reference;
    }

    /// Gives the count back; the reference is empty then.
    void Release() noexcept
    {
        if (XPrinter* const old = std::exchange(_xPrinter, nullptr)) XPrinterPool::Release(old);
    }

    explicit operator bool() const noexcept { return _xPrinter != nullptr; }
    XPrinter& operator*() const noexcept { return *_xPrinter; }
    XPrinter* operator->() const noexcept { return _xPrinter; }
    XPrinter* Get() const noexcept { return _xPrinter; }

private:
    XPrinter* _xPrinter = nullptr;
};
