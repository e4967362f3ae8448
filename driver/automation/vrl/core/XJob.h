// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "foundation/OLockGuard.h"
#include "foundation/arrays/OTypedArray.h"
#include "foundation/text/OString.h"
#include "vrl/core/JobStatus.h"
#include "vrl/core/XJobDevMode.h"
#include "vrl/driver/DriverInterface.h"
#include "vrl/frame/ReferenceList.h"

#include <atomic>
#include <memory>

/// The shared record of one job in one printer's queue: what every automation object that speaks of the job reads, and
/// what the notification thread writes.
///
/// The spooler is read once, at `Initialize`; from then on the record follows the spooler's notices.
/// Ownership: counted by hand in `XJobPool`, which makes and destroys it; hold it with an `XJobRef`.
/// Threading: any thread may read and control; only the notification thread calls `UpdateStatus`, `SetDevMode` and
///            `GetDevMode`. `_lock` guards the fields.
/// Errors:    the getters and setters from `GetName` on throw `InvalidJob_E` while the job has not been loaded, which
/// is
///            for good if it was gone by then.
class XJob final : private JobWitness {
public:
    XJob();
    XJob(const XJob&) = delete;
    XJob& operator=(const XJob&) = delete;
    ~XJob();

    /// Loads the job from the spooler (level 2). A job that is gone leaves the record unloaded, which is no failure.
    /// Throws `CouldNotOpenPrinter_E`.
    void Initialize(const OString& printerName, DWORD jobID);

    /// Takes a status of the spooler (JOB_STATUS_* bits). `events` becomes the list of what clients are to be told
    /// (`JobEventID`), in order. A job that leaves the queue is asked of the device, for as long as that takes.
    void UpdateStatus(DWORD winStatus, OTypedArray<int>& events);

    void SetDevMode(const DEVMODEW& devMode) { _devMode = std::make_unique<XJobDevMode>(devMode); }

    /// The last device mode seen; null if none was. Good until the next.
    const XJobDevMode* GetDevMode() const noexcept { return _devMode.get(); }

    /// The driver that job control goes to, borrowed; null at first.
    void SetDriver(DriverInterface* driver) noexcept { _driver = driver; }

    // Sinks

    /// The job objects that have sinks. The list holds no references: an object takes itself out before it dies.
    void AddJobReference(SinkOwner& job);
    void RemoveJobReference(SinkOwner& job) noexcept { _jobReferences->Remove(job); }
    bool HasJobReferences() const noexcept { return !_jobReferences->IsEmpty(); }
    ReferenceList::Scope LockJobReferences() { return ReferenceList::Scope(*_jobReferences); }

    // What the record knows without having been loaded

    DWORD GetJobID() const;
    OString GetPrinterName() const;

    // What the job is

    OString GetName() const { return ReadText(&XJob::_name); }
    OString GetMachineName() const { return ReadText(&XJob::_machineName); }
    OString GetUserName() const { return ReadText(&XJob::_userName); }
    OString GetDataType() const { return ReadText(&XJob::_dataType); }
    OString GetPrintProcessor() const { return ReadText(&XJob::_printProcessor); }
    OString GetNotifyName() const { return ReadText(&XJob::_notifyName); }

    /// UTC.
    SYSTEMTIME GetSubmittedTime() const { return Read(&XJob::_submittedTime); }

    DWORD GetTotalPages() const { return Read(&XJob::_totalPages); }
    void SetTotalPages(DWORD pages) { Write(&XJob::_totalPages, pages); }
    DWORD GetPagesPrinted() const { return Read(&XJob::_pagesPrinted); }
    void SetPagesPrinted(DWORD pages) { Write(&XJob::_pagesPrinted, pages); }

    /// Bytes.
    DWORD GetSize() const { return Read(&XJob::_size); }
    void SetSize(DWORD bytes) { Write(&XJob::_size, bytes); }

    /// 0 until the spooler has told one.
    DWORD GetPosition() const { return Read(&XJob::_position); }
    void SetPosition(DWORD position) { Write(&XJob::_position, position); }

