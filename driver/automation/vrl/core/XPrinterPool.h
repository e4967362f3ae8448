// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"

class XPrinter;

/// The one table of this process's open printers, by name without regard to the case of the letters a to z.
///
/// Threading: any thread; one lock guards the table and every reference count. Opening a printer holds that lock while
/// the spooler works, and so does the release that stops a printer's thread.
class XPrinterPool {
public:
    /// The printer of that name with its count raised, opened if nobody has it open.
    /// Throws `CouldNotOpenPrinter_E`; then the table is as it was.
    static XPrinter* Acquire(const OString& name);

    /// Lowers the count and destroys the printer at 0.
    static void Release(XPrinter* xPrinter);

    /// How many printers are open.
    static int GetCount();
};
