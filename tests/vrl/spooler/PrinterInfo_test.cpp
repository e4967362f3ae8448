// SPDX-License-Identifier: MIT
#include "vrl/spooler/PrinterInfo.h"

#include "support/AllocationFailure.h"
#include "support/AssertCatcher.h"
#include "support/MadeUpOSVersion.h"
#include "support/spooler/PrinterInfoTest.h"
#include "vrl/spooler/Spooler.h"

#include <cstring>
#include <optional>
#include <type_traits>

namespace {

constexpr const wchar_t* dataKey = L"PrinterDriverData";
constexpr const wchar_t* directoryKey = L"DsSpooler";

static_assert(std::is_constructible_v<PrinterInfo, HANDLE>);
static_assert(!std::is_constructible_v<PrinterInfo, wchar_t*>, "a text must not pass for a handle");
static_assert(!std::is_constructible_v<PrinterInfo, const wchar_t*>);

using TextGetter = const OString& (PrinterInfo::*)() const noexcept;

struct TextRow {
    const char* name;
    TextGetter get;
    const char* value;
};

/// What a snapshot of `RichPrinter` tells.
const TextRow levelTwoTexts[] = {
    {"GetServerName",     &PrinterInfo::GetServerName,     "STORE"          },
    {"GetPrinterName",    &PrinterInfo::GetPrinterName,    "\\\\STORE\\Rich"},
    {"GetShareName",      &PrinterInfo::GetShareName,      "LABELS"         },
    {"GetPortName",       &PrinterInfo::GetPortName,       "LPT1:"          },
    {"GetDriverName",     &PrinterInfo::GetDriverName,     "Label Driver"   },
    {"GetComment",        &PrinterInfo::GetComment,        "Shipping labels"},
    {"GetLocation",       &PrinterInfo::GetLocation,       "Gate 7"         },
    {"GetSepFile",        &PrinterInfo::GetSepFile,        "C:\\sep.txt"    },
    {"GetPrintProcessor", &PrinterInfo::GetPrintProcessor, "labelproc"      },
    {"GetDatatype",       &PrinterInfo::GetDatatype,       "NT EMF 1.008"   },
    {"GetParameters",     &PrinterInfo::GetParameters,     "darkness=7"     },
    {"GetShortName",      &PrinterInfo::GetShortName,      "Rich"           },
};

const TextRow driverTexts[] = {
    {"GetEnvironment",     &PrinterInfo::GetEnvironment,     "Windows x64"       },
    {"GetDriverDirectory", &PrinterInfo::GetDriverDirectory, "C:\\spool\\drivers"},
    {"GetDriverFile",      &PrinterInfo::GetDriverFile,      "LABELDRV.DLL"      },
    {"GetDataFile",        &PrinterInfo::GetDataFile,        "X7DA2001.DAT"      },
    {"GetConfigFile",      &PrinterInfo::GetConfigFile,      "LABELUI.DLL"       },
    {"GetHelpFile",        &PrinterInfo::GetHelpFile,        "LABEL.HLP"         },
    {"GetMonitorName",     &PrinterInfo::GetMonitorName,     "Label Monitor"     },
    {"GetDefaultDataType", &PrinterInfo::GetDefaultDataType, "TEXT"              },
    {"GetDriverFamily",    &PrinterInfo::GetDriverFamily,    "x7d"               },
    {"GetDriverModel",     &PrinterInfo::GetDriverModel,     "a2"                },
};

const TextRow levelSixTexts[] = {
    {"GetManufacturer", &PrinterInfo::GetManufacturer, "Label Works"},
    {"GetHardwareId",   &PrinterInfo::GetHardwareId,   "LABEL7"     },
    {"GetProvider",     &PrinterInfo::GetProvider,     "Label Group"},
};

template <size_t count>
void ExpectTexts(const PrinterInfo& info, const TextRow (&rows)[count])
{
    for (const TextRow& row : rows) EXPECT_EQ((info.*row.get)(), row.value) << row.name;
}

template <size_t count>
void ExpectEmpty(const PrinterInfo& info, const TextRow (&rows)[count])
{
    for (const TextRow& row : rows) EXPECT_TRUE((info.*row.get)().IsEmpty()) << row.name;
}

void ExpectDriver(const PrinterInfo& info)
{
    ExpectTexts(info, driverTexts);
    EXPECT_EQ(info.GetDriverVersion(), 4u);
    OString files;
    info.GetDependentFiles().Join(files, OString("|"));
    EXPECT_EQ(files, "A.DLL|B.DLL|C.DAT");
}

void ExpectNoDriver(const PrinterInfo& info)
{
    ExpectEmpty(info, driverTexts);
    ExpectEmpty(info, levelSixTexts);
    EXPECT_EQ(info.GetDriverVersion(), 0u);
    EXPECT_TRUE(info.GetDependentFiles().IsEmpty());
}

struct PrivateDevMode {
    DEVMODEW common{};
    BYTE privateBytes[6]{'v', 'r', 'l', 0, 1, 2};
};

PrivateDevMode MakeDevMode(short copies)
{
    PrivateDevMode devMode;
    devMode.common.dmSize = sizeof(DEVMODEW);
    devMode.common.dmDriverExtra = sizeof devMode.privateBytes;
    devMode.common.dmCopies = copies;
    return devMode;
}

class PrinterInfoFieldsTest : public PrinterInfoTest {
protected:
    static constexpr const wchar_t* richName = L"\\\\STORE\\Rich";

