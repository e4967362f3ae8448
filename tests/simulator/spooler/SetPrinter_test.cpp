// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

namespace {

using Info2 = PRINTER_INFO_2W;

class SetPrinterTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        SpoolerAddPort({.name = L"NET1"});
        SpoolerAddPort({.name = L"NET2"});
        SpoolerAddDriver({.name = L"Other driver"});
        printer = AddAndOpen(L"Label");
    }

    void TearDown() override
    {
        printer.Reset();
        SimulatorTest::TearDown();
    }

    /// Reads level 2, lets `change` work on it, and writes it back. Gives the error.
    template <typename Change>
    DWORD Set2(Change change)
    {
        auto info = ReadPrinter<PRINTER_INFO_2W>(printer, 2);
        change(*info.Get());
        return ErrorOf(::SetPrinterW(printer.Get(), 2, info.Data(), 0));
    }

    template <typename Info>
    DWORD Set(DWORD level, Info& info)
    {
        return ErrorOf(::SetPrinterW(printer.Get(), level, reinterpret_cast<BYTE*>(&info), 0));
    }

    DWORD Command(DWORD command) { return ErrorOf(::SetPrinterW(printer.Get(), 0, nullptr, command)); }

    static wchar_t* Mutable(const wchar_t* text) { return const_cast<wchar_t*>(text); }

    SizedRead<PRINTER_INFO_2W> Info() { return ReadPrinter<PRINTER_INFO_2W>(printer, 2); }
    DWORD JobCount() { return Info()->cJobs; }

    PrinterHandle printer;
};

TEST_F(SetPrinterTest, WhatWasReadCanBeWrittenBack)
{
    EXPECT_EQ(Set2([](PRINTER_INFO_2W&) {}), DWORD{ERROR_SUCCESS});
}

TEST_F(SetPrinterTest, Level2ChangesTexts)
{
    EXPECT_EQ(Set2([](PRINTER_INFO_2W& info) {
                  info.pPrinterName = Mutable(L"Renamed");
                  info.pPortName = Mutable(L"NET1,NET2");
                  info.pDriverName = Mutable(L"Other driver");
                  info.pComment = Mutable(L"comment");
                  info.pLocation = Mutable(L"location");
                  info.pParameters = Mutable(L"p=1");
                  info.pDatatype = Mutable(L"TEXT");
              }),
              DWORD{ERROR_SUCCESS});
    const auto info = Info();
    EXPECT_EQ(Text(info->pPrinterName), L"Renamed");
    EXPECT_EQ(Text(info->pPortName), L"NET1,NET2");
    EXPECT_EQ(Text(info->pDriverName), L"Other driver");
    EXPECT_EQ(Text(info->pComment), L"comment");
    EXPECT_EQ(Text(info->pLocation), L"location");
    EXPECT_EQ(Text(info->pParameters), L"p=1");
    EXPECT_EQ(Text(info->pDatatype), L"TEXT");
}

TEST_F(SetPrinterTest, Level2ChangesNumbersAndTheDeviceMode)
{
    DEVMODEW devMode = LabelDevMode();
    EXPECT_EQ(Set2([&](PRINTER_INFO_2W& info) {
                  info.Priority = 99;
                  info.DefaultPriority = 50;
                  info.StartTime = 1;
                  info.UntilTime = 1439;
                  info.pDevMode = &devMode;
              }),
              DWORD{ERROR_SUCCESS});
    const auto info = Info();
    EXPECT_EQ(info->Priority, 99u);
    EXPECT_EQ(info->DefaultPriority, 50u);
    EXPECT_EQ(info->StartTime, 1u);
    EXPECT_EQ(info->UntilTime, 1439u);
    EXPECT_EQ(info->pDevMode->dmPaperLength, 1500);
}

TEST_F(SetPrinterTest, Level2IgnoresServerStatusJobsAndSpeed)
{
    EXPECT_EQ(Set2([](PRINTER_INFO_2W& info) {
                  info.pServerName = Mutable(L"\\\\ELSEWHERE");
                  info.Status = PRINTER_STATUS_PAUSED | PRINTER_STATUS_ERROR;
                  info.cJobs = 7;
                  info.AveragePPM = 8;
              }),
              DWORD{ERROR_SUCCESS});
    const auto info = Info();
    EXPECT_EQ(info->pServerName, nullptr);
    EXPECT_EQ(info->Status, 0u);
    EXPECT_EQ(info->cJobs, 0u);
    EXPECT_EQ(info->AveragePPM, 0u);
}

