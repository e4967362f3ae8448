// SPDX-License-Identifier: MIT
#include "vrl/classes/QueryCommand.h"

STDMETHODIMP QueryCommand::get_Binary(VARIANT*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryCommand::put_Binary(VARIANT) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryCommand::get_Text(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryCommand::put_Text(BSTR) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryCommand::get_Hexadecimal(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryCommand::put_Hexadecimal(BSTR) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryCommand::get_SendTimeout(long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryCommand::put_SendTimeout(long) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryCommand::get_ReceiveStartTimeout(long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryCommand::put_ReceiveStartTimeout(long) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryCommand::get_ReceiveIntervalTimeout(long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP QueryCommand::put_ReceiveIntervalTimeout(long) noexcept
{
    return E_NOTIMPL;
}