    void SetUp() override
    {
        PrinterInfoTest::SetUp();
        AddPrinter(RichPrinter());
        ::SpoolerClearLog();
    }

    SpoolerPrinter RichPrinter() const
    {
        SpoolerPrinter printer = LabelPrinter();
        printer.printerName = richName;
        printer.devMode = &devMode.common;
        printer.sepFile = L"C:\\sep.txt";
        printer.printProcessor = L"labelproc";
        printer.datatype = L"NT EMF 1.008";
        printer.parameters = L"darkness=7";
        printer.attributes = 0x80000848;
        return printer;
    }

    const PrivateDevMode devMode = MakeDevMode(3);
};

// The fields and where they come from.

TEST_F(PrinterInfoFieldsTest, TextsComeFromLevel2AndTheDriver)
{
    const PrinterInfo info = Snapshot(richName);
    ExpectTexts(info, levelTwoTexts);
    ExpectDriver(info);
    ExpectTexts(info, levelSixTexts);
}

TEST_F(PrinterInfoFieldsTest, AttributesAreAllBits)
{
    EXPECT_EQ(Snapshot(richName).GetAttributes(), 0x80000848u);
}

TEST_F(PrinterInfoFieldsTest, DevModeIsACopyWithItsPrivateBytes)
{
    const PrinterInfo info = Snapshot(richName);
    ASSERT_NE(info.GetDevMode(), nullptr);
    EXPECT_EQ(std::memcmp(info.GetDevMode(), &devMode, sizeof(DEVMODEW) + 6), 0);
}

TEST_F(PrinterInfoFieldsTest, StateTellsOfTheRead)
{
    const PrinterInfo info = Snapshot(richName);
    EXPECT_TRUE(info.IsValid());
    EXPECT_TRUE(info.IsRemote());
    EXPECT_FALSE(info.IsTerminalClient());
    EXPECT_EQ(info.GetReadTick(), startTick);
}

TEST_F(PrinterInfoTest, NullTextsAreEmpty)
{
    SpoolerPrinter printer;
    printer.printerName = L"Bare";
    printer.shareName = printer.comment = printer.location = nullptr;
    printer.sepFile = printer.printProcessor = printer.datatype = printer.parameters = nullptr;
    printer.driverName = L"Bare Driver";
    SpoolerDriver driver;
    driver.name = L"Bare Driver";
    driver.version = 0;
    driver.environment = driver.driverPath = driver.dataFile = driver.configFile = driver.defaultDataType = nullptr;
    AddDriver(driver);
    AddPrinter(printer);
    const PrinterInfo info = Snapshot(L"Bare");
    ExpectNoDriver(info);
    EXPECT_TRUE(info.GetShareName().IsEmpty());
    EXPECT_TRUE(info.GetComment().IsEmpty());
    EXPECT_TRUE(info.GetLocation().IsEmpty());
    EXPECT_TRUE(info.GetSepFile().IsEmpty());
    EXPECT_TRUE(info.GetPrintProcessor().IsEmpty());
    EXPECT_TRUE(info.GetDatatype().IsEmpty());
    EXPECT_TRUE(info.GetParameters().IsEmpty());
}

TEST_F(PrinterInfoTest, PrinterWithoutDevModeHasNone)
{
    EXPECT_EQ(Snapshot().GetDevMode(), nullptr);
}

// What a snapshot asks of the spooler.

std::vector<std::pair<SpoolerCall, DWORD>> CallsAndLevels()
{
    std::vector<std::pair<SpoolerCall, DWORD>> calls;
    for (const SpoolerCallRecord& call : SpoolerLog()) calls.emplace_back(call.call, call.level);
    return calls;
}

TEST_F(PrinterInfoTest, LocalPrinterIsAskedInThisOrder)
{
    Snapshot();
    const std::vector<std::pair<SpoolerCall, DWORD>> calls{
        {SpoolerCall::OpenPrinterW,      0},
        {SpoolerCall::GetPrinterW,       2},
        {SpoolerCall::GetPrinterW,       2},
        {SpoolerCall::GetPrinterDataW,   0},
        {SpoolerCall::GetPrinterDriverW, 6},
        {SpoolerCall::GetPrinterDriverW, 6},
        {SpoolerCall::ClosePrinter,      0},
    };
    EXPECT_EQ(CallsAndLevels(), calls);
    EXPECT_EQ(SpoolerLog().front().access, 8u);
}

TEST_F(PrinterInfoFieldsTest, RemotePrinterIsNotAskedForATerminalSession)
{
    Snapshot(richName);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterDataW), 0u);
    EXPECT_EQ(::SpoolerLogLength(), 6u);
}

TEST_F(PrinterInfoTest, RightToUseIsEnough)
{
    ::SpoolerSetGrantedAccess(printerName, PRINTER_ACCESS_USE);
    EXPECT_EQ(Snapshot().GetComment(), "Shipping labels");
}

TEST_F(PrinterInfoTest, DriverIsAskedForWithoutEnvironment)
{
    SpoolerDriver driver = LabelDriver();
    driver.environment = L"Windows NT x86";
    AddDriver(driver);
    EXPECT_EQ(Snapshot().GetEnvironment(), "Windows NT x86");
}

// Failures.

