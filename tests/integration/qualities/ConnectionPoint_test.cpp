// SPDX-License-Identifier: MIT
#include "support/product/IntegrationTest.h"
#include "support/product/ProductTrace.h"
#include "support/com/RecordingSink.h"

#include <olectl.h>

#include <array>

// Which sinks are taken, and when an object stands in the list of its printer, is held by tests/vrl/frame and
// tests/vrl/classes/Printer_test.cpp; that each class has its points, by contract/ClassFactory_test.cpp. Here: what
// references there are, and what runs, in the module that ships.

namespace {

ULONG ReferencesOf(IUnknown* object)
{
    object->AddRef();
    return object->Release();
}

/// A bound `Printer` with its connection point, and a sink for its events.
class ConnectionPoint : public IntegrationTest {
protected:
    void SetUp() override
    {
        IntegrationTest::SetUp();
        Connect(BoundPrinter());
        sink = RecordingSink::Create(__uuidof(_IPrinterEvents));
    }

    void TearDown() override
    {
        Connect({});
        EXPECT_EQ(sink->References(), 1u);
        sink.Reset();
        IntegrationTest::TearDown();
    }

    /// Lets go of the printer at hand and goes on with another.
    void Connect(const ComPtr<IPrinter>& other)
    {
        point.Reset();
        container.Reset();
        printer = other;
        if (!printer) return;
        EXPECT_EQ(printer.As(&container), S_OK);
        EXPECT_EQ(container->FindConnectionPoint(__uuidof(_IPrinterEvents), &point), S_OK);
    }

    DWORD Advise(IUnknown* listener)
    {
        DWORD cookie = 0;
        EXPECT_EQ(point->Advise(listener, &cookie), S_OK);
        EXPECT_NE(cookie, 0u);
        return cookie;
    }

    DWORD Advise() { return Advise(sink.Get()); }

