// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintJobs.h"

STDMETHODIMP PrintJobs::get__NewEnum(IUnknown**) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobs::get_Item(long, IPrintJob**) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobs::get_Count(long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobs::Create(IPrintJob**) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobs::Add(IPrintJob*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobs::Remove(IPrintJob*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobs::RemoveAll() noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintJobs::Find(BSTR, long, IPrintJob**) noexcept
{
    return E_NOTIMPL;
}
