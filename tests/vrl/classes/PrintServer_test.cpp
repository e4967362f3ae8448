// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintServer.h"

#include "support/ImportHook.h"
#include "support/MadeUpOSVersion.h"
#include "support/Raising.h"
#include "support/com/Answer.h"
#include "support/com/ClientPrinter.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/classes/Printer.h"
#include "vrl/classes/Printers.h"
#include "vrl/classes/PrintersFilter.h"
#include "vrl/core/XPrinterPool.h"
#include "vrl/frame/Module.h"

#include <lmcons.h>
#include <lmapibuf.h>
#include <lmjoin.h>

#include <comutil.h>
#include <gmock/gmock.h>

#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Microsoft::WRL::ComPtr;
using Names = std::vector<std::wstring>;

/// A client's own collection: notes what it is given.
class ClientPrinters : public ClientObject<IPrinters> {
public:
    Names added;
    std::function<HRESULT()> onAdd;

    STDMETHODIMP Add(VARIANT argPrinter) override
    {
        EXPECT_EQ(argPrinter.vt, VT_BSTR);
        added.push_back(TextOf(argPrinter.bstrVal));
        return onAdd ? onAdd() : S_OK;
    }
    STDMETHODIMP get__NewEnum(IUnknown**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Item(VARIANT, IPrinter**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Count(long*) override { return E_NOTIMPL; }
    STDMETHODIMP Create(IPrinter**) override { return E_NOTIMPL; }
    STDMETHODIMP Remove(VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP RemoveAll() override { return E_NOTIMPL; }
};

/// A client's own filter.
class ClientFilter : public ClientObject<IPrintersFilter> {
public:
    VARIANT_BOOL local = VARIANT_FALSE;
    VARIANT_BOOL network = VARIANT_FALSE;
    VARIANT_BOOL shared = VARIANT_FALSE;
    std::function<HRESULT(int)> onRead; ///< runs when the property of that number is read; a failure is the answer

    STDMETHODIMP get_Local(VARIANT_BOOL* retLocal) override { return Read(0, local, retLocal); }
    STDMETHODIMP get_Network(VARIANT_BOOL* retNetwork) override { return Read(1, network, retNetwork); }
    STDMETHODIMP get_Shared(VARIANT_BOOL* retShared) override { return Read(2, shared, retShared); }
    STDMETHODIMP put_Local(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP put_Network(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP put_Shared(VARIANT_BOOL) override { return E_NOTIMPL; }

private:
    HRESULT Read(int number, VARIANT_BOOL value, VARIANT_BOOL* out)
    {
        *out = value;
        return onRead ? onRead(number) : S_OK;
    }
};

VARIANT Argument(VARTYPE type, IDispatch* object = nullptr)
{
    VARIANT argument;
    ::VariantInit(&argument);
    argument.vt = type;
    argument.pdispVal = object;
    return argument;
}

class Enumeration : public SpoolerTest {
protected:
    void SetUp() override
    {
        ::SpoolerReset();
        Put(L"Label", PRINTER_ATTRIBUTE_LOCAL);
        Put(L"Shared", PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_SHARED);
        Put(L"\\\\STORE\\Far", PRINTER_ATTRIBUTE_NETWORK);
        ASSERT_EQ(CreateInstance(server.GetAddressOf()), S_OK);
    }

    void TearDown() override
    {
        server.Reset();
        EXPECT_EQ(XPrinterPool::GetCount(), 0);
        EXPECT_TRUE(Module::IsIdle());
        SpoolerTest::TearDown();
    }

    static void Put(const wchar_t* name, DWORD attributes)
    {
        SpoolerPrinter printer = LabelPrinter();
        printer.printerName = name;
        printer.serverName = nullptr;
        printer.attributes = attributes;
        AddPrinter(printer);
    }

    Answer Enumerate(VARIANT filter) { return AnswerOf(server->EnumeratePrinters(&printers, filter)); }
    Answer Enumerate(IPrintersFilter& filter) { return Enumerate(Argument(VT_DISPATCH, &filter)); }

    /// Flags of the enumerations so far.
    static std::vector<DWORD> Flags()
    {
        std::vector<DWORD> flags;
        for (const auto& call : SpoolerLog()) {
            if (call.call == SpoolerCall::EnumPrintersW) flags.push_back(call.flags);
        }
        return flags;
    }

    ComPtr<PrintServer> server;
    ClientPrinters printers;
};

TEST_F(Enumeration, ListsLocalPrintersAndConnectionsWithoutAFilter)
{
    for (const VARTYPE omitted : {VT_EMPTY, VT_ERROR}) {
        ::SpoolerClearLog();
        printers.added.clear();
        EXPECT_EQ(Enumerate(Argument(static_cast<VARTYPE>(omitted))), succeeded);
        EXPECT_THAT(Flags(), ElementsAre(6, 6)) << "the size, then the list";
        EXPECT_THAT(printers.added, ElementsAre(L"Label", L"Shared", L"\\\\STORE\\Far"));
    }
}

TEST_F(Enumeration, AsksForLevelTwoOfTheMachineItself)
{
    Enumerate(Argument(VT_EMPTY));
    const auto log = SpoolerLog();
    ASSERT_EQ(log.size(), 2u);
    for (const auto& call : log) {
        EXPECT_EQ(call.level, 2u);
        EXPECT_STREQ(call.server, L"");
    }
    EXPECT_EQ(log[0].bytes, 0u);
    EXPECT_GT(log[1].bytes, 0u);
}

TEST_F(Enumeration, TurnsTheFilterIntoTheSpoolersFlags)
{
    static constexpr struct {
        VARIANT_BOOL local, network, shared;
        DWORD flags;
    } rows[] = {
        {VARIANT_TRUE,  VARIANT_FALSE, VARIANT_FALSE, 2 },
        {VARIANT_FALSE, VARIANT_TRUE,  VARIANT_FALSE, 4 },
        {VARIANT_TRUE,  VARIANT_TRUE,  VARIANT_FALSE, 6 },
        {VARIANT_FALSE, VARIANT_FALSE, VARIANT_TRUE,  34}, // with the local ones
        {VARIANT_TRUE,  VARIANT_FALSE, VARIANT_TRUE,  34},
        {VARIANT_FALSE, VARIANT_TRUE,  VARIANT_TRUE,  36},
        {VARIANT_TRUE,  VARIANT_TRUE,  VARIANT_TRUE,  38},
        {1,             2,             3,             0 }, // only VARIANT_TRUE is true
    };
    for (const auto& row : rows) {
        ::SpoolerClearLog();
        ClientFilter filter;
        filter.local = row.local;
        filter.network = row.network;
        filter.shared = row.shared;
        Enumerate(filter);
        ASSERT_FALSE(Flags().empty()) << row.flags;
        EXPECT_EQ(Flags().front(), row.flags);
        EXPECT_EQ(filter.references, 0u);
    }
}

TEST_F(Enumeration, GivesFlagsOfZeroToTheSpoolerAsTheyAre)
{
    ClientFilter filter;
    Enumerate(filter);
    EXPECT_EQ(Flags().front(), 0u);
}

TEST_F(Enumeration, UnderstandsAFilterOfOurs)
{
    ComPtr<PrintersFilter> filter;
    ASSERT_EQ(CreateInstance(filter.GetAddressOf()), S_OK);
    Enumerate(*filter.Get());
    EXPECT_EQ(Flags().back(), 6u);

    filter->put_Local(1);
    Enumerate(*filter.Get());
    EXPECT_EQ(Flags().back(), 4u) << "1 isn't true";

    filter->put_Local(VARIANT_FALSE);
    filter->put_Network(VARIANT_FALSE);
    filter->put_Shared(VARIANT_TRUE);
    printers.added.clear();
    EXPECT_EQ(Enumerate(*filter.Get()), succeeded);
    EXPECT_EQ(Flags().back(), 34u);
    EXPECT_THAT(printers.added, ElementsAre(L"Shared"));
}

TEST_F(Enumeration, RefusesAnyOtherFilter)
{
    for (const VARTYPE type : {VT_I4, VT_BSTR, VT_BOOL, VT_NULL, VT_UNKNOWN}) {
        EXPECT_EQ(Enumerate(Argument(static_cast<VARTYPE>(type))), invalidArgument) << type;
    }
    EXPECT_EQ(Enumerate(Argument(VT_DISPATCH)), invalidArgument) << "no object";
    ClientPrinter printer;
    EXPECT_EQ(Enumerate(Argument(VT_DISPATCH, &printer)), invalidArgument) << "no filter";
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(Enumeration, NeedsACollectionBeforeAnythingElse)
{
    EXPECT_EQ(AnswerOf(server->EnumeratePrinters(nullptr, Argument(VT_EMPTY))), invalidArgument);
    EXPECT_EQ(AnswerOf(server->EnumeratePrinters(nullptr, Argument(VT_I4))), invalidArgument);
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(Enumeration, GivesTheFailureOfTheFilter)
{
    for (int failing = 0; failing < 3; ++failing) {
        ClientFilter filter;
        filter.onRead = [failing](int number) { return number == failing ? E_ACCESSDENIED : S_OK; };
        EXPECT_EQ(Enumerate(filter).result, E_ACCESSDENIED) << failing;
        EXPECT_EQ(filter.references, 0u);
    }
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(Enumeration, GivesTheSpoolersFailureOfEitherCall)
{
    for (const DWORD call : {1u, 2u}) {
        FailNext(SpoolerCall::EnumPrintersW, ERROR_ACCESS_DENIED, call);
        EXPECT_EQ(Enumerate(Argument(VT_EMPTY)), SystemAnswer(ERROR_ACCESS_DENIED)) << call;
    }
    EXPECT_THAT(printers.added, IsEmpty());
}

TEST_F(Enumeration, OfAListThatGrowsBetweenTheCallsIsTheSpoolersFailure)
{
    FailNext(SpoolerCall::EnumPrintersW, ERROR_INSUFFICIENT_BUFFER, 2);
    EXPECT_EQ(Enumerate(Argument(VT_EMPTY)), SystemAnswer(ERROR_INSUFFICIENT_BUFFER));
}

TEST_F(Enumeration, OfNoPrintersSucceedsAfterOneCall)
{
    ::SpoolerReset();
    EXPECT_EQ(Enumerate(Argument(VT_EMPTY)), succeeded);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::EnumPrintersW), 1u);
    EXPECT_THAT(printers.added, IsEmpty());
}

TEST_F(Enumeration, OfASpoolerThatTellsNoSizeSucceedsWithNothing)
{
    FailNext(SpoolerCall::EnumPrintersW, ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(Enumerate(Argument(VT_EMPTY)), succeeded);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::EnumPrintersW), 1u);
    EXPECT_THAT(printers.added, IsEmpty());
}

TEST_F(Enumeration, IgnoresWhatTheCollectionSays)
{
    printers.onAdd = [] { return E_FAIL; };
    EXPECT_EQ(Enumerate(Argument(VT_EMPTY)), succeeded);
    EXPECT_EQ(printers.added.size(), 3u);
}

TEST_F(Enumeration, FillsACollectionOfOurs)
{
    ComPtr<Printers> ours;
    ASSERT_EQ(CreateInstance(ours.GetAddressOf()), S_OK);
    EXPECT_EQ(AnswerOf(server->EnumeratePrinters(ours.Get(), Argument(VT_EMPTY))), succeeded);
    long count = 0;
    ours->get_Count(&count);
    EXPECT_EQ(count, 3);

    EXPECT_EQ(AnswerOf(server->EnumeratePrinters(ours.Get(), Argument(VT_EMPTY))), succeeded);
    ours->get_Count(&count);
    EXPECT_EQ(count, 6) << "it isn't emptied first";
    EXPECT_EQ(XPrinterPool::GetCount(), 3);
}

TEST_F(Enumeration, LeavesAPrinterOutThatCannotBeOpened)
{
    ComPtr<Printers> ours;
    ASSERT_EQ(CreateInstance(ours.GetAddressOf()), S_OK);
    SpoolerFailure refused;
    refused.call = SpoolerCall::OpenPrinterW;
    refused.printer = L"Shared";
    refused.count = 2; // with either access
    ::SpoolerInject(refused);
    EXPECT_EQ(AnswerOf(server->EnumeratePrinters(ours.Get(), Argument(VT_EMPTY))).result, S_OK);
    long count = 0;
    ours->get_Count(&count);
    EXPECT_EQ(count, 2);
}

TEST_F(Enumeration, StandsWhatAClientsObjectsRaise)
{
    for (const RaisedKind& kind : raisedKinds) {
        const auto raise = [&kind](auto...) {
            kind.raise();
            return S_OK;
        };
        printers.onAdd = raise;
        EXPECT_TRUE(FAILED(Enumerate(Argument(VT_EMPTY)).result)) << kind.name;
        printers.onAdd = nullptr;

        ClientFilter filter;
        filter.onRead = raise;
        EXPECT_TRUE(FAILED(Enumerate(filter).result)) << kind.name;
        filter.onRead = nullptr;
        filter.onRelease = kind.raise;
        EXPECT_EQ(Enumerate(filter).result, S_OK) << kind.name;
        filter.onRelease = nullptr;
        filter.onQueryInterface = kind.raise;
        EXPECT_EQ(Enumerate(filter), invalidArgument) << kind.name;
    }
}

// What the machine is

struct TextRow {
    const char* name;
    HRESULT (IPrintServer::*get)(BSTR*);
};

constexpr TextRow texts[] = {
    {"Name",                  &IPrintServer::get_Name                 },
    {"NetworkDomain",         &IPrintServer::get_NetworkDomain        },
    {"NetworkWorkgroup",      &IPrintServer::get_NetworkWorkgroup     },
    {"OSName",                &IPrintServer::get_OSName               },
    {"OSVersion",             &IPrintServer::get_OSVersion            },
    {"OSEdition",             &IPrintServer::get_OSEdition            },
    {"ProcessorName",         &IPrintServer::get_ProcessorName        },
    {"DNSDomain",             &IPrintServer::get_DNSDomain            },
    {"DNSName",               &IPrintServer::get_DNSName              },
    {"ProcessorArchitecture", &IPrintServer::get_ProcessorArchitecture},
    {"Description",           &IPrintServer::get_Description          },
};

class Machine : public ::testing::Test {
protected:
    Machine() { EXPECT_EQ(CreateInstance(server.GetAddressOf()), S_OK); }

    std::wstring Text(HRESULT (STDMETHODCALLTYPE IPrintServer::*get)(BSTR*)) const
    {
        OwnedBstr text;
        EXPECT_EQ(AnswerOf((server.Get()->*get)(text.Receive())), succeeded);
        EXPECT_TRUE(text) << "an empty text is a text";
        return TextOf(text.Get());
    }

    ComPtr<PrintServer> server;
};

TEST_F(Machine, TestsEachPlaceToGo)
{
    for (const TextRow& row : texts)
        EXPECT_EQ(AnswerOf((server.Get()->*row.get)(nullptr)), invalidArgument) << row.name;
    EXPECT_EQ(AnswerOf(server->get_ProcessorCount(nullptr)), invalidArgument);
}

TEST_F(Machine, GivesEachTextOfTheRealSystem)
{
    for (const TextRow& row : texts) {
        SCOPED_TRACE(row.name);
        Text(row.get);
    }
}

TEST_F(Machine, HasThreeNames)
{
    static std::vector<COMPUTER_NAME_FORMAT> asked;
    asked.clear();
    const ImportHook<decltype(::GetComputerNameExW)> hook(
        "GetComputerNameExW", [](COMPUTER_NAME_FORMAT format, wchar_t* buffer, DWORD* size) -> WINBOOL {
            asked.push_back(format);
            *size = 2;
            if (buffer) ::lstrcpyW(buffer, std::to_wstring(format).c_str());
            ::SetLastError(ERROR_MORE_DATA);
            return buffer != nullptr;
        });
    EXPECT_EQ(Text(&IPrintServer::get_Name), L"0");
    EXPECT_EQ(Text(&IPrintServer::get_DNSDomain), L"2");
    EXPECT_EQ(Text(&IPrintServer::get_DNSName), L"3");
    EXPECT_THAT(asked, ElementsAre(0, 0, 2, 2, 3, 3));
}

TEST_F(Machine, IsInADomainOrInAWorkgroup)
{
    static NETSETUP_JOIN_STATUS status;
    const ImportHook<decltype(::NetGetJoinInformation)> hook(
        "NetGetJoinInformation", [](const wchar_t*, wchar_t** name, NETSETUP_JOIN_STATUS* joined) -> DWORD {
            static wchar_t text[] = L"STORES";
            *name = text;
            *joined = status;
            return 0;
        });
    const ImportHook<decltype(::NetApiBufferFree)> release("NetApiBufferFree", [](void*) -> DWORD { return 0; });
    status = NetSetupWorkgroupName;
    EXPECT_EQ(Text(&IPrintServer::get_NetworkDomain), L"");
    EXPECT_EQ(Text(&IPrintServer::get_NetworkWorkgroup), L"STORES");
    status = NetSetupDomainName;
    EXPECT_EQ(Text(&IPrintServer::get_NetworkDomain), L"STORES");
    EXPECT_EQ(Text(&IPrintServer::get_NetworkWorkgroup), L"");
}

TEST_F(Machine, TellsItsSystemFromTheVersionRecord)
{
    const MadeUpOSVersion version(6, 0, VER_NT_SERVER, 0x80);
    EXPECT_EQ(Text(&IPrintServer::get_OSName), L"Windows Server 2008");
    EXPECT_EQ(Text(&IPrintServer::get_OSVersion), L"6.0");
    EXPECT_EQ(Text(&IPrintServer::get_OSEdition), L"Datacenter Edition");
}

TEST_F(Machine, CountsItsProcessors)
{
    const ImportHook<decltype(::GetSystemInfo)> hook("GetSystemInfo", [](SYSTEM_INFO* info) {
        *info = {};
        info->dwNumberOfProcessors = 12;
    });
    long count = 0;
    EXPECT_EQ(AnswerOf(server->get_ProcessorCount(&count)), succeeded);
    EXPECT_EQ(count, 12);
}

/// The registry and the environment as a test wants them.
class MachineTexts : public Machine {
protected:
    MachineTexts()
    {
        registry.reset();
        environment.reset();
        asked.clear();
    }

    static inline std::optional<std::wstring> registry;
    static inline std::optional<std::wstring> environment;
    static inline std::vector<std::wstring> asked; ///< keys, value names and variables

private:
    ImportHook<decltype(::RegOpenKeyExW)> _open{
        "RegOpenKeyExW", [](HKEY root, const wchar_t* path, DWORD, REGSAM, HKEY* key) -> LSTATUS {
            EXPECT_EQ(root, HKEY_LOCAL_MACHINE);
            asked.push_back(path);
            *key = reinterpret_cast<HKEY>(0x4711);
            return ERROR_SUCCESS;
        }};
    ImportHook<decltype(::RegCloseKey)> _close{"RegCloseKey", [](HKEY) -> LSTATUS { return ERROR_SUCCESS; }};
    ImportHook<decltype(::RegQueryValueExW)> _query{
        "RegQueryValueExW", [](HKEY, const wchar_t* name, DWORD*, DWORD*, BYTE* data, DWORD* size) -> LSTATUS {
            asked.push_back(name);
            if (!registry) return ERROR_FILE_NOT_FOUND;
            *size = static_cast<DWORD>((registry->size() + 1) * sizeof(wchar_t));
            std::memcpy(data, registry->c_str(), *size);
            return ERROR_SUCCESS;
        }};
    ImportHook<decltype(::GetEnvironmentVariableW)> _environment{
        "GetEnvironmentVariableW", [](const wchar_t* name, wchar_t* text, DWORD size) -> DWORD {
            asked.push_back(name);
            EXPECT_EQ(size, 512u);
            if (!environment) return 0;
            const auto length = static_cast<DWORD>(environment->size());
            if (length >= size) return length + 1;
            ::lstrcpyW(text, environment->c_str());
            return length;
        }};
};

TEST_F(MachineTexts, NameTheProcessorAsTheRegistryDoes)
{
    registry = L"Fast Processor @ 3 GHz";
    EXPECT_EQ(Text(&IPrintServer::get_ProcessorName), L"Fast Processor @ 3 GHz");
    EXPECT_THAT(asked, ElementsAre(L"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0", L"ProcessorNameString"));
}

TEST_F(MachineTexts, NameTheProcessorAsTheEnvironmentDoesOtherwise)
{
    environment = L"Family 6";
    EXPECT_EQ(Text(&IPrintServer::get_ProcessorName), L"Family 6");
    EXPECT_EQ(asked.back(), L"PROCESSOR_IDENTIFIER");
    registry = L"";
    EXPECT_EQ(Text(&IPrintServer::get_ProcessorName), L"Family 6") << "an empty text is none";
    registry.reset();
    environment.reset();
    EXPECT_EQ(Text(&IPrintServer::get_ProcessorName), L"");
}

TEST_F(MachineTexts, TellTheArchitectureOfTheEnvironment)
{
    environment = L"AMD64";
    EXPECT_EQ(Text(&IPrintServer::get_ProcessorArchitecture), L"AMD64");
    EXPECT_THAT(asked, ElementsAre(L"PROCESSOR_ARCHITECTURE"));
    environment.reset();
    EXPECT_EQ(Text(&IPrintServer::get_ProcessorArchitecture), L"");
}

TEST_F(MachineTexts, AreAtMost511CharactersOfTheEnvironment)
{
    environment = std::wstring(511, L'x');
    EXPECT_EQ(Text(&IPrintServer::get_ProcessorArchitecture).size(), 511u);
    environment = std::wstring(512, L'x');
    EXPECT_EQ(Text(&IPrintServer::get_ProcessorArchitecture), L"");
}

TEST_F(MachineTexts, DescribeTheMachineAsTheRegistryDoes)
{
    registry = L"Gate 7";
    EXPECT_EQ(Text(&IPrintServer::get_Description), L"Gate 7");
    EXPECT_THAT(asked, ElementsAre(L"SYSTEM\\CurrentControlSet\\Services\\lanmanserver\\parameters", L"srvcomment"));
    registry.reset();
    EXPECT_EQ(Text(&IPrintServer::get_Description), L"");
}

} // namespace
