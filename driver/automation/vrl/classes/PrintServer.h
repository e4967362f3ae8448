// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

/// This machine: enumerates its printers and tells what it is. No state; every member asks the system anew.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL.
class PrintServer final : public AutomationObject<PrintServer, IPrintServer> {
public:
    STDMETHODIMP EnumeratePrinters(IPrinters* argPrinter, VARIANT argFilter) noexcept override;
    STDMETHODIMP get_Name(BSTR* retName) noexcept override;
    STDMETHODIMP get_NetworkDomain(BSTR* retNetworkDomain) noexcept override;
    STDMETHODIMP get_NetworkWorkgroup(BSTR* retNetworkWorkgroup) noexcept override;
    STDMETHODIMP get_OSName(BSTR* retOSName) noexcept override;
    STDMETHODIMP get_OSVersion(BSTR* retOSVersion) noexcept override;
    STDMETHODIMP get_OSEdition(BSTR* retOSEdition) noexcept override;
    STDMETHODIMP get_ProcessorCount(long* retProcessorCount) noexcept override;
    STDMETHODIMP get_ProcessorName(BSTR* retProcessorName) noexcept override;
    STDMETHODIMP get_DNSDomain(BSTR* retDNSDomain) noexcept override;
    STDMETHODIMP get_DNSName(BSTR* retDNSName) noexcept override;
    STDMETHODIMP get_ProcessorArchitecture(BSTR* retProcessorArchitecture) noexcept override;
    STDMETHODIMP get_Description(BSTR* retDescription) noexcept override;
};
