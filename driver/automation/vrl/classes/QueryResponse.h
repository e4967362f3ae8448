// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

/// What came back for a question to the device: a snapshot that never changes.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL.
class QueryResponse final : public AutomationObject<QueryResponse, IQueryResponse> {
public:
    STDMETHODIMP get_Binary(VARIANT* retBinary) noexcept override;
    STDMETHODIMP get_Text(BSTR* retText) noexcept override;
    STDMETHODIMP get_Hexadecimal(BSTR* retHexadecimal) noexcept override;
    STDMETHODIMP get_Responded(VARIANT_BOOL* retResponded) noexcept override;
    STDMETHODIMP get_Failed(VARIANT_BOOL* retFailed) noexcept override;
    STDMETHODIMP get_Pending(VARIANT_BOOL* retPending) noexcept override;
};
