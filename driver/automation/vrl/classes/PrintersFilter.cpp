// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintersFilter.h"

namespace {

// Deliberate: neither test nor wrapper, so a failure leaves no error information and shows no dialog.
HRESULT GiveField(VARIANT_BOOL* out, VARIANT_BOOL field) noexcept
{
    return Contain([&] { StoreUntested(out, field); });
}

} // namespace

STDMETHODIMP PrintersFilter::get_Local(VARIANT_BOOL* retLocal) noexcept
{
    return GiveField(retLocal, _local);
}

STDMETHODIMP PrintersFilter::put_Local(VARIANT_BOOL argLocal) noexcept
{
    _local = argLocal;
    return S_OK;
}

STDMETHODIMP PrintersFilter::get_Network(VARIANT_BOOL* retNetwork) noexcept
{
    return GiveField(retNetwork, _network);
}

STDMETHODIMP PrintersFilter::put_Network(VARIANT_BOOL argNetwork) noexcept
{
    _network = argNetwork;
    return S_OK;
}

STDMETHODIMP PrintersFilter::get_Shared(VARIANT_BOOL* retShared) noexcept
{
    return GiveField(retShared, _shared);
}

STDMETHODIMP PrintersFilter::put_Shared(VARIANT_BOOL argShared) noexcept
{
    _shared = argShared;
    return S_OK;
}
