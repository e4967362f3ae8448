// SPDX-License-Identifier: MIT
#include "vrl/core/XPrinterPool.h"

#include "foundation/OCriticalSection.h"
#include "foundation/OLockGuard.h"
#include "foundation/arrays/OPointerArray.h"
#include "vrl/core/XPrinter.h"

#include <memory>

namespace {

OCriticalSection poolLock;
OPointerArray<XPrinter> openPrinters GUARDED_BY(poolLock); // in order of opening

} // namespace

XPrinter* XPrinterPool::Acquire(const OString& name)
{
    OLockGuard guard(poolLock);
    for (int i = 0; i < openPrinters.GetSize(); ++i) {
        XPrinter* const open = openPrinters.GetAt(i);
        if (open->_printerName.CompareNoCase(name) != 0) continue;
        ++open->_referenceCount;
        return open;
    }

    auto opened = std::make_unique<XPrinter>();
    opened->Open(name);
    opened->_referenceCount = 1;
    openPrinters.Add(opened.get());
    return opened.release();
}

void XPrinterPool::Release(XPrinter* xPrinter)
{
    OLockGuard guard(poolLock);
    if (--xPrinter->_referenceCount > 0) return;

    const std::unique_ptr<XPrinter> gone(xPrinter);
    for (int i = 0; i < openPrinters.GetSize(); ++i) {
        if (openPrinters.GetAt(i) != xPrinter) continue;
        openPrinters.RemoveAt(i, 1);
        break;
    }
}

int XPrinterPool::GetCount()
{
    OLockGuard guard(poolLock);
    return openPrinters.GetSize();
}
