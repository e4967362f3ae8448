// SPDX-License-Identifier: MIT
#pragma once

/// The one way by which the automation layer includes the component model and the interfaces of the type library.

#include "foundation/Platform.h"

#include <oleauto.h>
#include <ocidl.h>

#include <wrl/client.h>

#include "vrl/Vorlane.h"

/// Takes over the one reference that a new object comes with: `ComPtr::Attach` of this compiler's library counts once
/// more.
template <class T>
Microsoft::WRL::ComPtr<T> Adopt(T* made) noexcept
{
    Microsoft::WRL::ComPtr<T> owner;
    *owner.GetAddressOf() = made;
    return owner;
}
