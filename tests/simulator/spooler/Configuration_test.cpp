// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

#include <filesystem>
#include <fstream>

namespace {

constexpr wchar_t variable[] = L"VORLANE_SPOOLER_CONFIG";
constexpr wchar_t saveVariable[] = L"VORLANE_SPOOLER_SAVE";

class ConfigurationTest : public SimulatorTest {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        folder = std::filesystem::temp_directory_path() / "vorlane_configuration_test";
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        path = (folder / "spooler.ini").wstring();
    }

    void TearDown() override
    {
        std::filesystem::remove_all(folder);
        SimulatorTest::TearDown();
    }

    DWORD Load(const std::string& text)
    {
        std::ofstream(std::filesystem::path(path), std::ios::binary) << text;
        return SpoolerLoadConfig(path.c_str());
    }

    static std::wstring Message()
    {
        wchar_t text[512] = {};
        SpoolerConfigError(text, 512);
        return text;
    }

    std::filesystem::path folder;
    std::wstring path;
};

TEST_F(ConfigurationTest, DescribesAPrinterWithAllItsFields)
{
    ASSERT_EQ(Load("[printer Label]\n"
                   "server = \\\\HOST\n"
                   "share = LBL\n"
                   "port = NET1\n"
                   "driver = Label Driver\n"
                   "comment = of the depot; gate 3\n"
                   "location = \"  hall \"\n"
                   "separator file = sep.txt\n"
                   "print processor = proc\n"
                   "data type = TEXT\n"
                   "parameters = p=1\n"
                   "attributes = local, shared, bidirectional\n"
                   "status = paper out, busy\n"
                   "priority = 9\n"
                   "default priority = 7\n"
                   "start time = 8:30\n"
                   "until time = 1020\n"
                   "average ppm = 30\n"
                   "paper width = 1000\n"
                   "paper length = 1500\n"
                   "copies = 2\n"
                   "orientation = landscape\n"
                   "form = 4x6\n"),
              DWORD{ERROR_SUCCESS});
    const auto info = ReadPrinter<PRINTER_INFO_2W>(Open(L"Label"), 2);
    EXPECT_EQ(Text(info->pServerName), L"\\\\HOST");
    EXPECT_EQ(Text(info->pPrinterName), L"Label");
    EXPECT_EQ(Text(info->pShareName), L"LBL");
    EXPECT_EQ(Text(info->pPortName), L"NET1");
    EXPECT_EQ(Text(info->pDriverName), L"Label Driver");
    EXPECT_EQ(Text(info->pComment), L"of the depot; gate 3");
    EXPECT_EQ(Text(info->pLocation), L"  hall ");
    EXPECT_EQ(Text(info->pSepFile), L"sep.txt");
    EXPECT_EQ(Text(info->pPrintProcessor), L"proc");
    EXPECT_EQ(Text(info->pDatatype), L"TEXT");
    EXPECT_EQ(Text(info->pParameters), L"p=1");
    EXPECT_EQ(info->Attributes,
              DWORD{PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_SHARED | PRINTER_ATTRIBUTE_ENABLE_BIDI});
    EXPECT_EQ(info->Status, DWORD{PRINTER_STATUS_PAPER_OUT | PRINTER_STATUS_BUSY});
    EXPECT_EQ(info->Priority, 9u);
    EXPECT_EQ(info->DefaultPriority, 7u);
    EXPECT_EQ(info->StartTime, 510u);
    EXPECT_EQ(info->UntilTime, 1020u);
    EXPECT_EQ(info->AveragePPM, 30u);
    EXPECT_EQ(info->pDevMode->dmPaperWidth, 1000);
    EXPECT_EQ(info->pDevMode->dmPaperLength, 1500);
    EXPECT_EQ(info->pDevMode->dmCopies, 2);
    EXPECT_EQ(info->pDevMode->dmOrientation, DMORIENT_LANDSCAPE);
    EXPECT_EQ(Text(info->pDevMode->dmFormName), L"4x6");
    EXPECT_EQ(info->pDevMode->dmFields,
              DWORD{DM_PAPERWIDTH | DM_PAPERLENGTH | DM_COPIES | DM_ORIENTATION | DM_FORMNAME});
    EXPECT_EQ(Text(info->pDevMode->dmDeviceName), L"Label");
}

