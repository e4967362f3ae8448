// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "foundation/arrays/OPointerArray.h"
#include "foundation/text/OString.h"

class XPrinter;

/// The one table of this process's open printers, by name without regard to the case of the letters a to z.
///
/// Threading: any thread; one lock guards the table and every reference count. Opening a printer holds that lock while
/// the spooler works. Closing one doesn't: its notification thread, which is waited for, may need the table.
class XPrinterPool {
public:
    /// The printer of that name with its count raised, opened if nobody has it open.
    /// Throws `CouldNotOpenPrinter_E`; then the table is as it was.
    static XPrinter* Acquire(const OString& name);

    /// Lowers the count; at 0 stops the printer's notification thread, waits for its end and destroys the printer.
    ///
    /// A notification thread never waits for one: what it releases last is closed on a thread of the system's pool,
    /// with the module locked until that is done. Without memory for that the printer stays open until it is acquired
    /// and released once more.
    static void Release(XPrinter* xPrinter);

    /// How many printers are open, those that are being closed included.
    static int GetCount();

    /// Stands on the stack of a notification thread as long as it runs, and so tells the pool whose thread it is.
    class StatusThreadScope {
    public:
        explicit StatusThreadScope(XPrinter& xPrinter);
        StatusThreadScope(const StatusThreadScope&) = delete;
        StatusThreadScope& operator=(const StatusThreadScope&) = delete;
        ~StatusThreadScope();

    private:
        XPrinter& _xPrinter;
    };

private:
    friend class XPrinter; // its count stands under this lock

    static XPrinter* Find(const OString& name) REQUIRES(_lock);
    static XPrinter* PrinterOfThisThread() REQUIRES(_lock);
    static bool CloseOnPoolThread(XPrinter* xPrinter);
    static void Close(XPrinter* xPrinter);
    static bool IsHeld(const XPrinter* xPrinter);
    static bool TakeOutOrReopen(XPrinter* xPrinter);

    static OCriticalSection _lock;
    static OPointerArray<XPrinter> _openPrinters GUARDED_BY(_lock); // in order of opening
    static XPrinter* _lastAskedFor GUARDED_BY(_lock);               // in the table; null: nobody knows
};
