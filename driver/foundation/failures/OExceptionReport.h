// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/failures/OException.h"

#include <string>

/// The texts that report one failure, each line ended by "\r\n". It composes them and shows nothing.
class OExceptionReport {
public:
    /// `program` is the name of the program, `catcher` that of the place that caught the failure.
    OExceptionReport(const OException& exception, std::string program, std::string catcher);

    std::string ConsoleText() const;

    std::string DialogTitle() const;
    /// What the one box says if there is no call stack to offer.
    std::string DialogText() const;
    /// The same, with the offer of the call stack.
    std::string DialogQuestion() const;
    /// The same, with the call stack in the place of the offer.
    std::string DialogTextWithStack() const;

    /// `dumpPath` is that of the minidump written for the failure, empty without one.
    std::string LogText(const std::string& dumpPath) const;

    bool HasStack() const noexcept { return !_stack.empty(); }

    /// Each text may be null or empty.
    static std::string DocumentErrorText(const char* documentName, const char* errorText, const std::string& catcher);

private:
    std::string PlaceLines() const;

    std::string _program;
    std::string _catcher;
    std::string _error;    ///< without white space around it
    std::string _function; ///< its line; empty if it isn't known
    std::string _stack;
};
