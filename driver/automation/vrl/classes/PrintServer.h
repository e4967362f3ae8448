// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

/// This machine: enumerates its printers and tells what it is. No state: every member asks the system each time, and
/// gives an empty text where the system doesn't answer.
/// Threading: any thread.
class PrintServer final : public AutomationObject<PrintServer, IPrintServer> {
public:
    /// Adds the machine's printers that the filter lets through to a collection; without a filter, the local ones and
    /// the connections. One that can't be opened is left out.
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

private:
    /// A property that only has to ask the system.
    template <class Out, class Query>
    HRESULT Tell(const char* function, Out* out, Query query) noexcept;
};
