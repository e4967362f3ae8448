// SPDX-License-Identifier: MIT
#include "vrl/classes/QueryBytes.h"

#include "foundation/OGuardedBlock.h"
#include "support/com/ByteArray.h"
#include "support/FaultOf.h"
#include "support/ImportHook.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using namespace std::string_view_literals;

class QueryBytesTest : public ::testing::Test {
protected:
    std::string Binary() const
    {
        _variant_t value;
        data.GiveBinary(&value);
        return BytesOf(value);
    }

    OCriticalSection lock;
    QueryBytes data{lock};
};

/// The same bytes in the three views.
struct Views {
    std::string_view bytes;
    const char* text;
    const char* hexadecimal;
};

const Views views[] = {
    {"ABC"sv,          "ABC",          "414243"},
    {"A\0B"sv,         "AB",           "410042"}, // a zero disappears from the text
    {"\xFF\0"sv,       "\xFF",         "FF00"  },
    {"\0\0"sv,         "",             "0000"  },
    {"\x01\x7F\x80"sv, "\x01\x7F\x80", "017F80"},
    {""sv,             "",             ""      },
};

TEST_F(QueryBytesTest, ArrayIsReadInAllViews)
{
    for (const Views& row : views) {
        EXPECT_EQ(data.SetBinary(ByteArray(row.bytes)), S_OK);
        EXPECT_EQ(Binary(), row.bytes);
        EXPECT_EQ(data.GetText(), OString(row.text)) << row.hexadecimal;
        EXPECT_EQ(data.GetHexadecimal(), row.hexadecimal);
        EXPECT_TRUE(data.HasData());
    }
}

TEST_F(QueryBytesTest, WithoutDataTheViewsAreEmpty)
{
    EXPECT_FALSE(data.HasData());
    EXPECT_TRUE(data.GetText().IsEmpty());
    EXPECT_TRUE(data.GetHexadecimal().IsEmpty());
    _variant_t value;
    data.GiveBinary(&value);
    EXPECT_EQ(value.vt, VT_ARRAY | VT_UI1);
    EXPECT_EQ(value.parray, nullptr);
}

TEST_F(QueryBytesTest, TextBecomesOneByteForEachCharacter)
{
    EXPECT_EQ(data.SetText(OString("ABC")), S_OK);
    EXPECT_EQ(Binary(), "ABC");
    EXPECT_EQ(data.GetHexadecimal(), "414243");
    EXPECT_EQ(data.SetText(OString()), S_OK);
    EXPECT_EQ(Binary(), "");
    EXPECT_TRUE(data.HasData());
}

TEST_F(QueryBytesTest, TextGoesThroughTheCodePageOfTheProcess)
{
    const OString text(L"\u00E4\u4E2D"); // one that the code page may have, and one that it hasn't
    EXPECT_EQ(data.SetText(text), S_OK);
    EXPECT_EQ(Binary(), text.nstring());
}

/// Writes each character twice, as code pages do that need two bytes for one.
int WINAPI Doubled(UINT, DWORD, LPCWCH text, int, LPSTR out, int size, LPCCH, LPBOOL)
{
    std::string bytes;
    for (; *text; ++text) bytes.append(2, static_cast<char>(*text));
    bytes += '\0';
    if (size > 0) std::memcpy(out, bytes.data(), bytes.size());
    return static_cast<int>(bytes.size());
}

TEST_F(QueryBytesTest, TextWithMoreBytesThanCharactersKeepsTheFirst)
{
    const ImportHook<decltype(::WideCharToMultiByte)> hook("WideCharToMultiByte", Doubled);
    const OString text(L"ABC");
    EXPECT_EQ(data.SetText(text), S_OK);
    EXPECT_EQ(Binary(), "AAB");
}

