// SPDX-License-Identifier: MIT
#include "NotificationTest.h"

#include <functional>
#include <numeric>

namespace {

constexpr DWORD everyChange = 0x7777FFFF;
constexpr WORD printerFieldCount = 0x1C;
constexpr WORD jobFieldCount = 0x18;

std::vector<WORD> AllFields(WORD count)
{
    std::vector<WORD> fields(count);
    std::iota(fields.begin(), fields.end(), WORD{0});
    return fields;
}

wchar_t* Mutable(const wchar_t* text)
{
    return const_cast<wchar_t*>(text);
}

/// Watches one printer for every field and every bit.
class NotifiedFieldsTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        SpoolerSetIdentity(L"clerk", L"DEPOT");
        SpoolerAddPort({.name = L"NET1"});
        SpoolerAddDriver({.name = L"Label Driver"});
        printer = AddAndOpen(L"Label");
    }

    Watch WatchPrinter() const { return Watch(printer, everyChange, {}, AllFields(printerFieldCount)); }
    Watch WatchJobs() const { return Watch(printer, everyChange, AllFields(jobFieldCount)); }

    /// Changes level 2 of the printer by SetPrinterW.
    BOOL Change2(const std::function<void(PRINTER_INFO_2W&)>& change) const
    {
        auto info = ReadPrinter<PRINTER_INFO_2W>(printer, 2);
        change(*info.Get());
        return ::SetPrinterW(printer.Get(), 2, info.Data(), 0);
    }

    BOOL ChangeJob2(DWORD jobId, const std::function<void(JOB_INFO_2W&)>& change) const
    {
        auto info = ReadJob<JOB_INFO_2W>(printer, jobId, 2);
        change(*info.Get());
        return ::SetJobW(printer.Get(), jobId, 2, info.Data(), 0);
    }

    PrinterHandle printer;
};

