// SPDX-License-Identifier: MIT
#include "recorder/DevModeText.h"

#include "recorder/RecordingForms.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace {

struct NumberField {
    DWORD bit; // of dmFields
    std::wstring_view name;
    short DEVMODEW::*field;
};

constexpr std::array numberFields{
    NumberField{DM_ORIENTATION,   L"orientation",   &DEVMODEW::dmOrientation  },
    NumberField{DM_PAPERSIZE,     L"paper size",    &DEVMODEW::dmPaperSize    },
    NumberField{DM_PAPERLENGTH,   L"paper length",  &DEVMODEW::dmPaperLength  },
    NumberField{DM_PAPERWIDTH,    L"paper width",   &DEVMODEW::dmPaperWidth   },
    NumberField{DM_SCALE,         L"scale",         &DEVMODEW::dmScale        },
    NumberField{DM_COPIES,        L"copies",        &DEVMODEW::dmCopies       },
    NumberField{DM_DEFAULTSOURCE, L"source",        &DEVMODEW::dmDefaultSource},
    NumberField{DM_PRINTQUALITY,  L"print quality", &DEVMODEW::dmPrintQuality },
    NumberField{DM_YRESOLUTION,   L"y resolution",  &DEVMODEW::dmYResolution  },
    NumberField{DM_COLOR,         L"color",         &DEVMODEW::dmColor        },
    NumberField{DM_DUPLEX,        L"duplex",        &DEVMODEW::dmDuplex       },
    NumberField{DM_TTOPTION,      L"font option",   &DEVMODEW::dmTTOption     },
    NumberField{DM_COLLATE,       L"collate",       &DEVMODEW::dmCollate      },
};

/// A text in an array of characters that may fill it to its end.
template <size_t size>
std::wstring ArrayText(const WCHAR (&characters)[size])
{
    return std::wstring(characters, std::ranges::find(characters, L'\0'));
}

} // namespace

std::wstring DevModeText(const std::vector<BYTE>& bytes)
{
    constexpr size_t least = offsetof(DEVMODEW, dmLogPixels); // what all versions have of what is told
    if (bytes.size() < least) return L"too few bytes for a device mode";
    DEVMODEW devMode = {};
    std::copy_n(bytes.data(), std::min(bytes.size(), sizeof devMode), reinterpret_cast<BYTE*>(&devMode));

    std::wstring text = L"device mode " + QuotedText(ArrayText(devMode.dmDeviceName));
    for (const NumberField& row : numberFields)
        if (devMode.dmFields & row.bit) (text += L", ").append(row.name) += L" " + std::to_wstring(devMode.*row.field);
    if (devMode.dmFields & DM_FORMNAME) text += L", form " + QuotedText(ArrayText(devMode.dmFormName));
    return text + L", driver version " + std::to_wstring(devMode.dmDriverVersion) + L", private bytes " +
           std::to_wstring(devMode.dmDriverExtra);
}
