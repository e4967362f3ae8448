// SPDX-License-Identifier: MIT
#include "vrl/driver/PortMonitor.h"

#include "support/driver/ScriptedMonitor.h"
#include "support/ImportHook.h"
#include "support/RandomSeed.h"
#include "support/Raising.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>

namespace {

using namespace std::string_view_literals;

constexpr DWORD testLimitMs = 60000;
constexpr const char* monitorExports[] = {"SendQRMLRequest", "HTTPResponse_Size", "HTTPResponse_Data",
                                          "HTTPResponse_Free"};

class PortMonitorTest : public ::testing::Test {
protected:
    void SetUp() override { ScriptedMonitor::Install(path); }

    void TearDown() override
    {
        EXPECT_EQ(monitor.LivingResponses(), 0u) << "an answer was not freed";
        EXPECT_FALSE(monitor.IsLoaded()) << "the module was left loaded";
    }

    DWORD Send(const char* request = "<request />")
    {
        return PortMonitor(OString(path.c_str())).Send(OString("Label"), request, answer);
    }

    DWORD Post(const char* request = "<request />")
    {
        return PortMonitor(OString(path.c_str())).Post(OString("Label"), request);
    }

    std::string Answer() const { return {reinterpret_cast<const char*>(answer.GetData()), size_t(answer.GetSize())}; }

    TemporaryDirectory folder;
    std::wstring path = folder.Path(L"kvnetmon.d64");
    ScriptedMonitor monitor;
    OTypedArray<unsigned char> answer;
};

TEST_F(PortMonitorTest, SendsPrinterAndRequestAndReadsTheAnswer)
{
    monitor.AnswerWith("1;Paper Out\0"sv);
    EXPECT_EQ(Send("<state />"), 1u);
    EXPECT_EQ(Answer(), "1;Paper Out\0"sv);
    ASSERT_EQ(monitor.Requests().size(), 1u);
    EXPECT_EQ(monitor.Requests()[0].printer, L"Label");
    EXPECT_EQ(monitor.Requests()[0].text, "<state />");
    EXPECT_TRUE(monitor.Requests()[0].wantsAnswer);
}

TEST_F(PortMonitorTest, PostWantsNoAnswer)
{
    monitor.result = 17;
    EXPECT_EQ(Post("<query />"), 17u);
    ASSERT_EQ(monitor.Requests().size(), 1u);
    EXPECT_EQ(monitor.Requests()[0].printer, L"Label");
    EXPECT_EQ(monitor.Requests()[0].text, "<query />");
    EXPECT_FALSE(monitor.Requests()[0].wantsAnswer);
}

TEST_F(PortMonitorTest, ResultIsTheMonitorsOwn)
{
    for (const DWORD result : {1u, 2u, 0x80000000u, 0xFFFFFFFFu}) {
        monitor.result = result;
        EXPECT_EQ(Send(), result);
        EXPECT_EQ(Post(), result);
    }
}

TEST_F(PortMonitorTest, IsLoadedAndReleasedAroundEveryRequest)
{
    for (int round = 1; round <= 3; ++round) {
        Send();
        EXPECT_EQ(monitor.Loads(), round);
        EXPECT_FALSE(monitor.IsLoaded());
    }
    Post();
    EXPECT_EQ(monitor.Loads(), 4);
}

TEST_F(PortMonitorTest, AnswerHasExactlyTheSizeThatIsTold)
{
    for (const size_t size : {size_t{1}, size_t{2}, size_t{4095}, size_t{4096}, size_t{4097}, size_t{1} << 20}) {
        monitor.answer.assign(size, 'x');
        monitor.answer.front() = '\0';
        EXPECT_EQ(Send(), 1u);
        EXPECT_EQ(Answer(), monitor.answer) << size;
    }
}

TEST_F(PortMonitorTest, LongerAnswerOfBeforeIsReplaced)
{
    answer.SetSize(100);
    monitor.AnswerWith("1");
    Send();
    EXPECT_EQ(Answer(), "1");
}

TEST_F(PortMonitorTest, NothingIsReadAfterAZeroResultButTheAnswerIsFreed)
{
    answer.Add('x');
    monitor.AnswerWith("1;Ready");
    monitor.result = 0;
    EXPECT_EQ(Send(), 0u);
    EXPECT_EQ(Answer(), "x");
    EXPECT_EQ(monitor.SizeCalls(), 0);
    EXPECT_EQ(monitor.DataCalls(), 0);
}

TEST_F(PortMonitorTest, NothingIsReadWithoutAHandle)
{
    answer.Add('x');
    monitor.givesHandle = false;
    EXPECT_EQ(Send(), 1u);
    EXPECT_EQ(Answer(), "x");
    EXPECT_EQ(monitor.SizeCalls(), 0);
}

TEST_F(PortMonitorTest, AnswerWithoutBytesLeavesTheArrayAsItWas)
{
    answer.Add('x');
    for (const LONG size : {0l, -1l, LONG_MIN}) {
        monitor.size = [size](void*) { return size; };
        EXPECT_EQ(Send(), 1u) << size;
        EXPECT_EQ(Answer(), "x") << size;
    }
    EXPECT_EQ(monitor.DataCalls(), 0);
}

TEST_F(PortMonitorTest, MissingFileIsAFailure)
{
    path = folder.Path(L"missing.d64");
    EXPECT_EQ(Send(), 0u);
    EXPECT_EQ(Post(), 0u);
}

TEST_F(PortMonitorTest, FileThatIsNoModuleIsAFailure)
{
    path = folder.Make(L"text.d64", "no module");
    EXPECT_EQ(Send(), 0u);
    EXPECT_EQ(Post(), 0u);
}

TEST_F(PortMonitorTest, EmptyPathIsAFailure)
{
    path.clear();
    EXPECT_EQ(Send(), 0u);
    EXPECT_EQ(Post(), 0u);
}

TEST_F(PortMonitorTest, SendNeedsAllFourExports)
{
    monitor.AnswerWith("1;Ready");
    for (const char* const without : monitorExports) {
        ScriptedMonitor::Install(path, without);
        EXPECT_EQ(Send(), 0u) << without;
    }
    EXPECT_TRUE(monitor.Requests().empty());
    EXPECT_TRUE(answer.IsEmpty());
}

TEST_F(PortMonitorTest, PostNeedsOnlyItsOwnExport)
{
    for (const char* const without : monitorExports) {
        ScriptedMonitor::Install(path, without);
        EXPECT_EQ(Post(), without == "SendQRMLRequest"sv ? 0u : 1u) << without;
    }
}

// ---- a monitor that isn't well ----

/// Lets one step of the monitor be followed by something else.
template <class After>
void LetStepBeFollowedBy(ScriptedMonitor& monitor, size_t step, After after)
{
    if (step == 0) {
        monitor.sendRequest = [&monitor, after](const wchar_t* printer, const char* request, void** response) {
            const DWORD result = monitor.PlainSendRequest(printer, request, response);
            after();
            return result;
        };
    }
    if (step == 1) {
        monitor.size = [&monitor, after](void* response) {
            after();
            return monitor.PlainSize(response);
        };
    }
    if (step == 2) {
        monitor.data = [&monitor, after](void* response, BYTE* buffer) {
            monitor.PlainData(response, buffer);
            after();
        };
    }
    if (step == 3) {
        monitor.free = [&monitor, after](void* response) {
            monitor.PlainFree(response);
            after();
        };
    }
}

class PortMonitorCrash : public PortMonitorTest, public ::testing::WithParamInterface<size_t> {};

TEST_P(PortMonitorCrash, ComesOutAndLeavesNothingBehind)
{
    monitor.AnswerWith("1;Ready");
    LetStepBeFollowedBy(monitor, GetParam(), WriteToNowhere);
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(FaultOf([this] { Send(); }), EXCEPTION_ACCESS_VIOLATION);
        EXPECT_EQ(monitor.LivingResponses(), 0u);
        EXPECT_FALSE(monitor.IsLoaded());
    }
}

