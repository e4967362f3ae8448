// SPDX-License-Identifier: MIT
#include "PrintingTest.h"

namespace {

/// One raw document of one page and 3000 bytes, in two writes, printed after it has been spooled.
class RealisticRunTest : public PrintingTest {
protected:
    void SetUp() override
    {
        PrintingTest::SetUp();
        const DEVMODEW devMode = LabelDevMode();
        SpoolerSetPrinterDevMode(L"Label", &devMode);
    }

    void StartDoc() const
    {
        DOC_INFO_1W info = {const_cast<wchar_t*>(L"Pallet"), nullptr, const_cast<wchar_t*>(L"RAW")};
        EXPECT_EQ(::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info)), 1u);
    }

    void StartPageAndWriteHalf() const
    {
        ::StartPagePrinter(printer.Get());
        WriteHalf();
    }

    void WriteHalf() const
    {
        std::string half(1500, 'x');
        DWORD written = 0;
        ::WritePrinter(printer.Get(), half.data(), static_cast<DWORD>(half.size()), &written);
    }

    void End() const
    {
        ::EndPagePrinter(printer.Get());
        ::EndDocPrinter(printer.Get());
    }
};

const std::string arrival = "0x100 J1.STATUS=0x8 J1.TOTAL_PAGES=0 J1.PAGES_PRINTED=0 J1.TOTAL_BYTES=0 J1.PRIORITY=1 "
                            "J1.START_TIME=0 J1.UNTIL_TIME=0 J1.POSITION=1 J1.DEVMODE=(220 bytes)";

TEST_F(RealisticRunTest, AQuickClientSeesEachStepByItself)
{
    const Watch watch(printer, watched, usualJobFields);
    StartDoc();
    EXPECT_EQ(watch.Next(), arrival);
    StartPageAndWriteHalf();
    EXPECT_EQ(watch.Next(), "0xA00 J1.TOTAL_PAGES=1 J1.TOTAL_BYTES=1500");
    WriteHalf();
    EXPECT_EQ(watch.Next(), "0x800 J1.TOTAL_BYTES=3000");
    End();
    EXPECT_EQ(watch.Next(), "0x200 J1.STATUS=0x0");
    const char* const steps[] = {
        "0x200 J1.STATUS=0x2010",                  // printing
        "0x800 -",                                 // bytes go to the device
        "0x200 J1.PAGES_PRINTED=1",                //
        "0x200 J1.STATUS=0x2090 J1.STATUS=0x2080", // printed
        "0x200 J1.STATUS=0x2084",                  // deleting
        "0x400 J1.STATUS=0x2184",                  // deleted, and gone
    };
    for (const char* const step : steps) {
        EXPECT_EQ(Step(), 1u);
        EXPECT_EQ(watch.Next(), step);
    }
    EXPECT_EQ(Step(), 0u);
    EXPECT_FALSE(watch.IsSignalled());
    EXPECT_EQ(StatusOf(1), 0xFFFFFFFF);
}

TEST_F(RealisticRunTest, ASlowClientSeesTheEndInOneBatch)
{
    const Watch watch(printer, watched, usualJobFields);
    StartDoc();
    EXPECT_EQ(watch.Next(), arrival);
    StartPageAndWriteHalf();
    WriteHalf();
    EXPECT_EQ(watch.Next(), "0xA00 J1.TOTAL_PAGES=1 J1.TOTAL_BYTES=3000");
    End();
    EXPECT_EQ(watch.Next(), "0x200 J1.STATUS=0x0");
    Step(3);
    EXPECT_EQ(watch.Next(), "0xA00 J1.STATUS=0x2010 J1.PAGES_PRINTED=1");
    Step(3);
    EXPECT_EQ(watch.Next(), "0x600 J1.STATUS=0x2090 J1.STATUS=0x2080 J1.STATUS=0x2084 J1.STATUS=0x2184");
}

TEST_F(RealisticRunTest, AClientThatComesLateForEverythingSeesOneBatch)
{
    const Watch watch(printer, watched, usualJobFields);
    StartDoc();
    StartPageAndWriteHalf();
    WriteHalf();
    End();
    EXPECT_EQ(Step(spoolerAllSteps), 6u);
    EXPECT_EQ(watch.Next(),
              "0xF00 J1.STATUS=0x8 J1.TOTAL_PAGES=1 J1.PAGES_PRINTED=1 J1.TOTAL_BYTES=3000 J1.PRIORITY=1 "
              "J1.START_TIME=0 J1.UNTIL_TIME=0 J1.POSITION=1 J1.DEVMODE=(220 bytes) J1.STATUS=0x0 J1.STATUS=0x2010 "
              "J1.STATUS=0x2090 J1.STATUS=0x2080 J1.STATUS=0x2084 J1.STATUS=0x2184");
}

TEST_F(RealisticRunTest, WhoAsksForPrintedBytesAndJobCountsHearsOfThem)
{
    const Watch watch(printer, watched, {JOB_NOTIFY_FIELD_BYTES_PRINTED}, {PRINTER_NOTIFY_FIELD_CJOBS});
    StartDoc();
    StartPageAndWriteHalf();
    End();
    EXPECT_EQ(watch.Next(), "0xB00 P.CJOBS=1");
    Step(2);
    EXPECT_EQ(watch.Next(), "0xA00 J1.BYTES_PRINTED=1500");
    Step(4);
    EXPECT_EQ(watch.Next(), "0x600 P.CJOBS=0");
}

TEST_F(RealisticRunTest, AJobBehindMovesUpWhenOneIsGone)
{
    Print(printer, L"1", "x");
    Print(printer, L"2", "x");
    Step(5);
    const Watch watch(printer, watched, {JOB_NOTIFY_FIELD_STATUS, JOB_NOTIFY_FIELD_POSITION});
    Step();
    EXPECT_EQ(watch.Next(), "0x600 J1.STATUS=0x2184 J2.POSITION=1");
}

} // namespace
