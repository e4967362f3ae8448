// SPDX-License-Identifier: MIT
#include "support/product/IntegrationTest.h"
#include "support/com/LateBound.h"

namespace {

class CapabilitiesObject : public IntegrationTest {
protected:
    static ComPtr<IPrinterCapabilities> CapabilitiesOf(IPrinter& printer)
    {
        ComPtr<IPrinterCapabilities> capabilities;
        EXPECT_EQ(printer.get_Capabilities(&capabilities), S_OK);
        return capabilities;
    }

    static void Set(WORD capability, int result)
    {
        ASSERT_EQ(::SpoolerSetCapability(printerName, capability, result, nullptr, 0), 0u);
    }
};

TEST_F(CapabilitiesObject, AnswersEveryPropertyByName)
{
    Set(DC_COLLATE, 1);
    Set(DC_COLORDEVICE, 0);
    Set(DC_DUPLEX, 1);
    Set(DC_STAPLE, 0);
    Set(DC_COPIES, 999);
    Set(DC_PRINTRATE, 4);
    Set(DC_PRINTRATEUNIT, PRINTRATEUNIT_PPM);
    const auto capabilities = CapabilitiesOf(*BoundPrinter().Get());
    const LateBound late(capabilities.Get());
    EXPECT_EQ(late.Get("Collate").value, _variant_t(true));
    EXPECT_EQ(late.Get("Color").value, _variant_t(false));
    EXPECT_EQ(late.Get("Duplex").value, _variant_t(true));
    EXPECT_EQ(late.Get("Staple").value, _variant_t(false));
    EXPECT_EQ(static_cast<unsigned long>(late.Get("MaximumCopies").value), 999u);
    EXPECT_EQ(_bstr_t(late.Get("PrintSpeed").value), _bstr_t(L"4 ppm"));
}

TEST_F(CapabilitiesObject, GivesItsFailuresToALateBoundCaller)
{
    const auto printer = CreatePrinter();
    const auto capabilities = CapabilitiesOf(*printer.Get());
    const LateResult unbound = LateBound(capabilities.Get()).Get("Duplex");
    EXPECT_EQ(unbound.code, printerNotInitialized.result);
    EXPECT_EQ(unbound.source, L"Vorlane.PrinterCapabi.1");

    ASSERT_EQ(Initialize(*printer.Get(), printerName), S_OK);
    const LateResult unknown = LateBound(capabilities.Get()).Get("Duplex");
    EXPECT_EQ(unknown.code, capabilityUnknown.result);
    EXPECT_EQ(unknown.description, L"Capability not supported");
}

TEST_F(CapabilitiesObject, OutliveThePrinterThatTheyAreTakenFrom)
{
    Set(DC_COPIES, 2);
    const auto capabilities = CapabilitiesOf(*BoundPrinter().Get());
    unsigned long copies = 0;
    EXPECT_EQ(capabilities->get_MaximumCopies(&copies), S_OK);
    EXPECT_EQ(copies, 2u);
}

} // namespace
