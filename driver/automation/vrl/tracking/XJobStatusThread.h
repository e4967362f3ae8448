// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/threads/IThreadable.h"
#include "foundation/Platform.h"

class XPrinter;

/// The worker thread of one printer.
///
/// It does not listen to the spooler yet: it has no notification handle, so its body ends as soon as it has begun, as
/// it does for a printer that cannot be opened. Jobs can be read; no event comes. Ownership: owned by its `XPrinter`,
/// which starts it, stops it and joins it.
class XJobStatusThread : public IThreadable {
public:
    explicit XJobStatusThread(XPrinter* printer);

    void TheadStart() override; // Deliberate: the spelling is settled
    void ThreadStop() override;

private:
    XPrinter* pPrinter; // the owner
};
