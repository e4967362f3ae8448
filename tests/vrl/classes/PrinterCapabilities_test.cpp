// SPDX-License-Identifier: MIT
#include "vrl/classes/PrinterCapabilities.h"

#include "support/RowName.h"
#include "support/com/Answer.h"
#include "support/com/BstrText.h"
#include "support/com/ClientPrinter.h"
#include "support/Raising.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/classes/Printer.h"
#include "vrl/core/XPrinterPool.h"

#include <string>

namespace {

using Microsoft::WRL::ComPtr;

class Capabilities : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        ASSERT_EQ(CreateInstance(capabilities.GetAddressOf()), S_OK);
    }

    void TearDown() override
    {
        capabilities.Reset();
        EXPECT_EQ(XPrinterPool::GetCount(), 0);
        SpoolerTest::TearDown();
    }

    void Bind(const wchar_t* name = printerName)
    {
        ClientPrinter named(name);
        ASSERT_EQ(AnswerOf(capabilities->Initialize(&named)), succeeded);
        ::SpoolerClearLog();
    }

    static void Set(WORD capability, int result)
    {
        ASSERT_EQ(::SpoolerSetCapability(printerName, capability, result, nullptr, 0), 0u);
    }

    Answer Speed(std::wstring& speed)
    {
        OwnedBstr text;
        const HRESULT result = capabilities->get_PrintSpeed(text.Receive());
        speed = TextOf(text.Get());
        return AnswerOf(result);
    }

    ComPtr<PrinterCapabilities> capabilities;
};

struct FlagRow {
    const char* name;
    HRESULT (IPrinterCapabilities::*get)(VARIANT_BOOL*);
    WORD capability;
};

constexpr FlagRow flags[] = {
    {"Collate", &IPrinterCapabilities::get_Collate, 22},
    {"Color",   &IPrinterCapabilities::get_Color,   32},
    {"Duplex",  &IPrinterCapabilities::get_Duplex,  7 },
    {"Staple",  &IPrinterCapabilities::get_Staple,  30},
};

class Flag : public Capabilities, public ::testing::WithParamInterface<FlagRow> {
protected:
    Answer Read(VARIANT_BOOL& value) { return AnswerOf((capabilities.Get()->*GetParam().get)(&value)); }
};

INSTANTIATE_TEST_SUITE_P(Each, Flag, ::testing::ValuesIn(flags), rowName);

TEST_P(Flag, IsTrueForAnythingButZero)
{
    Bind();
    static constexpr struct {
        int answer;
        VARIANT_BOOL value;
    } rows[] = {
        {0,  VARIANT_FALSE},
        {1,  VARIANT_TRUE },
        {2,  VARIANT_TRUE },
        {-2, VARIANT_TRUE },
    };
    for (const auto& row : rows) {
        Set(GetParam().capability, row.answer);
        VARIANT_BOOL value = 99;
        EXPECT_EQ(Read(value), succeeded) << row.answer;
        EXPECT_EQ(value, row.value) << row.answer;
    }
}

TEST_P(Flag, IsUnknownForMinusOne)
{
    Bind();
    Set(GetParam().capability, -1);
    VARIANT_BOOL value = 99;
    EXPECT_EQ(Read(value), capabilityUnknown);
    EXPECT_EQ(value, 99);
}

TEST_P(Flag, AsksForItsCapabilityEachTime)
{
    Bind();
    Set(GetParam().capability, 1);
    VARIANT_BOOL value = 99;
    Read(value);
    Read(value);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::DeviceCapabilitiesW), 2u);
    EXPECT_EQ(SpoolerLog().back().capability, GetParam().capability);
}

TEST_P(Flag, NeedsAPrinter)
{
    VARIANT_BOOL value = 99;
    EXPECT_EQ(Read(value), printerNotInitialized);
}

TEST_F(Capabilities, AskWithTheStoredNameAndThePortOfTheMoment)
{
    Bind(L"lABEL");
    Set(DC_COPIES, 1);
    unsigned long copies = 0;
    capabilities->get_MaximumCopies(&copies);
    EXPECT_STREQ(SpoolerLog().back().printer, L"lABEL");
    EXPECT_STREQ(SpoolerLog().back().port, L"LPT1:");

    const auto xPrinter = XPrinterRef::Acquire(OString("Label"));
    SpoolerPort port;
    port.name = L"LPT2:";
    ASSERT_EQ(::SpoolerAddPort(port), 0u);
    xPrinter->SetPortName("LPT2:");
    capabilities->get_MaximumCopies(&copies);
    EXPECT_STREQ(SpoolerLog().back().port, L"LPT2:");
}

TEST_F(Capabilities, GiveTheNumberOfCopiesAsItIs)
{
    Bind();
    for (const int answer : {9999, 0, -2}) {
        Set(DC_COPIES, answer);
        unsigned long copies = 77;
        EXPECT_EQ(AnswerOf(capabilities->get_MaximumCopies(&copies)), succeeded) << answer;
        EXPECT_EQ(copies, static_cast<unsigned long>(answer)) << answer;
    }
}