TEST_F(NotifiedFieldsTest, EachPrinterFieldIsToldWhenLevel2ChangesIt)
{
    static const std::wstring separator = [] {
        std::wstring path(MAX_PATH, L'\0');
        path.resize(::GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
        return path;
    }();
    const std::string separatorText(separator.begin(), separator.end());
    static const DEVMODEW devMode = LabelDevMode();
    const struct {
        void (*change)(PRINTER_INFO_2W& info);
        std::string told;
    } rows[] = {
        {[](PRINTER_INFO_2W& info) { info.pShareName = Mutable(L"LABELS"); },            "0x2 P.SHARE_NAME='LABELS'"   },
        {[](PRINTER_INFO_2W& info) { info.pPortName = Mutable(L"LPT1:,NET1"); },         "0x2 P.PORT_NAME='LPT1:,NET1'"},
        {[](PRINTER_INFO_2W& info) { info.pDriverName = Mutable(L"Label Driver"); },
         "0x20000002 P.DRIVER_NAME='Label Driver'"                                                                     },
        {[](PRINTER_INFO_2W& info) { info.pComment = Mutable(L"Wide"); },                "0x2 P.COMMENT='Wide'"        },
        {[](PRINTER_INFO_2W& info) { info.pLocation = Mutable(L"Gate 3"); },             "0x2 P.LOCATION='Gate 3'"     },
        {[](PRINTER_INFO_2W& info) { info.pDevMode = const_cast<DEVMODEW*>(&devMode); }, "0x2 P.DEVMODE=(220 bytes)"   },
        {[](PRINTER_INFO_2W& info) { info.pSepFile = Mutable(separator.c_str()); },
         "0x2 P.SEPFILE='" + separatorText + "'"                                                                       },
        {[](PRINTER_INFO_2W& info) { info.pPrintProcessor = Mutable(L"WinPrint"); },
         "0x2 P.PRINT_PROCESSOR='WinPrint'"                                                                            },
        {[](PRINTER_INFO_2W& info) { info.pParameters = Mutable(L"x"); },                "0x2 P.PARAMETERS='x'"        },
        {[](PRINTER_INFO_2W& info) { info.pDatatype = Mutable(L"TEXT"); },               "0x2 P.DATATYPE='TEXT'"       },
        {[](PRINTER_INFO_2W& info) { info.Attributes |= PRINTER_ATTRIBUTE_DIRECT; },     "0x2 P.ATTRIBUTES=66"         },
        {[](PRINTER_INFO_2W& info) { info.Priority = 7; },                               "0x2 P.PRIORITY=7"            },
        {[](PRINTER_INFO_2W& info) { info.DefaultPriority = 8; },                        "0x2 P.DEF_PRIORITY=8"        },
        {[](PRINTER_INFO_2W& info) { info.StartTime = 60; },                             "0x2 P.START_TIME=60"         },
        {[](PRINTER_INFO_2W& info) { info.UntilTime = 120; },                            "0x2 P.UNTIL_TIME=120"        },
        {[](PRINTER_INFO_2W& info) { info.pPrinterName = Mutable(L"New"); },             "0x2 P.PRINTER_NAME='New'"    },
    };
    const Watch watch = WatchPrinter();
    for (const auto& row : rows) {
        ASSERT_TRUE(Change2(row.change)) << row.told;
        EXPECT_EQ(watch.Next(), row.told);
    }
}

TEST_F(NotifiedFieldsTest, WhatLevel2LeavesAsItIsIsNotTold)
{
    const Watch watch = WatchPrinter();
    ASSERT_TRUE(Change2([](PRINTER_INFO_2W&) {}));
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(NotifiedFieldsTest, ARefusedChangeIsNotTold)
{
    const Watch watch = WatchPrinter();
    EXPECT_FALSE(Change2([](PRINTER_INFO_2W& info) {
        info.pComment = Mutable(L"Wide");
        info.pPortName = Mutable(L"NOWHERE");
    }));
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(NotifiedFieldsTest, TheOtherLevelsTellWhatTheyChange)
{
    const Watch watch = WatchPrinter();
    PRINTER_INFO_5W port = {Mutable(L"Label"), Mutable(L"NET1"), PRINTER_ATTRIBUTE_LOCAL, 1, 2};
    EXPECT_TRUE(::SetPrinterW(printer.Get(), 5, reinterpret_cast<BYTE*>(&port), 0));
    EXPECT_EQ(watch.Next(), "0x2 P.PORT_NAME='NET1'");

    PRINTER_INFO_4W attributes = {Mutable(L"Label"), nullptr, PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_QUEUED};
    EXPECT_TRUE(::SetPrinterW(printer.Get(), 4, reinterpret_cast<BYTE*>(&attributes), 0));
    EXPECT_EQ(watch.Next(), "0x2 P.ATTRIBUTES=65");

    DEVMODEW devMode = LabelDevMode();
    PRINTER_INFO_8W mode = {&devMode};
    EXPECT_TRUE(::SetPrinterW(printer.Get(), 8, reinterpret_cast<BYTE*>(&mode), 0));
    EXPECT_EQ(watch.Next(), "0x2 P.DEVMODE=(220 bytes)");

    SECURITY_DESCRIPTOR descriptor = {};
    ::InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
    PRINTER_INFO_3 security = {&descriptor};
    EXPECT_TRUE(::SetPrinterW(printer.Get(), 3, reinterpret_cast<BYTE*>(&security), 0));
    EXPECT_EQ(watch.Next(), "0x2 P.SECURITY=(20 bytes)");
}

TEST_F(NotifiedFieldsTest, AStatusOfThePrinterIsToldFromEverySource)
{
    const Watch watch = WatchPrinter();
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE);
    EXPECT_EQ(watch.Next(), "0x2 P.STATUS=0x1");
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_RESUME);
    EXPECT_EQ(watch.Next(), "0x2 P.STATUS=0x0");
    DWORD status = PRINTER_STATUS_OFFLINE;
    ::SetPrinterW(printer.Get(), 0, reinterpret_cast<BYTE*>(&status), PRINTER_CONTROL_SET_STATUS);
    EXPECT_EQ(watch.Next(), "0x2 P.STATUS=0x80");
    PRINTER_INFO_6 info = {PRINTER_STATUS_DOOR_OPEN};
    ::SetPrinterW(printer.Get(), 6, reinterpret_cast<BYTE*>(&info), 0);
    EXPECT_EQ(watch.Next(), "0x2 P.STATUS=0x400000");
    SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_PAPER_OUT);
    EXPECT_EQ(watch.Next(), "0x2 P.STATUS=0x10");
}

