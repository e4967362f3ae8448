// SPDX-License-Identifier: MIT
#include "support/com/ApartmentThread.h"
#include "support/product/IntegrationTest.h"
#include "support/com/LateBound.h"
#include "support/com/RecordingSink.h"
#include "support/TemporaryDirectory.h"
#include "support/com/Getters.h"

#include <olectl.h>

#include <memory>

namespace {

/// A client in an apartment. The platform finds the product by its registration.
class Apartment : public IntegrationTest {
protected:
    explicit Apartment(COINIT kind)
        : _keptByWine(kind == COINIT_APARTMENTTHREADED), _client(std::make_unique<ApartmentThread>(kind))
    {
    }

    /// The apartment goes before the module is asked whether it may go.
    void TearDown() override
    {
        _client.reset();
        for (; _keptByWine && _created > 0; --_created) GiveBackKeptClassObject(__uuidof(Printer));
        IntegrationTest::TearDown();
    }

    void Run(const std::function<void()>& work) { _client->Run(work); }

    /// A `Printer` as a client has it in his apartment.
    ComPtr<IPrinter> CreateRegistered()
    {
        ComPtr<IPrinter> printer;
        ++_created;
        EXPECT_EQ(
            ::CoCreateInstance(__uuidof(Printer), nullptr, CLSCTX_INPROC_SERVER, __uuidof(IPrinter), Address(printer)),
            S_OK);
        return printer;
    }

    ComPtr<IPrinter> BindRegistered()
    {
        auto printer = CreateRegistered();
        EXPECT_EQ(Initialize(*printer.Get(), printerName), S_OK);
        return printer;
    }

    static bool IsProxy(IUnknown* object)
    {
        ComPtr<IClientSecurity> security;
        return SUCCEEDED(object->QueryInterface(IID_PPV_ARGS(&security)));
    }

private:
    const bool _keptByWine;
    int _created = 0;
    std::unique_ptr<ApartmentThread> _client;
};

/// In a single-threaded apartment, where every call goes through the marshalling code.
class SingleThreaded : public Apartment {
protected:
    SingleThreaded() : Apartment(COINIT_APARTMENTTHREADED) {}
};

TEST_F(SingleThreaded, ClientHasAProxy)
{
    Run([&] { EXPECT_TRUE(IsProxy(CreateRegistered().Get())); });
}

TEST_F(SingleThreaded, ClientIsServedOnAnotherThread)
{
    Run([&] {
        const auto printer = BindRegistered();
        EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Comment), L"Shipping labels");
        for (const auto& call : SpoolerLog()) EXPECT_NE(call.threadId, ::GetCurrentThreadId());
    });
}

TEST_F(SingleThreaded, ClientReadsEveryText)
{
    Run([&] {
        const auto printer = BindRegistered();
        EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Label");
        EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_ServerName), L"\\\\STORE");
        EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_ShareName), L"LABELS");
        EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_PortName), L"LPT1:");
        EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_ModelName), L"Label Driver");
        EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Comment), L"Shipping labels");
        EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Location), L"Gate 7");
    });
}

TEST_F(SingleThreaded, ClientReadsEveryFlag)
{
    Run([&] {
        const auto printer = BindRegistered();
        EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Local), VARIANT_TRUE);
        EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Network), VARIANT_FALSE);
        EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Shared), VARIANT_TRUE);
    });
}

TEST_F(SingleThreaded, ClientChangesThePrinter)
{
    Run([&] {
        const auto printer = BindRegistered();
        EXPECT_EQ(printer->put_Comment(NewBstr(L"\u8FD4\u54C1").Get()), S_OK);
        EXPECT_EQ(printer->put_Location(NewBstr(L"").Get()), S_OK);
        EXPECT_EQ(printer->put_Shared(VARIANT_FALSE), S_OK);
        EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Comment), L"\u8FD4\u54C1");
        EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Location), L"");
        EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Shared), VARIANT_FALSE);
    });
}

// Wine carries error information to another apartment for late-bound calls only, so texts are held there.
TEST_F(SingleThreaded, ClientGetsEveryFailure)
{
    Run([&] {
        const auto printer = CreateRegistered();
        EXPECT_EQ(Initialize(*printer.Get(), L"No such printer"), couldNotOpenPrinter.result);
        OwnedBstr name;
        EXPECT_EQ(printer->get_Name(name.Receive()), printerNotInitialized.result);
        EXPECT_EQ(Initialize(*printer.Get(), printerName), S_OK);
        EXPECT_EQ(printer->put_ShareName(NewBstr(L"a,b").Get()), shareNameNotValid.result);
        EXPECT_EQ(printer->put_PortName(NewBstr(L"COM77:").Get()), invalidPort.result);
    });
}

