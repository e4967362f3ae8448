// SPDX-License-Identifier: MIT
#include "foundation/OGuardedBlock.h"

#include "support/FaultOf.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

TEST(OGuardedBlock, IsZeroedAndCanBeWrittenToItsEnd)
{
    for (const size_t size : {size_t{1}, size_t{8}, size_t{4095}, size_t{4096}, size_t{4097}, size_t{1} << 20}) {
        const OGuardedBlock block(size);
        ASSERT_TRUE(block) << size;
        EXPECT_TRUE(std::all_of(block.Data(), block.Data() + size, [](BYTE byte) { return byte == 0; })) << size;
        std::fill_n(block.Data(), size, BYTE{0xAA});
    }
}

TEST(OGuardedBlock, TouchingWhatFollowsItIsAFault)
{
    for (const size_t size : {size_t{0}, size_t{1}, size_t{4096}, size_t{5000}}) {
        const OGuardedBlock block(size);
        volatile BYTE* const end = block.Data() + size;
        EXPECT_EQ(FaultOf([&] { *end = 1; }), EXCEPTION_ACCESS_VIOLATION) << size;
        EXPECT_EQ(FaultOf([&] { (void)*end; }), EXCEPTION_ACCESS_VIOLATION) << size;
    }
}

TEST(OGuardedBlock, IsNothingWithoutMemory)
{
    const OGuardedBlock block(size_t{1} << 60);
    EXPECT_FALSE(block);
    EXPECT_EQ(block.Data(), nullptr);
}

TEST(OGuardedBlock, GivesItsPagesBack)
{
    const BYTE* freed = nullptr;
    {
        const OGuardedBlock block(100);
        freed = block.Data();
    }
    MEMORY_BASIC_INFORMATION memory{};
    ::VirtualQuery(freed, &memory, sizeof memory);
    EXPECT_EQ(memory.State, DWORD{MEM_FREE});
}

} // namespace