TEST_F(NotifiedFieldsTest, PausingAPausedPrinterIsNotTold)
{
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE);
    const Watch watch = WatchPrinter();
    ::SetPrinterW(printer.Get(), 0, nullptr, PRINTER_CONTROL_PAUSE);
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(NotifiedFieldsTest, TheNumberOfJobsIsToldWhenOneComesOrGoes)
{
    const Watch watch = WatchPrinter();
    const DWORD jobId = QueueJob(L"Label");
    EXPECT_EQ(watch.Next(), "0x100 P.CJOBS=1");
    SpoolerRemoveJob(L"Label", jobId);
    EXPECT_EQ(watch.Next(), "0x400 P.CJOBS=0");
}

TEST_F(NotifiedFieldsTest, TheSpeedOfThePrinterIsTold)
{
    const Watch watch = WatchPrinter();
    SpoolerSetAveragePpm(L"Label", 12);
    EXPECT_EQ(watch.Next(), "0x2 P.AVERAGE_PPM=12");
}

TEST_F(NotifiedFieldsTest, AnotherNameFromOutsideIsTold)
{
    const Watch watch = WatchPrinter();
    SpoolerRenamePrinter(L"Label", L"New");
    EXPECT_EQ(watch.Next(), "0x2 P.PRINTER_NAME='New'");
}

TEST_F(NotifiedFieldsTest, ADeletedPrinterIsTold)
{
    const Watch watch = WatchPrinter();
    SpoolerRemovePrinter(L"Label");
    EXPECT_EQ(watch.Next(), "0x4 -");
}

TEST_F(NotifiedFieldsTest, UnsupportedPrinterFieldsAreNeverTold)
{
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_SECURITY_DESCRIPTOR},
                      {PRINTER_NOTIFY_FIELD_SERVER_NAME, PRINTER_NOTIFY_FIELD_STATUS_STRING,
                       PRINTER_NOTIFY_FIELD_TOTAL_PAGES, PRINTER_NOTIFY_FIELD_PAGES_PRINTED,
                       PRINTER_NOTIFY_FIELD_TOTAL_BYTES, PRINTER_NOTIFY_FIELD_BYTES_PRINTED,
                       PRINTER_NOTIFY_FIELD_OBJECT_GUID, 0x1B, 0x1C, 0xFFFF});
    Print(printer, L"Pallet", "x");
    EXPECT_FALSE(watch.IsSignalled());
    EXPECT_EQ(watch.Next(PRINTER_NOTIFY_OPTIONS_REFRESH), "0x0");
}

TEST_F(NotifiedFieldsTest, AnArrivingJobTellsEverythingThatIsKnownOfIt)
{
    const DEVMODEW devMode = LabelDevMode();
    SpoolerSetPrinterDevMode(L"Label", &devMode);
    const Watch watch = WatchJobs();
    DOC_INFO_1W info = {Mutable(L"Pallet"), nullptr, Mutable(L"RAW")};
    ASSERT_EQ(::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info)), 1u);
    EXPECT_EQ(watch.Next(),
              "0x100 J1.PRINTER_NAME='Label' J1.MACHINE_NAME='\\\\DEPOT' J1.PORT_NAME='LPT1:' J1.USER_NAME='clerk' "
              "J1.NOTIFY_NAME='clerk' J1.DATATYPE='RAW' J1.PRINT_PROCESSOR='winprint' J1.PARAMETERS='' "
              "J1.DRIVER_NAME='Generic / Text Only' J1.DEVMODE=(220 bytes) J1.STATUS=0x8 J1.DOCUMENT='Pallet' "
              "J1.PRIORITY=1 J1.POSITION=1 J1.SUBMITTED=(16 bytes) J1.START_TIME=0 J1.UNTIL_TIME=0 J1.TOTAL_PAGES=0 "
              "J1.PAGES_PRINTED=0 J1.TOTAL_BYTES=0");
}

