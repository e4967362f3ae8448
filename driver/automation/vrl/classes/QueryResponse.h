// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/classes/QueryBytes.h"
#include "vrl/frame/AutomationObject.h"

/// What had come back for a question to the device at one moment: a snapshot that never changes. Without data `Binary`
/// is a null array, and the other views are empty.
///
/// Threading: any thread, once it has left the port that makes and fills it.
class QueryResponse final : public AutomationObject<QueryResponse, IQueryResponse> {
public:
    // How far the question had come; none of these for a state that nobody knows
    void SetPending() noexcept { _pending = true; }
    void SetFailed() noexcept { _responded = _failed = true; }
    void SetResponded(const OTypedArray<unsigned char>& bytes);

    STDMETHODIMP get_Binary(VARIANT* retBinary) noexcept override;
    STDMETHODIMP get_Text(BSTR* retText) noexcept override;
    STDMETHODIMP get_Hexadecimal(BSTR* retHexadecimal) noexcept override;
    STDMETHODIMP get_Responded(VARIANT_BOOL* retResponded) noexcept override;
    STDMETHODIMP get_Failed(VARIANT_BOOL* retFailed) noexcept override;
    STDMETHODIMP get_Pending(VARIANT_BOOL* retPending) noexcept override;

private:
    QueryBytes _data{_lock};
    bool _responded = false;
    bool _failed = false;
    bool _pending = false;
};
