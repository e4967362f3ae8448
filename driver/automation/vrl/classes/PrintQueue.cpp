// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintQueue.h"

HRESULT PrintQueue::Initialize(IPrinter* printer) noexcept
{
    return Guard("PrintQueue::Initialize", [&] { return RebindToPrinter(_xPrinter, printer); });
}

STDMETHODIMP PrintQueue::EnumerateJobs(IPrintJobs*, VARIANT) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintQueue::Pause() noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintQueue::Resume() noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrintQueue::Purge() noexcept
{
    return E_NOTIMPL;
}

HRESULT PrintQueue::FirstSinkConnecting() noexcept
{
    return E_NOTIMPL;
}

void PrintQueue::LastSinkGone() noexcept {}
