// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <optional>
#include <string>
#include <string_view>

/// What the device of that printer answers to a request, with all bytes that count. Nothing if the request fails: it is
/// none, or the printer has no device, or that isn't there to answer.
std::optional<std::string> AnswerRequest(const wchar_t* printerName, std::string_view request);
