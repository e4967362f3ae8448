// SPDX-License-Identifier: MIT
#include "foundation/failures/OExceptionHandler.h"

#include <array>
#include <cstring>
#include <cwchar>

#include "foundation/Assert.h"
#include "foundation/failures/MiniDump.h"
#include "foundation/failures/OEventLog.h"
#include "foundation/failures/OExceptionReport.h"
#include "foundation/files/PathParts.h"
#include "foundation/system/ModuleInstance.h"

namespace {

/// A range of structured exceptions and what an OException says about them.
struct Translation {
    unsigned first;
    unsigned last;
    LONG errorCode;
    const char* text;
};

constexpr std::array translations{
    Translation{0xC0000094, 0xC0000094, ERROR_INTERNAL_ERROR,      "Division by zero."    },
    Translation{0xC0000095, 0xC0000095, ERROR_ARITHMETIC_OVERFLOW, nullptr                },
    Translation{0xC00000FD, 0xC00000FD, ERROR_STACK_OVERFLOW,      nullptr                },
    Translation{0xC000008D, 0xC0000093, ERROR_INTERNAL_ERROR,      "Floating point error."},
    Translation{0x80000002, 0x80000002, ERROR_INVALID_ADDRESS,     nullptr                },
    Translation{0xC0000005, 0xC0000006, ERROR_INVALID_ADDRESS,     nullptr                },
    Translation{0xC000001D, 0xC000001D, ERROR_INTERNAL_ERROR,      "Illegal instruction." },
};
constexpr Translation brokenAssert{assertExceptionCode, assertExceptionCode, -1, nullptr};
constexpr Translation anythingElse{0, 0xFFFFFFFF, ERROR_UNIDENTIFIED_ERROR, nullptr};

bool IsBrokenAssert(const EXCEPTION_RECORD& record) noexcept
{
    return record.ExceptionCode == assertExceptionCode && record.NumberParameters > 0 &&
           record.ExceptionInformation[0] == reinterpret_cast<ULONG_PTR>(&LastAssert());
}

const Translation& TranslationOf(unsigned code, const EXCEPTION_RECORD& record) noexcept
{
    if (IsBrokenAssert(record)) return brokenAssert;
    for (const Translation& translation : translations) {
        if (code >= translation.first && code <= translation.last) return translation;
    }
    return anythingElse;
}

std::string ProgramName()
{
    return GetFilePart(GetModuleName(nullptr)).nstring();
}

void WriteToStandardError(const std::string& text) noexcept
{
    DWORD written = 0;
    ::WriteFile(::GetStdHandle(STD_ERROR_HANDLE), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

void ShowDialog(const OExceptionReport& report)
{
    // Deliberate: the question comes with the icon of an error.
    constexpr UINT question = MB_YESNO | MB_ICONERROR;
    const std::string title = report.DialogTitle();
    if (!report.HasStack()) {
        ::MessageBoxA(nullptr, report.DialogText().c_str(), title.c_str(), MB_ICONERROR);
        return;
    }
    if (::MessageBoxA(nullptr, report.DialogQuestion().c_str(), title.c_str(), question) != IDYES) return;
    ::MessageBoxA(nullptr, report.DialogTextWithStack().c_str(), title.c_str(), MB_ICONERROR);
}

} // namespace

OExceptionHandler::OExceptionHandler(const char* catcher, unsigned long flags, OEventLog* eventLog)
    : _catcher(catcher ? catcher : ""), _flags(flags), _eventLog(eventLog), _dumpPath{},
      _previousTranslator(SetSehTranslator(Translate))
{
}

OExceptionHandler::~OExceptionHandler()
{
    SetSehTranslator(_previousTranslator);
}

void OExceptionHandler::Report(const OException& exception) noexcept
{
    if (_flags & (reportToConsole | reportToDialog | reportToLog)) RunContained([&] { Tell(exception); });
    if (_flags & reportLastError) ::SetLastError(static_cast<DWORD>(exception.GetErrorCode()));
}

void OExceptionHandler::Tell(const OException& exception)
{
    const OExceptionReport report(exception, ProgramName(), _catcher);
    if (_flags & reportToConsole) WriteToStandardError(report.ConsoleText());
    if (_flags & reportToDialog) ShowDialog(report);
    if (_flags & reportToLog) WriteToLog(exception, report);
}

void OExceptionHandler::WriteToLog(const OException& exception, const OExceptionReport& report)
{
    std::string dumpPath;
    if (exception.GetExceptionPointers()) {
        const std::wstring path = WriteMiniDump(exception.GetExceptionPointers());
        if (!path.empty()) {
            dumpPath = OString(path.c_str()).nstring();
            _dumpPath[path.copy(_dumpPath, std::size(_dumpPath) - 1)] = L'\0';
        }
    }
    if (_eventLog) _eventLog->WriteError(OString(report.LogText(dumpPath).c_str()));
}

void OExceptionHandler::ReportOutOfMemory() noexcept
{
    Report(OException(ERROR_OUTOFMEMORY));
}

void OExceptionHandler::ReportUnknownException() noexcept
{
    Report(OException(ERROR_UNIDENTIFIED_ERROR));
}

void OExceptionHandler::ReportStdException(const std::exception& failure) noexcept
{
    Report(OException(ERROR_INTERNAL_ERROR, failure.what()));
}

void OExceptionHandler::ReportDocumentError(const char* documentName, const char* errorText) noexcept
{
    if (!_eventLog) return;
    RunContained([&] {
        _eventLog->WriteError(OString(OExceptionReport::DocumentErrorText(documentName, errorText, _catcher).c_str()));
    });
}

void OExceptionHandler::Translate(unsigned code, EXCEPTION_POINTERS* pointers)
{
    const Translation& translation = TranslationOf(code, *pointers->ExceptionRecord);
    throw OException(translation.errorCode, translation.text, pointers);
}
