// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

#include "spooler/SpoolerConstants.h"
#include "support/TemporaryDirectory.h"

#include <ostream>

// The world is saved as a configuration file, from which the same world begins again.

namespace {

std::string Narrow(std::wstring_view text)
{
    std::string narrow;
    for (const wchar_t character : text) {
        if (character >= L' ' && character < 0x7F)
            narrow += static_cast<char>(character);
        else
            narrow += "\\" + std::to_string(static_cast<unsigned>(character)) + ";";
    }
    return narrow;
}

std::string TextOf(const wchar_t* text)
{
    return text ? "'" + Narrow(text) + "'" : "null";
}

std::string HexOf(const void* data, size_t size)
{
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text = data ? "" : "null";
    for (size_t i = 0; data && i < size; ++i) {
        const BYTE byte = static_cast<const BYTE*>(data)[i];
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

std::string DevModeOf(const DEVMODEW* devMode)
{
    return HexOf(devMode, devMode ? size_t{devMode->dmSize} + devMode->dmDriverExtra : 0);
}

std::string DescriptorOf(PSECURITY_DESCRIPTOR descriptor)
{
    return HexOf(descriptor, descriptor ? ::GetSecurityDescriptorLength(descriptor) : 0);
}

/// The fields of a structure in words, one behind the other.
class Fields {
public:
    Fields& operator<<(const wchar_t* text) { return *this << TextOf(text); }
    Fields& operator<<(DWORD number) { return *this << std::to_string(number); }
    Fields& operator<<(const std::string& text)
    {
        _text += text + " ";
        return *this;
    }
    std::string Line() const { return _text + "\n"; }

private:
    std::string _text;
};

/// What a list of texts that ends with two nulls lists.
std::string ListOf(const wchar_t* list)
{
    if (!list) return "null";
    std::string text = "(";
    for (; *list; list += std::wstring_view(list).size() + 1) text += TextOf(list);
    return text + ")";
}

template <typename Info, typename Peek>
SizedRead<Info> ReadByPeek(Peek peek)
{
    return SizedRead<Info>(
        [&](BYTE* buffer, DWORD size, DWORD* needed, DWORD*) { return peek(buffer, size, needed) == ERROR_SUCCESS; });
}

class SavedConfiguration : public SimulatorTest {
protected:
    void Save() { ASSERT_EQ(::SpoolerSaveConfiguration(Path().c_str()), DWORD{ERROR_SUCCESS}); }

    std::wstring Path() const { return folder.Path(L"world.ini"); }

    std::string Saved() const
    {
        std::string text = folder.Contents(L"world.ini");
        return text;
    }

    /// The world ends, and begins again from its file.
    void BeginAgain()
    {
        Save();
        ::SpoolerReset();
        wchar_t message[512] = {};
        ASSERT_EQ(::SpoolerLoadConfig(Path().c_str()), DWORD{ERROR_SUCCESS})
            << (::SpoolerConfigError(message, 512), Narrow(message)) << "\n"
            << Saved();
    }

    /// What there was is there again, and is written as before.
    void ExpectTheSameAgain()
    {
        const std::string before = World();
        BeginAgain();
        EXPECT_EQ(World(), before) << Saved();
        const std::string text = Saved();
        Save();
        EXPECT_EQ(Saved(), text);
    }

    /// All that the print functions tell of the world, apart from printer data.
    static std::string World()
    {
        std::string text = Ports();
        const auto printers = ReadPrinters<PRINTER_INFO_4W>(PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS, 4);
        for (DWORD i = 0; i < printers.count; ++i) text += PrinterText(printers[i].pPrinterName);
        return text;
    }

    static std::string Ports()
    {
        std::string text;
        const auto ports = ReadPorts<PORT_INFO_2W>(2);
        for (DWORD i = 0; i < ports.count; ++i) {
            const PORT_INFO_2W& port = ports[i];
            text += (Fields() << "port" << port.pPortName << port.pMonitorName << port.pDescription << port.fPortType)
                        .Line();
        }
        return text;
    }

    static std::string PrinterText(const wchar_t* name)
    {
        const auto info = ReadByPeek<PRINTER_INFO_2W>(
            [&](BYTE* buffer, DWORD size, DWORD* needed) { return ::SpoolerPeekPrinter(name, buffer, size, needed); });
        Fields fields;
        fields << "printer" << info->pPrinterName << info->pServerName << info->pShareName << info->pPortName
               << info->pDriverName << info->pComment << info->pLocation << info->pSepFile << info->pPrintProcessor
               << info->pDatatype << info->pParameters << info->Attributes << info->Priority << info->DefaultPriority
               << info->StartTime << info->UntilTime << info->Status << info->AveragePPM << info->cJobs
               << DevModeOf(info->pDevMode) << DescriptorOf(info->pSecurityDescriptor);
        const PrinterHandle printer = Open(name, PRINTER_ACCESS_USE);
        if (!printer) return fields.Line() + "may not be used\n";
        const auto timeouts = ReadPrinter<PRINTER_INFO_5W>(printer, 5);
        fields << timeouts->DeviceNotSelectedTimeout << timeouts->TransmissionRetryTimeout;
        const auto user = ReadPrinter<PRINTER_INFO_9W>(printer, 9);
        fields << DevModeOf(user.bytes.empty() ? nullptr : user->pDevMode);
        fields << std::string(Open(name) ? "administered" : "used");
        return fields.Line() + DriverText(printer) + Jobs(printer, name);
    }

    static std::string DriverText(const PrinterHandle& printer)
    {
        const auto info = ReadDriver<DRIVER_INFO_6W>(printer, 6);
        if (info.bytes.empty()) return "no driver\n";
        Fields fields;
        fields << "driver" << info->cVersion << info->pName << info->pEnvironment << info->pDriverPath
               << info->pDataFile << info->pConfigFile << info->pHelpFile << ListOf(info->pDependentFiles)
               << info->pMonitorName << info->pDefaultDataType << ListOf(info->pszzPreviousNames)
               << info->ftDriverDate.dwLowDateTime << info->ftDriverDate.dwHighDateTime
               << std::to_string(info->dwlDriverVersion) << info->pszMfgName << info->pszOEMUrl << info->pszHardwareID
               << info->pszProvider;
        return fields.Line();
    }

    static std::string Jobs(const PrinterHandle& printer, const wchar_t* name)
    {
        std::string text;
        const auto jobs = ReadJobs<JOB_INFO_2W>(printer, 2);
        for (DWORD i = 0; i < jobs.count; ++i) {
            const JOB_INFO_2W& job = jobs[i];
            const auto spooled = SpoolerJobBytes(name, job.JobId);
            Fields fields;
            fields << "job" << job.JobId << job.pPrinterName << job.pMachineName << job.pUserName << job.pDocument
                   << job.pNotifyName << job.pDatatype << job.pPrintProcessor << job.pParameters << job.pDriverName
                   << job.pStatus << job.Status << job.Priority << job.Position << job.StartTime << job.UntilTime
                   << job.TotalPages << job.PagesPrinted << job.Size << job.Time << DevModeOf(job.pDevMode)
                   << HexOf(&job.Submitted, sizeof job.Submitted) << HexOf(spooled.data(), spooled.size())
                   << ReadJob<JOB_INFO_3>(printer, job.JobId, 3)->NextJobId;
            text += fields.Line();
        }
        return text;
    }

    const TemporaryDirectory folder;
};

// Texts

struct TextRow {
    const char* name;
    const wchar_t* text;
    friend std::ostream& operator<<(std::ostream& stream, const TextRow& row) { return stream << row.name; }
};

class SavedText : public SavedConfiguration, public testing::WithParamInterface<TextRow> {};

constexpr TextRow textRows[] = {
    {"Plain",              L"Shipping labels"             },
    {"Empty",              L""                            },
    {"Null",               nullptr                        },
    {"BlanksAround",       L"  4 by 6 inch\t"             },
    {"OneBlank",           L" "                           },
    {"Quotes",             L"\"quoted\" and \"more\""     },
    {"OneQuote",           L"\""                          },
    {"QuoteInside",        L"4\" by 6\""                  },
    {"Semicolons",         L"; not a comment; a;b"        },
    {"CommentSigns",       L"# neither = [this]"          },
    {"LineBreaks",         L"one\r\ntwo\nthree\r"         },
    {"Controls",           L"\x01\x1F\x7F\t."             },
    {"Backslashes",        L"C:\\new\\table\\"            },
    {"NonAscii",           L"Gr\u00F6\u00DFe \u8FD4\u54C1"},
    {"SurrogatePair",      L"\U0001F3F7 label"            },
    {"HighSurrogateAlone", L"\xD83D"                      },
    {"LowSurrogateAlone",  L"x\xDFF7y"                    },
    {"ByteOrderMark",      L"\xFEFFx"                     },
    {"LikeNull",           L"text:null"                   },
    {"LikeAText",          L"text:\"x\\n\""               },
    {"LikeHalfAText",      L"a text:\"b"                  },
    {"LikeData",           L"dword:12"                    },
    {"LikeDataInLines",    L"hex:01\n[printer X]"         },
    {"LikeDataAlone",      L"hex(\xD83D"                  },
    {"LikeANumber",        L"0x10"                        },
    {"LikeASection",       L"[printer X]"                 },
};

TEST_P(SavedText, ComesBackInEveryFieldOfAPrinterAndItsDriverAndPort)
{
    const wchar_t* const text = GetParam().text;
    SpoolerAddPort({.name = L"NET1", .monitorName = text, .description = text});
    SpoolerAddDriver({.name = L"Driver",
                      .environment = text,
                      .driverPath = text,
                      .dataFile = text,
                      .configFile = text,
                      .helpFile = text,
                      .monitorName = text,
                      .defaultDataType = text,
                      .manufacturer = text,
                      .oemUrl = text,
                      .hardwareId = text,
                      .provider = text});
    ASSERT_EQ(SpoolerAddPrinter({.printerName = L"Label",
                                 .serverName = text,
                                 .shareName = text,
                                 .portName = L"NET1",
                                 .driverName = L"Driver",
                                 .comment = text,
                                 .location = text,
                                 .sepFile = text,
                                 .printProcessor = text,
                                 .datatype = text,
                                 .parameters = text}),
              DWORD{ERROR_SUCCESS});
    ExpectTheSameAgain();
}

TEST_P(SavedText, ComesBackInEveryFieldOfAJob)
{
    const wchar_t* const text = GetParam().text;
    SpoolerAddPrinter({.printerName = L"Label", .printProcessor = text, .datatype = text});
    QueueJob(L"Label", {.machineName = text,
                        .userName = text,
                        .document = text,
                        .notifyName = text,
                        .datatype = text,
                        .printProcessor = text,
                        .parameters = text,
                        .statusText = text});
    ExpectTheSameAgain();
}

TEST_P(SavedText, ComesBackAsANameOfPrinterPortDriverUserAndMachine)
{
    const wchar_t* const text = GetParam().text;
    if (!text || !*text) return SUCCEED(); // no name
    SpoolerSetIdentity(text, L"STORE");
    ASSERT_EQ(SpoolerAddPort({.name = text}), DWORD{ERROR_SUCCESS});
    ASSERT_EQ(SpoolerAddDriver({.name = text, .version = 7}), DWORD{ERROR_SUCCESS});
    ASSERT_EQ(SpoolerAddPrinter({.printerName = text, .portName = L"LPT1:", .driverName = text}), DWORD{ERROR_SUCCESS});
    QueueJob(text);
    const std::string before = World();
    BeginAgain();
    EXPECT_EQ(World(), before) << Saved();
    QueueJob(text);
    std::vector<BYTE> buffer(4096);
    DWORD needed = 0;
    ASSERT_EQ(SpoolerPeekJob(text, 2, buffer.data(), 4096, &needed), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(std::wstring(reinterpret_cast<JOB_INFO_2W*>(buffer.data())->pUserName), text);
    EXPECT_EQ(std::wstring(reinterpret_cast<JOB_INFO_2W*>(buffer.data())->pMachineName), L"\\\\STORE");
}

TEST_P(SavedText, ComesBackInListsOfADriver)
{
    if (!GetParam().text || !*GetParam().text) return SUCCEED(); // ends the list
    std::wstring list = L"first.dll";
    list += L'\0';
    list += GetParam().text;
    list += L'\0';
    SpoolerAddDriver({.name = L"Driver", .dependentFiles = list.c_str(), .previousNames = list.c_str()});
    SpoolerAddPrinter({.printerName = L"Label", .driverName = L"Driver"});
    ExpectTheSameAgain();
}

TEST_P(SavedText, ComesBackAsPrinterDataAndAsItsKeyAndName)
{
    const std::wstring text = GetParam().text ? GetParam().text : L"";
    SpoolerAddPrinter({.printerName = L"Label"});
    SpoolerSetTextData(L"Label", L"Gantry", L"Text", text);
    SpoolerSetNumberData(L"Label", text.c_str(), L"Number", 1);
    SpoolerSetNumberData(L"Label", L"Gantry", text.c_str(), 2);
    SpoolerSetNumberData(L"Label", (L"A\\" + text).c_str(), (text + L"\\B").c_str(), 3);
    BeginAgain();
    const auto number = [](const std::wstring& key, const std::wstring& name) {
        DWORD value = 0;
        DWORD needed = 0;
        SpoolerPeekData(L"Label", key.c_str(), name.c_str(), nullptr, &value, sizeof value, &needed);
        return value;
    };
    EXPECT_EQ(number(text, L"Number"), 1u) << Saved();
    EXPECT_EQ(number(L"Gantry", text), 2u) << Saved();
    EXPECT_EQ(number(L"A\\" + text, text + L"\\B"), 3u) << Saved();
    wchar_t read[64] = {};
    DWORD needed = 0;
    EXPECT_EQ(SpoolerPeekData(L"Label", L"Gantry", L"Text", nullptr, read, sizeof read, &needed), 0u) << Saved();
    EXPECT_EQ(std::wstring(read), text);
}

INSTANTIATE_TEST_SUITE_P(Of, SavedText, testing::ValuesIn(textRows),
                         [](const auto& row) { return std::string(row.param.name); });

// Numbers and words

TEST_F(SavedConfiguration, EveryBitOfAWordComesBack)
{
    for (DWORD bit = 1; bit != 0; bit <<= 1) {
        const std::wstring name = L"P" + std::to_wstring(bit);
        SpoolerAddPort({.name = name.c_str(), .type = bit});
        SpoolerAddPrinter({.printerName = name.c_str(),
                           .attributes = PRINTER_ATTRIBUTE_LOCAL | bit,
                           .status = bit,
                           .grantedAccess = PRINTER_ACCESS_USE | bit});
        SpoolerAddJob(name.c_str(), {.status = bit & ~(JOB_STATUS_DELETING | JOB_STATUS_DELETED)}, nullptr);
    }
    SpoolerAddPort({.name = L"All", .type = 0xFFFFFFFF});
    SpoolerAddPort({.name = L"None", .type = 0});
    ExpectTheSameAgain();
}

TEST_F(SavedConfiguration, NumbersOfAPrinterComeBack)
{
    SpoolerAddPrinter({.printerName = L"Label",
                       .attributes = 0,
                       .priority = 99,
                       .defaultPriority = 42,
                       .startTime = 61,
                       .untilTime = 1439,
                       .averagePpm = 0xFFFFFFFF,
                       .deviceNotSelectedTimeout = 1,
                       .transmissionRetryTimeout = 2});
    SpoolerAddPrinter({.printerName = L"Odd", .startTime = 1440, .untilTime = 0xFFFFFFFF});
    ExpectTheSameAgain();
}

TEST_F(SavedConfiguration, RightsComeBack)
{
    SpoolerAddPrinter({.printerName = L"All"});
    SpoolerAddPrinter({.printerName = L"Use", .grantedAccess = PRINTER_EXECUTE});
    SpoolerAddPrinter({.printerName = L"None", .grantedAccess = 0});
    SpoolerSetServerAccess(SERVER_EXECUTE);
    BeginAgain();
    EXPECT_TRUE(Open(L"All"));
    EXPECT_FALSE(Open(L"Use"));
    EXPECT_TRUE(Open(L"Use", PRINTER_ACCESS_USE));
    EXPECT_FALSE(Open(L"None", PRINTER_ACCESS_USE));
    EXPECT_FALSE(OpenServer(SERVER_ACCESS_ADMINISTER));
    EXPECT_TRUE(OpenServer(SERVER_ACCESS_ENUMERATE));
}

TEST_F(SavedConfiguration, NumbersOfADriverComeBack)
{
    SpoolerDriver driver;
    driver.name = L"Driver";
    driver.version = 4;
    driver.driverDate = {0x89ABCDEF, 0x01234567};
    driver.driverVersion = 0xFEDCBA9876543210;
    driver.driverAttributes = 0x12;
    SpoolerAddDriver(driver);
    SpoolerAddDriver({.name = L"Old", .dependentFiles = L"\0", .highestLevel = 3});
    SpoolerAddPrinter({.printerName = L"Label", .driverName = L"Driver"});
    SpoolerAddPrinter({.printerName = L"Second", .driverName = L"Old"});
    ExpectTheSameAgain();
    EXPECT_EQ(ReadDriver<DRIVER_INFO_8W>(Open(L"Label"), 8)->dwPrinterDriverAttributes, 0x12u);
    EXPECT_EQ(ReadDriver<DRIVER_INFO_6W>(Open(L"Second"), 6).error, DWORD{ERROR_INVALID_LEVEL});
}

TEST_F(SavedConfiguration, OrderAndSpellingOfNamesComeBack)
{
    SpoolerAddPort({.name = L"zulu"});
    SpoolerAddPort({.name = L"Alpha"});
    SpoolerAddPrinter({.printerName = L"second", .portName = L"ALPHA, Zulu", .driverName = L"driver"});
    SpoolerAddPrinter({.printerName = L"First", .portName = L"New", .driverName = L"DRIVER"});
    SpoolerAddPrinter({.printerName = L"\\\\HOST\\Far", .attributes = PRINTER_ATTRIBUTE_NETWORK});
    ExpectTheSameAgain();
}

// Device modes and descriptors

DEVMODEW PlainDevModeOf(const wchar_t* printerName)
{
    DEVMODEW devMode = LabelDevMode();
    std::wstring(printerName).copy(devMode.dmDeviceName, CCHDEVICENAME - 1);
    return devMode;
}

TEST_F(SavedConfiguration, DeviceModeOfKnownFieldsIsToldByThem)
{
    DEVMODEW devMode = PlainDevModeOf(L"Label");
    devMode.dmFields |= DM_ORIENTATION | DM_FORMNAME;
    devMode.dmOrientation = DMORIENT_LANDSCAPE;
    std::wstring(L" 4x6; \"wide\"").copy(devMode.dmFormName, CCHFORMNAME - 1);
    SpoolerAddPrinter({.printerName = L"Label", .devMode = &devMode});
    ExpectTheSameAgain();
    EXPECT_THAT(Saved(),
                testing::AllOf(testing::HasSubstr("\npaper width = 1000\n"),
                               testing::HasSubstr("\npaper length = 1500\n"), testing::HasSubstr("\ncopies = 2\n"),
                               testing::HasSubstr("\norientation = landscape\n"),
                               testing::HasSubstr("\nform = text:\" 4x6; \\\"wide\\\"\"\n"),
                               testing::Not(testing::HasSubstr("devmode"))));
}

TEST_F(SavedConfiguration, AnyOtherDeviceModeIsToldByItsBytes)
{
    struct {
        DEVMODEW devMode = PlainDevModeOf(L"Extra");
        char own[5] = {'d', 'r', 'i', 'v', '\0'};
    } extra;
    extra.devMode.dmDriverExtra = sizeof extra.own;
    DEVMODEW negative = PlainDevModeOf(L"Negative");
    negative.dmCopies = -1;
    DEVMODEW other = PlainDevModeOf(L"Other");
    other.dmFields |= DM_COLOR;
    other.dmColor = DMCOLOR_COLOR;
    DEVMODEW foreign = PlainDevModeOf(L"Another name");
    DEVMODEW shorter = PlainDevModeOf(L"Shorter");
    shorter.dmSize = offsetof(DEVMODEW, dmICMMethod);
    SpoolerAddPrinter({.printerName = L"Extra", .devMode = &extra.devMode});
    SpoolerAddPrinter({.printerName = L"Negative", .devMode = &negative});
    SpoolerAddPrinter({.printerName = L"Other", .devMode = &other});
    SpoolerAddPrinter({.printerName = L"Foreign", .devMode = &foreign});
    SpoolerAddPrinter({.printerName = L"Shorter", .devMode = &shorter});
    SpoolerAddPrinter({.printerName = L"None"});
    ExpectTheSameAgain();
}

TEST_F(SavedConfiguration, UsersOwnDeviceModeComesBack)
{
    DEVMODEW devMode = LabelDevMode();
    const PrinterHandle printer = AddAndOpen(L"Label");
    PRINTER_INFO_9W info{&devMode};
    ASSERT_TRUE(::SetPrinterW(printer.Get(), 9, reinterpret_cast<BYTE*>(&info), 0));
    ExpectTheSameAgain();
}

TEST_F(SavedConfiguration, SecurityDescriptorComesBack)
{
    BYTE descriptor[SECURITY_DESCRIPTOR_MIN_LENGTH] = {1, 0, 0x00, 0x80};
    SpoolerAddPrinter({.printerName = L"Label",
                       .securityDescriptor = descriptor,
                       .securityDescriptorBytes = sizeof(SECURITY_DESCRIPTOR_RELATIVE)});
    ExpectTheSameAgain();
}

// Printer data

struct DataRow {
    const char* name;
    DWORD type;
    std::vector<BYTE> bytes;
    const char* written;
    friend std::ostream& operator<<(std::ostream& stream, const DataRow& row) { return stream << row.name; }
};

class SavedData : public SavedConfiguration, public testing::WithParamInterface<DataRow> {};

TEST_P(SavedData, ComesBackWithTypeAndBytes)
{
    const DataRow& row = GetParam();
    SpoolerAddPrinter({.printerName = L"Label"});
    SpoolerSetData(L"Label", L"Gantry", L"Value", row.type, row.bytes.data(), static_cast<DWORD>(row.bytes.size()));
    BeginAgain();
    BYTE read[64] = {};
    DWORD type = 99;
    DWORD needed = 0;
    EXPECT_EQ(SpoolerPeekData(L"Label", L"Gantry", L"Value", &type, read, sizeof read, &needed), 0u);
    EXPECT_EQ(type, row.type);
    EXPECT_EQ(std::vector<BYTE>(read, read + needed), row.bytes);
    EXPECT_THAT(Saved(), testing::HasSubstr(std::string("\ndata Gantry\\Value =") + row.written + "\n"));
}

const DataRow dataRows[] = {
    {"Number",          REG_DWORD,            {1, 2, 0, 0},                 " dword:513"                      },
    {"ShortNumber",     REG_DWORD,            {1, 2},                       " hex(4):01 02"                   },
    {"BigEndianNumber", REG_DWORD_BIG_ENDIAN, {0, 0, 0, 1},                 " hex(5):00 00 00 01"             },
    {"LongNumber",      REG_QWORD,            {1, 0, 0, 0, 0, 0, 0, 0x80},  " hex(11):01 00 00 00 00 00 00 80"},
    {"Bytes",           REG_BINARY,           {0, 0xFF, 0x7F},              " hex:00 FF 7F"                   },
    {"NoBytes",         REG_BINARY,           {},                           " hex:"                           },
    {"Text",            REG_SZ,               {'a', 0, 'b', 0, 0, 0},       " ab"                             },
    {"EmptyText",       REG_SZ,               {0, 0},                       ""                                },
    {"OpenText",        REG_SZ,               {'a', 0},                     " hex(1):61 00"                   },
    {"HalfText",        REG_SZ,               {'a', 0, 0},                  " hex(1):61 00 00"                },
    {"TextWithZero",    REG_SZ,               {'a', 0, 0, 0, 'b', 0, 0, 0}, " hex(1):61 00 00 00 62 00 00 00" },
    {"NoText",          REG_SZ,               {},                           " hex(1):"                        },
    {"ExpandableText",  REG_EXPAND_SZ,        {'%', 0, 0, 0},               " hex(2):25 00 00 00"             },
    {"Texts",           REG_MULTI_SZ,         {'a', 0, 0, 0, 0, 0},         " hex(7):61 00 00 00 00 00"       },
    {"Nothing",         REG_NONE,             {},                           " hex(0):"                        },
    {"TypeOfSomebody",  0x12345678,           {1},                          " hex(305419896):01"              },
};

INSTANTIATE_TEST_SUITE_P(Of, SavedData, testing::ValuesIn(dataRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(SavedConfiguration, KeysAndNamesOfDataKeepTheirCase)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    SpoolerSetNumberData(L"Label", L"GanTry\\SubKey", L"Odometer PAGES", 7);
    SpoolerSetNumberData(L"Label", L"PrinterDriverData", L"VRL Interface", 8);
    BeginAgain();
    Save();
    EXPECT_THAT(Saved(), testing::HasSubstr("\ndata GanTry\\SubKey\\Odometer PAGES = dword:7\n"));
    EXPECT_THAT(Saved(), testing::HasSubstr("\ndata VRL Interface = dword:8\n"));
}

// Capabilities

TEST_F(SavedConfiguration, CapabilitiesComeBack)
{
    const WORD papers[] = {9, 256};
    const POINT sizes[] = {
        {2100, 2970},
        {1000, 1500}
    };
    wchar_t names[2][64] = {L"A4; \"tall\"", L" 5 hex:01"};
    const LONG resolutions[] = {203, 203};
    const wchar_t dirty[64] = {L'A', L'4', L'\0', L'x'};
    SpoolerAddPrinter({.printerName = L"Label"});
    SpoolerSetCapability(L"Label", DC_COPIES, 999, nullptr, 0);
    SpoolerSetCapability(L"Label", DC_DUPLEX, -1, nullptr, 0);
    SpoolerSetCapability(L"Label", DC_PAPERS, 2, papers, sizeof papers);
    SpoolerSetCapability(L"Label", DC_PAPERSIZE, 2, sizes, sizeof sizes);
    SpoolerSetCapability(L"Label", DC_PAPERNAMES, 2, names, sizeof names);
    SpoolerSetCapability(L"Label", DC_ENUMRESOLUTIONS, 1, resolutions, sizeof resolutions);
    SpoolerAddPrinter({.printerName = L"Odd"});
    SpoolerSetCapability(L"Odd", DC_PAPERS, 7, papers, sizeof papers);
    SpoolerSetCapability(L"Odd", DC_PAPERSIZE, 0, nullptr, 0);
    SpoolerSetCapability(L"Odd", DC_PAPERNAMES, 1, dirty, sizeof dirty);
    BeginAgain();

    const auto answer = [](const wchar_t* printer, WORD capability) {
        std::vector<BYTE> output(512);
        const int result =
            ::DeviceCapabilitiesW(printer, L"", capability, reinterpret_cast<wchar_t*>(output.data()), nullptr);
        while (!output.empty() && output.back() == 0) output.pop_back();
        return std::to_string(result) + " " + HexOf(output.data(), output.size());
    };
    const auto wanted = [](int result, const void* bytes, size_t size) {
        while (size > 0 && static_cast<const BYTE*>(bytes)[size - 1] == 0) --size;
        return std::to_string(result) + " " + HexOf(bytes ? bytes : "", size);
    };
    EXPECT_EQ(answer(L"Label", DC_COPIES), wanted(999, "", 0)) << Saved();
    EXPECT_EQ(answer(L"Label", DC_DUPLEX), wanted(-1, "", 0));
    EXPECT_EQ(answer(L"Label", DC_PAPERS), wanted(2, papers, sizeof papers));
    EXPECT_EQ(answer(L"Label", DC_PAPERSIZE), wanted(2, sizes, sizeof sizes));
    EXPECT_EQ(answer(L"Label", DC_PAPERNAMES), wanted(2, names, sizeof names));
    EXPECT_EQ(answer(L"Label", DC_ENUMRESOLUTIONS), wanted(1, resolutions, sizeof resolutions));
    EXPECT_EQ(answer(L"Odd", DC_PAPERS), wanted(7, papers, sizeof papers));
    EXPECT_EQ(answer(L"Odd", DC_PAPERSIZE), wanted(0, "", 0));
    EXPECT_EQ(answer(L"Odd", DC_PAPERNAMES), wanted(1, dirty, sizeof dirty));
    EXPECT_THAT(Saved(), testing::HasSubstr("\ncapability papers = 9; 256\n"));
    EXPECT_THAT(Saved(), testing::HasSubstr("\ncapability paper sizes = 2100 x 2970; 1000 x 1500\n"));
}

// Jobs

class SavedJobs : public SavedConfiguration {
protected:
    void SetUp() override
    {
        SavedConfiguration::SetUp();
        SpoolerAddPrinter({.printerName = L"Label", .pace = SpoolerPace::Stepped});
    }
};

TEST_F(SavedJobs, FieldsOfAJobComeBack)
{
    DEVMODEW devMode = LabelDevMode();
    QueueJob(L"Label", {
                           .jobId = 12,
                           .devMode = &devMode,
                           .status = JOB_STATUS_PAUSED | JOB_STATUS_ERROR,
                           .priority = 98,
                           .startTime = 61,
                           .untilTime = 62,
                           .totalPages = 5,
                           .pagesPrinted = 3,
                           .submitted = {2026, 3, 0, 1, 12, 30, 59, 1},
                           .time = 1234,
                           .bytes = "abc",
                           .byteCount = 3,
                           .reportedSize = 99
    });
    QueueJob(L"Label", {
                           .jobId = 7, .submitted = {2026, 13, 9, 99, 99, 99, 99, 9999}
    });
    ExpectTheSameAgain();
}

TEST_F(SavedJobs, DocumentsComeBackByteForByte)
{
    std::string every;
    for (int byte = 0; byte < 256; ++byte) every += static_cast<char>(byte);
    for (const std::string& document :
         {std::string(), std::string("TEXT 1,1"), std::string(" \"a\"\r\n;b\\ "), std::string("\0", 1), every}) {
        QueueJob(L"Label", {.bytes = document.data(), .byteCount = static_cast<DWORD>(document.size())});
    }
    ExpectTheSameAgain();
}

TEST_F(SavedJobs, NumbersGoOnWhereTheyWere)
{
    QueueJob(L"Label", {.jobId = 12});
    QueueJob(L"Label", {.jobId = 5});
    SpoolerSetNextJobId(8);
    BeginAgain();
    EXPECT_EQ(QueueJob(L"Label"), 8u);
    EXPECT_EQ(QueueJob(L"Label"), 9u);
}

TEST_F(SavedJobs, JobsOfTwoPrintersMayHaveTheSameNumber)
{
    SpoolerAddPrinter({.printerName = L"Other"});
    QueueJob(L"Label", {.jobId = 5});
    QueueJob(L"Other", {.jobId = 5});
    ExpectTheSameAgain();
}

TEST_F(SavedJobs, HalfPrintedJobIsPrintedToItsEnd)
{
    const PrinterHandle printer = Open(L"Label");
    DOC_INFO_1W info = {const_cast<wchar_t*>(L"Labels"), nullptr, nullptr};
    const DWORD jobId = ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    for (int page = 0; page < 3; ++page) {
        char text[] = "page";
        DWORD written = 0;
        ::StartPagePrinter(printer.Get());
        ::WritePrinter(printer.Get(), text, 4, &written);
        ::EndPagePrinter(printer.Get());
    }
    ::EndDocPrinter(printer.Get());
    SpoolerStep(L"Label", 4, nullptr);
    ExpectTheSameAgain();
    DWORD before = 0;
    SpoolerStep(L"Label", 1, nullptr);
    std::vector<BYTE> buffer(4096);
    ASSERT_EQ(SpoolerPeekJob(L"Label", jobId, buffer.data(), 4096, &before), 0u);
    EXPECT_EQ(reinterpret_cast<JOB_INFO_2W*>(buffer.data())->PagesPrinted, 2u);
    SpoolerStep(L"Label", spoolerAllSteps, nullptr);
    ASSERT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
    EXPECT_EQ(AsText(SpoolerDeliveryBytes(L"Label", 0)), "pagepagepage");
}

TEST_F(SavedJobs, EveryStepOfAPrintingPrinterCanBeBegunWithAgain)
{
    SpoolerRemovePrinter(L"Label");
    SpoolerAddPrinter({.printerName = L"Label", .pace = SpoolerPace::Stepped, .trueEndOfJob = true});
    Print(Open(L"Label"), L"Pallet", "x");
    DWORD done = 1;
    int steps = 0;
    while (done) {
        ExpectTheSameAgain();
        SpoolerStep(L"Label", 1, &done);
        steps += static_cast<int>(done);
    }
    EXPECT_GT(steps, 5);
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 0u) << "what was delivered isn't saved";
}

/// A document in the middle of its spooling.
DWORD BeginDocument(const PrinterHandle& printer, std::string bytes)
{
    DOC_INFO_1W info = {const_cast<wchar_t*>(L"Pallet"), nullptr, nullptr};
    const DWORD jobId = ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    DWORD written = 0;
    ::WritePrinter(printer.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written);
    return jobId;
}

TEST_F(SavedJobs, DocumentThatIsBeingSpooledEndsAsIfItsHandleWereClosed)
{
    SpoolerAddPrinter({.printerName = L"Late", .pace = SpoolerPace::Stepped, .lateNames = true});
    const PrinterHandle printer = Open(L"Late");
    BeginDocument(printer, "half");
    BeginAgain();
    SpoolerStep(L"Late", spoolerAllSteps, nullptr);
    ASSERT_EQ(SpoolerDeliveryCount(L"Late"), 1u) << Saved();
    EXPECT_EQ(AsText(SpoolerDeliveryBytes(L"Late", 0)), "half");
    SpoolerDelivery delivery;
    SpoolerDeliveryAt(L"Late", 0, &delivery);
    EXPECT_STREQ(delivery.document, L"Pallet");
}

TEST_F(SavedJobs, DocumentThatIsPrintedWhileItIsBeingSpooledDoesNotBlockThePrinter)
{
    const PrinterHandle printer = Open(L"Label");
    BeginDocument(printer, "half");
    SpoolerStep(L"Label", spoolerAllSteps, nullptr);
    BeginAgain();
    Print(Open(L"Label"), L"Next", "whole");
    SpoolerStep(L"Label", spoolerAllSteps, nullptr);
    ASSERT_EQ(SpoolerDeliveryCount(L"Label"), 2u) << Saved();
    EXPECT_EQ(AsText(SpoolerDeliveryBytes(L"Label", 0)), "half");
    EXPECT_EQ(AsText(SpoolerDeliveryBytes(L"Label", 1)), "whole");
}

TEST_F(SavedJobs, LinksAndRetentionComeBack)
{
    const PrinterHandle printer = Open(L"Label");
    const DWORD first = QueueJob(L"Label", {.bytes = "a", .byteCount = 1});
    QueueJob(L"Label", {.bytes = "b", .byteCount = 1});
    const DWORD third = QueueJob(L"Label", {.bytes = "c", .byteCount = 1});
    JOB_INFO_3 link{first, third, 0};
    ASSERT_TRUE(::SetJobW(printer.Get(), first, 3, reinterpret_cast<BYTE*>(&link), 0));
    ASSERT_TRUE(::SetJobW(printer.Get(), third, 0, nullptr, jobControlRetain));
    ExpectTheSameAgain();
    SpoolerStep(L"Label", spoolerAllSteps, nullptr);
    ASSERT_EQ(SpoolerDeliveryCount(L"Label"), 3u);
    EXPECT_EQ(AsText(SpoolerDeliveryBytes(L"Label", 1)), "c");
    const auto left = ReadJobs<JOB_INFO_1W>(Open(L"Label"), 1);
    ASSERT_EQ(left.count, 1u);
    EXPECT_EQ(left[0].JobId, third);
}

TEST_F(SavedJobs, TroubleAtTheDeviceComesBack)
{
    SpoolerSetTrouble(L"Label", {JOB_STATUS_PAPEROUT, PRINTER_STATUS_PAPER_OUT, L"Out of labels"});
    BeginAgain();
    QueueJob(L"Label", {.bytes = "a", .byteCount = 1});
    SpoolerStep(L"Label", spoolerAllSteps, nullptr);
    const auto jobs = ReadJobs<JOB_INFO_1W>(Open(L"Label"), 1);
    ASSERT_EQ(jobs.count, 1u);
    EXPECT_EQ(Text(jobs[0].pStatus), L"Out of labels");
    EXPECT_TRUE(jobs[0].Status & JOB_STATUS_PAPEROUT);
    SpoolerClearTrouble(L"Label");
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_6>(Open(L"Label"), 6)->dwStatus, 0u);
}

// How a printer prints

TEST_F(SavedConfiguration, PaceAndOutputComeBack)
{
    const std::wstring output = folder.Path(L"printed ; here");
    SpoolerAddPrinter({.printerName = L"Stepped", .pace = SpoolerPace::Stepped, .outputFolder = output.c_str()});
    SpoolerAddPrinter({.printerName = L"Once", .pace = SpoolerPace::AtOnce, .lateNames = true});
    SpoolerAddPrinter({.printerName = L"Resting", .outputFolder = output.c_str()});
    BeginAgain();
    for (const wchar_t* const name : {L"Stepped", L"Once", L"Resting"}) Print(Open(name), L"Pallet", "x");
    EXPECT_EQ(SpoolerDeliveryCount(L"Stepped"), 0u);
    EXPECT_EQ(SpoolerDeliveryCount(L"Once"), 1u);
    EXPECT_EQ(SpoolerDeliveryCount(L"Resting"), 0u);
    SpoolerStep(L"Stepped", spoolerAllSteps, nullptr);
    SpoolerDelivery delivery = {};
    ASSERT_EQ(SpoolerDeliveryAt(L"Stepped", 0, &delivery), 0u);
    EXPECT_EQ(std::wstring(delivery.file).find(output), 0u);
}

TEST_F(SavedConfiguration, RealTimeComesBackWithItsSpeed)
{
    SpoolerAddPrinter({.printerName = L"Label", .pace = SpoolerPace::RealTime, .bytesPerSecond = 5});
    Save();
    EXPECT_THAT(Saved(), testing::HasSubstr("\nspeed = 5\n"));
    EXPECT_THAT(Saved(), testing::HasSubstr("\npace = real time\n"));
}

// The file

TEST_F(SavedConfiguration, EmptyWorldIsSaved)
{
    ExpectTheSameAgain();
}

/// Every section and every key, as it is written; only a recording and a device are missing, which name other files.
constexpr const char* wholeLanguage = R"(; Written by the spooler simulator.

[machine]
user = jane
machine = STORE
access = use
next job = 99

[port NET1]
monitor = Net Monitor
description = a net port
type = write, net

[port LPT1:]

[driver Label Driver]
environment = Windows ARM64
driver path = C:\d\label.dll
data file = C:\d\gnt42.gpd
config file = C:\d\ui.dll
help file = C:\d\label.hlp
monitor = Label Monitor
default data type = TEXT
manufacturer = Gantry
oem url = http://example.com
hardware id = GNT42
provider = Marrowfield
version = 4
attributes = 16
highest level = 7
dependent files = a.dll; b.dll
previous names = Old; text:"Very; old"
date = 0x1DC000000000000
driver version = 0xFFFFFFFF00000001

[driver Generic / Text Only]

[printer Label]
server = \\HOST
share = LBL
port = NET1
driver = Label Driver
comment = of the depot; gate 3
location = text:" hall\n2 "
separator file = sep.txt
print processor = proc
data type = TEXT
parameters = p=1
priority = 9
default priority = 7
start time = 8:05
until time = 1440
average ppm = 30
attributes = shared, local, bidirectional
status = paper out, busy
speed = 1000
not selected timeout = 1
retry timeout = 2
linked job = 12
access = use
paper width = 1000
paper length = 1500
copies = 2
orientation = landscape
form = 4x6
user devmode = hex:00 01
security descriptor = hex:01 00 04 80
pace = stepped
end of job = yes
late names = yes
output = C:\printed
trouble = error, paper out
trouble status = paper out
trouble text = Out of labels
data DsSpooler\description = of the depot; gate 3
data DsSpooler\driverName = Label Driver
data DsSpooler\location = text:" hall\n2 "
data DsSpooler\printerName = Label
data Gantry\Odometer Distance = hex:00 00 00 00 00 00 5E 40
data Gantry\Odometer Pages = dword:2
data VRL Interface = label.dll
data Various\Texts = hex(7):61 00 00 00 00 00
capability papers = 9; 256
capability paper sizes = 2100 x 2970; 1000 x 1500
capability 13 = 1 hex:CB 00 00 00 CB 00 00 00
capability paper names = A4; 4 by 6 inch
capability copies = 999

[printer Other]
devmode = none
pace = resting
data DsSpooler\description =
data DsSpooler\driverName = Generic / Text Only
data DsSpooler\location =
data DsSpooler\printerName = Other

[job Label]
document = Pallet
user = joe
machine = \\GATE3
notify = jim
data type = RAW
print processor = winprint
parameters = q=2
status text = Busy
port = NET1
output file = C:\out.prn
late name = Pallet 2
number = 12
linked job = 13
bytes printed = 2
time = 40
priority = 5
start time = 0:01
until time = 23:59
total pages = 10
pages printed = 3
size = 1000
status = printing, retained
devmode = none
submitted = 2026-03-01 12:30:59.001
stage = sending
retain = yes
page ends = 2; 4; 6
text = abcdef

[job Label]
document =
user = jane
machine = \\STORE
notify = text:null
data type = TEXT
print processor = proc
number = 13
submitted = hex:00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
bytes = hex:00 FF
)";

TEST_F(SavedConfiguration, WholeLanguageIsReadAndWrittenAsItIs)
{
    ASSERT_EQ(::SpoolerLoadConfig(folder.Make(L"language.ini", wholeLanguage).c_str()), DWORD{ERROR_SUCCESS});
    Save();
    EXPECT_EQ(Saved(), wholeLanguage);
}

TEST_F(SavedConfiguration, DemonstrationComesBack)
{
    ASSERT_EQ(SpoolerLoadConfig(SIMULATOR_DEMO_CONFIG), DWORD{ERROR_SUCCESS});
    ExpectTheSameAgain();
}

TEST_F(SavedConfiguration, WhatIsAsUsualIsLeftOut)
{
    SpoolerSetIdentity(L"jane", L"STORE");
    const DEVMODEW devMode = PlainDevModeOf(L"Label");
    SpoolerAddPrinter({.printerName = L"Label", .comment = L"Broad", .devMode = &devMode});
    SpoolerRemoveData(L"Label", L"DsSpooler", L"description");
    Save();
    EXPECT_EQ(Saved(), "; Written by the spooler simulator.\n"
                       "\n[machine]\nuser = jane\nmachine = STORE\nnext job = 1\n"
                       "\n[port LPT1:]\n"
                       "\n[driver Generic / Text Only]\n"
                       "\n[printer Label]\ncomment = Broad\npaper width = 1000\npaper length = 1500\ncopies = 2\n"
                       "pace = resting\n"
                       "data DsSpooler\\driverName = Generic / Text Only\n"
                       "data DsSpooler\\location =\n"
                       "data DsSpooler\\printerName = Label\n");
}

TEST_F(SavedConfiguration, FileOfThatNameIsReplaced)
{
    folder.Make(L"world.ini", std::string(100000, 'x'));
    Save();
    EXPECT_THAT(Saved(), testing::StartsWith("; Written by the spooler simulator.\n"));
    EXPECT_THAT(Saved(), testing::Not(testing::HasSubstr("xxxx")));
}

TEST_F(SavedConfiguration, FileThatCannotBeReplacedStaysAndNothingElseIsLeft)
{
    const std::wstring path = folder.Make(L"world.ini", "old");
    {
        const OFileHandle kept(
            ::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(kept);
        EXPECT_NE(SpoolerSaveConfiguration(path.c_str()), DWORD{ERROR_SUCCESS});
    }
    EXPECT_EQ(Saved(), "old");
    size_t files = 0;
    for ([[maybe_unused]] const auto& file : std::filesystem::directory_iterator(folder.Path())) ++files;
    EXPECT_EQ(files, 1u);
}

TEST_F(SavedConfiguration, PathThatLeadsNowhereGivesItsError)
{
    EXPECT_EQ(SpoolerSaveConfiguration(folder.Path(L"no such folder\\world.ini").c_str()), DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_EQ(SpoolerSaveConfiguration(nullptr), DWORD{ERROR_INVALID_PARAMETER});
}

} // namespace
