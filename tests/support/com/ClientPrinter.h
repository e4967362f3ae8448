// SPDX-License-Identifier: MIT
#pragma once

#include "support/com/BstrText.h"
#include "support/com/ClientObject.h"

#include "vrl/Vorlane.h"

#include <string>
#include <utility>

/// A client's own printer, which has a name and nothing else.
class ClientPrinter : public ClientObject<IPrinter> {
public:
    explicit ClientPrinter(std::wstring printerName = L"Client's") : name(std::move(printerName)) {}

    std::wstring name;
    std::function<HRESULT()> onName; ///< runs first when the name is read; a failure is the answer

    STDMETHODIMP get_Name(BSTR* retName) override
    {
        *retName = nullptr;
        const HRESULT result = onName ? onName() : S_OK;
        if (SUCCEEDED(result)) *retName = ::SysAllocStringLen(name.data(), static_cast<UINT>(name.size()));
        return result;
    }

    STDMETHODIMP Initialize(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP SendFile(BSTR, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_ServerName(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_ShareName(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_ShareName(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_PortName(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_PortName(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_ModelName(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Comment(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Comment(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Location(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Location(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Local(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Network(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Shared(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Shared(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_Queue(IPrintQueue**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Status(IPrinterStatus**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Configuration(IPrinterConfiguration**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Port(IPrinterPort**) override { return E_NOTIMPL; }
    STDMETHODIMP get_DefaultSchedule(IPrintJobSchedule**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Capabilities(IPrinterCapabilities**) override { return E_NOTIMPL; }
};
