// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/notifications/Change.h"

/// What a caller of FindFirstPrinterChangeNotification wants to be told.
class NotifyRequest {
public:
    /// `options` may be null. ERROR_INVALID_PARAMETER if nothing is asked for, and for options that are malformed: a
    /// version other than 2, a type other than the two or one of them twice, an unknown category of printers.
    NotifyRequest(DWORD filter, DWORD category, const PRINTER_NOTIFY_OPTIONS* options);

    DWORD Filter() const noexcept { return _filter; }
    /// Whether blocks of fields are asked for at all.
    bool WantsFields() const noexcept { return !_printerFields.empty() || !_jobFields.empty(); }
    /// The fields asked for of a printer or of a job, in the caller's order.
    const std::vector<WORD>& Fields(WORD type) const noexcept;
    /// False if only printers are asked for that the simulator has none of.
    bool CoversPrinters() const noexcept { return _coversPrinters; }

private:
    void AddFields(const PRINTER_NOTIFY_OPTIONS_TYPE& type);

    DWORD _filter;
    bool _coversPrinters;
    std::vector<WORD> _printerFields;
    std::vector<WORD> _jobFields;
};
