// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintJobs.h"

#include "support/com/JobAnswers.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/classes/PrintJob.h"
#include "vrl/core/XPrinterPool.h"
#include "vrl/frame/Module.h"
#include "vrl/spooler/PrinterInfoCache.h"

#include <gmock/gmock.h>

#include <vector>

namespace {

using Microsoft::WRL::ComPtr;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PrintJobsTest : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        PrinterInfoCache::Instance().Clear();
        first = AddJob({});
        second = AddJob({});
        ASSERT_EQ(CreateInstance(jobs.GetAddressOf()), S_OK);
    }

    void TearDown() override
    {
        jobs.Reset();
        EXPECT_EQ(XPrinterPool::GetCount(), 0);
        EXPECT_TRUE(Module::IsIdle());
        PrinterInfoCache::Instance().Clear();
        SpoolerTest::TearDown();
    }

    static ComPtr<PrintJob> Job(DWORD id, const wchar_t* name = printerName)
    {
        ComPtr<PrintJob> job;
        EXPECT_EQ(CreateInstance(job.GetAddressOf()), S_OK);
        EXPECT_EQ(job->Initialize(ToBstr(OString(name)).Get(), static_cast<long>(id)), S_OK);
        return job;
    }

    static ULONG References(IPrintJob& object)
    {
        object.AddRef();
        return object.Release();
    }

    long Count()
    {
        long count = 99;
        EXPECT_EQ(jobs->get_Count(&count), S_OK);
        return count;
    }

    /// The objects of the collection, by their numbers.
    std::vector<IPrintJob*> Objects()
    {
        std::vector<IPrintJob*> objects;
        for (long number = 1; number <= Count(); ++number) {
            ComPtr<IPrintJob> job;
            EXPECT_EQ(jobs->get_Item(number, &job), S_OK);
            objects.push_back(job.Get());
        }
        return objects;
    }

    DWORD first = 0;
    DWORD second = 0;
    ComPtr<PrintJobs> jobs;
};

TEST_F(PrintJobsTest, StartsEmpty)
{
    EXPECT_EQ(Count(), 0);
    EXPECT_THAT(Objects(), IsEmpty());
}

TEST_F(PrintJobsTest, KeepsTheOrderOfAdding)
{
    const auto one = Job(second);
    const auto other = Job(first);
    EXPECT_EQ(AnswerOf(jobs->Add(one.Get())), succeeded);
    EXPECT_EQ(AnswerOf(jobs->Add(other.Get())), succeeded);
    EXPECT_THAT(Objects(), ElementsAre(one.Get(), other.Get()));
}

TEST_F(PrintJobsTest, HoldsOneReferenceOnEachEntry)
{
    const auto job = Job(first);
    const ULONG before = References(*job.Get());
    jobs->Add(job.Get());
    EXPECT_EQ(References(*job.Get()), before + 1);
    jobs.Reset();
    EXPECT_EQ(References(*job.Get()), before);
}

TEST_F(PrintJobsTest, AnotherObjectOfTheSameJobIsNotAdded)
{
    const auto job = Job(first);
    const auto again = Job(first);
    jobs->Add(job.Get());
    EXPECT_EQ(AnswerOf(jobs->Add(again.Get())), (Answer{S_FALSE, ""}));
    EXPECT_THAT(Objects(), ElementsAre(job.Get()));
}

TEST_F(PrintJobsTest, TheSameJobUnderANameInOtherCaseIsAnotherOne)
{
    SpoolerPrinter printer = LabelPrinter();
    printer.printerName = L"label two";
    AddPrinter(printer);
    jobs->Add(Job(7, L"label two").Get());
    EXPECT_EQ(jobs->Find(ToBstr(OString("LABEL TWO")).Get(), 7, ComPtr<IPrintJob>().GetAddressOf()), S_FALSE);
    ComPtr<IPrintJob> found;
    EXPECT_EQ(jobs->Find(ToBstr(OString("label two")).Get(), 7, &found), S_OK);
    EXPECT_TRUE(found);
}

TEST_F(PrintJobsTest, ItemsAreNumberedFrom1)
{
    const auto job = Job(first);
    jobs->Add(job.Get());
    for (const long number : {0L, 2L, -1L}) {
        ComPtr<IPrintJob> item;
        EXPECT_EQ(AnswerOf(jobs->get_Item(number, &item)), invalidArgument) << number;
        EXPECT_FALSE(item);
    }
    ComPtr<IPrintJob> item;
    EXPECT_EQ(AnswerOf(jobs->get_Item(1, &item)), succeeded);
    EXPECT_EQ(item.Get(), job.Get());
}

