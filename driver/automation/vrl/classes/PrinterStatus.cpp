// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterStatus.h"

#include "vrl/frame/Bstr.h"
#include "vrl/classes/PrinterBinding.h"
#include "vrl/core/XPrinter.h"

HRESULT PrinterStatus::Initialize(IPrinter* printer) noexcept
{
    return Guard("PrinterStatus::Initialize", [&] {
        _driver = nullptr;
        const HRESULT result = BindToPrinter(_xPrinter, printer);
        if (SUCCEEDED(result)) _driver = _xPrinter->GetDriver();
        return result;
    });
}

STDMETHODIMP PrinterStatus::get_Text(BSTR* retText) noexcept
{
    return Guard("PrinterStatus::get_Text", [&] {
        CheckOut(retText);
        if (!_xPrinter) throw PrinterStatusNotInitialized_E();
        *retText = ToBstr(_xPrinter->GetStatusText()).Detach();
    });
}

STDMETHODIMP PrinterStatus::get_Busy(VARIANT_BOOL* retBusy) noexcept
{
    return ReadCondition("PrinterStatus::get_Busy", ConditionBusy, retBusy);
}

STDMETHODIMP PrinterStatus::get_DoorOpen(VARIANT_BOOL* retDoorOpen) noexcept
{
    return ReadCondition("PrinterStatus::get_DoorOpen", ConditionDoorOpen, retDoorOpen);
}

STDMETHODIMP PrinterStatus::get_Initializing(VARIANT_BOOL* retInitializing) noexcept
{
    return ReadCondition("PrinterStatus::get_Initializing", ConditionInitializing, retInitializing);
}

STDMETHODIMP PrinterStatus::get_IOActive(VARIANT_BOOL* retIOActive) noexcept
{
    return ReadCondition("PrinterStatus::get_IOActive", ConditionIOActive, retIOActive);
}

STDMETHODIMP PrinterStatus::get_ManualFeed(VARIANT_BOOL* retManualFeed) noexcept
{
    return ReadCondition("PrinterStatus::get_ManualFeed", ConditionManualFeed, retManualFeed);
}

STDMETHODIMP PrinterStatus::get_NoToner(VARIANT_BOOL* retNoToner) noexcept
{
    return ReadCondition("PrinterStatus::get_NoToner", ConditionNoToner, retNoToner);
}

STDMETHODIMP PrinterStatus::get_NotAvailable(VARIANT_BOOL* retNotAvailable) noexcept
{
    return ReadCondition("PrinterStatus::get_NotAvailable", ConditionNotAvailable, retNotAvailable);
}

STDMETHODIMP PrinterStatus::get_Offline(VARIANT_BOOL* retOffline) noexcept
{
    return ReadCondition("PrinterStatus::get_Offline", ConditionOffline, retOffline);
}

STDMETHODIMP PrinterStatus::get_OutOfMemory(VARIANT_BOOL* retOutOfMemory) noexcept
{
    return ReadCondition("PrinterStatus::get_OutOfMemory", ConditionOutOfMemory, retOutOfMemory);
}

STDMETHODIMP PrinterStatus::get_OutputFull(VARIANT_BOOL* retOutputFull) noexcept
{
    return ReadCondition("PrinterStatus::get_OutputFull", ConditionOutputFull, retOutputFull);
}

STDMETHODIMP PrinterStatus::get_PaperJam(VARIANT_BOOL* retPaperJam) noexcept
{
    return ReadCondition("PrinterStatus::get_PaperJam", ConditionPaperJam, retPaperJam);
}

STDMETHODIMP PrinterStatus::get_PaperOut(VARIANT_BOOL* retPaperOut) noexcept
{
    return ReadCondition("PrinterStatus::get_PaperOut", ConditionPaperOut, retPaperOut);
}

STDMETHODIMP PrinterStatus::get_PaperProblem(VARIANT_BOOL* retPaperProblem) noexcept
{
    return ReadCondition("PrinterStatus::get_PaperProblem", ConditionPaperProblem, retPaperProblem);
}

STDMETHODIMP PrinterStatus::get_Paused(VARIANT_BOOL* retPaused) noexcept
{
    return ReadCondition("PrinterStatus::get_Paused", ConditionPaused, retPaused);
}

STDMETHODIMP PrinterStatus::get_PowerSave(VARIANT_BOOL* retPowerSave) noexcept
{
    return ReadCondition("PrinterStatus::get_PowerSave", ConditionPowerSave, retPowerSave);
}

STDMETHODIMP PrinterStatus::get_Printing(VARIANT_BOOL* retPrinting) noexcept
{
    return ReadCondition("PrinterStatus::get_Printing", ConditionPrinting, retPrinting);
}

STDMETHODIMP PrinterStatus::get_Processing(VARIANT_BOOL* retProcessing) noexcept
{
    return ReadCondition("PrinterStatus::get_Processing", ConditionProcessing, retProcessing);
}

STDMETHODIMP PrinterStatus::get_TonerLow(VARIANT_BOOL* retTonerLow) noexcept
{
    return ReadCondition("PrinterStatus::get_TonerLow", ConditionTonerLow, retTonerLow);
}