    DWORD GetPriority() const { return Read(&XJob::_priority); }
    void SetPriority(DWORD priority) { Write(&XJob::_priority, priority); }

    /// Minutes since midnight UTC, as the spooler keeps them.
    DWORD GetStartTime() const { return Read(&XJob::_startTime); }
    void SetStartTime(DWORD minutes) { Write(&XJob::_startTime, minutes); }
    DWORD GetUntilTime() const { return Read(&XJob::_untilTime); }
    void SetUntilTime(DWORD minutes) { Write(&XJob::_untilTime, minutes); }

    /// Writes level 2 of the job in the spooler, then the record. Nothing happens for a job that is gone. Throws
    /// `CouldNotOpenPrinter_E`, and `SystemError_E` for a refused write.
    void SetNotifyName(const OString& notifyName);

    // Its status

    OString GetStatusText() const;
    bool IsSpooling() const { return ReadFlag(&JobStatus::spooling); }
    bool IsPrinting() const { return ReadFlag(&JobStatus::printing); }
    bool IsPaused() const { return ReadFlag(&JobStatus::paused); }
    bool IsCancelled() const { return ReadFlag(&JobStatus::cancelled); }
    bool IsSent() const { return ReadFlag(&JobStatus::sent); }
    bool IsPrinted() const { return ReadFlag(&JobStatus::printed); }
    bool IsCompleted() const { return ReadFlag(&JobStatus::completed); }
    bool IsRestarted() const { return ReadFlag(&JobStatus::restarted); }
    bool IsUserInterventionRequired() const { return ReadFlag(&JobStatus::userInterventionRequired); }

    // Control, through the driver. A refusal looks like success, and the record changes only when the spooler tells.

    void Pause();
    void Resume();
    void Cancel(); ///< deletes the job
    void Restart();
    void SetJobPriority(DWORD priority);
    void SetJobStartTime(DWORD minutes);
    void SetJobUntilTime(DWORD minutes);

private:
    friend class XJobPool;

    DeviceVerdict QueryDeviceJobStatus() override;
    bool IsBidirectionalPrinter() override;

    void Refresh() REQUIRES(_lock);
    void CheckLoaded() const;

    OString ReadText(OString XJob::*field) const;
    bool ReadFlag(bool JobStatus::*flag) const;
    template <class T>
    T Read(T XJob::*field) const
    {
        CheckLoaded();
        OLockGuard guard(_lock);
        return this->*field;
    }
    template <class T>
    void Write(T XJob::*field, T value)
    {
        CheckLoaded();
        OLockGuard guard(_lock);
        this->*field = value;
    }

    std::unique_ptr<XJobDevMode> _devMode; // of the notification thread alone
    long _refCount = 0;                    // under the lock of the pool
    std::atomic<bool> _initialized{false};
    DWORD _lastReleaseTicks; // under the lock of the pool
    std::atomic<DriverInterface*> _driver{nullptr};
    const std::shared_ptr<ReferenceList> _jobReferences;

    mutable OCriticalSection _lock;
    DWORD _jobID GUARDED_BY(_lock) = 0;
    OString _name GUARDED_BY(_lock);
    OString _printerName GUARDED_BY(_lock);
    OString _machineName GUARDED_BY(_lock);
    OString _userName GUARDED_BY(_lock);
    OString _dataType GUARDED_BY(_lock);
    OString _printProcessor GUARDED_BY(_lock);
    OString _notifyName GUARDED_BY(_lock);
    DWORD _pagesPrinted GUARDED_BY(_lock) = 0;
    DWORD _totalPages GUARDED_BY(_lock) = 0;
    DWORD _size GUARDED_BY(_lock) = 0;
    DWORD _position GUARDED_BY(_lock) = 0;
    DWORD _priority GUARDED_BY(_lock) = 1;
    DWORD _startTime GUARDED_BY(_lock) = 0;
    DWORD _untilTime GUARDED_BY(_lock) = 0;
    SYSTEMTIME _submittedTime GUARDED_BY(_lock) = {};
    JobStatus _status GUARDED_BY(_lock);
};
