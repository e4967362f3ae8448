// SPDX-License-Identifier: MIT
#include "recorder/Utf8.h"

#include "foundation/Platform.h"

std::string ToUtf8(std::wstring_view text)
{
    const int length = static_cast<int>(text.size());
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

std::optional<std::wstring> FromUtf8(std::string_view bytes)
{
    if (bytes.empty()) return std::wstring();
    const int size = static_cast<int>(bytes.size());
    const int length = ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), size, nullptr, 0);
    if (length == 0) return std::nullopt;
    std::wstring text(static_cast<size_t>(length), L'\0');
    ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), size, text.data(), length);
    return text;
}
