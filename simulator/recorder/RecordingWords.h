// SPDX-License-Identifier: MIT
#pragma once

#include "recorder/KnownFields.h"
#include "recorder/Recording.h"

#include <array>
#include <string_view>

/// The words of a recording, and what it leaves out because it is usual.

constexpr std::wstring_view firstLine = L"notification recording 1";

constexpr std::wstring_view printerWord = L"printer";
constexpr std::wstring_view driverWord = L"driver";
constexpr std::wstring_view systemWord = L"system";
constexpr std::wstring_view begunWord = L"begun";
constexpr std::wstring_view filterWord = L"filter";
constexpr std::wstring_view fieldsWord = L"fields";

constexpr std::wstring_view batchWord = L"batch";
constexpr std::wstring_view refreshWord = L"refresh";
constexpr std::wstring_view changeWord = L"change";
constexpr std::wstring_view infoWord = L"info";
constexpr std::wstring_view endWord = L"end";

constexpr std::wstring_view bytesWord = L"bytes"; // of no kind, or not fitting their kind
constexpr std::wstring_view nullWord = L"null";
constexpr std::wstring_view emptyWord = L"empty";
constexpr std::wstring_view unterminatedWord = L"unterminated";
constexpr std::wstring_view reservedWord = L"reserved";

struct TypeWord {
    std::wstring_view word;
    WORD type;
};

inline constexpr std::array typeWords{
    TypeWord{L"printer", PRINTER_NOTIFY_TYPE},
    TypeWord{L"job",     JOB_NOTIFY_TYPE    },
};

/// In the order of the kinds' numbers, which begin with 1.
inline constexpr std::array<std::wstring_view, 5> dataWords{L"number", L"string", L"devmode", L"systemtime",
                                                            L"security"};

constexpr std::wstring_view WordOf(NotifyData kind)
{
    return dataWords[static_cast<size_t>(kind) - 1];
}

/// What an entry of that field usually has in Reserved: the number of its kind, 0 for an unknown field.
inline DWORD UsualReserved(WORD type, WORD field) noexcept
{
    const KnownField* const known = FindKnownField(type, field);
    return known ? static_cast<DWORD>(known->data) : 0;
}