TEST_F(SetPrinterTest, Level2LeavesWhereThePrinterIsAlone)
{
    EXPECT_EQ(Set2([](PRINTER_INFO_2W& info) {
                  info.Attributes = PRINTER_ATTRIBUTE_NETWORK | PRINTER_ATTRIBUTE_ENABLE_BIDI;
              }),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Info()->Attributes, DWORD{PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_ENABLE_BIDI});
}

TEST_F(SetPrinterTest, NullDatatypeProcessorAndDeviceModeStayAsTheyAre)
{
    const DEVMODEW devMode = LabelDevMode();
    SpoolerSetPrinterDevMode(L"Label", &devMode);
    EXPECT_EQ(Set2([](PRINTER_INFO_2W& info) {
                  info.pDatatype = nullptr;
                  info.pPrintProcessor = nullptr;
                  info.pDevMode = nullptr;
              }),
              DWORD{ERROR_SUCCESS});
    const auto info = Info();
    EXPECT_EQ(Text(info->pDatatype), L"RAW");
    EXPECT_EQ(Text(info->pPrintProcessor), L"winprint");
    EXPECT_EQ(info->pDevMode->dmCopies, 2);
}

TEST_F(SetPrinterTest, OtherNullTextsAreStoredAsNull)
{
    EXPECT_EQ(Set2([](PRINTER_INFO_2W& info) {
                  info.pShareName = nullptr;
                  info.pComment = nullptr;
                  info.pLocation = nullptr;
                  info.pSepFile = nullptr;
                  info.pParameters = nullptr;
              }),
              DWORD{ERROR_SUCCESS});
    const auto info = Info();
    for (const wchar_t* text : {info->pShareName, info->pComment, info->pLocation, info->pSepFile, info->pParameters})
        EXPECT_EQ(text, nullptr);
}

TEST_F(SetPrinterTest, FieldsThatDoNotChangeAreNotCheckedAgain)
{
    SpoolerRemovePort(L"LPT1:");
    SpoolerRemoveDriver(L"Generic / Text Only");
    EXPECT_EQ(Set2([](PRINTER_INFO_2W& info) { info.pComment = Mutable(L"changed"); }), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Text(Info()->pComment), L"changed");
}

TEST_F(SetPrinterTest, PortsAndDriversAreFoundInAnyCase)
{
    EXPECT_EQ(Set2([](PRINTER_INFO_2W& info) {
                  info.pPortName = Mutable(L"net1");
                  info.pDriverName = Mutable(L"OTHER DRIVER");
              }),
              DWORD{ERROR_SUCCESS});
}

TEST_F(SetPrinterTest, TheLimitedRightIsEnough)
{
    printer = Open(L"Label", 0x40);
    EXPECT_EQ(Command(PRINTER_CONTROL_PAUSE), DWORD{ERROR_SUCCESS});
}

