// SPDX-License-Identifier: MIT
#pragma once

#include "labelprinter/device/DeviceState.h"

#include <string>

/// What a device's state means to those who ask: the extended status word of label printers, words, a severity, and the
/// status bits of the spooler.
struct DeviceStatus {
    DWORD flags = 0;             ///< bits 0 to 10 of the extended word
    std::string text;            ///< words separated by commas; "Ready", or "Printing" during a job
    int severity = 1;            ///< 1: normal, 2: error, 3: warning
    DWORD printerStatus = 0;     ///< PRINTER_STATUS_*
    DWORD jobStatus = 0;         ///< JOB_STATUS_* of a job that stands on the device
    const char* stall = nullptr; ///< the first thing that keeps the next label from being printed, in a word, or null
    bool fault = false;          ///< one of those things is an error
};

DeviceStatus StatusOf(const DeviceState& state, bool printing);
