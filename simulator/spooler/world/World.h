// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/notifications/ChangeNotifications.h"
#include "spooler/records/DriverRecord.h"
#include "spooler/world/HandleTable.h"
#include "spooler/records/PortRecord.h"
#include "spooler/records/PrinterRecord.h"

#include <memory>

/// An open handle together with the printer behind it.
struct PrinterAccess {
    OpenHandle& handle;
    const PrinterRecord& printer;

    /// Gives up with ERROR_ACCESS_DENIED unless the handle was opened for administering.
    void RequireAdminister() const;
};

/// The simulated machine: its printers, drivers and ports in the order in which they came, and what is open.
///
/// Threading: none of its own; the spooler's lock is held around every use.
/// Failures:  lookups that end in "Of" give up with the error that the spooler's functions report.
class World {
public:
    World();

    /// Empties it, puts the real user and machine with all rights back, and counts jobs from 1 again. Handles go on.
    void Clear();

    const std::vector<std::unique_ptr<PrinterRecord>>& Printers() const noexcept { return _printers; }
    /// Null for an unknown name. A share name is no name here.
    const PrinterRecord* FindPrinter(std::wstring_view name) const noexcept;
    /// ERROR_INVALID_PRINTER_NAME.
    const PrinterRecord& PrinterOf(const wchar_t* name) const;
    /// Adds the printer, and its ports and driver if they are unknown. ERROR_PRINTER_ALREADY_EXISTS.
    void InsertPrinter(PrinterRecord printer);
    void RemovePrinter(const PrinterRecord& printer);

    /// A handle to a printer or to a job of it. ERROR_INVALID_HANDLE, ERROR_PRINTER_DELETED.
    PrinterAccess AccessOf(HANDLE handle);
    /// A handle of any kind. ERROR_INVALID_HANDLE.
    OpenHandle& HandleOf(HANDLE handle);
    /// The name of the printer behind a handle; empty for a server's or an unknown one.
    std::wstring PrinterNameOf(HANDLE handle) noexcept;

    /// ERROR_INVALID_PARAMETER for an unknown job.
    static const JobRecord& JobOf(const PrinterRecord& printer, DWORD jobId);
    /// The user may do with this job as he likes: it is his own, or he administers the printer.
    bool MayAdministerJob(const PrinterRecord& printer, const JobRecord& job) const noexcept;

    std::vector<DriverRecord>& Drivers() noexcept { return _drivers; }
    DriverRecord* FindDriver(std::wstring_view name) noexcept;
    void PutDriver(DriverRecord driver);

    const std::vector<PortRecord>& Ports() const noexcept { return _ports; }
    PortRecord* FindPort(std::wstring_view name) noexcept;
    void PutPort(PortRecord port);
    /// False if there is no such port.
    bool RemovePort(std::wstring_view name);

    HandleTable& Handles() noexcept { return _handles; }
    ChangeNotifications& Notifications() noexcept { return _notifications; }

    const std::wstring& UserName() const noexcept { return _userName; }
    const std::wstring& MachineName() const noexcept { return _machineName; }
    /// What the user may do with the server itself: SERVER_*.
    DWORD ServerAccess() const noexcept { return _serverAccess; }
    void SetServerAccess(DWORD access) noexcept { _serverAccess = access; }
    /// Null leaves one as it is.
    void SetIdentity(const wchar_t* userName, const wchar_t* machineName);
    /// An empty name, the machine's name, or that with two backslashes before it.
    bool IsThisServer(std::wstring_view name) const noexcept;

    /// Somebody is still writing the job's document.
    bool IsBeingSpooled(DWORD printerId, DWORD jobId) const noexcept;
    /// The number of the next job that has none yet.
    void SetNextJobId(DWORD jobId) noexcept { _nextJobId = jobId; }
    DWORD NextJobId() const noexcept { return _nextJobId; }

    /// Minutes after midnight GMT.
    DWORD MinuteOfDay() const noexcept;
    /// Nothing: the real time of day.
    void SetClock(std::optional<DWORD> minuteOfDay);

    /// The print service doesn't run.
    bool IsStopped() const noexcept { return _stopped; }
    void Stop() noexcept { _stopped = true; }
    void Start();

    /// Takes a printer whose queue was changed since it was last taken; 0 if there is none.
    DWORD TakeChangedPrinter();
    /// Null if it is gone.
    const PrinterRecord* FindPrinter(DWORD printerId) const noexcept;

private:
    friend class ChangeScope;

    PrinterRecord& Editable(const PrinterRecord& printer) noexcept;
    /// Gives the job the next number if it has none. ERROR_INVALID_PARAMETER for a number in use.
    void NumberJob(const PrinterRecord& printer, JobRecord& job);
    bool IsJobIdInUse(DWORD jobId) const noexcept;
    void NoteAll();
    /// Gives the printer a new "ChangeID" and notes it for `TakeChangedPrinter`.
    void NoteChange(PrinterRecord& printer);

    void AddMissingPorts(const PrinterRecord& printer);
    void AttachAll();

    std::vector<std::unique_ptr<PrinterRecord>> _printers;
    std::vector<DriverRecord> _drivers;
    std::vector<PortRecord> _ports;
    HandleTable _handles;
    ChangeNotifications _notifications;
    std::vector<DWORD> _changedPrinters;
    std::wstring _userName;
    std::wstring _machineName;
    DWORD _serverAccess = SERVER_ALL_ACCESS;
    DWORD _lastPrinterId = 0;
    DWORD _nextJobId = 1;
    std::optional<DWORD> _minuteOfDay; // that a test has set
    bool _stopped = false;
    DWORD _lastChangeId = 0;
};

/// The single ports of a port field: "LPT1:,LPT2:" names two.
std::vector<std::wstring> SplitPorts(std::wstring_view portName);
