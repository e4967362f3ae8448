// SPDX-License-Identifier: MIT
#include "foundation/failures/OExceptionReport.h"

#include <utility>

namespace {

constexpr const char* lineEnd = "\r\n";
constexpr const char* traceQuestion = "Trace call stack?";

std::string TextOrEmpty(const char* text)
{
    return text ? text : "";
}

std::string Trimmed(const std::string& text)
{
    constexpr const char* whiteSpace = " \t\r\n\v\f";
    const size_t first = text.find_first_not_of(whiteSpace);
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
}

std::string FunctionLine(const OException& exception)
{
    const std::string function = TextOrEmpty(exception.GetFunction());
    if (function.empty()) return "";
    return "Function: " + function + " in " + TextOrEmpty(exception.GetFile()) + " (" +
           std::to_string(exception.GetLine()) + ")" + lineEnd;
}

} // namespace

OExceptionReport::OExceptionReport(const OException& exception, std::string program, std::string catcher)
    : _program(std::move(program)), _catcher(std::move(catcher)),
      _error(Trimmed(TextOrEmpty(exception.GetErrorTextA()))), _function(FunctionLine(exception)),
      _stack(TextOrEmpty(exception.GetStackText()))
{
}

std::string OExceptionReport::PlaceLines() const
{
    return _function + "Caught in [" + _catcher + "]" + lineEnd;
}

std::string OExceptionReport::ConsoleText() const
{
    return "+++ " + _program + " exception: " + _error + lineEnd + PlaceLines() + _stack;
}

std::string OExceptionReport::DialogTitle() const
{
    return _program + " Error";
}

std::string OExceptionReport::DialogText() const
{
    return std::string("An unrecoverable error occurred, and execution cannot continue.") + lineEnd + lineEnd +
           "Error: " + _error + lineEnd + PlaceLines();
}

std::string OExceptionReport::DialogQuestion() const
{
    return DialogText() + lineEnd + traceQuestion;
}

std::string OExceptionReport::DialogTextWithStack() const
{
    return DialogText() + lineEnd + lineEnd + _stack;
}

std::string OExceptionReport::LogText(const std::string& dumpPath) const
{
    const std::string text = "Error: " + _error + lineEnd + PlaceLines();
    return dumpPath.empty() ? text : text + "MiniDump File: " + dumpPath + lineEnd;
}

std::string OExceptionReport::DocumentErrorText(const char* documentName, const char* errorText,
                                                const std::string& catcher)
{
    std::string text;
    const std::string document = TextOrEmpty(documentName);
    if (!document.empty()) text = "Document name: " + document + lineEnd;
    const std::string error = TextOrEmpty(errorText);
    text += "Error: " + (error.empty() ? "Unknown error event" : error);
    if (!catcher.empty()) text += " [" + catcher + "]";
    return text + lineEnd;
}
