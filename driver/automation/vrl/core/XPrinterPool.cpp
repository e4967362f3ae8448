// SPDX-License-Identifier: MIT
#include "vrl/core/XPrinterPool.h"

#include "foundation/Assert.h"
#include "foundation/OLockGuard.h"
#include "foundation/system/ModuleInstance.h"
#include "vrl/core/XPrinter.h"
#include "vrl/frame/Module.h"

#include <memory>

OCriticalSection XPrinterPool::_lock;
OPointerArray<XPrinter> XPrinterPool::_openPrinters;
XPrinter* XPrinterPool::_lastAskedFor = nullptr;

XPrinter* XPrinterPool::Acquire(const OString& name)
{
    OLockGuard guard(_lock);
    if (XPrinter* const open = Find(name)) {
        ++open->_referenceCount;
        return open;
    }

    auto opened = std::make_unique<XPrinter>();
    opened->Open(name);
    opened->_referenceCount = 1;
    _openPrinters.Add(opened.get());
    return opened.release();
}

/// The parts of a printer are bound one after another, by its name: the printer that was asked for last comes first. A
/// printer that is being closed is there for its own notification thread only, which doesn't get the one that others
/// have opened meanwhile: that one isn't remembered.
XPrinter* XPrinterPool::Find(const OString& name)
{
    if (_lastAskedFor && !_lastAskedFor->_closing && _lastAskedFor->IsNamed(name)) return _lastAskedFor;
    bool mayRemember = true;
    for (int i = 0; i < _openPrinters.GetSize(); ++i) {
        XPrinter* const open = _openPrinters.GetAt(i);
        if (!open->IsNamed(name)) continue;
        if (!open->_closing || open == PrinterOfThisThread()) {
            if (mayRemember) _lastAskedFor = open;
            return open;
        }
        mayRemember = false;
    }
    return nullptr;
}

void XPrinterPool::Release(XPrinter* xPrinter)
{
    bool mayWait = true;
    {
        OLockGuard guard(_lock);
        DEBUG_ASSERT(xPrinter->_referenceCount > 0);
        if (xPrinter->_referenceCount > 0) --xPrinter->_referenceCount;
        if (xPrinter->_referenceCount > 0 || xPrinter->_closing) return;
        xPrinter->_closing = true;
        mayWait = !PrinterOfThisThread();
    }
    if (mayWait) {
        Close(xPrinter);
    } else if (!CloseOnPoolThread(xPrinter)) {
        OLockGuard guard(_lock);
        xPrinter->_closing = false;
    }
}

int XPrinterPool::GetCount()
{
    OLockGuard guard(_lock);
    return _openPrinters.GetSize();
}

/// Null on a thread that is no notification thread.
XPrinter* XPrinterPool::PrinterOfThisThread()
{
    const DWORD thread = ::GetCurrentThreadId();
    for (int i = 0; i < _openPrinters.GetSize(); ++i) {
        if (_openPrinters.GetAt(i)->_statusThreadId == thread) return _openPrinters.GetAt(i);
    }
    return nullptr;
}

bool XPrinterPool::CloseOnPoolThread(XPrinter* xPrinter)
{
    Module::AddLock();
    const auto close = [](TP_CALLBACK_INSTANCE*, void* context) {
        Close(static_cast<XPrinter*>(context));
        Module::RemoveLock();
    };
    TP_CALLBACK_ENVIRON environment;
    ::InitializeThreadpoolEnvironment(&environment);
    ::SetThreadpoolCallbackRunsLong(&environment);
    ::SetThreadpoolCallbackLibrary(&environment, GetModuleInstance());
    const bool accepted = ::TrySubmitThreadpoolCallback(close, xPrinter, &environment) != FALSE;
    if (!accepted) Module::RemoveLock();
    return accepted;
}

/// Holds no lock while it waits for the thread, which may take its own printer up again meanwhile.
void XPrinterPool::Close(XPrinter* xPrinter)
{
    xPrinter->StopStatusThread();
    if (IsHeld(xPrinter)) xPrinter->DropStatusThread(); // its passing objects, perhaps
    if (!TakeOutOrReopen(xPrinter)) return;
    const std::unique_ptr<XPrinter> gone(xPrinter);
}

bool XPrinterPool::IsHeld(const XPrinter* xPrinter)
{
    OLockGuard guard(_lock);
    return xPrinter->_referenceCount > 0;
}

/// Takes the printer out of the table. If a client has kept an object that the notification thread made while the
/// printer was being closed, the printer lives on instead, with no thread until its next first sink.
bool XPrinterPool::TakeOutOrReopen(XPrinter* xPrinter)
{
    OLockGuard guard(_lock);
    if (xPrinter->_referenceCount > 0) {
        xPrinter->_closing = false;
        return false;
    }
    for (int i = 0; i < _openPrinters.GetSize(); ++i) {
        if (_openPrinters.GetAt(i) != xPrinter) continue;
        _openPrinters.RemoveAt(i, 1);
        if (_lastAskedFor == xPrinter) _lastAskedFor = nullptr;
        break;
    }
    return true;
}

XPrinterPool::StatusThreadScope::StatusThreadScope(XPrinter& xPrinter) : _xPrinter(xPrinter)
{
    OLockGuard guard(_lock);
    _xPrinter._statusThreadId = ::GetCurrentThreadId();
}

XPrinterPool::StatusThreadScope::~StatusThreadScope()
{
    OLockGuard guard(_lock);
    _xPrinter._statusThreadId = 0;
}
