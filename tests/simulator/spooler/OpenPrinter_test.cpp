// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

#include <span>

namespace {

using OpenPrinterTest = SimulatorTest;

constexpr DWORD manageLimited = 0x40;

TEST_F(OpenPrinterTest, OpensAPrinterByItsNameInAnyCase)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    EXPECT_TRUE(Open(L"LABEL"));
}

TEST_F(OpenPrinterTest, UnknownNamesFailWithInvalidPrinterName)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    SpoolerSetIdentity(nullptr, L"DEPOT");
    for (const wchar_t* name :
         {L"Nobody", L"", L"\\\\OTHER\\Label", L"\\\\OTHER", L"\\\\", L"\\\\DEPOT\\Nobody", L"Nobody, Job 1"}) {
        EXPECT_FALSE(Open(name)) << name;
        EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME}) << name;
    }
}

TEST_F(OpenPrinterTest, FailureGivesANullHandle)
{
    HANDLE handle = INVALID_HANDLE_VALUE;
    EXPECT_FALSE(::OpenPrinterW(const_cast<wchar_t*>(L"Nobody"), &handle, nullptr));
    EXPECT_EQ(handle, nullptr);
}

TEST_F(OpenPrinterTest, WithoutAPlaceForTheHandleFailsWithInvalidParameter)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    EXPECT_FALSE(::OpenPrinterW(const_cast<wchar_t*>(L"Label"), nullptr, nullptr));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(OpenPrinterTest, SuccessLeavesTheLastErrorAlone)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    ::SetLastError(ERROR_ARENA_TRASHED);
    const PrinterHandle printer = Open(L"Label");
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_ARENA_TRASHED});
}

TEST_F(OpenPrinterTest, OpensASharedPrinterByItsShareName)
{
    SpoolerAddPrinter({.printerName = L"Label",
                       .shareName = L"LBL",
                       .attributes = PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_SHARED});
    EXPECT_TRUE(Open(L"LBL"));
}

TEST_F(OpenPrinterTest, AShareNameOfAPrinterThatIsNotSharedIsUnknown)
{
    SpoolerAddPrinter({.printerName = L"Label", .shareName = L"LBL"});
    EXPECT_FALSE(Open(L"LBL"));
}

TEST_F(OpenPrinterTest, OpensAConnectionByItsNetworkName)
{
    SpoolerAddPrinter({.printerName = L"\\\\HOST\\LABEL", .attributes = PRINTER_ATTRIBUTE_NETWORK});
    EXPECT_TRUE(Open(L"\\\\host\\label"));
}

TEST_F(OpenPrinterTest, ANameWithThisServerIsReadBackWithIt)
{
    SpoolerSetIdentity(nullptr, L"DEPOT");
    SpoolerAddPrinter({.printerName = L"Label"});
    const PrinterHandle printer = Open(L"\\\\DEPOT\\Label");
    const auto info = ReadPrinter<PRINTER_INFO_2W>(printer, 2);
    EXPECT_EQ(Text(info->pPrinterName), L"\\\\DEPOT\\Label");
    EXPECT_EQ(Text(info->pServerName), L"\\\\DEPOT");
}

TEST_F(OpenPrinterTest, NoNameOrTheServersNameOpensTheServer)
{
    SpoolerSetIdentity(nullptr, L"DEPOT");
    EXPECT_TRUE(OpenServer());
    EXPECT_TRUE(Open(L"\\\\DEPOT", SERVER_ALL_ACCESS));
}

TEST_F(OpenPrinterTest, OpensAJobOfThePrinter)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    QueueJob(L"Label", {.jobId = 7});
    EXPECT_TRUE(Open(L"Label, Job 7", JOB_ALL_ACCESS));
    EXPECT_TRUE(Open(L"Label,Job 7", JOB_ALL_ACCESS));
    EXPECT_FALSE(Open(L"Label, Job 8", JOB_ALL_ACCESS));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME});
}

