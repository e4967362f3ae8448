// SPDX-License-Identifier: MIT
#include "foundation/files/OStream.h"

#include "support/ImportHook.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <string>
#include <vector>

namespace {

/// A stream whose device notes each write and can be told to take fewer bytes.
class TestStream : public OCore::OStream {
public:
    DWORD WriteRaw(const void* data, DWORD count) override
    {
        const DWORD taken = std::min(count, capacity);
        writes.emplace_back(static_cast<const char*>(data), taken);
        return taken;
    }

    std::string All() const
    {
        std::string all;
        for (const std::string& bytes : writes) all += bytes;
        return all;
    }

    std::vector<std::string> writes;
    DWORD capacity = UINT_MAX; ///< bytes that the device takes at a time
};

using Writes = std::vector<std::string>;

TEST(OStream, WithoutABufferEachWriteGoesToTheDevice)
{
    TestStream stream;
    EXPECT_EQ(stream.Write("abc", 3), 3u);
    EXPECT_EQ(stream.Write("de", 2), 2u);
    EXPECT_EQ(stream.writes, (Writes{"abc", "de"}));
}

TEST(OStream, WithoutABufferTheCountIsTheDevices)
{
    TestStream stream;
    stream.capacity = 2;
    EXPECT_EQ(stream.Write("abc", 3), 2u);
}

TEST(OStream, BufferKeepsBytesUntilItIsFull)
{
    TestStream stream;
    stream.SetBufferSize(4);
    EXPECT_EQ(stream.Write("abc", 3), 3u);
    EXPECT_EQ(stream.writes, Writes{});
    EXPECT_EQ(stream.Write("de", 2), 2u);
    EXPECT_EQ(stream.writes, Writes{"abcd"});
    EXPECT_EQ(stream.Flush(), 1u);
    EXPECT_EQ(stream.writes, (Writes{"abcd", "e"}));
}

TEST(OStream, BufferThatIsJustFullIsFlushedAtOnce)
{
    TestStream stream;
    stream.SetBufferSize(4);
    stream.Write("abcd", 4);
    EXPECT_EQ(stream.writes, Writes{"abcd"});
    EXPECT_EQ(stream.Flush(), 0u);
}

TEST(OStream, WriteLargerThanTheBufferFlushesAsOftenAsNeededInOrder)
{
    TestStream stream;
    stream.SetBufferSize(4);
    stream.Write("ab", 2);
    EXPECT_EQ(stream.Write("cdefghijk", 9), 9u);
    EXPECT_EQ(stream.writes, (Writes{"abcd", "efgh"}));
    stream.Flush();
    EXPECT_EQ(stream.All(), "abcdefghijk");
}

TEST(OStream, WriteGivesZeroOnceAFullBufferIsNotTakenWhole)
{
    TestStream stream;
    stream.SetBufferSize(4);
    stream.capacity = 3;
    EXPECT_EQ(stream.Write("abc", 3), 3u);
    EXPECT_EQ(stream.Write("defgh", 5), 0u);
    EXPECT_EQ(stream.writes, Writes{"abc"}) << "it stops at the first failure";
}

TEST(OStream, BufferIsEmptyAfterAFlushThatFailed)
{
    TestStream stream;
    stream.SetBufferSize(4);
    stream.Write("abc", 3);
    stream.capacity = 1;
    EXPECT_EQ(stream.Flush(), 1u);
    EXPECT_EQ(stream.Flush(), 0u);
    EXPECT_EQ(stream.writes, Writes{"a"});
}

TEST(OStream, FlushOfAnEmptyBufferDoesNotTouchTheDevice)
{
    TestStream stream;
    EXPECT_EQ(stream.Flush(), 0u);
    stream.SetBufferSize(4);
    EXPECT_EQ(stream.Flush(), 0u);
    EXPECT_EQ(stream.writes, Writes{});
}

TEST(OStream, ABufferThatCannotBeHadLeavesTheBufferAsItIs)
{
    for (const DWORD size : {0x80000000UL, 0xFFFFFFFFUL}) {
        TestStream stream;
        stream.SetBufferSize(4);
        stream.SetBufferSize(size);
        EXPECT_EQ(stream.Write("abcde", 5), 5u);
        EXPECT_EQ(stream.writes, Writes{"abcd"}) << size;
    }
}

TEST(OStream, ABufferThatThereIsNoMemoryForLeavesTheBufferAsItIs)
{
    TestStream stream;
    {
        const ImportHook<void*(void*, size_t)> hook("realloc", [](void*, size_t) -> void* { return nullptr; });
        stream.SetBufferSize(4);
    }
    EXPECT_EQ(stream.Write("abc", 3), 3u);
    EXPECT_EQ(stream.writes, Writes{"abc"});
}

TEST(OStream, SetBufferSizeFlushesFirst)
{
    TestStream stream;
    stream.SetBufferSize(8);
    stream.Write("abc", 3);
    stream.SetBufferSize(0);
    EXPECT_EQ(stream.writes, Writes{"abc"});
    stream.Write("d", 1);
    EXPECT_EQ(stream.writes, (Writes{"abc", "d"}));
}

TEST(OStream, WriteStringWritesTheNarrowFormWithoutATerminator)
{
    TestStream stream;
    EXPECT_EQ(stream.WriteString(L"abc"), 3u);
    EXPECT_EQ(stream.WriteString(OString()), 0u);
    EXPECT_EQ(stream.All(), "abc");
}

TEST(OStream, WriteStringUsesTheStreamsCodePageAndLeavesTheTextInIts)
{
    const OString euro = L"\x20AC";
    TestStream stream;
    EXPECT_EQ(stream.GetCodePage(), 0u);
    stream.SetCodePage(1208);
    EXPECT_EQ(stream.GetCodePage(), 1208u);
    EXPECT_EQ(stream.WriteString(euro), 3u);
    EXPECT_EQ(stream.All(), "\xE2\x82\xAC");
    EXPECT_EQ(euro.GetCodePage(), 0u);
}

TEST(OStream, WriteLineAddsTheLineEndUnlessItIsThere)
{
    static constexpr struct {
        const char* text;
        const char* lineEnd;
        const char* written;
    } rows[] = {
        {"abc",     "\r\n", "abc\r\n"  },
        {"abc\r\n", "\r\n", "abc\r\n"  },
        {"abc\n",   "\r\n", "abc\n\r\n"},
        {"abc\r\n", "\n",   "abc\r\n"  },
        {"abc",     "",     "abc"      },
        {"",        "\r\n", "\r\n"     },
        {"\n",      "\r\n", "\n\r\n"   },
        {"",        "",     ""         },
    };
    for (const auto& row : rows) {
        TestStream stream;
        EXPECT_EQ(stream.WriteLine(row.text, row.lineEnd), std::string(row.written).size());
        EXPECT_EQ(stream.All(), row.written);
    }
}

TEST(OStream, WriteLineInUtf8CountsBytes)
{
    TestStream stream;
    stream.SetCodePage(1208);
    EXPECT_EQ(stream.WriteLine(L"\x20AC", "\n"), 4u);
    EXPECT_EQ(stream.All(), "\xE2\x82\xAC\n");
}

TEST(OStream, WriteLinesWritesEachElementAndGivesTheSum)
{
    OStringArray lines;
    lines.Add("a");
    lines.Add("");
    lines.Add("bc\n");
    TestStream stream;
    EXPECT_EQ(stream.WriteLines(lines, "\n"), 6u);
    EXPECT_EQ(stream.All(), "a\n\nbc\n");
    EXPECT_EQ(stream.WriteLines(OStringArray(), "\n"), 0u);
}

TEST(OStream, WriteFillRepeatsAByte)
{
    TestStream stream;
    EXPECT_EQ(stream.WriteFill(1000, 'x'), 1000u);
    EXPECT_EQ(stream.All(), std::string(1000, 'x'));
    EXPECT_EQ(stream.WriteFill(0, 'y'), 0u);
    EXPECT_EQ(stream.All().size(), 1000u);
}

TEST(OStream, InsertionWritesNumbersTextsAndStrings)
{
    TestStream stream;
    const char* const nothing = nullptr;
    stream << -15 << "|" << nothing << OString(L"wide") << L"|" << INT_MIN;
    EXPECT_EQ(stream.All(), "-15|wide|-2147483648");
}

TEST(OStream, InsertionOfNullWritesNothingAtAll)
{
    TestStream stream;
    stream << static_cast<const char*>(nullptr);
    EXPECT_EQ(stream.writes, Writes{});
}

TEST(OStream, InsertedNarrowTextGoesOutByteByByte)
{
    TestStream stream;
    stream.SetCodePage(1208);
    stream << "\xE9";
    EXPECT_EQ(stream.All(), "\xE9");
}

TEST(OStream, ManipulatorsWriteLineEndZeroByteAndTab)
{
    TestStream stream;
    stream << 1 << OCore::Tab << 2 << OCore::LineEnd << OCore::ZeroByte << 3;
    EXPECT_EQ(stream.All(), std::string("1\t2\r\n\0003", 7));
}

} // namespace
