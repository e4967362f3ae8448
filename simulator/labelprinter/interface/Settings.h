// SPDX-License-Identifier: MIT
#pragma once

#include "labelprinter/interface/SettingsGroups.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

/// The driver's settings, or some groups of them.
///
/// As a text they have a first line that says what it is, and then for each group a line "[Group]" and lines
/// "name = value". Empty lines and lines that begin with ';' count for nothing.
class Settings {
public:
    using Entries = std::map<std::wstring, std::wstring, std::less<>>;

    /// The defaults of the groups that the mask names.
    static Settings Defaults(DWORD mask);

    /// Reads a text; nothing if a line of it can't be understood. A group that isn't there isn't in the result; of one
    /// that is there, what isn't told has its default, unless the group is a list.
    static std::optional<Settings> Parse(std::wstring_view text);

    /// The groups that the mask names.
    std::wstring Text(DWORD mask) const;

    /// Takes over the groups of `other` that the mask names.
    void Take(const Settings& other, DWORD mask);

    /// Calls `visit` with the device's property and value for each setting that the device follows.
    void ForDevice(const std::function<void(std::wstring_view property, const std::wstring& value)>& visit) const;

private:
    bool ParseLine(std::wstring_view line, const SettingsGroup*& group);

    std::map<DWORD, Entries> _groups; ///< by their bit of the mask
};
