// SPDX-License-Identifier: MIT
#include "vrl/classes/QueryCommand.h"

STDMETHODIMP QueryCommand::get_Binary(VARIANT* retBinary) noexcept
{
    return Guard("QueryCommand::get_Binary", [&] {
        CheckOut(retBinary);
        if (!_data.HasData()) throw InvalidArgument_E();
        _data.GiveBinary(retBinary);
    });
}

STDMETHODIMP QueryCommand::put_Binary(VARIANT argBinary) noexcept
{
    return Guard("QueryCommand::put_Binary", [&] { return _data.SetBinary(argBinary); });
}

STDMETHODIMP QueryCommand::get_Text(BSTR* retText) noexcept
{
    return Guard("QueryCommand::get_Text", [&] {
        CheckOut(retText);
        GiveValue(retText, _data.GetText());
    });
}

STDMETHODIMP QueryCommand::put_Text(BSTR argText) noexcept
{
    return Guard("QueryCommand::put_Text", [&] { return _data.SetText(FromBstr(argText)); });
}

STDMETHODIMP QueryCommand::get_Hexadecimal(BSTR* retHexadecimal) noexcept
{
    return Guard("QueryCommand::get_Hexadecimal", [&] {
        CheckOut(retHexadecimal);
        GiveValue(retHexadecimal, _data.GetHexadecimal());
    });
}

STDMETHODIMP QueryCommand::put_Hexadecimal(BSTR argHexadecimal) noexcept
{
    return Guard("QueryCommand::put_Hexadecimal", [&] { return _data.SetHexadecimal(FromBstr(argHexadecimal)); });
}

HRESULT QueryCommand::GetTimeout(const char* function, long* out, const std::atomic<long>& timeout) noexcept
{
    return Guard(function, [&] {
        CheckOut(out);
        *out = timeout;
    });
}

STDMETHODIMP QueryCommand::get_SendTimeout(long* retSendTimeout) noexcept
{
    return GetTimeout("QueryCommand::get_SendTimeout", retSendTimeout, _sendTimeout);
}

STDMETHODIMP QueryCommand::put_SendTimeout(long argSendTimeout) noexcept
{
    _sendTimeout = argSendTimeout;
    return S_OK;
}

STDMETHODIMP QueryCommand::get_ReceiveStartTimeout(long* retReceiveStartTimeout) noexcept
{
    return GetTimeout("QueryCommand::get_ReceiveStartTimeout", retReceiveStartTimeout, _receiveStartTimeout);
}

STDMETHODIMP QueryCommand::put_ReceiveStartTimeout(long argReceiveStartTimeout) noexcept
{
    _receiveStartTimeout = argReceiveStartTimeout;
    return S_OK;
}

STDMETHODIMP QueryCommand::get_ReceiveIntervalTimeout(long* retReceiveIntervalTimeout) noexcept
{
    return GetTimeout("QueryCommand::get_ReceiveIntervalTimeout", retReceiveIntervalTimeout, _receiveIntervalTimeout);
}

STDMETHODIMP QueryCommand::put_ReceiveIntervalTimeout(long argReceiveIntervalTimeout) noexcept
{
    _receiveIntervalTimeout = argReceiveIntervalTimeout;
    return S_OK;
}
