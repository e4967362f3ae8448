// SPDX-License-Identifier: MIT
#include "recorder/RecorderArguments.h"

#include "recorder/RecordingForms.h"

#include <string_view>

namespace {

constexpr uint32_t mostSeconds = 0xFFFFFFFE / 1000; // a wait counts milliseconds, and its highest number means for ever

std::optional<uint32_t> ReadSecondsArgument(std::span<const wchar_t* const> rest)
{
    const std::optional<DWORD> seconds = rest.empty() ? std::nullopt : ReadNumber(rest.front());
    return seconds && *seconds <= mostSeconds ? seconds : std::nullopt;
}

/// The first of the names that isn't given yet.
std::wstring* FreeName(RecorderArguments& arguments)
{
    if (arguments.printer.empty()) return &arguments.printer;
    return arguments.file.empty() ? &arguments.file : nullptr;
}

} // namespace

std::optional<RecorderArguments> ReadArguments(std::span<const wchar_t* const> arguments)
{
    RecorderArguments result;
    for (size_t index = 0; index < arguments.size(); ++index) {
        const std::wstring_view argument = arguments[index];
        if (argument == L"--seconds") {
            if (result.seconds) return std::nullopt;
            result.seconds = ReadSecondsArgument(arguments.subspan(++index));
            if (!result.seconds) return std::nullopt;
            continue;
        }
        std::wstring* const name = FreeName(result);
        if (!name || argument.empty() || argument.starts_with(L"--")) return std::nullopt;
        *name = argument;
    }
    return result.printer.empty() ? std::nullopt : std::optional(result);
}
