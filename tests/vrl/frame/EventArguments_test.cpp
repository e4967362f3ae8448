// SPDX-License-Identifier: MIT
#include "vrl/frame/EventArguments.h"

#include "support/AllocationFailure.h"
#include "support/com/RecordingSinkOwner.h"

#include <gtest/gtest.h>

#include <new>

namespace {

/// The arguments as a sink reads them: its first stands last in the list.
VARIANT& Argument(const EventArguments& arguments, UINT number)
{
    const DISPPARAMS parameters = arguments.AsDispParams();
    return parameters.rgvarg[parameters.cArgs - number];
}

TEST(EventArguments, StartEmpty)
{
    const EventArguments arguments;
    EXPECT_EQ(arguments.GetCount(), 0);
    EXPECT_EQ(arguments.AsDispParams().cArgs, 0u);
}

TEST(EventArguments, HaveNoNames)
{
    EventArguments arguments;
    arguments.InsertAtFront(1L);
    const DISPPARAMS parameters = arguments.AsDispParams();
    EXPECT_EQ(parameters.cNamedArgs, 0u);
    EXPECT_EQ(parameters.rgdispidNamedArgs, nullptr);
}

TEST(EventArguments, ReachTheSinkAsJobThenOldThenNew)
{
    RecordingSinkOwner job;
    EventArguments arguments;
    arguments.InsertAtFront(1L);         // old
    arguments.InsertAtFront(2L);         // new
    arguments.AppendAtEnd(job.Object()); // what the firing code adds
    ASSERT_EQ(arguments.GetCount(), 3);
    EXPECT_EQ(Argument(arguments, 1).vt, VT_DISPATCH);
    EXPECT_EQ(Argument(arguments, 1).pdispVal, job.Object());
    EXPECT_EQ(Argument(arguments, 2).vt, VT_I4);
    EXPECT_EQ(Argument(arguments, 2).lVal, 1);
    EXPECT_EQ(Argument(arguments, 3).lVal, 2);
}

TEST(EventArguments, AppendedNumberIsTheFirstThatASinkReads)
{
    EventArguments arguments;
    arguments.AppendAtEnd(1L);
    arguments.AppendAtEnd(2L);
    EXPECT_EQ(Argument(arguments, 1).lVal, 2);
    EXPECT_EQ(Argument(arguments, 2).lVal, 1);
}

TEST(EventArguments, InsertedObjectIsTheLastThatASinkReads)
{
    RecordingSinkOwner status;
    EventArguments arguments;
    arguments.InsertAtFront(1L);
    arguments.InsertAtFront(status.Object());
    EXPECT_EQ(Argument(arguments, 2).pdispVal, status.Object());
}

TEST(EventArguments, TextIsACopyOfItsOwn)
{
    EventArguments arguments;
    {
        const OString name(L"Gate \u00E9");
        arguments.InsertAtFront(name);
    }
    EXPECT_EQ(Argument(arguments, 1).vt, VT_BSTR);
    EXPECT_STREQ(Argument(arguments, 1).bstrVal, L"Gate \u00E9");
}

TEST(EventArguments, HoldAReferenceOnAnObject)
{
    RecordingSinkOwner object;
    {
        EventArguments arguments;
        arguments.InsertAtFront(object.Object());
        arguments.AppendAtEnd(object.Object());
        EXPECT_EQ(object.references, 2u);
    }
    EXPECT_EQ(object.references, 0u);
}

TEST(EventArguments, TakeNoObjectForAnObject)
{
    EventArguments arguments;
    arguments.InsertAtFront(static_cast<IDispatch*>(nullptr));
    EXPECT_EQ(Argument(arguments, 1).vt, VT_DISPATCH);
    EXPECT_EQ(Argument(arguments, 1).pdispVal, nullptr);
}

TEST(EventArguments, CopyOwnsWhatItHolds)
{
    RecordingSinkOwner object;
    EventArguments original;
    original.InsertAtFront(OString("old"));
    original.InsertAtFront(7L);
    original.AppendAtEnd(object.Object());
    {
        EventArguments copy(original);
        EXPECT_EQ(object.references, 2u);
        EXPECT_NE(Argument(copy, 2).bstrVal, Argument(original, 2).bstrVal);
        EXPECT_STREQ(Argument(copy, 2).bstrVal, L"old");
        EXPECT_EQ(Argument(copy, 3).lVal, 7);
        copy.AppendAtEnd(1L);
        EXPECT_EQ(original.GetCount(), 3);
    }
    EXPECT_EQ(object.references, 1u);
}

TEST(EventArguments, AreAsTheyWereWhenMemoryRunsOut)
{
    RecordingSinkOwner object;
    const OString text(L"new");
    EventArguments original;
    original.InsertAtFront(OString("old"));
    const auto expectUnchanged = [&](auto change) {
        for (int allowed = 0;; ++allowed) {
            bool thrown = false;
            {
                EventArguments arguments(original);
                const AllocationFailure failure(allowed);
                try {
                    change(arguments);
                } catch (const std::bad_alloc&) {
                    thrown = true;
                    EXPECT_EQ(arguments.GetCount(), 1) << allowed;
                    EXPECT_EQ(Argument(arguments, 1).vt, VT_BSTR) << allowed;
                }
            }
            EXPECT_EQ(object.references, 0u) << allowed;
            if (!thrown) break;
        }
    };
    expectUnchanged([&](EventArguments& arguments) { arguments.InsertAtFront(text); });
    expectUnchanged([&](EventArguments& arguments) { arguments.AppendAtEnd(object.Object()); });
    expectUnchanged([](EventArguments& arguments) { const EventArguments copy(arguments); });
}

} // namespace