TEST_F(OpenPrinterTest, TakesOnlyKnownWordsAfterAComma)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    for (const wchar_t* known :
         {L"Label,LocalOnly", L"Label, LocalOnly", L"Label,LocalOnly2", L"Label, LocalOnly and so on",
          L"Label,DrvConvert", L"Label, DrvConvert", L"Label,DrvConvert,Job 1", L"label,LocalOnly"})
        EXPECT_TRUE(Open(known)) << ::testing::PrintToString(known);

    for (const wchar_t* unknown : {L"Label,", L"Label,rubbish", L"Label,LocalOnl", L"Label,localOnly",
                                   L"Label, localonly", L"Label,  LocalOnly", L"Label ,LocalOnly", L"Label,drvconvert",
                                   L"Label, DrvConver2t", L"Label,Job", L"Label,Job 0", L"Label,Job x"}) {
        EXPECT_FALSE(Open(unknown)) << ::testing::PrintToString(unknown);
        EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME});
    }
}

TEST_F(OpenPrinterTest, AServerHasNoJobs)
{
    SpoolerSetIdentity(nullptr, L"DEPOT");
    EXPECT_FALSE(Open(L"\\\\DEPOT, Job 1", SERVER_ACCESS_ENUMERATE));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME});
}

struct AccessRow {
    DWORD granted;
    DWORD wanted;
    bool opens;
};

/// Opens `name` as each row says, after `grant` has granted its rights.
template <typename Grant>
void ExpectAccess(const wchar_t* name, std::span<const AccessRow> rows, Grant grant)
{
    for (const AccessRow& row : rows) {
        grant(row.granted);
        PRINTER_DEFAULTSW defaults = {nullptr, nullptr, row.wanted};
        PrinterHandle handle;
        const DWORD error = ErrorOf(::OpenPrinterW(const_cast<wchar_t*>(name), handle.Receive(), &defaults));
        EXPECT_EQ(error, row.opens ? DWORD{ERROR_SUCCESS} : DWORD{ERROR_ACCESS_DENIED})
            << std::hex << row.granted << " " << row.wanted;
    }
}

TEST_F(OpenPrinterTest, AccessIsGrantedOnlyAsFarAsThePrinterGrantsIt)
{
    static constexpr AccessRow rows[] = {
        {PRINTER_ALL_ACCESS, PRINTER_ALL_ACCESS,                   true },
        {PRINTER_ALL_ACCESS, PRINTER_ACCESS_USE,                   true },
        {PRINTER_ALL_ACCESS, GENERIC_ALL,                          true },
        {PRINTER_ALL_ACCESS, manageLimited,                        true },
        {PRINTER_ALL_ACCESS, JOB_ALL_ACCESS,                       false},
        {PRINTER_ALL_ACCESS, 0xFFFFFFFF,                           false},
        {PRINTER_ACCESS_USE, PRINTER_ALL_ACCESS,                   false},
        {PRINTER_ACCESS_USE, PRINTER_ACCESS_ADMINISTER,            false},
        {PRINTER_ACCESS_USE, GENERIC_ALL,                          false},
        {PRINTER_ACCESS_USE, manageLimited,                        false},
        {PRINTER_ACCESS_USE, PRINTER_ACCESS_USE,                   true },
        {PRINTER_ACCESS_USE, PRINTER_READ,                         true },
        {PRINTER_ACCESS_USE, GENERIC_EXECUTE,                      true },
        {PRINTER_ACCESS_USE, MAXIMUM_ALLOWED,                      true },
        {PRINTER_ACCESS_USE, MAXIMUM_ALLOWED | PRINTER_ACCESS_USE, true },
        {PRINTER_ACCESS_USE, MAXIMUM_ALLOWED | WRITE_DAC,          false},
        {PRINTER_ACCESS_USE, 0,                                    true },
        {0,                  PRINTER_ACCESS_USE,                   false},
        {0,                  0,                                    false},
    };
    SpoolerAddPrinter({.printerName = L"Label"});
    ExpectAccess(L"Label", rows, [](DWORD granted) { SpoolerSetGrantedAccess(L"Label", granted); });
}

