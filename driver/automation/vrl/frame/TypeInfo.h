// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <oaidl.h>

/// The type information of one interface of the module's type library, with a reference for the caller.
/// It is read at the first use and kept for the life of the process. Any thread.
HRESULT InterfaceTypeInfo(REFIID iid, ITypeInfo** typeInfo) noexcept;
