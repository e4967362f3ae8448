// SPDX-License-Identifier: MIT
#include "vrl/PrinterStatus.h"

#include "vrl/PrinterBinding.h"

HRESULT PrinterStatus::Initialize(IPrinter* printer) noexcept
{
    return Guard("PrinterStatus::Initialize", [&] { return BindToPrinter(_xPrinter, printer); });
}

STDMETHODIMP PrinterStatus::get_Text(BSTR*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_Busy(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_DoorOpen(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_Initializing(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_IOActive(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_ManualFeed(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_NoToner(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_NotAvailable(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_Offline(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_OutOfMemory(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_OutputFull(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_PaperJam(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_PaperOut(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_PaperProblem(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_Paused(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_PowerSave(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_Printing(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_Processing(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_TonerLow(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_UserInterventionRequired(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_Waiting(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_WarmingUp(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_LabelPresent(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_PrinterPaused(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_BatteryLow(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_BatteryCharging(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_RibbonLow(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_RibbonOut(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_RibbonError(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_PaperLow(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_HeadOpen(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_HeadError(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_CutterError(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_Warning(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_Error(VARIANT_BOOL*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_OdometerPages(unsigned long*) noexcept
{
    return E_NOTIMPL;
}

STDMETHODIMP PrinterStatus::get_OdometerDistance(float*) noexcept
{
    return E_NOTIMPL;
}