TEST_F(OpenPrinterTest, AccessToTheServerIsGrantedOnlyAsFarAsItGrantsIt)
{
    static constexpr AccessRow rows[] = {
        {SERVER_ALL_ACCESS, SERVER_ALL_ACCESS,        true },
        {SERVER_ALL_ACCESS, GENERIC_ALL,              true },
        {SERVER_ALL_ACCESS, 0xFFFFFFFF,               false},
        {SERVER_ALL_ACCESS, PRINTER_ACCESS_USE,       false},
        {SERVER_EXECUTE,    0,                        true },
        {SERVER_EXECUTE,    MAXIMUM_ALLOWED,          true },
        {SERVER_EXECUTE,    SERVER_ACCESS_ENUMERATE,  true },
        {SERVER_EXECUTE,    SERVER_READ,              true },
        {SERVER_EXECUTE,    SERVER_EXECUTE,           true },
        {SERVER_EXECUTE,    GENERIC_READ,             true },
        {SERVER_EXECUTE,    SERVER_ACCESS_ADMINISTER, false},
        {SERVER_EXECUTE,    SERVER_WRITE,             false},
        {SERVER_EXECUTE,    GENERIC_WRITE,            false},
        {SERVER_EXECUTE,    SERVER_ALL_ACCESS,        false},
        {0,                 0,                        false},
    };
    ExpectAccess(nullptr, rows, SpoolerSetServerAccess);
}

TEST_F(OpenPrinterTest, WithoutDefaultsTheServerIsOpenedForEnumerating)
{
    SpoolerSetServerAccess(SERVER_ACCESS_ENUMERATE);
    EXPECT_TRUE(OpenServer(0));
    SpoolerSetServerAccess(SERVER_ACCESS_ADMINISTER);
    EXPECT_FALSE(OpenServer(0));
}

TEST_F(OpenPrinterTest, AccessToAJobDependsOnWhoseItIs)
{
    static constexpr AccessRow own[] = {
        {PRINTER_ACCESS_USE, JOB_ALL_ACCESS,        true },
        {PRINTER_ACCESS_USE, JOB_ACCESS_ADMINISTER, true },
        {PRINTER_ACCESS_USE, GENERIC_ALL,           true },
        {PRINTER_ACCESS_USE, 0,                     true },
        {PRINTER_ACCESS_USE, PRINTER_ACCESS_USE,    false},
        {PRINTER_ALL_ACCESS, PRINTER_ALL_ACCESS,    false},
    };
    static constexpr AccessRow others[] = {
        {PRINTER_ALL_ACCESS, JOB_ALL_ACCESS,        true },
        {PRINTER_ALL_ACCESS, GENERIC_WRITE,         true },
        {PRINTER_ACCESS_USE, 0,                     true },
        {PRINTER_ACCESS_USE, JOB_READ,              true },
        {PRINTER_ACCESS_USE, GENERIC_READ,          true },
        {PRINTER_ACCESS_USE, JOB_ACCESS_ADMINISTER, false},
        {PRINTER_ACCESS_USE, GENERIC_EXECUTE,       false},
        {PRINTER_ACCESS_USE, JOB_ALL_ACCESS,        false},
        {0,                  0,                     false},
    };
    SpoolerSetIdentity(L"jane", nullptr);
    SpoolerAddPrinter({.printerName = L"Label"});
    QueueJob(L"Label", {.jobId = 1, .userName = L"jane"});
    QueueJob(L"Label", {.jobId = 2, .userName = L"joe"});
    const auto grant = [](DWORD granted) { SpoolerSetGrantedAccess(L"Label", granted); };
    ExpectAccess(L"Label, Job 1", own, grant);
    ExpectAccess(L"Label, Job 2", others, grant);
}