    ComPtr<IPrinter> printer;
    ComPtr<IConnectionPointContainer> container;
    ComPtr<IConnectionPoint> point;
    ComPtr<RecordingSink> sink;
};

// Container and point

TEST_F(ConnectionPoint, LivesAndDiesWithItsPrinter)
{
    EXPECT_EQ(ReferencesOf(printer.Get()), 3u); // the printer, its container, its point
    EXPECT_EQ(ReferencesOf(point.Get()), 3u);
}

TEST_F(ConnectionPoint, KeepsItsPrinterAlive)
{
    printer.Reset();
    container.Reset();
    EXPECT_EQ(point->GetConnectionPointContainer(&container), S_OK);
    EXPECT_EQ(container.As(&printer), S_OK);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Label");
}

TEST_F(ConnectionPoint, IsNotThePrinterItself)
{
    ComPtr<IPrinter> other;
    ComPtr<IConnectionPointContainer> otherContainer;
    EXPECT_EQ(point.As(&other), E_NOINTERFACE);
    EXPECT_EQ(point.As(&otherContainer), E_NOINTERFACE);
    EXPECT_EQ(point->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ConnectionPoint, RefusesNullPointers)
{
    EXPECT_EQ(point->GetConnectionInterface(nullptr), E_POINTER);
    EXPECT_EQ(point->GetConnectionPointContainer(nullptr), E_POINTER);
    EXPECT_EQ(point->EnumConnections(nullptr), E_POINTER);
}

// Sinks

TEST_F(ConnectionPoint, TakesManySinks)
{
    std::vector<DWORD> cookies;
    for (int i = 0; i < 100; ++i) cookies.push_back(Advise());
    EXPECT_EQ(sink->References(), 101u);
    for (const DWORD cookie : cookies) EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

TEST_F(ConnectionPoint, LetsGoOfASinkThatStayedConnectedWhenThePrinterFellUnbound)
{
    const DWORD cookie = Advise();
    EXPECT_EQ(Initialize(*printer.Get(), L"No such printer"), couldNotOpenPrinter.result);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

TEST_F(ConnectionPoint, RaisesNothingForTheObjectsOwnSetters)
{
    const DWORD cookie = Advise();
    const DWORD thread = ::GetCurrentThreadId();
    EXPECT_EQ(printer->put_Comment(NewBstr(L"New").Get()), S_OK);
    for (const auto& call : sink->Calls()) EXPECT_NE(call.threadId, thread);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

// The notification thread, and the list of printers that it serves

class NotificationThread : public ConnectionPoint {
protected:
    static constexpr const char* started = "Entering XJobStatusThread::TheadStart ";
    static constexpr const char* ended = "*** Exiting XJobStatusThread::TheadStart ";
    static constexpr const char* added = "Printer added to reference array\n";
    static constexpr const char* removed = "Printer removed from reference array\n";

    /// How often the thread was started, told when all objects of the printer have gone and it has been joined.
    size_t Starts()
    {
        Connect({});
        EXPECT_EQ(trace.Count(ended), trace.Count(started));
        return trace.Count(started);
    }

    const ProductTrace trace{Product()};
};

TEST_F(NotificationThread, IsOneForAllObjectsOfAPrinter)
{
    const DWORD cookie = Advise();
    const auto keptPrinter = printer;
    const auto keptPoint = point;
    Connect(BoundPrinter(L"LABEL"));
    EXPECT_EQ(point->Unadvise(Advise()), S_OK);
    EXPECT_EQ(keptPoint->Unadvise(cookie), S_OK);
    EXPECT_EQ(trace.Count(added), 2u);
    EXPECT_EQ(trace.Count(removed), 2u);
    EXPECT_LE(trace.Count(started), 1u);
}

TEST_F(NotificationThread, IsStartedAnewWhenThePrinterIsOpenedAnew)
{
    EXPECT_EQ(point->Unadvise(Advise()), S_OK);
    EXPECT_EQ(Starts(), 1u);
    Connect(BoundPrinter());
    EXPECT_EQ(point->Unadvise(Advise()), S_OK);
    EXPECT_EQ(Starts(), 2u);
}

// Enumerators of connection points

class PointEnumerator : public ConnectionPoint {
protected:
    void SetUp() override
    {
        ConnectionPoint::SetUp();
        EXPECT_EQ(container->EnumConnectionPoints(&points), S_OK);
    }

    void TearDown() override
    {
        points.Reset();
        ConnectionPoint::TearDown();
    }

    ComPtr<IEnumConnectionPoints> points;
};

TEST_F(PointEnumerator, GivesTheOnePointAndThenNothing)
{
    ComPtr<IConnectionPoint> only;
    ULONG fetched = 99;
    EXPECT_EQ(points->Next(1, &only, &fetched), S_OK);
    EXPECT_EQ(fetched, 1u);
    EXPECT_EQ(only.Get(), point.Get());
    EXPECT_EQ(points->Next(1, &only, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);
}

TEST_F(PointEnumerator, KeepsThePrinterAndTheModule)
{
    Connect({});
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE);
    ComPtr<IConnectionPoint> only;
    EXPECT_EQ(points->Next(1, &only, nullptr), S_OK);
    EXPECT_EQ(only->GetConnectionPointContainer(&container), S_OK);
    EXPECT_EQ(container.As(&printer), S_OK);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Label");
}

// Enumerators of connections

/// The connections that an enumerator gives from its place on, each reference given back.
std::vector<CONNECTDATA> Rest(IEnumConnections& connections)
{
    std::vector<CONNECTDATA> rest;
    for (CONNECTDATA one{}; connections.Next(1, &one, nullptr) == S_OK; one.pUnk->Release()) rest.push_back(one);
    return rest;
}

std::vector<DWORD> CookiesOf(IEnumConnections& connections)
{
    std::vector<DWORD> cookies;
    for (const CONNECTDATA& one : Rest(connections)) cookies.push_back(one.dwCookie);
    return cookies;
}

class ConnectionEnumerator : public ConnectionPoint {
protected:
    using Cookies = std::vector<DWORD>;

    void SetUp() override
    {
        ConnectionPoint::SetUp();
        first = Advise();
        second = Advise();
        third = Advise();
        EXPECT_EQ(point->EnumConnections(&connections), S_OK);
    }

    void TearDown() override
    {
        connections.Reset();
        for (const DWORD cookie : {first, second, third}) point->Unadvise(cookie);
        ConnectionPoint::TearDown();
    }

    DWORD first = 0;
    DWORD second = 0;
    DWORD third = 0;
    ComPtr<IEnumConnections> connections;
};

TEST_F(ConnectionEnumerator, GivesEachSinkWithItsCookie)
{
    const auto all = Rest(*connections.Get());
    EXPECT_EQ(all.size(), 3u);
    for (const CONNECTDATA& one : all) EXPECT_EQ(one.pUnk, static_cast<IUnknown*>(sink.Get()));
    EXPECT_EQ(connections->Reset(), S_OK);
    EXPECT_EQ(CookiesOf(*connections.Get()), (Cookies{first, second, third}));
}

TEST_F(ConnectionEnumerator, GivesSeveralAtOnceEachWithAReferenceOfTheCallers)
{
    std::array<CONNECTDATA, 5> given{};
    ULONG fetched = 99;
    const ULONG before = sink->References();
    EXPECT_EQ(connections->Next(2, given.data(), &fetched), S_OK);
    EXPECT_EQ(fetched, 2u);
    EXPECT_EQ(sink->References(), before + 2);
    EXPECT_EQ(connections->Next(3, given.data() + 2, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 1u);
    EXPECT_EQ(given[2].dwCookie, third);
    for (int i = 0; i < 3; ++i) given[static_cast<size_t>(i)].pUnk->Release();
    EXPECT_EQ(sink->References(), before);
}

TEST_F(ConnectionEnumerator, IsASnapshot)
{
    const DWORD late = Advise();
    EXPECT_EQ(point->Unadvise(second), S_OK);
    EXPECT_EQ(CookiesOf(*connections.Get()), (Cookies{first, second, third}));
    EXPECT_EQ(point->Unadvise(late), S_OK);
}

TEST_F(ConnectionEnumerator, KeepsItsSinksAlive)
{
    for (const DWORD cookie : {first, second, third}) EXPECT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_EQ(sink->References(), 4u);
    connections.Reset();
    EXPECT_EQ(sink->References(), 1u);
}

} // namespace
