// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <string>
#include <vector>

/// The main fields of a device mode in words, in one line: "device mode "Label", copies 2, ...". Only fields that
/// dmFields names are told. Any bytes will do: those that are too few for a device mode are called so.
std::wstring DevModeText(const std::vector<BYTE>& bytes);
