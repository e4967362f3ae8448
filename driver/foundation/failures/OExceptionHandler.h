// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/failures/OException.h"
#include "foundation/Platform.h"
#include "foundation/failures/SehTranslator.h"

#include <exception>
#include <string>

class OEventLog;
class OExceptionReport;

/// Reports a failure to a person, a console or the event log, and turns structured exceptions into `OException` while
/// it lives: what runs in `RunTranslated` on its thread throws one for each fault.
///
/// Ownership: the event log isn't owned and may be null. It lives on the stack of the thread that made it, whose
///            translator it replaces and puts back.
/// Errors:    making one may throw std::bad_alloc. Reporting lets neither an exception nor a broken ASSERT out; it
///            doesn't report failures of its own.
class OExceptionHandler {
public:
    /// Each a step of `Report`, in the order 4, 2, 1, 8.
    static constexpr unsigned long reportToLog = 1;     ///< a minidump, and an entry in the event log
    static constexpr unsigned long reportToDialog = 2;  ///< message boxes
    static constexpr unsigned long reportToConsole = 4; ///< standard error
    static constexpr unsigned long reportLastError = 8; ///< the thread's last error becomes the error code

    /// `catcher` is the name shown after "Caught in ["; null counts as empty.
    explicit OExceptionHandler(const char* catcher, unsigned long flags = 0, OEventLog* eventLog = nullptr);
    OExceptionHandler(const OExceptionHandler&) = delete;
    OExceptionHandler& operator=(const OExceptionHandler&) = delete;
    virtual ~OExceptionHandler();

    /// Takes the steps that the report flags name.
    void Report(const OException& exception) noexcept;
    void ReportOutOfMemory() noexcept;                               ///< as an OException of code 14
    void ReportUnknownException() noexcept;                          ///< as an OException of code 1287
    void ReportStdException(const std::exception& failure) noexcept; ///< as an OException of code 1359 with its text

    /// Reports to the event log, if there is one, what went wrong with a document. Both texts may be null.
    void ReportDocumentError(const char* documentName, const char* errorText) noexcept;

    /// Path of the last minidump; empty if none was written.
    const wchar_t* GetDumpPath() const noexcept { return _dumpPath; }

    /// The translator of structured exceptions: throws an `OException` by the code's row in its table.
    [[noreturn]] static void Translate(unsigned code, EXCEPTION_POINTERS* pointers);

private:
    void Tell(const OException& exception);
    void WriteToLog(const OException& exception, const OExceptionReport& report);

    std::string _catcher;
    unsigned long _flags;
    OEventLog* _eventLog;
    wchar_t _dumpPath[MAX_PATH];
    SehTranslator _previousTranslator;
};
