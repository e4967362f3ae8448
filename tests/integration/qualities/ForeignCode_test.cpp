// SPDX-License-Identifier: MIT
#include "support/ImportHook.h"
#include "support/Raising.h"
#include "support/RowName.h"
#include "support/TemporaryDirectory.h"
#include "support/com/LateBound.h"
#include "support/com/ScriptedSink.h"
#include "support/product/JobClientTest.h"
#include "support/product/ProductDialogs.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <vector>

// Whatever foreign code raises, the host lives, and the object goes on working. docs/architecture.md lists the places.

namespace {

/// Code that is called by the product and raises in one of the ways that there are.
class ForeignCode : public IntegrationTest, public ::testing::WithParamInterface<RaisedKind> {
protected:
    void Raise() const { GetParam().raise(); }

    const ProductDialogs dialogs{Product()}; // the person says no
};

INSTANTIATE_TEST_SUITE_P(Kinds, ForeignCode, ::testing::ValuesIn(raisedKinds), rowName);

// The spooler

/// The calls of the spooler that the members of a printer come to.
constexpr std::array spoolerImports{"OpenPrinterW", "GetPrinterDataW", "GetPrinterDataExW", "GetPrinterW",
                                    "SetPrinterW",  "EnumJobsW",       "StartDocPrinterW",  "StartPagePrinter",
                                    "WritePrinter", "EndPagePrinter",  "EndDocPrinter"};

class RaisingSpooler : public ForeignCode {
protected:
    /// A life of an object that comes to every call; the results are those of a spooler that raises somewhere.
    std::vector<HRESULT> UseEverything()
    {
        const auto printer = CreatePrinter();
        const auto status = StatusOf(*printer.Get());
        const auto name = NewBstr(printerName);
        const auto file = NewBstr(folder.Path(L"label.lbl"));
        OwnedBstr text;
        VARIANT_BOOL flag = VARIANT_FALSE;
        unsigned long pages = 0;
        return {printer->Initialize(name.Get()),    printer->get_Comment(text.Receive()),
                printer->get_Shared(&flag),         printer->put_Comment(name.Get()),
                printer->put_ShareName(name.Get()), printer->SendFile(file.Get(), nullptr),
                status->get_Text(text.Receive()),   status->get_PaperOut(&flag),
                status->get_Error(&flag),           status->get_OdometerPages(&pages)};
    }

    const TemporaryDirectory folder;
};

INSTANTIATE_TEST_SUITE_P(Kinds, RaisingSpooler, ::testing::ValuesIn(raisedKinds), rowName);

TEST_P(RaisingSpooler, CostsTheCallAndNothingElse)
{
    folder.Make(L"label.lbl", "^XA^XZ");
    for (const char* const import : spoolerImports) {
        {
            const ImportSlots hook(import, reinterpret_cast<void*>(GetParam().raise), Product().Handle());
            EXPECT_TRUE(std::ranges::any_of(UseEverything(), [](HRESULT result) { return FAILED(result); })) << import;
        }
        ::SetErrorInfo(0, nullptr);
        EXPECT_THAT(UseEverything(), ::testing::Each(S_OK)) << import;
        SpoolerTest::SetUp(); // what was opened and could not be closed, written and not finished
    }
}

/// The same for the objects that speak of jobs.
class RaisingSpoolerOfJobs : public JobClientTest, public ::testing::WithParamInterface<RaisedKind> {
protected:
    static ImportSlots RaiseIn(const char* import)
    {
        return ImportSlots(import, reinterpret_cast<void*>(GetParam().raise), Product().Handle());
    }

    std::vector<HRESULT> UseEverything() const
    {
        const auto job = Create<IPrintJob>(__uuidof(PrintJob));
        const auto jobs = Create<IPrintJobs>(__uuidof(PrintJobs));
        const auto queue = QueueOf(*BoundPrinter().Get());
        return {Bind(*job.Get(), jobId), job->put_NotifyUser(NewBstr(L"Eva").Get()),
                ScheduleOf(*job.Get())->put_Priority(50), queue->EnumerateJobs(jobs.Get(), VARIANT{})};
    }