TEST_F(PrinterInfoTest, UnknownPrinterIsAValidSnapshotOfNothing)
{
    const PrinterInfo info = Snapshot(L"No such printer");
    EXPECT_EQ(info.GetPrinterName(), "No such printer");
    EXPECT_TRUE(info.IsValid());
    EXPECT_EQ(info.GetReadTick(), 0u);
    EXPECT_EQ(info.GetAttributes(), 0u);
    EXPECT_EQ(info.GetDevMode(), nullptr);
    EXPECT_FALSE(info.IsRemote());
    EXPECT_FALSE(info.IsTerminalClient());
    EXPECT_TRUE(info.GetServerName().IsEmpty());
    EXPECT_TRUE(info.GetShortName().IsEmpty());
    EXPECT_TRUE(info.GetComment().IsEmpty());
    ExpectNoDriver(info);
    EXPECT_EQ(::SpoolerLogLength(), 1u);
}

struct FailureRow {
    SpoolerEffect effect;
    DWORD nth;
};

constexpr FailureRow failedReads[] = {
    {SpoolerEffect::Fail,         1},
    {SpoolerEffect::SucceedEmpty, 1},
    {SpoolerEffect::Fail,         2},
};

TEST_F(PrinterInfoTest, FailedReadOfLevel2LeavesItsFieldsAndReadsTheDriver)
{
    for (const FailureRow& row : failedReads) {
        PrinterInfoCache::Instance().Clear();
        ::SpoolerClearLog();
        Inject(SpoolerCall::GetPrinterW, 2, row.effect, row.nth);
        const PrinterInfo info = Snapshot();
        EXPECT_EQ(info.GetReadTick(), 0u) << row.nth;
        EXPECT_EQ(info.GetPrinterName(), "Label") << row.nth;
        EXPECT_TRUE(info.GetComment().IsEmpty()) << row.nth;
        EXPECT_EQ(info.GetAttributes(), 0u) << row.nth;
        EXPECT_EQ(info.GetServerName(), ComputerName()) << row.nth;
        EXPECT_EQ(info.GetShortName(), "Label") << row.nth;
        EXPECT_TRUE(info.IsValid()) << row.nth;
        ExpectDriver(info);
        EXPECT_EQ(Reads(), row.nth);
        EXPECT_EQ(::SpoolerOpenHandles(nullptr), 0u) << row.nth;
    }
}

TEST_F(PrinterInfoTest, DriverWithoutLevel6IsReadAtLevel3)
{
    SpoolerDriver driver = LabelDriver();
    driver.highestLevel = 3;
    AddDriver(driver);
    const PrinterInfo info = Snapshot();
    ExpectDriver(info);
    ExpectEmpty(info, levelSixTexts);
    EXPECT_EQ(::SpoolerCalls(SpoolerCall::GetPrinterDriverW, 6, nullptr), 1u);
    EXPECT_EQ(::SpoolerCalls(SpoolerCall::GetPrinterDriverW, 3, nullptr), 2u);
}

TEST_F(PrinterInfoTest, AnswerWithoutSizeAtLevel6LeadsToLevel3)
{
    Inject(SpoolerCall::GetPrinterDriverW, 6, SpoolerEffect::SucceedEmpty);
    const PrinterInfo info = Snapshot();
    ExpectDriver(info);
    ExpectEmpty(info, levelSixTexts);
}

TEST_F(PrinterInfoTest, FailedSecondCallAtLevel6StoresNothingAndStaysThere)
{
    Inject(SpoolerCall::GetPrinterDriverW, 6, SpoolerEffect::Fail, 2);
    ExpectNoDriver(Snapshot());
    EXPECT_EQ(::SpoolerCalls(SpoolerCall::GetPrinterDriverW, 6, nullptr), 2u);
    EXPECT_EQ(::SpoolerCalls(SpoolerCall::GetPrinterDriverW, 3, nullptr), 0u);
}

TEST_F(PrinterInfoTest, DriverWithoutEitherLevelGivesNothing)
{
    SpoolerDriver driver = LabelDriver();
    driver.highestLevel = 2;
    AddDriver(driver);
    ExpectNoDriver(Snapshot());
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterDriverW), 2u);
}

TEST_F(PrinterInfoTest, FailedReadAtLevel3GivesNothing)
{
    SpoolerDriver driver = LabelDriver();
    driver.highestLevel = 3;
    AddDriver(driver);
    for (const FailureRow& row : failedReads) {
        PrinterInfoCache::Instance().Clear();
        ::SpoolerClearLog();
        Inject(SpoolerCall::GetPrinterDriverW, 3, row.effect, row.nth);
        ExpectNoDriver(Snapshot());
        EXPECT_EQ(::SpoolerCalls(SpoolerCall::GetPrinterDriverW, 3, nullptr), row.nth);
    }
}

/// The next allocation after the matching call fails, as long as the object lives.
class AllocationFailureAfter {
public:
    AllocationFailureAfter(SpoolerCall call, DWORD level)
    {
        SpoolerFailure failure;
        failure.call = call;
        failure.level = level;
        failure.effect = SpoolerEffect::Run;
        failure.action = [](void* context) { static_cast<AllocationFailureAfter*>(context)->_failure.emplace(0); };
        failure.context = this;
        ::SpoolerInject(failure);
    }

private:
    std::optional<AllocationFailure> _failure;
};

TEST_F(PrinterInfoTest, DriverThatNoMemoryIsLeftForGivesNothingAndStaysAtItsLevel)
{
    std::optional<AllocationFailureAfter> failure(std::in_place, SpoolerCall::GetPrinterDriverW, 6);
    const PrinterInfo info = Snapshot();
    EXPECT_TRUE(AllocationFailure::Happened());
    failure.reset();
    ExpectNoDriver(info);
    EXPECT_EQ(info.GetComment(), "Shipping labels");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterDriverW), 1u);
}

