// SPDX-License-Identifier: MIT
#include "bench/WmiPrinters.h"

#include <comutil.h>

using Microsoft::WRL::ComPtr;

WmiPrinters::WmiPrinters()
{
    ComPtr<IWbemLocator> locator;
    if (FAILED(::CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&locator)))) return;
    locator->ConnectServer(_bstr_t(L"ROOT\\CIMV2"), nullptr, nullptr, nullptr, 0, nullptr, nullptr, &_services);
}

int WmiPrinters::CountNames() const
{
    ComPtr<IEnumWbemClassObject> found;
    if (FAILED(_services->ExecQuery(_bstr_t(L"WQL"), _bstr_t(L"SELECT * FROM Win32_Printer"),
                                    WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY, nullptr, &found))) {
        return -1;
    }
    constexpr LONG patienceMs = 60'000;
    int count = 0;
    ComPtr<IWbemClassObject> printer;
    ULONG fetched = 0;
    while (found->Next(patienceMs, 1, printer.ReleaseAndGetAddressOf(), &fetched) == S_OK && fetched == 1) {
        _variant_t name;
        if (SUCCEEDED(printer->Get(L"Name", 0, &name, nullptr, nullptr))) ++count;
    }
    return count;
}