TEST_F(ConfigurationTest, TellsWhoMayAdministerTheServer)
{
    ASSERT_EQ(Load("[machine]\naccess = use\n"), DWORD{ERROR_SUCCESS});
    EXPECT_FALSE(OpenServer(SERVER_ACCESS_ADMINISTER));
    EXPECT_TRUE(OpenServer(SERVER_ACCESS_ENUMERATE));
    ASSERT_EQ(Load("[machine]\nuser = jane\n"), DWORD{ERROR_SUCCESS});
    EXPECT_FALSE(OpenServer(SERVER_ACCESS_ADMINISTER)) << "what a file doesn't tell stays as it was";
    SpoolerReset();
    EXPECT_TRUE(OpenServer(SERVER_ACCESS_ADMINISTER));
}

TEST_F(ConfigurationTest, DescribesDriversAndPorts)
{
    ASSERT_EQ(Load("[driver Label Driver]\n"
                   "version = 4\n"
                   "environment = Windows x64\n"
                   "driver path = C:\\d\\label.dll\n"
                   "data file = C:\\d\\gnt42.gpd\n"
                   "config file = C:\\d\\ui.dll\n"
                   "help file = C:\\d\\label.hlp\n"
                   "dependent files = a.dll; b.dll\n"
                   "previous names = Old\n"
                   "monitor = Label Monitor\n"
                   "default data type = RAW\n"
                   "manufacturer = Gantry\n"
                   "hardware id = GNT42\n"
                   "provider = Marrowfield\n"
                   "oem url = http://example.com\n"
                   "attributes = 0x10\n"
                   "[port NET1]\n"
                   "monitor = Net Monitor\n"
                   "description = a net port\n"
                   "type = write, net\n"
                   "[printer Label]\n"
                   "port = NET1\n"
                   "driver = Label Driver\n"),
              DWORD{ERROR_SUCCESS});
    const auto driver = ReadDriver<DRIVER_INFO_6W>(Open(L"Label"), 6);
    EXPECT_EQ(driver->cVersion, 4u);
    EXPECT_EQ(Text(driver->pDataFile), L"C:\\d\\gnt42.gpd");
    EXPECT_EQ(std::wstring(driver->pDependentFiles, 13), std::wstring(L"a.dll\0b.dll\0\0", 13));
    EXPECT_EQ(Text(driver->pMonitorName), L"Label Monitor");
    EXPECT_EQ(Text(driver->pszHardwareID), L"GNT42");
    const auto ports = ReadPorts<PORT_INFO_2W>(2);
    ASSERT_EQ(ports.count, 1u);
    EXPECT_EQ(Text(ports->pMonitorName), L"Net Monitor");
    EXPECT_EQ(ports->fPortType, DWORD{PORT_TYPE_WRITE | PORT_TYPE_NET_ATTACHED});
}

