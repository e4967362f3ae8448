// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <winspool.h>

#include <span>
#include <string_view>

constexpr WORD notifyFieldFriendlyName = 0x1B; ///< of a printer; the headers of mingw-w64 lack it

/// How the data of a notification entry is to be read. The numbers are those that an entry's Reserved may have.
enum class NotifyData : DWORD { Number = 1, String = 2, DevMode = 3, SystemTime = 4, SecurityDescriptor = 5 };

/// One field that a client can ask to be notified of.
struct KnownField {
    WORD type; ///< PRINTER_NOTIFY_TYPE or JOB_NOTIFY_TYPE
    WORD field;
    NotifyData data;
    bool reported; ///< false: documented as not supported, so it never comes
    std::wstring_view name;
};

/// All documented fields, those of printers first, each in ascending order.
std::span<const KnownField> KnownFields() noexcept;

/// Null for an unknown one.
const KnownField* FindKnownField(WORD type, WORD field) noexcept;
/// Null for an unknown one; the name is in capitals, without the part that all have in common.
const KnownField* FindKnownField(WORD type, std::wstring_view name) noexcept;

/// How an entry's data is to be read: as its field says; an unknown field's as its Reserved says, else as numbers.
NotifyData KindOf(WORD type, WORD field, DWORD reserved) noexcept;
