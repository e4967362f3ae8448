// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

/// Three flags that say which printers an enumeration lists.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL.
class PrintersFilter final : public AutomationObject<PrintersFilter, IPrintersFilter> {
public:
    STDMETHODIMP get_Local(VARIANT_BOOL* retLocal) noexcept override;
    STDMETHODIMP put_Local(VARIANT_BOOL argLocal) noexcept override;
    STDMETHODIMP get_Network(VARIANT_BOOL* retNetwork) noexcept override;
    STDMETHODIMP put_Network(VARIANT_BOOL argNetwork) noexcept override;
    STDMETHODIMP get_Shared(VARIANT_BOOL* retShared) noexcept override;
    STDMETHODIMP put_Shared(VARIANT_BOOL argShared) noexcept override;
};