TEST_F(NotifiedFieldsTest, AJobThatArrivesWithMoreTellsThatToo)
{
    const Watch watch(printer, 0, {JOB_NOTIFY_FIELD_STATUS_STRING, JOB_NOTIFY_FIELD_TIME});
    QueueJob(L"Label", {.statusText = L"Half way", .time = 2500});
    EXPECT_EQ(watch.Next(), "0x0 J1.STATUS_STRING='Half way' J1.TIME=2");
}

TEST_F(NotifiedFieldsTest, TheCallsOfADocumentTellWhatTheyDo)
{
    const Watch watch = WatchJobs();
    DOC_INFO_1W info = {Mutable(L"Pallet"), nullptr, nullptr};
    ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    watch.Next();
    ::StartPagePrinter(printer.Get());
    EXPECT_EQ(watch.Next(), "0x200 J1.TOTAL_PAGES=1");
    DWORD written = 0;
    ::WritePrinter(printer.Get(), Mutable(L"xyz"), 3, &written);
    EXPECT_EQ(watch.Next(), "0x800 J1.TOTAL_BYTES=3");
    ::WritePrinter(printer.Get(), nullptr, 0, &written);
    EXPECT_EQ(watch.Next(), "0x800 -");
    ::EndPagePrinter(printer.Get());
    EXPECT_EQ(watch.Next(), "0x200 -");
    ::EndDocPrinter(printer.Get());
    EXPECT_EQ(watch.Next(), "0x200 J1.STATUS=0x0");
}

TEST_F(NotifiedFieldsTest, EachJobFieldIsToldWhenLevel2ChangesIt)
{
    static DEVMODEW devMode = LabelDevMode();
    static constexpr struct {
        void (*change)(JOB_INFO_2W& info);
        const char* told;
    } rows[] = {
        {[](JOB_INFO_2W& info) { info.pDocument = Mutable(L"Carton"); },         "0x200 J1.DOCUMENT='Carton'"         },
        {[](JOB_INFO_2W& info) { info.pNotifyName = Mutable(L"boss"); },         "0x200 J1.NOTIFY_NAME='boss'"        },
        {[](JOB_INFO_2W& info) { info.pDatatype = Mutable(L"TEXT"); },           "0x200 J1.DATATYPE='TEXT'"           },
        {[](JOB_INFO_2W& info) { info.pPrintProcessor = Mutable(L"WinPrint"); }, "0x200 J1.PRINT_PROCESSOR='WinPrint'"},
        {[](JOB_INFO_2W& info) { info.pParameters = Mutable(L"x"); },            "0x200 J1.PARAMETERS='x'"            },
        {[](JOB_INFO_2W& info) { info.pDevMode = &devMode; },                    "0x200 J1.DEVMODE=(220 bytes)"       },
        {[](JOB_INFO_2W& info) { info.Status = JOB_STATUS_PAUSED; },             "0x200 J1.STATUS=0x1"                },
        {[](JOB_INFO_2W& info) { info.pStatus = Mutable(L"Ribbon out"); },       "0x200 J1.STATUS_STRING='Ribbon out'"},
        {[](JOB_INFO_2W& info) { info.Priority = 7; },                           "0x200 J1.PRIORITY=7"                },
        {[](JOB_INFO_2W& info) { info.StartTime = 60; },                         "0x200 J1.START_TIME=60"             },
        {[](JOB_INFO_2W& info) { info.UntilTime = 120; },                        "0x200 J1.UNTIL_TIME=120"            },
        {[](JOB_INFO_2W& info) { info.PagesPrinted = 2; },                       "0x200 J1.PAGES_PRINTED=2"           },
    };
    const DWORD jobId = QueueJob(L"Label");
    const Watch watch = WatchJobs();
    for (const auto& row : rows) {
        ASSERT_TRUE(ChangeJob2(jobId, row.change)) << row.told;
        EXPECT_EQ(watch.Next(), row.told);
    }
}

