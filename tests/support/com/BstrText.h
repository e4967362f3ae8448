// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"

#include <oleauto.h>

#include <new>
#include <string>
#include <string_view>

/// Sole owner of a text of the component model.
using OwnedBstr = OHandle<::SysFreeString, BSTR>;

/// A new BSTR of the text, zeros inside included. Throws std::bad_alloc.
inline OwnedBstr NewBstr(std::wstring_view text)
{
    OwnedBstr made(::SysAllocStringLen(text.data(), static_cast<UINT>(text.size())));
    if (!made) throw std::bad_alloc();
    return made;
}

/// All characters of a BSTR; null is an empty text.
inline std::wstring TextOf(BSTR text)
{
    return text ? std::wstring(text, ::SysStringLen(text)) : std::wstring();
}