TEST_F(SetPrinterTest, WrongFieldsFailWithTheirErrorsAndChangeNothing)
{
    static const struct {
        const char* what;
        DWORD error;
        void (*change)(Info2& info);
    } rows[] = {
        {"unknown port",            ERROR_UNKNOWN_PORT,           [](Info2& info) { info.pPortName = Mutable(L"NET9"); }     },
        {"one unknown port of two", ERROR_UNKNOWN_PORT,           [](Info2& info) { info.pPortName = Mutable(L"NET1,NET9"); }},
        {"empty port",              ERROR_UNKNOWN_PORT,           [](Info2& info) { info.pPortName = Mutable(L""); }         },
        {"no port",                 ERROR_UNKNOWN_PORT,           [](Info2& info) { info.pPortName = nullptr; }              },
        {"unknown driver",          ERROR_UNKNOWN_PRINTER_DRIVER, [](Info2& info) { info.pDriverName = Mutable(L"None"); }   },
        {"no driver",               ERROR_UNKNOWN_PRINTER_DRIVER, [](Info2& info) { info.pDriverName = nullptr; }            },
        {"unknown processor",       ERROR_UNKNOWN_PRINTPROCESSOR, [](Info2& info) { info.pPrintProcessor = Mutable(L"x"); }  },
        {"unknown data type",       ERROR_INVALID_DATATYPE,       [](Info2& info) { info.pDatatype = Mutable(L"x"); }        },
        {"missing separator file",  ERROR_INVALID_SEPARATOR_FILE,
         [](Info2& info) { info.pSepFile = Mutable(L"C:\\no.sep"); }                                                         },
        {"priority above 99",       ERROR_INVALID_PRIORITY,       [](Info2& info) { info.Priority = 100; }                   },
        {"default priority too",    ERROR_INVALID_PRIORITY,       [](Info2& info) { info.DefaultPriority = 100; }            },
        {"start after the day",     ERROR_INVALID_TIME,           [](Info2& info) { info.StartTime = 1440; }                 },
        {"end after the day",       ERROR_INVALID_TIME,           [](Info2& info) { info.UntilTime = 1440; }                 },
        {"empty name",              ERROR_INVALID_PRINTER_NAME,   [](Info2& info) { info.pPrinterName = Mutable(L""); }      },
        {"no name",                 ERROR_INVALID_PRINTER_NAME,   [](Info2& info) { info.pPrinterName = nullptr; }           },
        {"comma in the name",       ERROR_INVALID_PRINTER_NAME,   [](Info2& info) { info.pPrinterName = Mutable(L"a,b"); }   },
        {"backslash in the name",   ERROR_INVALID_PRINTER_NAME,
         [](Info2& info) { info.pPrinterName = Mutable(L"a\\b"); }                                                           },
        {"name of another printer", ERROR_PRINTER_ALREADY_EXISTS,
         [](Info2& info) { info.pPrinterName = Mutable(L"OTHER"); }                                                          },
    };
    SpoolerAddPrinter({.printerName = L"Other"});
    for (const auto& row : rows) {
        EXPECT_EQ(Set2([&](PRINTER_INFO_2W& info) {
                      info.pComment = Mutable(L"changed");
                      row.change(info);
                  }),
                  row.error)
            << row.what;
        EXPECT_EQ(Text(Info()->pComment), L"") << row.what;
    }
}

TEST_F(SetPrinterTest, ARenamedPrinterIsOpenedByItsNewName)
{
    Set2([](PRINTER_INFO_2W& info) { info.pPrinterName = Mutable(L"Renamed"); });
    EXPECT_TRUE(Open(L"Renamed"));
    EXPECT_FALSE(Open(L"Label"));
}

TEST_F(SetPrinterTest, ANameWithThisServerIsTakenWithoutIt)
{
    SpoolerSetIdentity(nullptr, L"DEPOT");
    printer = Open(L"\\\\DEPOT\\Label");
    EXPECT_EQ(Set2([](PRINTER_INFO_2W& info) { info.pComment = Mutable(L"changed"); }), DWORD{ERROR_SUCCESS});
    EXPECT_TRUE(Open(L"Label"));
}

TEST_F(SetPrinterTest, SharingTakesAValidShareName)
{
    EXPECT_EQ(Set2([](PRINTER_INFO_2W& info) {
                  info.pShareName = Mutable(L"Label of gate 3");
                  info.Attributes |= PRINTER_ATTRIBUTE_SHARED;
              }),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Text(Info()->pShareName), L"Label of gate 3");
    EXPECT_TRUE(Info()->Attributes & PRINTER_ATTRIBUTE_SHARED);
}

TEST_F(SetPrinterTest, SharingUnderAnInvalidNameFailsWithInvalidShareName)
{
    const std::wstring tooLong(81, L'x');
    for (const wchar_t* name : {L"", L"a/b", L"a\\b", L"a,b", L"a:b", L"a*b", L"a?b", L"a\"b", L"a<b", L"a>b", L"a|b",
                                L"a+b", L"a=b", L"a;b", L"a[b", L"a]b", L"a\tb", tooLong.c_str()}) {
        EXPECT_EQ(Set2([&](PRINTER_INFO_2W& info) {
                      info.pShareName = Mutable(name);
                      info.Attributes |= PRINTER_ATTRIBUTE_SHARED;
                  }),
                  DWORD{ERROR_INVALID_SHARENAME})
            << name;
    }
}

TEST_F(SetPrinterTest, AShareNameInUseFailsWithInvalidShareName)
{
    SpoolerAddPrinter({.printerName = L"Other",
                       .shareName = L"LBL",
                       .attributes = PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_SHARED});
    EXPECT_EQ(Set2([](PRINTER_INFO_2W& info) {
                  info.pShareName = Mutable(L"lbl");
                  info.Attributes |= PRINTER_ATTRIBUTE_SHARED;
              }),
              DWORD{ERROR_INVALID_SHARENAME});
}

