// SPDX-License-Identifier: MIT
#include "vrl/tracking/XJobStatusThread.h"

#include "foundation/Assert.h"
#include "foundation/Trace.h"
#include "vrl/core/JobEventID.h"
#include "vrl/core/StatusThreadFactory.h"
#include "vrl/core/XPrinter.h"
#include "vrl/core/XPrinterPool.h"
#include "vrl/frame/MethodGuard.h"
#include "vrl/tracking/JobEventDispatch.h"
#include "vrl/tracking/NoticeParser.h"
#include "vrl/tracking/PrinterNotificationsHandler.h"

#include <iterator>

namespace {

constexpr DWORD quietTimeMs = 1000;
constexpr DWORD pauseAfterFailureMs = 100;

// The spooler takes the lists by pointers that it only reads.
WORD watchedPrinterFields[] = {
    PRINTER_NOTIFY_FIELD_PRINTER_NAME, PRINTER_NOTIFY_FIELD_SHARE_NAME, PRINTER_NOTIFY_FIELD_PORT_NAME,
    PRINTER_NOTIFY_FIELD_COMMENT,      PRINTER_NOTIFY_FIELD_LOCATION,   PRINTER_NOTIFY_FIELD_PRIORITY,
    PRINTER_NOTIFY_FIELD_START_TIME,   PRINTER_NOTIFY_FIELD_UNTIL_TIME, PRINTER_NOTIFY_FIELD_STATUS,
};

WORD watchedJobFields[] = {
    JOB_NOTIFY_FIELD_STATUS,      JOB_NOTIFY_FIELD_TOTAL_PAGES, JOB_NOTIFY_FIELD_PAGES_PRINTED,
    JOB_NOTIFY_FIELD_TOTAL_BYTES, JOB_NOTIFY_FIELD_PRIORITY,    JOB_NOTIFY_FIELD_START_TIME,
    JOB_NOTIFY_FIELD_UNTIL_TIME,  JOB_NOTIFY_FIELD_POSITION,    JOB_NOTIFY_FIELD_DEVMODE,
};

PRINTER_NOTIFY_OPTIONS_TYPE FieldsOf(WORD type, WORD* fields, size_t count)
{
    PRINTER_NOTIFY_OPTIONS_TYPE options{};
    options.Type = type;
    options.Count = static_cast<DWORD>(count);
    options.pFields = fields;
    return options;
}

/// Compares an owner, for which no handle is null, with what the platform calls no handle.
bool operator!=(const OChangeHandle& owner, HANDLE handle)
{
    return handle == INVALID_HANDLE_VALUE ? static_cast<bool>(owner) : owner.Get() != handle;
}
bool operator!=(const OPrinterHandle& owner, HANDLE handle)
{
    return handle == INVALID_HANDLE_VALUE ? static_cast<bool>(owner) : owner.Get() != handle;
}

/// Runs one step of the thread. What goes wrong in it ends here, reported as a member of an automation class reports
/// it.
template <class Body>
void RunStep(const char* function, Body&& body) noexcept
{
    MethodGuard(function, CLSID_NULL, static_cast<Body&&>(body));
}

} // namespace

std::unique_ptr<IThreadable> MakeStatusThread(XPrinter& printer)
{
    return std::make_unique<XJobStatusThread>(printer);
}