TEST_F(QueryBytesTest, BytesBeyondTheCharactersAreNotWritten)
{
    static const OGuardedBlock* elements;
    const OGuardedBlock block(3);
    elements = &block;
    const ImportHook<decltype(::WideCharToMultiByte)> narrow("WideCharToMultiByte", Doubled);
    const ImportHook<decltype(::SafeArrayAccessData)> access("SafeArrayAccessData", [](SAFEARRAY*, void** place) {
        *place = elements->Data();
        return S_OK;
    });
    const ImportHook<decltype(::SafeArrayUnaccessData)> unaccess("SafeArrayUnaccessData",
                                                                 [](SAFEARRAY*) { return S_OK; });
    EXPECT_EQ(FaultOf([this] { data.SetText(OString(L"ABC")); }), 0u);
    EXPECT_EQ(std::string_view(reinterpret_cast<char*>(block.Data()), 3), "AAB");
}

TEST_F(QueryBytesTest, HexadecimalIsReadInPairs)
{
    static constexpr struct {
        const char* digits;
        std::string_view bytes;
    } rows[] = {
        {"ff00",   "\xFF\0"sv},
        {"FF00",   "\xFF\0"sv},
        {"414",    "A"sv     }, // the last digit has no partner
        {"4",      ""sv      },
        {"",       ""sv      },
        {"zz",     "\x33"sv  }, // no character is rejected
        {"4142zz", "AB\x33"sv},
        {"  ",     "\x99"sv  },
    };
    for (const auto& row : rows) {
        EXPECT_EQ(data.SetHexadecimal(OString(row.digits)), S_OK) << row.digits;
        EXPECT_EQ(Binary(), row.bytes) << row.digits;
    }
}

TEST_F(QueryBytesTest, AnyOtherVariantLeavesTheDataAlone)
{
    data.SetText(OString("kept"));
    _variant_t byReference = ByteArray("x");
    VARIANT reference;
    reference.vt = VT_ARRAY | VT_UI1 | VT_BYREF;
    reference.pparray = &byReference.parray;
    EXPECT_EQ(data.SetBinary(reference), S_FALSE);
    for (const VARTYPE type : {VT_EMPTY, VT_NULL, VT_BSTR, VT_UI1, VT_I4}) {
        VARIANT value{};
        value.vt = type;
        EXPECT_EQ(data.SetBinary(value), S_FALSE) << type;
    }
    for (const VARTYPE type : {VT_VARIANT, VT_I1, VT_UI2}) {
        _variant_t value;
        value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
        value.parray = ::SafeArrayCreateVector(type, 0, 1);
        EXPECT_EQ(data.SetBinary(value), S_FALSE) << type;
    }
    EXPECT_EQ(Binary(), "kept");
}

TEST_F(QueryBytesTest, ArrayIsCopiedOnTheWayInAndOut)
{
    _variant_t in = ByteArray("in");
    data.SetBinary(in);
    in.Clear();
    for (int round = 0; round < 2; ++round) {
        _variant_t out;
        data.GiveBinary(&out);
        ASSERT_EQ(BytesOf(out), "in");
        *static_cast<char*>(out.parray->pvData) = 'x';
    }
}

TEST_F(QueryBytesTest, BoundsOfAnArrayAreKept)
{
    data.SetBinary(ByteArray("ABC", 5));
    _variant_t out;
    data.GiveBinary(&out);
    LONG lower = 0;
    ::SafeArrayGetLBound(out.parray, 1, &lower);
    EXPECT_EQ(lower, 5);
    EXPECT_EQ(data.GetText(), "ABC");
    data.SetText(OString("AB"));
    _variant_t text;
    data.GiveBinary(&text);
    ::SafeArrayGetLBound(text.parray, 1, &lower);
    EXPECT_EQ(lower, 0);
}

TEST_F(QueryBytesTest, ArrayThatIsNotThereHasTheResultOfItsCopy)
{
    VARIANT value{};
    value.vt = QueryBytes::arrayType;
    SAFEARRAY* copy = nullptr;
    const HRESULT result = ::SafeArrayCopy(nullptr, &copy);
    EXPECT_EQ(data.SetBinary(value), result);
    EXPECT_TRUE(data.GetText().IsEmpty());
}

