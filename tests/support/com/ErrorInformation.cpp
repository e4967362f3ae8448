// SPDX-License-Identifier: MIT
#include "support/com/ErrorInformation.h"

#include <oleauto.h>
#include <wrl/client.h>

namespace {

std::wstring Take(BSTR text)
{
    const std::wstring result = text ? std::wstring(text, ::SysStringLen(text)) : std::wstring();
    ::SysFreeString(text);
    return result;
}

} // namespace

ErrorInformation TakeErrorInformation()
{
    ErrorInformation taken;
    Microsoft::WRL::ComPtr<IErrorInfo> info;
    if (::GetErrorInfo(0, &info) != S_OK) return taken;

    BSTR description = nullptr;
    BSTR source = nullptr;
    info->GetDescription(&description);
    info->GetSource(&source);
    info->GetGUID(&taken.guid);
    info->GetHelpContext(&taken.helpContext);
    taken.present = true;
    taken.description = OString(Take(description).c_str()).nstring();
    taken.source = Take(source);
    return taken;
}
