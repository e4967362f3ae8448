// SPDX-License-Identifier: MIT
#pragma once

/// Included ahead of the generated marshalling code, which is C and uses these three without a declaration.

#include <windows.h>
#include <unknwn.h>

HRESULT STDMETHODCALLTYPE IUnknown_QueryInterface_Proxy(IUnknown* This, REFIID riid, void** ppvObject);
ULONG STDMETHODCALLTYPE IUnknown_AddRef_Proxy(IUnknown* This);
ULONG STDMETHODCALLTYPE IUnknown_Release_Proxy(IUnknown* This);
