// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/core/XPrinter.h"

#include <utility>

class XJob;

/// One count on an `XJob`, given back to its printer's pool at the end. The printer must outlive it.
class XJobRef {
public:
    XJobRef() noexcept = default;
    XJobRef(XJobRef&& other) noexcept
        : _xPrinter(std::exchange(other._xPrinter, nullptr)), _xJob(std::exchange(other._xJob, nullptr))
    {
    }
    XJobRef& operator=(XJobRef&& other) noexcept
    {
        if (this != &other) {
            Release();
            _xPrinter = std::exchange(other._xPrinter, nullptr);
            _xJob = std::exchange(other._xJob, nullptr);
        }
        return *this;
    }
    ~XJobRef() { Release(); }

    /// Counts the job of that number. Throws as `XPrinter::AcquireJob` does.
    static XJobRef Acquire(XPrinter& xPrinter, DWORD jobID)
    {
        XJobRef reference;
        reference._xJob = xPrinter.AcquireJob(jobID);
        reference._xPrinter = &xPrinter;
        return reference;
    }

    /// Gives the count back; the reference is empty then.
    void Release() noexcept { Release(nullptr); }

    /// The same; if it was the last count, `printJob` leaves the job's list of objects with sinks.
    void Release(SinkOwner* printJob) noexcept
    {
        if (XJob* const old = std::exchange(_xJob, nullptr))
            std::exchange(_xPrinter, nullptr)->ReleaseJob(old, printJob);
    }

    explicit operator bool() const noexcept { return _xJob != nullptr; }
    XJob& operator*() const noexcept { return *_xJob; }
    XJob* operator->() const noexcept { return _xJob; }
    XJob* Get() const noexcept { return _xJob; }

private:
    XPrinter* _xPrinter = nullptr;
    XJob* _xJob = nullptr;
};
