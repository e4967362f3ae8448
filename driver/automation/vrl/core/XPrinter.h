// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "foundation/arrays/OTypedArray.h"
#include "foundation/text/OString.h"
#include "foundation/threads/IThreadable.h"
#include "foundation/threads/OThread.h"
#include "vrl/core/JobOdometer.h"
#include "vrl/core/XJobPool.h"
#include "vrl/core/XPrinterPool.h"
#include "vrl/driver/DriverInterface.h"
#include "vrl/frame/ReferenceList.h"
#include "vrl/spooler/Spooler.h"

#include <memory>

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

    /// Stops the notification thread and waits for its end. The spooler handle stays open.
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

    // Jobs

    /// The record of a job with one more holder; never null. Throws `CouldNotOpenPrinter_E` if the job must be loaded
    /// and the spooler doesn't open the printer. Better: an `XJobRef`.
    XJob* AcquireJob(DWORD jobID);
    void ReleaseJob(XJob* xJob) { _jobPool.ReleaseJob(xJob, nullptr); }
    /// If it was the last holder, `printJob` also leaves the record's list of objects with sinks.
    void ReleaseJob(XJob* xJob, SinkOwner* printJob) { _jobPool.ReleaseJob(xJob, printJob); }

    /// Destroys the records that nobody has held for a minute.
    void PurgeJobs() { _jobPool.Purge(); }

    // Odometer

    /// The pages and the media that have gone through the printer, as counted here.
    const Odometer& GetOdometer() const noexcept { return _odometer.Get(); }

    /// Job `jobId` has printed `pagesPrinted` pages so far; `xJob` tells copies and paper. Only the notification thread
    /// calls it.
    void UpdateOdometer(DWORD jobId, const XJob& xJob, DWORD pagesPrinted);

    // Sinks

    /// Starts the notification thread unless it was started before; it lives as long as the `XPrinter`. Throws, with
    /// nothing started, if there is no memory for it; the next call then tries again.
    void StartStatusThread();

    /// The lists of objects that have sinks, of `Printer` and of `PrintQueue`. They hold no references: an object takes
    /// itself out before it dies. Adding throws std::bad_alloc.
    void AddPrinterReference(SinkOwner& printer) { _printerRefs->Add(printer); }
    void RemovePrinterReference(SinkOwner& printer) noexcept { _printerRefs->Remove(printer); }
    bool HasPrinterReferences() const noexcept { return !_printerRefs->IsEmpty(); }
    ReferenceList::Scope LockPrinterReferences() { return ReferenceList::Scope(*_printerRefs); }

    void AddQueueReference(SinkOwner& queue) { _queueRefs->Add(queue); }
    void RemoveQueueReference(SinkOwner& queue) noexcept { _queueRefs->Remove(queue); }
    bool HasQueueReferences() const noexcept { return !_queueRefs->IsEmpty(); }
    ReferenceList::Scope LockQueueReferences() { return ReferenceList::Scope(*_queueRefs); }

private:
    friend class XPrinterPool;

    void Open(const OString& name);
    bool IsNamed(const OString& name) const;
    void ChooseDriver() REQUIRES(_printerLock);

    /// Asks the notification thread to stop until it has ended; nothing happens if there is none. No lock may be held
    /// that the thread, or a sink that it is calling, could want.
    void StopStatusThread();
    /// Destroys the worker of a stopped thread, with what it holds. The next first sink starts another.
    void DropStatusThread();

    OString ReadText(wchar_t* PRINTER_INFO_2W::*field) const;
    DWORD ReadNumber(DWORD PRINTER_INFO_2W::*field, DWORD unread = 0) const;
    bool HasAttribute(DWORD attribute) const;

    enum class Rewriting { Unread, Written, Refused };

    /// The one way to change level 2: reads it, lets `replace` change the record, and writes all of it back. The last
    /// error is that of a refused write.
    template <class Replace>
    Rewriting Rewrite(Replace&& replace) REQUIRES(_printerLock);

    /// Replaces one field; neither a failed read nor a refused write is told.
    template <class Value>
    void WriteField(Value PRINTER_INFO_2W::*field, Value value);

    void WriteSharedAttribute(bool shared) REQUIRES(_printerLock);
    void Control(DWORD command);

    long _referenceCount GUARDED_BY(XPrinterPool::_lock) = 0;
    bool _closing GUARDED_BY(XPrinterPool::_lock) = false; ///< the last count has gone; only its own thread finds it
    DWORD _statusThreadId GUARDED_BY(XPrinterPool::_lock) = 0; ///< of the running notification thread

    XJobPool _jobPool;
    JobOdometer _odometer;
    mutable OCriticalSection _printerLock;
    mutable OCriticalSection _threadLock;
    OString _printerName GUARDED_BY(_printerLock);
    HANDLE _hPrinter GUARDED_BY(_printerLock) = nullptr; // Deliberate: never closed, by no path
    std::unique_ptr<IThreadable> _statusThread GUARDED_BY(_threadLock);
    std::unique_ptr<OThread> _statusThreadRunner GUARDED_BY(_threadLock);

    // Set by `Open`, before anybody else has the printer, and never again.
    std::unique_ptr<DriverInterface> _driver;
    bool _advancedDriver = false;

    const std::shared_ptr<ReferenceList> _queueRefs = std::make_shared<ReferenceList>(
        "PrintQueue added to reference array\n", "PrintQueue removed from reference array\n");
    const std::shared_ptr<ReferenceList> _printerRefs =
        std::make_shared<ReferenceList>("Printer added to reference array\n", "Printer removed from reference array\n");
};
