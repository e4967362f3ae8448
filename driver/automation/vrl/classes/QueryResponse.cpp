// SPDX-License-Identifier: MIT
#include "vrl/classes/QueryResponse.h"

namespace {

/// A plain field goes out: no wrapper, and no text for a null pointer.
HRESULT GiveField(VARIANT_BOOL* out, bool value) noexcept
{
    if (!out) return E_POINTER;
    GiveValue(out, value);
    return S_OK;
}

} // namespace

void QueryResponse::SetResponded(const OTypedArray<unsigned char>& bytes)
{
    _responded = true;
    _data.SetBytes(bytes);
}

STDMETHODIMP QueryResponse::get_Binary(VARIANT* retBinary) noexcept
{
    return Guard("QueryResponse::get_Binary", [&] {
        CheckOut(retBinary);
        _data.GiveBinary(retBinary);
    });
}

STDMETHODIMP QueryResponse::get_Text(BSTR* retText) noexcept
{
    return Guard("QueryResponse::get_Text", [&] {
        CheckOut(retText);
        GiveValue(retText, _data.GetText());
    });
}

STDMETHODIMP QueryResponse::get_Hexadecimal(BSTR* retHexadecimal) noexcept
{
    return Guard("QueryResponse::get_Hexadecimal", [&] {
        CheckOut(retHexadecimal);
        GiveValue(retHexadecimal, _data.GetHexadecimal());
    });
}

STDMETHODIMP QueryResponse::get_Responded(VARIANT_BOOL* retResponded) noexcept
{
    return GiveField(retResponded, _responded);
}

STDMETHODIMP QueryResponse::get_Failed(VARIANT_BOOL* retFailed) noexcept
{
    return GiveField(retFailed, _failed);
}

STDMETHODIMP QueryResponse::get_Pending(VARIANT_BOOL* retPending) noexcept
{
    return GiveField(retPending, _pending);
}
