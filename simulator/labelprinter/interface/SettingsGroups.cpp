// SPDX-License-Identifier: MIT
#include "labelprinter/interface/SettingsGroups.h"

#include <algorithm>
#include <array>

namespace {

constexpr wchar_t Lower(wchar_t character)
{
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

bool SameName(std::wstring_view left, std::wstring_view right)
{
    return std::ranges::equal(left, right, {}, Lower, Lower);
}

template <DWORD least, DWORD most>
bool IsNumber(std::wstring_view value)
{
    constexpr size_t mostDigits = 6;
    if (value.empty() || value.size() > mostDigits) return false;
    DWORD number = 0;
    for (const wchar_t digit : value) {
        if (digit < L'0' || digit > L'9') return false;
        number = number * 10 + static_cast<DWORD>(digit - L'0');
    }
    return number >= least && number <= most;
}

bool IsTruth(std::wstring_view value)
{
    return value == L"yes" || value == L"no";
}

bool IsOrientation(std::wstring_view value)
{
    return value == L"portrait" || value == L"landscape";
}

// clang-format off
constexpr std::array stocks{
    SettingDefault{L"Shipping", L"100 x 150", nullptr, L""},
    SettingDefault{L"Shelf",    L"50 x 30",   nullptr, L""},
};
constexpr std::array presets{
    SettingDefault{L"Draft",  L"speed 200, darkness 5", nullptr, L""},
    SettingDefault{L"Sturdy", L"speed 50, darkness 20", nullptr, L""},
};
constexpr std::array utilityFonts{
    SettingDefault{L"Date", L"Line 8", nullptr, L""},
};
constexpr std::array fontSubstitutions{
    SettingDefault{L"Arial",           L"Line 10",  nullptr, L""},
    SettingDefault{L"Times New Roman", L"Serif 10", nullptr, L""},
};
constexpr std::array<SettingDefault, 0> downloadedFonts{};
constexpr std::array<SettingDefault, 0> optionalFonts{};
constexpr std::array printerProperties{
    SettingDefault{L"verifier", L"no", IsTruth,             L"verifier"},
    SettingDefault{L"peeler",   L"no", IsTruth,             L"peeler"  },
    SettingDefault{L"memory",   L"64", IsNumber<1, 999999>, L""        }, // megabytes
};
constexpr std::array printingPreferences{
    SettingDefault{L"speed",        L"100",      IsNumber<1, 1000>, L"speed"       }, // millimetres per second
    SettingDefault{L"darkness",     L"10",       IsNumber<0, 30>,   L""            },
    SettingDefault{L"label length", L"50",       IsNumber<1, 2000>, L"label length"}, // millimetres
    SettingDefault{L"orientation",  L"portrait", IsOrientation,     L""            },
};
constexpr std::array networkSettings{
    SettingDefault{L"address", L"0.0.0.0", nullptr,            L""},
    SettingDefault{L"port",    L"9100",    IsNumber<1, 65535>, L""},
};

constexpr std::array groups{
    SettingsGroup{0x001, L"Stocks",              true,  stocks             },
    SettingsGroup{0x002, L"Presets",             true,  presets            },
    SettingsGroup{0x004, L"UtilityFonts",        true,  utilityFonts       },
    SettingsGroup{0x020, L"FontSubstitutions",   true,  fontSubstitutions  },
    SettingsGroup{0x040, L"DownloadedFonts",     true,  downloadedFonts    },
    SettingsGroup{0x080, L"OptionalFonts",       true,  optionalFonts      },
    SettingsGroup{0x100, L"PrinterProperties",   false, printerProperties  },
    SettingsGroup{0x200, L"PrintingPreferences", false, printingPreferences},
    SettingsGroup{0x400, L"NetworkSettings",     false, networkSettings    },
};
// clang-format on
static_assert(std::ranges::is_sorted(groups, {}, &SettingsGroup::maskBit));

template <class Row>
const Row* FindRow(std::span<const Row> rows, std::wstring_view name)
{
    const auto row = std::ranges::find_if(rows, [=](const Row& one) { return SameName(one.name, name); });
    return row == rows.end() ? nullptr : &*row;
}

} // namespace

std::span<const SettingsGroup> SettingsGroups()
{
    return groups;
}

const SettingsGroup* FindSettingsGroup(std::wstring_view name)
{
    return FindRow(SettingsGroups(), name);
}

const SettingDefault* FindSetting(const SettingsGroup& group, std::wstring_view name)
{
    return FindRow(group.defaults, name);
}