STDMETHODIMP PrinterStatus::get_UserInterventionRequired(VARIANT_BOOL* retUserInterventionRequired) noexcept
{
    return ReadCondition("PrinterStatus::get_UserInterventionRequired", ConditionUserInterventionRequired,
                         retUserInterventionRequired);
}

STDMETHODIMP PrinterStatus::get_Waiting(VARIANT_BOOL* retWaiting) noexcept
{
    return ReadCondition("PrinterStatus::get_Waiting", ConditionWaiting, retWaiting);
}

STDMETHODIMP PrinterStatus::get_WarmingUp(VARIANT_BOOL* retWarmingUp) noexcept
{
    return ReadCondition("PrinterStatus::get_WarmingUp", ConditionWarmingUp, retWarmingUp);
}

STDMETHODIMP PrinterStatus::get_LabelPresent(VARIANT_BOOL* retLabelPresent) noexcept
{
    return ReadCondition("PrinterStatus::get_LabelPresent", ConditionLabelPresent, retLabelPresent);
}

STDMETHODIMP PrinterStatus::get_PrinterPaused(VARIANT_BOOL* retPrinterPaused) noexcept
{
    return ReadCondition("PrinterStatus::get_PrinterPaused", ConditionPrinterPaused, retPrinterPaused);
}

STDMETHODIMP PrinterStatus::get_BatteryLow(VARIANT_BOOL* retBatteryLow) noexcept
{
    return ReadCondition("PrinterStatus::get_BatteryLow", ConditionBatteryLow, retBatteryLow);
}

STDMETHODIMP PrinterStatus::get_BatteryCharging(VARIANT_BOOL* retBatteryCharging) noexcept
{
    return ReadCondition("PrinterStatus::get_BatteryCharging", ConditionBatteryCharging, retBatteryCharging);
}

STDMETHODIMP PrinterStatus::get_RibbonLow(VARIANT_BOOL* retRibbonLow) noexcept
{
    return ReadCondition("PrinterStatus::get_RibbonLow", ConditionRibbonLow, retRibbonLow);
}

STDMETHODIMP PrinterStatus::get_RibbonOut(VARIANT_BOOL* retRibbonOut) noexcept
{
    return ReadCondition("PrinterStatus::get_RibbonOut", ConditionRibbonOut, retRibbonOut);
}

STDMETHODIMP PrinterStatus::get_RibbonError(VARIANT_BOOL* retRibbonError) noexcept
{
    return ReadCondition("PrinterStatus::get_RibbonError", ConditionRibbonError, retRibbonError);
}

STDMETHODIMP PrinterStatus::get_PaperLow(VARIANT_BOOL* retPaperLow) noexcept
{
    return ReadCondition("PrinterStatus::get_PaperLow", ConditionPaperLow, retPaperLow);
}

STDMETHODIMP PrinterStatus::get_HeadOpen(VARIANT_BOOL* retHeadOpen) noexcept
{
    return ReadCondition("PrinterStatus::get_HeadOpen", ConditionHeadOpen, retHeadOpen);
}

STDMETHODIMP PrinterStatus::get_HeadError(VARIANT_BOOL* retHeadError) noexcept
{
    return ReadCondition("PrinterStatus::get_HeadError", ConditionHeadError, retHeadError);
}

STDMETHODIMP PrinterStatus::get_CutterError(VARIANT_BOOL* retCutterError) noexcept
{
    return ReadCondition("PrinterStatus::get_CutterError", ConditionCutterError, retCutterError);
}

STDMETHODIMP PrinterStatus::get_Warning(VARIANT_BOOL* retWarning) noexcept
{
    return ReadSeverity("PrinterStatus::get_Warning", StatusSeverityWarning, retWarning);
}

STDMETHODIMP PrinterStatus::get_Error(VARIANT_BOOL* retError) noexcept
{
    return ReadSeverity("PrinterStatus::get_Error", StatusSeverityError, retError);
}

STDMETHODIMP PrinterStatus::get_OdometerPages(unsigned long* retOdometerPages) noexcept
{
    return Guard("PrinterStatus::get_OdometerPages", [&] {
        CheckOut(retOdometerPages);
        *retOdometerPages = Driver().GetOdometer().GetPages();
    });
}

STDMETHODIMP PrinterStatus::get_OdometerDistance(float* retOdometerDistance) noexcept
{
    return Guard("PrinterStatus::get_OdometerDistance", [&] {
        CheckOut(retOdometerDistance);
        *retOdometerDistance = static_cast<float>(Driver().GetOdometer().GetDistance());
    });
}

DriverInterface& PrinterStatus::Driver() const
{
    if (!_driver) throw PrinterStatusNotInitialized_E();
    return *_driver;
}

HRESULT PrinterStatus::ReadCondition(const char* function, PrinterCondition condition, VARIANT_BOOL* retValue) noexcept
{
    return Guard(function, [&] {
        CheckOut(retValue);
        *retValue = ToVariantBool(Driver().TestStatusFlag(condition));
    });
}

HRESULT PrinterStatus::ReadSeverity(const char* function, StatusSeverity severity, VARIANT_BOOL* retValue) noexcept
{
    return Guard(function, [&] {
        CheckOut(retValue);
        *retValue = ToVariantBool(Driver().GetStatusSeverity() == severity);
    });
}
