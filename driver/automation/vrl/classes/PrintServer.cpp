// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintServer.h"

#include "foundation/registry/ORegistry.h"
#include "foundation/system/ComputerNames.h"
#include "foundation/system/OSInfo.h"
#include "vrl/frame/ForeignPtr.h"
#include "vrl/spooler/Spooler.h"

namespace {

constexpr DWORD withoutFilter = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;

constexpr const wchar_t* processorNameValue =
    L"LOCAL_MACHINE:HARDWARE/DESCRIPTION/System/CentralProcessor/0/ProcessorNameString";
constexpr const wchar_t* descriptionValue =
    L"LOCAL_MACHINE:SYSTEM/CurrentControlSet/Services/lanmanserver/parameters/srvcomment";

/// Empty if there is none, or if it has more than 511 characters.
OString EnvironmentText(const wchar_t* variable)
{
    constexpr DWORD size = 512;
    wchar_t text[size];
    const DWORD length = ::GetEnvironmentVariableW(variable, text, size);
    return length > 0 && length < size ? OString(text) : OString();
}

OString ProcessorName()
{
    const OString name = ORegistry().GetString(processorNameValue);
    return name.IsEmpty() ? EnvironmentText(L"PROCESSOR_IDENTIFIER") : name;
}

OString VersionText()
{
    const OSInfo info = GetOSInfo();
    OString version;
    version.Format(L"%u.%u", info.major, info.minor);
    return version;
}

DWORD ProcessorCount()
{
    SYSTEM_INFO info{};
    ::GetSystemInfo(&info);
    return info.dwNumberOfProcessors;
}

/// The flags that a filter stands for; a failure is that of one of its properties.
HRESULT ReadFilter(IPrintersFilter& filter, DWORD& flags)
{
    VARIANT_BOOL local = VARIANT_FALSE;
    VARIANT_BOOL network = VARIANT_FALSE;
    VARIANT_BOOL shared = VARIANT_FALSE;
    HRESULT result = filter.get_Local(&local);
    if (SUCCEEDED(result)) result = filter.get_Network(&network);
    if (SUCCEEDED(result)) result = filter.get_Shared(&shared);
    if (FAILED(result)) return result;

    // Deliberate: any value but VARIANT_TRUE is false.
    flags = 0;
    if (local == VARIANT_TRUE) flags |= PRINTER_ENUM_LOCAL;
    if (network == VARIANT_TRUE) flags |= PRINTER_ENUM_CONNECTIONS;
    if (shared == VARIANT_TRUE) flags |= flags == 0 ? PRINTER_ENUM_LOCAL | PRINTER_ENUM_SHARED : PRINTER_ENUM_SHARED;
    return S_OK;
}

/// The flags of EnumPrintersW that the optional argument stands for. Throws `InvalidArgument_E`.
HRESULT FlagsOf(const VARIANT& argument, DWORD& flags)
{
    switch (argument.vt) {
    case VT_EMPTY:
    case VT_ERROR: // an omitted argument
        flags = withoutFilter;
        return S_OK;
    case VT_DISPATCH: {
        // Asked for its interface, as another object, or one behind a proxy, has other members in these places.
        const auto filter = ForeignPtr<IPrintersFilter>::Query(argument.pdispVal, __uuidof(IPrintersFilter));
        if (!filter) throw InvalidArgument_E();
        return ReadFilter(*filter.Get(), flags);
    }
    default:
        throw InvalidArgument_E();
    }
}

/// The printers at level 2; `count` is their number. Throws `SystemError_E`.
SpoolerBuffer ListPrinters(DWORD flags, DWORD& count)
{
    DWORD needed = 0;
    const bool listed = ::EnumPrintersW(flags, nullptr, 2, nullptr, 0, &needed, &count);
    if (!listed && ::GetLastError() != ERROR_INSUFFICIENT_BUFFER) throw SystemError_E();
    count = 0;
    if (needed == 0) return {};
    SpoolerBuffer printers(needed);
    if (!printers) return {};
    if (!::EnumPrintersW(flags, nullptr, 2, printers.Data(), needed, &needed, &count)) throw SystemError_E();
    return printers;
}

void AddTo(IPrinters& collection, const wchar_t* printerName)
{
    const OBstr name = ToBstr(OString(printerName));
    VARIANT argument;
    ::VariantInit(&argument);
    argument.vt = VT_BSTR;
    argument.bstrVal = name.Get();
    // Deliberate: a printer that can't be opened is left out without a word.
    collection.Add(argument);
}

} // namespace

