// SPDX-License-Identifier: MIT
#include "vrl/classes/QueryCommand.h"

#include "support/com/Answer.h"
#include "support/com/ByteArray.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

using Microsoft::WRL::ComPtr;
using namespace std::string_view_literals;

class QueryCommandTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(CreateInstance(command.GetAddressOf()), S_OK); }

    OString Text()
    {
        OBstr text;
        EXPECT_EQ(command->get_Text(text.Receive()), S_OK);
        return FromBstr(text.Get());
    }

    OString Hexadecimal()
    {
        OBstr digits;
        EXPECT_EQ(command->get_Hexadecimal(digits.Receive()), S_OK);
        return FromBstr(digits.Get());
    }

    std::string Binary()
    {
        _variant_t value;
        EXPECT_EQ(command->get_Binary(&value), S_OK);
        return BytesOf(value);
    }

    ComPtr<QueryCommand> command;
};

TEST_F(QueryCommandTest, TextIsSeenAsBytesAndDigits)
{
    EXPECT_EQ(command->put_Text(ToBstr(OString("ABC")).Get()), S_OK);
    EXPECT_EQ(Binary(), "ABC");
    EXPECT_EQ(Hexadecimal(), "414243");
}

TEST_F(QueryCommandTest, HexadecimalIsSeenAsBytes)
{
    EXPECT_EQ(command->put_Hexadecimal(ToBstr(OString("ff00")).Get()), S_OK);
    EXPECT_EQ(Binary(), "\xFF\0"sv);
    EXPECT_EQ(Hexadecimal(), "FF00");
}

TEST_F(QueryCommandTest, BinaryIsSeenAsText)
{
    EXPECT_EQ(command->put_Binary(ByteArray("A\0B"sv)), S_OK);
    EXPECT_EQ(Text(), "AB");
}

TEST_F(QueryCommandTest, BinaryOfAnotherTypeIsSFalseWithoutAText)
{
    command->put_Text(ToBstr(OString("kept")).Get());
    EXPECT_EQ(AnswerOf(command->put_Binary(_variant_t(L"text"))), saysFalse);
    EXPECT_EQ(Binary(), "kept");
}

TEST_F(QueryCommandTest, BinaryOfACommandWithoutDataIsInvalid)
{
    _variant_t value;
    EXPECT_EQ(AnswerOf(command->get_Binary(&value)), invalidArgument);
    EXPECT_TRUE(Text().IsEmpty());
    EXPECT_TRUE(Hexadecimal().IsEmpty());
}

TEST_F(QueryCommandTest, NullTextsAreEmpty)
{
    EXPECT_EQ(command->put_Text(nullptr), S_OK);
    EXPECT_EQ(Binary(), "");
    EXPECT_EQ(command->put_Hexadecimal(nullptr), S_OK);
    EXPECT_EQ(Binary(), "");
}

TEST_F(QueryCommandTest, NullOutPointerIsInvalid)
{
    EXPECT_EQ(AnswerOf(command->get_Binary(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(command->get_Text(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(command->get_Hexadecimal(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(command->get_SendTimeout(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(command->get_ReceiveStartTimeout(nullptr)), invalidArgument);
    EXPECT_EQ(AnswerOf(command->get_ReceiveIntervalTimeout(nullptr)), invalidArgument);
}

struct Timeout {
    const char* name;
    HRESULT (STDMETHODCALLTYPE IQueryCommand::*get)(long*);
    HRESULT (STDMETHODCALLTYPE IQueryCommand::*put)(long);
};

const Timeout timeouts[] = {
    {"SendTimeout",            &IQueryCommand::get_SendTimeout,            &IQueryCommand::put_SendTimeout           },
    {"ReceiveStartTimeout",    &IQueryCommand::get_ReceiveStartTimeout,    &IQueryCommand::put_ReceiveStartTimeout   },
    {"ReceiveIntervalTimeout", &IQueryCommand::get_ReceiveIntervalTimeout, &IQueryCommand::put_ReceiveIntervalTimeout},
};

TEST_F(QueryCommandTest, TimeoutsStartAtZeroAndKeepAnyNumber)
{
    for (const Timeout& row : timeouts) {
        long value = 99;
        EXPECT_EQ((command.Get()->*row.get)(&value), S_OK);
        EXPECT_EQ(value, 0) << row.name;
        for (const long number : {1l, -1l, LONG_MAX, LONG_MIN}) {
            EXPECT_EQ((command.Get()->*row.put)(number), S_OK);
            EXPECT_EQ((command.Get()->*row.get)(&value), S_OK);
            EXPECT_EQ(value, number) << row.name;
        }
    }
}

TEST_F(QueryCommandTest, EachTimeoutIsItsOwn)
{
    long number = 1;
    for (const Timeout& row : timeouts) (command.Get()->*row.put)(number++);
    number = 1;
    for (const Timeout& row : timeouts) {
        long value = 0;
        (command.Get()->*row.get)(&value);
        EXPECT_EQ(value, number++) << row.name;
    }
}

} // namespace
