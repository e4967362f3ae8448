// SPDX-License-Identifier: MIT
#include "vrl/frame/Bstr.h"

#include <new>

OBstr ToBstr(const OString& text)
{
    OBstr result(::SysAllocString(text.wstring()));
    if (!result) throw std::bad_alloc();
    return result;
}

OString FromBstr(BSTR text)
{
    return OString(static_cast<const wchar_t*>(text));
}
