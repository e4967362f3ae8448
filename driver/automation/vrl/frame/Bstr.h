// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"
#include "foundation/text/OString.h"

#include <oleauto.h>

using OBstr = OHandle<::SysFreeString, BSTR>;

/// A new BSTR of the text; an empty text gives an empty BSTR, not null. Throws std::bad_alloc.
OBstr ToBstr(const OString& text);

/// The text of a BSTR up to its first zero; null is an empty text.
OString FromBstr(BSTR text);

/// 0xFFFF for true, 0 for false.
constexpr VARIANT_BOOL ToVariantBool(bool value) noexcept
{
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}