TEST_F(OpenPrinterTest, DefaultsWithAnUnknownDatatypeFail)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    PRINTER_DEFAULTSW defaults = {const_cast<wchar_t*>(L"SCROLL"), nullptr, PRINTER_ACCESS_USE};
    HANDLE handle = nullptr;
    EXPECT_FALSE(::OpenPrinterW(const_cast<wchar_t*>(L"Label"), &handle, &defaults));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_DATATYPE});
}

using ClosePrinterTest = SimulatorTest;

TEST_F(ClosePrinterTest, MakesTheHandleInvalid)
{
    HANDLE handle = AddAndOpen(L"Label").Detach();
    EXPECT_TRUE(::ClosePrinter(handle));
    EXPECT_FALSE(::ClosePrinter(handle));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(ClosePrinterTest, HandlesNeverComeBack)
{
    HANDLE first = AddAndOpen(L"Label").Detach();
    ::ClosePrinter(first);
    EXPECT_NE(Open(L"Label").Get(), first);
}

TEST_F(ClosePrinterTest, EndsADocumentThatWasNotEnded)
{
    PrinterHandle printer = AddAndOpen(L"Label");
    DOC_INFO_1W info = {const_cast<wchar_t*>(L"Half"), nullptr, nullptr};
    ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    printer.Reset();
    const auto jobs = ReadJobs<JOB_INFO_1W>(Open(L"Label"), 1);
    ASSERT_EQ(jobs.count, 1u);
    EXPECT_EQ(Text(jobs->pDocument), L"Half");
    EXPECT_EQ(jobs->Status, 0u) << "it spools no more";
}

TEST_F(ClosePrinterTest, DeliversADocumentThatWasNotEnded)
{
    SpoolerAddPrinter({.printerName = L"Label", .pace = SpoolerPace::AtOnce});
    PrinterHandle printer = Open(L"Label");
    DOC_INFO_1W info = {const_cast<wchar_t*>(L"Half"), nullptr, nullptr};
    ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    printer.Reset();
    EXPECT_EQ(SpoolerDeliveryCount(L"Label"), 1u);
}

TEST_F(ClosePrinterTest, WorksWhenTheJobOfAnOpenDocumentIsGone)
{
    PrinterHandle printer = AddAndOpen(L"Label");
    DOC_INFO_1W info = {const_cast<wchar_t*>(L"Half"), nullptr, nullptr};
    SpoolerRemoveJob(L"Label", ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info)));
    EXPECT_TRUE(::ClosePrinter(printer.Detach()));
    EXPECT_EQ(SpoolerOpenHandles(nullptr), 0u);
}

TEST_F(ClosePrinterTest, LeavesAnEndedDocumentInTheQueue)
{
    PrinterHandle printer = AddAndOpen(L"Label");
    Print(printer, L"Whole", "bytes");
    printer.Reset();
    EXPECT_EQ(ReadJobs<JOB_INFO_1W>(Open(L"Label"), 1).count, 1u);
}

TEST_F(ClosePrinterTest, WorksForARemovedPrinter)
{
    HANDLE handle = AddAndOpen(L"Label").Detach();
    SpoolerRemovePrinter(L"Label");
    EXPECT_TRUE(::ClosePrinter(handle));
}

TEST_F(ClosePrinterTest, WorksForAPrinterThatWasRemovedInTheMiddleOfADocument)
{
    PrinterHandle printer = AddAndOpen(L"Label");
    DOC_INFO_1W info = {const_cast<wchar_t*>(L"Half"), nullptr, nullptr};
    ::StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&info));
    SpoolerRemovePrinter(L"Label");
    EXPECT_TRUE(::ClosePrinter(printer.Detach()));
    EXPECT_EQ(SpoolerOpenHandles(nullptr), 0u);
}

} // namespace
