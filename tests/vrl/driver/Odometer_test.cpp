// SPDX-License-Identifier: MIT
#include "vrl/driver/Odometer.h"

#include "support/spooler/SpoolerTest.h"
#include "vrl/spooler/Spooler.h"

#include <cstring>

namespace {

TEST(Odometer, StartsAtNothing)
{
    const Odometer odometer;
    EXPECT_EQ(odometer.GetPages(), 0u);
    EXPECT_EQ(odometer.GetDistance(), 0.0);
}

TEST(Odometer, AddPagesCountsPagesAndTheirLengthInMillimetres)
{
    Odometer odometer(10, 5.5);
    odometer.AddPages(3, 1000);
    EXPECT_EQ(odometer.GetPages(), 13u);
    EXPECT_EQ(odometer.GetDistance(), 305.5);
}

TEST(Odometer, AddPagesTakesLengthsAsUnsigned)
{
    Odometer odometer;
    odometer.AddPages(1, 0xFFFFFFFF);
    EXPECT_EQ(odometer.GetDistance(), 429496729.5);
}

TEST(Odometer, PagesWrapAt32Bits)
{
    Odometer odometer(0xFFFFFFFF, 0.0);
    odometer.AddPages(2, 0);
    EXPECT_EQ(odometer.GetPages(), 1u);
}

TEST(Odometer, SumAddsBothFields)
{
    Odometer odometer(1, 2.5);
    odometer += Odometer(10, 20.0);
    EXPECT_EQ(odometer, Odometer(11, 22.5));
}

TEST(Odometer, EqualityLooksAtBothFields)
{
    EXPECT_EQ(Odometer(1, 2.0), Odometer(1, 2.0));
    EXPECT_NE(Odometer(1, 2.0), Odometer(2, 2.0));
    EXPECT_NE(Odometer(1, 2.0), Odometer(1, 2.5));
}

TEST(Odometer, CanBeAssignedAndComparedWithItself)
{
    Odometer odometer(1, 2.0);
    const Odometer& same = odometer;
    odometer = same;
    EXPECT_EQ(odometer, same);
    EXPECT_EQ(odometer, Odometer(1, 2.0));
}

TEST(Odometer, CopyIsIndependent)
{
    Odometer original(1, 2.0);
    const Odometer copy = original;
    original.Clear();
    EXPECT_EQ(copy, Odometer(1, 2.0));
    EXPECT_EQ(original, Odometer());
}

class StoredOdometerTest : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        _printer.Reset(OpenPrinterWithAccess(printerName, PRINTER_ALL_ACCESS));
        ASSERT_TRUE(_printer);
        ::SpoolerClearLog();
    }

    OPrinterHandle _printer;
};

TEST_F(StoredOdometerTest, WhatWasWrittenIsReadBack)
{
    EXPECT_TRUE(Odometer(42, 1234.5).WriteStored(_printer.Get()));
    Odometer read;
    EXPECT_TRUE(read.ReadStored(_printer.Get()));
    EXPECT_EQ(read, Odometer(42, 1234.5));
}

TEST_F(StoredOdometerTest, IsStoredInTwoTypedValues)
{
    ASSERT_TRUE(Odometer(42, 1234.5).WriteStored(_printer.Get()));
    DWORD type = 0;
    DWORD needed = 0;
    DWORD pages = 0;
    EXPECT_EQ(::SpoolerPeekData(printerName, L"Gantry", L"Odometer Pages", &type, &pages, sizeof pages, &needed), 0u);
    EXPECT_EQ(type, DWORD{REG_DWORD});
    EXPECT_EQ(pages, 42u);

    double distance = 0;
    EXPECT_EQ(
        ::SpoolerPeekData(printerName, L"Gantry", L"Odometer Distance", &type, &distance, sizeof distance, &needed),
        0u);
    EXPECT_EQ(type, DWORD{REG_BINARY});
    EXPECT_EQ(needed, 8u);
    EXPECT_EQ(distance, 1234.5);
}

TEST_F(StoredOdometerTest, MissingValueLeavesTheRecordAlone)
{
    SpoolerSetNumberData(printerName, L"Gantry", L"Odometer Pages", 42);
    Odometer odometer(1, 2.0);
    EXPECT_FALSE(odometer.ReadStored(_printer.Get()));
    EXPECT_EQ(odometer, Odometer(1, 2.0));
}

TEST_F(StoredOdometerTest, BothValuesAreReadWhateverTheFirstGives)
{
    Odometer odometer;
    EXPECT_FALSE(odometer.ReadStored(_printer.Get()));
    const auto log = SpoolerLog();
    ASSERT_EQ(log.size(), 2u);
    EXPECT_STREQ(log[0].valueName, L"Odometer Pages");
    EXPECT_EQ(log[0].bytes, 4u);
    EXPECT_STREQ(log[1].valueName, L"Odometer Distance");
    EXPECT_EQ(log[1].bytes, 8u);
}

TEST_F(StoredOdometerTest, BothValuesAreWrittenWhateverTheFirstGives)
{
    FailNext(SpoolerCall::SetPrinterDataExW, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(Odometer(1, 2.0).WriteStored(_printer.Get()));
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterDataExW), 2u);
}

TEST_F(StoredOdometerTest, FailureOfTheSecondWriteIsTold)
{
    FailNext(SpoolerCall::SetPrinterDataExW, ERROR_ACCESS_DENIED, 2);
    EXPECT_FALSE(Odometer(1, 2.0).WriteStored(_printer.Get()));
}

} // namespace