TEST_P(PortMonitorCrash, MayBeAnExceptionOfAnyKind)
{
    monitor.AnswerWith("1;Ready");
    for (const RaisedKind& kind : raisedKinds) {
        LetStepBeFollowedBy(monitor, GetParam(), kind.raise);
        for (int round = 0; round < 3; ++round) {
            EXPECT_TRUE(RaisesOut([this] { Send(); })) << kind.name;
            EXPECT_EQ(monitor.LivingResponses(), 0u) << kind.name;
            EXPECT_FALSE(monitor.IsLoaded()) << kind.name;
        }
    }
}

TEST_P(PortMonitorCrash, MayBeAnExceptionOfForeignCode)
{
    LetStepBeFollowedBy(monitor, GetParam(), ThrowAsForeignCode);
    monitor.AnswerWith("1;Ready");
    EXPECT_THROW(RunTranslated([this] { Send(); }), ForeignException);
}

INSTANTIATE_TEST_SUITE_P(InEachStep, PortMonitorCrash, ::testing::Range(size_t{0}, std::size(monitorExports)),
                         [](const auto& test) { return std::string(monitorExports[test.param]); });

TEST_F(PortMonitorTest, ExceptionOfAnyKindInAPostComesOut)
{
    for (const RaisedKind& kind : raisedKinds) {
        LetStepBeFollowedBy(monitor, 0, kind.raise);
        EXPECT_TRUE(RaisesOut([this] { Post(); })) << kind.name;
        EXPECT_FALSE(monitor.IsLoaded()) << kind.name;
    }
}

TEST_F(PortMonitorTest, SecondExceptionWhileTheAnswerIsFreedIsDropped)
{
    monitor.AnswerWith("1;Ready");
    LetStepBeFollowedBy(monitor, 2, WriteToNowhere);
    for (const RaisedKind& kind : raisedKinds) {
        LetStepBeFollowedBy(monitor, 3, kind.raise);
        EXPECT_EQ(FaultOf([this] { Send(); }), EXCEPTION_ACCESS_VIOLATION) << kind.name;
    }
}

