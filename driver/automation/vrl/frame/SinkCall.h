// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/EventArguments.h"
#include "vrl/frame/ForeignPtr.h"

#include <oaidl.h>

/// Calls one sink with one event. Gives what the sink answers; what it raises is a failure.
HRESULT CallSink(const ForeignPtr<IDispatch>& sink, DISPID eventId, const EventArguments& arguments) noexcept;
