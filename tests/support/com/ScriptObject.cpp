// SPDX-License-Identifier: MIT
#include "support/com/ScriptObject.h"

#include <algorithm>

using Microsoft::WRL::ComPtr;

namespace {

/// The arguments by value, in the order in which they are written: some engines pass variables by reference.
std::vector<_variant_t> ValuesOf(const DISPPARAMS& parameters)
{
    std::vector<_variant_t> values(parameters.cArgs);
    for (UINT i = 0; i < parameters.cArgs; ++i) {
        ::VariantCopyInd(&values[i], &parameters.rgvarg[parameters.cArgs - 1 - i]);
    }
    return values;
}

} // namespace

ComPtr<ScriptObject> ScriptObject::Create()
{
    ComPtr<ScriptObject> object;
    *object.GetAddressOf() = new ScriptObject; // it is made with one reference
    return object;
}

void ScriptObject::Add(const std::wstring& name, Function function)
{
    _methods.push_back({name, std::move(function)});
}

STDMETHODIMP ScriptObject::QueryInterface(REFIID iid, void** object)
{
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) ScriptObject::Release()
{
    const ULONG left = --_references;
    if (left == 0) delete this;
    return left;
}

STDMETHODIMP ScriptObject::GetTypeInfoCount(UINT* count)
{
    *count = 0;
    return S_OK;
}

STDMETHODIMP ScriptObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids)
{
    const auto named = [&](const Method& method) { return ::lstrcmpiW(method.name.c_str(), names[0]) == 0; };
    const auto found = std::ranges::find_if(_methods, named);
    std::fill_n(ids, count, DISPID_UNKNOWN);
    if (found == _methods.end() || count != 1) return DISP_E_UNKNOWNNAME;
    ids[0] = static_cast<DISPID>(found - _methods.begin()) + 1;
    return S_OK;
}

STDMETHODIMP ScriptObject::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO*,
                                  UINT*)
{
    const auto index = static_cast<size_t>(id) - 1;
    if (index >= _methods.size()) return DISP_E_MEMBERNOTFOUND;
    _variant_t value = _methods[index].function(ValuesOf(*parameters));
    if (result) *result = value.Detach();
    return S_OK;
}
