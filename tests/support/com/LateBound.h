// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <comutil.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <initializer_list>
#include <string>
#include <string_view>

/// What a late-bound call gave.
struct LateResult {
    HRESULT result;           ///< of Invoke: DISP_E_EXCEPTION when the member failed
    HRESULT code = S_OK;      ///< the member's own failure, from the exception's record
    std::wstring description; ///< likewise
    std::wstring source;      ///< likewise
    _variant_t value;
};

/// An object as a script sees it: members by name, arguments as VARIANTs. The names are looked up for each call.
class LateBound {
public:
    explicit LateBound(IDispatch* object) : _object(object) {}

    /// A property, with arguments if it is one of a collection's.
    LateResult Get(std::string_view name, std::initializer_list<_variant_t> arguments = {}) const;
    LateResult Put(std::string_view name, const _variant_t& value) const;

    /// Arguments here and in `Get` are in the order in which they are written.
    LateResult Call(std::string_view name, std::initializer_list<_variant_t> arguments) const;

private:
    LateResult Invoke(std::string_view name, WORD kind, std::initializer_list<_variant_t> arguments) const;
    LateResult Invoke(std::string_view name, WORD kind, DISPPARAMS* parameters) const;

    Microsoft::WRL::ComPtr<IDispatch> _object;
};
