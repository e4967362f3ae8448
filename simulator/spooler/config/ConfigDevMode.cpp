// SPDX-License-Identifier: MIT
#include "spooler/config/ConfigDevMode.h"

#include "spooler/config/ConfigForms.h"
#include "spooler/config/ConfigTexts.h"
#include "spooler/config/ConfigWords.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

short SmallNumber(const ConfigEntry& entry)
{
    const DWORD number = ConfigNumber(entry);
    if (number > 0x7FFF) throw ConfigError{entry.line, L"\"" + entry.key + L"\" is too large"};
    return static_cast<short>(number);
}

template <auto field>
void SetSmall(DEVMODEW& devMode, const ConfigEntry& entry)
{
    devMode.*field = SmallNumber(entry);
}

template <auto field>
std::wstring WriteSmall(const DEVMODEW& devMode)
{
    return DecimalForm(static_cast<WORD>(devMode.*field));
}

/// A device mode field with its bit.
struct DevModeKey {
    std::wstring_view key;
    DWORD bit;
    void (*set)(DEVMODEW& devMode, const ConfigEntry& entry);
    std::wstring (*write)(const DEVMODEW& devMode);
};

void SetOrientation(DEVMODEW& devMode, const ConfigEntry& entry)
{
    devMode.dmOrientation = static_cast<short>(ConfigBits(entry, orientationWords));
}

std::wstring WriteOrientation(const DEVMODEW& devMode)
{
    return BitsForm(static_cast<WORD>(devMode.dmOrientation), orientationWords);
}

void SetForm(DEVMODEW& devMode, const ConfigEntry& entry)
{
    CutText(devMode.dmFormName, ConfigPresentText(entry));
}

std::wstring WriteForm(const DEVMODEW& devMode)
{
    const std::wstring_view field(devMode.dmFormName, std::size(devMode.dmFormName));
    return TextForm(field.substr(0, field.find(L'\0')));
}

// clang-format off
constexpr std::array devModeKeys{
    DevModeKey{L"paper width",  DM_PAPERWIDTH,  SetSmall<&DEVMODEW::dmPaperWidth>,  WriteSmall<&DEVMODEW::dmPaperWidth>},
    DevModeKey{L"paper length", DM_PAPERLENGTH, SetSmall<&DEVMODEW::dmPaperLength>, WriteSmall<&DEVMODEW::dmPaperLength>},
    DevModeKey{L"copies",       DM_COPIES,      SetSmall<&DEVMODEW::dmCopies>,      WriteSmall<&DEVMODEW::dmCopies>},
    DevModeKey{L"orientation",  DM_ORIENTATION, SetOrientation,                     WriteOrientation},
    DevModeKey{L"form",         DM_FORMNAME,    SetForm,                            WriteForm},
};
// clang-format on

} // namespace

DEVMODEW PlainDevMode(std::wstring_view deviceName)
{
    DEVMODEW devMode = {};
    CutText(devMode.dmDeviceName, deviceName);
    devMode.dmSpecVersion = DM_SPECVERSION;
    devMode.dmSize = sizeof devMode;
    return devMode;
}

bool SetDevModeField(DEVMODEW& devMode, const ConfigEntry& entry)
{
    const auto key = std::ranges::find(devModeKeys, entry.key, &DevModeKey::key);
    if (key == devModeKeys.end()) return false;
    key->set(devMode, entry);
    devMode.dmFields |= key->bit;
    return true;
}

std::optional<std::vector<std::pair<std::wstring, std::wstring>>> DevModeEntries(const Bytes& devMode,
                                                                                 std::wstring_view deviceName)
{
    DEVMODEW told = PlainDevMode(deviceName);
    DEVMODEW wanted = {};
    if (devMode.size() != sizeof wanted) return std::nullopt;
    std::memcpy(&wanted, devMode.data(), sizeof wanted);
    std::vector<std::pair<std::wstring, std::wstring>> entries;
    try {
        for (const DevModeKey& key : devModeKeys) {
            if (!(wanted.dmFields & key.bit)) continue;
            entries.emplace_back(key.key, key.write(wanted));
            SetDevModeField(told, {0, entries.back().first, entries.back().second, false, {}});
        }
    } catch (const ConfigError&) { // a value that the key doesn't take
        return std::nullopt;
    }
    if (std::memcmp(&told, &wanted, sizeof told) != 0) return std::nullopt;
    return entries;
}
