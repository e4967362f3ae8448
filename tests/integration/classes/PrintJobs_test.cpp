// SPDX-License-Identifier: MIT
#include "support/com/ApartmentThread.h"
#include "support/com/LateBound.h"
#include "support/com/ScriptHost.h"
#include "support/product/JobClientTest.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>

// What the class does is held by tests/vrl/classes/PrintJobs_test.cpp. Here: what it takes the module for.

namespace {

using ::testing::ElementsAre;

class JobsObject : public JobClientTest {
protected:
    void SetUp() override
    {
        JobClientTest::SetUp();
        jobs = Create<IPrintJobs>(__uuidof(PrintJobs));
        late = std::make_unique<LateBound>(jobs.Get());
    }

    void TearDown() override
    {
        LetGo();
        JobClientTest::TearDown();
    }

    void LetGo()
    {
        late.reset();
        jobs.Reset();
    }

    static _variant_t Object(IDispatch* object) { return _variant_t(object); }

    /// The number of a job that came as a late-bound result; -1 if none did.
    static long NumberOf(const _variant_t& value)
    {
        ComPtr<IPrintJob> job;
        if (value.vt != VT_DISPATCH || !value.pdispVal || FAILED(value.pdispVal->QueryInterface(IID_PPV_ARGS(&job)))) {
            return -1;
        }
        long number = -1;
        job->get_JobId(&number);
        return number;
    }

    ComPtr<IPrintJobs> jobs;
    std::unique_ptr<LateBound> late;
};

TEST_F(JobsObject, AnswersByName)
{
    const auto job = OpenJob(jobId);
    const auto other = OpenJob(AddJob(QueuedJob()));
    EXPECT_EQ(late->Call("Add", {Object(job.Get())}).result, S_OK);
    EXPECT_EQ(late->Call("Add", {Object(other.Get())}).result, S_OK);
    EXPECT_EQ(late->Get("Count").value, _variant_t(2L));
    EXPECT_EQ(NumberOf(late->Get("Item", {1L}).value), 1);
    EXPECT_EQ(NumberOf(late->Get("Item", {2L}).value), 2);
    EXPECT_EQ(NumberOf(late->Call("Find", {printerName, 2L}).value), 2);
    EXPECT_EQ(late->Get("_NewEnum").value.vt, VT_UNKNOWN);
    EXPECT_EQ(late->Call("Remove", {Object(job.Get())}).result, S_OK);
    EXPECT_EQ(NumberOf(late->Get("Item", {1L}).value), 2);
    EXPECT_EQ(late->Call("RemoveAll", {}).result, S_OK);
    EXPECT_EQ(late->Get("Count").value, _variant_t(0L));
}

TEST_F(JobsObject, ItemIsItsDefaultMember)
{
    const auto job = OpenJob(jobId);
    EXPECT_EQ(jobs->Add(job.Get()), S_OK);
    _variant_t first(1L);
    _variant_t item;
    DISPPARAMS parameters{&first, nullptr, 1, 0};
    EXPECT_EQ(jobs->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &parameters, &item,
                           nullptr, nullptr),
              S_OK);
    EXPECT_EQ(item.pdispVal, static_cast<IDispatch*>(job.Get()));
}

TEST_F(JobsObject, WhatIsNotThereIsNoErrorInAScript)
{
    const auto job = OpenJob(jobId);
    EXPECT_EQ(AnswerOf(jobs->Add(job.Get())), succeeded);
    EXPECT_EQ(AnswerOf(jobs->Add(OpenJob(jobId).Get())), saysFalse);
    EXPECT_EQ(AnswerOf(jobs->Remove(OpenJob(4711).Get())), saysFalse);
    const LateResult found = late->Call("Find", {printerName, 4711L});
    EXPECT_TRUE(SUCCEEDED(found.result));
    EXPECT_EQ(NumberOf(found.value), -1);
    EXPECT_EQ(late->Get("Count").value, _variant_t(1L));
}

