// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <oaidl.h>

#include <string>

/// The module's own type library, whether it is registered or not, and the path of its file. A path of 260 characters
/// or more is a failure. Throws std::bad_alloc.
HRESULT LoadModuleTypeLibrary(std::wstring& path, ITypeLib** library);

/// The type information of one interface of the module's type library, with a reference for the caller.
/// It is read at the first use and kept for the life of the process. Any thread.
HRESULT InterfaceTypeInfo(REFIID iid, ITypeInfo** typeInfo) noexcept;