TEST_F(PortMonitorTest, WriteBehindTheBufferOfTheAnswerIsAFaultAndNoDamage)
{
    for (const size_t size : {size_t{1}, size_t{100}, size_t{4096}}) {
        monitor.answer.assign(size, 'x');
        monitor.data = [this](void* response, BYTE* buffer) {
            monitor.PlainData(response, buffer);
            buffer[monitor.answer.size()] = 'y';
        };
        EXPECT_EQ(FaultOf([this] { Send(); }), EXCEPTION_ACCESS_VIOLATION) << size;
    }
}

TEST_F(PortMonitorTest, WriteBehindThePlaceOfTheHandleIsAFaultAndNoDamage)
{
    monitor.sendRequest = [this](const wchar_t* printer, const char* request, void** response) {
        const DWORD result = monitor.PlainSendRequest(printer, request, response);
        response[1] = nullptr;
        return result;
    };
    EXPECT_EQ(FaultOf([this] { Send(); }), EXCEPTION_ACCESS_VIOLATION);
}

TEST_F(PortMonitorTest, MonitorThatReleasesItselfIsThereUntilTheRequestEnds)
{
    monitor.AnswerWith("1;Ready");
    for (size_t step = 0; step < std::size(monitorExports); ++step) {
        ScriptedMonitor releasing;
        releasing.answer = monitor.answer;
        LetStepBeFollowedBy(releasing, step, [this] { ::FreeLibrary(::GetModuleHandleW(path.c_str())); });
        EXPECT_EQ(Send(), 1u) << step;
        EXPECT_EQ(Answer(), "1;Ready") << step;
        EXPECT_EQ(releasing.LivingResponses(), 0u) << step;
        EXPECT_FALSE(releasing.IsLoaded()) << step;
    }
}

TEST_F(PortMonitorTest, LateAnswerHoldsUpNobodyElse)
{
    const OWaitHandle entered(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
    const OWaitHandle release(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    monitor.AnswerWith("1;Ready");
    monitor.sendRequest = [&](const wchar_t* printer, const char* request, void** response) {
        if (request == "late"sv) {
            ::SetEvent(entered.Get());
            ::WaitForSingleObject(release.Get(), testLimitMs);
        }
        return monitor.PlainSendRequest(printer, request, response);
    };
    std::thread late([&] {
        OTypedArray<unsigned char> lateAnswer;
        EXPECT_EQ(PortMonitor(OString(path.c_str())).Send(OString("Label"), "late", lateAnswer), 1u);
        EXPECT_EQ(lateAnswer.GetSize(), 7);
    });
    EXPECT_EQ(::WaitForSingleObject(entered.Get(), testLimitMs), WAIT_OBJECT_0);
    EXPECT_EQ(Send("prompt"), 1u);
    EXPECT_EQ(Answer(), "1;Ready");
    ::SetEvent(release.Get());
    late.join();
}

/// Lets the calls of VirtualAlloc that commit memory fail, from the nth on.
class CommitFailure {
public:
    explicit CommitFailure(int allowed) : _hook("VirtualAlloc", Allocate)
    {
        original = _hook.Original();
        left = allowed;
    }

private:
    static void* WINAPI Allocate(void* address, SIZE_T size, DWORD kind, DWORD protection)
    {
        if ((kind & MEM_COMMIT) && left-- <= 0) return nullptr;
        return original(address, size, kind, protection);
    }

    static inline decltype(::VirtualAlloc)* original;
    static inline int left;
    ImportHook<decltype(::VirtualAlloc)> _hook;
};

TEST_F(PortMonitorTest, AnswerForWhichThereIsNoMemoryIsAFailure)
{
    monitor.AnswerWith("1;Ready");
    for (const int allowed : {0, 1}) {
        const CommitFailure failure(allowed);
        EXPECT_EQ(Send(), 0u) << allowed;
    }
    EXPECT_EQ(monitor.DataCalls(), 0);
    EXPECT_EQ(Send(), 1u);
}

using PortMonitorProperty = PortMonitorTest;

TEST_F(PortMonitorProperty, NoAnswerMakesItStumble)
{
    const int count = RandomOperations(1'000, 100'000);
    const PortMonitor keepsItLoaded{OString(path.c_str())}; // loading takes most of the time
    std::mt19937_64 random(RandomSeed());
    for (int round = 0; round < count; ++round) {
        monitor.answer.resize(random() % 8 == 0 ? random() % 100000 : random() % 32);
        for (char& byte : monitor.answer) byte = static_cast<char>(random());
        monitor.result = static_cast<DWORD>(random() % 4 == 0 ? 0 : random());
        monitor.givesHandle = random() % 8 != 0;
        const bool expected = monitor.result != 0 && monitor.givesHandle && !monitor.answer.empty();
        answer.RemoveAll();
        ASSERT_EQ(Send(), monitor.result) << "round " << round;
        ASSERT_EQ(Answer(), expected ? monitor.answer : "") << "round " << round;
        ASSERT_EQ(monitor.LivingResponses(), 0u) << "round " << round;
    }
}

} // namespace
