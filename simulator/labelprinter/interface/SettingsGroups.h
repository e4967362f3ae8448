// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <span>
#include <string_view>

/// What the driver's settings are made of: groups, each with the bit of a settings mask that names it.

struct SettingDefault {
    std::wstring_view name;
    std::wstring_view value;
    /// Whether the setting can have that value; null: any text.
    bool (*allows)(std::wstring_view value);
    /// The device's property that follows it; empty if none does.
    std::wstring_view deviceProperty;
};

struct SettingsGroup {
    DWORD maskBit;
    std::wstring_view name;
    bool isList; ///< its entries have names of the user's choice; otherwise they are those of the defaults
    std::span<const SettingDefault> defaults;
};

/// In the order of their bits.
std::span<const SettingsGroup> SettingsGroups();

/// Null for an unknown name; the case of the letters a to z doesn't count.
const SettingsGroup* FindSettingsGroup(std::wstring_view name);
const SettingDefault* FindSetting(const SettingsGroup& group, std::wstring_view name);