TEST_F(QueryBytesTest, ArrayThatCannotBeCopiedLeavesTheDataAlone)
{
    data.SetText(OString("kept"));
    {
        const ImportHook<decltype(::SafeArrayCopy)> hook(
            "SafeArrayCopy", [](SAFEARRAY*, SAFEARRAY**) -> HRESULT { return E_OUTOFMEMORY; });
        EXPECT_EQ(data.SetBinary(ByteArray("new")), E_OUTOFMEMORY);
    }
    EXPECT_EQ(Binary(), "kept");
}

TEST_F(QueryBytesTest, ArrayWhoseElementsCannotBeHadIsSFalse)
{
    const ImportHook<decltype(::SafeArrayAccessData)> hook("SafeArrayAccessData",
                                                           [](SAFEARRAY*, void**) -> HRESULT { return E_UNEXPECTED; });
    EXPECT_EQ(data.SetText(OString("ABC")), S_FALSE);
    EXPECT_EQ(data.SetHexadecimal(OString("4142")), S_FALSE);
}

TEST_F(QueryBytesTest, WithoutMemoryForAnArrayThereIsNoData)
{
    data.SetText(OString("old"));
    const ImportHook<decltype(::SafeArrayCreateVector)> hook(
        "SafeArrayCreateVector", [](VARTYPE, LONG, ULONG) -> SAFEARRAY* { return nullptr; });
    EXPECT_EQ(data.SetText(OString("ABC")), S_FALSE);
    EXPECT_FALSE(data.HasData());
    const OTypedArray<unsigned char> bytes;
    EXPECT_THROW(data.SetBytes(bytes), std::bad_alloc);
}

TEST_F(QueryBytesTest, ArraysOfAnyMakeAreReadWithinTheirBytes)
{
    SAFEARRAYBOUND bounds[] = {
        {3, 0},
        {0, 0}
    };
    VARIANT flat{};
    flat.vt = QueryBytes::arrayType;
    flat.parray = ::SafeArrayCreate(VT_UI1, 2, bounds); // no bytes at all
    VARIANT wide{};
    wide.vt = QueryBytes::arrayType;
    wide.parray = ::SafeArrayCreateVector(VT_I4, 0, 2); // its elements aren't bytes
    for (VARIANT* const value : {&flat, &wide}) {
        OTypedArray<unsigned char> bytes;
        ReadByteArray(*value, bytes);
        EXPECT_LE(bytes.GetSize(), 2);
        data.SetBinary(*value);
        data.GetText();
        data.GetHexadecimal();
        ::SafeArrayDestroy(value->parray);
    }
}

TEST_F(QueryBytesTest, OnlyAnArrayOfBytesIsRead)
{
    OTypedArray<unsigned char> bytes;
    EXPECT_TRUE(ReadByteArray(ByteArray("AB", -3), bytes));
    EXPECT_EQ(std::string_view(reinterpret_cast<char*>(bytes.GetData()), 2), "AB");
    EXPECT_TRUE(ReadByteArray(ByteArray(""), bytes));
    EXPECT_TRUE(bytes.IsEmpty());
    EXPECT_FALSE(ReadByteArray(_variant_t(), bytes));
    EXPECT_FALSE(ReadByteArray(_variant_t(L"AB"), bytes));
    VARIANT nothing{};
    nothing.vt = QueryBytes::arrayType;
    EXPECT_FALSE(ReadByteArray(nothing, bytes));
}

TEST_F(QueryBytesTest, ReadersAndWritersMayComeTogether)
{
    constexpr int rounds = 2000;
    data.SetText(OString("AAAA"));
    std::jthread writer([this] {
        for (int round = 0; round < rounds; ++round) data.SetText(OString(round % 2 ? "AAAA" : "BB"));
    });
    for (int round = 0; round < rounds; ++round) {
        const std::string binary = Binary();
        ASSERT_TRUE(binary == "AAAA" || binary == "BB") << binary;
        ASSERT_FALSE(data.GetHexadecimal().IsEmpty());
    }
}

} // namespace