XJobStatusThread::XJobStatusThread(XPrinter& printer)
    : _printer(printer), _printerName(printer.GetSpoolerPrinterName()),
      _hPrn(OpenPrinterWithAccess(_printerName.wstring(), PRINTER_ACCESS_USE)),
      _dispatch(std::make_unique<JobEventDispatch>(printer, _printerName))
{
    if (!_hPrn) return;
    _hStopEvent.Reset(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
    _notificationsHandler = new PrinterNotificationsHandler(printer, printer.GetOdometer());
    SetUpNotification();
}

XJobStatusThread::~XJobStatusThread()
{
    _hNotify.Reset(); // of a thread that never ran
    _hPrn.Reset();
    _hStopEvent.Reset();
    _events.clear();
    _dispatch->ReleaseJobs();
}

void XJobStatusThread::SetUpNotification()
{
    DEBUG_ASSERT(_hPrn != ((HANDLE)(LONG_PTR)-1));
    PRINTER_NOTIFY_OPTIONS_TYPE types[] = {
        FieldsOf(PRINTER_NOTIFY_TYPE, watchedPrinterFields, std::size(watchedPrinterFields)),
        FieldsOf(JOB_NOTIFY_TYPE, watchedJobFields, std::size(watchedJobFields)),
    };
    PRINTER_NOTIFY_OPTIONS options{};
    options.Version = 2;
    options.Count = std::size(types);
    options.pTypes = types;
    _hNotify.Reset(::FindFirstPrinterChangeNotification(_hPrn.Get(), PRINTER_CHANGE_JOB, 0, &options));
    DEBUG_ASSERT(_hNotify != ((HANDLE)(LONG_PTR)-1));
}

void XJobStatusThread::TheadStart()
{
    const XPrinterPool::StatusThreadScope thisThread(_printer);
    const int processID = static_cast<int>(::GetCurrentProcessId());
    const int threadID = static_cast<int>(::GetCurrentThreadId());
    TRACE("Entering XJobStatusThread::TheadStart   PID = %d   TID = %d\n", processID, threadID);
    DEBUG_ASSERT(_hNotify != ((HANDLE)(LONG_PTR)-1));
    _running = static_cast<bool>(_hNotify);
    while (_running) WaitForNotice();
    _hNotify.Reset();
    TRACE("*** Exiting XJobStatusThread::TheadStart   PID = %d   TID = %d\n", processID, threadID);
}

void XJobStatusThread::ThreadStop()
{
    TRACE("XJobStatusThread::ThreadStop called\n");
    _running = false;
    ::SetEvent(_hStopEvent.Get());
}

void XJobStatusThread::WaitForNotice()
{
    const HANDLE handles[] = {_hNotify.Get(), _hStopEvent.Get()};
    switch (::WaitForMultipleObjects(std::size(handles), handles, FALSE, quietTimeMs)) {
    case WAIT_OBJECT_0:
        RunStep("XJobStatusThread::HandleNotifications", [this] { HandleNotifications(); });
        break;
    case WAIT_OBJECT_0 + 1:
        TRACE("ThreadStop event\n");
        _running = false;
        break;
    case WAIT_TIMEOUT:
        RunStep("XJobStatusThread::TheadStart", [this] { HandleQuietSecond(); });
        break;
    case WAIT_FAILED:
    case WAIT_ABANDONED_0:
        DEBUG_ASSERT(false);
        _running = false;
        break;
    default:
        DEBUG_ASSERT(false);
        _running = false;
    }
}

// Deliberate: the flag PRINTER_NOTIFY_INFO_DISCARDED is not looked at and a refresh never asked for. What the spooler
// has dropped stays unknown.
void XJobStatusThread::HandleNotifications()
{
    TRACE("-----XJobStatusThread::HandleNotifications-----\n");
    _events.clear();

    DWORD change = 0;
    ONotifyInfo info;
    PRINTER_NOTIFY_OPTIONS options{};
    options.Version = 2;
    if (!::FindNextPrinterChangeNotification(_hNotify.Get(), &change, &options,
                                             reinterpret_cast<void**>(info.Receive()))) {
        DEBUG_ASSERT(false);
        // The handle may stay signalled: without a pause, a spooler that has gone would keep this thread spinning.
        if (_running) ::WaitForSingleObject(_hStopEvent.Get(), pauseAfterFailureMs);
        return;
    }
    if (change & PRINTER_CHANGE_ADD_JOB) HandleNewJob(info.Get());
    if (info) NoticeParser(_printer, *_notificationsHandler, _events).Parse(*info.Get());
    info.Reset();
    if (_events.empty()) return;

    _dispatch->HandlePrintJobEvents(_events);
    _dispatch->HandlePrintQueueEvents(_events);
    _events.clear();
}

/// The new job is the one of the first entry, if that speaks of a job.
void XJobStatusThread::HandleNewJob(const PRINTER_NOTIFY_INFO* info)
{
    TRACE("PRINTER_CHANGE_ADD_JOB\n");
    if (!info || info->Count == 0 || info->aData[0].Type != JOB_NOTIFY_TYPE) return;
    const DWORD jobID = info->aData[0].Id;
    if (!_dispatch->KnowsJob(jobID)) _events.emplace_back(jobID, JobEventID_OnJobNew);
}

void XJobStatusThread::HandleQuietSecond()
{
    _printer.PurgeJobs();
    if (_printer.HasPrinterReferences()) _notificationsHandler->CheckOdometer(_printer.GetOdometer());
}
