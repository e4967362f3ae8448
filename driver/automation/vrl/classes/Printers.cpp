// SPDX-License-Identifier: MIT
#include "vrl/classes/Printers.h"

STDMETHODIMP Printers::get__NewEnum(IUnknown**) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP Printers::get_Item(VARIANT, IPrinter**) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP Printers::get_Count(long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP Printers::Create(IPrinter**) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP Printers::Add(VARIANT) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP Printers::Remove(VARIANT) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP Printers::RemoveAll() noexcept
{
    return E_NOTIMPL;
}
