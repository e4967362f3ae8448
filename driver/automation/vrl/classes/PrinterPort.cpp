// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterPort.h"

HRESULT PrinterPort::Initialize(IPrinter* printer) noexcept
{
    return Guard("PrinterPort::Initialize", [&] { return BindToPrinter(_driver, printer); });
}

STDMETHODIMP PrinterPort::get_Name(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterPort::get_Description(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterPort::get_MonitorName(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterPort::get_Bidirectional(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterPort::get_Disconnected(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterPort::StartQuery(IQueryCommand*, long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterPort::WaitForQuery(long) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterPort::GetQueryResponse(long, IQueryResponse**) noexcept
{
    return E_NOTIMPL;
}
