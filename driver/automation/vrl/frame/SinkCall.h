// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/EventArguments.h"

#include <oaidl.h>
#include <wrl/client.h>

/// Calls one sink with one event, and lets go of the sink. Gives what the sink answers; what it raises is a failure.
HRESULT CallSink(Microsoft::WRL::ComPtr<IDispatch> sink, DISPID eventId, const EventArguments& arguments) noexcept;
