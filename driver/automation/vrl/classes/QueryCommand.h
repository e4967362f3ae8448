// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/classes/QueryBytes.h"
#include "vrl/frame/AutomationObject.h"

#include <atomic>

/// The bytes and time-outs of a question to the device. It can be used for any number of questions.
///
/// `Text` and `Hexadecimal` are empty without data. Time-outs are in the port monitor's own unit; 0 and below leave the
/// choice to it.
/// Threading: any thread.
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

private:
    HRESULT GetTimeout(const char* function, long* out, const std::atomic<long>& timeout) noexcept;

    QueryBytes _data{_lock};
    std::atomic<long> _sendTimeout{0};
    std::atomic<long> _receiveStartTimeout{0};
    std::atomic<long> _receiveIntervalTimeout{0};
};
