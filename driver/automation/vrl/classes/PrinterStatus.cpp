// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterStatus.h"

#include "vrl/core/XPrinter.h"

HRESULT PrinterStatus::Initialize(IPrinter* printer) noexcept
{
    return Guard("PrinterStatus::Initialize", [&] { return BindToPrinter(_driver, printer); });
}

STDMETHODIMP PrinterStatus::get_Text(BSTR* retText) noexcept
{
    const auto text = [](const PrinterDriverRef& driver) { return driver.xPrinter->GetStatusText(); };
    return Get("PrinterStatus::get_Text", Checks::OutThenBound, retText, text);
}

STDMETHODIMP PrinterStatus::get_Busy(VARIANT_BOOL* retBusy) noexcept
{
    return Get("PrinterStatus::get_Busy", Checks::OutThenBound, retBusy, &DriverInterface::TestStatusFlag,
               ConditionBusy);
}

STDMETHODIMP PrinterStatus::get_DoorOpen(VARIANT_BOOL* retDoorOpen) noexcept
{
    return Get("PrinterStatus::get_DoorOpen", Checks::OutThenBound, retDoorOpen, &DriverInterface::TestStatusFlag,
               ConditionDoorOpen);
}

STDMETHODIMP PrinterStatus::get_Initializing(VARIANT_BOOL* retInitializing) noexcept
{
    return Get("PrinterStatus::get_Initializing", Checks::OutThenBound, retInitializing,
               &DriverInterface::TestStatusFlag, ConditionInitializing);
}

STDMETHODIMP PrinterStatus::get_IOActive(VARIANT_BOOL* retIOActive) noexcept
{
    return Get("PrinterStatus::get_IOActive", Checks::OutThenBound, retIOActive, &DriverInterface::TestStatusFlag,
               ConditionIOActive);
}

STDMETHODIMP PrinterStatus::get_ManualFeed(VARIANT_BOOL* retManualFeed) noexcept
{
    return Get("PrinterStatus::get_ManualFeed", Checks::OutThenBound, retManualFeed, &DriverInterface::TestStatusFlag,
               ConditionManualFeed);
}

STDMETHODIMP PrinterStatus::get_NoToner(VARIANT_BOOL* retNoToner) noexcept
{
    return Get("PrinterStatus::get_NoToner", Checks::OutThenBound, retNoToner, &DriverInterface::TestStatusFlag,
               ConditionNoToner);
}

STDMETHODIMP PrinterStatus::get_NotAvailable(VARIANT_BOOL* retNotAvailable) noexcept
{
    return Get("PrinterStatus::get_NotAvailable", Checks::OutThenBound, retNotAvailable,
               &DriverInterface::TestStatusFlag, ConditionNotAvailable);
}

STDMETHODIMP PrinterStatus::get_Offline(VARIANT_BOOL* retOffline) noexcept
{
    return Get("PrinterStatus::get_Offline", Checks::OutThenBound, retOffline, &DriverInterface::TestStatusFlag,
               ConditionOffline);
}

STDMETHODIMP PrinterStatus::get_OutOfMemory(VARIANT_BOOL* retOutOfMemory) noexcept
{
    return Get("PrinterStatus::get_OutOfMemory", Checks::OutThenBound, retOutOfMemory, &DriverInterface::TestStatusFlag,
               ConditionOutOfMemory);
}

STDMETHODIMP PrinterStatus::get_OutputFull(VARIANT_BOOL* retOutputFull) noexcept
{
    return Get("PrinterStatus::get_OutputFull", Checks::OutThenBound, retOutputFull, &DriverInterface::TestStatusFlag,
               ConditionOutputFull);
}

STDMETHODIMP PrinterStatus::get_PaperJam(VARIANT_BOOL* retPaperJam) noexcept
{
    return Get("PrinterStatus::get_PaperJam", Checks::OutThenBound, retPaperJam, &DriverInterface::TestStatusFlag,
               ConditionPaperJam);
}

