// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterConfiguration.h"

#include "vrl/frame/ForeignPtr.h"

#include <array>

namespace {

constexpr DWORD allGroups = 0xFFFFFFFF;

struct GroupBit {
    HRESULT (STDMETHODCALLTYPE IPrinterConfigurationFilter::*get)(VARIANT_BOOL*);
    DWORD bit;
};

// clang-format off
/// Bits 0x008 and 0x010 stay free.
constexpr std::array groupBits{
    GroupBit{&IPrinterConfigurationFilter::get_Stocks,              0x001},
    GroupBit{&IPrinterConfigurationFilter::get_Presets,             0x002},
    GroupBit{&IPrinterConfigurationFilter::get_UtilityFonts,        0x004},
    GroupBit{&IPrinterConfigurationFilter::get_FontSubstitutions,   0x020},
    GroupBit{&IPrinterConfigurationFilter::get_DownloadedFonts,     0x040},
    GroupBit{&IPrinterConfigurationFilter::get_OptionalFonts,       0x080},
    GroupBit{&IPrinterConfigurationFilter::get_PrinterProperties,   0x100},
    GroupBit{&IPrinterConfigurationFilter::get_PrintingPreferences, 0x200},
    GroupBit{&IPrinterConfigurationFilter::get_NetworkSettings,     0x400},
};
// clang-format on

/// The groups that a filter names; all, named or not, without a filter and for one that names none.
/// Throws `InvalidArgument_E` for an object that is no filter.
DWORD FilterToMask(const VARIANT& argument)
{
    if (argument.vt != VT_DISPATCH) return allGroups;
    using Filter = IPrinterConfigurationFilter;
    if (!argument.pdispVal) throw InvalidArgument_E();
    const auto filter = ForeignPtr<Filter>::Query(argument.pdispVal, __uuidof(Filter));
    if (!filter) throw InvalidArgument_E();

    DWORD mask = 0;
    for (const GroupBit& row : groupBits) {
        VARIANT_BOOL value = VARIANT_FALSE;
        (filter.Get()->*row.get)(&value);
        if (value == VARIANT_TRUE) mask |= row.bit;
    }
    return mask ? mask : allGroups;
}

/// A driver that can't do it is no failure.
HRESULT ToResult(bool called)
{
    return called ? S_OK : S_FALSE;
}

} // namespace

HRESULT PrinterConfiguration::Initialize(IPrinter* printer) noexcept
{
    return Guard("PrinterConfiguration::Initialize", [&] { return BindToPrinter(_driver, printer); });
}

STDMETHODIMP PrinterConfiguration::Import(BSTR argFileName, VARIANT argFilter) noexcept
{
    return Guard("PrinterConfiguration::Import", [&] {
        const auto bound = CheckBound();
        const DWORD mask = FilterToMask(argFilter);
        return ToResult(bound->driver->ImportSettings(FromBstr(argFileName), mask));
    });
}

STDMETHODIMP PrinterConfiguration::Export(BSTR argFileName, VARIANT argFilter) noexcept
{
    return Guard("PrinterConfiguration::Export", [&] {
        const auto bound = CheckBound();
        const DWORD mask = FilterToMask(argFilter);
        return ToResult(bound->driver->ExportSettings(FromBstr(argFileName), mask));
    });
}

STDMETHODIMP PrinterConfiguration::ResetToDefaults(VARIANT argFilter) noexcept
{
    return Guard("PrinterConfiguration::ResetToDefaults", [&] {
        const auto bound = CheckBound();
        return ToResult(bound->driver->ResetSettings(FilterToMask(argFilter)));
    });
}
