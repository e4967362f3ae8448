// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterBinding.h"

#include "support/AllocationFailure.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/frame/Bstr.h"
#include "vrl/classes/Printer.h"
#include "vrl/frame/MethodGuard.h"
#include "vrl/frame/VRException.h"

namespace {

using Microsoft::WRL::ComPtr;

class PrinterBindingTest : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        SpoolerPrinter other = LabelPrinter();
        other.printerName = L"Other";
        AddPrinter(other);
    }

    static ComPtr<IPrinter> Open(const wchar_t* name)
    {
        ComPtr<Printer> printer;
        EXPECT_EQ(CreateInstance(printer.GetAddressOf()), S_OK);
        EXPECT_EQ(printer->Initialize(ToBstr(OString(name)).Get()), S_OK);
        return printer;
    }

    static ComPtr<IPrinter> Unbound()
    {
        ComPtr<Printer> printer;
        EXPECT_EQ(CreateInstance(printer.GetAddressOf()), S_OK);
        return printer;
    }

    OCriticalSection lock;
    Bound<XPrinterRef> xPrinter{lock};
};

constexpr HRESULT printerNotInitialized = static_cast<HRESULT>(0x80042000);

TEST_F(PrinterBindingTest, BothBindToThePrinterOfTheName)
{
    EXPECT_EQ(BindToPrinter(xPrinter, Open(L"Label").Get()), S_OK);
    EXPECT_EQ((*xPrinter.Get())->GetPrinterName(), "Label");
    Bound<XPrinterRef> second(lock);
    EXPECT_EQ(RebindToPrinter(second, Open(L"Label").Get()), S_OK);
    EXPECT_EQ(second.Get()->Get(), xPrinter.Get()->Get());
}

TEST_F(PrinterBindingTest, BothRefuseNoPrinter)
{
    EXPECT_THROW(BindToPrinter(xPrinter, nullptr), InvalidArgument_E);
    EXPECT_THROW(RebindToPrinter(xPrinter, nullptr), InvalidArgument_E);
}

TEST_F(PrinterBindingTest, BothGiveTheFailureOfReadingTheName)
{
    EXPECT_EQ(BindToPrinter(xPrinter, Unbound().Get()), printerNotInitialized);
    EXPECT_EQ(RebindToPrinter(xPrinter, Unbound().Get()), printerNotInitialized);
    EXPECT_EQ(xPrinter.Get(), nullptr);
}

TEST_F(PrinterBindingTest, BindingLetsGoOfTheOldPrinterWhateverFollows)
{
    xPrinter.Set(XPrinterRef::Acquire(OString("Label")));
    BindToPrinter(xPrinter, Unbound().Get());
    EXPECT_EQ(xPrinter.Get(), nullptr);
}

TEST_F(PrinterBindingTest, RebindingKeepsTheOldPrinterWhenTheNameCannotBeRead)
{
    xPrinter.Set(XPrinterRef::Acquire(OString("Label")));
    RebindToPrinter(xPrinter, Unbound().Get());
    EXPECT_NE(xPrinter.Get(), nullptr);
}

TEST_F(PrinterBindingTest, RebindingToAnotherNameTakesTheOtherPrinter)
{
    xPrinter.Set(XPrinterRef::Acquire(OString("Label")));
    EXPECT_EQ(RebindToPrinter(xPrinter, Open(L"Other").Get()), S_OK);
    EXPECT_EQ((*xPrinter.Get())->GetPrinterName(), "Other");
}

TEST_F(PrinterBindingTest, RebindingToTheSameNameKeepsTheBinding)
{
    xPrinter.Set(XPrinterRef::Acquire(OString("Label")));
    const auto before = xPrinter.Get();
    EXPECT_EQ(RebindToPrinter(xPrinter, Open(L"LABEL").Get()), S_OK);
    EXPECT_EQ(xPrinter.Get(), before);
}

TEST_F(PrinterBindingTest, PrinterThatCannotBeHadLeavesTheObjectUnbound)
{
    const auto printer = Open(L"Other");
    xPrinter.Set(XPrinterRef::Acquire(OString("Label")));
    bool failed = true;
    for (int allowed = 0; failed && xPrinter.Get(); ++allowed) {
        const AllocationFailure failure(allowed);
        EXPECT_TRUE(FAILED(Contain([&] { return RebindToPrinter(xPrinter, printer.Get()); })) ||
                    !AllocationFailure::Happened());
        failed = AllocationFailure::Happened();
    }
    EXPECT_EQ(xPrinter.Get(), nullptr);
}

} // namespace