TEST_F(SingleThreaded, ClientGetsTheErrorTextLateBound)
{
    Run([&] {
        const auto printer = CreateRegistered();
        const LateResult failed = LateBound(printer.Get()).Call("Initialize", {L"No such printer"});
        EXPECT_EQ(failed.result, DISP_E_EXCEPTION);
        EXPECT_EQ(failed.code, couldNotOpenPrinter.result);
        EXPECT_EQ(failed.description, L"Could not open printer");
        EXPECT_EQ(failed.source, L"Vorlane.Printer.1");
    });
}

TEST_F(SingleThreaded, ClientLearnsThatErrorInformationIsSupported)
{
    Run([&] {
        ComPtr<ISupportErrorInfo> errors;
        EXPECT_EQ(CreateRegistered().As(&errors), S_OK);
        EXPECT_EQ(errors->InterfaceSupportsErrorInfo(__uuidof(IPrinter)), S_OK);
        EXPECT_EQ(errors->InterfaceSupportsErrorInfo(__uuidof(IPrinterStatus)), S_FALSE);
    });
}

TEST_F(SingleThreaded, ClientIsToldThatNoFileWasSent)
{
    Run([&] {
        const auto printer = BindRegistered();
        EXPECT_EQ(AnswerOf(printer->SendFile(NewBstr(L"C:\\no such file").Get(), nullptr)), saysFalse);
    });
}

TEST_F(SingleThreaded, ClientSendsAFile)
{
    const TemporaryDirectory folder;
    const auto file = folder.Make(L"label.lbl", "TEXT 1,1");
    Run([&] {
        const auto printer = BindRegistered();
        EXPECT_EQ(AnswerOf(printer->SendFile(NewBstr(file).Get(), NewBstr(L"Order").Get())), succeeded);
    });
    EXPECT_EQ(SentBytes(), "TEXT 1,1");
}

TEST_F(SingleThreaded, ClientReachesEveryPart)
{
    Run([&] {
        const auto printer = BindRegistered();
        for (const PrinterGetter& getter : printerChildren) {
            ComPtr<IDispatch> part;
            EXPECT_EQ(getter.call(*printer.Get(), part.GetAddressOf()), S_OK) << getter;
            EXPECT_TRUE(IsProxy(part.Get())) << getter;
        }
    });
}

TEST_F(SingleThreaded, ClientReadsTheStatus)
{
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAPER_OUT);
    Run([&] {
        const auto status = StatusOf(*BindRegistered().Get());
        unsigned long pages = 99;
        float distance = 99;
        EXPECT_EQ(Text(*status.Get(), &IPrinterStatus::get_Text), L"Paper Out");
        EXPECT_EQ(Bool(*status.Get(), &IPrinterStatus::get_PaperOut), VARIANT_TRUE);
        EXPECT_EQ(Bool(*status.Get(), &IPrinterStatus::get_Warning), VARIANT_FALSE);
        EXPECT_EQ(status->get_OdometerPages(&pages), S_OK);
        EXPECT_EQ(status->get_OdometerDistance(&distance), S_OK);
        EXPECT_EQ(pages, 0u);
        EXPECT_EQ(distance, 0.0F);
    });
}

TEST_F(SingleThreaded, ClientConnectsAndDisconnectsASink)
{
    Run([&] {
        const auto sink = RecordingSink::Create(__uuidof(_IPrinterEvents));
        const auto printer = BindRegistered();
        ComPtr<IConnectionPointContainer> container;
        ComPtr<IConnectionPoint> point;
        DWORD cookie = 0;
        EXPECT_EQ(printer.As(&container), S_OK);
        EXPECT_EQ(container->FindConnectionPoint(__uuidof(_IPrinterEvents), &point), S_OK);
        EXPECT_EQ(point->Advise(sink.Get(), &cookie), S_OK);
        EXPECT_GT(sink->References(), 1u);

        ComPtr<IEnumConnections> connections;
        CONNECTDATA connection{};
        EXPECT_EQ(point->EnumConnections(&connections), S_OK);
        // Wine's marshalling code loses its place after the sink: the result that it passes on may be any number.
        connections->Next(1, &connection, nullptr);
        EXPECT_EQ(connection.dwCookie, cookie);
        ASSERT_EQ(connection.pUnk, static_cast<IUnknown*>(sink.Get())); // home again, it is no proxy
        connection.pUnk->Release();
        connections.Reset();

        EXPECT_EQ(point->Unadvise(cookie), S_OK);
        EXPECT_EQ(sink->References(), 1u);
    });
}

TEST_F(SingleThreaded, ClientsSinkWithoutTheEventInterfaceIsRefused)
{
    Run([&] {
        const auto stranger = RecordingSink::Create(__uuidof(_IPrintJobEvents));
        const auto printer = BindRegistered();
        ComPtr<IConnectionPointContainer> container;
        ComPtr<IConnectionPoint> point;
        DWORD cookie = 99;
        EXPECT_EQ(printer.As(&container), S_OK);
        EXPECT_EQ(container->FindConnectionPoint(__uuidof(_IPrinterEvents), &point), S_OK);
        EXPECT_EQ(point->Advise(stranger.Get(), &cookie), CONNECT_E_CANNOTCONNECT);
        EXPECT_EQ(point->Unadvise(0), CONNECT_E_NOCONNECTION);
    });
}

