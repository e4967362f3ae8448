// SPDX-License-Identifier: MIT
#include "support/com/GuidText.h"

#include <objbase.h>

#include <stdexcept>

std::string GuidText(const GUID& guid)
{
    wchar_t text[39] = {};
    ::StringFromGUID2(guid, text, 39);
    std::string narrow;
    for (const wchar_t* character = text; *character; ++character) narrow += static_cast<char>(*character);
    return narrow;
}

GUID GuidFromText(const std::string& text)
{
    GUID guid;
    if (FAILED(::IIDFromString(std::wstring(text.begin(), text.end()).c_str(), &guid))) {
        throw std::runtime_error(text + " is no identifier");
    }
    return guid;
}
