// SPDX-License-Identifier: MIT
#include "vrl/frame/VRException.h"

#include "foundation/OHandle.h"

namespace {

constexpr DWORD userDefaultLanguage = 0x400;

OString SystemMessage(DWORD error)
{
    wchar_t* text = nullptr;
    ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr, error, userDefaultLanguage,
                     reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    const OLocalMemory owner(text);
    return OString(static_cast<const wchar_t*>(text));
}

HRESULT ResultOfSystemError(DWORD error)
{
    return static_cast<LONG>(error) > 0 ? static_cast<HRESULT>((error & 0xFFFF) | 0x80070000)
                                        : static_cast<HRESULT>(error);
}

} // namespace

VRExceptionString::VRExceptionString() : VRException(E_FAIL, nullptr)
{
    SetText(OString("Unspecified VRL error"));
}

void VRExceptionString::SetText(const OString& text)
{
    _ownedText = text;
    SetTextPointer(_ownedText.nstring());
}

SystemError_E::SystemError_E() : SystemError_E(::GetLastError()) {}

SystemError_E::SystemError_E(DWORD error)
{
    ::SetLastError(error); // building the base may have changed it
    SetText(SystemMessage(error));
    // Deliberate: the last error is read again; what FormatMessageW left decides the code.
    SetResult(ResultOfSystemError(::GetLastError()));
}
