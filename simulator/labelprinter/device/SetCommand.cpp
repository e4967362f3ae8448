// SPDX-License-Identifier: MIT
#include "labelprinter/device/SetCommand.h"

#include "labelprinter/device/DeviceProperties.h"

namespace {

/// The device's language is in plain letters.
std::wstring Widened(std::string_view text)
{
    std::wstring wide;
    for (const char character : text) wide += static_cast<wchar_t>(static_cast<unsigned char>(character));
    return wide;
}

std::string Narrowed(std::wstring_view text)
{
    std::string narrow;
    for (const wchar_t character : text) narrow += static_cast<char>(character);
    return narrow;
}

const DeviceProperty* FindOwnProperty(std::wstring_view name)
{
    const DeviceProperty* const property = FindDeviceProperty(TrimmedText(name));
    return property && property->ofDevice ? property : nullptr;
}

} // namespace

bool ObeySet(const Command& command, DeviceState& state)
{
    const std::wstring text = Widened(command.arguments);
    const size_t equals = text.find(L'=');
    if (equals == std::wstring::npos) return false;
    const DeviceProperty* const property = FindOwnProperty(std::wstring_view(text).substr(0, equals));
    return property && property->set(state, TrimmedText(std::wstring_view(text).substr(equals + 1)));
}

std::string AnswerProperty(const Command& command, const DeviceState& state)
{
    std::string name = command.word.substr(1);
    if (!command.arguments.empty()) name.append(" ").append(command.arguments);
    const DeviceProperty* const property = FindOwnProperty(Widened(name));
    if (!property) return {};
    return Narrowed(property->name) + " = " + Narrowed(property->get(state));
}