TEST_F(PrinterInfoTest, PrinterThatNoMemoryIsLeftForIsAFailedRead)
{
    std::optional<AllocationFailureAfter> failure(std::in_place, SpoolerCall::GetPrinterW, 2);
    const PrinterInfo info = Snapshot();
    EXPECT_TRUE(AllocationFailure::Happened());
    failure.reset();
    EXPECT_EQ(info.GetReadTick(), 0u);
    ExpectDriver(info);
}

// Names.

TEST_F(PrinterInfoTest, ServerAndShareComeFromTheServerNameOrTheNetworkPort)
{
    static constexpr struct {
        const wchar_t* serverName;
        const wchar_t* portName;
        const wchar_t* server;
        const wchar_t* share;
    } rows[] = {
        {L"\\\\STORE",   L"LPT1:",           L"STORE",   L"LABELS"},
        {L"STORE",       L"LPT1:",           L"STORE",   L"LABELS"},
        {L"\\\\\\STORE", L"LPT1:",           L"STORE",   L"LABELS"},
        {L"\\\\STORE\\", L"LPT1:",           L"STORE\\", L"LABELS"},
        {L"\\\\",        L"LPT1:",           L"",        L"LABELS"},
        {L"\\\\STORE",   L"\\\\HOST\\LABEL", L"STORE",   L"LABELS"},
        {nullptr,        L"\\\\HOST\\LABEL", L"HOST",    L"LABEL" },
        {L"",            L"\\\\HOST\\LABEL", L"HOST",    L"LABEL" },
        {L"",            L"\\\\HOST\\A\\B",  L"HOST",    L"A\\B"  },
        {L"",            L"\\\\HOST\\",      L"HOST",    L""      },
        {L"",            L"\\\\HOST",        L"HOST",    L""      },
        {L"",            L"\\\\\\LABEL",     L"",        L"LABEL" },
        {L"",            L"\\\\",            L"",        L""      },
    };
    for (const auto& row : rows) {
        const std::wstring name =
            std::wstring(L"On ") + row.portName + L" of " + (row.serverName ? row.serverName : L"none");
        SpoolerPrinter printer = LocalPrinter(name.c_str());
        printer.serverName = row.serverName;
        printer.portName = row.portName;
        AddPrinter(printer);
        const PrinterInfo info = Snapshot(name.c_str());
        EXPECT_EQ(info.GetServerName(), row.server) << name;
        EXPECT_EQ(info.GetShareName(), row.share) << name;
        EXPECT_EQ(info.GetPortName(), row.portName) << name;
        EXPECT_TRUE(info.IsRemote()) << name;
    }
}

TEST_F(PrinterInfoTest, LocalPrinterStandsOnThisComputer)
{
    static constexpr const wchar_t* ports[] = {L"LPT1:", L"\\LPT", L"\\", L"", nullptr, L"A\\\\HOST\\LABEL"};
    for (const wchar_t* const port : ports) {
        const std::wstring name = std::wstring(L"On port ") + (port ? port : L"none");
        SpoolerPrinter printer = LocalPrinter(name.c_str());
        printer.portName = port;
        AddPrinter(printer);
        const PrinterInfo info = Snapshot(name.c_str());
        EXPECT_EQ(info.GetServerName(), ComputerName()) << name;
        EXPECT_EQ(info.GetShareName(), "LABELS") << name;
        EXPECT_FALSE(info.IsRemote()) << name;
    }
}

TEST_F(PrinterInfoTest, ShortNameStandsBehindTheFirstBackslashFromTheThirdCharacterOn)
{
    static constexpr struct {
        const wchar_t* name;
        const wchar_t* shortName;
    } rows[] = {
        {L"\\\\HOST\\LABEL",     L"LABEL"     },
        {L"\\\\HOST\\LABEL\\2",  L"LABEL\\2"  },
        {L"Front Desk",          L"Front Desk"},
        {L"A",                   L"A"         },
        {L"A\\LABEL",            L"A\\LABEL"  },
        {L"\\\\LABEL",           L"\\\\LABEL" },
        {L"AB\\LABEL",           L"LABEL"     },
        {L"AB\\",                L""          },
        {L"\x30E9\x30D9\\LABEL", L"LABEL"     },
    };
    for (const auto& row : rows) {
        AddPrinter(LocalPrinter(row.name));
        EXPECT_EQ(Snapshot(row.name).GetShortName(), row.shortName) << row.name;
    }
}

