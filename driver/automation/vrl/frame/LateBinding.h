// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <oaidl.h>

/// `IDispatch::Invoke` of an object whose members `typeInfo` describes, with two things that scripts rely on: an
/// argument that is handed over as a reference to a variable counts as the variable's value, and the enumerator of a
/// collection may be asked for as a method.
HRESULT InvokeMember(ITypeInfo* typeInfo, void* object, DISPID id, WORD flags, DISPPARAMS* parameters,
                     VARIANT* returned, EXCEPINFO* exception, UINT* argumentError) noexcept;