TEST_F(Capabilities, GiveNoNumberOfCopiesForMinusOne)
{
    Bind();
    Set(DC_COPIES, -1);
    unsigned long copies = 77;
    EXPECT_EQ(AnswerOf(capabilities->get_MaximumCopies(&copies)), capabilityUnknown);
    EXPECT_EQ(copies, 77u);
}

TEST_F(Capabilities, GiveTheSpeedWithItsUnit)
{
    Bind();
    static constexpr struct {
        int rate;
        int unit;
        const wchar_t* text;
    } rows[] = {
        {4,   1,  L"4 ppm"         },
        {120, 2,  L"120 cps"       },
        {300, 3,  L"300 lpm"       },
        {6,   4,  L"6 ipm"         },
        {10,  0,  L"10"            },
        {10,  5,  L"10"            },
        {10,  -1, L"10"            }, // only the rate's -1 is a failure
        {0,   1,  L"0 ppm"         },
        {-2,  1,  L"4294967294 ppm"},
    };
    for (const auto& row : rows) {
        Set(DC_PRINTRATE, row.rate);
        Set(DC_PRINTRATEUNIT, row.unit);
        std::wstring speed;
        EXPECT_EQ(Speed(speed), succeeded);
        EXPECT_EQ(speed, row.text);
    }
}

TEST_F(Capabilities, GiveNoSpeedForARateOfMinusOne)
{
    Bind();
    Set(DC_PRINTRATE, -1);
    Set(DC_PRINTRATEUNIT, 1);
    std::wstring speed;
    EXPECT_EQ(Speed(speed), capabilityUnknown);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::DeviceCapabilitiesW), 1u) << "the unit isn't asked for";
}

TEST_F(Capabilities, TestTheirPlaceToGoBeforeThePrinter)
{
    EXPECT_EQ(AnswerOf(capabilities->get_Collate(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(capabilities->get_Color(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(capabilities->get_Duplex(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(capabilities->get_MaximumCopies(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(capabilities->get_PrintSpeed(nullptr)), invalidArgument);
}

TEST_F(Capabilities, StapleWithoutAPlaceToGoIsAnAccessViolationThatIsReported)
{
    EXPECT_EQ(AnswerOf(capabilities->get_Staple(nullptr)), printerNotInitialized);
    Bind();
    Set(DC_STAPLE, 1);
    EXPECT_EQ(AnswerOf(capabilities->get_Staple(nullptr)).result, HRESULT_FROM_WIN32(ERROR_INVALID_ADDRESS));
}

TEST_F(Capabilities, NeedAPrinter)
{
    unsigned long copies = 77;
    std::wstring speed;
    EXPECT_EQ(AnswerOf(capabilities->get_MaximumCopies(&copies)), printerNotInitialized);
    EXPECT_EQ(Speed(speed), printerNotInitialized);
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(Capabilities, AreBoundAsTheOtherPartsAre)
{
    ClientPrinter none(L"None");
    EXPECT_EQ(AnswerOf(capabilities->Initialize(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(capabilities->Initialize(&none)), couldNotOpenPrinter);
    Bind();
    EXPECT_EQ(XPrinterPool::GetCount(), 1);
    EXPECT_EQ(AnswerOf(capabilities->Initialize(&none)), couldNotOpenPrinter);
    EXPECT_EQ(XPrinterPool::GetCount(), 0) << "the old one has gone";
    unsigned long copies = 77;
    EXPECT_EQ(AnswerOf(capabilities->get_MaximumCopies(&copies)), printerNotInitialized);
}

TEST_F(Capabilities, StandWhatAClientsPrinterRaises)
{
    for (const RaisedKind& kind : raisedKinds) {
        ClientPrinter raising;
        raising.onName = [&] {
            kind.raise();
            return S_OK;
        };
        Bind();
        EXPECT_TRUE(FAILED(AnswerOf(capabilities->Initialize(&raising)).result)) << kind.name;
        EXPECT_EQ(XPrinterPool::GetCount(), 0) << kind.name;
    }
}

TEST_F(Capabilities, AreThoseOfThePrinterThatTheyWereTakenFrom)
{
    ComPtr<Printer> printer;
    ASSERT_EQ(CreateInstance(printer.GetAddressOf()), S_OK);
    ASSERT_EQ(printer->Initialize(NewBstr(printerName).Get()), S_OK);
    ComPtr<IPrinterCapabilities> part;
    ASSERT_EQ(printer->get_Capabilities(&part), S_OK);
    printer.Reset();
    Set(DC_COPIES, 99);
    unsigned long copies = 0;
    EXPECT_EQ(part->get_MaximumCopies(&copies), S_OK);
    EXPECT_EQ(copies, 99u);
}

} // namespace