STDMETHODIMP PrinterStatus::get_PaperOut(VARIANT_BOOL* retPaperOut) noexcept
{
    return Get("PrinterStatus::get_PaperOut", Checks::OutThenBound, retPaperOut, &DriverInterface::TestStatusFlag,
               ConditionPaperOut);
}

STDMETHODIMP PrinterStatus::get_PaperProblem(VARIANT_BOOL* retPaperProblem) noexcept
{
    return Get("PrinterStatus::get_PaperProblem", Checks::OutThenBound, retPaperProblem,
               &DriverInterface::TestStatusFlag, ConditionPaperProblem);
}

STDMETHODIMP PrinterStatus::get_Paused(VARIANT_BOOL* retPaused) noexcept
{
    return Get("PrinterStatus::get_Paused", Checks::OutThenBound, retPaused, &DriverInterface::TestStatusFlag,
               ConditionPaused);
}

STDMETHODIMP PrinterStatus::get_PowerSave(VARIANT_BOOL* retPowerSave) noexcept
{
    return Get("PrinterStatus::get_PowerSave", Checks::OutThenBound, retPowerSave, &DriverInterface::TestStatusFlag,
               ConditionPowerSave);
}

STDMETHODIMP PrinterStatus::get_Printing(VARIANT_BOOL* retPrinting) noexcept
{
    return Get("PrinterStatus::get_Printing", Checks::OutThenBound, retPrinting, &DriverInterface::TestStatusFlag,
               ConditionPrinting);
}

STDMETHODIMP PrinterStatus::get_Processing(VARIANT_BOOL* retProcessing) noexcept
{
    return Get("PrinterStatus::get_Processing", Checks::OutThenBound, retProcessing, &DriverInterface::TestStatusFlag,
               ConditionProcessing);
}

STDMETHODIMP PrinterStatus::get_TonerLow(VARIANT_BOOL* retTonerLow) noexcept
{
    return Get("PrinterStatus::get_TonerLow", Checks::OutThenBound, retTonerLow, &DriverInterface::TestStatusFlag,
               ConditionTonerLow);
}

STDMETHODIMP PrinterStatus::get_UserInterventionRequired(VARIANT_BOOL* retUserInterventionRequired) noexcept
{
    return Get("PrinterStatus::get_UserInterventionRequired", Checks::OutThenBound, retUserInterventionRequired,
               &DriverInterface::TestStatusFlag, ConditionUserInterventionRequired);
}

STDMETHODIMP PrinterStatus::get_Waiting(VARIANT_BOOL* retWaiting) noexcept
{
    return Get("PrinterStatus::get_Waiting", Checks::OutThenBound, retWaiting, &DriverInterface::TestStatusFlag,
               ConditionWaiting);
}

STDMETHODIMP PrinterStatus::get_WarmingUp(VARIANT_BOOL* retWarmingUp) noexcept
{
    return Get("PrinterStatus::get_WarmingUp", Checks::OutThenBound, retWarmingUp, &DriverInterface::TestStatusFlag,
               ConditionWarmingUp);
}

STDMETHODIMP PrinterStatus::get_LabelPresent(VARIANT_BOOL* retLabelPresent) noexcept
{
    return Get("PrinterStatus::get_LabelPresent", Checks::OutThenBound, retLabelPresent,
               &DriverInterface::TestStatusFlag, ConditionLabelPresent);
}

STDMETHODIMP PrinterStatus::get_PrinterPaused(VARIANT_BOOL* retPrinterPaused) noexcept
{
    return Get("PrinterStatus::get_PrinterPaused", Checks::OutThenBound, retPrinterPaused,
               &DriverInterface::TestStatusFlag, ConditionPrinterPaused);
}

STDMETHODIMP PrinterStatus::get_BatteryLow(VARIANT_BOOL* retBatteryLow) noexcept
{
    return Get("PrinterStatus::get_BatteryLow", Checks::OutThenBound, retBatteryLow, &DriverInterface::TestStatusFlag,
               ConditionBatteryLow);
}

