// SPDX-License-Identifier: MIT
#include "vrl/classes/QueryResponse.h"

#include "support/com/Answer.h"
#include "support/com/ByteArray.h"

#include <gtest/gtest.h>

#include <array>

namespace {

using Microsoft::WRL::ComPtr;

/// Responded, Failed and Pending as they come out.
using State = std::array<VARIANT_BOOL, 3>;

class QueryResponseTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(CreateInstance(response.GetAddressOf()), S_OK); }

    State GetState()
    {
        State state{99, 99, 99};
        EXPECT_EQ(response->get_Responded(&state[0]), S_OK);
        EXPECT_EQ(response->get_Failed(&state[1]), S_OK);
        EXPECT_EQ(response->get_Pending(&state[2]), S_OK);
        return state;
    }

    ComPtr<QueryResponse> response;
};

TEST_F(QueryResponseTest, NothingIsKnownAtFirst)
{
    EXPECT_EQ(GetState(), (State{0, 0, 0}));
    OBstr text;
    EXPECT_EQ(response->get_Text(text.Receive()), S_OK);
    EXPECT_TRUE(FromBstr(text.Get()).IsEmpty());
    EXPECT_EQ(response->get_Hexadecimal(text.Receive()), S_OK);
    EXPECT_TRUE(FromBstr(text.Get()).IsEmpty());
    _variant_t binary;
    EXPECT_EQ(response->get_Binary(&binary), S_OK);
    EXPECT_EQ(binary.vt, VT_ARRAY | VT_UI1);
    EXPECT_EQ(binary.parray, nullptr);
}

TEST_F(QueryResponseTest, PendingIsOnlyPending)
{
    response->SetPending();
    EXPECT_EQ(GetState(), (State{0, 0, -1}));
}

TEST_F(QueryResponseTest, FailedHasResponded)
{
    response->SetFailed();
    EXPECT_EQ(GetState(), (State{-1, -1, 0}));
}

TEST_F(QueryResponseTest, AnswerIsSeenInAllViews)
{
    OTypedArray<unsigned char> bytes;
    for (const int byte : {0x41, 0x00, 0xFF}) bytes.Add(static_cast<unsigned char>(byte));
    response->SetResponded(bytes);
    EXPECT_EQ(GetState(), (State{-1, 0, 0}));
    _variant_t binary;
    EXPECT_EQ(response->get_Binary(&binary), S_OK);
    EXPECT_EQ(BytesOf(binary), std::string_view("A\0\xFF", 3));
    OBstr text;
    EXPECT_EQ(response->get_Text(text.Receive()), S_OK);
    EXPECT_EQ(FromBstr(text.Get()), OString("A\xFF"));
    EXPECT_EQ(response->get_Hexadecimal(text.Receive()), S_OK);
    EXPECT_EQ(FromBstr(text.Get()), "4100FF");
}

TEST_F(QueryResponseTest, EmptyAnswerIsAnArrayWithoutElements)
{
    response->SetResponded({});
    _variant_t binary;
    EXPECT_EQ(response->get_Binary(&binary), S_OK);
    EXPECT_EQ(BytesOf(binary), "");
}

TEST_F(QueryResponseTest, NullOutPointerIsInvalidForTheViews)
{
    EXPECT_EQ(AnswerOf(response->get_Binary(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(response->get_Text(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(response->get_Hexadecimal(nullptr)), invalidArgument);
}

TEST_F(QueryResponseTest, NullOutPointerOfAFieldIsRefusedWithoutAText)
{
    const Answer refused{E_POINTER, ""};
    EXPECT_EQ(AnswerOf(response->get_Responded(nullptr)), refused);
    EXPECT_EQ(AnswerOf(response->get_Failed(nullptr)), refused);
    EXPECT_EQ(AnswerOf(response->get_Pending(nullptr)), refused);
}

} // namespace
