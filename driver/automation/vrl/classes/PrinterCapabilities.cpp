// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterCapabilities.h"

#include "vrl/spooler/Spooler.h"

#include <array>

namespace {

constexpr DWORD unknown = 0xFFFFFFFF;

struct SpeedUnit {
    DWORD unit;
    const char* text;
};

constexpr std::array speedUnits{
    SpeedUnit{PRINTRATEUNIT_PPM, " ppm"}, // pages
    SpeedUnit{PRINTRATEUNIT_CPS, " cps"}, // characters
    SpeedUnit{PRINTRATEUNIT_LPM, " lpm"}, // lines
    SpeedUnit{PRINTRATEUNIT_IPM, " ipm"}, // inches
};

DWORD Ask(const XPrinterRef& xPrinter, WORD capability)
{
    const OString name = xPrinter->GetPrinterName();
    const OString port = xPrinter->GetPortName();
    return static_cast<DWORD>(::DeviceCapabilitiesW(name.wstring(), port.wstring(), capability, nullptr, nullptr));
}

/// Throws `PrinterCapabilityUnknown_E`.
DWORD AskKnown(const XPrinterRef& xPrinter, WORD capability)
{
    const DWORD answer = Ask(xPrinter, capability);
    if (answer == unknown) throw PrinterCapabilityUnknown_E();
    return answer;
}

bool Has(const XPrinterRef& xPrinter, WORD capability)
{
    return AskKnown(xPrinter, capability) != 0;
}

const char* UnitText(DWORD unit)
{
    for (const SpeedUnit& row : speedUnits) {
        if (row.unit == unit) return row.text;
    }
    return "";
}

OString Speed(const XPrinterRef& xPrinter)
{
    OString speed;
    speed.Format(L"%u", AskKnown(xPrinter, DC_PRINTRATE));
    // Deliberate: a unit that the driver doesn't know is no failure.
    return speed + UnitText(Ask(xPrinter, DC_PRINTRATEUNIT));
}

} // namespace

HRESULT PrinterCapabilities::Initialize(IPrinter* printer) noexcept
{
    return Guard("PrinterCapabilities::Initialize", [&] { return BindToPrinter(_xPrinter, printer); });
}

STDMETHODIMP PrinterCapabilities::get_Collate(VARIANT_BOOL* retCollate) noexcept
{
    return Get("PrinterCapabilities::get_Collate", Checks::OutThenBound, retCollate, Has, WORD{DC_COLLATE});
}

STDMETHODIMP PrinterCapabilities::get_Color(VARIANT_BOOL* retColor) noexcept
{
    return Get("PrinterCapabilities::get_Color", Checks::OutThenBound, retColor, Has, WORD{DC_COLORDEVICE});
}

STDMETHODIMP PrinterCapabilities::get_Duplex(VARIANT_BOOL* retDuplex) noexcept
{
    return Get("PrinterCapabilities::get_Duplex", Checks::OutThenBound, retDuplex, Has, WORD{DC_DUPLEX});
}

STDMETHODIMP PrinterCapabilities::get_MaximumCopies(unsigned long* retMaximumCopies) noexcept
{
    return Get("PrinterCapabilities::get_MaximumCopies", Checks::OutThenBound, retMaximumCopies, AskKnown,
               WORD{DC_COPIES});
}

STDMETHODIMP PrinterCapabilities::get_PrintSpeed(BSTR* retPrintSpeed) noexcept
{
    return Get("PrinterCapabilities::get_PrintSpeed", Checks::OutThenBound, retPrintSpeed, Speed);
}

STDMETHODIMP PrinterCapabilities::get_Staple(VARIANT_BOOL* retStaple) noexcept
{
    return Guard("PrinterCapabilities::get_Staple", [&] {
        const auto bound = CheckBound();
        // Deliberate: the one member here whose out pointer isn't tested.
        StoreUntested(retStaple, ToVariantBool(Has(*bound, DC_STAPLE)));
    });
}
