// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintServer.h"

STDMETHODIMP PrintServer::EnumeratePrinters(IPrinters*, VARIANT) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintServer::get_Name(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintServer::get_NetworkDomain(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintServer::get_NetworkWorkgroup(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintServer::get_OSName(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintServer::get_OSVersion(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintServer::get_OSEdition(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintServer::get_ProcessorCount(long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintServer::get_ProcessorName(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintServer::get_DNSDomain(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintServer::get_DNSName(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintServer::get_ProcessorArchitecture(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintServer::get_Description(BSTR*) noexcept
{
    return E_NOTIMPL;
}
