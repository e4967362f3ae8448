// SPDX-License-Identifier: MIT
#include "foundation/text/OCRC32.h"

#include <cwchar>

#include "foundation/Checksums.h"

void OCRC32::Add(const void* data, int count) noexcept
{
    _value = CRC32(data, static_cast<size_t>(count), _value);
}

void OCRC32::Add(const OString& text)
{
    const wchar_t* wide = text.wstring();
    Add(wide, static_cast<int>((std::wcslen(wide) + 1) * sizeof *wide));
}

void OCRC32::Add(const OStringArray& texts)
{
    for (int index = 0; index < texts.GetSize(); ++index) Add(texts.GetAt(index));
}