STDMETHODIMP PrinterStatus::get_BatteryCharging(VARIANT_BOOL* retBatteryCharging) noexcept
{
    return Get("PrinterStatus::get_BatteryCharging", Checks::OutThenBound, retBatteryCharging,
               &DriverInterface::TestStatusFlag, ConditionBatteryCharging);
}

STDMETHODIMP PrinterStatus::get_RibbonLow(VARIANT_BOOL* retRibbonLow) noexcept
{
    return Get("PrinterStatus::get_RibbonLow", Checks::OutThenBound, retRibbonLow, &DriverInterface::TestStatusFlag,
               ConditionRibbonLow);
}

STDMETHODIMP PrinterStatus::get_RibbonOut(VARIANT_BOOL* retRibbonOut) noexcept
{
    return Get("PrinterStatus::get_RibbonOut", Checks::OutThenBound, retRibbonOut, &DriverInterface::TestStatusFlag,
               ConditionRibbonOut);
}

STDMETHODIMP PrinterStatus::get_RibbonError(VARIANT_BOOL* retRibbonError) noexcept
{
    return Get("PrinterStatus::get_RibbonError", Checks::OutThenBound, retRibbonError, &DriverInterface::TestStatusFlag,
               ConditionRibbonError);
}

STDMETHODIMP PrinterStatus::get_PaperLow(VARIANT_BOOL* retPaperLow) noexcept
{
    return Get("PrinterStatus::get_PaperLow", Checks::OutThenBound, retPaperLow, &DriverInterface::TestStatusFlag,
               ConditionPaperLow);
}

STDMETHODIMP PrinterStatus::get_HeadOpen(VARIANT_BOOL* retHeadOpen) noexcept
{
    return Get("PrinterStatus::get_HeadOpen", Checks::OutThenBound, retHeadOpen, &DriverInterface::TestStatusFlag,
               ConditionHeadOpen);
}

STDMETHODIMP PrinterStatus::get_HeadError(VARIANT_BOOL* retHeadError) noexcept
{
    return Get("PrinterStatus::get_HeadError", Checks::OutThenBound, retHeadError, &DriverInterface::TestStatusFlag,
               ConditionHeadError);
}

STDMETHODIMP PrinterStatus::get_CutterError(VARIANT_BOOL* retCutterError) noexcept
{
    return Get("PrinterStatus::get_CutterError", Checks::OutThenBound, retCutterError, &DriverInterface::TestStatusFlag,
               ConditionCutterError);
}

STDMETHODIMP PrinterStatus::get_Warning(VARIANT_BOOL* retWarning) noexcept
{
    return TestSeverity("PrinterStatus::get_Warning", retWarning, StatusSeverityWarning);
}

STDMETHODIMP PrinterStatus::get_Error(VARIANT_BOOL* retError) noexcept
{
    return TestSeverity("PrinterStatus::get_Error", retError, StatusSeverityError);
}

STDMETHODIMP PrinterStatus::get_OdometerPages(unsigned long* retOdometerPages) noexcept
{
    const auto pages = [](const PrinterDriverRef& driver) { return driver->GetOdometer().GetPages(); };
    return Get("PrinterStatus::get_OdometerPages", Checks::OutThenBound, retOdometerPages, pages);
}

STDMETHODIMP PrinterStatus::get_OdometerDistance(float* retOdometerDistance) noexcept
{
    const auto distance = [](const PrinterDriverRef& driver) { return driver->GetOdometer().GetDistance(); };
    return Get("PrinterStatus::get_OdometerDistance", Checks::OutThenBound, retOdometerDistance, distance);
}

HRESULT PrinterStatus::TestSeverity(const char* function, VARIANT_BOOL* retValue, StatusSeverity severity) noexcept
{
    const auto test = [severity](const PrinterDriverRef& driver) { return driver->GetStatusSeverity() == severity; };
    return Get(function, Checks::OutThenBound, retValue, test);
}
