// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

/// A collection of printers that the caller fills. It holds a reference on each entry.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL.
class Printers final : public AutomationObject<Printers, IPrinters> {
public:
    STDMETHODIMP get__NewEnum(IUnknown** retEnum) noexcept override;
    STDMETHODIMP get_Item(VARIANT Index, IPrinter** retPrinter) noexcept override;
    STDMETHODIMP get_Count(long* retCount) noexcept override;
    STDMETHODIMP Create(IPrinter** retPrinter) noexcept override;
    STDMETHODIMP Add(VARIANT argPrinter) noexcept override;
    STDMETHODIMP Remove(VARIANT argPrinter) noexcept override;
    STDMETHODIMP RemoveAll() noexcept override;
};
