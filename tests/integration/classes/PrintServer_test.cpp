// SPDX-License-Identifier: MIT
#include "support/product/IntegrationTest.h"
#include "support/com/LateBound.h"
#include "support/product/ProductHeap.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class PrintServerObject : public IntegrationTest {
protected:
    void SetUp() override
    {
        IntegrationTest::SetUp();
        server = Create<IPrintServer>(__uuidof(PrintServer));
        printers = Create<IPrinters>(__uuidof(Printers));
    }

    void TearDown() override
    {
        server.Reset();
        printers.Reset();
        IntegrationTest::TearDown();
    }

    std::vector<std::wstring> Names() const
    {
        std::vector<std::wstring> names;
        long count = 0;
        EXPECT_EQ(printers->get_Count(&count), S_OK);
        for (long number = 1; number <= count; ++number) {
            ComPtr<IPrinter> printer;
            EXPECT_EQ(printers->get_Item(_variant_t(number), &printer), S_OK);
            names.push_back(Text(*printer.Get(), &IPrinter::get_Name));
        }
        return names;
    }

    ComPtr<IPrintServer> server;
    ComPtr<IPrinters> printers;
};

TEST_F(PrintServerObject, EnumeratesThePrintersOfTheMachine)
{
    AddPrinterNamed(L"Second");
    EXPECT_EQ(AnswerOf(server->EnumeratePrinters(printers.Get(), _variant_t())), succeeded);
    EXPECT_THAT(Names(), ElementsAre(L"Label", L"Second"));
}

TEST_F(PrintServerObject, EnumeratesByNameWithAndWithoutAFilter)
{
    AddPrinterNamed(L"Second");
    const auto filter = Create<IPrintersFilter>(__uuidof(PrintersFilter));
    LateBound(filter.Get()).Put("Local", false);
    LateBound(filter.Get()).Put("Network", false);
    LateBound(filter.Get()).Put("Shared", true);
    EXPECT_EQ(LateBound(server.Get()).Call("EnumeratePrinters", {printers.Get(), filter.Get()}).result, S_OK);
    EXPECT_THAT(Names(), ElementsAre(L"Label"));
    EXPECT_EQ(LateBound(server.Get()).Call("EnumeratePrinters", {printers.Get()}).result, S_OK);
    EXPECT_THAT(Names(), ElementsAre(L"Label", L"Label", L"Second"));
    EXPECT_EQ(LateBound(server.Get()).Call("EnumeratePrinters", {printers.Get(), 1L}).code, invalidArgument.result);
}

TEST_F(PrintServerObject, TellsItsSourceWithAFailure)
{
    FailNext(SpoolerCall::EnumPrintersW, RPC_S_SERVER_UNAVAILABLE);
    const LateResult failed = LateBound(server.Get()).Call("EnumeratePrinters", {printers.Get()});
    EXPECT_EQ(failed.code, HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE));
    EXPECT_EQ(failed.source, L"Vorlane.PrintServer.1");
}

TEST_F(PrintServerObject, KnowsItsMachine)
{
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD size = std::size(name);
    ASSERT_TRUE(::GetComputerNameW(name, &size));
    EXPECT_EQ(Text(*server.Get(), &IPrintServer::get_Name), name);
    EXPECT_THAT(Text(*server.Get(), &IPrintServer::get_ProcessorArchitecture), L"AMD64");
    EXPECT_THAT(Text(*server.Get(), &IPrintServer::get_OSName), Not(IsEmpty()));
    EXPECT_THAT(Text(*server.Get(), &IPrintServer::get_OSVersion), Not(IsEmpty()));
    EXPECT_THAT(Text(*server.Get(), &IPrintServer::get_ProcessorName), Not(IsEmpty()));
    long processors = 0;
    EXPECT_EQ(server->get_ProcessorCount(&processors), S_OK);
    EXPECT_GE(processors, 1);
}

TEST_F(PrintServerObject, AnswersEveryPropertyByName)
{
    for (const char* const name : {"Name", "NetworkDomain", "NetworkWorkgroup", "OSName", "OSVersion", "OSEdition",
                                   "ProcessorName", "DNSDomain", "DNSName", "ProcessorArchitecture", "Description"}) {
        const LateResult answer = LateBound(server.Get()).Get(name);
        EXPECT_EQ(answer.result, S_OK) << name;
        EXPECT_EQ(answer.value.vt, VT_BSTR) << name;
    }
    EXPECT_EQ(LateBound(server.Get()).Get("ProcessorCount").value.vt, VT_I4);
}

TEST_F(PrintServerObject, EnumeratesAThousandPrinters)
{
    constexpr int count = 999;
    for (int number = 1; number <= count; ++number) AddPrinterNamed((L"Printer " + std::to_wstring(number)).c_str());
    EXPECT_EQ(AnswerOf(server->EnumeratePrinters(printers.Get(), _variant_t())), succeeded);
    long listed = 0;
    printers->get_Count(&listed);
    EXPECT_EQ(listed, count + 1);
}

} // namespace