TEST_F(NotifiedFieldsTest, ASetJobThatChangesNoFieldIsStillAChangeOfTheJob)
{
    const DWORD jobId = QueueJob(L"Label");
    const Watch watch = WatchJobs();
    ASSERT_TRUE(ChangeJob2(jobId, [](JOB_INFO_2W&) {}));
    EXPECT_EQ(watch.Next(), "0x200 -");
}

TEST_F(NotifiedFieldsTest, ARefusedSetJobIsNotTold)
{
    const DWORD jobId = QueueJob(L"Label");
    const Watch watch = WatchJobs();
    EXPECT_FALSE(ChangeJob2(jobId, [](JOB_INFO_2W& info) { info.Priority = 100; }));
    EXPECT_FALSE(watch.IsSignalled());
}

TEST_F(NotifiedFieldsTest, AMovedJobTellsThePositionsOfAllThatMoved)
{
    for (int count = 0; count < 4; ++count) QueueJob(L"Label");
    const Watch watch = WatchJobs();
    ASSERT_TRUE(ChangeJob2(3, [](JOB_INFO_2W& info) { info.Position = 1; }));
    EXPECT_EQ(watch.Next(), "0x200 J3.POSITION=1 J1.POSITION=2 J2.POSITION=3");
}

TEST_F(NotifiedFieldsTest, AJobThatLeavesTellsThePositionsBehindIt)
{
    for (int count = 0; count < 3; ++count) QueueJob(L"Label");
    const Watch watch(printer, everyChange, AllFields(jobFieldCount), {PRINTER_NOTIFY_FIELD_CJOBS});
    SpoolerRemoveJob(L"Label", 2);
    EXPECT_EQ(watch.Next(), "0x600 J3.POSITION=2 P.CJOBS=2");
    SpoolerRemoveJob(L"Label", 3);
    EXPECT_EQ(watch.Next(), "0x400 P.CJOBS=1");
}

TEST_F(NotifiedFieldsTest, WhatATestSetsOfAJobIsTold)
{
    const DWORD jobId = QueueJob(L"Label");
    const DEVMODEW devMode = LabelDevMode();
    const Watch watch = WatchJobs();
    SpoolerSetJobStatus(L"Label", jobId, JOB_STATUS_ERROR);
    EXPECT_EQ(watch.Next(), "0x200 J1.STATUS=0x2");
    SpoolerSetJobText(L"Label", jobId, L"Ribbon out");
    EXPECT_EQ(watch.Next(), "0x200 J1.STATUS_STRING='Ribbon out'");
    SpoolerSetJobText(L"Label", jobId, nullptr);
    EXPECT_EQ(watch.Next(), "0x200 J1.STATUS_STRING=''");
    SpoolerSetJobPages(L"Label", jobId, 5, 2);
    EXPECT_EQ(watch.Next(), "0x200 J1.TOTAL_PAGES=5 J1.PAGES_PRINTED=2");
    SpoolerSetJobSize(L"Label", jobId, 900);
    EXPECT_EQ(watch.Next(), "0x0 J1.TOTAL_BYTES=900");
    SpoolerSetJobDevMode(L"Label", jobId, &devMode);
    EXPECT_EQ(watch.Next(), "0x200 J1.DEVMODE=(220 bytes)");
    SpoolerSetJobDevMode(L"Label", jobId, nullptr);
    EXPECT_EQ(watch.Next(), "0x200 J1.DEVMODE=(0 bytes)");
}

} // namespace
