// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "foundation/Platform.h"

/// Running count of the pages and the distance of media of one printer, kept in the printer's data.
///
/// Ownership: plain value, copied freely. Threading: any thread; own lock, taken with the other's on assignment and
/// comparison. Units: distance in millimetres, paper length in tenths of a millimetre.
class Odometer {
public:
    Odometer() = default;
    Odometer(unsigned long pages, double distance);
    Odometer(const Odometer& other);
    Odometer& operator=(const Odometer& other);

    Odometer& operator+=(const Odometer& other);
    bool operator==(const Odometer& other) const;
    bool operator!=(const Odometer& other) const { return !(*this == other); }

    unsigned long GetPages() const;
    double GetDistance() const;

    void Clear();

    /// Adds pages of one length each.
    void AddPages(unsigned long pages, unsigned long paperLength);

    /// Reads both values from the key "Gantry" of the printer's data. False, with nothing changed, unless both are
    /// there.
    bool ReadStored(HANDLE printer);

    /// Writes both values to the key "Gantry" of the printer's data. False if either could not be written.
    bool WriteStored(HANDLE printer) const;

private:
    unsigned long _pages GUARDED_BY(_lock) = 0;
    double _distance GUARDED_BY(_lock) = 0.0;
    mutable OCriticalSection _lock;
};
