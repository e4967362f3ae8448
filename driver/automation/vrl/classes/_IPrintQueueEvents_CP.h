// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Assert.h"
#include "vrl/frame/EventSource.h"

/// The connection point of `_IPrintQueueEvents` in `Class`.
template <class Class>
class IPrintQueueEvents_CP : public EventSource<Class, _IPrintQueueEvents> {
protected:
    /// A sink need not have every event; any other failure is a mistake of the sink.
    void CheckSinkResult(HRESULT hr) const noexcept final
    {
        DEBUG_ASSERT(((HRESULT)(hr) >= 0) || (hr == ((HRESULT)0x80020003L)));
    }
};
