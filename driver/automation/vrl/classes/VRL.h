// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

/// The library's own object: which build is loaded. It has no state.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL.
class VRL final : public AutomationObject<VRL, IVRL> {
public:
    STDMETHODIMP get_Version(BSTR* retVersion) noexcept override;
    STDMETHODIMP get_Platform(BSTR* retPlatform) noexcept override;
};