TEST_F(PrinterInfoTest, FamilyAndModelAreTheFirstFiveCharactersOfTheDataFileInLowerCase)
{
    static constexpr struct {
        const wchar_t* dataFile;
        const wchar_t* file;
        const wchar_t* family;
        const wchar_t* model;
    } rows[] = {
        {L"C:\\X7DA2001.DAT",  L"X7DA2001.DAT",      L"x7d",          L"a2"   },
        {L"X7DA2",             L"X7DA2",             L"x7d",          L"a2"   },
        {L"X7DA",              L"X7DA",              L"x7d",          L"a"    },
        {L"X7D",               L"X7D",               L"x7d",          L""     },
        {L"C:\\LONG\\X7",      L"X7",                L"x7",           L""     },
        {L"X.DAT",             L"X.DAT",             L"x.d",          L"at"   },
        {L"C:\\LONG\\",        L"",                  L"",             L""     },
        {L"",                  L"",                  L"",             L""     },
        {L"\xC4\xD6\xDC\xC9Y", L"\xC4\xD6\xDC\xC9Y", L"\xE4\xF6\xFC", L"\xE9y"},
    };
    for (const auto& row : rows) {
        PrinterInfoCache::Instance().Clear();
        SpoolerDriver driver = LabelDriver();
        driver.dataFile = row.dataFile;
        AddDriver(driver);
        const PrinterInfo info = Snapshot();
        EXPECT_EQ(info.GetDataFile(), row.file) << row.dataFile;
        EXPECT_EQ(info.GetDriverFamily(), row.family) << row.dataFile;
        EXPECT_EQ(info.GetDriverModel(), row.model) << row.dataFile;
    }
}

TEST_F(PrinterInfoTest, DriverPathWithoutBackslashHasNoDirectory)
{
    SpoolerDriver driver = LabelDriver();
    driver.driverPath = L"LABELDRV.DLL";
    AddDriver(driver);
    const PrinterInfo info = Snapshot();
    EXPECT_TRUE(info.GetDriverDirectory().IsEmpty());
    EXPECT_EQ(info.GetDriverFile(), "LABELDRV.DLL");
}

TEST_F(PrinterInfoTest, DriverMayDependOnNothing)
{
    SpoolerDriver driver = LabelDriver();
    driver.dependentFiles = L"\0";
    AddDriver(driver);
    EXPECT_TRUE(Snapshot().GetDependentFiles().IsEmpty());
}

// Printers of terminal clients.

TEST_F(PrinterInfoTest, TerminalClientsPrinterStandsOnTheClient)
{
    SpoolerSetNumberData(printerName, dataKey, L"TSSessionID", 3);
    SpoolerSetTextData(printerName, dataKey, L"ClientName", L"CLIENT7");
    SpoolerSetTextData(printerName, dataKey, L"PrinterName", L"Desk");
    const PrinterInfo info = Snapshot();
    EXPECT_TRUE(info.IsTerminalClient());
    EXPECT_TRUE(info.IsRemote());
    EXPECT_EQ(info.GetServerName(), "CLIENT7");
    EXPECT_EQ(info.GetShortName(), "Desk");
    EXPECT_EQ(info.GetPrinterName(), "Label");
    ExpectDriver(info);
}

TEST_F(PrinterInfoTest, TerminalClientWithoutNamesLeavesThemEmpty)
{
    const MadeUpOSVersion version(6, 1);
    SpoolerSetNumberData(printerName, dataKey, L"TSSessionID", 3);
    const PrinterInfo info = Snapshot();
    EXPECT_TRUE(info.IsTerminalClient());
    EXPECT_TRUE(info.IsRemote());
    EXPECT_TRUE(info.GetServerName().IsEmpty());
    EXPECT_TRUE(info.GetShortName().IsEmpty());
}

TEST_F(PrinterInfoTest, TerminalClientOfVersion50IsNamedByItsQueue)
{
    const MadeUpOSVersion version(5, 0);
    constexpr const wchar_t* queue = L"Desk/CLIENT7/Session 3";
    AddPrinter(LocalPrinter(queue));
    SpoolerSetNumberData(queue, dataKey, L"TSSessionID", 3);
    const PrinterInfo info = Snapshot(queue);
    EXPECT_EQ(info.GetServerName(), "CLIENT7");
    EXPECT_EQ(info.GetShortName(), "Desk");
}

TEST_F(PrinterInfoFieldsTest, RemotePrinterIsNoTerminalClient)
{
    SpoolerSetNumberData(richName, dataKey, L"TSSessionID", 3);
    EXPECT_FALSE(Snapshot(richName).IsTerminalClient());
}

TEST_F(PrinterInfoTest, TerminalClientsPrinterBecomesALocalOne)
{
    SpoolerSetNumberData(printerName, dataKey, L"TSSessionID", 3);
    EXPECT_TRUE(Snapshot().IsTerminalClient());
    ::SpoolerRemoveData(printerName, dataKey, L"TSSessionID");
    LetEntriesGrowOld();
    const PrinterInfo info = Snapshot();
    EXPECT_FALSE(info.IsTerminalClient());
    EXPECT_FALSE(info.IsRemote());
    EXPECT_EQ(info.GetServerName(), ComputerName());
}

// Copies.

