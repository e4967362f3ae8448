// SPDX-License-Identifier: MIT
#include "vrl/classes/Printer.h"

#include "support/AllocationFailure.h"
#include "support/com/ErrorInformation.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/frame/Bstr.h"
#include "vrl/frame/Module.h"
#include "vrl/classes/PrintJobSchedule.h"
#include "vrl/classes/PrintQueue.h"
#include "vrl/classes/PrinterCapabilities.h"
#include "vrl/classes/PrinterConfiguration.h"
#include "vrl/classes/PrinterPort.h"
#include "vrl/classes/PrinterStatus.h"
#include "vrl/core/XPrinter.h"
#include "vrl/core/XPrinterPool.h"

namespace {

using Microsoft::WRL::ComPtr;

class PrinterTest : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        ASSERT_EQ(CreateInstance(printer.GetAddressOf()), S_OK);
    }

    void TearDown() override
    {
        printer.Reset();
        EXPECT_EQ(XPrinterPool::GetCount(), 0);
        EXPECT_TRUE(Module::IsIdle());
        SpoolerTest::TearDown();
    }

    HRESULT Initialize(const wchar_t* name) { return printer->Initialize(ToBstr(OString(name)).Get()); }

    OString Name()
    {
        OBstr name;
        EXPECT_EQ(printer->get_Name(name.Receive()), S_OK);
        return FromBstr(name.Get());
    }

    ComPtr<Printer> printer;
};

TEST_F(PrinterTest, CreationTouchesNoSpooler)
{
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(PrinterTest, InitializeOpensThePrinterOnceForAllItsParts)
{
    EXPECT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
}

TEST_F(PrinterTest, BoundPrinterHoldsSevenCounts)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    XPrinter* const shared = XPrinterPool::Acquire(OString("Label"));
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(XPrinterPool::GetCount(), 1) << i;
        XPrinterPool::Release(shared);
    }
    EXPECT_EQ(XPrinterPool::GetCount(), 1); // seven of eight are gone
    for (int i = 0; i < 6; ++i) XPrinterPool::Acquire(OString("Label"));
}

TEST_F(PrinterTest, EqualNameInOtherLettersKeepsThePrinterAndItsName)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(Initialize(L"LABEL"), S_OK);
    EXPECT_EQ(Name(), "Label");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
}

TEST_F(PrinterTest, OtherNameGivesTheOldPrinterBack)
{
    SpoolerPrinter other = LabelPrinter();
    other.printerName = L"Other";
    AddPrinter(other);
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(Initialize(L"Other"), S_OK);
    EXPECT_EQ(Name(), "Other");
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
}

TEST_F(PrinterTest, FailedInitializeCanBeMadeGood)
{
    EXPECT_EQ(Initialize(L"No such printer"), static_cast<HRESULT>(0x80042003));
    EXPECT_EQ(TakeErrorInformation().description, "Could not open printer");
    BSTR name = nullptr;
    EXPECT_EQ(printer->get_Name(&name), static_cast<HRESULT>(0x80042000));
    EXPECT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(Name(), "Label");
}

TEST_F(PrinterTest, FailedReinitializeUnbindsTheObject)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    EXPECT_EQ(Initialize(L"No such printer"), static_cast<HRESULT>(0x80042003));
    BSTR name = nullptr;
    EXPECT_EQ(printer->get_Name(&name), static_cast<HRESULT>(0x80042000));
}

TEST_F(PrinterTest, ChildrenStayWithTheOldPrinterWhenReinitializeFails)
{
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    Initialize(L"No such printer");
    ComPtr<IPrinterStatus> status;
    ASSERT_EQ(printer->get_Status(&status), S_OK);
    OBstr text;
    EXPECT_EQ(status->get_Text(text.Receive()), S_OK);
}

TEST_F(PrinterTest, TwoObjectsOfOneNameShareThePrinter)
{
    ComPtr<Printer> second;
    ASSERT_EQ(CreateInstance(second.GetAddressOf()), S_OK);
    ASSERT_EQ(Initialize(L"Label"), S_OK);
    ASSERT_EQ(second->Initialize(ToBstr(OString("lABEL")).Get()), S_OK);
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 1u);
}

TEST(PrinterCreation, FailsWithoutLeakWhereverMemoryRunsOut)
{
    { // whatever is made once for the process is made now
        ComPtr<Printer> warm;
        CreateInstance(warm.GetAddressOf());
        MethodGuard("Warm::Up", IID_NULL, [] { throw VRException(E_OUTOFMEMORY, "CreateInstance failed"); });
        TakeErrorInformation();
    }
    const long before = LiveAllocations();
    int allowed = 0;
    for (;; ++allowed) {
        ComPtr<Printer> printer;
        HRESULT result = S_OK;
        bool failed = false;
        {
            const AllocationFailure failure(allowed);
            result = CreateInstance(printer.GetAddressOf());
            failed = AllocationFailure::Happened();
        }
        if (!failed) break;
        EXPECT_EQ(result, E_OUTOFMEMORY) << allowed;
        EXPECT_EQ(printer, nullptr) << allowed;
        EXPECT_TRUE(Module::IsIdle()) << allowed;
        TakeErrorInformation();
    }
    EXPECT_GT(allowed, 6);
    EXPECT_EQ(LiveAllocations(), before);
}

} // namespace