TEST_F(SetPrinterTest, WithoutSharingAnyShareNameIsTaken)
{
    EXPECT_EQ(Set2([](PRINTER_INFO_2W& info) { info.pShareName = Mutable(L"a/b"); }), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Text(Info()->pShareName), L"a/b");
}

TEST_F(SetPrinterTest, AHandleForUseMayNotChangeThePrinter)
{
    auto info = ReadPrinter<PRINTER_INFO_2W>(printer, 2);
    printer = Open(L"Label", PRINTER_ACCESS_USE);
    EXPECT_EQ(ErrorOf(::SetPrinterW(printer.Get(), 2, info.Data(), 0)), DWORD{ERROR_ACCESS_DENIED});
    for (const DWORD command : {PRINTER_CONTROL_PAUSE, PRINTER_CONTROL_RESUME, PRINTER_CONTROL_PURGE})
        EXPECT_EQ(Command(command), DWORD{ERROR_ACCESS_DENIED}) << command;
    PRINTER_INFO_6 status = {PRINTER_STATUS_BUSY};
    EXPECT_EQ(Set(6, status), DWORD{ERROR_ACCESS_DENIED});
    DEVMODEW devMode = LabelDevMode();
    PRINTER_INFO_8W defaults = {&devMode};
    EXPECT_EQ(Set(8, defaults), DWORD{ERROR_ACCESS_DENIED});
}

TEST_F(SetPrinterTest, PauseAndResumeSwitchThePausedBit)
{
    SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_TONER_LOW);
    EXPECT_EQ(Command(PRINTER_CONTROL_PAUSE), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Info()->Status, DWORD{PRINTER_STATUS_TONER_LOW | PRINTER_STATUS_PAUSED});
    EXPECT_EQ(Command(PRINTER_CONTROL_RESUME), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Info()->Status, DWORD{PRINTER_STATUS_TONER_LOW});
}

TEST_F(SetPrinterTest, PurgeDeletesAllJobsButTheOneThatPrints)
{
    QueueJob(L"Label");
    const DWORD printing = QueueJob(L"Label", {.status = JOB_STATUS_PRINTING});
    QueueJob(L"Label", {.status = JOB_STATUS_PAUSED});
    EXPECT_EQ(Command(PRINTER_CONTROL_PURGE), DWORD{ERROR_SUCCESS});
    ASSERT_EQ(JobCount(), 1u);
    EXPECT_EQ(ReadJobs<JOB_INFO_1W>(printer, 1)->JobId, printing);
}

TEST_F(SetPrinterTest, SetStatusTakesTheWordAndLeavesThePausedBitAlone)
{
    Command(PRINTER_CONTROL_PAUSE);
    DWORD status = PRINTER_STATUS_PAPER_JAM;
    EXPECT_TRUE(::SetPrinterW(printer.Get(), 0, reinterpret_cast<BYTE*>(&status), PRINTER_CONTROL_SET_STATUS));
    EXPECT_EQ(Info()->Status, DWORD{PRINTER_STATUS_PAPER_JAM | PRINTER_STATUS_PAUSED});
    Command(PRINTER_CONTROL_RESUME);
    status = PRINTER_STATUS_PAUSED | PRINTER_STATUS_PENDING_DELETION;
    EXPECT_TRUE(::SetPrinterW(printer.Get(), 0, reinterpret_cast<BYTE*>(&status), PRINTER_CONTROL_SET_STATUS));
    EXPECT_EQ(Info()->Status, 0u);
}