void ExpectOwnTexts(const PrinterInfo& copy, const PrinterInfo& original)
{
    const auto expectOwn = [&](const auto& rows) {
        for (const TextRow& row : rows) {
            const OString& text = (copy.*row.get)();
            EXPECT_NE(text.Core(), (original.*row.get)().Core()) << row.name;
            EXPECT_EQ(text.Core()->reference_count, 1) << row.name;
        }
    };
    expectOwn(levelTwoTexts);
    expectOwn(driverTexts);
    expectOwn(levelSixTexts);
    ASSERT_EQ(copy.GetDependentFiles().GetSize(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NE(copy.GetDependentFiles().GetAt(i).Core(), original.GetDependentFiles().GetAt(i).Core()) << i;
        EXPECT_EQ(copy.GetDependentFiles().GetAt(i).Core()->reference_count, 1) << i;
    }
}

void ExpectEqualButApart(const PrinterInfo& copy, const PrinterInfo& original)
{
    ExpectTexts(copy, levelTwoTexts);
    ExpectDriver(copy);
    ExpectTexts(copy, levelSixTexts);
    ExpectOwnTexts(copy, original);
    EXPECT_EQ(copy.GetAttributes(), original.GetAttributes());
    EXPECT_EQ(copy.IsRemote(), original.IsRemote());
    EXPECT_EQ(copy.IsValid(), original.IsValid());
    EXPECT_EQ(copy.GetReadTick(), original.GetReadTick());
    ASSERT_NE(copy.GetDevMode(), nullptr);
    EXPECT_NE(copy.GetDevMode(), original.GetDevMode());
    EXPECT_EQ(std::memcmp(copy.GetDevMode(), original.GetDevMode(), sizeof(DEVMODEW) + 6), 0);
}

TEST_F(PrinterInfoFieldsTest, CopyIsWholeAndSharesNothing)
{
    const PrinterInfo original = Snapshot(richName);
    const PrinterInfo copy(original);
    ExpectEqualButApart(copy, original);
}

TEST_F(PrinterInfoFieldsTest, AssignmentIsWholeAndSharesNothing)
{
    const PrinterInfo original = Snapshot(richName);
    PrinterInfo copy = Snapshot();
    copy = original;
    ExpectEqualButApart(copy, original);
}

TEST_F(PrinterInfoTest, AssignmentTakesOverWhatIsEmptyToo)
{
    SpoolerSetNumberData(printerName, dataKey, L"TSSessionID", 3);
    PrinterInfo copy = Snapshot();
    copy = Snapshot(L"No such printer");
    EXPECT_EQ(copy.GetPrinterName(), "No such printer");
    EXPECT_FALSE(copy.IsRemote());
    EXPECT_FALSE(copy.IsTerminalClient());
    EXPECT_TRUE(copy.GetComment().IsEmpty());
    EXPECT_EQ(copy.GetReadTick(), 0u);
    ExpectNoDriver(copy);
}

TEST_F(PrinterInfoTest, AssignmentKeepsTheMarkOfATerminalClient)
{
    PrinterInfo copy = Snapshot(L"No such printer");
    SpoolerSetNumberData(printerName, dataKey, L"TSSessionID", 3);
    copy = Snapshot();
    EXPECT_TRUE(copy.IsTerminalClient());
}

TEST_F(PrinterInfoFieldsTest, AssignmentToItselfChangesNothing)
{
    PrinterInfo info = Snapshot(richName);
    const PrinterInfo before(info);
    const PrinterInfo& same = info;
    info = same;
    ExpectEqualButApart(info, before);
}

TEST_F(PrinterInfoFieldsTest, SnapshotsShareNothingWithEachOtherOrTheCache)
{
    const PrinterInfo first = Snapshot(richName);
    const PrinterInfo second = Snapshot(richName);
    ExpectEqualButApart(second, first);
    ExpectEqualButApart(first, second);
}

TEST_F(PrinterInfoTest, SnapshotOfAnUnknownPrinterSharesNothingWithTheCache)
{
    const PrinterInfo info = Snapshot(L"A name that no other test asks for"); // its key is made now
    EXPECT_EQ(info.GetPrinterName().Core()->reference_count, 1);
}

TEST_F(PrinterInfoFieldsTest, SnapshotLeavesTheGivenNameAlone)
{
    const OString name(richName);
    const PrinterInfo info(name);
    EXPECT_EQ(name.Core()->reference_count, 1);
    EXPECT_NE(info.GetPrinterName().Core(), name.Core());
}

// Setting the device mode.

class PrinterInfoSetDevModeTest : public PrinterInfoTest {
protected:
    void SetUp() override
    {
        PrinterInfoTest::SetUp();
        ::SpoolerSetPrinterDevMode(printerName, &oldMode.common);
        newMode.common.dmDriverExtra = 4;
    }

    static short CopiesInTheSpooler()
    {
        std::vector<BYTE> buffer;
        const PRINTER_INFO_2W& printer = Peek(buffer);
        return printer.pDevMode ? printer.pDevMode->dmCopies : short{0};
    }

    /// Copies in the snapshot's device mode; 0 if it has none.
    static short CopiesIn(const PrinterInfo& info)
    {
        return info.GetDevMode() ? info.GetDevMode()->dmCopies : short{0};
    }

    const PrivateDevMode oldMode = MakeDevMode(1);
    PrivateDevMode newMode = MakeDevMode(7);
};

TEST_F(PrinterInfoSetDevModeTest, WritesThePrinterAndTheSnapshot)
{
    PrinterInfo info = Snapshot();
    EXPECT_TRUE(info.SetDevMode(newMode.common));
    EXPECT_EQ(CopiesInTheSpooler(), 7);
    ASSERT_EQ(CopiesIn(info), 7);
    EXPECT_NE(info.GetDevMode(), &newMode.common);
    EXPECT_EQ(info.GetDevMode()->dmDriverExtra, 4);
    EXPECT_EQ(std::memcmp(info.GetDevMode(), &newMode, sizeof(DEVMODEW) + 4), 0);
}

TEST_F(PrinterInfoSetDevModeTest, LeavesTheOtherFieldsOfThePrinter)
{
    PrinterInfo info = Snapshot();
    EXPECT_TRUE(info.SetDevMode(newMode.common));
    std::vector<BYTE> buffer;
    const PRINTER_INFO_2W& printer = Peek(buffer);
    EXPECT_STREQ(printer.pPrinterName, L"Label");
    EXPECT_STREQ(printer.pComment, L"Shipping labels");
    EXPECT_STREQ(printer.pPortName, L"LPT1:");
    EXPECT_EQ(printer.Attributes, DWORD{PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_SHARED});
    EXPECT_EQ(printer.DefaultPriority, 7u);
}

TEST_F(PrinterInfoSetDevModeTest, OpensWithAllAccessReadsLevel2AndWritesIt)
{
    PrinterInfo info = Snapshot();
    ::SpoolerClearLog();
    EXPECT_TRUE(info.SetDevMode(newMode.common));
    const std::vector<std::pair<SpoolerCall, DWORD>> calls{
        {SpoolerCall::OpenPrinterW, 0},
        {SpoolerCall::GetPrinterW,  2},
        {SpoolerCall::GetPrinterW,  2},
        {SpoolerCall::SetPrinterW,  2},
        {SpoolerCall::ClosePrinter, 0},
    };
    EXPECT_EQ(CallsAndLevels(), calls);
    EXPECT_EQ(SpoolerLog()[0].access, 0xF000Cu);
    EXPECT_EQ(SpoolerLog()[3].command, 0u);
}

TEST_F(PrinterInfoSetDevModeTest, PrinterThatCanNotBeAdministeredIsLeftAlone)
{
    ::SpoolerSetGrantedAccess(printerName, PRINTER_ACCESS_USE);
    PrinterInfo info = Snapshot();
    ::SpoolerClearLog();
    EXPECT_FALSE(info.SetDevMode(newMode.common));
    EXPECT_EQ(::SpoolerLogLength(), 1u);
    EXPECT_EQ(CopiesInTheSpooler(), 1);
    EXPECT_EQ(CopiesIn(info), 1);
}

TEST_F(PrinterInfoSetDevModeTest, PrinterThatCanNotBeReadIsLeftAlone)
{
    for (const FailureRow& row : failedReads) {
        PrinterInfo info = Snapshot();
        Inject(SpoolerCall::GetPrinterW, 2, row.effect, row.nth);
        EXPECT_FALSE(info.SetDevMode(newMode.common)) << row.nth;
        EXPECT_EQ(CopiesIn(info), 1) << row.nth;
        EXPECT_EQ(::SpoolerOpenHandles(nullptr), 0u) << row.nth;
    }
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterW), 0u);
}

