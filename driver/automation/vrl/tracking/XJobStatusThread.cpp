// SPDX-License-Identifier: MIT
#include "vrl/tracking/XJobStatusThread.h"

#include "foundation/Assert.h"
#include "foundation/Trace.h"
#include "vrl/core/StatusThreadFactory.h"

std::unique_ptr<IThreadable> MakeStatusThread(XPrinter& printer)
{
    return std::make_unique<XJobStatusThread>(&printer);
}

XJobStatusThread::XJobStatusThread(XPrinter* printer) : pPrinter(printer)
{
    DEBUG_ASSERT(pPrinter);
}

void XJobStatusThread::TheadStart()
{
    TRACE("Entering XJobStatusThread::TheadStart   PID = %lu   TID = %lu\n", ::GetCurrentProcessId(),
          ::GetCurrentThreadId());
    TRACE("*** Exiting XJobStatusThread::TheadStart   PID = %lu   TID = %lu\n", ::GetCurrentProcessId(),
          ::GetCurrentThreadId());
}

void XJobStatusThread::ThreadStop()
{
    TRACE("XJobStatusThread::ThreadStop called\n");
}
