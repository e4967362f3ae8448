// SPDX-License-Identifier: MIT
#include "vrl/frame/SinkList.h"

#include <gtest/gtest.h>

namespace {

/// A sink that only counts the references on it.
class CountedSink : public IDispatch {
public:
    STDMETHODIMP QueryInterface(REFIID, void** object) override
    {
        *object = this;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
    STDMETHODIMP_(ULONG) Release() override { return --references; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }

    ULONG references = 0;
};

class SinkListTest : public ::testing::Test {
protected:
    DWORD Add(CountedSink& sink)
    {
        DWORD cookie = 0;
        auto shared = ForeignPtr<IDispatch>::Share(&sink);
        EXPECT_EQ(sinks.Add(shared, &cookie), S_OK);
        return cookie;
    }

    CountedSink first;
    CountedSink second;
    SinkList sinks;
};

TEST_F(SinkListTest, HoldsOneReference)
{
    Add(first);
    EXPECT_EQ(first.references, 1u);
}

TEST_F(SinkListTest, GivesBackEveryReferenceAtItsEnd)
{
    {
        SinkList list;
        auto shared = ForeignPtr<IDispatch>::Share(&first);
        DWORD cookie = 0;
        list.Add(shared, &cookie);
    }
    EXPECT_EQ(first.references, 0u);
}

TEST_F(SinkListTest, CookiesAreNeitherZeroNorEqual)
{
    const DWORD one = Add(first);
    const DWORD two = Add(first);
    EXPECT_NE(one, 0u);
    EXPECT_NE(two, 0u);
    EXPECT_NE(one, two);
}

TEST_F(SinkListTest, RemovedSinkLeavesAnEmptySlot)
{
    const DWORD cookie = Add(first);
    Add(second);
    EXPECT_EQ(sinks.Remove(cookie).Get(), &first);
    EXPECT_EQ(sinks.SlotCount(), 2u);
    EXPECT_FALSE(sinks.SinkAt(0));
    EXPECT_EQ(sinks.SinkAt(1).Get(), &second);
}

TEST_F(SinkListTest, NextSinkTakesTheEmptySlotUnderANewCookie)
{
    const DWORD old = Add(first);
    Add(second);
    sinks.Remove(old);
    const DWORD renewed = Add(first);
    EXPECT_NE(renewed, old);
    EXPECT_EQ(sinks.SlotCount(), 2u);
    EXPECT_EQ(sinks.SinkAt(0).Get(), &first);
}

TEST_F(SinkListTest, UnknownOrUsedUpCookieRemovesNothing)
{
    const DWORD cookie = Add(first);
    EXPECT_FALSE(sinks.Remove(cookie + 1));
    EXPECT_FALSE(sinks.Remove(0));
    sinks.Remove(cookie);
    EXPECT_FALSE(sinks.Remove(cookie));
    EXPECT_EQ(first.references, 0u);
}

TEST_F(SinkListTest, SlotPastTheEndIsEmpty)
{
    EXPECT_FALSE(sinks.SinkAt(0));
}

TEST_F(SinkListTest, ConnectionsListsTheFilledSlots)
{
    const DWORD gone = Add(first);
    const DWORD kept = Add(second);
    sinks.Remove(gone);
    const auto connections = sinks.Connections();
    ASSERT_EQ(connections.size(), 1u);
    EXPECT_EQ(connections[0].cookie, kept);
    EXPECT_EQ(connections[0].sink.Get(), &second);
}

} // namespace
