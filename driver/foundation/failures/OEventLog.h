// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OCriticalSection.h"
#include "foundation/OHandle.h"
#include "foundation/text/OString.h"

/// Writes entries to the platform's event log under a source name that it registers on first use. Each entry is a plain
/// text, carried as the one insertion string of a generic message.
///
/// Ownership: the event source handle, from the first entry on.
/// Threading: any thread. The lock is held during `Write`.
/// Errors:    all give false and are otherwise silent.
class OEventLog {
public:
    static constexpr LONG applicationLog = 1; ///< anything else is the System log

    OEventLog(const OString& sourceName, LONG logKind);
    OEventLog(const OEventLog&) = delete;
    OEventLog& operator=(const OEventLog&) = delete;
    virtual ~OEventLog() = default;

    /// True if the entry was reported. `severity` is a type of the platform's: 4, 2 or 1; others go to it as they are.
    virtual bool Write(WORD severity, const OString& text, WORD category = 0) noexcept;

    bool WriteInformation(const OString& text, WORD category = 0) noexcept;
    bool WriteWarning(const OString& text, WORD category = 0) noexcept;
    bool WriteError(const OString& text, WORD category = 0) noexcept;

private:
    bool Register() REQUIRES(_lock);
    void WriteSourceKey() REQUIRES(_lock);

    OHandle<::DeregisterEventSource> _hEventSource GUARDED_BY(_lock); ///< null until first use
    LONG _logKind;
    OString _sourceName GUARDED_BY(_lock);
    OCriticalSection _lock;
};