TEST_F(ConfigurationTest, ADriversHighestLevelIsKept)
{
    ASSERT_EQ(Load("[driver D]\nhighest level = 3\n[printer Label]\ndriver = D\n"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ReadDriver<DRIVER_INFO_6W>(Open(L"Label"), 6).error, DWORD{ERROR_INVALID_LEVEL});
}

TEST_F(ConfigurationTest, DescribesPrinterDataAndCapabilities)
{
    ASSERT_EQ(Load("[printer Label]\n"
                   "data VRL Interface = label.dll\n"
                   "data Gantry\\Odometer Pages = dword:0x10\n"
                   "data A\\B\\Raw = hex:01 fF\n"
                   "capability copies = 999\n"
                   "capability 30 = 1\n"),
              DWORD{ERROR_SUCCESS});
    BYTE data[32] = {};
    DWORD needed = 0;
    DWORD type = 0;
    EXPECT_EQ(SpoolerPeekData(L"Label", L"PrinterDriverData", L"VRL Interface", &type, data, sizeof data, &needed),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Text(reinterpret_cast<wchar_t*>(data)), L"label.dll");
    EXPECT_EQ(type, DWORD{REG_SZ});
    EXPECT_EQ(SpoolerPeekData(L"Label", L"Gantry", L"Odometer Pages", &type, data, sizeof data, &needed),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(type, DWORD{REG_DWORD});
    EXPECT_EQ(data[0], 16);
    EXPECT_EQ(SpoolerPeekData(L"Label", L"A\\B", L"Raw", &type, data, sizeof data, &needed), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(type, DWORD{REG_BINARY});
    EXPECT_EQ(needed, 2u);
    EXPECT_EQ(data[1], 0xFF);
    EXPECT_EQ(::DeviceCapabilitiesW(L"Label", L"", DC_COPIES, nullptr, nullptr), 999);
    EXPECT_EQ(::DeviceCapabilitiesW(L"Label", L"", DC_STAPLE, nullptr, nullptr), 1);
}

TEST_F(ConfigurationTest, NoDeviceModeIsWrittenInAnyCase)
{
    ASSERT_EQ(Load("[printer Label]\ndevmode = None\n"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(ReadPrinter<PRINTER_INFO_2W>(Open(L"Label"), 2)->pDevMode, nullptr);
}

TEST_F(ConfigurationTest, DescribesPapersAsArrays)
{
    const std::string longName(70, 'n');
    ASSERT_EQ(Load(("[printer Label]\n"
                    "capability papers = 9; 256\n"
                    "capability paper sizes = 2100 x 2970; 1000x1500\n"
                    "capability paper names = A4; 4 by 6 inch; " +
                    longName + "\n")
                       .c_str()),
              DWORD{ERROR_SUCCESS});

    WORD papers[2] = {};
    EXPECT_EQ(::DeviceCapabilitiesW(L"Label", L"", DC_PAPERS, nullptr, nullptr), 2);
    EXPECT_EQ(::DeviceCapabilitiesW(L"Label", L"", DC_PAPERS, reinterpret_cast<wchar_t*>(papers), nullptr), 2);
    EXPECT_THAT(papers, ::testing::ElementsAre(9, 256));

    POINT sizes[2] = {};
    EXPECT_EQ(::DeviceCapabilitiesW(L"Label", L"", DC_PAPERSIZE, reinterpret_cast<wchar_t*>(sizes), nullptr), 2);
    EXPECT_EQ(sizes[0].x, 2100);
    EXPECT_EQ(sizes[0].y, 2970);
    EXPECT_EQ(sizes[1].x, 1000);
    EXPECT_EQ(sizes[1].y, 1500);

    wchar_t names[3][64] = {};
    EXPECT_EQ(::DeviceCapabilitiesW(L"Label", L"", DC_PAPERNAMES, names[0], nullptr), 3);
    EXPECT_EQ(Text(names[0]), L"A4");
    EXPECT_EQ(Text(names[1]), L"4 by 6 inch");
    EXPECT_EQ(std::wstring(names[2], 64), std::wstring(64, L'n'));
}

TEST_F(ConfigurationTest, ValuesForTheDirectoryStayAsTheFileTellsThem)
{
    ASSERT_EQ(Load("[printer Label]\nlocation = Hall\ndata DsSpooler\\location = Gate 3\n"), DWORD{ERROR_SUCCESS});
    wchar_t text[16] = {};
    DWORD needed = 0;
    EXPECT_EQ(SpoolerPeekData(L"Label", L"DsSpooler", L"location", nullptr, text, sizeof text, &needed),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Text(text), L"Gate 3");
}

TEST_F(ConfigurationTest, DescribesJobsAndTheMachine)
{
    std::ofstream(folder / "label.lbl", std::ios::binary) << "TEXT 1,1";
    ASSERT_EQ(Load("[machine]\n"
                   "user = jane\n"
                   "machine = DEPOT\n"
                   "[printer Label]\n"
                   "[job Label]\n"
                   "document = Pallet\n"
                   "status = printing\n"
                   "status text = Busy\n"
                   "total pages = 10\n"
                   "pages printed = 3\n"
                   "priority = 5\n"
                   "file = label.lbl\n"
                   "[job Label]\n"
                   "user = joe\n"
                   "machine = \\\\GATE3\n"
                   "notify = jim\n"
                   "text = abc\n"
                   "size = 1000\n"),
              DWORD{ERROR_SUCCESS});
    const auto jobs = ReadJobs<JOB_INFO_2W>(Open(L"Label"), 2);
    ASSERT_EQ(jobs.count, 2u);
    EXPECT_EQ(Text(jobs[0].pDocument), L"Pallet");
    EXPECT_EQ(Text(jobs[0].pUserName), L"jane");
    EXPECT_EQ(Text(jobs[0].pMachineName), L"\\\\DEPOT");
    EXPECT_EQ(Text(jobs[0].pStatus), L"Busy");
    EXPECT_EQ(jobs[0].Status, DWORD{JOB_STATUS_PRINTING});
    EXPECT_EQ(jobs[0].TotalPages, 10u);
    EXPECT_EQ(jobs[0].PagesPrinted, 3u);
    EXPECT_EQ(jobs[0].Priority, 5u);
    EXPECT_EQ(AsText(SpoolerJobBytes(L"Label", jobs[0].JobId)), "TEXT 1,1");
    EXPECT_EQ(Text(jobs[1].pUserName), L"joe");
    EXPECT_EQ(Text(jobs[1].pMachineName), L"\\\\GATE3");
    EXPECT_EQ(Text(jobs[1].pNotifyName), L"jim");
    EXPECT_EQ(jobs[1].Size, 1000u);
    EXPECT_EQ(AsText(SpoolerJobBytes(L"Label", jobs[1].JobId)), "abc");
}

TEST_F(ConfigurationTest, AnOutputFolderIsTakenFromTheFilesOwnAndDeliversAtOnce)
{
    ASSERT_EQ(Load("[printer Label]\noutput = printed\n"), DWORD{ERROR_SUCCESS});
    Print(Open(L"Label"), L"Pallet", "x");
    SpoolerDelivery delivery = {};
    ASSERT_EQ(SpoolerDeliveryAt(L"Label", 0, &delivery), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(std::filesystem::path(delivery.file).parent_path().wstring(), (folder / "printed").wstring());
}

TEST_F(ConfigurationTest, DeliverySaysWhetherJobsRest)
{
    ASSERT_EQ(Load("[printer Resting]\noutput = printed\npace = resting\n[printer Bare]\npace = at once\n"),
              DWORD{ERROR_SUCCESS});
    Print(Open(L"Resting"), L"1", "x");
    Print(Open(L"Bare"), L"1", "x");
    EXPECT_EQ(SpoolerDeliveryCount(L"Resting"), 0u);
    EXPECT_EQ(SpoolerDeliveryCount(L"Bare"), 1u);
}

TEST_F(ConfigurationTest, AccessSaysWhatTheUserMayDo)
{
    ASSERT_EQ(Load("[printer Use]\naccess = use\n[printer None]\naccess = none\n[printer All]\naccess = all\n"),
              DWORD{ERROR_SUCCESS});
    EXPECT_FALSE(Open(L"Use"));
    EXPECT_TRUE(Open(L"Use", PRINTER_ACCESS_USE));
    EXPECT_FALSE(Open(L"None", PRINTER_ACCESS_USE));
    EXPECT_TRUE(Open(L"All"));
}

TEST_F(ConfigurationTest, TextsCanBeWrittenWithEscapesOrBeNull)
{
    ASSERT_EQ(Load("[printer text:\" La\\u00E4bel\"]\n"
                   "comment = text:\"one\\ntwo \\\"three\\\"\"\n"
                   "location = text:null\n"
                   "share = \"text:null\"\n"
                   "data Gan\\Name = \"dword:1\"\n"
                   "data text:\"A=B\"\\text:\"C\\\\D\" = dword:2\n"),
              DWORD{ERROR_SUCCESS})
        << std::filesystem::path(Message()).string();
    const auto info = ReadPrinter<PRINTER_INFO_2W>(Open(L" La\u00E4bel"), 2);
    EXPECT_EQ(Text(info->pComment), L"one\ntwo \"three\"");
    EXPECT_EQ(info->pLocation, nullptr);
    EXPECT_EQ(Text(info->pShareName), L"text:null");
    wchar_t text[16] = {};
    DWORD number = 0;
    DWORD needed = 0;
    EXPECT_EQ(SpoolerPeekData(L" La\u00E4bel", L"Gan", L"Name", nullptr, text, sizeof text, &needed), 0u);
    EXPECT_EQ(Text(text), L"dword:1");
    EXPECT_EQ(SpoolerPeekData(L" La\u00E4bel", L"A=B", L"C\\D", nullptr, &number, sizeof number, &needed), 0u);
    EXPECT_EQ(number, 2u);
}

TEST_F(ConfigurationTest, JobsWithoutANumberGetHigherOnesThanThoseWithOne)
{
    ASSERT_EQ(Load("[printer Label]\n[job Label]\n[job Label]\nnumber = 1\n[job Label]\nnumber = 7\n[job Label]\n"),
              DWORD{ERROR_SUCCESS});
    const auto jobs = ReadJobs<JOB_INFO_1W>(Open(L"Label"), 1);
    ASSERT_EQ(jobs.count, 4u);
    EXPECT_EQ(jobs[0].JobId, 8u);
    EXPECT_EQ(jobs[1].JobId, 1u);
    EXPECT_EQ(jobs[2].JobId, 7u);
    EXPECT_EQ(jobs[3].JobId, 9u);
}

TEST_F(ConfigurationTest, CommentsBlankLinesAMarkAndEitherLineEndAreTaken)
{
    ASSERT_EQ(Load("\xEF\xBB\xBF; a comment\r\n\r\n# another\r\n[PRINTER  L\xC3\xA4"
                   "bel ]\r\n  Comment  =  x  \r\n"),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Text(ReadPrinter<PRINTER_INFO_2W>(Open(L"L\u00E4bel"), 2)->pComment), L"x");
}

TEST_F(ConfigurationTest, AnEmptyFileDescribesNothing)
{
    EXPECT_EQ(Load(""), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Message(), L"");
}

TEST_F(ConfigurationTest, MalformedFilesAreToldWithTheirLine)
{
    static const struct {
        const char* text;
        size_t line;
        const wchar_t* message;
    } rows[] = {
        {"comment = x\n",                                                       1, L"an entry before the first section"            },
        {"[printer Label\n",                                                    1, L"the section's \"]\" is missing"               },
        {"\n[printer Label]\ncomment\n",                                        3, L"neither a section nor \"key = value\""        },
        {"[plotter Label]\n",                                                   1, L"unknown section [plotter]"                    },
        {"[]\n",                                                                1, L"unknown section []"                           },
        {"[printer]\n",                                                         1, L"a section [printer] wants a name"             },
        {"[machine X]\n",                                                       1, L"a section [machine] takes no name"            },
        {"[port P]\ncolour = x\n",                                              2, L"unknown key \"colour\" in a section [port]"   },
        {"[driver D]\ncolour = x\n",                                            2, L"unknown key \"colour\" in a section [driver]" },
        {"[machine]\ncolour = x\n",                                             2, L"unknown key \"colour\" in a section [machine]"},
        {"[printer Label]\n[printer LABEL]\n",                                  2, L"there is a printer \"LABEL\" already"         },
        {"[job Label]\n",                                                       1, L"there is no printer \"Label\""                },
        {"[printer Label]\n[job Label]\ncolour = x\n",                          3, L"unknown key \"colour\" in a section [job]"    },
        {"[printer Label]\n[job Label]\nfile = none\n",                         3, L"the job's file can't be read"                 },
        {"[printer text:\"x]\n",                                                1, L"the section's name is malformed"              },
        {"[printer text:\"x\" y]\n",                                            1, L"the section's name is malformed"              },
        {"[printer Label]\n[job Label]\nstage = late\n",                        3, L"unknown stage \"late\""                       },
        {"[printer Label]\n[job Label]\nsubmitted = noon\n",                    3, L"\"submitted\" wants \"hex:\""                 },
        {"[printer Label]\n[job Label]\nsubmitted = hex:01\n",                  3, L"\"submitted\" wants a date"                   },
        {"[printer Label]\n[job Label]\nbytes = 01\n",                          3, L"\"bytes\" wants \"hex:\""                     },
        {"[printer Label]\n[job Label]\ntext = text:null\n",                    3, L"\"text\" wants a text, not \"text:null\""     },
        {"[printer Label]\n[job Label]\npage ends = 1; x\n",                    3, L"\"page ends\" wants a number, not \"x\""      },
        {"[printer Label]\n[job Label]\nnumber = 5\n[job Label]\nnumber = 5\n", 4, L"there is a job 5 already"                     },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Load(row.text), DWORD{ERROR_BAD_CONFIGURATION}) << row.text;
        EXPECT_EQ(Message(), path + L"(" + std::to_wstring(row.line) + L"): " + row.message) << row.text;
        EXPECT_FALSE(Open(L"Label")) << row.text;
    }
}

TEST_F(ConfigurationTest, DescribesHowAPrinterPrints)
{
    ASSERT_EQ(Load("[printer Resting]\n"
                   "[printer Stepped]\n"
                   "pace = stepped\n"
                   "end of job = yes\n"
                   "late names = yes\n"
                   "attributes = local, queued\n"
                   "[printer Quick]\n"
                   "pace = at once\n"
                   "[printer Real]\n"
                   "speed = 1000000\n"
                   "[printer Also Real]\n"
                   "pace = Real Time\n"),
              DWORD{ERROR_SUCCESS});
    for (const wchar_t* const name : {L"Resting", L"Stepped", L"Quick", L"Real", L"Also Real"})
        Print(Open(name), L"Pallet", "x");
    EXPECT_EQ(SpoolerDeliveryCount(L"Resting"), 0u);
    EXPECT_EQ(SpoolerDeliveryCount(L"Quick"), 1u);
    for (const wchar_t* const name : {L"Real", L"Also Real"}) {
        EXPECT_EQ(SpoolerWaitUntilIdle(name, 60000), DWORD{ERROR_SUCCESS});
        EXPECT_EQ(SpoolerDeliveryCount(name), 1u);
    }
    EXPECT_EQ(SpoolerStep(L"Stepped", 4, nullptr), DWORD{ERROR_SUCCESS});
    EXPECT_EQ((ReadJobs<JOB_INFO_1W>(Open(L"Stepped"), 1)->Status), 0x3010u);
    DOC_INFO_1W info = {const_cast<wchar_t*>(L"Pallet"), nullptr, nullptr};
    const PrinterHandle late = Open(L"Stepped");
    const DWORD jobId = ::StartDocPrinterW(late.Get(), 1, reinterpret_cast<BYTE*>(&info));
    EXPECT_EQ(Text(ReadJob<JOB_INFO_1W>(late, jobId, 1)->pDocument), L"Local Downlevel Document");
}

TEST_F(ConfigurationTest, WrongEntriesOfAPrinterAreToldWithTheirLine)
{
    static const struct {
        std::string entry;
        const wchar_t* message;
    } rows[] = {
        {"capability papers = A4",             L"\"capability papers\" wants a number, not \"A4\""                          },
        {"capability papers = 65536",          L"there is no such paper: 65536"                                             },
        {"capability paper sizes = 5",         L"a paper size is written as 1000 x 1500, not 5"                             },
        {"capability paper sizes = 1 x 2 x 3", L"a paper size is written as 1000 x 1500, not 1 x 2 x 3"                     },
        {"capability paper sizes = a x b",     L"\"capability paper sizes\" wants a number, not \"a\""                      },
        {"colour = x",                         L"unknown key \"colour\" in a section [printer]"                             },
        {"comment = \"x",                      L"the closing quote is missing"                                              },
        {"comment = \"",                       L"the closing quote is missing"                                              },
        {"priority = high",                    L"\"priority\" wants a number, not \"high\""                                 },
        {"priority = -1",                      L"\"priority\" wants a number, not \"-1\""                                   },
        {"priority = 0x",                      L"\"priority\" wants a number, not \"0x\""                                   },
        {"priority = 4294967296",              L"\"priority\" wants a number, not \"4294967296\""                           },
        {"priority =",                         L"\"priority\" wants a number, not \"\""                                     },
        {"copies = 32768",                     L"\"copies\" is too large"                                                   },
        {"start time = 24:00",                 L"\"start time\" wants a time of day, not \"24:00\""                         },
        {"start time = 8:60",                  L"\"start time\" wants a time of day, not \"8:60\""                          },
        {"status = paper out, tired",          L"unknown word \"tired\" for \"status\""                                     },
        {"status = paper out, 0",              L"unknown word \"0\" for \"status\""                                         },
        {"pace = quick",                       L"unknown pace \"quick\""                                                    },
        {"late names = x",                     L"\"late names\" wants yes or no, not \"x\""                                 },
        {"output =",                           L"\"output\" wants a path, not \"\""                                         },
        {"data V = dword:x",                   L"\"data v\" wants a number after \"dword:\", not \"dword:x\""               },
        {"comment = text:\"x",                 L"\"comment\" wants one text in quotes after \"text:\", not \"text:\"x\""    },
        {"comment = text:\"x\" y",             L"\"comment\" wants one text in quotes after \"text:\", not \"text:\"x\" y\""},
        {"comment = text:\"\\q\"",             L"\"comment\" wants one text in quotes after \"text:\", not \"text:\"\\q\"\""},
        {"output = text:null",                 L"\"output\" wants a text, not \"text:null\""                                },
        {"form = text:null",                   L"\"form\" wants a text, not \"text:null\""                                  },
        {"devmode = all",                      L"\"devmode\" wants \"hex:\""                                                },
        {"security descriptor = none",         L"\"security descriptor\" wants \"hex:\""                                    },
        {"data text:\"V\" x = 1",              L"the name in \"data text:\"v\" x\" is malformed"                            },
        {"data V = text:null",                 L"\"data v\" wants a text, not \"text:null\""                                },
        {"data V = hex(x):00",                 L"\"data v\" wants the number of a type in \"hex(...)\", not \"hex(x):00\""  },
        {"capability 13 = x hex:00",           L"\"capability 13\" wants a number, not \"x\""                               },
        {"capability 13 = 1 hex:0g",           L"\"capability 13\" wants bytes in hexadecimal, not \"1 hex:0g\""            },
        {"data V = hex:123",                   L"\"data v\" wants bytes in hexadecimal, not \"hex:123\""                    },
        {"capability juggling = 1",            L"unknown word \"juggling\" for \"capability juggling\""                     },
        {"capability 65536 = 1",               L"there is no such capability"                                               },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Load("[printer Label]\n" + row.entry + "\n"), DWORD{ERROR_BAD_CONFIGURATION}) << row.entry;
        EXPECT_EQ(Message(), path + L"(2): " + row.message) << row.entry;
        EXPECT_FALSE(Open(L"Label")) << row.entry;
    }
}

TEST_F(ConfigurationTest, AFileThatIsNotUtf8IsTold)
{
    EXPECT_EQ(Load("[printer L\xE4"
                   "bel]\n"),
              DWORD{ERROR_BAD_CONFIGURATION});
    EXPECT_EQ(Message(), path + L": the file is not a text in UTF-8");
}

TEST_F(ConfigurationTest, AMalformedFileLeavesTheWorldAsItWas)
{
    SpoolerAddPrinter({.printerName = L"Before"});
    EXPECT_EQ(Load("[machine]\nuser = x\n[port NET9]\n[printer Label]\n[printer Before]\n"),
              DWORD{ERROR_BAD_CONFIGURATION});
    EXPECT_EQ(ReadPrinters<PRINTER_INFO_1W>(PRINTER_ENUM_LOCAL, 1).count, 1u);
    EXPECT_EQ(ReadPorts<PORT_INFO_1W>(1).count, 1u);
}

TEST_F(ConfigurationTest, AMissingFileGivesItsError)
{
    EXPECT_EQ(SpoolerLoadConfig((folder / "none.ini").c_str()), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_NE(Message().find(L"none.ini"), std::wstring::npos);
    EXPECT_EQ(SpoolerLoadConfig(nullptr), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(ConfigurationTest, AGoodFileTakesTheLastMessageAway)
{
    Load("[plotter]\n");
    Load("");
    EXPECT_EQ(SpoolerConfigError(nullptr, 0), 0u);
}

TEST_F(ConfigurationTest, TheDemonstrationFileIsGood)
{
    EXPECT_EQ(SpoolerLoadConfig(SIMULATOR_DEMO_CONFIG), DWORD{ERROR_SUCCESS}) << Message();
    EXPECT_GE(ReadPrinters<PRINTER_INFO_1W>(PRINTER_ENUM_LOCAL, 1).count, 2u);
}

/// The environment is read once in a process, so each case runs in a process of its own.
class ConfigurationEnvironmentTest : public ConfigurationTest {
protected:
    /// Runs the probe under that configuration and gives what it wrote to either output.
    std::string Probe(const char* text, const wchar_t* arguments = L"")
    {
        std::ofstream(std::filesystem::path(path), std::ios::binary) << text;
        return Probe(arguments);
    }

    /// The same under the configuration that is there.
    std::string Probe(const wchar_t* arguments)
    {
        ::SetEnvironmentVariableW(variable, path.c_str());
        const std::string output = Run(L"simulator_probe.exe " + std::wstring(arguments));
        ::SetEnvironmentVariableW(variable, nullptr);
        return output;
    }

private:
    static std::string Run(std::wstring command)
    {
        SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
        HANDLE readEnd = nullptr;
        HANDLE writeEnd = nullptr;
        ::CreatePipe(&readEnd, &writeEnd, &inherited, 0);
        const OFileHandle reader(readEnd);
        OFileHandle writer(writeEnd);
        ::SetHandleInformation(reader.Get(), HANDLE_FLAG_INHERIT, 0);

        STARTUPINFOW startup = {};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = startup.hStdError = writer.Get();
        PROCESS_INFORMATION process = {};
        if (!::CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process))
            return "the probe did not start";
        const OWaitHandle thread(process.hThread);
        const OWaitHandle child(process.hProcess);
        writer.Reset();
        return ReadToEnd(reader.Get());
    }

    static std::string ReadToEnd(HANDLE reader)
    {
        std::string output;
        char buffer[256];
        DWORD read = 0;
        while (::ReadFile(reader, buffer, sizeof buffer, &read, nullptr) && read > 0) output.append(buffer, read);
        std::erase(output, '\r');
        return output;
    }
};

TEST_F(ConfigurationEnvironmentTest, TheFileThatTheEnvironmentNamesIsReadOnFirstUse)
{
    EXPECT_EQ(Probe("[printer First]\n[printer Second]\n"), "First\nSecond\n");
}

TEST_F(ConfigurationEnvironmentTest, AMalformedFileIsReportedOnceAndFailsEveryCallUntilAReset)
{
    const std::string name = std::filesystem::path(path).string();
    EXPECT_EQ(Probe("[plotter]\n", L"reset"),
              "spooler simulator: " + name + "(1): unknown section [plotter]\nerror 1610\nerror 1610\n");
}

TEST_F(ConfigurationEnvironmentTest, WhatTheFileDescribesDoesNotComeBackBehindAReset)
{
    EXPECT_EQ(Probe("[printer First]\n", L"reset"), "First\n");
}

TEST_F(ConfigurationEnvironmentTest, AMissingFileFailsTheCallsWithItsError)
{
    path = (folder / "no such folder" / "spooler.ini").wstring();
    EXPECT_THAT(Probe(""), ::testing::EndsWith("error 3\nerror 3\n"));
}

/// The world is kept in a file while the process runs.
class KeptWorldTest : public ConfigurationEnvironmentTest {
protected:
    void SetUp() override
    {
        ConfigurationEnvironmentTest::SetUp();
        KeepIn(folder / "kept.ini");
    }

    void TearDown() override
    {
        ::SetEnvironmentVariableW(saveVariable, nullptr);
        ConfigurationEnvironmentTest::TearDown();
    }

    static void KeepIn(const std::filesystem::path& file)
    {
        ::SetEnvironmentVariableW(saveVariable, file.wstring().c_str());
    }

    std::string Kept() const
    {
        std::ifstream file(folder / "kept.ini", std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void LoadKept() { ASSERT_EQ(SpoolerLoadConfig((folder / "kept.ini").c_str()), DWORD{ERROR_SUCCESS}) << Kept(); }
};

TEST_F(KeptWorldTest, GoesOnInTheNextProcessEvenIfTheLastWasKilled)
{
    EXPECT_EQ(Probe("[printer First]\n", L"count"), "First\n1\n");
    path = (folder / "kept.ini").wstring();
    EXPECT_EQ(Probe(L"count"), "First\n2\n");
    EXPECT_EQ(Probe(L"count"), "First\n3\n");
    EXPECT_THAT(Kept(), ::testing::HasSubstr("\ndata Gantry\\Odometer Pages = dword:3\n"));
}

TEST_F(KeptWorldTest, IsKeptFromTheFirstCallOn)
{
    EXPECT_EQ(Probe("[printer First]\n[printer Second]\n"), "First\nSecond\n");
    LoadKept();
    EXPECT_EQ(ReadPrinters<PRINTER_INFO_1W>(PRINTER_ENUM_LOCAL, 1).count, 2u);
}

TEST_F(KeptWorldTest, FollowsAPrinterOfRealTimeToTheEndOfItsJob)
{
    EXPECT_EQ(Probe("[printer First]\npace = real time\n", L"print"), "First\nprinted\n");
    LoadKept();
    EXPECT_EQ(ReadJobs<JOB_INFO_1W>(Open(L"First"), 1).count, 0u);
    EXPECT_THAT(Kept(), ::testing::HasSubstr("\nnext job = 2\n"));
}

TEST_F(KeptWorldTest, FollowsWhatHappensByItself)
{
    EXPECT_EQ(Probe("[printer First]\npace = real time\n", L"leave"), "First\nleft\n");
}

TEST_F(KeptWorldTest, IsNotWrittenOverByAWorldThatCouldNotBeRead)
{
    std::ofstream(folder / "kept.ini") << "old";
    Probe("[plotter]\n", L"rename");
    EXPECT_EQ(Kept(), "old");
}

TEST_F(KeptWorldTest, IsNoLongerKeptAfterAReset)
{
    Probe("[printer First]\n", L"reset");
    EXPECT_THAT(Kept(), ::testing::HasSubstr("\n[printer First]\n"));
}

TEST_F(KeptWorldTest, FileThatCannotBeWrittenIsReportedOnceAndDisturbsNoCall)
{
    const std::filesystem::path file = folder / "no such folder" / "kept.ini";
    KeepIn(file);
    EXPECT_EQ(Probe("[printer First]\n", L"count"),
              "spooler simulator: " + file.string() + ": the world can't be saved, error 3\nFirst\n1\n");
}

TEST_F(ConfigurationEnvironmentTest, APrinterOfRealTimeNeedsNobodyToDriveIt)
{
    EXPECT_EQ(Probe("[printer First]\npace = real time\n", L"print"), "First\nprinted\n");
}

} // namespace
