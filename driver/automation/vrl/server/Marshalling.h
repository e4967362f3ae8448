// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

/// The marshalling code that the IDL compiler made for the interfaces of Vorlane.idl, called through the platform's own
/// routines for it. Results are those of the platform. Any thread.
namespace Marshalling {

/// Gives the factory of proxies and stubs, if `classId` is its class or one of the interfaces.
HRESULT GetClassObject(REFCLSID classId, REFIID interfaceId, void** result) noexcept;

/// S_OK when no proxy or stub is alive.
HRESULT CanUnloadNow() noexcept;

/// Enters each interface and the class of the factory into the registry, or takes them out again.
HRESULT Register(HMODULE module) noexcept;
HRESULT Unregister(HMODULE module) noexcept;

} // namespace Marshalling