STDMETHODIMP PrintServer::EnumeratePrinters(IPrinters* argPrinter, VARIANT argFilter) noexcept
{
    return Guard("PrintServer::EnumeratePrinters", [&]() -> HRESULT {
        if (!argPrinter) throw InvalidArgument_E();
        DWORD flags = 0;
        const HRESULT result = FlagsOf(argFilter, flags);
        if (FAILED(result)) return result;

        DWORD count = 0;
        const SpoolerBuffer printers = ListPrinters(flags, count);
        for (DWORD index = 0; index < count; ++index) {
            AddTo(*argPrinter, printers.As<PRINTER_INFO_2W>()[index].pPrinterName);
        }
        return S_OK;
    });
}

template <class Out, class Query>
HRESULT PrintServer::Tell(const char* function, Out* out, Query query) noexcept
{
    return Guard(function, [&] {
        CheckOut(out);
        *out = {};
        GiveValue(out, query());
    });
}

STDMETHODIMP PrintServer::get_Name(BSTR* retName) noexcept
{
    return Tell("PrintServer::get_Name", retName, [] { return GetComputerName(ComputerNameNetBIOS); });
}

STDMETHODIMP PrintServer::get_NetworkDomain(BSTR* retNetworkDomain) noexcept
{
    return Tell("PrintServer::get_NetworkDomain", retNetworkDomain, [] { return GetJoinedName(NetSetupDomainName); });
}

STDMETHODIMP PrintServer::get_NetworkWorkgroup(BSTR* retNetworkWorkgroup) noexcept
{
    return Tell("PrintServer::get_NetworkWorkgroup", retNetworkWorkgroup,
                [] { return GetJoinedName(NetSetupWorkgroupName); });
}

STDMETHODIMP PrintServer::get_OSName(BSTR* retOSName) noexcept
{
    return Tell("PrintServer::get_OSName", retOSName, [] { return GetOSInfo().name; });
}

STDMETHODIMP PrintServer::get_OSVersion(BSTR* retOSVersion) noexcept
{
    return Tell("PrintServer::get_OSVersion", retOSVersion, VersionText);
}

STDMETHODIMP PrintServer::get_OSEdition(BSTR* retOSEdition) noexcept
{
    return Tell("PrintServer::get_OSEdition", retOSEdition, [] { return GetOSInfo().edition; });
}

STDMETHODIMP PrintServer::get_ProcessorCount(long* retProcessorCount) noexcept
{
    return Tell("PrintServer::get_ProcessorCount", retProcessorCount, ProcessorCount);
}

STDMETHODIMP PrintServer::get_ProcessorName(BSTR* retProcessorName) noexcept
{
    return Tell("PrintServer::get_ProcessorName", retProcessorName, ProcessorName);
}

STDMETHODIMP PrintServer::get_DNSDomain(BSTR* retDNSDomain) noexcept
{
    return Tell("PrintServer::get_DNSDomain", retDNSDomain, [] { return GetComputerName(ComputerNameDnsDomain); });
}

STDMETHODIMP PrintServer::get_DNSName(BSTR* retDNSName) noexcept
{
    return Tell("PrintServer::get_DNSName", retDNSName, [] { return GetComputerName(ComputerNameDnsFullyQualified); });
}

STDMETHODIMP PrintServer::get_ProcessorArchitecture(BSTR* retProcessorArchitecture) noexcept
{
    return Tell("PrintServer::get_ProcessorArchitecture", retProcessorArchitecture,
                [] { return EnvironmentText(L"PROCESSOR_ARCHITECTURE"); });
}

STDMETHODIMP PrintServer::get_Description(BSTR* retDescription) noexcept
{
    return Tell("PrintServer::get_Description", retDescription, [] { return ORegistry().GetString(descriptionValue); });
}
