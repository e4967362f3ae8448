// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/config/ConfigValues.h"

/// How values are written so that ConfigValues.h reads them back.

std::wstring DecimalForm(DWORD number);

/// "0x" and hexadecimal digits.
std::wstring LongNumberForm(DWORDLONG number);

/// "8:30"; a plain number if there is no such time.
std::wstring MinutesForm(DWORD minutes);

/// Words separated by commas; a hexadecimal number if they don't tell all bits.
std::wstring BitsForm(DWORD bits, std::span<const ConfigWord> words);

std::wstring TruthForm(bool truth);

/// "01 FF".
std::wstring BytesForm(const Bytes& bytes);

/// Null is `text:null`.
std::wstring OptionalForm(const OptionalText& text);

/// Texts separated by semicolons, of a list with a null after each.
std::wstring ListForm(std::wstring_view list);

std::wstring DataForm(const PrinterData::Value& value);
