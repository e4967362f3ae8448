// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

#include <atomic>

/// Three flags that say which printers an enumeration lists. A flag keeps what it is given; only VARIANT_TRUE counts as
/// true there.
/// Threading: any thread.
class PrintersFilter final : public AutomationObject<PrintersFilter, IPrintersFilter> {
public:
    STDMETHODIMP get_Local(VARIANT_BOOL* retLocal) noexcept override;
    STDMETHODIMP put_Local(VARIANT_BOOL argLocal) noexcept override;
    STDMETHODIMP get_Network(VARIANT_BOOL* retNetwork) noexcept override;
    STDMETHODIMP put_Network(VARIANT_BOOL argNetwork) noexcept override;
    STDMETHODIMP get_Shared(VARIANT_BOOL* retShared) noexcept override;
    STDMETHODIMP put_Shared(VARIANT_BOOL argShared) noexcept override;

private:
    std::atomic<VARIANT_BOOL> _local = VARIANT_TRUE;
    std::atomic<VARIANT_BOOL> _network = VARIANT_TRUE;
    std::atomic<VARIANT_BOOL> _shared = VARIANT_FALSE;
};
