// SPDX-License-Identifier: MIT
#pragma once

#include "recorder/BitWords.h"
#include "spooler/config/ConfigFile.h"
#include "spooler/records/PrinterData.h"

#include <span>

/// How the values of a configuration file are read. All throw ConfigError with the entry's line.

/// A word that stands for bits; recordings name the same bits by the same words.
using ConfigWord = BitWord;

/// A text: as it is, in quotes, or as `text:"..."` with escapes; null for `text:null`.
OptionalText ConfigText(const ConfigEntry& entry);

/// The same, but it can't be null.
std::wstring ConfigPresentText(const ConfigEntry& entry);

/// An element of the entry's value as an entry of its own.
ConfigEntry ElementOf(const ConfigEntry& entry, std::wstring_view text);

/// A decimal number, or a hexadecimal one after "0x".
DWORD ConfigNumber(const ConfigEntry& entry);
DWORDLONG ConfigLongNumber(const ConfigEntry& entry);

/// "yes" or "no".
bool ConfigTruth(const ConfigEntry& entry);

/// Minutes after midnight: a number, or a time as "8:30".
DWORD ConfigMinutes(const ConfigEntry& entry);

/// Words separated by commas, or one number.
DWORD ConfigBits(const ConfigEntry& entry, std::span<const ConfigWord> words);

/// Bytes in hexadecimal, separated by blanks.
Bytes ConfigBytes(const ConfigEntry& entry, std::wstring_view text);

/// The pieces between separators, without the blanks around them; empty ones are left out.
std::vector<std::wstring> ConfigPieces(std::wstring_view text, wchar_t separator);

/// Texts separated by semicolons, as a list with a null after each.
std::wstring ConfigList(const ConfigEntry& entry);

/// A piece of printer data: "dword:12", "hex:01 ff", "hex(7):00 00" with the number of its type, or a text.
PrinterData::Value ConfigData(const ConfigEntry& entry);

/// A path, taken from `folder` if it is a relative one.
std::wstring ConfigPath(const ConfigEntry& entry, const std::wstring& folder);
