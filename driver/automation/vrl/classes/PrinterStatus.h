// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/frame/AutomationObject.h"
#include "vrl/classes/PrinterBinding.h"
#include "vrl/driver/StatusFlags.h"

/// The live state of a printer. It holds no snapshot: every property asks each time, so two that are read one after
/// the other can disagree.
///
/// A condition comes from the spooler's status word or, on a printer with a driver of its own, from the device. What
/// cannot be asked reads as false, 0 or "Ready".
/// Threading: any thread. Units: pages, millimetres.
class PrinterStatus final : public AutomationObject<PrinterStatus, IPrinterStatus> {
public:
    /// Binds to the printer that `printer` names; a bound object lets go of its old printer first.
    HRESULT Initialize(IPrinter* printer) noexcept;

    /// Binds to a printer and a driver interface that stands in for the printer's own.
    void Bind(PrinterDriverRef driver) { _driver.Set(std::move(driver)); }

    /// The driver interface. Throws `PrinterStatusNotInitialized_E`.
    Bound<PrinterDriverRef>::Hold CheckBound() const { return _driver.Check<PrinterStatusNotInitialized_E>(); }

    STDMETHODIMP get_Text(BSTR* retText) noexcept override;
    STDMETHODIMP get_Busy(VARIANT_BOOL* retBusy) noexcept override;
    STDMETHODIMP get_DoorOpen(VARIANT_BOOL* retDoorOpen) noexcept override;
    STDMETHODIMP get_Initializing(VARIANT_BOOL* retInitializing) noexcept override;
    STDMETHODIMP get_IOActive(VARIANT_BOOL* retIOActive) noexcept override;
    STDMETHODIMP get_ManualFeed(VARIANT_BOOL* retManualFeed) noexcept override;
    STDMETHODIMP get_NoToner(VARIANT_BOOL* retNoToner) noexcept override;
    STDMETHODIMP get_NotAvailable(VARIANT_BOOL* retNotAvailable) noexcept override;
    STDMETHODIMP get_Offline(VARIANT_BOOL* retOffline) noexcept override;
    STDMETHODIMP get_OutOfMemory(VARIANT_BOOL* retOutOfMemory) noexcept override;
    STDMETHODIMP get_OutputFull(VARIANT_BOOL* retOutputFull) noexcept override;
    STDMETHODIMP get_PaperJam(VARIANT_BOOL* retPaperJam) noexcept override;
    STDMETHODIMP get_PaperOut(VARIANT_BOOL* retPaperOut) noexcept override;
    STDMETHODIMP get_PaperProblem(VARIANT_BOOL* retPaperProblem) noexcept override;
    STDMETHODIMP get_Paused(VARIANT_BOOL* retPaused) noexcept override;
    STDMETHODIMP get_PowerSave(VARIANT_BOOL* retPowerSave) noexcept override;
    STDMETHODIMP get_Printing(VARIANT_BOOL* retPrinting) noexcept override;
    STDMETHODIMP get_Processing(VARIANT_BOOL* retProcessing) noexcept override;
    STDMETHODIMP get_TonerLow(VARIANT_BOOL* retTonerLow) noexcept override;
    STDMETHODIMP get_UserInterventionRequired(VARIANT_BOOL* retUserInterventionRequired) noexcept override;
    STDMETHODIMP get_Waiting(VARIANT_BOOL* retWaiting) noexcept override;
    STDMETHODIMP get_WarmingUp(VARIANT_BOOL* retWarmingUp) noexcept override;
    STDMETHODIMP get_LabelPresent(VARIANT_BOOL* retLabelPresent) noexcept override;
    STDMETHODIMP get_PrinterPaused(VARIANT_BOOL* retPrinterPaused) noexcept override;
    STDMETHODIMP get_BatteryLow(VARIANT_BOOL* retBatteryLow) noexcept override;
    STDMETHODIMP get_BatteryCharging(VARIANT_BOOL* retBatteryCharging) noexcept override;
    STDMETHODIMP get_RibbonLow(VARIANT_BOOL* retRibbonLow) noexcept override;
    STDMETHODIMP get_RibbonOut(VARIANT_BOOL* retRibbonOut) noexcept override;
    STDMETHODIMP get_RibbonError(VARIANT_BOOL* retRibbonError) noexcept override;
    STDMETHODIMP get_PaperLow(VARIANT_BOOL* retPaperLow) noexcept override;
    STDMETHODIMP get_HeadOpen(VARIANT_BOOL* retHeadOpen) noexcept override;
    STDMETHODIMP get_HeadError(VARIANT_BOOL* retHeadError) noexcept override;
    STDMETHODIMP get_CutterError(VARIANT_BOOL* retCutterError) noexcept override;
    STDMETHODIMP get_Warning(VARIANT_BOOL* retWarning) noexcept override;
    STDMETHODIMP get_Error(VARIANT_BOOL* retError) noexcept override;
    STDMETHODIMP get_OdometerPages(unsigned long* retOdometerPages) noexcept override;
    STDMETHODIMP get_OdometerDistance(float* retOdometerDistance) noexcept override;

private:
    HRESULT TestSeverity(const char* function, VARIANT_BOOL* retValue, StatusSeverity severity) noexcept;

    Bound<PrinterDriverRef> _driver{_lock};
};