TEST_F(PrinterInfoSetDevModeTest, RefusedDevModeStaysInTheSnapshot)
{
    PrinterInfo info = Snapshot();
    Inject(SpoolerCall::SetPrinterW, 2, SpoolerEffect::Fail);
    EXPECT_FALSE(info.SetDevMode(newMode.common));
    EXPECT_EQ(CopiesInTheSpooler(), 1);
    EXPECT_EQ(CopiesIn(info), 7);
}

TEST_F(PrinterInfoSetDevModeTest, SnapshotWithoutDevModeStaysWithout)
{
    ::SpoolerSetPrinterDevMode(printerName, nullptr);
    PrinterInfo info = Snapshot();
    EXPECT_TRUE(info.SetDevMode(newMode.common));
    EXPECT_EQ(CopiesInTheSpooler(), 7);
    EXPECT_EQ(info.GetDevMode(), nullptr);
}

TEST_F(PrinterInfoSetDevModeTest, OtherSnapshotsLearnOfItWithTheNextRead)
{
    PrinterInfo info = Snapshot();
    const PrinterInfo earlier(info);
    EXPECT_TRUE(info.SetDevMode(newMode.common));
    EXPECT_EQ(CopiesIn(earlier), 1);
    EXPECT_EQ(CopiesIn(Snapshot()), 1);
    LetEntriesGrowOld();
    EXPECT_EQ(CopiesIn(Snapshot()), 7);
}

// From a handle.

class PrinterInfoNetworkNameTest : public PrinterInfoTest {
protected:
    void SetUp() override
    {
        PrinterInfoTest::SetUp();
        handle.Reset(OpenPrinterWithAccess(printerName, PRINTER_ACCESS_USE));
        ASSERT_TRUE(handle);
        ::SpoolerClearLog();
    }

    void TearDown() override
    {
        handle.Reset();
        PrinterInfoTest::TearDown();
    }

    static void Publish(const std::wstring& server, const std::wstring& printer)
    {
        SpoolerSetTextData(printerName, directoryKey, L"shortServerName", server);
        SpoolerSetTextData(printerName, directoryKey, L"printerName", printer);
    }

    OString NetworkName() const { return PrinterInfo::GetNetworkPrinterName(handle.Get()); }

    OPrinterHandle handle;
};

TEST_F(PrinterInfoNetworkNameTest, UnpublishedPrinterHasItsOwnName)
{
    EXPECT_EQ(NetworkName(), "Label");
    EXPECT_EQ(::SpoolerCalls(SpoolerCall::GetPrinterW, 4, nullptr), 2u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterDataExW), 1u);
    EXPECT_EQ(::SpoolerLogLength(), 3u);
}

TEST_F(PrinterInfoNetworkNameTest, PublishedPrinterIsReachedThroughItsServer)
{
    Publish(L"SERVER", L"Shown Name");
    EXPECT_EQ(NetworkName(), "\\\\SERVER\\Shown Name");
    const std::vector<SpoolerCallRecord> log = SpoolerLog();
    ASSERT_EQ(log.size(), 4u);
    EXPECT_STREQ(log[2].valueKey, L"DsSpooler");
    EXPECT_STREQ(log[2].valueName, L"shortServerName");
    EXPECT_EQ(log[2].bytes, 520u);
    EXPECT_STREQ(log[3].valueKey, L"DsSpooler");
    EXPECT_STREQ(log[3].valueName, L"printerName");
    EXPECT_EQ(log[3].bytes, 520u);
}

