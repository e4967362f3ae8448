// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Text.h"

/// What the print system lets a printer of this machine be called.
bool IsPrinterName(std::wstring_view name) noexcept;

/// What the network lets a share be called.
bool IsShareName(std::wstring_view name) noexcept;

/// A data type that the print processor of every Windows installation takes.
bool IsDatatype(std::wstring_view name) noexcept;
