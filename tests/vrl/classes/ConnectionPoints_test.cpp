// SPDX-License-Identifier: MIT
#include "vrl/classes/_IPrintJobEvents_CP.h"
#include "vrl/classes/_IPrintQueueEvents_CP.h"
#include "vrl/classes/_IPrinterEvents_CP.h"

#include "support/CapturedTrace.h"
#include "support/com/ScriptedSink.h"
#include "vrl/frame/AutomationObject.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Microsoft::WRL::ComPtr;

#ifdef _DEBUG
constexpr bool debugBuild = true;
#else
constexpr bool debugBuild = false;
#endif

/// An object whose one connection point is of the kind under test.
template <template <class> class Point>
class Speaker final : public AutomationObject<Speaker<Point>, IPrintJobsFilter>, public Point<Speaker<Point>> {
public:
    HRESULT FirstSinkConnecting() noexcept { return S_OK; }
    void LastSinkGone() noexcept {}
};

struct PrinterPoint {
    using Object = Speaker<IPrinterEvents_CP>;
    static constexpr const IID& events = __uuidof(_IPrinterEvents);
    static constexpr const char* file = "driver/automation/vrl/_IPrinterEvents_CP.h";
};
struct QueuePoint {
    using Object = Speaker<IPrintQueueEvents_CP>;
    static constexpr const IID& events = __uuidof(_IPrintQueueEvents);
    static constexpr const char* file = "driver/automation/vrl/_IPrintQueueEvents_CP.h";
};
struct JobPoint {
    using Object = Speaker<IPrintJobEvents_CP>;
    static constexpr const IID& events = __uuidof(_IPrintJobEvents);
    static constexpr const char* file = "driver/automation/vrl/_IPrintJobEvents_CP.h";
};

template <class Kind>
class ConnectionPoints : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(CreateInstance(object.GetAddressOf()), S_OK);
        ComPtr<IConnectionPoint> point;
        ASSERT_EQ(object->ConnectionPointContainer()->FindConnectionPoint(Kind::events, &point), S_OK);
        DWORD cookie = 0;
        ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
    }

    /// Whether a sink's answer breaks the assertion on answers.
    bool IsReported(HRESULT answer)
    {
        const CapturedTrace trace;
        sink.onInvoke = [=](DISPID, DISPPARAMS*) { return answer; };
        EXPECT_EQ(object->Fire(1, EventArguments()), answer);
        const bool reported =
            trace.Has("Debug assertion failed: ((HRESULT)(hr) >= 0) || (hr == ((HRESULT)0x80020003L))\n");
        EXPECT_EQ(trace.HasFrom(Kind::file), reported);
        return reported;
    }

    ScriptedSink sink;
    ComPtr<typename Kind::Object> object;
};

using Kinds = ::testing::Types<PrinterPoint, QueuePoint, JobPoint>;
TYPED_TEST_SUITE(ConnectionPoints, Kinds);

TYPED_TEST(ConnectionPoints, DebugBuildReportsTheFailureOfASink)
{
    EXPECT_EQ(this->IsReported(E_FAIL), debugBuild);
    EXPECT_EQ(this->IsReported(DISP_E_BADPARAMCOUNT), debugBuild);
}

TYPED_TEST(ConnectionPoints, SinkThatDoesNotHaveTheEventIsNoFailure)
{
    EXPECT_FALSE(this->IsReported(DISP_E_MEMBERNOTFOUND));
    EXPECT_FALSE(this->IsReported(S_OK));
    EXPECT_FALSE(this->IsReported(S_FALSE));
}

} // namespace
