// SPDX-License-Identifier: MIT
#pragma once

#include "labelprinter/interface/Settings.h"

/// The driver's settings of one printer, opened by somebody. They are kept in the printer's data; what is changed here
/// goes there with `Save`, and what the device follows goes to the device.
///
/// Ownership: borrows the spooler handle. Threading: one at a time.
class LabelDriver {
public:
    explicit LabelDriver(HANDLE printer);

    void Save() const;

    /// Nothing changes if the file can't be read or understood.
    void Import(const wchar_t* fileName, DWORD mask);
    void Export(const wchar_t* fileName, DWORD mask) const;
    void Reset(DWORD mask);

private:
    HANDLE _printer;
    Settings _settings;
};
