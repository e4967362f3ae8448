// SPDX-License-Identifier: MIT
#include "recorder/TextOutput.h"

#include "recorder/Utf8.h"

TextOutput::TextOutput(DWORD standardHandle) noexcept : _target(::GetStdHandle(standardHandle)) {}

bool TextOutput::Create(const std::wstring& path) noexcept
{
    _file.Reset(::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
    _target = _file.Get();
    return _target != nullptr;
}

bool TextOutput::Write(std::string_view text)
{
    DWORD written = 0;
    DWORD mode = 0;
    if (::GetConsoleMode(_target, &mode)) { // a console takes bytes in its own code page only
        const std::wstring wide = FromUtf8(text).value_or(L"");
        return ::WriteConsoleW(_target, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr) != FALSE;
    }
    return ::WriteFile(_target, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != FALSE;
}
