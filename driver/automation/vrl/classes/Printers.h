// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/frame/Collection.h"

/// A collection of printers that the caller fills, with ours or with objects of the caller's own. Names are compared
/// case-sensitively here, unlike in the pool of printers.
///
/// Ownership: one reference on each entry. An object that is handed over as an argument keeps one more for good.
/// Threading: any thread.
class Printers final : public AutomationObject<Printers, IPrinters> {
public:
    /// As everywhere, but for `Create`: a late-bound caller could not take the first reference before his result is
    /// cleared, so it is taken for him.
    STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* returned,
                        EXCEPINFO* exception, UINT* argumentError) noexcept override;

    STDMETHODIMP get__NewEnum(IUnknown** retEnum) noexcept override;
    /// By number from 1 on, or by name.
    STDMETHODIMP get_Item(VARIANT Index, IPrinter** retPrinter) noexcept override;
    STDMETHODIMP get_Count(long* retCount) noexcept override;
    /// A new `Printer` that is bound to nothing and not in the collection, with a reference count of 0: the caller
    /// takes the first reference himself.
    STDMETHODIMP Create(IPrinter** retPrinter) noexcept override;
    /// Adds an object, or a new `Printer` of the name given.
    STDMETHODIMP Add(VARIANT argPrinter) noexcept override;
    /// Removes the first entry that has the name given, or the name of the object given.
    STDMETHODIMP Remove(VARIANT argPrinter) noexcept override;
    STDMETHODIMP RemoveAll() noexcept override;

private:
    using Base = AutomationObject<Printers, IPrinters>;
    using Entry = Collection<IPrinter>::Entry;

    HRESULT AddByName(const OString& name);
    HRESULT FindByName(const OString& name, Entry& found) const;

    Collection<IPrinter> _printers;
};
