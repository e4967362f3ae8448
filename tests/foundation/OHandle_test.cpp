// SPDX-License-Identifier: MIT
#include "foundation/OHandle.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<int*> closed;

void CloseAndForget(int* value) noexcept
{
    closed.push_back(value);
    ::SetLastError(ERROR_INVALID_HANDLE);
}

using TestHandle = OHandle<CloseAndForget, int*>;

class OHandleTest : public ::testing::Test {
protected:
    void SetUp() override { closed.clear(); }
    int first = 1;
    int second = 2;
};

TEST_F(OHandleTest, ClosesItsResourceOnce)
{
    {
        TestHandle handle(&first);
    }
    EXPECT_EQ(closed, std::vector{&first});
}

TEST_F(OHandleTest, EmptyHandleClosesNothing)
{
    {
        TestHandle handle;
        EXPECT_FALSE(handle);
    }
    EXPECT_TRUE(closed.empty());
}

TEST_F(OHandleTest, InvalidHandleValueMeansNothing)
{
    EXPECT_FALSE(OFileHandle(INVALID_HANDLE_VALUE));
}

TEST_F(OHandleTest, MoveLeavesTheSourceEmpty)
{
    TestHandle source(&first);
    TestHandle target(std::move(source));
    EXPECT_FALSE(source); // NOLINT(bugprone-use-after-move): that is what is tested
    EXPECT_EQ(target.Get(), &first);
    EXPECT_TRUE(closed.empty());
}

TEST_F(OHandleTest, MoveAssignmentClosesTheOldValue)
{
    TestHandle target(&first);
    target = TestHandle(&second);
    EXPECT_EQ(closed, std::vector{&first});
    EXPECT_EQ(target.Get(), &second);
}

TEST_F(OHandleTest, SelfMoveKeepsTheValue)
{
    TestHandle handle(&first);
    TestHandle& same = handle;
    handle = std::move(same);
    EXPECT_EQ(handle.Get(), &first);
    EXPECT_TRUE(closed.empty());
}

TEST_F(OHandleTest, DetachHandsOverWithoutClosing)
{
    TestHandle handle(&first);
    EXPECT_EQ(handle.Detach(), &first);
    EXPECT_FALSE(handle);
    EXPECT_TRUE(closed.empty());
}

TEST_F(OHandleTest, ReceiveClosesTheOldValueFirst)
{
    TestHandle handle(&first);
    *handle.Receive() = &second;
    EXPECT_EQ(closed, std::vector{&first});
    EXPECT_EQ(handle.Get(), &second);
}

TEST_F(OHandleTest, InvalidHandleValueThatACallFilledInMeansNothing)
{
    static int closings;
    closings = 0;
    using CountedHandle = OHandle<[](HANDLE) { ++closings; }>;
    {
        CountedHandle handle;
        *handle.Receive() = INVALID_HANDLE_VALUE;
        EXPECT_FALSE(handle);
        EXPECT_EQ(handle.Get(), nullptr);
        CountedHandle target(std::move(handle));
        EXPECT_EQ(target.Get(), nullptr);
        *target.Receive() = INVALID_HANDLE_VALUE;
        EXPECT_EQ(target.Detach(), nullptr);
        *target.Receive() = INVALID_HANDLE_VALUE;
    }
    EXPECT_EQ(closings, 0);
}

TEST_F(OHandleTest, ClosingKeepsTheLastError)
{
    TestHandle handle(&first);
    ::SetLastError(ERROR_ACCESS_DENIED);
    handle.Reset();
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_ACCESS_DENIED});
}

} // namespace