TEST_F(PrinterInfoNetworkNameTest, PrinterPublishedByThisComputerHasItsOwnName)
{
    OString upper = ComputerName();
    OString lower = ComputerName();
    upper.MakeUpper();
    lower.MakeLower();
    for (const OString& name : {upper, lower}) {
        Publish(name.wstring(), L"Shown Name");
        EXPECT_EQ(NetworkName(), "Label") << name.nstring();
    }
}

TEST_F(PrinterInfoNetworkNameTest, ServerOrPrinterNameThatCanNotBeReadGivesTheOwnName)
{
    static constexpr struct {
        const wchar_t* value;
        std::wstring_view text;
        DWORD bytes;
        const wchar_t* name;
    } rows[] = {
        {L"shortServerName", {L"\0", 1},   2, L"Label"        },
        {L"shortServerName", {L"S\0", 2},  3, L"\\\\S\\Shown" },
        {L"shortServerName", {L"\0\0", 2}, 4, L"\\\\\\Shown"  },
        {L"shortServerName", {L"", 0},     0, L"Label"        },
        {L"printerName",     {L"\0", 1},   2, L"Label"        },
        {L"printerName",     {L"P\0", 2},  3, L"\\\\SERVER\\P"},
        {L"printerName",     {L"\0\0", 2}, 4, L"\\\\SERVER\\" },
        {L"printerName",     {L"", 0},     0, L"Label"        },
    };
    for (const auto& row : rows) {
        Publish(L"SERVER", L"Shown");
        ::SpoolerSetData(printerName, directoryKey, row.value, REG_SZ, row.text.data(), row.bytes);
        EXPECT_EQ(NetworkName(), row.name) << row.value << ' ' << row.bytes;
    }
}

TEST_F(PrinterInfoNetworkNameTest, MissingValueGivesTheOwnName)
{
    static constexpr const wchar_t* rows[] = {L"shortServerName", L"printerName"};
    for (const wchar_t* const value : rows) {
        Publish(L"SERVER", L"Shown");
        ::SpoolerRemoveData(printerName, directoryKey, value);
        EXPECT_EQ(NetworkName(), "Label") << value;
    }
}

TEST_F(PrinterInfoNetworkNameTest, ValuesEndAt520Bytes)
{
    Publish(L"SERVER", std::wstring(259, L'p'));
    EXPECT_EQ(NetworkName(), (L"\\\\SERVER\\" + std::wstring(259, L'p')).c_str());
    Publish(L"SERVER", std::wstring(260, L'p'));
    EXPECT_EQ(NetworkName(), "Label");
}

TEST_F(PrinterInfoNetworkNameTest, ValueStoredWithoutTerminatorEndsWithItsBytes)
{
    Publish(L"SERVER", L"Shown");
    const std::wstring name(260, L'p');
    ::SpoolerSetData(printerName, directoryKey, L"printerName", REG_SZ, name.data(), 520);
    EXPECT_EQ(NetworkName(), (L"\\\\SERVER\\" + name).c_str());
}

TEST_F(PrinterInfoNetworkNameTest, UnreadablePrinterHasNone)
{
    Publish(L"SERVER", L"Shown");
    for (const FailureRow& row : failedReads) {
        Inject(SpoolerCall::GetPrinterW, 4, row.effect, row.nth);
        EXPECT_TRUE(NetworkName().IsEmpty()) << row.nth;
    }
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterDataExW), 0u);
}

TEST_F(PrinterInfoNetworkNameTest, NullHandleIsAnInternalFailure)
{
    EXPECT_EQ(BrokenAssert([] { PrinterInfo::GetNetworkPrinterName(nullptr); }),
              "PrinterInfo::GetNetworkPrinterName ASSERT(hPrinter)");
}

TEST_F(PrinterInfoNetworkNameTest, SnapshotOfAHandleIsTheOneOfItsNetworkName)
{
    Publish(L"SERVER", L"Shown");
    SpoolerPrinter shown = LabelPrinter();
    shown.printerName = L"\\\\SERVER\\Shown";
    shown.comment = L"The one over there";
    AddPrinter(shown);
    const PrinterInfo info(handle.Get());
    EXPECT_EQ(info.GetPrinterName(), "\\\\SERVER\\Shown");
    EXPECT_EQ(info.GetComment(), "The one over there");
}

TEST_F(PrinterInfoNetworkNameTest, SnapshotOfAHandleLeavesItOpen)
{
    EXPECT_EQ(PrinterInfo(handle.Get()).GetComment(), "Shipping labels");
    EXPECT_EQ(::SpoolerOpenHandles(printerName), 1u);
}

TEST_F(PrinterInfoNetworkNameTest, SnapshotOfAHandleWithoutNameIsAnInternalFailure)
{
    Inject(SpoolerCall::GetPrinterW, 4, SpoolerEffect::Fail);
    EXPECT_EQ(BrokenAssert([&] { const PrinterInfo info(handle.Get()); }),
              "PrinterInfo::PrinterInfo ASSERT(!_piPrinterName.IsEmpty())");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 0u);
}

} // namespace
