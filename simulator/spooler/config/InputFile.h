// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Text.h"

/// The bytes of a whole file; empty, with the error, if it can't be read.
Bytes ReadWholeFile(const std::wstring& path, DWORD& error);
