// SPDX-License-Identifier: MIT
#include "vrl/classes/VRL.h"

#include "foundation/system/FileVersion.h"

namespace {

// Deliberate: neither test nor wrapper, so a failure leaves no error information and shows no dialog.
HRESULT GiveVersionText(BSTR* out, const char* name) noexcept
{
    return Contain([&] { StoreUntested(out, ToBstr(GetFileVersionString("Vorlane.dll", name))); });
}

} // namespace

STDMETHODIMP VRL::get_Version(BSTR* retVersion) noexcept
{
    return GiveVersionText(retVersion, "ProductVersion");
}

STDMETHODIMP VRL::get_Platform(BSTR* retPlatform) noexcept
{
    return GiveVersionText(retPlatform, "Platform");
}