    /// A world without what was opened and could not be closed.
    void StartOver()
    {
        SpoolerTest::SetUp();
        jobId = AddJob(QueuedJob());
    }

    const ProductDialogs dialogs{Product()}; // the person says no
};

INSTANTIATE_TEST_SUITE_P(Kinds, RaisingSpoolerOfJobs, ::testing::ValuesIn(raisedKinds), rowName);

TEST_P(RaisingSpoolerOfJobs, CostsTheCallAndNothingElse)
{
    for (const char* const import : {"GetJobW", "SetJobW", "EnumJobsW", "FindFirstPrinterChangeNotification"}) {
        {
            const ImportSlots hook = RaiseIn(import);
            EXPECT_TRUE(std::ranges::any_of(UseEverything(), [](HRESULT result) { return FAILED(result); })) << import;
        }
        ::SetErrorInfo(0, nullptr);
        EXPECT_THAT(UseEverything(), ::testing::Each(S_OK)) << import;
        StartOver();
    }
}

TEST_P(RaisingSpoolerOfJobs, CostsNothingWhenItIsGivenSomethingBack)
{
    {
        const ImportSlots close = RaiseIn("ClosePrinter");
        const ImportSlots closeNotification = RaiseIn("FindClosePrinterChangeNotification");
        const ImportSlots freeInfo = RaiseIn("FreePrinterNotifyInfo");
        const auto job = OpenJob(jobId);
        const Connection sink = Watch(*job.Get(), "job");
        EXPECT_EQ(Text(*job.Get(), &IPrintJob::get_Name), L"Pallet 7");
        EXPECT_EQ(::SpoolerQueueBatch(printerName, 0, {Status(jobId, JOB_STATUS_DELETED)}), 0u);
        EXPECT_TRUE(log.WaitFor(3));
        EXPECT_EQ(log.Take().back(), "job: OnJobFinalized(job 1)");
    }
    StartOver();
}

// Sinks

TEST_P(ForeignCode, SinkThatIsAskedForItsEventsIsRefused)
{
    const auto printer = BoundPrinter();
    ComPtr<IConnectionPointContainer> container;
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(printer.As(&container), S_OK);
    ASSERT_EQ(container->FindConnectionPoint(__uuidof(_IPrinterEvents), &point), S_OK);
    ScriptedSink sink;
    DWORD cookie = 99;
    sink.onQueryInterface = [&] { Raise(); };
    EXPECT_EQ(point->Advise(&sink, &cookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(cookie, 0u);
    sink.onQueryInterface = nullptr;
    EXPECT_EQ(point->Advise(&sink, &cookie), S_OK);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

TEST_P(ForeignCode, SinkThatIsReleasedIsForgotten)
{
    const auto printer = BoundPrinter();
    ComPtr<IConnectionPointContainer> container;
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(printer.As(&container), S_OK);
    ASSERT_EQ(container->FindConnectionPoint(__uuidof(_IPrinterEvents), &point), S_OK);
    ScriptedSink disconnected;
    ScriptedSink left;
    DWORD cookie = 0;
    EXPECT_EQ(point->Advise(&disconnected, &cookie), S_OK);
    disconnected.onRelease = [&] { Raise(); };
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_EQ(point->Advise(&left, &cookie), S_OK);
    left.onRelease = [&] { Raise(); };
}

// Objects given as arguments

TEST_P(ForeignCode, ArgumentThatIsAskedForItsValueFailsTheCall)
{
    const auto printer = BoundPrinter();
    ScriptedSink argument;
    argument.onInvoke = [&](DISPID, DISPPARAMS*) {
        Raise();
        return S_OK;
    };
    _variant_t value(static_cast<IDispatch*>(&argument));
    EXPECT_TRUE(FAILED(LateBound(printer.Get()).Put("Comment", value).result));
    EXPECT_TRUE(FAILED(LateBound(printer.Get()).Call("Initialize", {value}).result));
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Comment), L"Shipping labels");
}

} // namespace
