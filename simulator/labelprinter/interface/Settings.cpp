// SPDX-License-Identifier: MIT
#include "labelprinter/interface/Settings.h"

namespace {

constexpr std::wstring_view firstLine = L"Label printer settings 1";
constexpr std::wstring_view lineEnd = L"\r\n";
constexpr std::wstring_view blanks = L" \t\r";

std::wstring_view Trimmed(std::wstring_view text)
{
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::wstring_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Cuts the first line off the text.
std::wstring_view CutLine(std::wstring_view& text)
{
    const size_t end = text.find(L'\n');
    const std::wstring_view line = text.substr(0, end);
    text.remove_prefix(end == std::wstring_view::npos ? text.size() : end + 1);
    return Trimmed(line);
}

Settings::Entries DefaultEntries(const SettingsGroup& group)
{
    Settings::Entries entries;
    for (const SettingDefault& row : group.defaults) entries.emplace(row.name, row.value);
    return entries;
}

} // namespace

Settings Settings::Defaults(DWORD mask)
{
    Settings settings;
    for (const SettingsGroup& group : SettingsGroups()) {
        if (mask & group.maskBit) settings._groups[group.maskBit] = DefaultEntries(group);
    }
    return settings;
}

std::optional<Settings> Settings::Parse(std::wstring_view text)
{
    if (CutLine(text) != firstLine) return std::nullopt;
    Settings settings;
    const SettingsGroup* group = nullptr;
    while (!text.empty()) {
        if (!settings.ParseLine(CutLine(text), group)) return std::nullopt;
    }
    return settings;
}

bool Settings::ParseLine(std::wstring_view line, const SettingsGroup*& group)
{
    if (line.empty() || line.starts_with(L';')) return true;
    if (line.starts_with(L'[') && line.ends_with(L']')) {
        group = FindSettingsGroup(line.substr(1, line.size() - 2));
        if (group) _groups[group->maskBit] = group->isList ? Entries() : DefaultEntries(*group);
        return group != nullptr;
    }
    const size_t equals = line.find(L'=');
    if (!group || equals == std::wstring_view::npos) return false;
    const std::wstring_view name = Trimmed(line.substr(0, equals));
    const std::wstring_view value = Trimmed(line.substr(equals + 1));
    const SettingDefault* const setting = FindSetting(*group, name);
    if (name.empty() || (!setting && !group->isList)) return false;
    if (setting && setting->allows && !setting->allows(value)) return false;
    _groups[group->maskBit][std::wstring(setting ? setting->name : name)] = value;
    return true;
}

std::wstring Settings::Text(DWORD mask) const
{
    std::wstring text(firstLine);
    text += lineEnd;
    for (const SettingsGroup& group : SettingsGroups()) {
        const auto entries = _groups.find(group.maskBit);
        if (!(mask & group.maskBit) || entries == _groups.end()) continue;
        text.append(lineEnd).append(L"[").append(group.name).append(L"]").append(lineEnd);
        for (const auto& [name, value] : entries->second) {
            text.append(name).append(L" = ").append(value).append(lineEnd);
        }
    }
    return text;
}

void Settings::Take(const Settings& other, DWORD mask)
{
    for (const auto& [maskBit, entries] : other._groups) {
        if (mask & maskBit) _groups[maskBit] = entries;
    }
}

void Settings::ForDevice(const std::function<void(std::wstring_view, const std::wstring&)>& visit) const
{
    for (const SettingsGroup& group : SettingsGroups()) {
        const auto entries = _groups.find(group.maskBit);
        if (entries == _groups.end()) continue;
        for (const SettingDefault& row : group.defaults) {
            const auto entry = entries->second.find(row.name);
            if (!row.deviceProperty.empty() && entry != entries->second.end()) visit(row.deviceProperty, entry->second);
        }
    }
}
