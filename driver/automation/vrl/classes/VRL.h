// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

/// The library's own object: which build is loaded. It has no state.
///
/// Its texts come from the version resource of the module that is loaded as "Vorlane.dll"; what isn't there is empty.
/// Threading: any thread.
class VRL final : public AutomationObject<VRL, IVRL> {
public:
    STDMETHODIMP get_Version(BSTR* retVersion) noexcept override;
    STDMETHODIMP get_Platform(BSTR* retPlatform) noexcept override;
};
