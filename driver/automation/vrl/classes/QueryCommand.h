// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"

/// The bytes and time-outs of a question to the device.
/// Threading: any thread.
/// Not built yet: every member of the interface answers E_NOTIMPL.
class QueryCommand final : public AutomationObject<QueryCommand, IQueryCommand> {
public:
    STDMETHODIMP get_Binary(VARIANT* retBinary) noexcept override;
    STDMETHODIMP put_Binary(VARIANT argBinary) noexcept override;
    STDMETHODIMP get_Text(BSTR* retText) noexcept override;
    STDMETHODIMP put_Text(BSTR argText) noexcept override;
    STDMETHODIMP get_Hexadecimal(BSTR* retHexadecimal) noexcept override;
    STDMETHODIMP put_Hexadecimal(BSTR argHexadecimal) noexcept override;
    STDMETHODIMP get_SendTimeout(long* retSendTimeout) noexcept override;
    STDMETHODIMP put_SendTimeout(long argSendTimeout) noexcept override;
    STDMETHODIMP get_ReceiveStartTimeout(long* retReceiveStartTimeout) noexcept override;
    STDMETHODIMP put_ReceiveStartTimeout(long argReceiveStartTimeout) noexcept override;
    STDMETHODIMP get_ReceiveIntervalTimeout(long* retReceiveIntervalTimeout) noexcept override;
    STDMETHODIMP put_ReceiveIntervalTimeout(long argReceiveIntervalTimeout) noexcept override;
};