TEST_F(JobsObject, FindKnowsTheLetterCaseThatInitializeDoesNot)
{
    EXPECT_EQ(jobs->Add(OpenJob(jobId).Get()), S_OK);
    ComPtr<IPrintJob> found;
    EXPECT_EQ(AnswerOf(jobs->Find(NewBstr(L"LABEL").Get(), 1, &found)), saysFalse);
    const auto same = Create<IPrintJob>(__uuidof(PrintJob));
    EXPECT_EQ(Bind(*same.Get(), jobId, L"LABEL"), S_OK);
    EXPECT_EQ(Text(*same.Get(), &IPrintJob::get_Name), L"Pallet 7");
}

TEST_F(JobsObject, GivesItsFailuresToALateBoundCaller)
{
    for (const long number : {0L, 1L, -1L}) {
        const LateResult missing = late->Get("Item", {number});
        EXPECT_EQ(missing.result, DISP_E_EXCEPTION);
        EXPECT_EQ(missing.code, invalidArgument.result);
        EXPECT_EQ(missing.description, L"Invalid argument");
        EXPECT_EQ(missing.source, L"Vorlane.Jobs.1");
    }
    EXPECT_EQ(late->Call("Add", {Object(nullptr)}).code, invalidArgument.result);
    EXPECT_EQ(late->Call("Add", {1L}).result, DISP_E_TYPEMISMATCH);
}

TEST_F(JobsObject, NullPointersAreInvalid)
{
    EXPECT_EQ(AnswerOf(jobs->get_Count(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(jobs->get_Item(1, nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(jobs->get__NewEnum(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(jobs->Create(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(jobs->Add(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(jobs->Remove(nullptr)), invalidArgument);
    ComPtr<IPrintJob> found;
    EXPECT_EQ(AnswerOf(jobs->Find(nullptr, 1, &found)), invalidArgument);
    EXPECT_EQ(AnswerOf(jobs->Find(NewBstr(L"Label").Get(), 1, nullptr)), invalidArgument);
}

TEST_F(JobsObject, CreatesAJobThatALateBoundCallerOwns)
{
    const _variant_t made = late->Call("Create", {}).value;
    ASSERT_EQ(made.vt, VT_DISPATCH);
    made.pdispVal->AddRef();
    EXPECT_EQ(made.pdispVal->Release(), 1u);
    EXPECT_EQ(LateBound(made.pdispVal).Get("JobId").code, jobNotInitialized.result);
}

TEST_F(JobsObject, OutlivesNothingThatIsStillHeld)
{
    EXPECT_EQ(jobs->Add(OpenJob(jobId).Get()), S_OK);
    ComPtr<IPrintJob> item;
    ComPtr<IUnknown> enumerator;
    ASSERT_EQ(jobs->get_Item(1, &item), S_OK);
    ASSERT_EQ(jobs->get__NewEnum(&enumerator), S_OK);
    LetGo();
    EXPECT_EQ(Text(*item.Get(), &IPrintJob::get_Name), L"Pallet 7");
    item.Reset();
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE) << "the enumerator holds the job";
}

TEST_F(JobsObject, InVBScriptHoldsTheJobsOfAQueue)
{
    SpoolerJob second = QueuedJob();
    second.document = L"Pallet 8";
    AddJob(second);
    std::vector<std::wstring> lines;
    {
        ApartmentThread client(COINIT_APARTMENTTHREADED);
        client.Run([&] {
            ScriptHost host(L"VBScript");
            host.AddFunction(L"Tell", [&](const auto& values) {
                lines.emplace_back(static_cast<const wchar_t*>(_bstr_t(values[0])));
                return _variant_t();
            });
            EXPECT_EQ(host.Run(LR"(
                Dim printer, jobs, job
                Set printer = CreateObject("Vorlane.Printer")
                Set jobs = CreateObject("Vorlane.Jobs")
                printer.Initialize "Label"
                printer.Queue.EnumerateJobs jobs
                For Each job In jobs
                    Host.Tell job.JobId & " " & job.Name & " " & job.Status.Text
                Next
                If jobs.Find("Label", 7) Is Nothing Then Host.Tell "no job 7"
                jobs.Remove jobs(1)
                Host.Tell jobs(1).Name
            )"),
                      "");
        });
    }
    EXPECT_THAT(lines, ElementsAre(L"1 Pallet 7 Waiting", L"2 Pallet 8 Waiting", L"no job 7", L"Pallet 8"));
    GiveBackKeptClassObject(__uuidof(Printer));
    GiveBackKeptClassObject(__uuidof(PrintJobs));
}

} // namespace