TEST_F(SetPrinterTest, SetStatusWithoutAWordFails)
{
    EXPECT_EQ(Command(PRINTER_CONTROL_SET_STATUS), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(SetPrinterTest, UnknownCommandsAndLevelsFail)
{
    EXPECT_EQ(Command(5), DWORD{ERROR_INVALID_PRINTER_COMMAND});
    auto info = ReadPrinter<PRINTER_INFO_2W>(printer, 2);
    EXPECT_EQ(ErrorOf(::SetPrinterW(printer.Get(), 2, info.Data(), PRINTER_CONTROL_PAUSE)),
              DWORD{ERROR_INVALID_PRINTER_COMMAND});
    for (const DWORD level : {1, 10})
        EXPECT_EQ(ErrorOf(::SetPrinterW(printer.Get(), level, info.Data(), 0)), DWORD{ERROR_INVALID_LEVEL}) << level;
    EXPECT_EQ(ErrorOf(::SetPrinterW(printer.Get(), 2, nullptr, 0)), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(SetPrinterTest, Level0WantsDataOrACommand)
{
    EXPECT_EQ(Command(0), DWORD{ERROR_INVALID_PARAMETER});
    BYTE info[256] = {}; // a PRINTER_INFO_STRESS
    EXPECT_EQ(Set(0, info), DWORD{ERROR_SUCCESS});
}

TEST_F(SetPrinterTest, StructuresOfZerosMeetTheErrorOfTheirLevel)
{
    static constexpr struct {
        DWORD level;
        DWORD error;
    } rows[] = {
        {1, ERROR_INVALID_LEVEL         },
        {2, ERROR_UNKNOWN_PRINTER_DRIVER},
        {3, ERROR_INVALID_PARAMETER     },
        {4, ERROR_INVALID_PARAMETER     },
        {5, ERROR_INVALID_PARAMETER     },
        {6, ERROR_SUCCESS               },
        {7, ERROR_INVALID_PARAMETER     },
        {8, ERROR_SUCCESS               },
    };
    DEVMODEW devMode = LabelDevMode();
    SpoolerSetPrinterDevMode(L"Label", &devMode);
    const auto before = Info();
    for (const auto& row : rows) {
        PRINTER_INFO_2W zeros = {}; // the longest
        EXPECT_EQ(Set(row.level, zeros), row.error) << row.level;
    }
    const auto after = Info();
    EXPECT_EQ(Text(after->pPrinterName), Text(before->pPrinterName));
    EXPECT_EQ(after->Attributes, before->Attributes);
    ASSERT_NE(after->pDevMode, nullptr);
    EXPECT_EQ(after->pDevMode->dmCopies, devMode.dmCopies);
}

TEST_F(SetPrinterTest, Level2WithoutANameFailsWithInvalidPrinterName)
{
    EXPECT_EQ(Set2([](PRINTER_INFO_2W& info) { info.pPrinterName = nullptr; }), DWORD{ERROR_INVALID_PRINTER_NAME});
}

TEST_F(SetPrinterTest, Level3SetsASecurityDescriptor)
{
    SECURITY_DESCRIPTOR absolute = {};
    ::InitializeSecurityDescriptor(&absolute, SECURITY_DESCRIPTOR_REVISION);
    PRINTER_INFO_3 info = {&absolute};
    EXPECT_EQ(Set(3, info), DWORD{ERROR_SUCCESS});
    EXPECT_TRUE(::IsValidSecurityDescriptor(ReadPrinter<PRINTER_INFO_3>(printer, 3)->pSecurityDescriptor));
    printer = Open(L"Label", PRINTER_ACCESS_ADMINISTER);
    EXPECT_EQ(Set(3, info), DWORD{ERROR_ACCESS_DENIED});
}

TEST_F(SetPrinterTest, Level2WithASecurityDescriptorNeedsTheRightToChangeIt)
{
    SECURITY_DESCRIPTOR absolute = {};
    ::InitializeSecurityDescriptor(&absolute, SECURITY_DESCRIPTOR_REVISION);
    const auto change = [&](PRINTER_INFO_2W& info) { info.pSecurityDescriptor = &absolute; };
    EXPECT_EQ(Set2(change), DWORD{ERROR_SUCCESS});
    printer = Open(L"Label", PRINTER_ACCESS_ADMINISTER);
    EXPECT_EQ(Set2(change), DWORD{ERROR_ACCESS_DENIED});
}

TEST_F(SetPrinterTest, Level4SetsAttributes)
{
    PRINTER_INFO_4W info = {Mutable(L"Label"), nullptr, PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_WORK_OFFLINE};
    EXPECT_EQ(Set(4, info), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Info()->Attributes, DWORD{PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_WORK_OFFLINE});
}

TEST_F(SetPrinterTest, Levels4And5RenameThePrinter)
{
    PRINTER_INFO_4W info4 = {Mutable(L"Four"), nullptr, PRINTER_ATTRIBUTE_LOCAL};
    EXPECT_EQ(Set(4, info4), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Text(Info()->pPrinterName), L"Four");
    PRINTER_INFO_5W info5 = {Mutable(L"Five"), Mutable(L"NET2"), PRINTER_ATTRIBUTE_LOCAL, 1, 2};
    EXPECT_EQ(Set(5, info5), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Text(Info()->pPrinterName), L"Five");
    EXPECT_TRUE(Open(L"Five"));
    EXPECT_FALSE(Open(L"Label"));
}

TEST_F(SetPrinterTest, Levels4And5TakeNoNameThatIsInUseOrWrong)
{
    SpoolerAddPrinter({.printerName = L"Other"});
    for (const auto& [name, error] : {
             std::pair{L"Other", DWORD{ERROR_PRINTER_ALREADY_EXISTS}},
             std::pair{L"a,b",   DWORD{ERROR_INVALID_PRINTER_NAME}  },
             std::pair{L"",      DWORD{ERROR_INVALID_PRINTER_NAME}  }
    }) {
        PRINTER_INFO_4W info4 = {Mutable(name), nullptr, PRINTER_ATTRIBUTE_QUEUED};
        EXPECT_EQ(Set(4, info4), error);
        PRINTER_INFO_5W info5 = {Mutable(name), Mutable(L"NET2"), PRINTER_ATTRIBUTE_QUEUED, 1, 2};
        EXPECT_EQ(Set(5, info5), error);
    }
    EXPECT_EQ(Text(Info()->pPrinterName), L"Label");
    EXPECT_EQ(Text(Info()->pPortName), L"LPT1:");
    EXPECT_EQ(Info()->Attributes, DWORD{PRINTER_ATTRIBUTE_LOCAL});
}

TEST_F(SetPrinterTest, Levels4And5TakeTheNameThatAHandleWithAServerReads)
{
    SpoolerSetIdentity(nullptr, L"DEPOT");
    printer = Open(L"\\\\DEPOT\\Label");
    for (const DWORD level : {4, 5}) {
        auto info = ReadPrinter<PRINTER_INFO_5W>(printer, level);
        EXPECT_EQ(ErrorOf(::SetPrinterW(printer.Get(), level, info.Data(), 0)), DWORD{ERROR_SUCCESS}) << level;
    }
    EXPECT_TRUE(Open(L"Label"));
}

TEST_F(SetPrinterTest, Level5SetsPortAttributesAndTimeouts)
{
    PRINTER_INFO_5W info = {Mutable(L"Label"), Mutable(L"NET2"), PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_QUEUED, 1,
                            2};
    EXPECT_EQ(Set(5, info), DWORD{ERROR_SUCCESS});
    const auto read = ReadPrinter<PRINTER_INFO_5W>(printer, 5);
    EXPECT_EQ(Text(read->pPortName), L"NET2");
    EXPECT_EQ(read->Attributes, DWORD{PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_QUEUED});
    EXPECT_EQ(read->DeviceNotSelectedTimeout, 1u);
    EXPECT_EQ(read->TransmissionRetryTimeout, 2u);
    info.pPortName = Mutable(L"NET9");
    EXPECT_EQ(Set(5, info), DWORD{ERROR_UNKNOWN_PORT});
}

TEST_F(SetPrinterTest, Level6SetsTheStatusWord)
{
    PRINTER_INFO_6 info = {PRINTER_STATUS_WARMING_UP};
    EXPECT_EQ(Set(6, info), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Info()->Status, DWORD{PRINTER_STATUS_WARMING_UP});
}

TEST_F(SetPrinterTest, Level7HasNoDirectoryToPublishIn)
{
    PRINTER_INFO_7W info = {nullptr, DSPRINT_PUBLISH};
    EXPECT_EQ(Set(7, info), DWORD{ERROR_NOT_SUPPORTED});
}

TEST_F(SetPrinterTest, Level8SetsTheDefaultsOfAll)
{
    DEVMODEW devMode = LabelDevMode();
    PRINTER_INFO_8W info = {&devMode};
    EXPECT_EQ(Set(8, info), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Info()->pDevMode->dmCopies, 2);
}

TEST_F(SetPrinterTest, Level9SetsTheUsersOwnDefaultsAndNeedsNoAdministrator)
{
    printer = Open(L"Label", PRINTER_ACCESS_USE);
    DEVMODEW devMode = LabelDevMode();
    PRINTER_INFO_9W info = {&devMode};
    EXPECT_EQ(Set(9, info), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_9W>(printer, 9)->pDevMode->dmCopies, 2);
    EXPECT_EQ(Info()->pDevMode, nullptr);
}

} // namespace
