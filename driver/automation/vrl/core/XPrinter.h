// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "foundation/arrays/OPointerArray.h"
#include "foundation/text/OString.h"
#include "foundation/threads/OThread.h"
#include "vrl/driver/DriverInterface.h"
#include "vrl/driver/Odometer.h"
#include "vrl/spooler/Spooler.h"
#include "vrl/tracking/XJobStatusThread.h"

#include <memory>

class Printer;
class PrintQueue;

/// The shared core of one printer: what every automation object that speaks of that printer works on.
///
/// Ownership: counted by hand in `XPrinterPool`, which makes and destroys it; hold it with an `XPrinterRef`.
/// Threading: any thread. `_printerLock` is held over every property read and write. Locks are taken in the order: the
/// pool's, then one of these.
/// Errors: getters give an empty text or 0 when the spooler does not answer; setters throw where they say so.
class XPrinter {
public:
    XPrinter() = default;
    XPrinter(const XPrinter&) = delete;
    XPrinter& operator=(const XPrinter&) = delete;

    /// Stops and joins the notification thread. The spooler handle stays open.
    ~XPrinter();

    /// The name as it was given to the first `Acquire` of this printer.
    OString GetPrinterName() const;

    // Fields of level 2

    OString GetSpoolerPrinterName() const;
    OString GetServerName() const;
    OString GetShareName() const;
    OString GetPortName() const;
    OString GetModelName() const;
    OString GetComment() const;
    OString GetLocation() const;

    /// An empty name turns sharing off, any other turns it on. Throws `PrinterShareNameNotValid_E` or `SystemError_E`.
    void SetShareName(const OString& shareName);

    /// Throws `InvalidPort_E` or `SystemError_E`.
    void SetPortName(const OString& portName);

    /// A refused write looks like success, here and down to `SetUntilTime`.
    void SetComment(const OString& comment);
    void SetLocation(const OString& location);

    DWORD GetDefaultPriority() const;
    void SetDefaultPriority(DWORD priority);

    /// Minutes since midnight UTC, as the spooler keeps them.
    DWORD GetStartTime() const;
    void SetStartTime(DWORD minutes);
    DWORD GetUntilTime() const;
    void SetUntilTime(DWORD minutes);

    bool IsLocal() const;
    bool IsNetwork() const;
    bool IsShared() const;

    /// Sharing a printer without share name shares it under its own name. Throws what `SetShareName` throws.
    void SetShared(bool shared);

    // Queue

    /// The spooler's refusal goes unnoticed.
    void Pause();
    void Resume();
    void Purge();

    /// Appends the numbers of all jobs in the queue, in the spooler's order. False if the spooler does not answer.
    bool EnumJobIds(OTypedArray<unsigned long>& jobIds) const;

    // Driver

    OString GetStatusText() const;

    /// True if the spooler took all of the file.
    bool SendFile(const OString& fileName, const OString& jobName);

    /// Borrowed; lives as long as the `XPrinter`.
    DriverInterface* GetDriver() const noexcept { return _driver.get(); }

    /// The printer's driver names an interface module.
    bool HasAdvancedDriver() const noexcept { return _advancedDriver; }

    // Sinks

    /// Starts the notification thread at the first call. It lives as long as the `XPrinter`.
    void StartStatusThread();

    /// The arrays list objects that have sinks and hold no references: an object takes itself out before it dies.
    void AddPrinterReference(Printer* printer);
    void RemovePrinterReference(Printer* printer);
    bool HasPrinterReferences() const;
    OPointerArray<Printer>& LockPrinterReferences() ACQUIRE(_printerRefLock);
    void UnlockPrinterReferences() RELEASE(_printerRefLock);

    void AddQueueReference(PrintQueue* queue);
    void RemoveQueueReference(PrintQueue* queue);
    bool HasQueueReferences() const;
    OPointerArray<PrintQueue>& LockQueueReferences() ACQUIRE(_queueRefLock);
    void UnlockQueueReferences() RELEASE(_queueRefLock);

private:
    friend class XPrinterPool;

    void Open(const OString& name);
    void ChooseDriver();
    void InitOdometer();

    OString ReadText(wchar_t* PRINTER_INFO_2W::*field) const;
    DWORD ReadNumber(DWORD PRINTER_INFO_2W::*field, DWORD without = 0) const;
    bool HasAttribute(DWORD attribute) const;

    /// Read, replace, write; a printer that can't be read is left alone.
    void WriteText(wchar_t* PRINTER_INFO_2W::*field, const OString& text);
    void WriteNumber(DWORD PRINTER_INFO_2W::*field, DWORD value);
    void WriteSharedAttribute(bool shared);
    bool Write(const SpoolerBuffer& info);
    void Control(DWORD command);

    long _referenceCount = 0; // under the pool's lock
    DWORD _currentJobId = 0;
    DWORD _pagesPrintedInJob = 0;
    DWORD _odometerPagesAtJobStart = 0;
    Odometer _odometer;
    mutable OCriticalSection _printerLock;
    OCriticalSection _threadLock;
    OString _printerName;
    HANDLE _hPrinter = nullptr; // Deliberate: never closed, by no path
    std::unique_ptr<XJobStatusThread> _statusThread;
    std::unique_ptr<OThread> _statusThreadRunner;
    std::unique_ptr<DriverInterface> _driver;
    bool _advancedDriver = false;
    mutable OCriticalSection _queueRefLock;
    OPointerArray<PrintQueue> _queueRefs;
    mutable OCriticalSection _printerRefLock;
    OPointerArray<Printer> _printerRefs;
};
