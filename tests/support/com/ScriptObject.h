// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <comutil.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <atomic>
#include <functional>
#include <string>
#include <vector>

/// An object whose methods are functions of the test; scripts call them by name.
/// Ownership: counted. Threads: that of the script.
class ScriptObject final : public IDispatch {
public:
    /// Gets the arguments in the order in which they are written.
    using Function = std::function<_variant_t(const std::vector<_variant_t>&)>;

    static Microsoft::WRL::ComPtr<ScriptObject> Create();

    ScriptObject(const ScriptObject&) = delete;
    ScriptObject& operator=(const ScriptObject&) = delete;

    void Add(const std::wstring& name, Function function);

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++_references; }
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO*,
                        UINT*) override;

private:
    struct Method {
        std::wstring name;
        Function function;
    };

    ScriptObject() = default;
    virtual ~ScriptObject() = default;

    std::vector<Method> _methods; // the number of each is its place, counted from 1
    std::atomic<ULONG> _references{1};
};
