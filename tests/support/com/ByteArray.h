// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <comutil.h>
#include <oleauto.h>

#include <cstring>
#include <string>
#include <string_view>

/// A VARIANT that holds an array of those bytes.
inline _variant_t ByteArray(std::string_view bytes, LONG lowerBound = 0)
{
    _variant_t value;
    value.vt = VT_ARRAY | VT_UI1;
    value.parray = ::SafeArrayCreateVector(VT_UI1, lowerBound, static_cast<ULONG>(bytes.size()));
    void* elements = nullptr;
    ::SafeArrayAccessData(value.parray, &elements);
    std::memcpy(elements, bytes.data(), bytes.size());
    ::SafeArrayUnaccessData(value.parray);
    return value;
}

/// The bytes of such a VARIANT; "no array" for any other.
inline std::string BytesOf(const VARIANT& value)
{
    if (value.vt != (VT_ARRAY | VT_UI1) || !value.parray) return "no array";
    LONG lower = 0;
    LONG upper = -1;
    ::SafeArrayGetLBound(value.parray, 1, &lower);
    ::SafeArrayGetUBound(value.parray, 1, &upper);
    void* elements = nullptr;
    ::SafeArrayAccessData(value.parray, &elements);
    std::string bytes(static_cast<const char*>(elements), static_cast<size_t>(upper - lower + 1));
    ::SafeArrayUnaccessData(value.parray);
    return bytes;
}