TEST_F(SingleThreaded, ClientsReferenceKeepsTheModule)
{
    ComPtr<IPrinter> printer;
    Run([&] { printer = CreateRegistered(); });
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE);
    Run([&] { printer.Reset(); });
}

TEST_F(SingleThreaded, ClientPassesHisPrinterToAnother)
{
    ApartmentThread other(COINIT_APARTMENTTHREADED);
    ComPtr<IPrinter> printer;
    ComPtr<IStream> stream;
    Run([&] {
        printer = BindRegistered();
        EXPECT_EQ(::CoMarshalInterThreadInterfaceInStream(__uuidof(IPrinter), printer.Get(), &stream), S_OK);
    });
    other.Run([&] {
        ComPtr<IPrinter> passed;
        EXPECT_EQ(::CoGetInterfaceAndReleaseStream(stream.Detach(), __uuidof(IPrinter), Address(passed)), S_OK);
        EXPECT_TRUE(IsProxy(passed.Get()));
        EXPECT_EQ(Text(*passed.Get(), &IPrinter::get_Comment), L"Shipping labels");
        EXPECT_EQ(passed->put_Comment(NewBstr(L"From the other side").Get()), S_OK);
        EXPECT_EQ(passed->put_ShareName(NewBstr(L"/").Get()), shareNameNotValid.result);
    });
    Run([&] {
        EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Comment), L"From the other side");
        printer.Reset();
    });
}

TEST_F(SingleThreaded, ClientGetsAPrinterFromTheManyThreadedOne)
{
    ApartmentThread many(COINIT_MULTITHREADED);
    ComPtr<IPrinter> printer;
    ComPtr<IStream> stream;
    many.Run([&] {
        printer = BoundPrinter();
        EXPECT_EQ(::CoMarshalInterThreadInterfaceInStream(__uuidof(IPrinter), printer.Get(), &stream), S_OK);
    });
    Run([&] {
        ComPtr<IPrinter> passed;
        EXPECT_EQ(::CoGetInterfaceAndReleaseStream(stream.Detach(), __uuidof(IPrinter), Address(passed)), S_OK);
        EXPECT_TRUE(IsProxy(passed.Get()));
        EXPECT_EQ(Text(*passed.Get(), &IPrinter::get_Name), L"Label");
    });
    many.Run([&] { printer.Reset(); });
}

/// In the apartment of many threads, where every call is direct.
class ManyThreaded : public Apartment {
protected:
    ManyThreaded() : Apartment(COINIT_MULTITHREADED) {}
};

TEST_F(ManyThreaded, ClientHasADirectPointer)
{
    Run([&] {
        const auto printer = CreateRegistered();
        EXPECT_FALSE(IsProxy(printer.Get()));
        EXPECT_FALSE(IsProxy(StatusOf(*printer.Get()).Get()));
    });
}

TEST_F(ManyThreaded, ClientIsServedOnHisOwnThread)
{
    Run([&] {
        const auto printer = BindRegistered();
        EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Comment), L"Shipping labels");
        for (const auto& call : SpoolerLog()) EXPECT_EQ(call.threadId, ::GetCurrentThreadId());
    });
}

TEST_F(ManyThreaded, ClientGetsTheErrorText)
{
    Run([&] { EXPECT_EQ(AnswerOf(Initialize(*CreateRegistered().Get(), L"No such printer")), couldNotOpenPrinter); });
}

TEST_F(ManyThreaded, ClientsShareOnePrinterWithoutMarshalling)
{
    ApartmentThread other(COINIT_MULTITHREADED);
    ComPtr<IPrinter> printer;
    Run([&] { printer = BindRegistered(); });
    other.Run([&] { EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Comment), L"Shipping labels"); });
    Run([&] { printer.Reset(); });
}

TEST_F(ManyThreaded, ClientsSinkIsHeldDirectly)
{
    Run([&] {
        const auto sink = RecordingSink::Create(__uuidof(_IPrinterEvents));
        const auto printer = BindRegistered();
        ComPtr<IConnectionPointContainer> container;
        ComPtr<IConnectionPoint> point;
        DWORD cookie = 0;
        EXPECT_EQ(printer.As(&container), S_OK);
        EXPECT_EQ(container->FindConnectionPoint(__uuidof(_IPrinterEvents), &point), S_OK);
        EXPECT_EQ(point->Advise(sink.Get(), &cookie), S_OK);
        EXPECT_EQ(sink->References(), 2u);
        EXPECT_EQ(point->Unadvise(cookie), S_OK);
    });
}

} // namespace
