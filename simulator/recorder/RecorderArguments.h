// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

/// What the recorder is told on its command line.
struct RecorderArguments {
    std::wstring printer;
    std::wstring file;               // empty: the standard output
    std::optional<uint32_t> seconds; // nothing: until it is stopped
};

constexpr wchar_t recorderUsage[] = L"usage: recorder PRINTER [FILE] [--seconds N]";

/// Reads the arguments after the program's name. Nothing if they aren't as `recorderUsage` tells.
std::optional<RecorderArguments> ReadArguments(std::span<const wchar_t* const> arguments);