TEST_F(PrintJobsTest, FindsAJobByPrinterAndNumber)
{
    const auto job = Job(second);
    jobs->Add(Job(first).Get());
    jobs->Add(job.Get());
    const ULONG before = References(*job.Get());
    ComPtr<IPrintJob> found;
    EXPECT_EQ(AnswerOf(jobs->Find(ToBstr(OString(printerName)).Get(), static_cast<long>(second), &found)), succeeded);
    EXPECT_EQ(found.Get(), job.Get());
    EXPECT_EQ(References(*job.Get()), before + 1);
}

TEST_F(PrintJobsTest, AJobThatIsNotThereIsNullAndNoFailure)
{
    jobs->Add(Job(first).Get());
    for (const DWORD id : {second, DWORD{0}}) {
        IPrintJob* found = reinterpret_cast<IPrintJob*>(1);
        EXPECT_EQ(AnswerOf(jobs->Find(ToBstr(OString(printerName)).Get(), static_cast<long>(id), &found)),
                  (Answer{S_FALSE, ""}));
        EXPECT_EQ(found, nullptr);
    }
}

TEST_F(PrintJobsTest, FindNeedsAName)
{
    ComPtr<IPrintJob> found;
    EXPECT_EQ(AnswerOf(jobs->Find(nullptr, 1, &found)), invalidArgument);
    EXPECT_EQ(AnswerOf(jobs->Find(ToBstr(OString()).Get(), 1, &found)), (Answer{S_FALSE, ""}));
}

TEST_F(PrintJobsTest, RemovesTheJobThatAnyObjectOfItNames)
{
    const auto kept = Job(second);
    jobs->Add(Job(first).Get());
    jobs->Add(kept.Get());
    EXPECT_EQ(AnswerOf(jobs->Remove(Job(first).Get())), succeeded);
    EXPECT_THAT(Objects(), ElementsAre(kept.Get()));
}

TEST_F(PrintJobsTest, RemovingAJobThatIsNotThereIsNoFailure)
{
    jobs->Add(Job(first).Get());
    EXPECT_EQ(AnswerOf(jobs->Remove(Job(second).Get())), (Answer{S_FALSE, ""}));
    EXPECT_EQ(Count(), 1);
}

TEST_F(PrintJobsTest, RemovesAllJobs)
{
    const auto job = Job(first);
    const ULONG before = References(*job.Get());
    jobs->Add(job.Get());
    jobs->Add(Job(second).Get());
    EXPECT_EQ(AnswerOf(jobs->RemoveAll()), succeeded);
    EXPECT_EQ(Count(), 0);
    EXPECT_EQ(References(*job.Get()), before);
}

TEST_F(PrintJobsTest, NullArgumentsAreInvalid)
{
    EXPECT_EQ(AnswerOf(jobs->get_Count(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(jobs->Add(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(jobs->Remove(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(jobs->get__NewEnum(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(jobs->get_Item(1, nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(jobs->Create(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(jobs->Find(ToBstr(OString("Label")).Get(), 1, nullptr)), invalidArgument);
}

TEST_F(PrintJobsTest, MakesAJobThatIsBoundToNothingAndNotAnEntry)
{
    ComPtr<IPrintJob> job;
    EXPECT_EQ(AnswerOf(jobs->Create(&job)), succeeded);
    EXPECT_EQ(References(*job.Get()), 1u);
    EXPECT_EQ(Count(), 0);
    long id = 0;
    EXPECT_EQ(AnswerOf(job->get_JobId(&id)), jobNotInitialized);
}

TEST_F(PrintJobsTest, AnEnumeratorKeepsItsOwnCopy)
{
    const auto job = Job(first);
    jobs->Add(job.Get());
    ComPtr<IUnknown> made;
    ASSERT_EQ(AnswerOf(jobs->get__NewEnum(&made)), succeeded);
    ComPtr<IEnumVARIANT> enumerator;
    ASSERT_EQ(made.As(&enumerator), S_OK);
    jobs->RemoveAll();
    VARIANT item;
    ::VariantInit(&item);
    ULONG fetched = 0;
    EXPECT_EQ(enumerator->Next(1, &item, &fetched), S_OK);
    EXPECT_EQ(item.vt, VT_DISPATCH);
    EXPECT_EQ(item.pdispVal, static_cast<IPrintJob*>(job.Get()));
    ::VariantClear(&item);
    EXPECT_EQ(enumerator->Next(1, &item, &fetched), S_FALSE);
}

} // namespace
