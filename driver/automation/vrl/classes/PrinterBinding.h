// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/core/XPrinter.h"
#include "vrl/core/XPrinterRef.h"
#include "vrl/driver/DriverInterface.h"
#include "vrl/frame/Automation.h"
#include "vrl/frame/Bound.h"

/// One count on a printer, for those who ask its driver interface.
struct PrinterDriverRef {
    explicit PrinterDriverRef(XPrinterRef counted) noexcept
        : xPrinter(std::move(counted)), driver(xPrinter->GetDriver())
    {
    }

    explicit operator bool() const noexcept { return driver != nullptr; }
    DriverInterface& operator*() const noexcept { return *driver; }
    DriverInterface* operator->() const noexcept { return driver; }

    XPrinterRef xPrinter;
    DriverInterface* driver; ///< borrowed; lives as long as the printer
};

/// The text that `printer` gives as its name; `result` is the result of reading it. Throws `InvalidArgument_E` for
/// null.
HRESULT ReadPrinterName(IPrinter* printer, OString& name);

inline const XPrinterRef& PrinterOf(const XPrinterRef& binding) noexcept
{
    return binding;
}
inline const XPrinterRef& PrinterOf(const PrinterDriverRef& binding) noexcept
{
    return binding.xPrinter;
}

/// How the parts of a printer are bound to the printer that an `IPrinter` names. The result is that of reading its
/// name, if that fails. Both throw `InvalidArgument_E` for a null `printer`; what `XPrinterPool::Acquire` throws goes
/// through, and leaves the object unbound. As long as the name is the same but for the case of the letters a to z, no
/// reader finds the object unbound in between, and no lock of the old printer is waited for.

/// Keeps the old printer if no name can be read.
template <class Binding>
HRESULT RebindToPrinter(Bound<Binding>& bound, IPrinter* printer)
{
    OString name;
    const HRESULT result = ReadPrinterName(printer, name);
    if (FAILED(result)) return result;
    try {
        XPrinterRef xPrinter = XPrinterRef::Acquire(name);
        const auto old = bound.Get();
        if (!old || PrinterOf(*old).Get() != xPrinter.Get()) bound.Set(Binding(std::move(xPrinter)));
    } catch (...) {
        bound.Clear();
        throw;
    }
    return S_OK;
}

/// Lets go of the old printer if no name can be read.
template <class Binding>
HRESULT BindToPrinter(Bound<Binding>& bound, IPrinter* printer)
try {
    const HRESULT result = RebindToPrinter(bound, printer);
    if (FAILED(result)) bound.Clear();
    return result;
} catch (...) {
    bound.Clear();
    throw;
}
