// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"
#include "foundation/text/OString.h"
#include "foundation/threads/IThreadable.h"
#include "vrl/spooler/Spooler.h"
#include "vrl/tracking/ParsedJobEvent.h"

#include <atomic>
#include <memory>

class JobEventDispatch;
class PrinterNotificationsHandler;
class XPrinter;

/// What the notification thread of one printer runs: it waits for the spooler's notices, keeps the job records current
/// and calls the sinks. In each second without a notice it destroys old job records and looks at the odometer.
///
/// A printer that can't be opened or watched gives a thread that ends at once; nobody is told, and no event ever comes.
/// What goes wrong with a batch of notices costs that batch, and the thread goes on.
/// Ownership: owned by its `XPrinter`, which starts it, stops it and joins it.
/// Threading: `ThreadStop` on any thread; all else on the thread itself, but for construction and destruction.
class XJobStatusThread final : public IThreadable {
public:
    /// Opens the printer once more and asks the spooler for notices.
    explicit XJobStatusThread(XPrinter& printer);
    ~XJobStatusThread() override;

    void TheadStart() override; // Deliberate: the spelling is settled
    void ThreadStop() override;

private:
    void SetUpNotification();
    void WaitForNotice();
    void HandleNotifications();
    void HandleNewJob(const PRINTER_NOTIFY_INFO* info);
    void HandleQuietSecond();

    XPrinter& _printer;
    OString _printerName;
    OPrinterHandle _hPrn; ///< this thread's own
    OWaitHandle _hStopEvent;
    OChangeHandle _hNotify;
    std::atomic<bool> _running{false};
    std::unique_ptr<JobEventDispatch> _dispatch;
    ParsedJobEvents _events;                                      ///< of the batch that is being handled
    PrinterNotificationsHandler* _notificationsHandler = nullptr; // Deliberate: never destroyed
};
