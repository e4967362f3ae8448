// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Text.h"

/// The value of one field as a notification carries it.
struct NotifyValue {
    DWORD dataType = 0; // what the entry's Reserved tells, notify...Data of SpoolerConstants.h
    DWORD number = 0;
    Bytes bytes;      // of a value that isn't a number; empty: a null buffer
    DWORD second = 0; // beside the number; not 0 only if a test or a recording wants it

    bool operator==(const NotifyValue&) const = default;
};

NotifyValue NotifyNumber(DWORD number);
/// With its terminator; null is told as an empty text.
NotifyValue NotifyText(const OptionalText& text);
NotifyValue NotifyDevMode(const Bytes& devMode);
NotifyValue NotifyTime(const SYSTEMTIME& time);
NotifyValue NotifySecurity(const Bytes& descriptor);

/// The value as a text, up to its terminator or the end of its bytes.
std::wstring TextOf(const NotifyValue& value);
